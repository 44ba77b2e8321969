#include "cli/StoreLink.h"

#include <QDir>
#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// At the end of a command nobody waits for anything else, so a busy store gets some time.
constexpr int lastWait = 10'000;

} // namespace

StoreTarget StoreInForce(const CommandLine& line, const MoreOptions& options, Platform& platform) {
    if (!line.Store.isEmpty())
        return StoreTarget::Parse(line.Store);
    if (!options.StoreTarget.isEmpty())
        return StoreTarget::Parse(options.StoreTarget);
    return StoreTarget::Parse(DefaultStoreFile(platform.SettingsFolder()));
}

void CheckThereIs(const StoreTarget& target) {
    if (!target.IsPostgres() && !QFileInfo::exists(target.FileName))
        throw Failure(u"%1: no leads were kept there yet"_s.arg(target.Shown()));
}

StoreLink::StoreLink(const CommandLine& line, Session& session, const QString& start) : session_(session) {
    if (line.Store.isEmpty())
        return;
    keeper_ = std::make_unique<LeadKeeper>(StoreTarget::Parse(line.Store), session.System->SettingsFolder(),
                                           [&session](const QString& problem) { session.Out.Error(problem); });
    HarvestInfo harvest;
    harvest.Origin = HarvestOrigin::CommandLine;
    harvest.Site = session.State.CurrID;
    harvest.Start = start;
    harvest.What = line.What;
    harvest.Place = line.Place;
    keeper_->Begin(harvest);
    session.Job.Store = keeper_.get();
}

StoreLink::~StoreLink() {
    if (keeper_)
        session_.Job.Store = nullptr;
}

void StoreLink::End(HarvestEnding ending, qint64 pages) {
    if (!keeper_)
        return;
    keeper_->End(ending, static_cast<qint32>(pages));
    if (keeper_->Flush(lastWait))
        return;
    const QString store = keeper_->Target().Shown();
    const QString file = QDir::toNativeSeparators(keeper_->JournalFileName());
    session_.Out.Error(file.isEmpty()
                           ? u"%1: the last leads were not kept"_s.arg(store)
                           : u"%1: the last leads wait in %2 until the store is used again"_s.arg(store, file));
}

} // namespace Brindle
