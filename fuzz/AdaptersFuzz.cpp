#include "Adapters.h"
#include "Errors.h"
#include "HarvestBench.h"
#include "HarvestDriver.h"
#include "HtmlDocument.h"
#include "Input.h"
#include "Text.h"

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

// Brings the pages in turn; every fifth fetch fails, every third was redirected.
class PagesInTurn : public PageSource {
public:
    PagesInTurn(HarvestState& state, QStringList pages) : state_(state), pages_(std::move(pages)) {}
    bool DownloadURL(const QString& url, QString& page, bool /*utf8*/) override {
        const qsizetype number = fetches_++;
        if (number % 3 == 2)
            state_.CurrRedirect = url + u"/redirected";
        if (pages_.isEmpty() || number % 5 == 4)
            return false;
        page = pages_[number % pages_.size()];
        return true;
    }
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override {
        return DownloadURL(url, page, utf8);
    }
    void Disconnect() override {}

private:
    HarvestState& state_;
    QStringList pages_;
    qsizetype fetches_ = 0;
};

void ReadOnce(Test::HarvestBench& bench, Harvest& job, const QString& page) {
    try {
        GetDataResults(job, SiteAdapters(), page);
    } catch (const std::exception&) {
        // Ends the reading of this page only; the driver goes on.
    }
    for (const Lead& lead : bench.AllLeads())
        Require(!lead.Country.isEmpty(), "a lead has its country");
}

void Read(const Layout& layout, QStringList pages) {
    Test::HarvestBench bench(layout.Site, layout.Variant);
    const QString page = pages.takeFirst();
    PagesInTurn source(bench.State, std::move(pages));
    bench.Options.cExtractEmails = true;
    Harvest job({bench.State, bench.Leads, bench.Options, bench.Texts, bench.Catalogue, bench.Loop, bench.Status,
                 bench.Notices, source, bench.Emails, bench.Saver});
    ReadOnce(bench, job, page);
    ReadOnce(bench, job, page);
    QSet<QString> links;
    for (const Lead& lead : bench.AllLeads()) {
        const QString key = Trim(lead.DetailsLink).toUpper();
        Require(key.isEmpty() || !links.contains(key), "no details link is listed twice");
        links.insert(key);
    }
}

} // namespace
} // namespace Brindle::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle::Fuzz;
    if (size == 0)
        return 0;
    QStringList pages = PagesOf(data + 1, size - 1);
    const Layout& layout = Layouts[data[0] % 128 % Layouts.size()];
    try {
        if (data[0] >= 128)
            pages.first() = Brindle::BodyOfPage(pages.first(), Brindle::MarkupFormOf(layout.Site));
        Read(layout, std::move(pages));
    } catch (const Brindle::Failure&) {
        // Beyond the bounds of what is parsed.
    }
    return 0;
}
