#pragma once

#include "store/StoreQueries.h"
#include "store/StoreThread.h"
#include "store/StoredRows.h"
#include "workbench/Workbench.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace Brindle {

/// Keeps the window's leads in the store, does to the store what the user does to the list, and brings back what an
/// earlier run left behind. The store never stands in the way: whatever it cannot do is one line for the user.
class StoreDesk : public QObject {
    Q_OBJECT

public:
    /// `settingsFolder`: where the store is unless the options name another one. `problem` is told what went wrong.
    StoreDesk(Workbench& bench, QString settingsFolder, std::function<void(const QString&)> problem);
    ~StoreDesk() override;

    /// Takes up the options: whether leads are kept, and where.
    void Open();

    /// Whether leads are kept; without it there is no place for searches either.
    bool Keeps() const { return keeper_ != nullptr; }
    /// The file of the store; empty: it is a server's.
    const QString& FileName() const { return fileName_; }

    /// A harvest begins on the page at `start`; call it before the first lead comes.
    void HarvestBegins(const QString& start);
    void PageRead() { ++pages_; }
    void HarvestEnded();
    /// The rows (ascending) are going to be removed from the list because the user does not want them any more. Returns
    /// what is to be called when they are gone.
    std::function<void()> RowsToGo(std::vector<qsizetype> rows);
    /// The rows have been exported. A harvest all of whose rows have been is not offered back.
    void RowsExported(const std::vector<qsizetype>& rows);

    /// Looks for leads of earlier runs that were neither exported nor let go; `Offered` comes when there are some.
    void LookForUnsettled();
    /// Puts what was offered into the list.
    void BringBack();
    /// What was offered is not wanted, and is not offered again. It stays in the history.
    void LetGo();
    /// Puts the leads of a harvest into the list, as far as they are not in it.
    void OpenHarvest(const StoredHarvest& harvest);
    void OpenHarvests(const QStringList& uids);

    /// Runs a job in the store's thread and what it returns in this one; false where there is no store to ask.
    bool Post(int kind, StoreThread::Job job);
    /// What was kept so far is in the store when it is asked, unless it takes long.
    void Flush();

Q_SIGNALS:
    void Offered(qint64 leads, qint64 harvests);
    /// Rows came into the list, or the store was changed by something else than a question.
    void Changed();

private:
    void Close();
    void Load(const StoredHarvest& harvest, qint64 afterSeq);
    void Append(const StoredHarvest& harvest, const std::vector<StoredLead>& leads);
    void Change(std::function<void(Database&)> what);

    Workbench& bench_;
    QString settingsFolder_;
    std::function<void(const QString&)> problem_;
    QString fileName_;
    QString spoolBase_; // of the journals of living sessions
    std::unique_ptr<LeadKeeper> keeper_;
    std::unique_ptr<StoreThread> thread_;
    std::unique_ptr<StoredRows> rows_;
    std::vector<StoredHarvest> offered_;
    std::shared_ptr<std::atomic<int>> changes_ = std::make_shared<std::atomic<int>>(0); // under way
    qint32 pages_ = 0;
};

} // namespace Brindle
