#pragma once

#include "store/Database.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Brindle {

/// A thread with a connection of its own, for a front end that must not wait for a database: it runs jobs one after the
/// other and brings each result back. A job whose turn comes after a newer one of the same kind was given is left out,
/// so that someone who types does not wait for the answers to what he typed before.
class StoreThread : public QObject {
public:
    /// Connects with the first job.
    explicit StoreThread(const StoreTarget& target, const QString& spoolFolder);
    /// Waits a second at most for a job that is under way.
    ~StoreThread() override;

    using Job = std::function<std::function<void()>(Database&)>;
    /// `job` runs in the thread; what it returns is called in this object's thread, from its event loop. When the store
    /// cannot do it, `failed` is called there instead, with the reason. `kind`: 0 for jobs that are never left out.
    void Post(int kind, Job job, std::function<void(const QString&)> failed = {});

private:
    struct Shared;
    static void Work(const std::shared_ptr<Shared>& shared);
    std::shared_ptr<Shared> shared_;
};

} // namespace Brindle
