#include "discovery/RecordsAddress.h"

#include "discovery/NextPage.h"
#include "toolkit/Phone.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

namespace {

constexpr qsizetype longestAddress = 300; // characters
constexpr int mostWitnesses = 50;

QString MostOften(const QHash<QString, int>& counts) {
    QString most;
    int count = 0;
    for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry)
        if (!entry.key().isEmpty() && (entry.value() > count || (entry.value() == count && entry.key() < most))) {
            most = entry.key();
            count = entry.value();
        }
    return most;
}

} // namespace

AddressSigns AddressSignsIn(QStringView text, QStringView region) {
    if (text.size() > longestAddress)
        return {};
    const bool digits = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    const bool whole = digits && LooksLikeAddress(text, region);
    const bool code = whole && !PostalCodesIn(text, region).empty();
    return {code, (digits && HasStreetWord(text)) || (whole && !code)};
}

AddressHints AddressHintsOf(const PageTree& page, const QString& url, const std::vector<StructuredRecord>& structured) {
    AddressHints hints;
    hints.Host = SiteOf(url);
    if (page.Root() != noNode)
        hints.Language = page.Attribute(page.Root(), u"lang").toString().left(20);
    QHash<QString, int> countries;
    for (const StructuredRecord& record : structured)
        ++countries[record.Fields.Country];
    hints.Country = MostOften(countries);
    QHash<QString, int> regions;
    int seen = 0;
    for (NodeIndex node = 0; node < page.Count() && seen < mostWitnesses; ++node) {
        const QStringView href = page.Is(node, u"a") ? page.Attribute(node, u"href") : QStringView();
        if (!href.startsWith(u"tel:+") && !href.startsWith(u"tel:00"))
            continue;
        ++seen;
        if (const std::optional<PhoneNumber> number = ReadPhone(href.sliced(4), {}))
            ++regions[number->Region];
    }
    hints.PhoneRegion = MostOften(regions);
    return hints;
}

} // namespace Brindle
