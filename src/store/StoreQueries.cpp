#include "store/StoreQueries.h"

#include "store/LeadColumns.h"
#include "store/LeadWords.h"
#include "store/StoreWriter.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QStringView, FieldCount> columnNames{
    u"category", u"name",  u"full_address", u"street",  u"city",  u"state",        u"postal_code",
    u"country",  u"phone", u"fax",          u"website", u"email", u"full_address", u"details_link"};

const QString harvestColumns =
    u"id,uid,session,origin,site,start,what,place,started_by,begun,ended,ending,pages,leads,new_leads,"
    "CASE WHEN leads=0 OR last_seq<=settled_to THEN 0 ELSE (SELECT count(*) FROM lead WHERE lead.harvest=harvest.id"
    " AND lead.seq>harvest.settled_to) END"_s;

// Leads fewer than one in so many are looked up one by one.
constexpr qint64 thinness = 50;

// The columns of a stored lead in front of those of its fields.
QString StoredColumns() {
    return u"lead.id,lead.harvest,lead.seq,lead.business,harvest.begun/1000+lead.found,business.first_seen,"
           "business.last_seen,harvest.site,lead.changed,"_s +
           LeadColumns();
}

QString StoredTables() {
    return LeadTables() + u" LEFT JOIN business ON business.id=lead.business JOIN harvest ON harvest.id=lead.harvest"_s;
}

// The words as each engine's index is asked for their beginnings.
QString WordQuery(const QStringList& words, bool isPostgres) {
    QStringList parts;
    for (const QString& word : words)
        parts += isPostgres ? QString(u'\'' + word + u"':*") : QString(u'"' + word + u"\"*");
    return parts.join(isPostgres ? u" & "_s : u" AND "_s);
}

} // namespace

// What of a filter the harvests answer: which of them it takes leads of.
StoreQueries::Conditions StoreQueries::HarvestsOf(const LeadFilter& filter) {
    Conditions conditions{.Where = u" WHERE leads>0"_s};
    if (!filter.Site.isEmpty()) {
        conditions.Where += u" AND site=?"_s;
        conditions.Values += filter.Site;
    }
    if (filter.Harvest != 0) {
        conditions.Where += u" AND id=?"_s;
        conditions.Values += filter.Harvest;
    }
    if (filter.Since != 0) {
        conditions.Where += u" AND (ended IS NULL OR ended>=?)"_s;
        conditions.Values += filter.Since * 1000;
    }
    if (filter.Until != 0) {
        conditions.Where += u" AND begun<?"_s;
        conditions.Values += filter.Until * 1000;
    }
    return conditions;
}

// The numbers of leads grow within a harvest, so its first and last lead bound those of all its leads. Whether the
// leads of these harvests lie thinly between the bounds decides if they are looked up or walked through.
StoreQueries::Bounds StoreQueries::BoundsOf(const LeadFilter& filter) {
    const Conditions harvests = HarvestsOf(filter);
    const QString lead = u"(SELECT id FROM lead WHERE lead.harvest=harvest.id ORDER BY seq"_s;
    QSqlQuery& query = database_.Run(u"SELECT min("_s + lead + u" LIMIT 1)),max("_s + lead +
                                         u" DESC LIMIT 1)),sum(leads) FROM harvest"_s + harvests.Where,
                                     harvests.Values);
    Bounds bounds;
    if (query.next() && !query.isNull(0)) {
        bounds.First = query.value(0).toLongLong();
        bounds.Last = query.value(1).toLongLong();
        bounds.Thin = query.value(2).toLongLong() < (bounds.Last - bounds.First) / thinness;
    }
    query.finish();
    return bounds;
}

// The moment at which the lead of a row was found is that of its harvest's beginning, and `found` on top of it.
void StoreQueries::Narrow(const LeadFilter& filter, QStringList& parts, QVariantList& values) {
    // Most harvests lie on one side of a moment as a whole; only of those that were going on then every lead is asked.
    const auto ofHarvests = [&](const QString& side, const QString& whole, qint64 seconds) {
        parts += u"("_s + side + u" IN (SELECT id FROM harvest WHERE "_s + whole + u") OR ("_s + side +
                 u" IN (SELECT id FROM harvest WHERE begun<? AND (ended IS NULL OR ended>=?)) AND lead.found"_s +
                 (whole.startsWith(u"begun"_s) ? u">=?"_s : u"<?"_s) +
                 u"-(SELECT begun/1000 FROM harvest WHERE harvest.id=lead.harvest)))"_s;
        values += {seconds * 1000, seconds * 1000, seconds * 1000, seconds};
    };
    const bool narrowed = !filter.Site.isEmpty() || filter.Harvest != 0 || filter.Since != 0 || filter.Until != 0;
    if (!narrowed)
        return;
    // Without the sign an engine would sort all leads of many harvests for the sake of a page of them.
    const Bounds bounds = BoundsOf(filter);
    const QString harvest = bounds.Thin ? u"lead.harvest"_s : u"+lead.harvest"_s;
    parts += u"lead.id BETWEEN ? AND ?"_s;
    values += {bounds.First, bounds.Last};
    if (!filter.Site.isEmpty()) {
        parts += harvest + u" IN (SELECT id FROM harvest WHERE site=?)"_s;
        values += filter.Site;
    }
    if (filter.Harvest != 0) {
        parts += u"lead.harvest=?"_s;
        values += filter.Harvest;
    }
    if (filter.Since != 0)
        ofHarvests(harvest, u"begun>=?"_s, filter.Since);
    if (filter.Until != 0)
        ofHarvests(harvest, u"ended<?"_s, filter.Until);
}

StoreQueries::Conditions StoreQueries::Of(const LeadFilter& filter) {
    Conditions conditions;
    QStringList parts;
    Narrow(filter, parts, conditions.Values);
    if (!filter.Text.isEmpty()) {
        const QStringList words = WordsOf(filter.Text);
        conditions.Nothing = words.isEmpty();
        try {
            StoreWriter(database_).IndexWords();
        } catch (const StoreError& error) {
            // Somebody is writing, and does it then; or nothing can be written any more, and what is there can be read.
            if (error.Reason == StoreError::Why::Damaged)
                throw;
        }
        if (database_.IsPostgres()) {
            parts += u"lead.words @@ ?::tsquery"_s;
        } else {
            // The index gives the numbers in their order, so a page of them needs no more of it than that.
            conditions.From = u"lead_words CROSS JOIN lead ON lead.id=lead_words.rowid"_s;
            conditions.Id = u"lead_words.rowid"_s;
            parts.replaceInStrings(u"lead.id BETWEEN"_s, u"lead_words.rowid BETWEEN"_s);
            parts += u"lead_words MATCH ?"_s;
        }
        conditions.Values += WordQuery(words, database_.IsPostgres());
    } else if (filter.OnlyNew && !database_.IsPostgres()) {
        // A business has the number of its first lead, so what has been seen before is not even looked at.
        conditions.From = u"business CROSS JOIN lead ON lead.id=business.id"_s;
        conditions.Id = u"business.id"_s;
        parts.replaceInStrings(u"lead.id BETWEEN"_s, u"business.id BETWEEN"_s);
    }
    if (filter.OnlyNew)
        parts += u"lead.business=lead.id"_s;
    if (!parts.isEmpty())
        conditions.Where = u" WHERE "_s + parts.join(u" AND "_s);
    return conditions;
}

std::vector<StoredLead> StoreQueries::Read(QSqlQuery& query) {
    std::vector<StoredLead> leads;
    while (query.next()) {
        StoredLead lead;
        lead.Id = query.value(0).toLongLong();
        lead.Harvest = query.value(1).toLongLong();
        lead.Seq = query.value(2).toLongLong();
        lead.Business = query.value(3).toLongLong();
        lead.Found = query.value(4).toLongLong();
        lead.FirstSeen = query.value(5).toLongLong();
        lead.LastSeen = query.value(6).toLongLong();
        lead.Site = query.value(7).toString();
        lead.Changed = query.value(8).toInt();
        lead.Lead = ReadLead(query, 9);
        leads.push_back(std::move(lead));
    }
    query.finish();
    return leads;
}

std::vector<StoredHarvest> StoreQueries::ReadHarvests(QSqlQuery& query) {
    std::vector<StoredHarvest> harvests;
    while (query.next()) {
        StoredHarvest harvest;
        harvest.Id = query.value(0).toLongLong();
        HarvestInfo& info = harvest.Info;
        info.Uid = query.value(1).toString();
        info.Session = query.value(2).toString();
        info.Origin = static_cast<HarvestOrigin>(query.value(3).toInt());
        info.Site = query.value(4).toString();
        info.Start = query.value(5).toString();
        info.What = query.value(6).toString();
        info.Place = query.value(7).toString();
        info.By = query.value(8).toString();
        info.Begun = query.value(9).toLongLong();
        if (!query.isNull(10))
            harvest.Ended = query.value(10).toLongLong();
        harvest.Ending = static_cast<HarvestEnding>(query.value(11).toInt());
        harvest.Pages = query.value(12).toInt();
        harvest.Leads = query.value(13).toLongLong();
        harvest.NewLeads = query.value(14).toLongLong();
        harvest.Unsettled = query.value(15).toLongLong();
        harvests.push_back(std::move(harvest));
    }
    query.finish();
    return harvests;
}

std::vector<StoredHarvest> StoreQueries::Harvests(qint64 offset, qint64 limit, const QString& site) {
    const QString where = site.isEmpty() ? u""_s : u" WHERE site=?"_s;
    QVariantList values;
    if (!site.isEmpty())
        values += site;
    values += {limit, offset};
    return ReadHarvests(database_.Run(u"SELECT "_s + harvestColumns + u" FROM harvest"_s + where +
                                          u" ORDER BY begun DESC, id DESC LIMIT ? OFFSET ?"_s,
                                      values));
}

qint64 StoreQueries::HarvestCount() {
    return database_.Value(u"SELECT count(*) FROM harvest"_s).toLongLong();
}

qint64 StoreQueries::BusinessCount() {
    return database_.Value(u"SELECT count(*) FROM business"_s).toLongLong();
}

std::optional<StoredHarvest> StoreQueries::HarvestOf(const QString& uid) {
    const std::vector<StoredHarvest> found =
        ReadHarvests(database_.Run(u"SELECT "_s + harvestColumns + u" FROM harvest WHERE uid=?"_s, {uid}));
    return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<StoredHarvest> StoreQueries::UnsettledHarvests(const QString& by, const QStringList& liveSessions) {
    std::vector<StoredHarvest> harvests = ReadHarvests(database_.Run(
        u"SELECT "_s + harvestColumns +
            u" FROM harvest WHERE origin=? AND started_by=? AND leads>0 AND last_seq>settled_to ORDER BY begun, id"_s,
        {static_cast<int>(HarvestOrigin::Window), by}));
    std::erase_if(harvests, [&](const StoredHarvest& harvest) {
        return harvest.Unsettled == 0 || liveSessions.contains(harvest.Info.Session);
    });
    return harvests;
}

QStringList StoreQueries::Sites() {
    QStringList sites;
    QSqlQuery& query = database_.Run(u"SELECT DISTINCT site FROM harvest WHERE leads>0 ORDER BY site"_s);
    while (query.next())
        sites += query.value(0).toString();
    query.finish();
    return sites;
}

qint64 StoreQueries::LeadCount(const LeadFilter& filter) {
    if (filter.Text.isEmpty()) {
        // The harvests know it, but for those that were going on at one of the moments.
        const Conditions harvests = HarvestsOf(filter);
        QString whole = u"1=1"_s;
        QString within;
        QVariantList wholeValues;
        QVariantList values;
        if (filter.Since != 0) {
            whole += u" AND begun>=?"_s;
            wholeValues += filter.Since * 1000;
            within += u" AND lead.found>=?-begun/1000"_s;
            values += filter.Since;
        }
        if (filter.Until != 0) {
            whole += u" AND ended<?"_s;
            wholeValues += filter.Until * 1000;
            within += u" AND lead.found<?-begun/1000"_s;
            values += filter.Until;
        }
        if (filter.OnlyNew)
            within += u" AND lead.business=lead.id"_s;
        return database_
            .Value(u"SELECT sum(CASE WHEN "_s + whole + u" THEN "_s + (filter.OnlyNew ? u"new_leads"_s : u"leads"_s) +
                       u" ELSE (SELECT count(*) FROM lead WHERE lead.harvest=harvest.id"_s + within +
                       u") END) FROM harvest"_s + harvests.Where,
                   wholeValues + values + harvests.Values)
            .toLongLong();
    }
    const Conditions conditions = Of(filter);
    if (conditions.Nothing)
        return 0;
    const bool textAlone = conditions.Values.size() == 1 && !filter.OnlyNew;
    return database_
        .Value(u"SELECT count(*) FROM "_s + (textAlone && !database_.IsPostgres() ? u"lead_words"_s : conditions.From) +
                   conditions.Where,
               conditions.Values)
        .toLongLong();
}

QString StoreQueries::By(const LeadOrder& order, bool descending, const QString& id) const {
    const QString direction = descending ? u" DESC"_s : u""_s;
    if (order.Column < 0 || order.Column >= FieldCount)
        return id + direction;
    const QString column = columnNames.at(static_cast<size_t>(order.Column)).toString();
    return (database_.IsPostgres() ? QString(u"lower(lead."_s + column + u") COLLATE \"C\""_s)
                                   : QString(u"lead."_s + column + u" COLLATE NOCASE"_s)) +
           direction + u',' + id + direction;
}

std::vector<qint64> StoreQueries::Numbers(const LeadFilter& filter, const LeadOrder& order) {
    std::vector<qint64> numbers;
    const Conditions conditions = Of(filter);
    if (conditions.Nothing)
        return numbers;
    QSqlQuery& query = database_.Run(u"SELECT lead.id FROM "_s + conditions.From + conditions.Where + u" ORDER BY "_s +
                                         By(order, order.Descending, conditions.Id),
                                     conditions.Values);
    while (query.next())
        numbers.push_back(query.value(0).toLongLong());
    query.finish();
    return numbers;
}

std::vector<StoredLead> StoreQueries::LeadsOf(std::span<const qint64> numbers) {
    if (numbers.empty())
        return {};
    QVariantList values;
    QHash<qint64, size_t> places;
    for (const qint64 number : numbers) {
        places.insert(number, places.size());
        values += number;
    }
    std::vector<StoredLead> leads = Read(database_.Run(u"SELECT "_s + StoredColumns() + u" FROM "_s + StoredTables() +
                                                           u" WHERE lead.id IN ("_s + Marks(values.size()) + u')',
                                                       values));
    std::sort(leads.begin(), leads.end(),
              [&](const StoredLead& one, const StoredLead& other) { return places[one.Id] < places[other.Id]; });
    return leads;
}

std::vector<StoredLead> StoreQueries::Leads(const LeadFilter& filter, const LeadOrder& order, qint64 offset,
                                            qint64 limit) {
    const Conditions conditions = Of(filter);
    if (conditions.Nothing)
        return {};
    bool backwards = false;
    // A place in the second half is counted from the other end, where the number of all is known.
    if (offset > limit && filter.Text.isEmpty() && filter.Since == 0 && filter.Until == 0 && !filter.OnlyNew) {
        const qint64 count = LeadCount(filter);
        if (offset > count / 2) {
            limit = std::min(limit, count - offset);
            offset = count - offset - limit;
            backwards = true;
        }
        if (limit <= 0)
            return {};
    }
    // The page is cut out of the numbers alone; only its rows are read whole.
    QVariantList values = conditions.Values;
    values += {limit, offset};
    return Read(database_.Run(u"SELECT "_s + StoredColumns() + u" FROM "_s + StoredTables() +
                                  u" WHERE lead.id IN (SELECT lead.id FROM "_s + conditions.From + conditions.Where +
                                  u" ORDER BY "_s + By(order, order.Descending != backwards, conditions.Id) +
                                  u" LIMIT ? OFFSET ?) ORDER BY "_s + By(order, order.Descending, u"lead.id"_s),
                              values));
}

std::vector<StoredLead> StoreQueries::LeadsOf(qint64 harvest, qint64 afterSeq, qint64 limit) {
    return Read(database_.Run(u"SELECT "_s + StoredColumns() + u" FROM "_s + StoredTables() +
                                  u" WHERE lead.harvest=? AND lead.seq>? ORDER BY lead.seq LIMIT ?"_s,
                              {harvest, afterSeq, limit}));
}

std::vector<StoredLead> StoreQueries::LeadsAfter(const LeadFilter& filter, qint64 afterId, qint64 limit) {
    const Conditions conditions = Of(filter);
    if (conditions.Nothing)
        return {};
    QVariantList values = conditions.Values;
    values += {afterId, limit};
    return Read(database_.Run(u"SELECT "_s + StoredColumns() + u" FROM "_s + StoredTables() +
                                  u" WHERE lead.id IN (SELECT lead.id FROM "_s + conditions.From +
                                  (conditions.Where.isEmpty() ? u" WHERE "_s : QString(conditions.Where + u" AND "_s)) +
                                  conditions.Id + u">? ORDER BY "_s + conditions.Id + u" LIMIT ?) ORDER BY lead.id"_s,
                              values));
}

std::vector<StoredLead> StoreQueries::LeadsOfBusiness(qint64 business) {
    return Read(database_.Run(u"SELECT "_s + StoredColumns() + u" FROM "_s + StoredTables() +
                                  u" WHERE lead.business=? ORDER BY lead.id"_s,
                              {business}));
}

qint64 StoreQueries::Size() {
    if (database_.IsPostgres())
        return database_
            .Value(u"SELECT sum(pg_total_relation_size(c.oid)) FROM pg_class c JOIN pg_namespace n"
                   " ON n.oid=c.relnamespace WHERE n.nspname='brindle' AND c.relkind IN ('r','S')"_s)
            .toLongLong();
    const QString file = database_.Target().FileName;
    return QFileInfo(file).size() + QFileInfo(file + u"-wal"_s).size();
}

} // namespace Brindle
