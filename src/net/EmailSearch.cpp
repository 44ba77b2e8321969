#include "net/EmailSearch.h"

#include <array>

namespace Brindle {

namespace {

constexpr std::array<bool, 128> labelCharacters = [] {
    std::array<bool, 128> set{};
    for (size_t c = 0; c < set.size(); ++c)
        set[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
    return set;
}();

bool IsLabel(QChar c) {
    return c.unicode() < 128 && labelCharacters[c.unicode()];
}

bool IsLocal(QChar c) {
    return c == u'.' || IsLabel(c);
}

} // namespace

QStringList FindEmails(QStringView text) {
    QStringList found;
    qsizetype free = 0; // behind the last match
    for (qsizetype at = text.indexOf(u'@'); at >= 0; at = text.indexOf(u'@', at + 1)) {
        // The local part is the whole run before the "@"; a shorter one would not be the leftmost match.
        qsizetype begin = at;
        while (begin > free && IsLocal(text[begin - 1]))
            --begin;
        // Greedy without ever giving back: behind a label only a "." can go on, which is no label character.
        const auto labelEnd = [text](qsizetype from) {
            while (from < text.size() && IsLabel(text[from]))
                ++from;
            return from;
        };
        const qsizetype firstEnd = labelEnd(at + 1);
        qsizetype end = firstEnd;
        while (end < text.size() && text[end] == u'.' && labelEnd(end + 1) > end + 1)
            end = labelEnd(end + 1);
        if (begin == at || firstEnd == at + 1 || end == firstEnd)
            continue;
        found.append(text.sliced(begin, end - begin).toString());
        free = end;
    }
    return found;
}

} // namespace Brindle
