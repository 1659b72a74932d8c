#pragma once

#include "ftp/JobSite.h"
#include "profiles/SiteProfile.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <vector>

namespace zelto {

// The rows of the sites list: one target site per row, read from its site profile as the
// multiple-put list reads profiles (values cut at 99 characters, the port 21 when missing). A
// profile is listed once; adding it again updates its row.
class SiteListModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Server, Login, Password, RemoteFolder, Port, ColumnCount };

    // The password column's text, whatever the password.
    static constexpr char kHiddenPassword[] = "****";

    explicit SiteListModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;

    // Adds each profile's site, or updates its row when the profile is listed already.
    void addProfiles(const QStringList& files);
    // Reads every row's profile again; the rows of profiles that are gone are removed.
    void refresh();
    // Removes the rows, in any order.
    void removeSites(std::vector<int> rows);

    // The sites in list order, as the jobs take them.
    [[nodiscard]] std::vector<JobSite> sites() const;

private:
    struct Row {
        QString profile;
        SiteRecord site;
    };

    [[nodiscard]] int rowOf(const QString& profile) const;

    std::vector<Row> rows_;
};

} // namespace zelto
