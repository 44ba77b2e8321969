#include "GumboNodes.h"
#include "ListingsPage.h"

#include <QFile>

#include <cstdio>

// The peer of `brindle-cli parse --markup site`: reads a file, parses it with gumbo, walks over the tree and ends.
//   gumbo_walk FILE       prints the number of nodes
//   gumbo_walk --page N   prints a result page of N listings

int main(int argc, char** argv) {
    if (argc == 3 && QByteArrayView(argv[1]) == "--page") {
        const QByteArray page = Brindle::Test::ListingsPage(QByteArray(argv[2]).toInt(), true).toUtf8();
        return std::fwrite(page.constData(), 1, static_cast<size_t>(page.size()), stdout) ==
                       static_cast<size_t>(page.size())
                   ? 0
                   : 1;
    }
    QFile file(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    std::printf("%zu\n", Brindle::Test::CountGumboNodes(file.readAll()));
    return 0;
}
