#include "toolkit/Marker.h"
#include "toolkit/Markup.h"
#include "toolkit/WorkingText.h"

#include <benchmark/benchmark.h>

// The text toolkit on its own: searches, cuts and the scrubbing of values.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

QString Markup(qsizetype length) {
    const QString piece =
        u"<div class=\"card\"><a href=\"/hours\" title=\"Hours &amp; prices\">Open from 8 to 18 h</a></div>\n"_s;
    return piece.repeated(length / piece.size() + 1);
}

void FindAbsent(benchmark::State& state) {
    const QString page = Markup(state.range(0));
    const Needle needle(u"<A class=emailLink");
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(needle.FindFolded(page, 0));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * page.size() * 2);
}
BENCHMARK(FindAbsent)->Arg(50'000)->Arg(5'000'000);

// A presence test per cut for a marker that the page lacks: the page is read once, not once per cut.
void AskForAnAbsentMarker(benchmark::State& state) {
    static const Marker begin(u"<a href=");
    static const Marker end(u"</a>");
    static const Marker absent(u"mailto:");
    const QString page = Markup(state.range(0));
    int64_t cuts = 0;
    for ([[maybe_unused]] auto iteration : state) {
        WorkingText text(page);
        while (text.Contains(begin)) {
            benchmark::DoNotOptimize(text.TakeBetween(begin, end));
            benchmark::DoNotOptimize(text.Contains(absent));
            ++cuts;
        }
    }
    state.SetItemsProcessed(cuts);
}
BENCHMARK(AskForAnAbsentMarker)->Arg(50'000)->Arg(5'000'000);

void CleanAndStripAValue(benchmark::State& state) {
    const QString value = u" <b>Finch &amp; Co</b>&nbsp;<span>Ltd</span>\r\n "_s;
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(StripTags(CleanMarkup(value)));
}
BENCHMARK(CleanAndStripAValue);

} // namespace
} // namespace Brindle
