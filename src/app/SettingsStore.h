#pragma once

#include "app/SettingsKeys.h"

#include <QString>

namespace zelto {

// The per-user settings store ("Pellmoor", "Zelto"). Every read goes to the store at the moment it
// is needed, so a changed option takes effect at the next read; there is no cache and no flush
// step. A missing section or key yields the caller's default; a failed write is ignored.
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
    // Deletes the value: the next read gives the reader's default.
    static void remove(const QString& section, const QString& key);

    // Where the store lives on this machine, for the user's information.
    [[nodiscard]] static QString location();
};

} // namespace zelto
