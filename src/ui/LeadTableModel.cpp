#include "ui/LeadTableModel.h"

namespace Brindle {

namespace {

constexpr int pendingMs = 250;

} // namespace

LeadTableModel::LeadTableModel(LeadList& leads, QObject* parent)
    : QAbstractTableModel(parent), leads_(leads), shown_(static_cast<int>(leads.Count())) {
    leads_.AddObserver(this);
    pending_.setSingleShot(true);
    pending_.setInterval(pendingMs);
    connect(&pending_, &QTimer::timeout, this, &LeadTableModel::ShowPending);
}

LeadTableModel::~LeadTableModel() {
    leads_.RemoveObserver(this);
}

void LeadTableModel::ShowPending() {
    pending_.stop();
    const auto count = static_cast<int>(leads_.Count());
    if (count == shown_)
        return;
    beginInsertRows({}, shown_, count - 1);
    shown_ = count;
    endInsertRows();
}

void LeadTableModel::CaptionsChanged() {
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, FieldCount - 1);
}

int LeadTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shown_;
}

int LeadTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : FieldCount;
}

QVariant LeadTableModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const QString text = leads_.FieldAt(index.row(), static_cast<Field>(index.column()));
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant LeadTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return leads_.Captions.value(section);
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    return {};
}

Qt::ItemFlags LeadTableModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void LeadTableModel::LeadAppended(qsizetype) {
    if (!pending_.isActive())
        pending_.start();
}

void LeadTableModel::LeadsAboutToBeRemoved() {
    beginResetModel();
}

void LeadTableModel::LeadsRemoved() {
    pending_.stop();
    shown_ = static_cast<int>(leads_.Count());
    endResetModel();
}

} // namespace Brindle
