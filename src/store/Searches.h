#pragma once

#include "store/Database.h"
#include "store/SearchTable.h"

#include <array>
#include <optional>
#include <vector>

namespace Brindle {

enum class SearchState { Waiting = 0, Running = 1, Done = 2, Failed = 3, Cancelled = 4 };
inline constexpr int SearchStateCount = 5;

/// "waiting", "running", …
QString NameOf(SearchState state);

/// A search as the store has it.
struct StoredSearch {
    qint64 Id = 0;
    QString List;
    SearchRow Row;
    QString Host;
    SearchState State = SearchState::Waiting;
    int Tries = 0;
    QString Worker;
    qint64 WholeTo = 0; ///< the number in its harvest of the last lead before that page
    QString Category;   ///< that the first page named: listings without one have it
    QString GoOn;       ///< where the next page is that was not read as a whole; empty: at the start
    qint32 Pages = 0;
    QString Harvest; ///< its uid; empty before the first page
    QString Error;
};

/// A worker and the search that it has in hand.
struct WorkerRow {
    QString Name;
    qint64 Search = 0;
    QString Site;
    qint32 Pages = 0;
    qint64 LeaseLeft = 0; ///< milliseconds; below zero: it is gone
};

/// The searches of a store. A worker holds a search by a lease: whoever does not renew it in time loses it to another
/// one. All throw `StoreError`.
class Searches {
public:
    explicit Searches(Database& database) : database_(database) {}

    /// Adds the rows of a table that the store has not got; how many those were. `hostOf`: the host that a row goes to.
    qsizetype Add(const QString& list, const std::vector<SearchRow>& rows,
                  const std::function<QString(const SearchRow&)>& hostOf);
    /// Of a list whose searches have all ended, makes all wait again.
    void BeginAgain(const QString& list);
    /// Failed searches, or these, wait again; how many.
    qint64 Retry(const QList<qint64>& ids = {});
    /// Waiting and running searches, or these of them, are not made; how many.
    qint64 Cancel(const QList<qint64>& ids = {});

    /// The next search: one whose worker is gone, otherwise the next that waits; nothing when there is none just now.
    /// `list`: of this list alone; empty: of all. `perHost`: no more than so many at one host at once; 0: any number.
    std::optional<StoredSearch> Claim(const QString& worker, const QString& list, int perHost, qint64 leaseMs);
    /// The worker is still at it; false when the search is not its own any more.
    bool Renew(qint64 id, const QString& worker, qint64 leaseMs);
    /// The same, and everything before the page at `goOn` is in the store.
    bool Checkpoint(qint64 id, const QString& worker, const QString& harvest, const QString& goOn, qint32 pages,
                    const QString& category, qint64 leaseMs);
    /// Ends a search; false when it was not the worker's own any more, and nothing is changed then.
    bool Finish(qint64 id, const QString& worker, SearchState state, const QString& error, qint32 pages);
    /// Lets a search go, to be claimed at once.
    void Release(qint64 id, const QString& worker);

    /// Takes the next turn at a host, `pace` milliseconds behind the one before; how long to wait for it.
    qint64 TakeTurn(const QString& host, qint64 pace);

    std::array<qint64, SearchStateCount> Counts(const QString& list = {});
    /// Of a list or of all, in order; only those in this state when one is given.
    std::vector<StoredSearch> All(const QString& list = {}, std::optional<SearchState> state = {},
                                  qint64 limit = 1'000'000);
    std::vector<WorkerRow> Workers();
    /// Leads of a search's harvest.
    qint64 LeadsOf(const StoredSearch& search);
    /// The same for all searches of a list at once, in the order of `All`.
    std::vector<qint64> LeadsOfAll(const QString& list);

private:
    QString Now() const;
    QString Columns() const;
    std::vector<StoredSearch> Read(QSqlQuery& query);

    Database& database_;
};

} // namespace Brindle
