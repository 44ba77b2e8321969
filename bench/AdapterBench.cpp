#include "HarvestBench.h"
#include "ListingsPage.h"
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

void ReadPage(benchmark::State& state, bool withEmail) {
    const auto count = static_cast<int>(state.range(0));
    const QString page = ListingsPage(count, withEmail);
    for ([[maybe_unused]] auto iteration : state) {
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
    const QString page = ListingsPage(count, true);
    const QByteArray bytes = page.toUtf8();
    double reading = 0;
    double parsing = 0;
    for ([[maybe_unused]] auto iteration : state) {
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
