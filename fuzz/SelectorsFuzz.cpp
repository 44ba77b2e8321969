#include "Input.h"
#include "core/Errors.h"
#include "page/Selector.h"

// Any text as a selector and a page: the first line is the selector, the rest the page. A malformed selector is one
// line with its place; any other finds elements alone, in order, as often as it is asked, and those of a list are those
// of its halves.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    const QString text = Fuzz::TextOf(data, size);
    const qsizetype end = text.indexOf(u'\n');
    const QString written = text.left(end);
    try {
        const Selector selector = Selector::Parse(written);
        const PageTree tree(end < 0 ? QString() : text.mid(end + 1));
        const SelectorQuery query(tree, selector);
        NodeIndex last = noNode;
        for (const NodeIndex node : query.All()) {
            Fuzz::Require(node > last && tree.IsElement(node), "elements in document order");
            last = node;
        }
        const std::vector<NodeIndex> within = query.Within(tree.Body() == noNode ? tree.Root() : tree.Body());
        Fuzz::Require(within.size() <= static_cast<std::size_t>(tree.Count()), "each element once");
        const Selector negated = Selector::Parse(QString(QStringLiteral(":not(*), ") + written));
        Fuzz::Require(negated.SelectAll(tree) == query.All(), "nothing more in a list with nothing");
    } catch (const Failure& failure) {
        Fuzz::Require(!failure.Message().isEmpty() && !failure.Message().contains(QChar(u'\n')), "one line");
    }
    return 0;
}
