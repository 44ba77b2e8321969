#include "ui/SiteSelector.h"

#include "core/Delay.h"

namespace Brindle {

using namespace Qt::StringLiterals;

SiteSelector::SiteSelector(Harvest& harvest, HarvestDriver& driver, EmbeddedBrowser& browser, Platform& system)
    : harvest_(harvest), driver_(driver), browser_(browser), system_(system) {}

void SiteSelector::Open(const QString& entry) {
    harvest_.State.SelectedEntry = entry;
    if (HasHomePage(entry))
        browser_.Navigate(GetCountryURL(entry));
    harvest_.State.CurrID = harvest_.Catalogue.GetCountryID(entry);
}

void SiteSelector::GoHome() {
    if (HasHomePage(harvest_.State.SelectedEntry))
        browser_.Navigate(harvest_.SelectedBase());
}

bool SiteSelector::HasHomePage(const QString& entry) const {
    const SiteEntry* const site = harvest_.Catalogue.Find(harvest_.Catalogue.GetCountryID(entry));
    return !site || !site->Base.isEmpty();
}

void SiteSelector::Change(const QString& entry) {
    const quint32 change = ++changes_;
    const auto replaced = [&] { return change != changes_ || harvest_.Loop.Quitting(); };
    harvest_.State.SelectedEntry = entry;
    if (harvest_.State.Parsing || driver_.Running())
        driver_.Stop();
    if (replaced())
        return;
    if (!HasHomePage(entry))
        return Open(entry); // any website: that of the page that is shown
    browser_.Navigate(u"about:blank"_s);
    Delay(harvest_.Loop, 500);
    if (replaced())
        return;
    // The German directory, which a deployment may still offer, does not come up with an empty cache.
    if (!entry.contains(u"Germany"_s)) {
        system_.ClearUrlCache();
        browser_.ClearCache();
    }
    Delay(harvest_.Loop, 500);
    if (!replaced())
        Open(entry);
}

} // namespace Brindle
