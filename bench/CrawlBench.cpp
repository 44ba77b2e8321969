#include "adapters/Adapters.h"
#include "browser/StaticBrowser.h"
#include "core/HarvestDriver.h"
#include "core/QtMessageLoop.h"
#include "core/SitesFile.h"
#include "demo/DemoServer.h"
#include "net/EmailHarvester.h"
#include "net/PageFetcher.h"

#include <QCoreApplication>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>

// Whole harvests of a demo directory without waits: what a crawled page costs, server included, which runs in the same
// process.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

class NoStatus : public StatusView {
public:
    void SetPanel(int, const QString&) override {}
    void SetProgressMaximum(qint64) override {}
    void SetProgressPosition(qint64) override {}
};

class NoDialogs : public Dialogs {
public:
    bool Confirm(const QString&) override { return false; }
    void Inform(const QString&) override {}
    void Warn(const QString&) override {}
    ChosenFile AskSaveFile(const QString&, const QString&, const QStringList&) override { return {}; }
    QString AskFolder(const QString&, const QString&) override { return {}; }
};

class NoSaver : public LeadSaver {
public:
    void SaveLead(const QString&, const QString&, const Lead&) override {}
};

class PageCount : public HarvestObserver {
public:
    int Pages = 0;
    bool Ended = false;
    void PageRead() override { ++Pages; }
    void HarvestEnded() override { Ended = true; }
};

struct Outcome {
    int Pages = 0;
    qsizetype Leads = 0;
};

Outcome HarvestDemo(const Demo::DemoServer& server, const SiteCatalogue& catalogue, const QString& code, int layout) {
    Settings options;
    options.eRandom = u"0"_s;
    const MessageTexts texts;
    QtMessageLoop loop;
    loop.SetPace(0);
    NoStatus status;
    NoDialogs dialogs;
    NoSaver saver;
    LeadList leads;
    HarvestState state;
    state.CurrID = code;
    state.SelectedEntry = catalogue.Find(code)->DisplayEntry();
    PageFetcher fetcher(state, options, texts, loop, status);
    EmailHarvester emails(state, options, fetcher);
    Harvest harvest({state, leads, options, texts, catalogue, loop, status, dialogs, fetcher, emails, saver});
    StaticBrowser browser;
    PageCount count;
    HarvestDriver driver(harvest, browser, &count);
    browser.Navigate(server.FirstResultPage(code, layout));
    driver.Start();
    while (!count.Ended)
        loop.WaitForMessage(std::nullopt);
    return {count.Pages, leads.Count()};
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// `cpu_ms` and `wall_ms` are for one result page, medians over the harvests; `wall_over_cpu` is their ratio.
void CrawledPage(benchmark::State& state, const QString& code) {
    Demo::DemoServer server;
    server.Start();
    const SiteCatalogue catalogue = SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()).Catalogue();
    std::vector<double> processor;
    std::vector<double> wall;
    int pages = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const std::clock_t ticks = std::clock();
        const auto begun = std::chrono::steady_clock::now();
        const Outcome outcome = HarvestDemo(server, catalogue, code, 1);
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begun;
        pages = outcome.Pages;
        if (pages < 2 || outcome.Leads < pages)
            state.SkipWithError("the harvest found too little");
        processor.push_back(1000.0 * static_cast<double>(std::clock() - ticks) / CLOCKS_PER_SEC / pages);
        wall.push_back(passed.count() / pages);
    }
    state.counters["pages"] = pages;
    state.counters["cpu_ms"] = Median(processor);
    state.counters["wall_ms"] = Median(wall);
    state.counters["wall_over_cpu"] = Median(wall) / Median(processor);
}
// Everything stands on the result page.
BENCHMARK_CAPTURE(CrawledPage, ResultPages, u"KVPN002001"_s)->Iterations(100)->Unit(benchmark::kMillisecond);
// A details page is fetched for each of its listings.
BENCHMARK_CAPTURE(CrawledPage, WithDetailsPages, u"KVPN002002"_s)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Brindle

int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
