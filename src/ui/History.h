#pragma once

#include "core/Dialogs.h"
#include "core/StatusView.h"
#include "i18n/WindowTexts.h"
#include "ui/HistoryModels.h"
#include "ui/HistoryPage.h"
#include "ui/StoreDesk.h"

#include <QSortFilterProxyModel>

namespace Brindle {

/// What the page *History* does: shows the harvests and the leads of the store, finds, opens, exports, deletes and
/// erases.
class History : public QObject {
    Q_OBJECT

public:
    struct Parts {
        HistoryPage& Page;
        StoreDesk& Desk;
        Workbench& Bench;
        Dialogs& Notices;
        StatusView& Status;
        MessageLoop& Loop;
        const WindowTexts& Texts;
        QString DocumentsFolder;
    };
    explicit History(const Parts& parts);

    /// The page shows the store as it is from now on; until the first call nothing is asked.
    void Show();
    /// The language has changed.
    void ApplyTexts();

    StoredHarvestsModel Harvests;
    StoredLeadsModel Leads;

private:
    void Refresh();
    void AskHarvests();
    void AskCount();
    void AskLeads(qint64 offset, qint64 limit);
    void Export();
    void Delete();
    void Erase();
    LeadFilter Filter() const;
    const StoredHarvest* Selected() const;
    QString DirectoryOf(const QString& siteCode) const;
    void ShowButtons();
    void WidenColumns();

    Parts parts_;
    QSortFilterProxyModel sorted_;
    quint64 question_ = 0; // the newest one; answers to older ones do not count any more
    qint64 harvest_ = 0;   // whose leads are shown; 0: all
    bool shown_ = false;
    // The numbers of all leads of a question, sorted; of the store's thread alone.
    struct InOrder {
        quint64 Question = 0;
        std::vector<qint64> Numbers;
    };
    std::shared_ptr<InOrder> inOrder_ = std::make_shared<InOrder>();
};

} // namespace Brindle
