#pragma once

#include "profiles/SiteProfile.h"

#include <QString>

namespace zelto {

class Notifier;
class ProfileEvents;

// What the profile edit form shows: the profile's name, its six texts and the anonymous box.
struct ProfileFormValues {
    QString name;
    ProfileFields profile;
    bool anonymous = false;

    bool operator==(const ProfileFormValues&) const = default;
};

// The profile edit form without its widgets: its values, whether the name can be edited, and its
// mode. The form view copies what the user typed in with setValues() before OK.
class ProfileForm final {
public:
    enum class Mode { None, New, Edit };

    [[nodiscard]] const ProfileFormValues& values() const { return values_; }
    void setValues(const ProfileFormValues& values) { values_ = values; }
    [[nodiscard]] Mode mode() const { return mode_; }
    [[nodiscard]] bool nameEditable() const { return nameEditable_; }

    // Shows profile `fileName` of `folder` for editing; the name is changed only by renaming.
    void load(const QString& folder, const QString& fileName);
    // Empties the texts, sets the port to the default FTP port and unticks "Anonymous Login".
    void clear();
    // Ticked: the login "anonymous" and the user's e-mail address as password; unticked: both
    // empty.
    void setAnonymous(bool on);
    // "New Site": ignored while a profile is being made or edited.
    void newSite();
    // Saves into `folder`; on success clears the form and lets the name be edited again. A failed
    // save keeps the values and the mode, so the user can correct them.
    bool ok(const QString& folder, Notifier& notifier, ProfileEvents& events);
    void cancel();

private:
    bool save(const QString& folder, Notifier& notifier, ProfileEvents& events);

    ProfileFormValues values_;
    Mode mode_ = Mode::None;
    bool nameEditable_ = true;
};

} // namespace zelto
