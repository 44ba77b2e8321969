#pragma once

#include "store/StoreQueries.h"

#include <QAbstractTableModel>

#include <functional>
#include <map>
#include <set>
#include <vector>

namespace Brindle {

/// A moment of the store as people read it: short date and time of the system's locale.
QString ShownMoment(qint64 secondsSince1970);

/// The harvests of a store, in memory: there are as many as a person can begin.
class StoredHarvestsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Date, Directory, Search, Leads, New, ColumnCount };
    /// What rows are sorted by.
    static constexpr int SortRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void Show(std::vector<StoredHarvest> harvests);
    /// `captions`: of the columns. `directory`: what a site code is shown as.
    void SetTexts(QStringList captions, std::function<QString(const QString& siteCode)> directory);
    const StoredHarvest& At(int row) const { return harvests_.at(static_cast<size_t>(row)); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<StoredHarvest> harvests_;
    QStringList captions_;
    std::function<QString(const QString&)> directory_;
};

/// The leads of a store that fit a filter, however many: what a view shows is asked for page by page, and only some
/// pages are kept. The first column is when a lead was found, the others are its fields; names of new businesses stand
/// in bold.
class StoredLeadsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    static constexpr int FirstField = 1;
    static constexpr qint64 PageSize = 200;

    using QAbstractTableModel::QAbstractTableModel;

    /// Asks for a page of leads; `Take` is to be called with the answer. A question may be dropped, it is asked again.
    std::function<void(qint64 offset, qint64 limit)> Ask;

    /// Forgets everything and shows so many rows, which are asked for as they are seen.
    void Begin(qint64 count);
    void Take(qint64 offset, std::vector<StoredLead> leads);
    void SetTexts(QStringList captions, std::function<QString(const QString& siteCode)> directory);
    /// The lead of a row; null while it has not come yet.
    const StoredLead* At(qint64 row) const;
    const LeadOrder& Order() const { return order_; }

    void sort(int column, Qt::SortOrder order) override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void OrderChanged();

private:
    qint64 count_ = 0;
    LeadOrder order_;
    std::map<qint64, std::vector<StoredLead>> pages_; // by number
    std::vector<qint64> recent_;                      // pages, the one used last at the end
    mutable std::set<qint64> asked_;
    QStringList captions_;
    std::function<QString(const QString&)> directory_;
};

} // namespace Brindle
