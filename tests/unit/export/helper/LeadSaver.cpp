#include "HarvestBench.h"
#include "core/Errors.h"
#include "export/AutomaticSaver.h"
#include "export/CsvFormat.h"

#include <cstdio>

using namespace Qt::StringLiterals;

// lead_saver FOLDER STAMP: saves leads to the automatic file and says how many count as exported, until it is killed.
int main(int argc, char** argv) {
    using namespace Brindle;
    if (argc != 3)
        return 2;
    Test::HarvestBench bench(SiteCode::PagineMail);
    bench.State.DateTimeVal = QString::fromLocal8Bit(argv[2]);
    AutomaticSaver saver(bench.State, bench.Options, bench.Leads, bench.Texts, bench.Status, bench.Loop);
    Lead lead;
    lead.Name = QString(1000, u'x');
    try {
        for (;;) {
            saver.AutomaticSave(QString::fromLocal8Bit(argv[1]), u"Results"_s, AutomaticLine(lead));
            std::printf("%d\n", bench.State.ExportedNum);
            std::fflush(stdout);
            bench.Status.Panels.clear();
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
