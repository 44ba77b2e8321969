#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "store/StoreTarget.h"

#include <QString>

namespace Brindle {

/// Takes searches from a store and makes them, one after the other, until there is none left; with `--wait` on and on.
class Worker {
public:
    /// `list`: of this list of searches alone; empty: any.
    Worker(const CommandLine& line, Console& console, const StoreTarget& target, const QString& spoolFolder,
           QString list);

    /// The exit status: done, or stopped by Ctrl-C. Throws `Failure` when the store cannot be used at the beginning.
    int Run();

private:
    const CommandLine& line_;
    Console& console_;
    StoreTarget target_;
    QString spoolFolder_;
    QString list_;
    QString name_; ///< of the worker: user, machine, process
};

/// Runs the worker in this process and as many others beside it as `--jobs` says. `list`: the list of searches that
/// they take from; empty: any. The exit status.
int RunWorkers(const CommandLine& line, Worker& worker, const QString& list);

} // namespace Brindle
