#pragma once

#include <QByteArray>

#include <gumbo.h>

namespace Brindle::Test {

inline size_t CountNodes(const GumboNode* node) {
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
        return 1;
    size_t count = 1;
    const GumboVector& children = node->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        count += CountNodes(static_cast<const GumboNode*>(children.data[i]));
    return count;
}

/// What others are held against: parses a page with gumbo, walks over its tree and lets it go. The number of nodes.
inline size_t CountGumboNodes(const QByteArray& page) {
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    GumboOutput* const output = gumbo_parse_with_options(&options, page.constData(), static_cast<size_t>(page.size()));
    const size_t count = CountNodes(output->root);
    gumbo_destroy_output(&options, output);
    return count;
}

} // namespace Brindle::Test
