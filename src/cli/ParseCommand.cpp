#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/LeadOutput.h"
#include "cli/SavedPage.h"
#include "cli/Session.h"
#include "cli/StoreLink.h"
#include "core/HarvestDriver.h"
#include "page/HtmlDocument.h"

#include <QDir>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Ctrl-C is all that can be waiting while a saved page is read, and it can wait that long; milliseconds.
constexpr qint64 turnInterval = 10;

// The text that the adapter is to read.
QString PageText(const CommandLine& line, MarkupForm form, const QString& fileName) {
    QString text = TextOfFile(fileName);
    if (line.Markup == MarkupSource::AsIs)
        return text;
    try {
        return BodyOfPage(std::move(text), form);
    } catch (const Failure& failure) {
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), failure.Message()));
    }
}

// Reads one page; throws `Failure` when it cannot be read or is no results page.
void ReadPage(Session& session, const CommandLine& line, const QString& fileName) {
    const std::shared_ptr<const SiteAdapter> site = session.Job.Adapter();
    const QString page = PageText(line, site->Form, fileName);
    HarvestState& state = session.State;
    if (line.Variant > 0) {
        state.CurrSite = line.Variant;
    } else {
        MarkerSet markers;
        int layout = 0;
        GetInitTokens(page, *site, markers, layout);
        if (layout == 0)
            throw Failure(u"%1: no results page of %2: %3"_s.arg(QDir::toNativeSeparators(fileName), state.CurrID,
                                                                 MissingListMarkers(page, *site)));
        state.CurrSite = layout;
    }
    try {
        GetDataResults(session.Job, page);
    } catch (const PageError& error) {
        // As in a harvest, the reading of this page ends; the leads before the place stay.
        session.Report.AddPageGivenUp();
        session.Out.Error(u"%1: not read to the end: %2"_s.arg(QDir::toNativeSeparators(fileName), error.Message()));
    }
}

} // namespace

int RunParse(const CommandLine& line, Console& console) {
    Session session(line, console, LoadSites(line));
    session.SelectSite(line.Site);
    LeadOutput output(session.Leads, line.OutFileName, line.Format, session.Options,
                      FurtherColumns(line, session.More));
    output.GatherBetweenTurns(session.Loop);
    session.Loop.TurnAtMostEvery(turnInterval);
    output.Begin();
    StoreLink store(line, session, line.Arguments.first());
    session.Job.Begin();
    qint64 pages = 0;
    int status = ExitStatus::Done;
    for (const QString& fileName : line.Arguments) {
        if (session.State.ShouldStop || !output.Error().isEmpty())
            break;
        try {
            ReadPage(session, line, fileName);
            output.Flush();
            ++pages;
            console.Note(u"%1: %2 leads so far"_s.arg(QDir::toNativeSeparators(fileName)).arg(session.Report.Count()));
        } catch (const Failure& failure) {
            console.Error(failure.Message());
            status = ExitStatus::Failed;
        }
    }
    if (!session.EndCopies())
        status = ExitStatus::Failed;
    if (const QString losses = output.Finish(); !losses.isEmpty())
        console.Note(losses);
    console.Report(session.Report.Text());
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

} // namespace Brindle
