#include "browser/StaticBrowser.h"
#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/HarvestWatch.h"
#include "cli/LeadOutput.h"
#include "cli/SearchHarvest.h"
#include "cli/Session.h"
#include "cli/StoreLink.h"
#include "export/JsonLine.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"
#include "workbench/AnyDirectories.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSet>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Reports how the harvest goes on, and ends it where a page brings nothing new.
class Watch : public HarvestWatch {
public:
    Watch(const CommandLine& line, Session& session, const EmbeddedBrowser& browser, const LeadOutput& output)
        : HarvestWatch(session.Job, browser, line.PatienceSeconds), line_(line), session_(session), output_(output) {
        session_.Job.LeadKept = [this](const Lead& lead) { LeadKept(lead); };
    }
    ~Watch() override { session_.Job.LeadKept = {}; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    void PageIncomplete(const QString& page) override {
        session_.Out.ShowProgress(Pages(), session_.Report.Count(), Address());
        if (!MayStillCome())
            GiveUp(WhyNoResults(page));
    }

    void PageRead() override {
        HarvestWatch::PageRead();
        session_.Out.Note(u"page %1: %2 leads, %3 in all, %4"_s.arg(Pages())
                              .arg(newLeads_)
                              .arg(session_.Report.Count())
                              .arg(Address()));
        if (line_.MaxPages > 0 && Pages() >= line_.MaxPages)
            session_.State.ShouldStop = true;
        if (!output_.Error().isEmpty())
            session_.State.ShouldStop = true;
    }

    void RoundEnded(bool nextPageLoaded) override {
        HarvestWatch::RoundEnded(nextPageLoaded);
        if (!nextPageLoaded && newLeads_ == 0) {
            session_.Out.Note(u"%1: a next page is announced, but no link to it can be taken"_s.arg(Address()));
            End();
        }
        newLeads_ = 0;
    }

    void PageGivenUp(const QString& address, const QString& reason) override {
        session_.Report.AddPageGivenUp();
        session_.Out.Error(u"%1: not read to the end: %2"_s.arg(ShownAddress(address), reason));
    }

    void PagesRepeat(const QString& address) override {
        session_.Out.Note(u"%1: read before with the same records; the result pages go round in a circle, so the "
                          "harvest ends here"_s.arg(ShownAddress(address)));
    }

private:
    void LeadKept(const Lead& lead) {
        session_.Report.Add(lead);
        // Leads that are saved automatically and leads without a link are not held back as duplicates, so a page that
        // is read again brings them again; they are new only once.
        const QString key = UpperTrimmed(lead.DetailsLink);
        if (!key.isEmpty() && !session_.Options.cExportAutomatic) {
            ++newLeads_;
        } else {
            const qsizetype before = seen_.size();
            seen_.insert(key.isEmpty() ? JsonLine(lead) : key.toUtf8());
            newLeads_ += seen_.size() - before;
        }
        if (!output_.Error().isEmpty())
            session_.State.ShouldStop = true;
        session_.Out.ShowProgress(Pages(), session_.Report.Count(), Address());
    }

    const CommandLine& line_;
    Session& session_;
    const LeadOutput& output_;
    QSet<QByteArray> seen_;
    qint64 newLeads_ = 0;
};

std::unique_ptr<EmbeddedBrowser> MakeBrowser(const CommandLine& line, Session& session,
                                             const WebBrowserFactory& webBrowser) {
    std::unique_ptr<EmbeddedBrowser> browser;
    if (line.Browser == BrowserKind::Web)
        browser = webBrowser(session.Loop, {});
    else
        browser = std::make_unique<StaticBrowser>();
    session.Bench.SetUp(*browser);
    return browser;
}

// One harvest from a start address on; false when it was given up.
bool HarvestOnce(const CommandLine& line, Session& session, EmbeddedBrowser& browser, const LeadOutput& output,
                 const QString& start) {
    Watch watch(line, session, browser, output);
    HarvestDriver driver(session.Job, browser, &watch);
    StoreLink store(line, session, start);
    browser.Navigate(start);
    driver.Start();
    while (!watch.Ended() && !session.Loop.Quitting())
        session.Loop.WaitForMessage(std::nullopt);
    browser.Stop();
    const std::shared_ptr<const SiteAdapter> site = session.Job.Adapter();
    if (site->DriftOf)
        for (const QString& drift : site->DriftOf(session.Job.Counts))
            session.Out.Error(u"%1: %2"_s.arg(site->Code, drift));
    if (!watch.Error().isEmpty())
        session.Out.Error(watch.Error());
    const bool failed =
        !watch.Error().isEmpty() || !output.Error().isEmpty() || !session.State.FailureMessage.isEmpty();
    store.End(session.CtrlC.Happened() ? HarvestEnding::Stopped
              : failed                 ? HarvestEnding::Failed
                                       : HarvestEnding::Done,
              watch.Pages());
    return !failed;
}

} // namespace

int HarvestFrom(const CommandLine& line, Session& session, const QStringList& starts,
                const WebBrowserFactory& webBrowser) {
    LeadOutput output(session.Leads, line.OutFileName, line.Format, session.Options,
                      FurtherColumns(line, session.More));
    output.Begin();
    const std::unique_ptr<EmbeddedBrowser> browser = MakeBrowser(line, session, webBrowser);
    QElapsedTimer sinceStart;
    sinceStart.start();
    bool done = true;
    for (const QString& start : starts)
        if (!session.Loop.Quitting() && output.Error().isEmpty())
            done = HarvestOnce(line, session, *browser, output, start) && done;

    done = session.EndCopies() && done;
    if (const QString losses = output.Finish(); !losses.isEmpty())
        session.Out.Note(losses);
    session.Out.Report(session.Report.Text());
    session.Out.Note(u"%1 s"_s.arg(static_cast<double>(sinceStart.elapsed()) / 1000, 0, 'f', 1));
    if (!output.Error().isEmpty())
        session.Out.Error(output.Error());
    return session.StatusOrInterrupted(!done || !output.Error().isEmpty() ? ExitStatus::Failed : ExitStatus::Done);
}

void SelectDirectory(const CommandLine& line, Session& session) {
    session.SelectSite(line.RecipeFileName.isEmpty() ? line.Site : session.Bench.AddRecipe(line.RecipeFileName));
}

int RunHarvest(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser) {
    Session session(line, console, LoadSites(line));
    SelectDirectory(line, session);
    const SearchRow search{0, session.State.CurrID, line.Start, line.What, line.Place};
    return HarvestFrom(line, session, {StartOf(search, session.Catalogue)}, webBrowser);
}

} // namespace Brindle
