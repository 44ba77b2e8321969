#pragma once

#include "store/StoreRecords.h"

#include <QFile>
#include <QLockFile>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Brindle {

/// What a store is still to be told, in a file beside it: every event is in the file before its writer goes on, so a
/// program that is killed loses nothing, and a store that cannot be written now takes it in later. Each session has a
/// file of its own, locked while the session lives. One thread may append while another reads.
class Journal {
public:
    /// Makes "BASE-SESSION" and its lock; the folder too. Check `Error`.
    Journal(const QString& base, const QString& session);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Why it cannot be written: file and reason; empty when it can.
    const QString& Error() const { return error_; }
    const QString& FileName() const { return fileName_; }
    /// Appends an event and returns the place behind it; -1 when that failed, and nothing of it is in the file then.
    qint64 Append(const StoreEvent& event);
    /// Empties the file, when everything in it was taken in.
    void Clear();

    /// Events of a journal from a place on, at most `most`; `place` moves behind the last one. A torn end ends it.
    static std::vector<StoreEvent> Read(const QString& fileName, qint64& place, size_t most);
    /// Journals of this base that no living session holds.
    static QStringList Orphans(const QString& base);
    /// Sessions of this base that are alive.
    static QStringList LiveSessions(const QString& base);

private:
    QString fileName_;
    QString error_;
    QFile file_;
    qint64 end_ = 0;
    std::unique_ptr<QLockFile> lock_;
};

/// Takes hold of an orphaned journal for its lifetime, so that no other program takes it in at the same time.
class OrphanedJournal {
public:
    explicit OrphanedJournal(const QString& fileName);
    /// Whether it is really nobody's and could be held.
    bool Held() const { return held_; }
    /// Deletes the file, when everything in it was taken in.
    void Remove();

private:
    QString fileName_;
    QLockFile lock_;
    bool held_;
};

} // namespace Brindle
