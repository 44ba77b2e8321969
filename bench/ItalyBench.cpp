#include "HarvestBench.h"
#include "adapters/Adapters.h"
#include "core/HarvestDriver.h"

#include <benchmark/benchmark.h>

// Result pages of the Italian directories with 25 to 50,000 listings: time per listing must stay the same.

namespace Brindle::Test {
namespace {

using namespace Qt::StringLiterals;

struct Layout {
    QStringView Site;
    int Variant;
    QString Head;
    QString Listing; ///< %1: a number
    QString Details; ///< null: nothing is fetched
};

const QString clutter =
    u"<div class=\"card\"><ul class=\"links\"><li><a class=\"small\" title=\"Orari e prezzi\" "
    u"rel=\"nofollow\" data-track=\"x\">Orari</a></li></ul><p>Aperto da luned\u00EC a venerd\u00EC dalle 8 "
    u"alle 18, sabato dalle 9 alle 13. Parcheggio dietro la casa.</p></div>\n"_s;

Layout PagineBianche1() {
    return {SiteCode::PagineBianche, 1, u"<input id=\"input_cosa\" value=\"Bar\">"_s,
            u"<h2 class=\"org fn\"><a href=\"scheda/%1\">Bar %1</a></h2>"_s + clutter,
            u"<h1 itemprop=\"name\">Bar</h1><b itemprop=\"streetAddress\">Via Po 1</span> - <b "
            u"itemprop=\"postalCode\">10121<"
            u"b itemprop=\"addressLocality\">Torino (TO)</b>tel: 011 1</span>"_s +
                clutter};
}

Layout PagineBianche2() {
    return {SiteCode::PagineBianche,
            2,
            u"<input id=\"input_cosa\" value=\"Bar\">"_s,
            u"<h2 class=\"org fn\"><a href=\"scheda/%1\">Bar %1</a></h2><span class=\"street-address\">Via Po 1</span>"
            u"<span class=\"locality\"> 10121 Torino</span>tel: 011 1</span>"_s +
                clutter,
            {}};
}

Layout PagineMail() {
    return {SiteCode::PagineMail,
            1,
            u"search-title"_s,
            u"<h2><a href=\"/azienda/%1\">Bar %1</a></h2><h3>Bar</h3><address>Via Po 1 10121 Torino "
            u"TO<br></address>Tel: 011 1<br>"
            u"<a href=\"http://bar.test\">sito</a><p class=\"itemBoxWrap\">"_s +
                clutter,
            {}};
}

Layout Infobel1() {
    return {
        SiteCode::InfobelItaly,
        1,
        u"search-field value=Bar>"_s,
        u"<DIV class=\"result-item\"><A href=\"a/%1\"><SPAN class=\"fn org\">Bar %1</SPAN></A><SPAN "
        u"class=street-address>Via Po 1"
        u"</SPAN><SPAN class=postal-code>10121</SPAN><SPAN class=locality>Torino</SPAN><DIV class=\"data tel\">011 1</DIV>"_s +
            clutter,
        {}};
}

Layout Infobel2() {
    return {SiteCode::InfobelItaly,
            2,
            {},
            u"<DIV class=\"result-item\"><SPAN class=fn>Bar</SPAN><SPAN class=street-address>Via Po 1</SPAN><DIV "
            u"class=\"data tel\">%1"
            u"</DIV>"_s +
                clutter,
            {}};
}

Layout Virgilio() {
    return {SiteCode::Virgilio, 1, u"qs value=\"Bar\"><p class=\"filtri-top\">"_s,
            u"<li><h6> <a href=\"http://own.test/%1\">Bar</a></h6></li>"_s + clutter,
            u"<h1 class=\"v:name\">Bar</h1><h3 class=\"lc_address\"><strong>Via Po 1</strong><strong>10121 Torino "
            u"(TO)</strong></h3>"
            u"tel: 011 1<"_s +
                clutter};
}

Layout Trovanumeri() {
    return {SiteCode::Trovanumeri,
            1,
            u"Ricerca Bar</b>"_s,
            u"<td height=\"9\"><a style=\"font-size: 20px;\" href=\"/dettagli/%1\">Bar %1</a></td><td>10121 Torino "
            u"(TO)</td><td>Tel: 011"
            u"</td><td>Via Po 1</td><td class=\"mail\">a@b.test</td>"_s +
                clutter,
            {}};
}

void ReadListings(benchmark::State& state, const Layout& layout) {
    const auto count = static_cast<int>(state.range(0));
    QString page = layout.Head;
    for (int i = 0; i < count; ++i)
        page += QString(layout.Listing).replace(u"%1"_s, QString::number(i));
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        auto bench = std::make_unique<HarvestBench>(layout.Site, layout.Variant);
        bench->Loop.SetPace(0);
        bench->Status.Keeps = bench->Pages.Keeps = false;
        bench->Pages.EveryPage = layout.Details;
        state.ResumeTiming();
        GetDataResults(bench->Job, page);
        state.PauseTiming();
        if (bench->Leads.Count() != count)
            state.SkipWithError("a listing was not read");
        bench.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * (page.size() + count * layout.Details.size()) *
                            2);
    state.counters["listing"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(25)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(ReadListings, PagineBianche1, PagineBianche1())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, PagineBianche2, PagineBianche2())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, PagineMail, PagineMail())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, InfobelItaly1, Infobel1())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, InfobelItaly2, Infobel2())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, Virgilio, Virgilio())->Apply(Sizes);
BENCHMARK_CAPTURE(ReadListings, Trovanumeri, Trovanumeri())->Apply(Sizes);

} // namespace
} // namespace Brindle::Test
