#pragma once

#include "DataFiles.h"
#include "TempSettings.h"
#include "TestNotifier.h"
#include "platform/Notifier.h"
#include "platform/StringTable.h"
#include "profiles/FileList.h"
#include "profiles/FileListStore.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ProfileStore.h"
#include "settings/DataFolders.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <vector>

namespace zelto::test {

// Counts what the main frame would have been told.
struct RecordingEvents final : ProfileEvents {
    RecordingEvents()
    {
        connect(this, &ProfileEvents::profilesChanged, [this] { ++profiles; });
        connect(this, &ProfileEvents::fileListsChanged, [this] { ++lists; });
        connect(this, &ProfileEvents::linksChanged, [this] { ++links; });
    }
    int profiles = 0;
    int lists = 0;
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
        writeList(FileListStore::listFile(listFolder(name)), entries);
    }
    [[nodiscard]] static QString linkPath(const QString& name)
    {
        return DataFolders::links() + u'/' + name + QStringLiteral(".ini");
    }
    static void makeLink(const QString& name, const QStringList& sites, const QString& files = {})
    {
        writeLink(linkPath(name), sites, files);
    }
    // A folder of local files for the lists to name, outside the data folder.
    [[nodiscard]] QString localFolder() const { return temp_.root() + QStringLiteral("/local"); }

    TempSettings temp_;
    TestNotifier notifier_;
    RecordingEvents events_;
};

} // namespace zelto::test
