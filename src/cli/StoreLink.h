#pragma once

#include "cli/Session.h"
#include "store/Database.h"
#include "store/LeadKeeper.h"

#include <memory>

namespace Brindle {

/// The store that `--store` names; without it, the window's: the one of the options, or the file in the settings
/// folder. Throws `Failure`.
StoreTarget StoreInForce(const CommandLine& line, const MoreOptions& options, Platform& platform);

/// For those who only read: throws `Failure` where there is no file of that name, instead of making one.
void CheckThereIs(const StoreTarget& target);

/// Keeps the leads of one harvest or parse where `--store` says so; does nothing without it.
class StoreLink {
public:
    /// Throws `UsageError` for a target that is none.
    StoreLink(const CommandLine& line, Session& session, const QString& start);
    ~StoreLink();
    StoreLink(const StoreLink&) = delete;
    StoreLink& operator=(const StoreLink&) = delete;

    /// The harvest has ended; waits for the store a little and says what it has not got.
    void End(HarvestEnding ending, qint64 pages);

private:
    Session& session_;
    std::unique_ptr<LeadKeeper> keeper_;
};

} // namespace Brindle
