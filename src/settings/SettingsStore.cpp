#include "SettingsStore.h"

#include "platform/OwnerOnly.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSettings>

#include <atomic>
#include <memory>

namespace zelto {
namespace {

// Counted up when the store moves: every thread then opens it anew at its next read.
std::atomic<quint64> storeGeneration { 0 };

std::unique_ptr<QSettings> openStore()
{
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
        QStringLiteral("Pellmoor"), QStringLiteral("Zelto"));
}

// What QSettings itself compares before it reads a file again: whether it is there, its size and
// its time.
struct FileStamp {
    bool exists = false;
    qint64 size = 0;
    QDateTime modified;

    bool operator==(const FileStamp&) const = default;
};

FileStamp stampOf(const QString& file)
{
    const QFileInfo info(file);
    const qint64 size = info.size(); // one look at the file, which answers the other two as well
    if (!info.exists())
        return {};
    return { true, size, info.lastModified() };
}

// Opening a QSettings probes every file the store may fall back on, a dozen system calls: too
// much for the reads that every file of a job makes. So each thread keeps its own open. A write
// through any QSettings of this process is seen by the others at once (they share the parsed
// file); a change made by another process is seen at the next read, which looks at the file's
// size and time and reloads it when they changed (and the system-wide files it falls back on
// with it).
QSettings& readStore()
{
    struct Kept {
        std::unique_ptr<QSettings> settings;
        QString file;
        quint64 generation = 0;
        FileStamp stamp;
    };
    thread_local Kept kept;
    const quint64 generation = storeGeneration.load(std::memory_order_acquire);
    if (!kept.settings || kept.generation != generation) {
        kept.settings = openStore();
        kept.file = kept.settings->fileName();
        kept.generation = generation;
        kept.stamp = {};
    }
    if (FileStamp now = stampOf(kept.file); now != kept.stamp) {
        kept.stamp = std::move(now);
        kept.settings->sync();
    }
    return *kept.settings;
}

QString path(const QString& section, const QString& key)
{
    return section + u'/' + key;
}

// The store holds the quick-connect password, so it is the owner's alone.
bool writeValues(const QList<std::pair<QString, QVariant>>& values)
{
    const auto store = openStore();
    for (const auto& [key, value] : values)
        store->setValue(key, value);
    store->sync();
    const bool written = store->status() == QSettings::NoError;
    return restrictToOwner(store->fileName()) && written;
}

void writeValue(const QString& section, const QString& key, const QVariant& value)
{
    writeValues({ { path(section, key), value } });
}

} // namespace

int SettingsStore::getInt(const QString& section, const QString& key, int fallback)
{
    const QVariant value = readStore().value(path(section, key));
    bool ok = false;
    const int number = value.toInt(&ok);
    // A value of the wrong type reads as absent, as a typed registry read would.
    return ok ? number : fallback;
}

QString SettingsStore::getText(const QString& section, const QString& key, const QString& fallback)
{
    const QVariant value = readStore().value(path(section, key));
    return value.isValid() ? value.toString() : fallback;
}

void SettingsStore::writeInt(const QString& section, const QString& key, int value)
{
    writeValue(section, key, value);
}

void SettingsStore::writeText(const QString& section, const QString& key, const QString& value)
{
    writeValue(section, key, value);
}

int SettingsStore::get(const settings::IntKey& key)
{
    return getInt(QLatin1StringView(key.section), QLatin1StringView(key.name), key.fallback);
}

QString SettingsStore::get(const settings::TextKey& key)
{
    return getText(QLatin1StringView(key.section), QLatin1StringView(key.name),
        QString::fromLatin1(key.fallback));
}

void SettingsStore::set(const settings::IntKey& key, int value)
{
    writeInt(QLatin1StringView(key.section), QLatin1StringView(key.name), value);
}

void SettingsStore::set(const settings::TextKey& key, const QString& value)
{
    writeText(QLatin1StringView(key.section), QLatin1StringView(key.name), value);
}

bool SettingsStore::setAll(std::initializer_list<std::pair<settings::TextKey, QString>> values)
{
    QList<std::pair<QString, QVariant>> paths;
    for (const auto& [key, value] : values)
        paths.append({ path(QLatin1StringView(key.section), QLatin1StringView(key.name)), value });
    return writeValues(paths);
}

void SettingsStore::remove(const QString& section, const QString& key)
{
    const auto store = openStore();
    store->remove(path(section, key));
    store->sync();
}

void SettingsStore::relocate(const QString& folder)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
    storeGeneration.fetch_add(1, std::memory_order_release);
}

QString SettingsStore::location()
{
    return readStore().fileName();
}

} // namespace zelto
