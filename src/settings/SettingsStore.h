#pragma once

#include "settings/SettingsKeys.h"

#include <QString>

#include <initializer_list>
#include <utility>

namespace zelto {

// The per-user settings store ("Pellmoor", "Zelto"). Every read goes to the store at the moment it
// is needed, so a changed option takes effect at the next read, whether this process or another
// changed it; there is no flush step. A missing section or key yields the caller's default. A
// failed write of set() is ignored (a view's layout, say); setAll() says whether it failed. Reads
// are cheap (each thread keeps the store open and looks only at whether its file changed), so the
// transfer routines may read their options for every file.
class SettingsStore final {
public:
    SettingsStore() = delete;

    [[nodiscard]] static int getInt(const QString& section, const QString& key, int fallback);
    [[nodiscard]] static QString getText(
        const QString& section, const QString& key, const QString& fallback);
    static void writeInt(const QString& section, const QString& key, int value);
    static void writeText(const QString& section, const QString& key, const QString& value);

    [[nodiscard]] static int get(const settings::IntKey& key);
    [[nodiscard]] static QString get(const settings::TextKey& key);
    static void set(const settings::IntKey& key, int value);
    static void set(const settings::TextKey& key, const QString& value);
    // Writes the values together; false when the store could not be written (a file or folder
    // that is not writable, a full disk), and then some or none of them are kept.
    [[nodiscard]] static bool setAll(
        std::initializer_list<std::pair<settings::TextKey, QString>> values);
    // Deletes the value: the next read gives the reader's default.
    static void remove(const QString& section, const QString& key);

    // Puts the store's file in `folder` (native format, user scope) for the rest of the process;
    // the next read on every thread goes there. Tests give each case a store of its own with it.
    static void relocate(const QString& folder);

    // Where the store lives on this machine, for the user's information.
    [[nodiscard]] static QString location();
};

} // namespace zelto
