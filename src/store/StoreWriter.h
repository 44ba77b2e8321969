#pragma once

#include "store/Database.h"
#include "store/StoreRecords.h"

#include <map>
#include <span>
#include <vector>

namespace Brindle {

/// Writes harvests and their leads into a store.
class StoreWriter {
public:
    explicit StoreWriter(Database& database) : database_(database) {}

    /// Takes events in order, all or none of them. What the store has already is left out, so the same events may come
    /// again after a crash. Throws `StoreError`.
    void Take(std::span<const StoreEvent> events);

    /// Makes the words of the leads that came since the last time findable; SQLite only, a server does it at once.
    /// With `atLeast` nothing is done while fewer are waiting. Throws `StoreError`.
    void IndexWords(qint64 atLeast = 1);

private:
    struct HarvestRow {
        qint64 Id = 0;
        qint64 Begun = 0;
        qint64 LastSeq = 0;
        bool LinkTellsApart = true;
        QString Session = {};
    };
    struct Row; // a lead on its way into the store

    HarvestRow& Known(const QString& uid);
    void Begin(const HarvestInfo& harvest);
    void End(const HarvestEnd& end);
    void TakeLeads(std::span<const FoundLead* const> leads);
    QHash<qint64, qint64> BusinessesOf(const std::vector<Row>& rows);
    void AddKeys(std::vector<std::pair<qint64, qint64>> keys);
    void Recognise(std::vector<Row>& rows);
    void NoteChanges(std::vector<Row>& rows);
    void Insert(const std::vector<Row>& rows);
    qint64 FirstFreeNumber(qsizetype count);
    bool WordsKeptSince(qint64 from, qint64 most, std::vector<std::pair<qint64, QString>>& rows);
    qint64 MapShape(const QString& before, const QString& behind);

    Database& database_;
    std::map<QString, HarvestRow> harvests_;
    QHash<QString, qint64> shapes_;
    qint64 newKeys_ = -1; // in the small table; not counted yet
    // Of leads that were taken and are not findable yet, in the order of their numbers.
    std::vector<std::pair<qint64, QString>> words_;
    std::vector<std::pair<qint64, QString>> wordsOfNow_; // of the transaction that is under way
};

} // namespace Brindle
