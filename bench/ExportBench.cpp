#include "HarvestBench.h"
#include "export/AutomaticSaver.h"
#include "export/CsvExport.h"
#include "export/CsvFormat.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

// What an export costs beside writing the same bytes raw. Both are done alternately in one run, so a busy machine slows
// them alike; the counter "times_raw" is what counts: at most 3 for a manual export, at most 1.8 for an automatic save.

namespace Brindle::Test {
namespace {

using namespace Qt::Literals::StringLiterals;

double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double Median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Lead SomeLead(int number) {
    const QString id = QString::number(number);
    return {.Category = u"Ristoranti e pizzerie"_s,
            .Name = u"Trattoria La Città Vecchia "_s + id,
            .FullAddress = u"Via Giuseppe Garibaldi "_s + id + u", 20121 Milano (MI)",
            .Street = u"Via Giuseppe Garibaldi "_s + id,
            .City = u"Milano"_s,
            .State = u"MI"_s,
            .PostalCode = u"20121"_s,
            .Country = u"Italy"_s,
            .Phone = u"02 5550 "_s + id,
            .Fax = {},
            .Website = u"http://www.trattoria-"_s + id + u".test",
            .Email = u"info@trattoria-"_s + id + u".test",
            .MapLink = u"http://maps.test/maps?q=Via+Giuseppe+Garibaldi+"_s + id + u",+20121+Milano+(MI),Italy",
            .DetailsLink = u"http://directory.test/lombardia/milano/trattoria-la-citta-vecchia-"_s + id};
}

QByteArray FileBytes(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ManualExport(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString exported = folder.filePath(u"exported.csv"_s);
    const QString raw = folder.filePath(u"raw.csv"_s);
    LeadList leads;
    for (int number = 0; number < static_cast<int>(state.range(0)); ++number)
        leads.Append(SomeLead(number));
    const Settings settings;
    SaveRecords(exported, leads, {}, settings);
    const QByteArray bytes = FileBytes(exported);
    QFile::remove(exported); // both make a new file
    // Medians: a disk that is busy with something else is charged to whoever writes just then.
    std::vector<double> exportSeconds;
    std::vector<double> rawSeconds;
    constexpr qsizetype piece =
        1 << 18; // the quickest here: in one piece the same bytes take up to seven times as long
    for ([[maybe_unused]] auto iteration : state) {
        const double start = ProcessorSeconds();
        SaveRecords(exported, leads, {}, settings, [](qsizetype, qsizetype) { return true; });
        const double between = ProcessorSeconds();
        QFile file(raw);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            state.SkipWithError("cannot open");
        for (qsizetype at = 0; at < bytes.size(); at += piece) {
            const qsizetype size = std::min(piece, bytes.size() - at);
            if (file.write(bytes.constData() + at, size) != size)
                state.SkipWithError("cannot write");
        }
        file.close();
        exportSeconds.push_back(between - start);
        rawSeconds.push_back(ProcessorSeconds() - between);
        QFile::remove(raw);
        QFile::remove(exported);
    }
    state.counters["times_raw"] = Median(exportSeconds) / Median(rawSeconds);
    state.counters["raw_ms"] = Median(rawSeconds) * 1000;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
}
BENCHMARK(ManualExport)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->MinTime(4);

void AutomaticSave(benchmark::State& state) {
    const QTemporaryDir folder;
    HarvestBench bench(SiteCode::PagineMail);
    bench.State.DateTimeVal = u"now"_s;
    AutomaticSaver saver(bench.State, bench.Options, bench.Leads, bench.Texts, bench.Status, bench.Loop);
    const QString line = AutomaticLine(SomeLead(1));
    const QByteArray bytes = line.toLocal8Bit() + "\r\n";
    const QByteArray raw = QFile::encodeName(folder.filePath(u"raw.csv"_s));
    double saveSeconds = 0;
    double rawSeconds = 0;
    constexpr int leads = 1000; // the clock is too coarse for a single one
    for ([[maybe_unused]] auto iteration : state) {
        const double start = ProcessorSeconds();
        for (int i = 0; i < leads; ++i)
            saver.AutomaticSave(folder.path(), u"Results"_s, line);
        const double between = ProcessorSeconds();
        for (int i = 0; i < leads; ++i) {
            const int file = open(raw.constData(), O_WRONLY | O_APPEND | O_CREAT, 0666);
            if (file < 0 || write(file, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size())
                state.SkipWithError("cannot write");
            close(file);
        }
        saveSeconds += between - start;
        rawSeconds += ProcessorSeconds() - between;
        bench.Status.Panels.clear();
        QFile::remove(QFile::decodeName(raw));
        QFile::remove(folder.filePath(u"Results now.csv"_s));
    }
    state.counters["times_raw"] = saveSeconds / rawSeconds;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * leads);
}
BENCHMARK(AutomaticSave)->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace
} // namespace Brindle::Test
