#pragma once

#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// An element, its own tags included, by HTML's serialisation rules (section 13.3, scripts being on).
QString OuterHtml(const PageTree& tree, NodeIndex node);

/// A whole document in three pieces: up to its body, the body element, and what comes behind it. Without a body all of
/// it is in the first one.
struct DocumentPieces {
    QString BeforeBody;
    QString Body;
    QString BehindBody;
};
DocumentPieces SerializedDocument(const PageTree& tree);

} // namespace Brindle
