#include "store/StoreWriter.h"

#include "core/BusinessKey.h"
#include "store/LeadColumns.h"
#include "store/LeadWords.h"

#include <QCryptographicHash>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Rows of one INSERT. Statements of a power of two of rows are prepared once each.
constexpr qsizetype mostRows = 64;
// Leads that are looked up and written together.
constexpr size_t leadsAtOnce = 5'000;
// Leads whose words are kept until they are made findable.
constexpr size_t mostWordsKept = 20'000;
// Keys that are worth being put among all others.
constexpr qint64 mostNewKeys = 300'000;
// Values of one IN list.
constexpr qsizetype mostValues = 256;

qint64 DigestOf(const QString& key) {
    const QByteArray digest = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Md5);
    qint64 number = 0;
    std::memcpy(&number, digest.constData(), sizeof number);
    return number;
}

// What both engines can hold: a text without U+0000 and without halves of characters.
QString Storable(const QString& text) {
    const auto isOdd = [](QChar c) { return c.isNull() || c.isSurrogate(); };
    if (std::none_of(text.begin(), text.end(), isOdd))
        return text.isNull() ? u""_s : text;
    QString clean = text;
    for (qsizetype i = 0; i < clean.size(); ++i) {
        if (clean[i].isHighSurrogate() && i + 1 < clean.size() && clean[i + 1].isLowSurrogate())
            ++i;
        else if (isOdd(clean[i]))
            clean[i] = QChar::ReplacementCharacter;
    }
    return clean;
}

// Runs `INSERT` with rows of values in as few statements as there are powers of two in their number.
void InsertRows(Database& database, const QString& insert, const QString& row, const QString& tail, qsizetype width,
                const QVariantList& values) {
    qsizetype done = 0;
    while (done < values.size()) {
        qsizetype rows = mostRows;
        while (rows * width > values.size() - done)
            rows /= 2;
        QString sql = insert + row;
        for (qsizetype i = 1; i < rows; ++i)
            sql += u',' + row;
        database.Run(sql + tail, values.sliced(done, rows * width));
        done += rows * width;
    }
}

// Calls `use` for every row of `SELECT … IN (list)`, the list being as long as it may be.
template <typename Use>
void ForEachIn(Database& database, const QString& before, const QString& behind, const QVariantList& values, Use use) {
    for (qsizetype done = 0; done < values.size();) {
        qsizetype count = mostValues;
        while (count > values.size() - done)
            count /= 2;
        QSqlQuery& query = database.Run(before + Marks(count) + behind, values.sliced(done, count));
        while (query.next())
            use(query);
        query.finish();
        done += count;
    }
}

} // namespace

struct StoreWriter::Row {
    const FoundLead* Found = nullptr;
    HarvestRow* Harvest = nullptr;
    Lead Kept;
    QStringList Keys;
    std::vector<qint64> Digests;
    qint64 Id = 0;
    qint64 Business = 0;
    int Changed = 0;
};

void StoreWriter::Take(std::span<const StoreEvent> events) {
    wordsOfNow_.clear();
    harvests_.clear(); // another program may have gone on with one of them
    WriteTransaction transaction(database_);
    std::vector<const FoundLead*> leads;
    const auto takeLeads = [&] {
        for (size_t done = 0; done < leads.size(); done += leadsAtOnce)
            TakeLeads(std::span(leads).subspan(done, std::min(leadsAtOnce, leads.size() - done)));
        leads.clear();
    };
    for (const StoreEvent& event : events) {
        if (const auto* lead = std::get_if<FoundLead>(&event)) {
            leads.push_back(lead);
            continue;
        }
        takeLeads();
        if (const auto* harvest = std::get_if<HarvestInfo>(&event))
            Begin(*harvest);
        else
            End(std::get<HarvestEnd>(event));
    }
    takeLeads();
    transaction.Commit();
    words_.insert(words_.end(), std::make_move_iterator(wordsOfNow_.begin()),
                  std::make_move_iterator(wordsOfNow_.end()));
    if (words_.size() > mostWordsKept)
        words_.clear(); // they are made of the leads anew
}

void StoreWriter::Begin(const HarvestInfo& harvest) {
    database_.Run(u"INSERT INTO harvest(uid,session,origin,site,start,what,place,started_by,begun,link_tells_apart)"
                  " VALUES(?,?,?,?,?,?,?,?,?,?) ON CONFLICT(uid) DO NOTHING"_s,
                  {harvest.Uid, Storable(harvest.Session), static_cast<int>(harvest.Origin), Storable(harvest.Site),
                   Storable(harvest.Start), Storable(harvest.What), Storable(harvest.Place), Storable(harvest.By),
                   harvest.Begun, harvest.LinkTellsApart ? 1 : 0});
}

StoreWriter::HarvestRow& StoreWriter::Known(const QString& uid) {
    const auto found = harvests_.find(uid);
    if (found != harvests_.end())
        return found->second;
    const QString lock = database_.IsPostgres() ? u" FOR UPDATE"_s : QString();
    QSqlQuery& query =
        database_.Run(u"SELECT id,begun,last_seq,link_tells_apart,session FROM harvest WHERE uid=?"_s + lock, {uid});
    HarvestRow row;
    if (query.next())
        row = {query.value(0).toLongLong(), query.value(1).toLongLong(), query.value(2).toLongLong(),
               query.value(3).toBool(), query.value(4).toString()};
    query.finish();
    return harvests_.emplace(uid, row).first->second;
}

void StoreWriter::End(const HarvestEnd& end) {
    database_.Run(u"UPDATE harvest SET ended=?,ending=?,pages=? WHERE uid=? AND (?='' OR session=?)"_s,
                  {end.Ended, static_cast<int>(end.Ending), end.Pages, end.HarvestUid, Storable(end.Session),
                   Storable(end.Session)});
}

void StoreWriter::TakeLeads(std::span<const FoundLead* const> leads) {
    // Two writers at once could each take the same business for a new one.
    if (database_.IsPostgres())
        database_.Execute(u"SELECT pg_advisory_xact_lock(7021)"_s);
    std::vector<Row> rows;
    rows.reserve(leads.size());
    for (const FoundLead* found : leads) {
        HarvestRow& harvest = Known(found->HarvestUid);
        const bool takenOver = !found->Session.isEmpty() && found->Session != harvest.Session;
        if (harvest.Id == 0 || takenOver || found->Seq <= harvest.LastSeq)
            continue; // erased meanwhile, another's, or here already
        harvest.LastSeq = found->Seq;
        Row row;
        row.Found = found;
        row.Harvest = &harvest;
        for (int column = 0; column < FieldCount; ++column)
            row.Kept.At(column) = Storable(found->Lead.At(column));
        row.Keys = BusinessKeys(row.Kept, harvest.LinkTellsApart);
        for (const QString& key : row.Keys)
            row.Digests.push_back(DigestOf(key));
        rows.push_back(std::move(row));
    }
    if (rows.empty())
        return;
    qint64 number = FirstFreeNumber(static_cast<qsizetype>(rows.size()));
    for (Row& row : rows)
        row.Id = number++;
    Recognise(rows);
    NoteChanges(rows);
    Insert(rows);
}

qint64 StoreWriter::FirstFreeNumber(qsizetype count) {
    if (!database_.IsPostgres())
        // A number is never given twice, not even when the last leads were deleted: it may name a business.
        return std::max({database_.Value(u"SELECT max(id) FROM lead"_s).toLongLong(),
                         database_.Value(u"SELECT max(id) FROM business"_s).toLongLong(),
                         database_.Value(u"SELECT value FROM mark WHERE name='words_to'"_s).toLongLong()}) +
               1;
    const qint64 first = database_.Value(u"SELECT nextval('lead_number')"_s).toLongLong();
    database_.Run(u"SELECT setval('lead_number', ?)"_s, {first + count - 1}).finish();
    return first;
}

// What the store knows of keys. In the order of the keys, so that each page of the table is visited once.
QHash<qint64, qint64> StoreWriter::BusinessesOf(const std::vector<Row>& rows) {
    std::vector<qint64> wanted;
    for (const Row& row : rows)
        wanted.insert(wanted.end(), row.Digests.begin(), row.Digests.end());
    std::sort(wanted.begin(), wanted.end());
    QHash<qint64, qint64> known;
    if (wanted.empty())
        return known;
    QByteArray list;
    list.reserve(static_cast<qsizetype>(wanted.size()) * 21 + 2);
    for (const qint64 digest : wanted)
        list += (list.isEmpty() ? '[' : ',') + QByteArray::number(digest);
    list += ']';
    const QString values = QString::fromLatin1(list);
    const auto read = [&](QSqlQuery& query) {
        while (query.next())
            known[query.value(0).toLongLong()] = query.value(1).toLongLong();
        query.finish();
    };
    if (database_.IsPostgres()) {
        read(database_.Run(u"SELECT k.digest,k.business FROM unnest(translate(?,'[]','{}')::bigint[]) wanted(digest)"
                           " JOIN business_key k USING(digest)"_s,
                           {values}));
        return known;
    }
    for (const QString& table : {u"business_key"_s, u"business_key_new"_s})
        read(database_.Run(u"SELECT k.digest,k.business FROM json_each(?) wanted CROSS JOIN "_s + table +
                               u" k ON k.digest=wanted.value"_s,
                           {values}));
    return known;
}

// Keys lie all over their table, so that each batch of them would write nearly every page of it. They gather in a small
// table instead, which goes into the large one when that is worth it.
void StoreWriter::AddKeys(std::vector<std::pair<qint64, qint64>> keys) {
    if (keys.empty())
        return;
    std::sort(keys.begin(), keys.end());
    QByteArray object;
    object.reserve(static_cast<qsizetype>(keys.size()) * 36 + 2);
    for (const auto& [digest, business] : keys)
        object +=
            (object.isEmpty() ? "{\"" : ",\"") + QByteArray::number(digest) + "\":" + QByteArray::number(business);
    object += '}';
    const QString values = QString::fromLatin1(object);
    if (database_.IsPostgres()) {
        database_.Run(u"INSERT INTO business_key(digest,business) SELECT key::bigint,value::bigint"
                      " FROM json_each_text(?::json) ON CONFLICT(digest) DO NOTHING"_s,
                      {values});
        return;
    }
    database_.Run(u"INSERT OR IGNORE INTO business_key_new(digest,business)"
                  " SELECT CAST(key AS INTEGER),value FROM json_each(?)"_s,
                  {values});
    if (newKeys_ < 0)
        newKeys_ = database_.Value(u"SELECT count(*) FROM business_key_new"_s).toLongLong();
    else
        newKeys_ += static_cast<qint64>(keys.size());
    if (newKeys_ < mostNewKeys)
        return;
    database_.Run(u"INSERT OR IGNORE INTO business_key SELECT digest,business FROM business_key_new ORDER BY digest"_s);
    database_.Run(u"DELETE FROM business_key_new"_s);
    newKeys_ = 0;
}

// Gives every lead the number of its business: the one that the strongest known key names, or its own.
void StoreWriter::Recognise(std::vector<Row>& rows) {
    QHash<qint64, qint64> known = BusinessesOf(rows);
    std::vector<std::pair<qint64, qint64>> keys;
    QVariantList businesses;
    QHash<qint64, qsizetype> at; // a statement may meet a row only once
    for (Row& row : rows) {
        row.Business = row.Id;
        for (const qint64 digest : row.Digests) {
            const auto found = known.constFind(digest);
            if (found != known.constEnd()) {
                row.Business = *found;
                break;
            }
        }
        for (const qint64 digest : row.Digests) {
            if (known.contains(digest))
                continue;
            known[digest] = row.Business;
            keys.emplace_back(digest, row.Business);
        }
        const qint64 seen = row.Found->Found / 1000;
        if (const auto listed = at.constFind(row.Business); listed != at.constEnd()) {
            businesses[*listed + 2] = seen;
        } else {
            at.insert(row.Business, businesses.size());
            businesses += {row.Business, seen, seen};
        }
    }
    AddKeys(std::move(keys));
    InsertRows(database_, u"INSERT INTO business(id,first_seen,last_seen) VALUES"_s, u"(?,?,?)"_s,
               u" ON CONFLICT(id) DO UPDATE SET last_seen=excluded.last_seen"_s, 3, businesses);
}

// Marks the fields in which a lead of a known business differs from the last one of it, a bit a field.
void StoreWriter::NoteChanges(std::vector<Row>& rows) {
    QSet<qint64> wanted;
    for (const Row& row : rows)
        if (row.Business != row.Id)
            wanted.insert(row.Business);
    if (wanted.isEmpty())
        return;
    QHash<qint64, Lead> last;
    QVariantList businesses;
    for (const qint64 business : std::as_const(wanted))
        businesses += business;
    ForEachIn(database_,
              u"SELECT lead.business,"_s + LeadColumns() + u" FROM "_s + LeadTables() +
                  u" WHERE lead.id IN (SELECT max(id) FROM lead WHERE business IN ("_s,
              u") GROUP BY business)"_s, businesses,
              [&](const QSqlQuery& query) { last[query.value(0).toLongLong()] = ReadLead(query, 1); });
    for (Row& row : rows) {
        const auto before = last.find(row.Business);
        if (before != last.end()) {
            for (int column = 0; column < FieldCount; ++column)
                if (before->At(column) != row.Kept.At(column))
                    row.Changed |= 1 << column;
            *before = row.Kept;
        } else {
            last.insert(row.Business, row.Kept);
        }
    }
}

qint64 StoreWriter::MapShape(const QString& before, const QString& behind) {
    const QString name = before + u'\n' + behind;
    const auto known = shapes_.constFind(name);
    if (known != shapes_.constEnd())
        return *known;
    database_.Run(u"INSERT INTO map_shape(before_address,behind_address) VALUES(?,?) ON CONFLICT DO NOTHING"_s,
                  {before, behind});
    const qint64 id =
        database_.Value(u"SELECT id FROM map_shape WHERE before_address=? AND behind_address=?"_s, {before, behind})
            .toLongLong();
    // Links whose shapes all differ are no reason to remember them all.
    if (shapes_.size() > 1000)
        shapes_.clear();
    return *shapes_.insert(name, id);
}

void StoreWriter::Insert(const std::vector<Row>& rows) {
    const bool isPostgres = database_.IsPostgres();
    QVariantList values;
    values.reserve(static_cast<qsizetype>(rows.size()) * 22);
    QHash<HarvestRow*, std::pair<qint64, qint64>> counts; // leads, new ones
    for (const Row& row : rows) {
        const Lead& lead = row.Kept;
        QString before;
        QString behind;
        const bool shaped = SplitMapLink(lead, before, behind);
        values +=
            {row.Id,     row.Harvest->Id, row.Found->Seq, row.Business, (row.Found->Found - row.Harvest->Begun) / 1000,
             row.Changed};
        for (int column = 0; column < static_cast<int>(Field::MapLink); ++column)
            values += lead.At(column);
        values += {shaped ? MapShape(before, behind) : 0, shaped ? u""_s : lead.MapLink, lead.DetailsLink};
        if (isPostgres)
            values += Storable(LeadWords(lead));
        else
            wordsOfNow_.emplace_back(row.Id, LeadWords(lead));
        auto& [all, fresh] = counts[row.Harvest];
        ++all;
        fresh += row.Business == row.Id ? 1 : 0;
    }
    const QString columns = u"INSERT INTO lead(id,harvest,seq,business,found,changed,category,name,full_address,street,"
                            "city,state,postal_code,country,phone,fax,website,email,map_shape,map_link,details_link"_s;
    if (isPostgres)
        InsertRows(database_, columns + u",words) VALUES"_s,
                   u"("_s + Marks(21) + u",array_to_tsvector(string_to_array(?,' ')))"_s, {}, 22, values);
    else
        InsertRows(database_, columns + u") VALUES"_s, u"("_s + Marks(21) + u")"_s, {}, 21, values);
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        database_.Run(u"UPDATE harvest SET leads=leads+?,new_leads=new_leads+?,last_seq=? WHERE id=?"_s,
                      {it->first, it->second, it.key()->LastSeq, it.key()->Id});
}

// The words of the leads behind a number as they were kept when these were written, which saves reading them back.
// Leads that were erased meanwhile have none any more. False when one was written by somebody else.
bool StoreWriter::WordsKeptSince(qint64 from, qint64 most, std::vector<std::pair<qint64, QString>>& rows) {
    if (words_.empty())
        return false;
    auto kept = words_.begin();
    QSqlQuery& query = database_.Run(u"SELECT id FROM lead WHERE id>? ORDER BY id LIMIT ?"_s, {from, most});
    bool all = true;
    while (all && query.next()) {
        const qint64 id = query.value(0).toLongLong();
        while (kept != words_.end() && kept->first < id)
            ++kept;
        all = kept != words_.end() && kept->first == id;
        if (all)
            rows.emplace_back(id, std::move(kept->second));
    }
    query.finish();
    words_.clear();
    if (!all)
        rows.clear();
    return all;
}

void StoreWriter::IndexWords(qint64 atLeast) {
    if (database_.IsPostgres())
        return;
    constexpr qint64 most = 20'000; // of one transaction
    const QString wordsTo = u"SELECT value FROM mark WHERE name='words_to'"_s;
    for (;;) {
        const qint64 last = database_.Value(u"SELECT max(id) FROM lead"_s).toLongLong();
        if (last - database_.Value(wordsTo).toLongLong() < atLeast)
            return;
        WriteTransaction transaction(database_);
        const qint64 from = database_.Value(wordsTo).toLongLong();
        std::vector<std::pair<qint64, QString>> rows;
        if (!WordsKeptSince(from, most, rows)) {
            QSqlQuery& query = database_.Run(u"SELECT lead.id,"_s + LeadColumns() + u" FROM "_s + LeadTables() +
                                                 u" WHERE lead.id>? ORDER BY lead.id LIMIT ?"_s,
                                             {from, most});
            while (query.next())
                rows.emplace_back(query.value(0).toLongLong(), LeadWords(ReadLead(query, 1)));
            query.finish();
        }
        QVariantList values;
        for (const auto& [id, words] : rows)
            values += {id, words};
        InsertRows(database_, u"INSERT INTO lead_words(rowid,words) VALUES"_s, u"(?,?)"_s, {}, 2, values);
        if (!rows.empty())
            database_.Run(u"UPDATE mark SET value=? WHERE name='words_to'"_s, {rows.back().first});
        transaction.Commit();
        if (static_cast<qint64>(rows.size()) < most)
            return;
    }
}

} // namespace Brindle
