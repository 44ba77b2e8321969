#include "net/EmailSearch.h"

#include "toolkit/Ascii.h"

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<bool, 128> labelCharacters = [] {
    std::array<bool, 128> set{};
    for (size_t c = 0; c < set.size(); ++c)
        set[c] = Ascii::IsLetterOrDigit(static_cast<char>(c)) || c == '_' || c == '-';
    return set;
}();

bool IsLabel(QChar c) {
    return c.unicode() < 128 && labelCharacters[c.unicode()];
}

bool IsLocal(QChar c) {
    return c == u'.' || IsLabel(c);
}

// What files end in; none of these is a top-level domain under which businesses have mail.
constexpr std::array<QStringView, 44> fileSuffixes{
    u"apng", u"avif", u"bmp",  u"cjs", u"css",  u"csv",  u"doc",  u"docx", u"eot",  u"gif",   u"gz",
    u"heic", u"htm",  u"html", u"ico", u"jpeg", u"jpg",  u"js",   u"json", u"jsx",  u"less",  u"map",
    u"mjs",  u"mp3",  u"mp4",  u"otf", u"pdf",  u"php",  u"png",  u"scss", u"svg",  u"tif",   u"tiff",
    u"ts",   u"tsx",  u"ttf",  u"txt", u"vue",  u"wasm", u"webm", u"webp", u"woff", u"woff2", u"xml"};

bool IsTopLevelDomain(QStringView label) {
    if (label.size() < 2 || label.size() > 63)
        return false;
    if (label.startsWith(u"xn--", Qt::CaseInsensitive))
        return true;
    return std::all_of(label.begin(), label.end(), [](QChar c) { return Ascii::IsLetter(c); }) &&
           std::none_of(fileSuffixes.begin(), fileSuffixes.end(),
                        [label](QStringView suffix) { return label.compare(suffix, Qt::CaseInsensitive) == 0; });
}

// A name in figures and letters a to f, as programs give them, and no person.
bool IsKey(QStringView local) {
    return local.size() >= 24 &&
           std::all_of(local.begin(), local.end(), [](QChar c) { return Ascii::HexValue(c) >= 0 || c == u'-'; });
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

bool MayBeEmail(QStringView address) {
    const qsizetype at = address.indexOf(u'@');
    if (at <= 0)
        return false;
    const QStringView local = address.first(at);
    const QStringView domain = address.sliced(at + 1);
    if (local.size() > 64 || domain.size() > 253 || local.startsWith(u'.') || local.endsWith(u'.') ||
        local.contains(u".."_s) || IsKey(local))
        return false;
    const QList<QStringView> labels = domain.split(u'.');
    const bool labelsAreNames = std::all_of(labels.begin(), labels.end(), [](QStringView label) {
        return !label.isEmpty() && label.size() <= 63 && label.front() != u'-' && label.back() != u'-' &&
               !label.contains(u'_');
    });
    return labels.size() > 1 && labelsAreNames && IsTopLevelDomain(labels.last());
}

} // namespace Brindle
