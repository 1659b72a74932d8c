#pragma once

#include <QTextBrowser>

namespace zelto {

// The user manual, shown in a window of its own. A section is named by the anchor that a
// Markdown viewer gives its heading ("Options: FTP" is "options-ftp"), so the same
// names work for the manual read anywhere else.
class CHelpWindow final : public QTextBrowser {
    Q_OBJECT
public:
    // Shows the one help window over `parent` at the section `anchor` (the top when empty or
    // unknown), making it the first time.
    static void showSection(const QString& anchor, QWidget* parent);

    // Makes F1 in `window` show its section `anchor`.
    static void bindHelpKey(QWidget& window, const QString& anchor);

    // The anchor of a heading: lower case, punctuation dropped, blanks made hyphens.
    [[nodiscard]] static QString anchorOf(const QString& heading);

    explicit CHelpWindow(QWidget* parent = nullptr);

    // False when no heading has that anchor.
    bool goTo(const QString& anchor);
};

} // namespace zelto
