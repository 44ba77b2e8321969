#include "cli/HarvestWatch.h"

#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

HarvestWatch::HarvestWatch(const Harvest& harvest, const EmbeddedBrowser& browser, double patienceSeconds, qint32 pages)
    : harvest_(harvest), browser_(browser), patienceSeconds_(patienceSeconds), pages_(pages) {
    sincePage_.start();
}

void HarvestWatch::PageRead() {
    ++pages_;
    BePatient();
}

void HarvestWatch::RoundEnded(bool /*nextPageLoaded*/) {
    BePatient();
}

QString HarvestWatch::Address() const {
    return ShownAddress(browser_.LocationAddress());
}

bool HarvestWatch::MayStillCome() const {
    const double waited = static_cast<double>(sincePage_.elapsed()) / 1000;
    return (browser_.Busy() || browser_.RunsScripts()) && waited < patienceSeconds_;
}

QString HarvestWatch::WhyNoResults(const QString& page) const {
    QString reason = browser_.LastError();
    if (reason.isEmpty()) {
        const std::shared_ptr<const SiteAdapter> site = harvest_.Adapter();
        reason = u"no results page of %1: %2"_s.arg(harvest_.State.CurrID, site->ReadDocument
                                                                               ? u"no list of businesses was found"_s
                                                                               : MissingListMarkers(page, *site));
    }
    return ContainsExact(reason, Address()) ? reason : Address() + u": " + reason;
}

// The driver's next tick may be due already and come before this is heard of; it must not read another page.
void HarvestWatch::End() {
    ended_ = true;
    harvest_.State.ShouldStop = true;
}

void HarvestWatch::GiveUp(const QString& reason) {
    error_ = reason;
    End();
}

} // namespace Brindle
