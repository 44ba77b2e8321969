#include "SiteSelector.h"

#include "Delay.h"

namespace Brindle {

SiteSelector::SiteSelector(Harvest& harvest, HarvestDriver& driver, EmbeddedBrowser& browser, Platform& system)
    : harvest_(harvest), driver_(driver), browser_(browser), system_(system) {}

void SiteSelector::Open(const QString& entry) {
    harvest_.State.SelectedEntry = entry;
    browser_.Navigate(GetCountryURL(entry));
    harvest_.State.CurrID = harvest_.Catalogue.GetCountryID(entry);
}

void SiteSelector::Change(const QString& entry) {
    const quint32 change = ++changes_;
    const auto replaced = [&] { return change != changes_ || harvest_.Loop.Quitting(); };
    harvest_.State.SelectedEntry = entry;
    if (harvest_.State.Parsing || driver_.Running())
        driver_.Stop();
    if (replaced())
        return;
    browser_.Navigate(QStringLiteral("about:blank"));
    Delay(harvest_.Loop, 500);
    if (replaced())
        return;
    // The German directory, which a deployment may still offer, does not come up with an empty cache.
    if (!entry.contains(QStringLiteral("Germany"))) {
        system_.ClearUrlCache();
        browser_.ClearCache();
    }
    Delay(harvest_.Loop, 500);
    if (!replaced())
        Open(entry);
}

} // namespace Brindle
