#include "InventedLeads.h"
#include "store/LeadKeeper.h"

#include <QCoreApplication>

#include <cstdio>

// lead_keeper STORE SPOOL: keeps invented leads without end and says the number of each as soon as it is kept, until it
// is killed.
int main(int argc, char** argv) {
    using namespace Brindle;
    const QCoreApplication app(argc, argv);
    if (argc != 3)
        return 2;
    LeadKeeper keeper(StoreTarget::Parse(QString::fromLocal8Bit(argv[1])), QString::fromLocal8Bit(argv[2]),
                      [](const QString&) {});
    keeper.Begin({});
    for (int i = 0;; ++i) {
        keeper.Keep(Test::InventedLead(i));
        std::printf("%d\n", i);
        std::fflush(stdout);
    }
}
