#pragma once

#include "log/LogListener.h"
#include "log/LogRecord.h"
#include "platform/Notifier.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <mutex>
#include <vector>

namespace zelto::test {

inline void putFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

// Reads regular files only: opening a pipe to read would wait for a writer.
inline QByteArray contents(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

// Keeps every message the engine shows.
class RecordingNotifier final : public Notifier {
public:
    struct Message {
        QString text;
        MessageIcon icon;
    };

    void showMessage(const QString& text, MessageIcon icon) override
    {
        const std::lock_guard guard(mutex_);
        messages_.push_back({ text, icon });
    }
    Answer ask(const Question& /*question*/) override { return Answer::Cancelled; }

    [[nodiscard]] std::vector<Message> messages() const
    {
        const std::lock_guard guard(mutex_);
        return messages_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Message> messages_;
};

// Keeps every record handed to the screen, with its filter flag.
class RecordingListener final : public LogListener {
public:
    struct Entry {
        LogRecord record;
        bool visible;
    };

    void recordAdded(const LogRecord& record, bool visible) override
    {
        const std::lock_guard guard(mutex_);
        entries_.push_back({ record, visible });
    }

    [[nodiscard]] std::vector<Entry> entries() const
    {
        const std::lock_guard guard(mutex_);
        return entries_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
};

} // namespace zelto::test
