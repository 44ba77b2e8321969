#include "cli/AnyPageCommands.h"

#include "adapters/Adapters.h"
#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/LeadOutput.h"
#include "cli/Session.h"
#include "cli/StoreLink.h"
#include "core/DocumentRounds.h"
#include "discovery/AnyPage.h"
#include "discovery/Explain.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeFolders.h"
#include "toolkit/PageAddress.h"
#include "workbench/AnyDirectories.h"

#include <QDir>

#include <algorithm>
#include <memory>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Ctrl-C is all that can be waiting while a saved page is read, and it can wait that long; milliseconds.
constexpr qint64 turnInterval = 10;

} // namespace

bool ReadsDocuments(const CommandLine& line) {
    const auto directories = SiteAdapters();
    return !line.RecipeFileName.isEmpty() ||
           std::none_of(directories.begin(), directories.end(),
                        [&line](const SiteAdapter& site) { return site.Code == line.Site; });
}

QString PageUrlOf(const CommandLine& line) {
    QString url = TypedAddress(line.PageUrl);
    if (SiteOf(url).isEmpty())
        throw UsageError(u"--url: \u201C%1\u201D is no address of a web page"_s.arg(line.PageUrl));
    return url;
}

namespace {

// The directory whose pages are read: any website, a recipe's file, or a recipe in the folders by its code.
std::shared_ptr<const SiteAdapter> DirectoryOf(const CommandLine& line, Session& session) {
    if (line.RecipeFileName.isEmpty()) {
        session.SelectSite(line.Site);
        return session.Job.Adapter();
    }
    const QString code = RecipeCodeOf(line.RecipeFileName);
    session.State.CurrID = code;
    return std::make_shared<const SiteAdapter>(
        DirectoryOfRecipe({.Code = code, .FileName = line.RecipeFileName, .What = LoadRecipe(line.RecipeFileName)}));
}

// What the user should know of the recipe, line by line.
void ReportRecipe(const CommandLine& line, const Session& session, const SiteAdapter& site,
                  const QStringList& problems) {
    const QString name = line.RecipeFileName.isEmpty() ? line.Site : QDir::toNativeSeparators(line.RecipeFileName);
    for (const QString& problem : problems)
        session.Out.Report(name + u": " + problem);
    if (site.DriftOf)
        for (const QString& drift : site.DriftOf(session.Job.Counts))
            session.Out.Report(name + u": " + drift);
}

} // namespace

int RunParseAnyPage(const CommandLine& line, Console& console) {
    Session session(line, console, LoadSites(line));
    // Saved pages lead to the network only where that is asked for.
    SiteAdapter site = *DirectoryOf(line, session);
    if (!line.Details)
        site.ReadDetails = nullptr;
    const QString url = PageUrlOf(line);
    LeadOutput output(session.Leads, line.OutFileName, line.Format, session.Options,
                      FurtherColumns(line, session.More));
    output.GatherBetweenTurns(session.Loop);
    session.Loop.TurnAtMostEvery(turnInterval);
    output.Begin();
    StoreLink store(line, session, url);
    session.Job.Begin();
    session.State.CurrWay = site.Links;
    session.State.CurrPage = {url, {}};
    QStringList problems;
    qint64 pages = 0;
    int status = ExitStatus::Done;
    for (const QString& fileName : line.Arguments) {
        if (session.State.ShouldStop || !output.Error().isEmpty())
            break;
        try {
            DocumentRecords found = site.ReadDocument(TextOfFile(fileName), url);
            for (const QString& problem : found.Problems)
                if (!problems.contains(problem))
                    problems.append(problem);
            KeepRecords(session.Job, site, std::move(found));
            output.Flush();
            ++pages;
            console.Note(u"%1: %2 leads so far"_s.arg(QDir::toNativeSeparators(fileName)).arg(session.Report.Count()));
        } catch (const Failure& failure) {
            const QString name = QDir::toNativeSeparators(fileName);
            const bool named = failure.Message().startsWith(name);
            console.Error(named ? failure.Message() : u"%1: %2"_s.arg(name, failure.Message()));
            status = ExitStatus::Failed;
        }
    }
    if (!session.EndCopies())
        status = ExitStatus::Failed;
    if (const QString losses = output.Finish(); !losses.isEmpty())
        console.Note(losses);
    console.Report(session.Report.Text());
    ReportRecipe(line, session, site, problems);
    if (!output.Error().isEmpty())
        console.Error(output.Error());
    if (!output.Error().isEmpty() || !session.State.FailureMessage.isEmpty())
        status = ExitStatus::Failed;
    store.End(session.CtrlC.Happened()       ? HarvestEnding::Stopped
              : status == ExitStatus::Failed ? HarvestEnding::Failed
                                             : HarvestEnding::Done,
              pages);
    return session.StatusOrInterrupted(status);
}

int RunNext(const CommandLine& line, Console&) {
    const QString url = PageUrlOf(line);
    const PageTree page = TreeOfFile(line.Arguments.first());
    const QString address = FindNextPage(page, PageLines(page), url).Address;
    if (!address.isEmpty())
        WriteToStandardOutput(address.toUtf8() + '\n');
    return ExitStatus::Done;
}

int RunExplain(const CommandLine& line, Console&) {
    const QString url = PageUrlOf(line);
    const PageTree page = TreeOfFile(line.Arguments.first());
    WriteToStandardOutput(ExplainReading(ReadAnyPage(page, url, Selectors::Made)));
    return ExitStatus::Done;
}

} // namespace Brindle
