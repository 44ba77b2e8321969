// The results list on the screen with a million leads: what a repaint, a scroll, a selection and a deletion take, and
// what a lead costs in memory.
#include "HarvestBench.h"
#include "core/LeadListCommands.h"
#include "ui/LeadTableView.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QScrollBar>

#include <benchmark/benchmark.h>
#include <memory>

using namespace Qt::StringLiterals;

using namespace Brindle;

namespace {

constexpr int million = 1'000'000;

// 330 characters in a lead, as directories give them on average.
Lead LeadOf(int number) {
    const QString id = QString::number(number).rightJustified(7, u'0');
    Lead lead;
    lead.Category = u"Plumbers & Heating"_s;
    lead.Name = u"Harbourfront Bath & Kitchen "_s + id;
    lead.FullAddress = u"9597 chemin du Lac, Charlottetown, PE C1A 4X3"_s;
    lead.Street = u"9597 chemin du Lac"_s;
    lead.City = u"Charlottetown"_s;
    lead.State = u"PE"_s;
    lead.PostalCode = u"C1A 4X3"_s;
    lead.Country = u"Canada"_s;
    lead.Phone = u"902-555-0103"_s;
    lead.Website = u"http://www.harbourfront-bath.test/"_s + id;
    lead.Email = u"info@harbourfront-bath.test"_s;
    lead.MapLink = u"http://maps.test/maps?q=9597+chemin+du+Lac,Canada"_s;
    lead.DetailsLink = u"http://directory.test/bus/Prince-Edward-Island/Charlottetown/"_s + id;
    return lead;
}

qint64 ResidentBytes() {
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * 4096;
}

struct Screen {
    LeadList Leads;
    LeadTableModel Model{Leads};
    LeadTableView View;

    Screen() {
        View.resize(1264, 660);
        View.ShowLeads(Model);
        View.show();
    }
    // Page by page, as a harvest brings them.
    void Fill(int count) {
        for (int number = 0; number < count; ++number) {
            const Lead lead = LeadOf(number);
            Leads.DuplicatedItems.Add(lead.DetailsLink.toUpper());
            Leads.Append(lead);
            if (number % 30 == 29)
                Model.ShowPending();
        }
        Model.ShowPending();
        QApplication::processEvents(); // the view lays itself out
    }
};

void Fill(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        const qint64 before = ResidentBytes();
        auto screen = std::make_unique<Screen>();
        screen->Fill(million);
        int characters = 0;
        for (int column = 0; column < FieldCount; ++column)
            characters += static_cast<int>(screen->Leads.FieldAt(0, static_cast<Field>(column)).size());
        state.counters["text"] = characters;
        state.counters["bytes_per_lead"] = static_cast<double>(ResidentBytes() - before) / million;
    }
}

Screen& FilledScreen() {
    static auto* const screen = [] {
        auto* const made = new Screen;
        made->Fill(million);
        return made;
    }();
    return *screen;
}

void Repaint(benchmark::State& state) {
    Screen& screen = FilledScreen();
    QImage page(screen.View.viewport()->size(), QImage::Format_RGB32);
    QScrollBar* const bar = screen.View.verticalScrollBar();
    int row = 0;
    for ([[maybe_unused]] auto _ : state) {
        row = (row + 7919) % bar->maximum();
        bar->setValue(row);
        screen.View.viewport()->render(&page);
    }
    state.counters["rows"] = screen.View.viewport()->height() / screen.View.rowHeight(0);
}

void SelectAll(benchmark::State& state) {
    Screen& screen = FilledScreen();
    for ([[maybe_unused]] auto _ : state) {
        screen.View.selectAll();
        screen.View.viewport()->repaint();
    }
    screen.View.clearSelection();
}

// 0: the first half; 1: every second row.
void DeleteHalf(benchmark::State& state) {
    const MessageTexts texts;
    Test::ScriptedDialogs yes;
    Test::VirtualLoop loop;
    Test::StatusRecorder status;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto screen = std::make_unique<Screen>();
        screen->Fill(million);
        QItemSelection half;
        if (state.range(0) == 0)
            half.select(screen->Model.index(0, 0), screen->Model.index(million / 2 - 1, FieldCount - 1));
        else
            for (int row = 0; row < million; row += 2)
                half.append(QItemSelectionRange(screen->Model.index(row, 0), screen->Model.index(row, FieldCount - 1)));
        screen->View.selectionModel()->select(half, QItemSelectionModel::ClearAndSelect);
        state.ResumeTiming();
        DeleteSelected(screen->Leads, screen->View.SelectedRows(), SiteCode::YellowPagesCanada, texts, yes, loop,
                       status);
        screen->View.viewport()->repaint();
        state.PauseTiming();
        if (screen->Model.rowCount() != million / 2)
            state.SkipWithError("not half of them");
        screen.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(Fill)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Repaint)->Unit(benchmark::kMillisecond);
BENCHMARK(SelectAll)->Unit(benchmark::kMillisecond);
BENCHMARK(DeleteHalf)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
