#pragma once

#include "page/PageTree.h"

#include <QString>

#include <vector>

namespace Brindle {

/// Reads the texts of a page's elements. Style sheets are not read.
class TextReader {
public:
    explicit TextReader(const PageTree& tree);

    /// Whether an element is not shown of itself: scripts and their like, what its page marks as hidden.
    bool IsHidden(NodeIndex node) const;

    /// An element's text as it is shown: white space collapsed, a line for each block or line break, tabs between
    /// cells, nothing of what is hidden, no blanks at the ends (HTML, section 3.2.7, innerText).
    QString InnerText(NodeIndex node) const;

    /// All the text in an element as it stands, which is the inner text of an element that is not shown.
    QString TextContent(NodeIndex node) const;

private:
    class Collector;
    struct Traits {
        quint8 LinesAround = 0;
        bool KeepsSpace = false;
        bool BreaksLine = false;
        bool IsCell = false;
        bool IsRow = false;
        bool IsHidden = false;
        bool IsHiddenInSvg = false;
    };

    const Traits& TraitsOf(NodeIndex element) const { return traits_[static_cast<size_t>(tree_.NameId(element))]; }

    const PageTree& tree_;
    std::vector<Traits> traits_; // by name
};

} // namespace Brindle
