#pragma once

#include <QDialog>

#include <vector>

class QDialogButtonBox;
class QTabWidget;

namespace zelto {

class COptionsPage;
class Notifier;
class SoundPlayer;

// "System Config": the eight pages of preferences. A page reads its keys when first shown; OK and
// Apply confirm the pages that were changed, in tab order, and stop at the first that refuses,
// which is shown; Cancel writes nothing.
class CSystemConfigSheet final : public QDialog {
    Q_OBJECT
public:
    CSystemConfigSheet(SoundPlayer& player, Notifier& notifier, QWidget* parent = nullptr);

    [[nodiscard]] QTabWidget& tabs() const { return *tabs_; }
    [[nodiscard]] COptionsPage& page(int index) const;
    [[nodiscard]] int pageCount() const { return int(pages_.size()); }

    // Apply's work: true when every changed page was saved.
    bool apply();

Q_SIGNALS:
    // Pages were saved: the program applies them at once. `logChanged` when the Log page was
    // among them.
    void applied(bool logChanged);
    // The user asked for the manual at `anchor`.
    void helpRequested(const QString& anchor);

public Q_SLOTS:
    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void updateApply();
    // The place the user left the sheet at; the first time it opens centred on its parent.
    void restorePlacement();

    Notifier& notifier_;
    QTabWidget* tabs_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    std::vector<COptionsPage*> pages_;
};

} // namespace zelto
