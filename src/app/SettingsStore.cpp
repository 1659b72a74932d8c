#include "SettingsStore.h"

#include "platform/OwnerOnly.h"

#include <QSettings>

namespace zelto {
namespace {

QSettings openStore()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Pellmoor"),
        QStringLiteral("Zelto"));
}

QString path(const QString& section, const QString& key)
{
    return section + u'/' + key;
}

// The store holds the quick-connect password, so it is the owner's alone.
void writeValue(const QString& section, const QString& key, const QVariant& value)
{
    QSettings store = openStore();
    store.setValue(path(section, key), value);
    store.sync();
    restrictToOwner(store.fileName());
}

} // namespace

int SettingsStore::getInt(const QString& section, const QString& key, int fallback)
{
    const QVariant value = openStore().value(path(section, key));
    bool ok = false;
    const int number = value.toInt(&ok);
    // A value of the wrong type reads as absent, as a typed registry read would.
    return ok ? number : fallback;
}

QString SettingsStore::getText(const QString& section, const QString& key, const QString& fallback)
{
    const QVariant value = openStore().value(path(section, key));
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

void SettingsStore::remove(const QString& section, const QString& key)
{
    QSettings store = openStore();
    store.remove(path(section, key));
    store.sync();
}

QString SettingsStore::location()
{
    return openStore().fileName();
}

} // namespace zelto
