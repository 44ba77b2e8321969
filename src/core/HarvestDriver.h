#pragma once

#include "core/DocumentRounds.h"
#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"
#include "core/SiteAdapter.h"

#include <memory>

namespace Brindle {

/// Told how a harvest goes on; every function may be left out.
class HarvestObserver {
public:
    virtual ~HarvestObserver() = default;
    /// A tick looked at a page that is no complete results page (yet): a list marker is missing, or it has no records.
    virtual void PageIncomplete(const QString& /*page*/) {}
    /// The adapter has read a results page. Setting `ShouldStop` here ends the harvest.
    virtual void PageRead() {}
    /// The round's next-page step is done; the timer is armed for another tick.
    virtual void RoundEnded(bool /*nextPageLoaded*/) {}
    /// The adapter could not go on with the page at `address`; the leads before the place stay, the harvest goes on.
    virtual void PageGivenUp(const QString& /*address*/, const QString& /*reason*/) {}
    /// The next page, loaded anew from `address`, is one that the harvest has read before: same address, same records;
    /// for directories that read whole documents, one of the two. The result pages go round in a circle, so the harvest
    /// ends here.
    virtual void PagesRepeat(const QString& /*address*/) {}
    /// The harvest has come to its end: no next page, or stopped.
    virtual void HarvestEnded() {}
};

/// Runs a page through the adapter of the current site, in the layout that was recognised; an unknown code does
/// nothing. A `PageError` of the adapter passes through. The pause that the site asks for after each page is made in
/// either case, unless the harvest was stopped.
///
/// A directory that reads whole documents is given one, loaded from `address`. Throws `Failure` when it is beyond what
/// is read.
void GetDataResults(Harvest& harvest, const QString& page, const QString& address = {});

/// Walks a directory's result pages in the browser: once a second a tick reads the page that is shown, hands a complete
/// results page to the site's adapter and loads the next one, until there is none or the user stops.
///
/// Ticks never nest: one that falls due while another waits runs when that one has ended.
class HarvestDriver {
public:
    HarvestDriver(Harvest& harvest, EmbeddedBrowser& browser, HarvestObserver* observer = nullptr);
    HarvestDriver(const HarvestDriver&) = delete;
    HarvestDriver& operator=(const HarvestDriver&) = delete;

    /// Starts a harvest on the page that the browser shows; does nothing while one is in progress. While a tick that
    /// was stopped still waits, the new harvest begins when that one has ended.
    void Start();
    /// Ends the harvest: transfers are aborted, an adapter ends at its next listing. Waits a second.
    void Stop();
    /// A harvest is in progress or one of its ticks is running.
    bool Running() const { return inTick_ || tmrParse_->Enabled(); }

private:
    void Launch();
    void OnTimer();
    void PageArrived();
    void Tick();
    void DocumentTick(const SiteAdapter& site);
    bool LookAtDocument(const SiteAdapter& site);
    void LoadNextDocument(const SiteAdapter& site);
    void ReadPage(const QString& page);
    /// Whether the page just read is a next page that was loaded anew and is known already; it is known from now on.
    bool IsRepeated();
    void TurnBy(const SiteAdapter& site, const QString& page);
    void LoadNext(const SiteAdapter& site, const QString& page);
    /// Arms the timer for another round.
    void GoOn(bool nextPageLoaded, bool openToStart = false);
    /// Arms the timer for another look at the same page.
    void LookAgain();
    void Finish();
    /// The address of the next page as the page gives it; empty when no link can be taken.
    QString NextPageLink(const QString& page) const;
    QString MadeAbsolute(const SiteAdapter& site, QString link) const;
    void BrowserProgress(qint64 progress, qint64 maximum);

    Harvest& harvest_;
    EmbeddedBrowser& browser_;
    QObject arrivals_; // what the browser tells ends with the driver
    HarvestObserver* observer_;
    std::unique_ptr<MessageLoop::Timer> tmrParse_;
    MarkerSet markers_;
    DocumentRounds documents_;
    quint32 iStart_ = 0; // tick count of the last browser refresh
    quint32 iStop_ = 0;  // tick count of the current tick
    bool inTick_ = false;
    bool tickDue_ = false;
    bool startDue_ = false; // Start was pressed while a stopped tick still waits
    quint32 stops_ = 0;
    bool loadedAnew_ = false; // the page that is shown was loaded as the next one
    DuplicateKeys pagesRead_; // address and records of each
};

} // namespace Brindle
