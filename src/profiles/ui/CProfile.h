#pragma once

#include "profiles/ProfileStore.h"

#include <QMainWindow>

#include <functional>

namespace zelto {

class CProfDialog;
class CProfTree;
class CProfView;
class Notifier;
class ProfileEvents;
class StoredSplitter;
class WorkerThreads;

// The site-profile screen: the profile folders, the profiles of the chosen folder and the edit
// form side by side on a splitter ("Profile\split1"). Its place and size live in
// "Dimensions\Profile\Mainframe"; the first opening is centred on the main frame.
class CProfile final : public QMainWindow {
    Q_OBJECT
public:
    CProfile(Notifier& notifier, ProfileEvents& events, WorkerThreads& threads,
        QWidget* frame = nullptr);
    ~CProfile() override;

    // The one screen: made on the first call, shown and raised on every call.
    static CProfile* showOrRaise(
        Notifier& notifier, ProfileEvents& events, WorkerThreads& threads, QWidget* frame);

    [[nodiscard]] CProfTree& tree() const { return *tree_; }
    [[nodiscard]] CProfView& list() const { return *list_; }
    [[nodiscard]] CProfDialog& form() const { return *form_; }
    // The ".sts" file to import, asked of the user; replaceable so that tests answer it.
    void setImportChooser(std::function<QString()> chooser) { chooseImport_ = std::move(chooser); }

public Q_SLOTS:
    void newSite();
    // Imports the profiles of an older release's ".sts" file into the chosen folder.
    void importProfiles();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createMenu();
    void wirePanes();

    ProfileStore store_;
    StoredSplitter* splitter_;
    CProfTree* tree_;
    CProfView* list_;
    CProfDialog* form_;
    std::function<QString()> chooseImport_;
};

} // namespace zelto
