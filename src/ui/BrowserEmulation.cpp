#include "ui/BrowserEmulation.h"

#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Emulation {
    QStringView VersionStart;
    quint32 Value;
};

// Each later match overrides an earlier one: "11" after "9.11"'s "9", "10" after nothing else.
constexpr std::array<Emulation, 6> emulations{
    {{u"8", 8888}, {u"9", 9999}, {u"10", 10001}, {u"11", 11001}, {u"9.11", 11001}, {u"12", 12001}}};
constexpr quint32 defaultEmulation = 11001;

} // namespace

quint32 EmulationValue(QStringView engineVersion) {
    quint32 value = defaultEmulation;
    for (const Emulation& emulation : emulations)
        if (engineVersion.startsWith(emulation.VersionStart))
            value = emulation.Value;
    return value;
}

void SetIERegistryKey(const QString& engineVersion, const QString& executableName, Platform& system,
                      EmbeddedBrowser& browser) {
    if (engineVersion.startsWith(u'8'))
        browser.SetUserAgent(u"Mozilla/4.0 (compatible; MSIE 8.0; Windows NT 6.0)"_s);
    system.WriteUserRegistry(uR"(Software\Microsoft\Internet Explorer\Main\FeatureControl\FEATURE_BROWSER_EMULATION)"_s,
                             executableName, EmulationValue(engineVersion));
    system.WriteUserRegistry(uR"(Software\Microsoft\Windows\CurrentVersion\Internet Settings\Zones\3)"_s, u"1609"_s, 0);
}

} // namespace Brindle
