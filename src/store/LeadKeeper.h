#pragma once

#include "core/Services.h"
#include "store/StoreRecords.h"
#include "store/StoreTarget.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Brindle {

class Database;

/// What of a kept lead its listeners need: the harvest, and the place in it.
struct KeptLead {
    QString HarvestUid;
    qint64 Seq = 0;
};

/// Keeps the leads of one session in a store. A lead is in the session's journal when `Keep` returns; a thread of its
/// own brings it into the database from there, so that a locked, full or silent store never holds the harvest. What the
/// store cannot take stays in the journal, and whoever opens the store next takes it in.
class LeadKeeper : public QObject, public LeadKeeping {
public:
    /// `spoolFolder`: where the journal lies for a server's store. `problem` is called, in this thread and from its
    /// event loop, with one line when the store cannot be used, and with one when it can be used again.
    LeadKeeper(const StoreTarget& target, const QString& spoolFolder, std::function<void(const QString&)> problem);
    /// Waits a second at most for what is under way.
    ~LeadKeeper() override;

    /// A harvest begins; the one before it ends as `Stopped` unless it has ended. Only origin,
    /// site, start, what and place are the caller's to say; the rest is filled in here.
    void Begin(HarvestInfo harvest);
    /// Goes on with a harvest that the store has and that this session has taken over, behind its last lead.
    void GoOn(const HarvestInfo& harvest, qint64 lastSeq);
    void Keep(const Lead& lead) override;
    const QString& HarvestUid() const { return harvest_.Uid; }
    void End(HarvestEnding ending, qint32 pages);
    bool InHarvest() const { return !harvest_.Uid.isEmpty(); }

    /// The lead that `Keep` was called with last.
    const KeptLead& Last() const { return last_; }
    const QString& Session() const { return session_; }
    const StoreTarget& Target() const;

    /// Waits until the database has everything, for so long at most; true when it has. The reason why not is in
    /// `Trouble`.
    bool Flush(int milliseconds);
    /// Why the store cannot be used just now; empty when it can.
    QString Trouble() const;
    /// Where that lies which the store has not got yet; empty when no file takes it.
    QString JournalFileName() const;

private:
    struct Shared;
    static void Work(const std::shared_ptr<Shared>& shared);
    void Tell(const StoreEvent& event);

    std::shared_ptr<Shared> shared_;
    QString session_;
    HarvestInfo harvest_;
    qint64 seq_ = 0;
    KeptLead last_;
};

/// The user and the machine, as harvests name them.
QString UserAtMachine();

/// Takes in what earlier sessions could not bring into the store; nothing where that can only be read. Throws
/// `StoreError`.
void TakeInOrphans(Database& database, const QString& spoolFolder);

} // namespace Brindle
