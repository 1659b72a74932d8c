#include "LinkFile.h"

#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"
#include "profiles/StoredIni.h"
#include "settings/DataFolders.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>

namespace zelto {

using namespace linkfile;

QString LinkFile::fileNameFor(const QString& typedName)
{
    const qsizetype dot = typedName.indexOf(u'.');
    return (dot >= 0 ? typedName.left(dot) : typedName) + QLatin1String(profilefile::kExtension);
}

QString LinkFile::nameOf(const QString& file)
{
    return SiteProfile::nameOf(file);
}

namespace {

// A path written by hand may be relative; it means the same under cron as in the window: below
// the data folder, not below whatever folder the process was started in.
QString resolved(const QString& path)
{
    if (path.isEmpty() || !QDir::isRelativePath(path))
        return path;
    return QDir::cleanPath(QDir(DataFolders::base()).filePath(path));
}

} // namespace

Link LinkFile::read(const QString& file)
{
    const StoredIni ini(file);
    const QString items = QLatin1String(kItemsSection);
    Link link;
    link.files = resolved(ini.text(items, QLatin1String(kFiles), QString(), kValueBuffer));
    const QString prefix = QLatin1String(kSiteSectionPrefix);
    const int count = ini.integer(items, QLatin1String(kSites), 0);
    for (const int number : ini.numberedSections(prefix, count)) {
        link.sites.push_back({ number,
            resolved(ini.text(prefix + QString::number(number), QLatin1String(kSite), QString(),
                kValueBuffer)) });
    }
    return link;
}

QStringList LinkFile::linkFiles(bool withSubFolders)
{
    QDirIterator it(DataFolders::links(),
        { QStringLiteral("*") + QLatin1String(profilefile::kExtension) },
        QDir::Files | QDir::Hidden,
        withSubFolders ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    QStringList files;
    while (it.hasNext())
        files.append(it.next());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace zelto
