#pragma once

#include <QString>

namespace Brindle {

/// Where a page stands. What it may lead to depends on it.
struct PageOrigin {
    QString Address; ///< after redirects; empty: no page, but the user's own wish
    QString Peer;    ///< numeric address of the server that was asked; empty when unknown, as behind a proxy
};

} // namespace Brindle
