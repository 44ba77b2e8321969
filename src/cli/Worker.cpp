#include "cli/Worker.h"

#include "cli/SearchHarvest.h"
#include "platform/CreatePlatform.h"
#include "platform/TickCount.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>

#include <memory>
#include <optional>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 pauseMs = 500;   // before a store is asked again
constexpr qint32 firstMs = 5'000; // for a server that is just being started

} // namespace

Worker::Worker(const CommandLine& line, Console& console, const StoreTarget& target, const QString& spoolFolder,
               QString list)
    : line_(line),
      console_(console),
      target_(target),
      spoolFolder_(spoolFolder),
      list_(std::move(list)),
      name_(UserAtMachine() + u'/' + QString::number(QCoreApplication::applicationPid())) {}

int Worker::Run() {
    QtMessageLoop loop(SystemTickCount);
    Interrupt interrupt([&loop] { loop.Quit(); });
    if (line_.Member)
        InterruptWhenInputEnds();
    LeadKeeper keeper(target_, spoolFolder_, [this](const QString& problem) { console_.Error(problem); });
    std::optional<Database> database;
    bool met = false;
    const QDeadlineTimer first(firstMs);
    const MoreOptions more = LoadOptionsInForce(line_, *CreatePlatform(), console_);
    const qint64 leaseMs = more.WorkLeaseSeconds * 1000LL;
    RobotsOfHosts robots;
    std::optional<StoredSearch> held;
    std::optional<SearchOutcome> outcome;
    qint32 pages = 0;
    while (!interrupt.Happened() || held) {
        try {
            if (!database)
                database.emplace(target_);
            met = true;
            Searches searches(*database);
            if (held && outcome) {
                // What a search found is in the store before it counts as done.
                const bool ends =
                    outcome->How == SearchOutcome::End::Done || outcome->How == SearchOutcome::End::Failed;
                if (ends && !keeper.Flush(pauseMs) && !interrupt.Happened()) {
                    loop.WaitForMessage(pauseMs);
                    continue;
                }
                if (outcome->How == SearchOutcome::End::Interrupted)
                    searches.Release(held->Id, name_);
                else if (ends && searches.Finish(held->Id, name_,
                                                 outcome->How == SearchOutcome::End::Done ? SearchState::Done
                                                                                          : SearchState::Failed,
                                                 outcome->Error, pages))
                    console_.Note(u"search %1, %2 %3: %4 leads on %5 pages%6"_s.arg(
                        QString::number(held->Id), held->Row.Site, held->Row.Start,
                        QString::number(held->Harvest.isEmpty() ? 0 : searches.LeadsOf(*held)), QString::number(pages),
                        outcome->Error.isEmpty() ? QString() : QString(u"; " + outcome->Error)));
                held.reset();
                outcome.reset();
                continue;
            }
            if (!held)
                held = searches.Claim(name_, list_, line_.LimitPerHost, leaseMs);
            if (!held) {
                const auto counts = searches.Counts(list_);
                const bool othersAtWork = counts[static_cast<size_t>(SearchState::Running)] > 0;
                const bool waiting = counts[static_cast<size_t>(SearchState::Waiting)] > 0;
                if (!othersAtWork && !waiting && !line_.Wait)
                    break;
                // Whoever is at work may still lose his search.
                loop.WaitForMessage(pauseMs);
                continue;
            }
            SearchHarvest harvest(line_, *database, keeper, robots, name_);
            outcome = harvest.Run(*held);
            pages = harvest.Pages();
            if (const auto now = searches.All(list_, SearchState::Running); held->Harvest.isEmpty())
                for (const StoredSearch& search : now)
                    if (search.Id == held->Id)
                        held->Harvest = search.Harvest;
        } catch (const StoreError& error) {
            // A server that is started anew: the search in hand stays this worker's as long as its lease does.
            database.reset();
            if (interrupt.Happened())
                break;
            if (!met && (error.Reason != StoreError::Why::Unreachable || first.hasExpired()))
                throw;
            if (held && !outcome)
                held.reset();
            console_.Note(error.Message());
            loop.WaitForMessage(pauseMs);
        }
    }
    return interrupt.Happened() ? ExitStatus::Interrupted : ExitStatus::Done;
}

int RunWorkers(const CommandLine& line, Worker& worker, const QString& list) {
    std::vector<std::unique_ptr<QProcess>> others;
    if (!line.Member) {
        const QStringList arguments = QCoreApplication::arguments().mid(1) + QStringList{u"--member"_s, list};
        for (int i = 1; i < line.Jobs; ++i) {
            auto process = std::make_unique<QProcess>();
            process->setProcessChannelMode(QProcess::ForwardedChannels);
            process->start(QCoreApplication::applicationFilePath(), arguments);
            others.push_back(std::move(process));
        }
    }
    const int status = worker.Run();
    for (const auto& process : others) {
        // Ctrl-C on a terminal reaches all of them; a signal to this one alone does not, but the end of its input does.
        if (status == ExitStatus::Interrupted)
            process->closeWriteChannel();
        if (!process->waitForFinished(status == ExitStatus::Interrupted ? 2000 : -1))
            process->kill();
        process->waitForFinished(2000);
    }
    return status;
}

} // namespace Brindle
