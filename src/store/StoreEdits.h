#pragma once

#include "store/Database.h"

#include <QStringList>

#include <span>

namespace Brindle {

/// What a user takes back or is done with. Every change is made as a whole or not at all. All throw `StoreError`.
class StoreEdits {
public:
    explicit StoreEdits(Database& database) : database_(database) {}

    /// Deletes leads of a harvest by their places in it, from 1 on. Their businesses stay known, so they are not new
    /// when they are found again.
    void DeleteLeads(const QString& harvestUid, std::span<const qint64> seqs);
    /// The same by the leads' own numbers.
    void DeleteLeads(std::span<const qint64> ids);
    /// Deletes a harvest and its leads.
    void DeleteHarvest(qint64 harvest);
    /// Makes a session the one that goes on with a harvest; what another one still brings of it is dropped. The place
    /// of its last lead.
    qint64 TakeOver(const QString& harvestUid, const QString& session);
    /// The leads of a harvest up to this place were exported, or are not wanted any more; without a place: all.
    void Settle(const QString& harvestUid, qint64 upToSeq = -1);
    /// Erases everything that was ever kept of a business: its leads in all harvests, and by what it was recognised.
    /// The bytes go too, not only the rows: this takes a while in a large file. Returns how many leads went.
    qint64 EraseBusiness(qint64 business);

private:
    void Delete(const QString& where, const QVariantList& values);

    Database& database_;
};

} // namespace Brindle
