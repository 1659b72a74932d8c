#pragma once

#include "RecordingEvents.h"
#include "ScriptedNotifier.h"
#include "TempSettings.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include <ostream>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
QT_END_NAMESPACE

namespace zelto::test {

// A fresh settings store and data folder for each test, a scripted notifier and an event
// recorder, and small helpers for the files the tests lay out.
class ProfilesFixture : public ::testing::Test {
protected:
    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly)) << path.toStdString();
        ASSERT_EQ(out.write(bytes), bytes.size());
    }

    [[nodiscard]] static QByteArray readFile(const QString& path)
    {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    [[nodiscard]] static bool ownerOnly(const QString& path)
    {
        constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        return (QFileInfo(path).permissions() & others) == QFile::Permissions();
    }

    // A folder of local files for the lists to name, outside the data folder.
    [[nodiscard]] QString localFolder() const { return temp_.root() + QStringLiteral("/local"); }

    TempSettings temp_;
    ScriptedNotifier notifier_;
    RecordingEvents events_;
};

} // namespace zelto::test
