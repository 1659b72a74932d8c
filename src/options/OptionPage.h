#pragma once

#include "settings/SettingsKeys.h"

#include <QString>

#include <vector>

namespace zelto {

// The pages of the options sheet, in the order of its tabs.
enum class OptionPageKind { Ftp, Proxies, System, Log, Ascii, Sounds, Queue, Misc };

// What one page of the options sheet edits: its keys and their values as text, read from the store
// when the page is first shown and written back when the user confirms it. Confirming runs the
// page's check first; a refused page writes nothing, except the Queue page, which saves all but
// the number of resends that the check found missing.
class OptionPage final {
public:
    explicit OptionPage(OptionPageKind kind);

    [[nodiscard]] OptionPageKind kind() const { return kind_; }

    void read();
    // The value of key `name` (empty for a name the page does not edit).
    [[nodiscard]] QString value(const char* name) const;
    void setValue(const char* name, const QString& value);
    // The default of key `name` as this page reads it.
    [[nodiscard]] QString fallback(const char* name) const;

    // Checks, normalises (the log file name, whose new value() the page shows) and writes. Returns
    // the id of the message that refused the page, 0 when it was saved whole.
    [[nodiscard]] int confirm();

    // A log file name as it is stored: everything after a first "." that is not the first
    // character becomes "log"; a name without one gets ".log".
    [[nodiscard]] static QString normalisedLogName(const QString& name);

private:
    struct Field {
        const char* section;
        const char* name;
        QString fallback;
        bool isInt;
        QString value;
    };

    void add(const settings::TextKey& key);
    void add(const settings::IntKey& key);
    [[nodiscard]] const Field* field(const char* name) const;
    [[nodiscard]] int refusal() const;
    void write(const char* skipped = nullptr) const;

    OptionPageKind kind_;
    std::vector<Field> fields_;
};

} // namespace zelto
