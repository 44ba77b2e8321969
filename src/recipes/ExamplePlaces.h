#pragma once

#include "recipes/RecipeValue.h"

#include <vector>

namespace Brindle {

/// Where a value stands, and how it is taken from there.
struct ExamplePlace {
    NodeIndex Node = noNode;
    QString Attribute{}; ///< as in `RecipeField`
    QString Pattern{};   ///< as in `RecipeField`
    double Cost = 0;     ///< how little it is to be trusted; 0 is best
};

/// Finds examples on a page; made once, asked often.
class ExamplePlaces {
public:
    ExamplePlaces(const ValueSource& source);

    /// Cost of where a text stands among others that nothing tells it from.
    static constexpr double Unreadable = 20;

    /// The places where a text stands as the value of a column, in the page's order; at most some hundred.
    std::vector<ExamplePlace> Find(Field column, const QString& text) const;
    /// The elements between two nodes whose texts, one after the other, are the text; the first that are, in the page's
    /// order. Empty where there are none, or one has it all.
    std::vector<NodeIndex> Composed(const QString& text, NodeIndex begin, NodeIndex end) const;
    /// How the value of a column is taken from an element that somebody pointed at: without the label before it, from
    /// the link that it is in or holds.
    ExamplePlace Pointed(Field column, NodeIndex node) const;

    /// Patterns that cut an example out of a text with its lines, the sturdiest first.
    static QStringList LinePatterns(Field column, const QString& lines, const QString& example);

private:
    bool Compose(const QString& rest, NodeIndex begin, NodeIndex end, std::vector<NodeIndex>& parts) const;
    void AddTexts(Field column, const QString& text, std::vector<ExamplePlace>& found) const;
    void AddFolded(Field column, const QString& text, const QString& folded, std::vector<ExamplePlace>& found) const;
    void AddLines(Field column, const QString& text, NodeIndex node, std::vector<ExamplePlace>& found) const;
    void AddCut(Field column, const QString& text, const QString& folded, NodeIndex node, double cost,
                std::vector<ExamplePlace>& found) const;
    bool IsRunTogether(Field column, NodeIndex node, const QString& folded, const QString& text) const;
    void AddLinkText(Field column, const QString& text, qsizetype begin, qsizetype end,
                     std::vector<ExamplePlace>& found) const;
    void AddHolders(Field column, const QString& text, NodeIndex link, std::vector<ExamplePlace>& found) const;
    void AddComposed(const QString& text, std::vector<ExamplePlace>& found) const;
    void AddAttributes(Field column, const QString& text, std::vector<ExamplePlace>& found) const;
    NodeIndex LinkAround(NodeIndex node) const;
    NodeIndex ElementAround(qsizetype begin, qsizetype end) const;
    qsizetype BeginOf(NodeIndex node) const { return begins_[static_cast<size_t>(node)]; }
    qsizetype EndOf(NodeIndex node) const { return begins_[static_cast<size_t>(source_.Page.End(node))]; }

    ValueSource source_;
    QString folded_;                // the whole page's text
    std::vector<qsizetype> begins_; // where each node's text begins in it
    std::vector<NodeIndex> texts_;  // nodes that add to it
};

} // namespace Brindle
