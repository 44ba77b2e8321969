#include "store/StoreThread.h"

#include "store/LeadKeeper.h"
#include "store/StoreThreadRun.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace Brindle {

using namespace std::chrono_literals;

struct StoreThread::Shared {
    struct Task {
        int Kind;
        Job Do;
        std::function<void(const QString&)> Failed;
    };
    StoreTarget Target;
    QString SpoolFolder;
    std::mutex Mutex;
    std::condition_variable Wake;
    std::condition_variable Gone;
    std::deque<Task> Tasks;
    bool Stop = false;
    bool Ended = false;
    StoreThread* Receiver = nullptr;
    std::thread Thread;

    void Call(std::function<void()> what) {
        const std::lock_guard lock(Mutex);
        if (Receiver && what)
            QMetaObject::invokeMethod(Receiver, std::move(what), Qt::QueuedConnection);
    }
};

StoreThread::StoreThread(const StoreTarget& target, const QString& spoolFolder) : shared_(std::make_shared<Shared>()) {
    shared_->Target = target;
    shared_->SpoolFolder = spoolFolder;
    shared_->Receiver = this;
    shared_->Thread = std::thread([shared = shared_] { Work(shared); });
}

StoreThread::~StoreThread() {
    std::unique_lock lock(shared_->Mutex);
    shared_->Stop = true;
    shared_->Tasks.clear();
    shared_->Receiver = nullptr;
    shared_->Wake.notify_all();
    const bool ended = shared_->Gone.wait_for(lock, 1s, [this] { return shared_->Ended; });
    std::thread thread = std::move(shared_->Thread);
    lock.unlock();
    // A thread that hangs on a silent server goes with the program.
    if (ended)
        thread.join();
    else
        StoreThreadRun::Leave(std::move(thread));
}

void StoreThread::Post(int kind, Job job, std::function<void(const QString&)> failed) {
    const std::lock_guard lock(shared_->Mutex);
    if (kind != 0)
        std::erase_if(shared_->Tasks, [kind](const Shared::Task& task) { return task.Kind == kind; });
    shared_->Tasks.push_back({kind, std::move(job), std::move(failed)});
    shared_->Wake.notify_one();
}

void StoreThread::Work(const std::shared_ptr<Shared>& shared) {
    const StoreThreadRun run;
    std::optional<Database> database;
    std::unique_lock lock(shared->Mutex);
    for (;;) {
        shared->Wake.wait(lock, [&] { return shared->Stop || !shared->Tasks.empty(); });
        if (shared->Stop)
            break;
        Shared::Task task = std::move(shared->Tasks.front());
        shared->Tasks.pop_front();
        lock.unlock();
        try {
            if (!database) {
                database.emplace(shared->Target, Database::Access::ReadAtLeast);
                TakeInOrphans(*database, shared->SpoolFolder);
            }
            shared->Call(task.Do(*database));
        } catch (const Failure& failure) {
            StoreThreadRun::StandStillAtTheEnd();
            database.reset();
            if (task.Failed)
                shared->Call([failed = task.Failed, reason = failure.Message()] { failed(reason); });
        }
        StoreThreadRun::StandStillAtTheEnd();
        lock.lock();
    }
    lock.unlock();
    database.reset();
    lock.lock();
    shared->Ended = true;
    shared->Gone.notify_all();
}

} // namespace Brindle
