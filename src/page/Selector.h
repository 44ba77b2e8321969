#pragma once

#include "page/PageTree.h"

#include <memory>
#include <vector>

namespace Brindle {

struct SelectorList;

/// A CSS selector (Selectors 4) of a closed set:
///
/// - elements: `a`, `*`, `.class`, `#id`, `[attr]`, `[attr=value]` and `^=` `$=` `*=` `~=` `|=`, each with `i` for any
///   case;
/// - relations: descendant (a blank), child `>`, next sibling `+`, later sibling `~`; lists with `,`;
/// - places: `:first-child`, `:last-child`, `:nth-child(2n+1)`, `:nth-of-type(odd)`;
/// - `:not(list)`; `:has(list)`, whose parts may begin with a relation (`:has(> img)`) and hold no other `:has`;
/// - `:has-text("…")`: the text within the element holds this one, runs of blanks counting as one blank (scripts and
///   style sheets are no text);
/// - `:scope`, only at the beginning and before a descendant or child: the element that is searched.
///
/// Names are compared as engines do (HTML, section 4.16.2): of elements and attributes in any case, and so
/// are the values of HTML's attributes with a fixed set of values (`type`, `lang`, `rel`). Classes and ids
/// are case-sensitive. The contents of templates are never found. Every search is linear in the page.
class Selector {
public:
    /// Longest text that is taken, in UTF-16 units.
    static constexpr qsizetype LongestText = 2000;

    /// Throws `Failure` with one line that names the place, in characters from 1.
    static Selector Parse(QStringView text);

    const QString& Text() const { return text_; }
    const SelectorList& Parts() const { return *parts_; }

    /// Whether it selects this element; false for other nodes. `SelectorQuery` is the way to ask many times.
    bool Matches(const PageTree& tree, NodeIndex node) const;
    /// All elements that it selects, in document order.
    std::vector<NodeIndex> SelectAll(const PageTree& tree) const;
    /// Those of them that lie within a node; `SelectorQuery::Within` says more.
    std::vector<NodeIndex> SelectAll(const PageTree& tree, NodeIndex within) const;

private:
    Selector(QString text, std::shared_ptr<const SelectorList> parts)
        : text_(std::move(text)), parts_(std::move(parts)) {}

    QString text_;
    std::shared_ptr<const SelectorList> parts_;
};

/// A selector applied to a page, to be asked often: the page is walked once. The tree must outlive it.
class SelectorQuery {
public:
    SelectorQuery(const PageTree& tree, Selector selector);
    ~SelectorQuery();
    SelectorQuery(const SelectorQuery&) = delete;
    SelectorQuery& operator=(const SelectorQuery&) = delete;

    /// All elements that are selected, in document order; `:scope` is the html element.
    const std::vector<NodeIndex>& All() const { return all_; }
    bool Matches(NodeIndex node) const;
    /// The elements within this one that are selected in the whole page, in document order. `:scope` is the element
    /// itself, which only a selector that ends with it (`:scope`) can give. Costs at most one pass over the element.
    std::vector<NodeIndex> Within(NodeIndex node) const;
    /// The first of them; `noNode` when there is none.
    NodeIndex FirstWithin(NodeIndex node) const;

private:
    class Evaluation;

    Selector selector_;
    std::unique_ptr<Evaluation> evaluation_;
    std::vector<NodeIndex> unscoped_; // by the parts of the list without `:scope`
    std::vector<NodeIndex> all_;
};

/// A name as it is written in a selector: `EscapedIdentifier(u"2col")` is `\32 col` (CSSOM, section 2.1).
QString EscapedIdentifier(QStringView name);

/// A text in quotes as it is written in a selector.
QString EscapedString(QStringView text);

} // namespace Brindle
