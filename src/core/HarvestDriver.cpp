#include "core/HarvestDriver.h"

#include "core/Delay.h"
#include "core/Errors.h"
#include "toolkit/Marker.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 tickInterval = 1000;
constexpr quint32 refreshAfter = 180'000;
constexpr int mostEmptyLooks = 10; // at a next page that is loaded and has no records

} // namespace

void GetDataResults(Harvest& harvest, const QString& page, const QString& address) {
    const std::shared_ptr<const SiteAdapter> site = harvest.Adapter();
    if (!site)
        return;
    harvest.State.CurrWay = site->Links;
    if (site->ReadDocument)
        return KeepRecords(harvest, *site, site->ReadDocument(page, address));
    const auto pause = [&harvest, ms = site->PauseAfterPage] {
        if (ms > 0 && !harvest.ShouldStop())
            Delay(harvest.Loop, ms);
    };
    try {
        site->Read(harvest, harvest.State.CurrSite, page);
    } catch (const PageError&) {
        pause();
        throw;
    }
    pause();
}

HarvestDriver::HarvestDriver(Harvest& harvest, EmbeddedBrowser& browser, HarvestObserver* observer)
    : harvest_(harvest),
      browser_(browser),
      observer_(observer),
      tmrParse_(harvest.Loop.CreateTimer(tickInterval, [this] { OnTimer(); })),
      documents_(harvest, browser) {
    QObject::connect(&browser_, &EmbeddedBrowser::ProgressChange, &arrivals_,
                     [this](qint64 progress, qint64 maximum) { BrowserProgress(progress, maximum); });
    // Queued: whoever tells of a page is not to be asked for it, or sent on, within the telling.
    QObject::connect(
        &browser_, &EmbeddedBrowser::NavigateComplete, &arrivals_, [this] { PageArrived(); }, Qt::QueuedConnection);
}

void HarvestDriver::Start() {
    HarvestState& state = harvest_.State;
    if (state.Parsing)
        return;
    if (inTick_ && state.ShouldStop) {
        // The stopped round is still waiting further up the stack; it must not take the new harvest for its own.
        startDue_ = true;
        state.Parsing = true;
        return;
    }
    Launch();
}

void HarvestDriver::Launch() {
    HarvestState& state = harvest_.State;
    startDue_ = false;
    iStart_ = harvest_.Loop.TickCount();
    harvest_.Begin();
    pagesRead_.Clear();
    documents_.Begin();
    loadedAnew_ = false;
    harvest_.Status.SetPanel(StatusPanel::ExportedCount,
                             harvest_.Texts.WithNumber(Message::ExportedCount, state.ExportedNum));
    const quint32 stopsBefore = stops_;
    harvest_.PumpMessages();
    if (stops_ != stopsBefore || harvest_.Loop.Quitting())
        return;
    state.ShouldStop = false;
    state.Parsing = true;
    tmrParse_->SetEnabled(true);
}

void HarvestDriver::Stop() {
    ++stops_;
    startDue_ = false;
    tmrParse_->SetEnabled(false);
    harvest_.State.ShouldStop = true;
    harvest_.State.Parsing = false;
    harvest_.PumpMessages();
    // Twice each: the messages that the first call sets off can begin a new transfer.
    browser_.Stop();
    browser_.Stop();
    harvest_.Pages.Disconnect();
    harvest_.Pages.Disconnect();
    harvest_.Status.SetPanel(StatusPanel::Message, {});
    harvest_.Status.SetProgressPosition(0);
    Delay(harvest_.Loop, 1000);
    harvest_.PumpMessages();
}

void HarvestDriver::BrowserProgress(qint64 progress, qint64 maximum) {
    harvest_.Status.SetProgressMaximum(maximum);
    // A percentage is set against a maximum that is not 100: that is how the bar has always moved.
    const bool known = progress >= 1 && maximum >= 2;
    harvest_.Status.SetProgressPosition(
        known ? qRound64(static_cast<double>(progress) * 100.0 / static_cast<double>(maximum)) : 0);
    harvest_.PumpMessages();
}

void HarvestDriver::OnTimer() {
    if (inTick_) {
        tickDue_ = true;
        return;
    }
    if (harvest_.Loop.Quitting()) {
        tmrParse_->SetEnabled(false);
        return;
    }
    inTick_ = true;
    do {
        tickDue_ = false;
        Tick();
        if (startDue_ && !harvest_.Loop.Quitting())
            Launch();
        // A Start during the tick has armed the timer; the tick that fell due meanwhile has its turn now.
    } while (tickDue_ && tmrParse_->Enabled() && !harvest_.Loop.Quitting());
    inTick_ = false;
    if (harvest_.Loop.Quitting())
        tmrParse_->SetEnabled(false);
    if (observer_ && !tmrParse_->Enabled())
        observer_->HarvestEnded();
}

// Without waits a tick follows the page at once instead of looking for it again and again.
void HarvestDriver::PageArrived() {
    if (harvest_.Loop.Pace() <= 0 && tmrParse_->Enabled())
        OnTimer();
}

void HarvestDriver::Tick() {
    HarvestState& state = harvest_.State;
    tmrParse_->SetEnabled(false);
    state.Parsing = false;
    harvest_.Status.SetPanel(StatusPanel::Message, {});

    // The directory of this tick, whatever is chosen while messages are handled.
    static const SiteAdapter unknown;
    const std::shared_ptr<const SiteAdapter> held = harvest_.Adapter();
    const SiteAdapter& site = held ? *held : unknown;
    state.CurrWay = site.Links;
    state.CurrPage = {browser_.LocationAddress(), browser_.PeerAddress()};
    if (site.ReadDocument)
        return DocumentTick(site);
    // Reading can wait for the page, too, so messages are handled meanwhile.
    const QString page = browser_.BodyOuterHtml(site.Form);
    if (harvest_.ShouldStop())
        return Finish();
    iStop_ = harvest_.Loop.TickCount();
    if (iStop_ - iStart_ > refreshAfter) {
        browser_.Refresh();
        iStart_ = harvest_.Loop.TickCount();
        Delay(harvest_.Loop, 2000);
        if (harvest_.ShouldStop())
            return Finish();
    }
    GetInitTokens(page, site, markers_, state.CurrSite);
    if (!ContainsFolded(page, markers_.TknInitList) || !ContainsFolded(page, markers_.TknEndList)) {
        LookAgain();
        if (observer_)
            observer_->PageIncomplete(page);
        return;
    }

    browser_.Stop();
    Delay(harvest_.Loop, 1000);
    if (state.ShouldStop)
        return;
    state.CurrWay = site.Links;
    state.CurrPage = {browser_.LocationAddress(), browser_.PeerAddress()};
    ReadPage(page);
    if (observer_)
        observer_->PageRead();
    if (state.ShouldStop)
        return Finish();
    // Pages that a site turns itself may all have one address.
    if (!site.TurnPage && IsRepeated()) {
        Finish();
        if (observer_)
            observer_->PagesRepeat(browser_.LocationAddress());
        return;
    }

    const bool hasNextPage =
        ContainsFolded(page, markers_.TknNextPageText) && !ContainsFolded(page, markers_.TknNextPageDisabled);
    if (!hasNextPage)
        return Finish();
    if (site.TurnPage)
        TurnBy(site, page);
    else
        LoadNext(site, page);
}

void HarvestDriver::DocumentTick(const SiteAdapter& site) {
    const bool complete = LookAtDocument(site);
    if (harvest_.ShouldStop())
        return Finish();
    if (!complete) {
        if (documents_.EmptyLooks() >= mostEmptyLooks)
            return Finish(); // the list has ended before this page
        if (documents_.IsEmpty() && harvest_.Loop.TickCount() - iStart_ > refreshAfter) {
            browser_.Refresh();
            iStart_ = harvest_.Loop.TickCount();
        }
        LookAgain();
        if (observer_ && documents_.IsEmpty())
            observer_->PageIncomplete(documents_.Document());
        return;
    }
    iStart_ = harvest_.Loop.TickCount();
    if (documents_.IsRepeated()) {
        Finish();
        if (observer_)
            observer_->PagesRepeat(browser_.LocationAddress());
        return;
    }
    for (const QString& problem : documents_.Problems())
        if (observer_)
            observer_->PageGivenUp(browser_.LocationAddress(), problem);
    documents_.Keep(site);
    if (observer_)
        observer_->PageRead();
    if (harvest_.ShouldStop())
        return Finish();
    LoadNextDocument(site);
}

bool HarvestDriver::LookAtDocument(const SiteAdapter& site) {
    try {
        return documents_.Look(site);
    } catch (const Failure& failure) {
        if (observer_)
            observer_->PageGivenUp(browser_.LocationAddress(), failure.Message());
        return false;
    }
}

void HarvestDriver::LoadNextDocument(const SiteAdapter& site) {
    const QString address = documents_.NextAddress(site);
    if (address.isEmpty()) {
        if (documents_.LoadMore(site) && !harvest_.ShouldStop())
            return GoOn(true);
        return Finish();
    }
    harvest_.Status.SetPanel(StatusPanel::Message, harvest_.Texts.Text(Message::Request));
    // An empty page between the two, so that the old one is not taken for the next.
    browser_.Navigate(u"about:blank"_s);
    Delay(harvest_.Loop, 1000);
    if (harvest_.ShouldStop())
        return Finish();
    documents_.PageLeft();
    browser_.Follow(address);
    GoOn(true);
}

void HarvestDriver::ReadPage(const QString& page) {
    harvest_.Records = {};
    try {
        GetDataResults(harvest_, page);
    } catch (const PageError& error) {
        if (observer_)
            observer_->PageGivenUp(browser_.LocationAddress(), error.Message());
    }
}

bool HarvestDriver::IsRepeated() {
    const QString page = browser_.LocationAddress() + u' ' + harvest_.Records.Text();
    const bool known = pagesRead_.Contains(page);
    if (!known)
        pagesRead_.Add(page);
    return known && loadedAnew_;
}

void HarvestDriver::TurnBy(const SiteAdapter& site, const QString& page) {
    PageTurn turn{harvest_, browser_};
    const TurnedPage turned = site.TurnPage(turn, page);
    if (harvest_.ShouldStop())
        return Finish();
    if (turned.GoesOn)
        GoOn(turned.Clicked, turned.OpenToStart);
}

void HarvestDriver::LoadNext(const SiteAdapter& site, const QString& page) {
    const QString link = NextPageLink(page);
    loadedAnew_ = !link.isEmpty();
    if (loadedAnew_) {
        // Site and layout are those of the page that was read; they can change while messages are handled.
        const QString address = MadeAbsolute(site, link);
        harvest_.Status.SetPanel(StatusPanel::Message, harvest_.Texts.Text(Message::Request));
        browser_.Navigate(u"about:blank"_s);
        Delay(harvest_.Loop, 2000);
        if (harvest_.ShouldStop())
            return Finish();
        if (site.Links == Way::Modern)
            browser_.Follow(address);
        else
            browser_.Navigate(address);
        Delay(harvest_.Loop, 3000);
        if (site.PauseForNextPage > 0 && !harvest_.ShouldStop())
            Delay(harvest_.Loop, site.PauseForNextPage);
        if (harvest_.ShouldStop())
            return Finish();
    }
    GoOn(loadedAnew_);
}

void HarvestDriver::GoOn(bool nextPageLoaded, bool openToStart) {
    harvest_.Status.SetPanel(StatusPanel::Message, harvest_.Texts.Text(Message::Request));
    tmrParse_->SetEnabled(true);
    harvest_.State.Parsing = !openToStart;
    if (observer_)
        observer_->RoundEnded(nextPageLoaded);
}

void HarvestDriver::LookAgain() {
    tmrParse_->SetEnabled(true);
    harvest_.State.Parsing = true;
}

void HarvestDriver::Finish() {
    harvest_.State.Parsing = false;
    harvest_.PumpMessages();
    harvest_.Status.SetPanel(StatusPanel::Message, harvest_.Texts.Text(Message::HarvestFinished));
    harvest_.Status.SetProgressPosition(0);
}

QString HarvestDriver::NextPageLink(const QString& page) const {
    const Needle linkBegin(markers_.TknInitNextPage);
    const Needle linkEnd(markers_.TknEndNextPage);
    const Needle nextText(markers_.TknNextPageText);
    qsizetype cursor = 0;
    qsizetype textAt = nextText.FindExact(page, 0);
    for (;;) {
        QStringView link;
        const qsizetype begin = linkBegin.FindFolded(page, cursor);
        if (begin >= 0) {
            cursor = begin + linkBegin.Length();
            const qsizetype end = linkEnd.FindFolded(page, cursor);
            if (end >= 0) {
                link = QStringView(page).sliced(cursor, end - cursor);
                cursor = end;
            }
        }
        if (textAt >= 0 && textAt < cursor)
            textAt = nextText.FindExact(page, cursor);
        // While another link stands before the next-page text, this one is not the next-page link.
        const qsizetype nextLinkAt = linkBegin.FindExact(page, cursor);
        if (nextLinkAt >= 0 && textAt >= nextLinkAt)
            continue;
        QString result = link.toString();
        ReplaceAll(result, u"&amp;", u"&");
        ReplaceAll(result, u"./", u"/");
        return result;
    }
}

QString HarvestDriver::MadeAbsolute(const SiteAdapter& site, QString link) const {
    const int number = harvest_.State.CurrSite;
    const bool linksHome = number >= 1 && number <= static_cast<int>(site.Layouts.size()) &&
                           site.Layouts[static_cast<size_t>(number - 1)].LinksToOwnHome;
    const QString base = linksHome ? harvest_.Site().Base : harvest_.SelectedBase();
    ReplaceAll(link, base, u"");
    if (!ContainsFolded(link, u"http:"))
        link.prepend(base);
    return site.MendLink ? site.MendLink(link) : link;
}

} // namespace Brindle
