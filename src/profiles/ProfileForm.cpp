#include "ProfileForm.h"

#include "platform/Notifier.h"
#include "platform/Paths.h"
#include "platform/StringTable.h"
#include "profiles/ProfileEvents.h"
#include "profiles/StoredFormats.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

namespace zelto {

void ProfileForm::load(const QString& folder, const QString& fileName)
{
    values_.name = SiteProfile::nameOf(fileName);
    values_.profile = SiteProfile::readFields(joinPath(folder, fileName));
    values_.anonymous = SiteProfile::isAnonymous(values_.profile.user);
    nameEditable_ = false;
    mode_ = Mode::Edit;
}

void ProfileForm::clear()
{
    values_ = ProfileFormValues();
    values_.profile.port = QString::number(SettingsStore::get(settings::ftp::kPort));
}

void ProfileForm::setAnonymous(bool on)
{
    values_.anonymous = on;
    values_.profile.user = on ? QLatin1String(profilefile::kAnonymousUser) : QString();
    values_.profile.password = on ? SettingsStore::get(settings::config::kEmail) : QString();
}

void ProfileForm::newSite()
{
    if (mode_ != Mode::None)
        return;
    clear();
    nameEditable_ = true;
    mode_ = Mode::New;
}

bool ProfileForm::ok(const QString& folder, Notifier& notifier, ProfileEvents& events)
{
    if (!save(folder, notifier, events))
        return false;
    clear();
    nameEditable_ = true;
    return true;
}

void ProfileForm::cancel()
{
    clear();
    nameEditable_ = true;
}

bool ProfileForm::save(const QString& folder, Notifier& notifier, ProfileEvents& events)
{
    const ProfileFields& profile = values_.profile;
    if (values_.name.isEmpty() || profile.host.isEmpty() || profile.user.isEmpty()
        || profile.password.isEmpty() || profile.port.isEmpty()) {
        notifier.showMessage(StringTable::text(ids::kFillAllFields), MessageIcon::Stop);
        return false;
    }
    const QString file = joinPath(folder, SiteProfile::fileNameFor(values_.name));
    const bool exists = QFileInfo::exists(file);
    switch (mode_) {
    case Mode::New:
        if (exists) {
            notifier.showMessage(StringTable::text(ids::kProfileExists), MessageIcon::Stop);
            return false;
        }
        if (!SiteProfile::write(file, profile))
            return false;
        Q_EMIT events.profilesChanged();
        break;
    case Mode::Edit:
        if (!exists) {
            notifier.showMessage(StringTable::text(ids::kProfileMissing), MessageIcon::Stop);
            return false;
        }
        if (!SiteProfile::write(file, profile))
            return false;
        nameEditable_ = true;
        break;
    case Mode::None:
        // Nothing is being made or edited: there is nothing to write.
        break;
    }
    mode_ = Mode::None;
    return true;
}

} // namespace zelto
