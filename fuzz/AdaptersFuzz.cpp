#include "HarvestBench.h"
#include "Input.h"
#include "adapters/Adapters.h"
#include "core/Errors.h"
#include "core/HarvestDriver.h"
#include "page/HtmlDocument.h"
#include "toolkit/Text.h"

#include <QSet>

#include <array>

// A directory's pages, however broken. The first byte of an input chooses site and layout; after it comes a result page
// and, each after a NUL, what the fetches of its details pages bring, in turn. From 128 on the result page is parsed
// and written as a browser would. A crash, an endless reading (-timeout) and memory without bounds (-rss_limit_mb) are
// findings, and so is a lead that is listed twice.

namespace Brindle::Fuzz {
namespace {

struct Layout {
    const char16_t* Site;
    int Variant;
};
// The order is that of `run`, which makes the first inputs.
constexpr std::array<Layout, 12> Layouts = {{{u"KVPN001001", 1},
                                             {u"KVPN001001", 2},
                                             {u"KVPN002001", 1},
                                             {u"KVPN002001", 2},
                                             {u"KVPN002002", 1},
                                             {u"KVPE001001", 1},
                                             {u"KVPE001001", 2},
                                             {u"KVPE001002", 1},
                                             {u"KVPE001003", 1},
                                             {u"KVPE001003", 2},
                                             {u"KVPE001004", 1},
                                             {u"KVPE001005", 1}}};

// Fetches bring the pages in turn; every fifth fails, every third was redirected.
void FetchInTurn(Test::HarvestBench& bench, const QStringList& pages) {
    bench.Pages.OnFetch = [&bench, pages] {
        const qsizetype number = bench.Pages.Fetched.size() - 1;
        if (number % 3 == 2)
            bench.State.CurrRedirect = bench.Pages.Fetched.last() + u"/redirected";
        const bool fails = pages.isEmpty() || number % 5 == 4;
        bench.Pages.EveryPage = fails ? QString() : pages[number % pages.size()];
    };
}

void ReadOnce(Test::HarvestBench& bench, const QString& page) {
    try {
        GetDataResults(bench.Job, page);
    } catch (const PageError&) {
        // Ends the reading of this page only; the driver goes on.
    }
}

void Read(const Layout& layout, QStringList pages) {
    Test::HarvestBench bench(layout.Site, layout.Variant);
    const QString page = pages.takeFirst();
    FetchInTurn(bench, pages);
    bench.Options.cExtractEmails = true;
    ReadOnce(bench, page);
    ReadOnce(bench, page);
    QSet<QString> keys;
    for (const Lead& lead : bench.AllLeads()) {
        Require(!lead.Country.isEmpty(), "a lead has its country");
        const QString key = UpperTrimmed(lead.DetailsLink);
        Require(key.isEmpty() || !keys.contains(key), "no details link is listed twice");
        keys.insert(key);
    }
}

} // namespace
} // namespace Brindle::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle::Fuzz;
    if (size == 0)
        return 0;
    QStringList pages = TextOf(data + 1, size - 1).split(u'\0');
    const Layout& layout = Layouts[data[0] % 128 % Layouts.size()];
    try {
        if (data[0] >= 128)
            pages.first() = Brindle::BodyOfPage(pages.first(), Brindle::SiteOfCode(layout.Site).Form);
        Read(layout, std::move(pages));
    } catch (const Brindle::Failure&) {
        // Beyond the bounds of what is parsed.
    }
    return 0;
}
