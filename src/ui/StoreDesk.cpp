#include "ui/StoreDesk.h"

#include "core/LeadListCommands.h"
#include "store/Journal.h"
#include "store/StoreEdits.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QThread>

#include <algorithm>
#include <map>
#include <utility>

namespace Brindle {

namespace {

constexpr qint64 leadsAtOnce = 2000; // of a load, so that the window stays alive
constexpr int flushMs = 1000;
constexpr int waitStep = 5;

} // namespace

StoreDesk::StoreDesk(Workbench& bench, QString settingsFolder, std::function<void(const QString&)> problem)
    : bench_(bench), settingsFolder_(std::move(settingsFolder)), problem_(std::move(problem)) {}

StoreDesk::~StoreDesk() {
    Close();
}

void StoreDesk::Close() {
    bench_.Job.Store = nullptr;
    // What the user has done is not lost by closing the window, unless the store hangs.
    for (int waited = 0; *changes_ > 0 && waited < flushMs; waited += waitStep)
        QThread::msleep(waitStep);
}

void StoreDesk::Open() {
    Close();
    rows_.reset();
    thread_.reset();
    keeper_.reset();
    offered_.clear();
    try {
        const QString& named = bench_.More.StoreTarget;
        const StoreTarget target = StoreTarget::Parse(named.isEmpty() ? DefaultStoreFile(settingsFolder_) : named);
        fileName_ = target.FileName;
        spoolBase_ = target.PendingBase(settingsFolder_);
        if (bench_.More.StoreKeep) {
            keeper_ = std::make_unique<LeadKeeper>(target, settingsFolder_, problem_);
            bench_.Job.Store = keeper_.get();
        }
        // Where nothing is kept, a store that is not there is not made for the sake of a question.
        if (keeper_ || target.IsPostgres() || QFileInfo::exists(target.FileName))
            thread_ = std::make_unique<StoreThread>(target, settingsFolder_);
    } catch (const Failure& failure) {
        problem_(failure.Message());
    }
    rows_ = std::make_unique<StoredRows>(bench_.Leads, keeper_.get());
}

void StoreDesk::HarvestBegins(const QString& start) {
    pages_ = 0;
    if (!keeper_)
        return;
    HarvestInfo harvest;
    harvest.Origin = HarvestOrigin::Window;
    harvest.Site = bench_.State.CurrID;
    harvest.Start = start;
    keeper_->Begin(harvest);
}

void StoreDesk::HarvestEnded() {
    if (!keeper_ || !keeper_->InHarvest())
        return;
    const HarvestState& state = bench_.State;
    const QString uid = keeper_->Last().HarvestUid;
    keeper_->End(!state.FailureMessage.isEmpty() ? HarvestEnding::Failed
                 : state.ShouldStop              ? HarvestEnding::Stopped
                                                 : HarvestEnding::Done,
                 pages_);
    // What went into the automatic file is exported.
    if (bench_.Options.cExportAutomatic && state.FailureMessage.isEmpty() && !uid.isEmpty())
        Change([uid](Database& database) { StoreEdits(database).Settle(uid); });
    Q_EMIT Changed();
}

std::function<void()> StoreDesk::RowsToGo(std::vector<qsizetype> rows) {
    std::map<QString, std::vector<qint64>> places;
    if (rows_) {
        for (const qsizetype row : rows)
            if (const KeptLead& kept = rows_->At(row); !kept.HarvestUid.isEmpty())
                places[kept.HarvestUid].push_back(kept.Seq);
        rows_->ToGo(rows);
    }
    return [this, places = std::move(places)] {
        if (!places.empty())
            Change([places](Database& database) {
                for (const auto& [uid, seqs] : places)
                    StoreEdits(database).DeleteLeads(uid, seqs);
            });
    };
}

void StoreDesk::RowsExported(const std::vector<qsizetype>& rows) {
    if (!rows_)
        return;
    std::map<QString, qint64> upTo;
    std::map<QString, qsizetype> missing;
    for (qsizetype row = 0; row < bench_.Leads.Count(); ++row)
        ++missing[rows_->At(row).HarvestUid];
    for (const qsizetype row : rows) {
        const KeptLead& kept = rows_->At(row);
        --missing[kept.HarvestUid];
        upTo[kept.HarvestUid] = std::max(upTo[kept.HarvestUid], kept.Seq);
    }
    std::erase_if(upTo, [&](const auto& entry) { return entry.first.isEmpty() || missing[entry.first] > 0; });
    if (!upTo.empty())
        Change([upTo](Database& database) {
            for (const auto& [uid, seq] : upTo)
                StoreEdits(database).Settle(uid, seq);
        });
}

void StoreDesk::LookForUnsettled() {
    if (!bench_.More.StoreKeep)
        return;
    Post(0, [this, base = spoolBase_](Database& database) -> std::function<void()> {
        std::vector<StoredHarvest> found =
            StoreQueries(database).UnsettledHarvests(UserAtMachine(), Journal::LiveSessions(base));
        return [this, found = std::move(found)] {
            offered_ = found;
            qint64 leads = 0;
            for (const StoredHarvest& harvest : offered_)
                leads += harvest.Unsettled;
            if (leads > 0)
                Q_EMIT Offered(leads, static_cast<qint64>(offered_.size()));
        };
    });
}

void StoreDesk::BringBack() {
    for (const StoredHarvest& harvest : std::exchange(offered_, {}))
        Load(harvest, 0);
}

void StoreDesk::LetGo() {
    if (offered_.empty())
        return; // the bar said something else
    Change([harvests = std::exchange(offered_, {})](Database& database) {
        for (const StoredHarvest& harvest : harvests)
            StoreEdits(database).Settle(harvest.Info.Uid);
    });
}

void StoreDesk::OpenHarvest(const StoredHarvest& harvest) {
    Flush();
    Load(harvest, 0);
}

void StoreDesk::OpenHarvests(const QStringList& uids) {
    for (const QString& uid : uids)
        Post(0, [this, uid](Database& database) -> std::function<void()> {
            return [this, harvest = StoreQueries(database).HarvestOf(uid)] {
                if (harvest)
                    Load(*harvest, 0);
            };
        });
}

void StoreDesk::Load(const StoredHarvest& harvest, qint64 afterSeq) {
    Post(0, [this, harvest, afterSeq](Database& database) -> std::function<void()> {
        std::vector<StoredLead> leads = StoreQueries(database).LeadsOf(harvest.Id, afterSeq, leadsAtOnce);
        return [this, harvest, leads = std::move(leads)] {
            if (leads.empty())
                return Q_EMIT Changed();
            Append(harvest, leads);
            Load(harvest, leads.back().Seq);
        };
    });
}

void StoreDesk::Append(const StoredHarvest& harvest, const std::vector<StoredLead>& leads) {
    for (const StoredLead& stored : leads) {
        const QString key = DuplicateKeyOf(harvest.Info.Site, stored.Lead);
        if (!key.isEmpty()) {
            if (bench_.Leads.DuplicatedItems.Contains(key))
                continue;
            bench_.Leads.DuplicatedItems.Add(key);
        }
        rows_->Expect({harvest.Info.Uid, stored.Seq});
        bench_.Leads.Append(stored.Lead);
    }
}

bool StoreDesk::Post(int kind, StoreThread::Job job) {
    if (thread_)
        thread_->Post(kind, std::move(job), problem_);
    return thread_ != nullptr;
}

void StoreDesk::Flush() {
    if (keeper_)
        keeper_->Flush(flushMs);
}

void StoreDesk::Change(std::function<void(Database&)> what) {
    Flush(); // what is to be changed may be on its way
    ++*changes_;
    const bool posted = Post(0, [this, what = std::move(what), changes = changes_](Database& database) {
        const auto done = qScopeGuard([&] { --*changes; });
        what(database);
        return std::function<void()>([this] { Q_EMIT Changed(); });
    });
    if (!posted)
        --*changes_;
}

} // namespace Brindle
