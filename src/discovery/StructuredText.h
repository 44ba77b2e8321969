#pragma once

#include "page/PageTree.h"

#include <QString>

#include <vector>

namespace Brindle {

/// Blanks of any kind and line ends levelled to one blank, none at the ends; soft hyphens and characters without width
/// are left out.
QString WithLevelBlanks(QStringView text);
QString WithLevelBlanks(const QString& text);

/// The texts of a page's elements as values: scripts and styles left out, a line break or a new block is a blank,
/// blanks levelled. All calls together cost a bounded number of passes over the page; past that the texts are empty.
class StructuredText {
public:
    explicit StructuredText(const PageTree& page);

    enum class Images : quint8 { Skipped, Described };
    /// The text within a node. `Described`: an image counts as its alternative text.
    QString Of(NodeIndex node, Images images = Images::Skipped);

    /// Takes as much of what may be read of the page as `nodes` nodes cost; false when nothing is left.
    bool Spend(qint64 nodes) { return (left_ -= nodes) >= 0; }

private:
    const PageTree& page_;
    std::vector<char> kinds_; // of element names: what they do to the text
    qint64 left_;
};

} // namespace Brindle
