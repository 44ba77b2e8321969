#include "HarvestBench.h"
#include "adapters/Canada411.h"
#include "adapters/UsYellowPages.h"
#include "adapters/YellowPagesCanada.h"

#include <benchmark/benchmark.h>

// Result pages of 25 to 50,000 listings, each with a details page where the layout has them. Time per listing must stay
// the same, and all layouts should cost about the same for a byte of markup, details pages included.

namespace Brindle::Test {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Layout {
    QStringView Site;
    int Variant;
    void (*Read)(Harvest&, const QString&);
    QString Head;
    QString Listing; ///< %1: a number
    QString Details; ///< null: nothing is fetched
};

// What stands around the fields of a page.
QString Clutter() {
    return u"<div class=\"card\"><ul class=\"links\"><li><a class=\"small\" title=\"Hours &amp; prices\" "
           u"rel=\"nofollow\" "
           "data-track=\"x\">Hours</a></li></ul><p>Open Monday to Friday from 8 to 18 h, Saturday from 9 to 13 h. "
           "Parking behind the house.</p></div>\n"_s;
}

Layout YellowPages1() {
    return {SiteCode::YellowPagesCanada,
            1,
            GetYPCADataResults1,
            u"<INPUT id=ypgheaderwhat value=Plumbers name=what>"_s,
            u"<DIV class=listingDetail><H3 class=listingTitleLine><A href=\"/bus/%1.html\"><SPAN class=listingTitle>"
            "Finch &amp; Co %1</SPAN></A></H3><DIV class=phoneNumber>519 555-0100</DIV><DIV class=address>1 Elm St, "
            "Guelph, ON N1H 3A1</DIV><A class=urlLink href=\"/gourl/http%3A%2F%2Ffinch.test\">Web</A></DIV>\n"_s +
                Clutter(),
            {}};
}

Layout YellowPages2() {
    return {SiteCode::YellowPagesCanada,
            2,
            GetYPCADataResults2,
            u"<div id=main>"_s,
            u"<div class=\"listing_info\"><a href=\"/res/%1\" class=\"n\">Finch %1</a></div>\n"_s + Clutter(),
            u"<h1 class=\"fn n listing_name\">Finch</h1><span class=\"single_result_phone\">519 555-0100</span>"_s +
                Clutter() +
                u"<div class=\"address adr\"><p>1 Elm St</p><span class=\"locality\">Guelph</span>"
                "<span class=\"region\">ON</span><span class=\"postal-code\">N1H 3A1</span></div>" +
                Clutter()};
}

Layout Businesses411() {
    return {SiteCode::Canada411,
            1,
            Get411CADataResults,
            u"<INPUT name=q id=what value=Plumbers autocomplete=\"off\">"_s,
            u"<H2 class=ltitle><A href=\"/business/%1\">Finch &amp; Co %1</A></H2>\n"_s + Clutter(),
            u"<h1 itemprop=\"name\">Finch</h1><div itemprop=\"streetAddress\">1 Elm St</div>"
            "<span itemprop=\"addressLocality\">Guelph</span><span itemprop=\"addressRegion\">ON</span>"
            "<div itemprop=\"postalCode\">N1H 3A1</div>"_s +
                Clutter() + u"<span itemprop=\"telephone\">519 555-0100</span>" + Clutter() +
                u"<a itemprop=\"url\" href=\"http://finch.test\">Web</a>"};
}

Layout Persons411() {
    Layout layout = Businesses411();
    layout.Listing = u"<H2 class=ltitle><A href=\"/person/%1\">Joan Reed %1</A></H2>\n"_s + Clutter();
    layout.Details = u"<h1 itemprop=\"name\"><span itemprop=\"givenName\">Joan</span><span itemprop=\"familyName\">Reed"
                     "</span></h1><b itemprop=\"telephone\">519 555-0100</b>"_s +
                     Clutter() +
                     u"<b itemprop=\"streetAddress\">1 Elm St</b><b itemprop=\"addressLocality\">Guelph</b>"
                     "<b itemprop=\"addressRegion\">ON</b><b itemprop=\"postalCode\">N1H 3A1</b>" +
                     Clutter();
    return layout;
}

Layout UsYellowPages1() {
    return {SiteCode::UsYellowPages,
            1,
            GetYPUSDataResults1,
            u"Category or name <input value=\"Plumbers\">"_s,
            u"<li class=\"serp-list-item organic\"><div class=\"link-wrapper\"><a href=\"/biz/%1\" rel=\"x\">Finch "
            "&amp; Co %1</a></div></li>\n"_s +
                Clutter(),
            u"<span class=\"name block\">Finch</span><b class=\"phone_number\">515 555-0100</b>"_s + Clutter() +
                u"<span class=\"street-address\">1 Elm St</span><span class=\"locality\">Ames</span>"
                "<span class=\"region\">IA</span><span class=\"postal-code\">50010</span>" +
                Clutter() + u"<a class=\"website\" href=\"http://finch.test\">Web</a>"};
}

Layout UsYellowPages2() {
    return {
        SiteCode::UsYellowPages,
        2,
        GetYPUSDataResults2,
        u"<div class=\"row-fluid\">"_s,
        u"<div class=\"link-wrapper clickstream-link\"><a href=\"/who/%1\"><p itemprop=\"name\">Finch %1</p></a>"
        "</div>\n"_s +
            Clutter(),
        u"<h1 class=\"name block\">Finch</h1><a href=\"tel:515-555-0100\">x</a><a href=\"tel:515-555-0101\">x</a>"_s +
            Clutter() +
            u"<div class=\"location-address\"><p class=\"address-primary\">1 Elm St</p>"
            "<p class=\"address-secondary\"></p></div><p class=\"address-location\">Ames, IA 50010</p>" +
            Clutter()};
}

void ReadListings(benchmark::State& state, const Layout& layout) {
    const auto count = static_cast<int>(state.range(0));
    QString page = layout.Head;
    for (int i = 0; i < count; ++i)
        page += QString(layout.Listing).replace(u"%1"_s, QString::number(i));
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        auto bench = std::make_unique<HarvestBench>(layout.Site, layout.Variant);
        bench->Pages.EveryPage = layout.Details;
        bench->Status.Keeps = bench->Pages.Keeps = false;
        state.ResumeTiming();
        layout.Read(bench->Job, page);
        state.PauseTiming();
        if (bench->Leads.Count() != count)
            state.SkipWithError("a listing was not read");
        bench.reset();
        state.ResumeTiming();
    }
    const auto bytes = (page.size() + count * layout.Details.size()) * static_cast<qsizetype>(sizeof(QChar));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes);
    state.counters["listing"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(25)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(ReadListings, YellowPagesCanada1, YellowPages1())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, YellowPagesCanada2, YellowPages2())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, Canada411Businesses, Businesses411())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, Canada411Persons, Persons411())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, UsYellowPages1, UsYellowPages1())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, UsYellowPages2, UsYellowPages2())->Apply(Sizes);

} // namespace
} // namespace Brindle::Test
