#pragma once

#include "options/OptionPage.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace zelto {

class Notifier;

// One page of the options sheet. Its controls are bound to the keys of its OptionPage: filled
// when the page is first shown, read back when the user confirms it. Any change of a control
// marks the page modified, which enables the sheet's Apply button.
class COptionsPage : public QWidget {
    Q_OBJECT
public:
    // The section of the user manual that the Help button opens for this page.
    [[nodiscard]] QString helpAnchor() const { return helpAnchor_; }
    [[nodiscard]] OptionPageKind kind() const { return page_.kind(); }
    [[nodiscard]] bool isLoaded() const { return loaded_; }
    [[nodiscard]] bool isModified() const { return modified_; }

    // Reads the keys into the controls, once.
    void load();
    // Checks and writes the page; a refusal is told through `notifier` (stop icon) and the page
    // stays as it is. False when refused.
    bool confirm(Notifier& notifier);

Q_SIGNALS:
    void modified();

protected:
    COptionsPage(OptionPageKind kind, QString helpAnchor, QWidget* parent = nullptr);

    // How a check box reads its key: checked for "YES" only, or for anything but "NO".
    enum class Checked { IfYes, UnlessNo };

    void bindText(QLineEdit* edit, const char* key);
    // A whole number from `lowest` to `highest`; anything else is refused when the page is
    // confirmed. A stored value out of range (or garbage) shows the key's default.
    void bindNumber(QLineEdit* edit, const char* key, int lowest, int highest);
    void bindCheck(QCheckBox* box, const char* key, Checked checked = Checked::IfYes);
    // The first button whose word is the stored value is checked, else button `otherwise`; each
    // stores its word.
    void bindChoice(const std::vector<QRadioButton*>& buttons, const QStringList& words,
        const char* key, int otherwise = 0);
    // The list's position, stored as a number; out of range shows the first.
    void bindIndex(QComboBox* list, const char* key);
    // A binding of the page's own: `show` fills controls from the value, `take` gives it back.
    void bindCustom(
        const char* key, std::function<void(const QString&)> show, std::function<QString()> take);
    // Makes a change of `widget` mark the page modified.
    void watch(QCheckBox* box);
    void watch(QLineEdit* edit);

    // Called after the controls were filled (enabling that depends on several of them).
    virtual void loaded() { }

    void markModified();

private:
    struct Binding {
        const char* key;
        std::function<void(const QString&)> show;
        std::function<QString()> take;
    };
    struct Range {
        QLineEdit* edit;
        int lowest;
        int highest;
    };

    [[nodiscard]] bool numbersInRange(Notifier& notifier);

    OptionPage page_;
    QString helpAnchor_;
    std::vector<Binding> bindings_;
    std::vector<Range> ranges_;
    bool loaded_ = false;
    bool modified_ = false;
};

} // namespace zelto
