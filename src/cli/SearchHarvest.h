#pragma once

#include "cli/Session.h"
#include "net/Robots.h"
#include "store/LeadKeeper.h"
#include "store/Searches.h"
#include "workbench/SearchAddress.h"

namespace Brindle {

/// How a search came to its end in this worker's hands.
struct SearchOutcome {
    enum class End { Done, Failed, Interrupted, Lost };
    End How = End::Done;
    QString Error; ///< why it failed
};

/// What the hosts' robots.txt files say, for all searches of a worker.
struct RobotsOfHosts {
    RobotsCache::Fetch Fetch; ///< of the search in hand
    RobotsCache Cache{[this](const QString& url) { return Fetch(url); }};
};

/// Makes one search: from its start, or from the page that no worker before has read as a whole. Leads go into the
/// keeper, each whole page is noted with the search, and the lease is renewed meanwhile. Requests to a directory's host
/// take turns with those of all other workers.
class SearchHarvest {
public:
    SearchHarvest(const CommandLine& line, Database& database, LeadKeeper& keeper, RobotsOfHosts& robots,
                  QString worker);

    SearchOutcome Run(const StoredSearch& search);
    /// Pages that were read by the last `Run`, those of earlier workers included.
    qint32 Pages() const { return pages_; }

private:
    void FlushBefore();
    SearchOutcome Harvest(Session& session, const StoredSearch& search);

    const CommandLine& line_;
    Database& database_;
    LeadKeeper& keeper_;
    RobotsOfHosts& robots_;
    QString worker_;
    qint32 pages_ = 0;
};

} // namespace Brindle
