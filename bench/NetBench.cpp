#include "HarvestBench.h"
#include "core/QtMessageLoop.h"
#include "net/EmailSearch.h"
#include "net/PageFetcher.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <httplib.h>
#include <thread>

// The page fetcher against a bare libcurl handle on the same server, and the e-mail search against a regular
// expression.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

constexpr int pageCount = 2000;

class Server {
public:
    Server() {
        server_.Get("/page", [](const httplib::Request&, httplib::Response& response) {
            response.set_content(std::string(2000, 'x'), "text/html; charset=utf-8");
        });
        server_.new_task_queue = [] { return new httplib::ThreadPool(2); };
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }
    ~Server() {
        server_.stop();
        thread_.join();
    }
    QString Page() const { return u"http://127.0.0.1:%1/page"_s.arg(port_); }

private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

double SecondsOf(const std::function<void()>& work) {
    const auto before = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

size_t Append(const char* data, size_t size, size_t count, void* to) {
    static_cast<std::string*>(to)->append(data, size * count);
    return size * count;
}

// `ratio` is the fetcher's time over the bare handle's, both for the same pages in turn.
void FetchPages(benchmark::State& state) {
    const Server server;
    const QString url = server.Page();
    Test::HarvestBench bench(SiteCode::UsYellowPages);
    QtMessageLoop loop;
    bench.Options.eRandom = u"0"_s;
    PageFetcher fetcher(bench.State, bench.Options, bench.Texts, loop, bench.Status);
    CURL* const easy = curl_easy_init();
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Append);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
    const QByteArray address = url.toUtf8();
    curl_easy_setopt(easy, CURLOPT_URL, address.constData());
    double fetched = 0;
    double bare = 0;
    for ([[maybe_unused]] auto iteration : state) {
        for (int round = 0; round < 4; ++round) { // in turn, so that both see the same machine
            bare += SecondsOf([&] {
                for (int i = 0; i < pageCount / 4; ++i) {
                    std::string page;
                    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &page);
                    if (curl_easy_perform(easy) != CURLE_OK || page.size() != 2000)
                        state.SkipWithError("the bare handle failed");
                }
            });
            fetched += SecondsOf([&] {
                for (int i = 0; i < pageCount / 4; ++i) {
                    QString page;
                    if (!fetcher.DownloadURL(url, page, false) || page.size() != 2000)
                        state.SkipWithError("the fetcher failed");
                }
            });
            bench.Status.Panels.clear();
            bench.Status.Positions.clear();
        }
    }
    curl_easy_cleanup(easy);
    const auto pages = static_cast<double>(state.iterations()) * pageCount;
    state.counters["fetcher_us"] = fetched / pages * 1e6;
    state.counters["bare_us"] = bare / pages * 1e6;
    state.counters["ratio"] = fetched / bare;
}
BENCHMARK(FetchPages)->Iterations(2)->Unit(benchmark::kMillisecond);

QString OrdinaryMarkup() {
    const QString cards =
        u"<div class=\"card\"><a href=\"/hours\" title=\"Hours &amp; prices\">Open from 8 to 18 h</a> "
        u"<p>Family business since 1962. Repairs and maintenance of pipes and drains.</p></div>\n"_s.repeated(20);
    const QString block = cards + u"<a href=\"mailto:info@finch.test\">info@finch.test</a>\n";
    return block.repeated(200);
}

// `ratio` is the expression's time over the search's.
void AddressSearch(benchmark::State& state) {
    const QString page = OrdinaryMarkup();
    const QRegularExpression expression(uR"([_a-zA-Z\d\-\.]+@[_a-zA-Z\d\-]+(\.[_a-zA-Z\d\-]+)+)"_s);
    double searched = 0;
    double matched = 0;
    for ([[maybe_unused]] auto iteration : state) {
        qsizetype found = 0;
        searched += SecondsOf([&] { found = FindEmails(page).size(); });
        matched += SecondsOf([&] {
            qsizetype count = 0;
            for (auto match = expression.globalMatch(page); match.hasNext(); match.next())
                ++count;
            if (count != found)
                state.SkipWithError("the two disagree");
        });
    }
    state.counters["ratio"] = matched / searched;
}
BENCHMARK(AddressSearch)->Unit(benchmark::kMillisecond);

void LettersOnly(benchmark::State& state) {
    QString text(state.range(0), u'a');
    if (state.range(1) != 0)
        text += u'@';
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(FindEmails(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size());
}
BENCHMARK(LettersOnly)->ArgsProduct({{500'000, 5'000'000}, {0, 1}})->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Brindle

int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
