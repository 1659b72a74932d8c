#pragma once

#include "distribution/ui/SiteListModel.h"

#include <QStringList>
#include <QTreeView>

#include <functional>
#include <vector>

namespace zelto {

// The sites list of the multiple-put screen: the target sites of Send Parallel and Send Serial,
// one row per site profile (server, login, password as "****", remote folder, port). Sites are
// added from the stored profiles ("Add Site...") and removed with Delete.
class CFtpView final : public QTreeView {
    Q_OBJECT
public:
    // Asks which profiles to add; replaceable so that tests answer it. None: the user cancelled.
    using ProfileChooser = std::function<QStringList()>;

    explicit CFtpView(QWidget* parent = nullptr);

    void setProfileChooser(ProfileChooser chooser) { chooser_ = std::move(chooser); }
    // Opens the place where site profiles are made; the chooser offers it when there are none.
    void setNewSiteOpener(std::function<void()> opener) { newSiteOpener_ = std::move(opener); }

    // Adds each profile's site, or updates its row when it is listed already.
    void addProfiles(const QStringList& files);
    // Reads the listed profiles again (the profiles changed); rows of deleted ones go.
    void refresh();
    // The sites in list order.
    [[nodiscard]] std::vector<JobSite> sites() const { return model_.sites(); }

public Q_SLOTS:
    // "Add Site...": the chooser of stored profiles.
    void addSites();
    void removeSelected();

private:
    void createActions();

    SiteListModel model_;
    ProfileChooser chooser_;
    std::function<void()> newSiteOpener_;
};

} // namespace zelto
