#pragma once

#include <QString>

namespace zelto {

// Every text of the system that has a resource id, looked up by that id.
// Code never repeats one of these texts; it asks the table.
class StringTable final {
public:
    StringTable() = delete;

    // The text stored under `id`, or an empty text when the id has none.
    [[nodiscard]] static QString text(int id);

    // Whether `id` has a text at all (an empty text and a missing one differ only here).
    [[nodiscard]] static bool contains(int id);

    // The message of an Internet-library error code: the text at code + 20876.
    [[nodiscard]] static int errorMessageId(int code) { return code + kErrorMessageOffset; }
    [[nodiscard]] static QString errorMessage(int code) { return text(errorMessageId(code)); }

    static constexpr int kErrorMessageOffset = 20876;
};

} // namespace zelto
