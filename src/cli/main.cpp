#include "cli/RunCli.h"

#include <QCoreApplication>

int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    return Brindle::RunCli(QCoreApplication::arguments().mid(1));
}
