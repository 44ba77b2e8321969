#include "store/LeadKeeper.h"

#include "core/LeadListCommands.h"
#include "store/Database.h"
#include "store/Journal.h"
#include "store/StoreThreadRun.h"
#include "store/StoreWriter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QSysInfo>
#include <QUuid>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace Brindle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr size_t mostEvents = 5000;      // of one transaction; so many only when the store has fallen behind
constexpr qint64 wordsAtOnce = 5000;     // leads whose words are worth a transaction
constexpr size_t mostInMemory = 100'000; // events, where there is no journal either
constexpr auto firstPause = 250ms;       // before a store that failed is tried again
constexpr auto longestPause = 30'000ms;
constexpr int lastWait = 1000; // milliseconds for what is under way when the program ends

qint64 Now() {
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

QString UserAtMachine() {
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = qEnvironmentVariable("USERNAME");
    return user + u'@' + QSysInfo::machineHostName();
}

struct LeadKeeper::Shared {
    Shared(const StoreTarget& target, QString spoolFolder, const QString& session)
        : Target(target), SpoolFolder(std::move(spoolFolder)) {
        Log = std::make_unique<Journal>(target.PendingBase(SpoolFolder), session);
        if (!Log->Error().isEmpty() && !target.IsPostgres()) {
            auto spare = std::make_unique<Journal>(target.SparePendingBase(SpoolFolder), session);
            if (spare->Error().isEmpty())
                Log = std::move(spare);
        }
    }

    StoreTarget Target;
    QString SpoolFolder;

    mutable std::mutex Mutex;
    std::condition_variable Wake;   // of the thread
    std::condition_variable Calmed; // nothing is left to do, or the thread has ended
    std::unique_ptr<Journal> Log;   // beside the store, or where that cannot be, among the settings
    qint64 End = 0;                 // of the journal
    std::deque<StoreEvent> Memory;  // what the journal could not take
    bool Stop = false;
    bool Idle = false;
    bool Ended = false;
    QString Trouble;
    LeadKeeper* Receiver = nullptr;
    std::function<void(const QString&)> Problem;
    std::thread Thread;

    // With the mutex held.
    void Say(const QString& line) {
        if (Receiver)
            QMetaObject::invokeMethod(
                Receiver, [problem = Problem, line] { problem(line); }, Qt::QueuedConnection);
    }
    bool NothingLeft(qint64 place) const { return place >= End && Memory.empty(); }
};

LeadKeeper::LeadKeeper(const StoreTarget& target, const QString& spoolFolder,
                       std::function<void(const QString&)> problem)
    : session_(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    shared_ = std::make_shared<Shared>(target, spoolFolder, session_);
    shared_->Receiver = this;
    shared_->Problem = std::move(problem);
    shared_->Thread = std::thread([shared = shared_] { Work(shared); });
}

LeadKeeper::~LeadKeeper() {
    if (InHarvest())
        End(HarvestEnding::Stopped, 0);
    std::unique_lock lock(shared_->Mutex);
    shared_->Stop = true;
    shared_->Wake.notify_all();
    const bool ended =
        shared_->Calmed.wait_for(lock, std::chrono::milliseconds(lastWait), [this] { return shared_->Ended; });
    shared_->Receiver = nullptr;
    std::thread thread = std::move(shared_->Thread);
    lock.unlock();
    // A thread that hangs on a silent server goes with the program; the journal has what it did not get done.
    if (ended)
        thread.join();
    else
        StoreThreadRun::Leave(std::move(thread));
}

void LeadKeeper::Tell(const StoreEvent& event) {
    const std::lock_guard lock(shared_->Mutex);
    // In order: what comes behind something in memory waits there too.
    const qint64 end = shared_->Memory.empty() ? shared_->Log->Append(event) : -1;
    if (end >= 0) {
        shared_->End = end;
    } else if (shared_->Memory.size() < mostInMemory) {
        if (shared_->Memory.empty())
            shared_->Say(shared_->Log->Error());
        shared_->Memory.push_back(event);
    }
    shared_->Idle = false;
    shared_->Wake.notify_one();
}

void LeadKeeper::Begin(HarvestInfo harvest) {
    if (InHarvest())
        End(HarvestEnding::Stopped, 0);
    harvest.Uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    harvest.Session = session_;
    harvest.By = UserAtMachine();
    harvest.Begun = Now();
    // Where the name belongs to a listing's key, the details link alone tells nothing.
    Lead named;
    named.Name = u"name"_s;
    harvest.LinkTellsApart = DuplicateKeyOf(harvest.Site, named).isEmpty();
    harvest_ = harvest;
    seq_ = 0;
    Tell(harvest);
}

void LeadKeeper::GoOn(const HarvestInfo& harvest, qint64 lastSeq) {
    if (InHarvest())
        End(HarvestEnding::Stopped, 0);
    harvest_ = harvest;
    harvest_.Session = session_;
    seq_ = lastSeq;
}

void LeadKeeper::Keep(const Lead& lead) {
    if (!InHarvest())
        return;
    last_ = {harvest_.Uid, ++seq_};
    Tell(FoundLead{harvest_.Uid, seq_, Now(), lead, session_});
}

void LeadKeeper::End(HarvestEnding ending, qint32 pages) {
    if (!InHarvest())
        return;
    Tell(HarvestEnd{harvest_.Uid, Now(), ending, pages, session_});
    harvest_ = {};
}

bool LeadKeeper::Flush(int milliseconds) {
    bool done = false;
    {
        std::unique_lock lock(shared_->Mutex);
        done = shared_->Calmed.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] {
            return shared_->Idle || shared_->Ended;
        }) && shared_->Trouble.isEmpty();
    }
    if (QCoreApplication::instance())
        QCoreApplication::sendPostedEvents(this);
    return done;
}

const StoreTarget& LeadKeeper::Target() const {
    return shared_->Target;
}

QString LeadKeeper::Trouble() const {
    const std::lock_guard lock(shared_->Mutex);
    return shared_->Trouble;
}

QString LeadKeeper::JournalFileName() const {
    const std::lock_guard lock(shared_->Mutex);
    return shared_->Log->Error().isEmpty() ? shared_->Log->FileName() : QString();
}

void LeadKeeper::Work(const std::shared_ptr<Shared>& shared) {
    const StoreThreadRun run;
    std::optional<Database> database;
    std::optional<StoreWriter> writer;
    qint64 place = 0;
    auto pause = firstPause;
    std::unique_lock lock(shared->Mutex);
    for (;;) {
        if (writer && shared->NothingLeft(place)) {
            shared->Idle = true;
            shared->Calmed.notify_all();
            shared->Wake.wait(lock, [&] { return shared->Stop || !shared->NothingLeft(place); });
        }
        if (shared->Stop && (shared->NothingLeft(place) || !shared->Trouble.isEmpty()))
            break;
        const QString fileName = shared->Log->FileName();
        const bool fromFile = place < shared->End;
        std::vector<StoreEvent> events;
        if (!fromFile)
            events.assign(shared->Memory.begin(),
                          shared->Memory.begin() + static_cast<qsizetype>(std::min(mostEvents, shared->Memory.size())));
        lock.unlock();

        QString trouble;
        qint64 behind = place;
        try {
            if (!writer) {
                database.emplace(shared->Target);
                TakeInOrphans(*database, shared->SpoolFolder);
                writer.emplace(*database);
            }
            if (fromFile)
                events = Journal::Read(fileName, behind, mostEvents);
            if (!events.empty()) {
                writer->Take(events);
                writer->IndexWords(std::holds_alternative<HarvestEnd>(events.back()) ? 1 : wordsAtOnce);
            }
        } catch (const Failure& failure) {
            StoreThreadRun::StandStillAtTheEnd();
            trouble = failure.Message();
            writer.reset();
            database.reset();
        }
        StoreThreadRun::StandStillAtTheEnd();

        lock.lock();
        if (!trouble.isEmpty()) {
            if (shared->Trouble.isEmpty())
                shared->Say(shared->Log->Error().isEmpty()
                                ? u"%1; leads wait in %2 until the store takes them"_s.arg(
                                      trouble, QDir::toNativeSeparators(fileName))
                                : u"%1; leads wait in this program alone until the store takes them"_s.arg(trouble));
            shared->Trouble = trouble;
            shared->Idle = true; // as far as it goes
            shared->Calmed.notify_all();
            shared->Wake.wait_for(lock, pause, [&] { return shared->Stop; });
            pause = std::min<std::chrono::milliseconds>(pause * 2, longestPause);
            continue;
        }
        if (!shared->Trouble.isEmpty())
            shared->Say(u"%1: takes leads again"_s.arg(shared->Target.Shown()));
        shared->Trouble.clear();
        shared->Idle = false; // there may be more than this
        pause = firstPause;
        if (!fromFile) {
            shared->Memory.erase(shared->Memory.begin(),
                                 shared->Memory.begin() + static_cast<qsizetype>(events.size()));
            continue;
        }
        // A journal whose end cannot be read was written by nobody else: it was lost under the program.
        place = events.empty() ? shared->End : behind;
        if (place >= shared->End) {
            shared->Log->Clear();
            place = shared->End = 0;
        }
    }
    writer.reset();
    database.reset();
    shared->Idle = true;
    shared->Ended = true;
    shared->Calmed.notify_all();
}

void TakeInOrphans(Database& database, const QString& spoolFolder) {
    if (database.IsReadOnly())
        return;
    QStringList orphans = Journal::Orphans(database.Target().PendingBase(spoolFolder));
    if (!database.IsPostgres())
        orphans += Journal::Orphans(database.Target().SparePendingBase(spoolFolder));
    for (const QString& fileName : orphans) {
        OrphanedJournal journal(fileName);
        if (!journal.Held())
            continue;
        StoreWriter writer(database);
        qint64 place = 0;
        for (;;) {
            const std::vector<StoreEvent> events = Journal::Read(fileName, place, mostEvents);
            if (events.empty())
                break;
            writer.Take(events);
        }
        journal.Remove();
    }
}

} // namespace Brindle
