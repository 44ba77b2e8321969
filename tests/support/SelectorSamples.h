#pragma once

#include "page/PageTree.h"

#include <functional>
#include <random>

namespace Brindle::Test {

/// A generated selector: as it is written, and as a plain, slow question of a node.
struct SelectorSample {
    QString Text;
    std::function<bool(const PageTree&, NodeIndex)> Fits;
};

/// Generates pages and selectors that have something to do with each other, always the same ones for one seed.
class SelectorSamples {
public:
    explicit SelectorSamples(quint32 seed) : random_(seed) {}

    /// A whole page with some dozen elements; each of its own elements has its number in the attribute "n".
    QString Page();
    /// `extended`: with :has() and :has-text(), which not every engine knows.
    SelectorSample Selector(bool extended);

private:
    using Fits = std::function<bool(const PageTree&, NodeIndex)>;

    int Below(int limit) { return static_cast<int>(random_() % static_cast<quint32>(limit)); }
    template <typename List>
    auto One(const List& list) {
        return list[static_cast<size_t>(Below(static_cast<int>(std::size(list))))];
    }
    QString Element(int depth);
    QString Attributes();
    SelectorSample List(int depth, bool extended, bool relative);
    SelectorSample Complex(int depth, bool extended);
    SelectorSample Relative(int depth, bool extended);
    SelectorSample Compound(int depth, bool extended);
    SelectorSample Simple(int depth, bool extended);
    SelectorSample Attribute();
    SelectorSample Place(bool ofType);

    std::mt19937 random_;
    int number_ = 0;
};

} // namespace Brindle::Test
