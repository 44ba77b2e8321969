#include "store/StoreEdits.h"

#include "store/LeadColumns.h"
#include "store/LeadWords.h"

#include <algorithm>
#include <map>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

// Inside a transaction: the leads, their words, and the harvests' counts.
void StoreEdits::Delete(const QString& where, const QVariantList& values) {
    std::map<qint64, std::pair<qint64, qint64>> counts; // of a harvest: leads, new ones
    QVariantList ids;
    QStringList words;
    QSqlQuery& query = database_.Run(u"SELECT lead.id,lead.harvest,lead.business,"_s + LeadColumns() + u" FROM "_s +
                                         LeadTables() + u" WHERE "_s + where,
                                     values);
    while (query.next()) {
        const qint64 id = query.value(0).toLongLong();
        auto& [all, fresh] = counts[query.value(1).toLongLong()];
        ++all;
        fresh += query.value(2).toLongLong() == id ? 1 : 0;
        ids += id;
        if (!database_.IsPostgres())
            words += LeadWords(ReadLead(query, 3));
    }
    query.finish();
    if (!database_.IsPostgres()) {
        const qint64 wordsTo = database_.Value(u"SELECT value FROM mark WHERE name='words_to'"_s).toLongLong();
        for (qsizetype i = 0; i < ids.size(); ++i)
            if (ids[i].toLongLong() <= wordsTo)
                database_.Run(u"INSERT INTO lead_words(lead_words,rowid,words) VALUES('delete',?,?)"_s,
                              {ids[i], words[i]});
    }
    for (const QVariant& id : std::as_const(ids))
        database_.Run(u"DELETE FROM lead WHERE id=?"_s, {id});
    for (const auto& [harvest, count] : counts)
        database_.Run(u"UPDATE harvest SET leads=leads-?,new_leads=new_leads-? WHERE id=?"_s,
                      {count.first, count.second, harvest});
}

void StoreEdits::DeleteLeads(const QString& harvestUid, std::span<const qint64> seqs) {
    WriteTransaction transaction(database_);
    for (const qint64 seq : seqs)
        Delete(u"lead.harvest=(SELECT id FROM harvest WHERE uid=?) AND lead.seq=?"_s, {harvestUid, seq});
    transaction.Commit();
}

void StoreEdits::DeleteLeads(std::span<const qint64> ids) {
    WriteTransaction transaction(database_);
    for (const qint64 id : ids)
        Delete(u"lead.id=?"_s, {id});
    transaction.Commit();
}

void StoreEdits::DeleteHarvest(qint64 harvest) {
    WriteTransaction transaction(database_);
    Delete(u"lead.harvest=?"_s, {harvest});
    database_.Run(u"DELETE FROM harvest WHERE id=?"_s, {harvest});
    transaction.Commit();
}

qint64 StoreEdits::TakeOver(const QString& harvestUid, const QString& session) {
    WriteTransaction transaction(database_);
    database_.Run(u"UPDATE harvest SET session=?,ended=NULL,ending=0 WHERE uid=?"_s, {session, harvestUid});
    const qint64 last = database_.Value(u"SELECT last_seq FROM harvest WHERE uid=?"_s, {harvestUid}).toLongLong();
    transaction.Commit();
    return last;
}

void StoreEdits::Settle(const QString& harvestUid, qint64 upToSeq) {
    if (upToSeq < 0)
        database_.Run(u"UPDATE harvest SET settled_to=last_seq WHERE uid=?"_s, {harvestUid});
    else
        database_.Run(u"UPDATE harvest SET settled_to=? WHERE uid=? AND settled_to<?"_s,
                      {upToSeq, harvestUid, upToSeq});
}

qint64 StoreEdits::EraseBusiness(qint64 business) {
    if (!database_.IsPostgres())
        database_.Execute(u"PRAGMA secure_delete=ON"_s);
    WriteTransaction transaction(database_);
    const qint64 leads = database_.Value(u"SELECT count(*) FROM lead WHERE business=?"_s, {business}).toLongLong();
    Delete(u"lead.business=?"_s, {business});
    database_.Run(u"DELETE FROM business_key WHERE business=?"_s, {business});
    if (!database_.IsPostgres())
        database_.Run(u"DELETE FROM business_key_new WHERE business=?"_s, {business});
    database_.Run(u"DELETE FROM business WHERE id=?"_s, {business});
    // Otherwise the words stay in the index's old parts.
    if (!database_.IsPostgres() && leads > 0)
        database_.Execute(u"INSERT INTO lead_words(lead_words) VALUES('optimize')"_s);
    transaction.Commit();
    if (!database_.IsPostgres()) {
        database_.Execute(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
        database_.Execute(u"PRAGMA secure_delete=OFF"_s);
    } else {
        database_.Execute(u"VACUUM lead"_s);
    }
    return leads;
}

} // namespace Brindle
