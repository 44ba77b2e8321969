#include "InventedLeads.h"
#include "store/StoreQueries.h"
#include "store/StoreWriter.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>

using namespace Brindle;
using namespace Qt::StringLiterals;

// A store of a million leads: how long it takes to fill, how large it is, and how long each kind of question takes.
// BRINDLE_BENCH_LEADS: another number of leads; BRINDLE_BENCH_STORE: another target, which must be empty.

namespace {

qint64 LeadNumber() {
    const int given = qEnvironmentVariableIntValue("BRINDLE_BENCH_LEADS");
    return given > 0 ? given : 1'000'000;
}

struct Filled {
    QTemporaryDir Folder;
    std::unique_ptr<Database> Store;
    qint64 TextBytes = 0;

    Filled() {
        const QString target = qEnvironmentVariable("BRINDLE_BENCH_STORE", Folder.filePath(u"leads.db"_s));
        Store = std::make_unique<Database>(StoreTarget::Parse(target));
    }
};

// As the keeper brings them when it has fallen behind: 5,000 leads a transaction; eight directories, 5,000 leads a
// harvest.
constexpr qint64 batch = 5000;

void Fill(Filled& filled, benchmark::State& state) {
    StoreWriter writer(*filled.Store);
    HarvestInfo harvest;
    std::vector<StoreEvent> page;
    const qint64 begun = 1'700'000'000'000;
    state.PauseTiming(); // the leads are made between the measurements
    for (qint64 i = 0; i < LeadNumber(); ++i) {
        if (i % 5000 == 0) {
            harvest = {};
            harvest.Uid = u"harvest-%1"_s.arg(i);
            harvest.Session = u"s"_s;
            harvest.Site = u"SITE%1"_s.arg(i / 5000 % 8);
            harvest.Begun = begun + i * 100;
            page.push_back(harvest);
        }
        Lead lead = Test::InventedLead(i);
        for (int column = 0; column < FieldCount; ++column)
            filled.TextBytes += lead.At(column).toUtf8().size();
        page.push_back(FoundLead{harvest.Uid, i % 5000 + 1, begun + i * 100, std::move(lead)});
        if (i % 5000 == 4999)
            page.push_back(HarvestEnd{harvest.Uid, begun + i * 100});
        if (i % batch == batch - 1) {
            state.ResumeTiming();
            writer.Take(page);
            page.clear();
            writer.IndexWords(5000);
            state.PauseTiming();
        }
    }
    state.ResumeTiming();
    writer.Take(page);
    writer.IndexWords();
}

Filled& Store() {
    static Filled filled;
    return filled;
}

void Keep(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        Fill(Store(), state);
    const auto size = static_cast<double>(StoreQueries(*Store().Store).Size());
    state.counters["leads/s"] = benchmark::Counter(static_cast<double>(LeadNumber()), benchmark::Counter::kIsRate);
    state.counters["text_MB"] = static_cast<double>(Store().TextBytes) / 1e6;
    state.counters["file_MB"] = size / 1e6;
    state.counters["file/text"] = size / static_cast<double>(Store().TextBytes);
}

void Page(benchmark::State& state, const LeadFilter& filter, const LeadOrder& order, qint64 offset) {
    StoreQueries queries(*Store().Store);
    size_t rows = 0;
    for ([[maybe_unused]] auto _ : state)
        rows = queries.Leads(filter, order, offset, 200).size();
    state.counters["rows"] = static_cast<double>(rows);
}

void Count(benchmark::State& state, const LeadFilter& filter) {
    StoreQueries queries(*Store().Store);
    qint64 count = 0;
    for ([[maybe_unused]] auto _ : state)
        count = queries.LeadCount(filter);
    state.counters["leads"] = static_cast<double>(count);
}

} // namespace

int main(int argc, char** argv) {
    const qint64 middle = 1'700'000'000 + LeadNumber() / 20;
    const auto asking = [](const QString& text, const QString& site = {}, qint64 since = 0, qint64 until = 0,
                           bool onlyNew = false) {
        LeadFilter filter;
        filter.Text = text;
        filter.Site = site;
        filter.Since = since;
        filter.Until = until;
        filter.OnlyNew = onlyNew;
        return filter;
    };
    const std::pair<const char*, LeadFilter> questions[] = {
        {"all", {}},
        {"word_of_one", asking(u"100500"_s)},
        {"word_of_many", asking(u"plumbers"_s)},
        {"beginning", asking(u"rest"_s)},
        {"two_words", asking(u"dentists bc"_s)},
        {"directory", asking({}, u"SITE3"_s)},
        {"since", asking({}, {}, middle)},
        {"until", asking({}, {}, 0, middle)},
        {"new", asking({}, {}, 0, 0, true)},
        {"everything", asking(u"plumbers"_s, u"SITE3"_s, middle, 0, true)},
    };
    benchmark::RegisterBenchmark("Keep", Keep)->Iterations(1)->Unit(benchmark::kMillisecond);
    for (const auto& [name, filter] : questions) {
        const LeadFilter& asked = filter;
        benchmark::RegisterBenchmark((std::string("FirstPage/") + name).c_str(), [asked](benchmark::State& state) {
            Page(state, asked, {}, 0);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("Count/") + name).c_str(), [asked](benchmark::State& state) {
            Count(state, asked);
        })->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("LastPage/all", [](benchmark::State& state) {
        Page(state, {}, {}, LeadNumber() - 200);
    })->Unit(benchmark::kMillisecond);
    for (const int column : {1, 4, 8, 12})
        benchmark::RegisterBenchmark(("Sorted/column" + std::to_string(column)).c_str(), [column](
                                                                                             benchmark::State& state) {
            Page(state, {}, {column, false}, 0);
        })->Unit(benchmark::kMillisecond);
    // What a view that goes far down in a sorted list asks for once, and then for each page.
    benchmark::RegisterBenchmark("SortedAll/column1", [](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
            benchmark::DoNotOptimize(StoreQueries(*Store().Store).Numbers({}, {1, false}));
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SortedPage/column1", [](benchmark::State& state) {
        StoreQueries queries(*Store().Store);
        const std::vector<qint64> numbers = queries.Numbers({}, {1, false});
        for ([[maybe_unused]] auto _ : state)
            queries.LeadsOf(std::span(numbers).subspan(numbers.size() / 2, 200));
    })->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
