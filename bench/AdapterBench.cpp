#include "HarvestBench.h"
#include "adapters/YellowPagesCanada.h"

#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>
#include <gumbo.h>

// A Yellow Pages Canada result page of 25 to 50,000 listings: time per listing must stay the same, and reading a page
// must cost a small part of what an HTML parser needs for it. `gumbo_ratio` is the parser's time over the reader's.

namespace Brindle::Test {
namespace {

using namespace Qt::StringLiterals;

// A listing of some 1,900 characters: the fields among as much other markup as directories put around them.
QString Listing(int number, bool withEmail) {
    const QString id = QString::number(number);
    return u"<DIV class=listingDetail><DIV class=\"listingMarker mapPin\"><A title=\"Show on the map\" href=\"/map/"_s +
           id +
           u"\"><IMG height=24 alt=\"\" src=\"/images/pin_blue.png\" width=18></A></DIV>\n"
           u"<H3 class=listingTitleLine><A title=\"Finch &amp; Co\" href=\"/bus/Ontario/Guelph/Finch%2C-Co/"_s +
           id + u".html?what=Plumbers&amp;where=Guelph\"><SPAN class=listingTitle>Finch &amp; Co Plumbing " + id +
           u"</SPAN></A></H3>\n<DIV class=phoneNumber>519 555-0100</DIV>\n<DIV class=address>" + id +
           u" Elm St, Guelph, ON N1H 3A1</DIV>\n"
           u"<UL class=\"listingLinks inline\"><LI><A class=urlLink title=\"Visit the website\" "
           u"href=\"/gourl/http%3A%2F%2Fwww.finch"_s +
           id + u".test\">Website</A></LI>" +
           (withEmail
                ? u"<LI><A class=emailLink href=\"mailto:info%40finch.test?subject=Your listing\">E-mail</A></LI>"_s
                : u"<LI><A class=smsLink href=\"/sms\">Send to a phone, free of charge for you</A></LI>"_s) +
           QString(
               u"</UL>\n<P class=description>Family business since 1962. Repairs, installation and maintenance of "
               u"pipes, "
               u"heaters, pumps and drains; emergency service day and night, in all of Wellington County.</P>\n"
               u"<TABLE class=hours cellSpacing=0 cellPadding=2><TBODY><TR><TD>Mon</TD><TD>8:00 - 18:00</TD></TR>"
               u"<TR><TD>Tue</TD><TD>8:00 - 18:00</TD></TR><TR><TD>Wed</TD><TD>8:00 - 18:00</TD></TR>"
               u"<TR><TD>Thu</TD><TD>8:00 - 18:00</TD></TR><TR><TD>Fri</TD><TD>8:00 - 16:00</TD></TR></TBODY></TABLE>\n"
               u"<DIV class=\"toolbar clearfix\"><SPAN class=rating title=\"4 of 5\"><I class=star></I><I "
               u"class=star></I>"
               u"<I class=star></I><I class=star></I><I class=empty></I></SPAN> <A href=\"/reviews\">12 reviews</A> | "
               u"<A href=\"/add-to-my-list\">Add to my list</A> | <A href=\"/directions\">Directions</A> | "
               u"<A href=\"/print\" target=_blank>Print</A></DIV>\n<UL class=tags><LI><A href=\"/t/1\">Pumps</A></LI>"
               u"<LI><A href=\"/t/2\">Drains</A></LI><LI><A href=\"/t/3\">Heaters</A></LI><LI><A href=\"/t/4\">Pipes"
               u"</A></LI><LI><A href=\"/t/5\">Emergency</A></LI></UL></DIV>\n"_s);
}

QString Page(int listings, bool withEmail) {
    QString page = u"<BODY class=results><DIV class=\"ypgResultsTop\"><FORM action=/search method=get><INPUT "
                   "id=ypgHeaderWhat maxLength=150 value=Plumbers name=what></FORM></DIV>\n"_s;
    for (int i = 0; i < listings; ++i)
        page += Listing(i, withEmail);
    return page + u"<DIV class=ypgFooterLegal>All rights reserved</DIV></BODY>";
}

void ReadPage(benchmark::State& state, bool withEmail) {
    const auto count = static_cast<int>(state.range(0));
    const QString page = Page(count, withEmail);
    for (auto iteration : state) {
        state.PauseTiming();
        auto bench = std::make_unique<HarvestBench>(SiteCode::YellowPagesCanada, 1);
        state.ResumeTiming();
        GetYPCADataResults1(bench->Job, page);
        state.PauseTiming();
        if (bench->Leads.Count() != count || bench->Leads.At(0).Website != u"http://www.finch0.test")
            state.SkipWithError("a listing was not read");
        bench.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * page.size() * 2);
    state.counters["listing"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(25)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);
}
BENCHMARK_CAPTURE(ReadPage, WithEmails, true)->Apply(Sizes);
BENCHMARK_CAPTURE(ReadPage, WithoutEmails, false)->Apply(Sizes);

// Processor time, which other programs on the machine do not lengthen.
double SecondsOf(const std::function<void()>& work) {
    const std::clock_t before = std::clock();
    work();
    return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
}

// Reader and parser in turn on the same page, so that both see the same machine.
void AgainstGumbo(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const QString page = Page(count, true);
    const QByteArray bytes = page.toUtf8();
    double reading = 0;
    double parsing = 0;
    for (auto iteration : state) {
        HarvestBench bench(SiteCode::YellowPagesCanada, 1);
        reading += SecondsOf([&] { GetYPCADataResults1(bench.Job, page); });
        parsing += SecondsOf([&] {
            GumboOptions options = kGumboDefaultOptions;
            options.max_errors = 0;
            GumboOutput* const output =
                gumbo_parse_with_options(&options, bytes.constData(), static_cast<size_t>(bytes.size()));
            benchmark::DoNotOptimize(output);
            gumbo_destroy_output(&options, output);
        });
    }
    state.counters["gumbo_ratio"] = parsing / reading;
    state.counters["reader_MB_per_s"] =
        static_cast<double>(state.iterations()) * static_cast<double>(bytes.size()) / reading / 1e6;
}
BENCHMARK(AgainstGumbo)->Arg(25)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Brindle::Test
