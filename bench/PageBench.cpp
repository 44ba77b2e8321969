#include "GumboNodes.h"
#include "ListingsPage.h"
#include "page/HtmlDocument.h"
#include "page/HtmlSerializer.h"
#include "page/Selector.h"

#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>

// Parsing, serialising and selecting on a result page, held against gumbo's parsing of the same page with a walk over
// its tree. The ratios are processor time over gumbo's, taken in turn.

namespace Brindle::Test {
namespace {

double SecondsOf(const std::function<void()>& work) {
    const std::clock_t before = std::clock();
    work();
    return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
}

void AgainstGumbo(benchmark::State& state) {
    const QString page = ListingsPage(static_cast<int>(state.range(0)), true);
    const QByteArray bytes = page.toUtf8();
    const Selector selector = Selector::Parse(u".listingDetail > h3 a[href*='/bus/'] > .listingTitle");
    double gumbo = 0;
    double parsing = 0;
    double serialising = 0;
    double selecting = 0;
    for ([[maybe_unused]] auto iteration : state) {
        gumbo += SecondsOf([&] { benchmark::DoNotOptimize(CountGumboNodes(bytes)); });
        std::optional<PageTree> tree;
        parsing += SecondsOf([&] { tree.emplace(page); });
        serialising += SecondsOf([&] { benchmark::DoNotOptimize(OuterHtml(*tree, tree->Body())); });
        size_t found = 0;
        selecting += SecondsOf([&] { found = selector.SelectAll(*tree).size(); });
        if (found != static_cast<size_t>(state.range(0)))
            state.SkipWithError("a listing was not selected");
    }
    state.counters["parsing"] = parsing / gumbo;
    state.counters["serialising"] = serialising / gumbo;
    state.counters["selecting"] = selecting / gumbo;
    state.counters["gumbo_ms"] = gumbo * 1000 / static_cast<double>(state.iterations());
}
BENCHMARK(AgainstGumbo)->Arg(25)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

// Time per listing must stay the same from 1,000 to 50,000 listings.
void BodyOfPage(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const QString page = ListingsPage(count, true);
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(Brindle::BodyOfPage(page, MarkupForm::Legacy));
    state.counters["listing"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BodyOfPage)->Arg(25)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Brindle::Test
