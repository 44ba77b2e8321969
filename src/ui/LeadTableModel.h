#pragma once

#include "core/LeadList.h"

#include <QAbstractTableModel>
#include <QTimer>

namespace Brindle {

/// The results list as a table for a view: one row per lead, one column per field. The texts stay in the list, nothing
/// is copied.
///
/// A view spends far more on a new row than the list does, so leads that come in together are given to it together: all
/// those of a page at once, and while a page takes long (its details pages are being fetched) four times a second.
class LeadTableModel : public QAbstractTableModel, private LeadListObserver {
    Q_OBJECT

public:
    explicit LeadTableModel(LeadList& leads, QObject* parent = nullptr);
    ~LeadTableModel() override;

    /// Gives the rows that were appended meanwhile to the view. To be called at the end of a page, and before a command
    /// that acts on the whole list.
    void ShowPending();
    /// A whole row.
    Lead LeadAt(qsizetype row) const { return leads_.At(row); }
    /// The captions of the columns have changed.
    void CaptionsChanged();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void LeadAppended(qsizetype row) override;
    void LeadsAboutToBeRemoved() override;
    void LeadsRemoved() override;

    LeadList& leads_;
    int shown_ = 0; // rows that the view knows of
    QTimer pending_;
};

} // namespace Brindle
