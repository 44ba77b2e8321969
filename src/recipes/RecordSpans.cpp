#include "recipes/RecordSpans.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

std::vector<RecordSpan> RecordSpans(const PageTree& page, const std::vector<NodeIndex>& elements, bool flat) {
    std::vector<RecordSpan> spans;
    if (!flat) {
        for (const NodeIndex element : elements)
            if (spans.empty() || element >= spans.back().End)
                spans.push_back({element, page.End(element)});
        return spans;
    }
    // The first element's depth is that of the list; elements in what follows another one are part of it.
    QHash<NodeIndex, size_t> open; // the last record of each parent
    for (const NodeIndex element : elements) {
        const NodeIndex parent = page.Parent(element);
        const auto before = open.constFind(parent);
        if (before != open.cend())
            spans[*before].End = element;
        else if (!spans.empty() && element < spans.back().End)
            continue;
        open.insert(parent, spans.size());
        spans.push_back({element, parent == noNode ? page.End(element) : page.End(parent), true});
    }
    return spans;
}

std::vector<NodeIndex> SelectedIn(const SelectorQuery& query, RecordSpan record) {
    if (!record.Flat)
        return query.Within(record.Begin);
    const std::vector<NodeIndex>& all = query.All();
    return {std::lower_bound(all.begin(), all.end(), record.Begin),
            std::lower_bound(all.begin(), all.end(), record.End)};
}

} // namespace Brindle
