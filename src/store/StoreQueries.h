#pragma once

#include "store/Database.h"
#include "store/StoreRecords.h"

#include <optional>
#include <span>
#include <vector>

namespace Brindle {

/// A harvest as the store has it.
struct StoredHarvest {
    qint64 Id = 0;
    HarvestInfo Info;
    std::optional<qint64> Ended; ///< milliseconds since 1970, UTC
    HarvestEnding Ending = HarvestEnding::Open;
    qint32 Pages = 0;
    qint64 Leads = 0;     ///< those that are still there
    qint64 NewLeads = 0;  ///< of businesses that the store had not known
    qint64 Unsettled = 0; ///< leads behind the last one that was exported or let go
};

/// A lead as the store has it.
struct StoredLead {
    qint64 Id = 0;
    qint64 Harvest = 0;
    qint64 Seq = 0;
    qint64 Business = 0;
    qint64 Found = 0; ///< seconds since 1970, UTC, as are the next two
    qint64 FirstSeen = 0;
    qint64 LastSeen = 0;
    QString Site;
    int Changed = 0; ///< fields in which it differs from the business's lead before it: bit n is column n
    Brindle::Lead Lead;

    bool IsNew() const { return Id == Business; }
};

/// Which leads. What is left empty does not narrow them.
struct LeadFilter {
    QString Text; ///< every word of it begins a word of some field; case and accents make no difference
    QString Site; ///< site code
    qint64 Harvest = 0;
    qint64 Since = 0; ///< found at this moment or later; seconds since 1970, UTC
    qint64 Until = 0; ///< found before this moment
    bool OnlyNew = false;
};

/// In which order: a column of the lead, or when it was found.
struct LeadOrder {
    static constexpr int Found = -1;
    int Column = Found;
    bool Descending = true;
};

/// Questions to a store. All throw `StoreError`.
class StoreQueries {
public:
    explicit StoreQueries(Database& database) : database_(database) {}

    /// Newest first. `site`: of this directory; empty: of all.
    std::vector<StoredHarvest> Harvests(qint64 offset, qint64 limit, const QString& site = {});
    qint64 HarvestCount();
    qint64 BusinessCount();
    std::optional<StoredHarvest> HarvestOf(const QString& uid);
    /// Harvests of the window begun by `by` whose leads were neither exported nor let go, oldest first, without those
    /// of the sessions that are still running.
    std::vector<StoredHarvest> UnsettledHarvests(const QString& by, const QStringList& liveSessions);
    /// Codes of the directories that leads came from, sorted.
    QStringList Sites();

    qint64 LeadCount(const LeadFilter& filter = {});
    /// The leads of places `offset` to `offset + limit` in the order, as a view asks for what it shows.
    std::vector<StoredLead> Leads(const LeadFilter& filter, const LeadOrder& order, qint64 offset, qint64 limit);
    /// The numbers of all leads that fit, in the order: for a view that goes far down in a sorted list.
    std::vector<qint64> Numbers(const LeadFilter& filter, const LeadOrder& order);
    /// The leads of these numbers, in the same order; those that are gone are left out.
    std::vector<StoredLead> LeadsOf(std::span<const qint64> numbers);
    /// The leads of a harvest in its order, from the one behind `afterSeq` on, at most `limit`.
    std::vector<StoredLead> LeadsOf(qint64 harvest, qint64 afterSeq, qint64 limit);
    /// Leads that fit, oldest first, from the one behind the number `afterId` on: for going through all of them.
    std::vector<StoredLead> LeadsAfter(const LeadFilter& filter, qint64 afterId, qint64 limit);
    /// All leads of a business, oldest first.
    std::vector<StoredLead> LeadsOfBusiness(qint64 business);

    /// Bytes of the store: the file with its log, or the tables on the server.
    qint64 Size();

private:
    struct Conditions {
        QString From = QStringLiteral("lead");  // the tables that are walked through
        QString Id = QStringLiteral("lead.id"); // by this number
        QString Where = {};                     // empty: all
        QVariantList Values = {};
        bool Nothing = false; // nothing can fit
    };
    struct Bounds {
        qint64 First = 0;
        qint64 Last = -1; // nothing
        bool Thin = true;
    };
    QString By(const LeadOrder& order, bool descending, const QString& id) const;
    Conditions HarvestsOf(const LeadFilter& filter);
    Bounds BoundsOf(const LeadFilter& filter);
    void Narrow(const LeadFilter& filter, QStringList& parts, QVariantList& values);
    Conditions Of(const LeadFilter& filter);
    std::vector<StoredLead> Read(QSqlQuery& query);
    std::vector<StoredHarvest> ReadHarvests(QSqlQuery& query);

    Database& database_;
};

} // namespace Brindle
