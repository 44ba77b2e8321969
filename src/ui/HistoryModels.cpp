#include "ui/HistoryModels.h"

#include <QDateTime>
#include <QFont>
#include <QLocale>

#include <algorithm>
#include <limits>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t pagesKept = 50;
const QVariant left = QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
const QVariant right = QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));

// What was searched for; the address it began with where nobody knows.
QString SearchOf(const HarvestInfo& harvest) {
    QStringList words{harvest.What, harvest.Place};
    words.removeAll(QString());
    return words.isEmpty() ? harvest.Start : words.join(u", "_s);
}

} // namespace

QString ShownMoment(qint64 secondsSince1970) {
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(secondsSince1970);
    return QLocale::system().toString(moment, QLocale::ShortFormat);
}

void StoredHarvestsModel::Show(std::vector<StoredHarvest> harvests) {
    beginResetModel();
    harvests_ = std::move(harvests);
    endResetModel();
}

void StoredHarvestsModel::SetTexts(QStringList captions, std::function<QString(const QString&)> directory) {
    beginResetModel();
    captions_ = std::move(captions);
    directory_ = std::move(directory);
    endResetModel();
}

int StoredHarvestsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(harvests_.size());
}

int StoredHarvestsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant StoredHarvestsModel::data(const QModelIndex& index, int role) const {
    const StoredHarvest& harvest = At(index.row());
    const bool number = index.column() == Leads || index.column() == New;
    if (role == Qt::TextAlignmentRole)
        return number ? right : left;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != SortRole)
        return {};
    switch (index.column()) {
    case Date:
        return role == SortRole ? QVariant(harvest.Info.Begun) : QVariant(ShownMoment(harvest.Info.Begun / 1000));
    case Directory:
        return directory_ ? directory_(harvest.Info.Site) : harvest.Info.Site;
    case Search:
        return SearchOf(harvest.Info);
    case Leads:
        return harvest.Leads;
    default:
        return harvest.NewLeads;
    }
}

QVariant StoredHarvestsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return section == Leads || section == New ? right : left;
    return role == Qt::DisplayRole ? QVariant(captions_.value(section)) : QVariant();
}

void StoredLeadsModel::Begin(qint64 count) {
    beginResetModel();
    count_ = count;
    pages_.clear();
    recent_.clear();
    asked_.clear();
    endResetModel();
}

void StoredLeadsModel::Take(qint64 offset, std::vector<StoredLead> leads) {
    const qint64 page = offset / PageSize;
    std::erase(recent_, page);
    recent_.push_back(page);
    pages_[page] = std::move(leads);
    while (recent_.size() > pagesKept) {
        pages_.erase(recent_.front());
        recent_.erase(recent_.begin());
    }
    // Whatever else was asked for meanwhile may have been dropped; what is still seen is asked for again.
    asked_.clear();
    if (count_ > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void StoredLeadsModel::SetTexts(QStringList captions, std::function<QString(const QString&)> directory) {
    captions_ = std::move(captions);
    directory_ = std::move(directory);
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

const StoredLead* StoredLeadsModel::At(qint64 row) const {
    const auto page = pages_.find(row / PageSize);
    if (page == pages_.end())
        return nullptr;
    const auto place = static_cast<size_t>(row % PageSize);
    return place < page->second.size() ? &page->second[place] : nullptr;
}

void StoredLeadsModel::sort(int column, Qt::SortOrder order) {
    order_ = {column < FirstField ? LeadOrder::Found : column - FirstField, order == Qt::DescendingOrder};
    Q_EMIT OrderChanged();
}

int StoredLeadsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(std::min<qint64>(count_, std::numeric_limits<int>::max()));
}

int StoredLeadsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : FirstField + FieldCount;
}

QVariant StoredLeadsModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::FontRole)
        return {};
    const StoredLead* const lead = At(index.row());
    if (!lead) {
        const qint64 page = index.row() / PageSize;
        // A page that came without this row is shorter than was counted; it is not asked for again.
        if (role == Qt::DisplayRole && Ask && !pages_.contains(page) && asked_.insert(page).second)
            Ask(page * PageSize, PageSize);
        return {};
    }
    if (role == Qt::FontRole) {
        QFont font;
        font.setBold(lead->IsNew() && index.column() == FirstField + 1); // the name
        return font;
    }
    if (index.column() >= FirstField)
        return lead->Lead.At(index.column() - FirstField);
    const QString found = ShownMoment(lead->Found);
    return role == Qt::ToolTipRole && directory_ ? QString(found + u", " + directory_(lead->Site)) : found;
}

QVariant StoredLeadsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return left;
    return role == Qt::DisplayRole ? QVariant(captions_.value(section)) : QVariant();
}

} // namespace Brindle
