#pragma once

#include "TempSettings.h"
#include "platform/Notifier.h"
#include "platform/StringTable.h"
#include "profiles/FileList.h"
#include "profiles/FileListStore.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ProfileStore.h"
#include "settings/DataFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <deque>
#include <vector>

namespace zelto::test {

// Records every message and question and answers from a script; an unexpected question fails.
struct ScriptedNotifier final : Notifier {
    explicit ScriptedNotifier(std::deque<Answer> script = {}) : answers(std::move(script)) { }
    void showMessage(const QString& text, MessageIcon /*icon*/) override { messages.append(text); }
    Answer ask(const Question& question) override
    {
        questions.push_back(question);
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
            return Answer::Cancelled;
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void reset(std::deque<Answer> script)
    {
        answers = std::move(script);
        questions.clear();
        messages.clear();
    }
    std::deque<Answer> answers;
    QStringList messages;
    std::vector<Question> questions;
};

// Counts what the main frame would have been told.
struct RecordingEvents final : ProfileEvents {
    void profilesChanged() override { ++profiles; }
    void linksChanged() override { ++links; }
    int profiles = 0;
    int links = 0;
};

[[nodiscard]] inline QStringList texts(int id)
{
    return id ? QStringList { StringTable::text(id) } : QStringList();
}

[[nodiscard]] inline QStringList localNames(const std::vector<FileListEntry>& entries)
{
    QStringList names;
    for (const FileListEntry& entry : entries)
        names.append(entry.localName);
    return names;
}

// One line per entry, "folder|local|remote|size", so that a whole list compares and prints.
[[nodiscard]] inline QStringList summary(const std::vector<FileListEntry>& entries)
{
    QStringList lines;
    for (const FileListEntry& e : entries)
        lines.append(
            QStringLiteral("%1|%2|%3|%4").arg(e.folder, e.localName, e.remoteName).arg(e.size));
    return lines;
}

// A fresh settings store and data folder for each test, and the files the tests lay out.
class ProfilesFixture : public ::testing::Test {
protected:
    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    }
    [[nodiscard]] static QByteArray readFile(const QString& path)
    {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
    [[nodiscard]] static bool ownerOnly(const QString& path)
    {
        return (QFileInfo(path).permissions() & 0x0077) == QFile::Permissions();
    }
    [[nodiscard]] static QString profile(const QString& relative)
    {
        return ProfileStore::root() + u'/' + relative;
    }
    static void makeProfile(const QString& relative, const QByteArray& host = "h")
    {
        writeFile(profile(relative), "[Settings]\nHost=" + host + "\nUser=u\nPassword=p\n");
    }
    [[nodiscard]] static QString listFolder(const char* name)
    {
        return FileListStore::root() + u'/' + QString::fromUtf8(name);
    }
    // A list of `entries` given as "folder|local|remote".
    static void makeList(const char* name, const QStringList& entries)
    {
        QByteArray text = "[LIST]\nNumItems=" + QByteArray::number(entries.size()) + "\n";
        for (int i = 0; i < entries.size(); ++i) {
            const QStringList parts = entries[i].split(u'|');
            text += "[FILE" + QByteArray::number(i + 1) + "]\nLocalName=" + parts[1].toUtf8()
                + "\nFolder=" + parts[0].toUtf8() + "\nRemoteName=" + parts.value(2).toUtf8()
                + "\n";
        }
        writeFile(FileListStore::listFile(listFolder(name)), text);
    }
    [[nodiscard]] static QString linkPath(const QString& name)
    {
        return DataFolders::links() + u'/' + name + QStringLiteral(".ini");
    }
    static void makeLink(const QString& name, const QStringList& sites, const QString& files = {})
    {
        QByteArray text = "[LinkItems]\nSites=" + QByteArray::number(sites.size())
            + "\nFiles=" + files.toUtf8() + "\n";
        for (int i = 0; i < sites.size(); ++i)
            text += "[SITE" + QByteArray::number(i + 1) + "]\nSITE=" + sites[i].toUtf8() + "\n";
        writeFile(linkPath(name), text);
    }
    // A folder of local files for the lists to name, outside the data folder.
    [[nodiscard]] QString localFolder() const { return temp_.root() + QStringLiteral("/local"); }

    TempSettings temp_;
    ScriptedNotifier notifier_;
    RecordingEvents events_;
};

} // namespace zelto::test
