#pragma once

#include "core/Lead.h"
#include "page/PageTree.h"

#include <QString>

#include <vector>

namespace Brindle {

/// A text of the page that a person can choose instead of pointing at it.
struct ChoosableText {
    NodeIndex Node = noNode; ///< the element that shows it
    QString Text;
};

/// What an element shows, levelled, cut where it is long.
QString ShownText(const PageTree& page, NodeIndex element);

bool IsLink(const PageTree& page, NodeIndex node);
/// The link that an element lies in, or else the first one in it; `noNode` for none.
NodeIndex LinkOf(const PageTree& page, NodeIndex element);
bool IsInHeading(const PageTree& page, NodeIndex element);

/// The elements of a selector in document order; none where it is no selector.
std::vector<NodeIndex> Selected(const PageTree& page, const QString& selector);

/// The texts between two nodes, [begin, end), in their order; some hundred at most.
std::vector<ChoosableText> TextsWithin(const PageTree& page, NodeIndex begin, NodeIndex end);

/// What is known where somebody asks what an element may be.
struct FieldHints {
    QString Url;               ///< of the page
    QString Region;            ///< of the page, ISO 3166 alpha-2; may be empty
    std::vector<Field> Taken;  ///< what the element is taken for already, the likeliest first
    std::vector<Field> Filled; ///< what the recipe has rows for
};

/// Which field an element is likely to show, the likeliest first; all of them.
std::vector<Field> LikelyFieldsOf(const PageTree& page, NodeIndex element, const FieldHints& hints);

} // namespace Brindle
