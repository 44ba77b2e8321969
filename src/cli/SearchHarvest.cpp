#include "cli/SearchHarvest.h"

#include "browser/StaticBrowser.h"
#include "cli/HarvestWatch.h"
#include "export/JsonLine.h"
#include "net/Robots.h"
#include "store/StoreEdits.h"
#include "store/StoreQueries.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QElapsedTimer>
#include <QSet>
#include <QThread>
#include <QUrl>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// How long leads are waited for that a store cannot take: a server that is started anew is back by then.
constexpr int patienceWithStore = 600'000;

// How often a page that did not come is asked for once more.
constexpr int mostAttempts = 4;
constexpr qint64 longestPause = 6000; // milliseconds, before an attempt

// Turns at hosts, and the lease that has to be renewed while one waits.
class Turns {
public:
    Turns(const CommandLine& line, Session& session, Database& database, RobotsCache& robots,
          const StoredSearch& search, const QString& worker)
        : line_(line), session_(session), database_(database), robots_(robots), search_(search), worker_(worker) {
        pageMs_ = static_cast<qint64>(session.More.WorkPageMilliseconds * line.Pace);
        leaseMs_ = session.More.WorkLeaseSeconds * 1000LL;
        sinceRenewed_.start();
        renewal_ = session.Loop.CreateTimer(static_cast<qint32>(leaseMs_ / 4), [this] { Renew(); });
        renewal_->SetEnabled(true);
    }

    qint64 LeaseMs() const { return leaseMs_; }
    bool Lost() const { return lost_; }
    void Lose() {
        lost_ = true;
        session_.State.ShouldStop = true;
    }

    /// Waits for the next turn at an address's host.
    void Wait(const QString& address) {
        const QString host = TurnHostOf(address);
        if (pageMs_ <= 0 || host.isEmpty())
            return;
        const qint64 wait = TakeTurn(host);
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < wait && !session_.State.ShouldStop && !session_.Loop.Quitting();)
            session_.Loop.WaitForMessage(static_cast<qint32>(std::min<qint64>(wait - timer.elapsed(), 200)));
    }

    /// Waits for the turn when the host lets robots ask for the address; false when it does not.
    bool MayAsk(const QString& address) {
        const QString reason =
            line_.IgnoreRobots || TurnHostOf(address).isEmpty() ? QString() : robots_.WhyNot(address);
        if (!reason.isEmpty()) {
            Refused = reason;
            return false;
        }
        Wait(address);
        return true;
    }

    QString Refused; ///< why the last address was that could not be asked for

private:
    // Milliseconds to the turn.
    qint64 TakeTurn(const QString& host) {
        try {
            return Searches(database_).TakeTurn(host, pageMs_);
        } catch (const StoreError&) {
            return pageMs_; // without the store nobody knows of the others; the usual pause is kept
        }
    }
    void Renew() {
        try {
            if (!Searches(database_).Renew(search_.Id, worker_, leaseMs_))
                Lose();
            else
                sinceRenewed_.start();
        } catch (const StoreError&) {
            // Another worker may take the search while the store is out of reach for long.
        }
    }

    const CommandLine& line_;
    Session& session_;
    Database& database_;
    RobotsCache& robots_;
    const StoredSearch& search_;
    QString worker_;
    qint64 pageMs_ = 0;
    qint64 leaseMs_ = 0;
    bool lost_ = false;
    QElapsedTimer sinceRenewed_;
    std::unique_ptr<MessageLoop::Timer> renewal_;
};

// Pages beside the browser's: details.
class PagesInTurn : public PageSource {
public:
    PagesInTurn(PageSource& pages, Turns& turns) : pages_(pages), turns_(turns) {}
    bool DownloadURL(const QString& url, QString& page, bool utf8) override {
        return turns_.MayAsk(url) && pages_.DownloadURL(url, page, utf8);
    }
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override {
        return turns_.MayAsk(url) && pages_.DirectDownloadURL(url, page, utf8);
    }
    void Disconnect() override { pages_.Disconnect(); }

private:
    PageSource& pages_;
    Turns& turns_;
};

class BrowserInTurn : public StaticBrowser {
public:
    explicit BrowserInTurn(Turns& turns) : turns_(turns) {}
    void Navigate(const QString& address) override {
        if (!TurnHostOf(address).isEmpty())
            asked_ = address;
        if (turns_.MayAsk(address))
            StaticBrowser::Navigate(address);
    }
    void ClickLink(int index) override {
        asked_ = LinkTarget(index);
        turns_.Wait(LocationAddress());
        StaticBrowser::ClickLink(index);
    }
    void Refresh() override {
        turns_.Wait(LocationAddress());
        StaticBrowser::Refresh();
    }

    /// The page that was asked for last.
    const QString& Asked() const { return asked_; }

private:
    Turns& turns_;
    QString asked_;
};

// Leads of the page that an earlier worker had begun are in the store; reading the page again brings them again.
class KeepingOnce : public LeadKeeping {
public:
    KeepingOnce(LeadKeeper& keeper, QSet<QByteArray> there) : keeper_(keeper), there_(std::move(there)) {}
    void Keep(const Lead& lead) override {
        if (!there_.remove(JsonLine(lead)))
            keeper_.Keep(lead);
    }

private:
    LeadKeeper& keeper_;
    QSet<QByteArray> there_;
};

// Notes every whole page once its leads are in the store, and asks once more for a page that did not come.
class PageNotes : public HarvestWatch {
public:
    PageNotes(const CommandLine& line, Session& session, BrowserInTurn& browser, Turns& turns, Database& database,
              LeadKeeper& keeper, const StoredSearch& search, const QString& worker)
        : HarvestWatch(session.Job, browser, line.PatienceSeconds, search.Pages),
          session_(session),
          browser_(browser),
          turns_(turns),
          database_(database),
          keeper_(keeper),
          search_(search),
          worker_(worker) {}

    void PageIncomplete(const QString& page) override {
        if (MayStillCome())
            return;
        if (!turns_.Refused.isEmpty())
            return GiveUp(turns_.Refused);
        // Nobody is there to press a key when one request of thousands fails.
        if (browser_.LastError().isEmpty() || browser_.Asked().isEmpty() || attempts_ == mostAttempts)
            return GiveUp(WhyNoResults(page));
        QElapsedTimer pause;
        const qint64 wait = std::min(200LL << (2 * attempts_++), longestPause);
        for (pause.start(); pause.elapsed() < wait && !session_.Loop.Quitting();)
            session_.Loop.WaitForMessage(static_cast<qint32>(wait - pause.elapsed()));
        BePatient();
        browser_.Navigate(QString(browser_.Asked()));
    }
    void PageRead() override {
        HarvestWatch::PageRead();
        attempts_ = 0;
    }
    void RoundEnded(bool nextPageLoaded) override {
        HarvestWatch::RoundEnded(nextPageLoaded);
        if (!nextPageLoaded)
            End();
        else if (keeper_.Flush(patienceWithStore))
            Note();
    }

private:
    void Note() {
        const QString goOn = browser_.LocationAddress();
        try {
            if (TurnHostOf(goOn).isEmpty())
                return; // not there yet; the page before it is where another worker would begin
            if (!Searches(database_).Checkpoint(search_.Id, worker_, keeper_.HarvestUid(), goOn, Pages(),
                                                session_.State.MainCategory, turns_.LeaseMs()))
                turns_.Lose();
        } catch (const StoreError&) {
            // Another worker would go on from an earlier page; nothing is lost.
        }
    }

    Session& session_;
    BrowserInTurn& browser_;
    Turns& turns_;
    Database& database_;
    LeadKeeper& keeper_;
    const StoredSearch& search_;
    QString worker_;
    int attempts_ = 0;
};

} // namespace

SearchHarvest::SearchHarvest(const CommandLine& line, Database& database, LeadKeeper& keeper, RobotsOfHosts& robots,
                             QString worker)
    : line_(line), database_(database), keeper_(keeper), robots_(robots), worker_(std::move(worker)) {}

SearchOutcome SearchHarvest::Run(const StoredSearch& search) {
    using How = SearchOutcome::End;
    pages_ = search.Pages;
    Console silent(true);
    try {
        Session session(line_, silent, LoadSites(line_));
        session.SelectSite(search.Row.Site);
        return Harvest(session, search);
    } catch (const StoreError&) {
        throw;
    } catch (const Failure& failure) {
        return {How::Failed, failure.Message()};
    }
}

void SearchHarvest::FlushBefore() {
    if (!keeper_.Flush(patienceWithStore))
        throw StoreError(StoreError::Why::Unreachable, keeper_.Trouble());
}

SearchOutcome SearchHarvest::Harvest(Session& session, const StoredSearch& search) {
    using How = SearchOutcome::End;
    const QString start = search.GoOn.isEmpty() ? StartOf(search.Row, session.Catalogue) : search.GoOn;
    session.Options.cExportAutomatic = false; // the store has the leads
    HarvestInfo info;
    info.Origin = HarvestOrigin::ManySearches;
    info.Site = search.Row.Site;
    info.Start = start;
    info.What = search.Row.What;
    info.Place = search.Row.Place;
    QSet<QByteArray> there;
    if (search.Harvest.isEmpty()) {
        keeper_.Begin(info);
        // From now on whoever takes the search over knows its harvest.
        FlushBefore();
        if (!Searches(database_).Checkpoint(search.Id, worker_, keeper_.HarvestUid(), {}, 0, {},
                                            session.More.WorkLeaseSeconds * 1000LL))
            return {How::Lost, {}};
    } else {
        info.Uid = search.Harvest;
        FlushBefore(); // it may have been this worker's before, and another's in between
        keeper_.GoOn(info, StoreEdits(database_).TakeOver(search.Harvest, keeper_.Session()));
        StoreQueries queries(database_);
        const auto harvest = queries.HarvestOf(search.Harvest);
        for (qint64 after = 0; harvest;) {
            const std::vector<StoredLead> leads = queries.LeadsOf(harvest->Id, after, 1000);
            if (leads.empty())
                break;
            for (const StoredLead& lead : leads) {
                // Of the page that was begun every listing is read again: what one says may hold for those behind it.
                if (lead.Seq > search.WholeTo || lead.Lead.DetailsLink.isEmpty())
                    there.insert(JsonLine(lead.Lead));
                else
                    session.Leads.DuplicatedItems.Add(UpperTrimmed(lead.Lead.DetailsLink));
            }
            after = leads.back().Seq;
        }
    }

    Turns turns(line_, session, database_, robots_.Cache, search, worker_);
    robots_.Fetch = [&](const QString& url) {
        turns.Wait(url);
        return session.Fetcher.FetchRobots(url);
    };
    PagesInTurn pages(session.Fetcher, turns);
    KeepingOnce keeping(keeper_, std::move(there));
    Brindle::Harvest job({session.State, session.Leads, session.Options, session.Texts, session.Catalogue, session.Loop,
                          session.Status, session.Notices, pages, session.Emails, session.Saver});
    job.Store = &keeping;
    BrowserInTurn browser(turns);
    session.Bench.SetUp(browser);
    PageNotes notes(line_, session, browser, turns, database_, keeper_, search, worker_);
    HarvestDriver driver(job, browser, &notes);
    browser.Navigate(start);
    if (!session.CtrlC.Happened()) {
        driver.Start();
        session.State.MainCategory = search.Category;
    }
    while (!notes.Ended() && !turns.Lost() && !session.Loop.Quitting())
        session.Loop.WaitForMessage(std::nullopt);
    browser.Stop();
    pages_ = notes.Pages();

    const bool interrupted = session.CtrlC.Happened();
    const QString error = !notes.Error().isEmpty() ? notes.Error() : session.State.FailureMessage;
    const How how = interrupted        ? How::Interrupted
                    : turns.Lost()     ? How::Lost
                    : !error.isEmpty() ? How::Failed
                                       : How::Done;
    if (how == How::Done || how == How::Failed)
        keeper_.End(how == How::Done ? HarvestEnding::Done : HarvestEnding::Failed, pages_);
    return {how, error};
}

} // namespace Brindle
