#include "store/Searches.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A search that ended this many workers is not given to another one.
constexpr int mostTries = 5;

QVariantList Values(const QList<qint64>& ids) {
    QVariantList values;
    for (const qint64 id : ids)
        values += id;
    return values;
}

} // namespace

QString NameOf(SearchState state) {
    static const std::array<QString, SearchStateCount> names{u"waiting"_s, u"running"_s, u"done"_s, u"failed"_s,
                                                             u"cancelled"_s};
    return names.at(static_cast<size_t>(state));
}

// Milliseconds since 1970 by the clock of the store, which is one for all workers.
QString Searches::Now() const {
    return database_.IsPostgres() ? u"CAST(extract(epoch FROM clock_timestamp())*1000 AS BIGINT)"_s
                                  : u"CAST((julianday('now')-2440587.5)*86400000 AS INTEGER)"_s;
}

QString Searches::Columns() const {
    return u"id,list,line,site,start,what,place,host,state,tries,worker,go_on,pages,harvest,error,whole_to,category"_s;
}

std::vector<StoredSearch> Searches::Read(QSqlQuery& query) {
    std::vector<StoredSearch> searches;
    while (query.next()) {
        StoredSearch search;
        search.Id = query.value(0).toLongLong();
        search.List = query.value(1).toString();
        search.Row = {query.value(2).toInt(), query.value(3).toString(), query.value(4).toString(),
                      query.value(5).toString(), query.value(6).toString()};
        search.Host = query.value(7).toString();
        search.State = static_cast<SearchState>(query.value(8).toInt());
        search.Tries = query.value(9).toInt();
        search.Worker = query.value(10).toString();
        search.GoOn = query.value(11).toString();
        search.Pages = query.value(12).toInt();
        search.Harvest = query.value(13).toString();
        search.Error = query.value(14).toString();
        search.WholeTo = query.value(15).toLongLong();
        search.Category = query.value(16).toString();
        searches.push_back(std::move(search));
    }
    query.finish();
    return searches;
}

qsizetype Searches::Add(const QString& list, const std::vector<SearchRow>& rows,
                        const std::function<QString(const SearchRow&)>& hostOf) {
    WriteTransaction transaction(database_);
    qsizetype added = 0;
    for (const SearchRow& row : rows)
        added += database_
                     .Run(u"INSERT INTO search(list,line,site,start,what,place,host,added) VALUES(?,?,?,?,?,?,?,"_s +
                              Now() + u") ON CONFLICT(list,line) DO NOTHING"_s,
                          {list, row.Line, row.Site, row.Start.isNull() ? u""_s : row.Start,
                           row.What.isNull() ? u""_s : row.What, row.Place.isNull() ? u""_s : row.Place, hostOf(row)})
                     .numRowsAffected();
    transaction.Commit();
    return added;
}

void Searches::BeginAgain(const QString& list) {
    WriteTransaction transaction(database_);
    const bool open =
        database_.Value(u"SELECT count(*) FROM search WHERE list=? AND state IN (0,1)"_s, {list}).toLongLong() > 0;
    if (!open)
        database_.Run(
            u"UPDATE search SET "
            u"state=0,tries=0,worker='',go_on='',whole_to=0,category='',pages=0,harvest='',error='',ended=NULL"
            " WHERE list=?"_s,
            {list});
    transaction.Commit();
}

qint64 Searches::Retry(const QList<qint64>& ids) {
    const QString which = ids.isEmpty() ? u" WHERE state=3"_s
                                        : QString(u" WHERE state IN (3,4) AND id IN ("_s + Marks(ids.size()) + u')');
    return database_.Run(u"UPDATE search SET state=0,tries=0,error='',ended=NULL"_s + which, Values(ids))
        .numRowsAffected();
}

qint64 Searches::Cancel(const QList<qint64>& ids) {
    const QString which = ids.isEmpty() ? u""_s : QString(u" AND id IN ("_s + Marks(ids.size()) + u')');
    return database_
        .Run(u"UPDATE search SET state=4,worker='',ended="_s + Now() + u" WHERE state IN (0,1)"_s + which, Values(ids))
        .numRowsAffected();
}

std::optional<StoredSearch> Searches::Claim(const QString& worker, const QString& list, int perHost, qint64 leaseMs) {
    WriteTransaction transaction(database_);
    const bool isPostgres = database_.IsPostgres();
    // Whether a host has room is only sure while nobody else claims.
    if (perHost > 0 && isPostgres)
        database_.Execute(u"SELECT pg_advisory_xact_lock(7022)"_s);
    const QString lock = isPostgres ? u" FOR UPDATE OF search SKIP LOCKED"_s : QString();
    QString narrowed = list.isEmpty() ? QString() : u" AND search.list=?"_s;
    if (perHost > 0)
        narrowed += u" AND (SELECT count(*) FROM search AS other WHERE other.state=1 AND other.host=search.host"
                    " AND other.lease>=%1)<%2"_s.arg(Now())
                        .arg(perHost);
    const auto first = [&](const QString& condition, const QString& order) {
        const QVariantList values = list.isEmpty() ? QVariantList() : QVariantList{list};
        return database_
            .Value(u"SELECT search.id FROM search WHERE "_s + condition + narrowed + u" ORDER BY "_s + order +
                       u" LIMIT 1"_s + lock,
                   values)
            .toLongLong();
    };
    // What killed its workers again and again would kill the others too.
    database_.Run(u"UPDATE search SET state=3,error='its workers ended before it, %1 times',worker='',ended=%2"
                  " WHERE state=1 AND lease<%2 AND tries>=%1"_s.arg(mostTries)
                      .arg(Now()));
    qint64 id = first(u"search.state=1 AND search.lease<"_s + Now(), u"search.lease"_s);
    if (id == 0)
        id = first(u"search.state=0"_s, u"search.id"_s);
    std::optional<StoredSearch> claimed;
    if (id != 0) {
        database_.Run(u"UPDATE search SET state=1,worker=?,tries=tries+1,lease="_s + Now() + u"+? WHERE id=?"_s,
                      {worker, leaseMs, id});
        claimed = Read(database_.Run(u"SELECT "_s + Columns() + u" FROM search WHERE id=?"_s, {id})).at(0);
    }
    transaction.Commit();
    return claimed;
}

bool Searches::Renew(qint64 id, const QString& worker, qint64 leaseMs) {
    return database_
               .Run(u"UPDATE search SET lease="_s + Now() + u"+? WHERE id=? AND worker=? AND state=1"_s,
                    {leaseMs, id, worker})
               .numRowsAffected() == 1;
}

bool Searches::Checkpoint(qint64 id, const QString& worker, const QString& harvest, const QString& goOn, qint32 pages,
                          const QString& category, qint64 leaseMs) {
    // A worker that gets on is none that the search kills.
    return database_
               .Run(u"UPDATE search SET harvest=?,go_on=?,pages=?,tries=1,"
                    "category=?,whole_to=(SELECT last_seq FROM harvest WHERE uid=?),lease="_s +
                        Now() + u"+? WHERE id=? AND worker=? AND state=1"_s,
                    {harvest, goOn.isNull() ? u""_s : goOn, pages, category.isNull() ? u""_s : category, harvest,
                     leaseMs, id, worker})
               .numRowsAffected() == 1;
}

bool Searches::Finish(qint64 id, const QString& worker, SearchState state, const QString& error, qint32 pages) {
    return database_
               .Run(u"UPDATE search SET state=?,error=?,pages=?,worker='',ended="_s + Now() +
                        u" WHERE id=? AND worker=? AND state=1"_s,
                    {static_cast<int>(state), error.isNull() ? u""_s : error, pages, id, worker})
               .numRowsAffected() == 1;
}

void Searches::Release(qint64 id, const QString& worker) {
    database_.Run(u"UPDATE search SET state=0,tries=0,worker='' WHERE id=? AND worker=? AND state=1"_s, {id, worker});
}

qint64 Searches::TakeTurn(const QString& host, qint64 pace) {
    const QString latest = database_.IsPostgres() ? u"greatest"_s : u"max"_s;
    return database_
        .Value(u"INSERT INTO host_turn(host,next_at) VALUES(?,%1+?) ON CONFLICT(host) DO UPDATE SET"
               " next_at=%2(host_turn.next_at,%1)+? RETURNING next_at-?-%1"_s.arg(Now(), latest),
               {host, pace, pace, pace})
        .toLongLong();
}

std::array<qint64, SearchStateCount> Searches::Counts(const QString& list) {
    std::array<qint64, SearchStateCount> counts{};
    QSqlQuery& query = list.isEmpty()
                           ? database_.Run(u"SELECT state,count(*) FROM search GROUP BY state"_s)
                           : database_.Run(u"SELECT state,count(*) FROM search WHERE list=? GROUP BY state"_s, {list});
    while (query.next())
        counts.at(static_cast<size_t>(query.value(0).toInt())) = query.value(1).toLongLong();
    query.finish();
    return counts;
}

std::vector<StoredSearch> Searches::All(const QString& list, std::optional<SearchState> state, qint64 limit) {
    QStringList parts{u"1=1"_s};
    QVariantList values;
    if (!list.isEmpty()) {
        parts += u"list=?"_s;
        values += list;
    }
    if (state) {
        parts += u"state=?"_s;
        values += static_cast<int>(*state);
    }
    values += limit;
    return Read(database_.Run(u"SELECT "_s + Columns() + u" FROM search WHERE "_s + parts.join(u" AND "_s) +
                                  u" ORDER BY id LIMIT ?"_s,
                              values));
}

std::vector<WorkerRow> Searches::Workers() {
    std::vector<WorkerRow> workers;
    QSqlQuery& query = database_.Run(u"SELECT worker,id,site,pages,lease-"_s + Now() +
                                     u" FROM search WHERE state=1 ORDER BY worker"_s);
    while (query.next())
        workers.push_back({query.value(0).toString(), query.value(1).toLongLong(), query.value(2).toString(),
                           query.value(3).toInt(), query.value(4).toLongLong()});
    query.finish();
    return workers;
}

std::vector<qint64> Searches::LeadsOfAll(const QString& list) {
    std::vector<qint64> leads;
    QSqlQuery& query = database_.Run(u"SELECT harvest.leads FROM search LEFT JOIN harvest ON harvest.uid=search.harvest"
                                     " WHERE search.list=? ORDER BY search.id"_s,
                                     {list});
    while (query.next())
        leads.push_back(query.value(0).toLongLong());
    query.finish();
    return leads;
}

qint64 Searches::LeadsOf(const StoredSearch& search) {
    return database_.Value(u"SELECT leads FROM harvest WHERE uid=?"_s, {search.Harvest}).toLongLong();
}

} // namespace Brindle
