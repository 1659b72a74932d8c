#pragma once

// What the log tests share: files laid out and read back, and a notifier that keeps what it was
// told and answers every question alike.

#include "platform/Notifier.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace zelto::test {

inline void putFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Reads regular files only: opening a pipe to read would wait for a writer.
[[nodiscard]] inline QByteArray contents(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : "";
}

struct RecordingNotifier final : Notifier {
    void showMessage(const QString& text, MessageIcon /*icon*/) override { messages.append(text); }
    Answer ask(const Question& question) override
    {
        questions.append(question.text);
        return answer;
    }
    Answer answer = Answer::Cancelled;
    QStringList messages;
    QStringList questions;
};

} // namespace zelto::test
