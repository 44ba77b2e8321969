#include "ListingsPage.h"

#include <QFile>

#include <cstdio>
#include <gumbo.h>

// The peer of `brindle-cli parse --markup site`: reads a file, parses it with gumbo, walks over the tree and ends.
//   gumbo_walk FILE       prints the number of nodes
//   gumbo_walk --page N   prints a result page of N listings

namespace {

size_t CountNodes(const GumboNode* node) {
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
        return 1;
    size_t count = 1;
    const GumboVector& children = node->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        count += CountNodes(static_cast<const GumboNode*>(children.data[i]));
    return count;
}

} // namespace

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
    const QByteArray bytes = file.readAll();
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    GumboOutput* const output =
        gumbo_parse_with_options(&options, bytes.constData(), static_cast<size_t>(bytes.size()));
    std::printf("%zu\n", CountNodes(output->root));
    gumbo_destroy_output(&options, output);
    return 0;
}
