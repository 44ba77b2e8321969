#include "Markup.h"

#include "Text.h"

#include <algorithm>
#include <array>

namespace Brindle {

namespace {

struct Replacement {
    QStringView Before;
    QStringView After;
};

// The order is deliberate: a later row sees what the earlier ones made. The last row but five turns two blanks into
// one in a single pass, so longer runs are only halved.
constexpr std::array<Replacement, 29> replacements{{
    {u"%3A", u":"},
    {u"%2F", u"/"},
    {u"<SPAN>", u""},
    {u"<BR>", u" "},
    {u"<br>", u" "},
    {u"</SPAN>", u""},
    {u"http%3A%2F%2F", u"http://"},
    {u"\"", u""},
    {u"<br/>", u""},
    {u"&amp;", u"&"},
    {u"<b>", u""},
    {u"</b>", u""},
    {u"<li>", u""},
    {u"</li>", u""},
    {u"</ul>", u""},
    {u"<ul>", u""},
    {u"</A>", u""},
    {u"&nbsp;", u" "},
    {u"\r", u" "},
    {u"\n", u" "},
    {u"\t", u" "},
    {u"&#039;", u"'"},
    {u"&#39;", u"'"},
    {u"  ", u" "},
    {u"<STRONG>", u""},
    {u"</STRONG>", u""},
    {u"<strong>", u""},
    {u"</strong>", u""},
    {u"&#10;", u""},
}};

// Whether any row of the table could apply: each begins with one of these characters.
bool NeedsReplacing(QStringView text) {
    bool blankBefore = false;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'%':
        case u'<':
        case u'"':
        case u'&':
        case u'\r':
        case u'\n':
        case u'\t':
            return true;
        case u' ':
            if (blankBefore)
                return true;
            blankBefore = true;
            break;
        default:
            blankBefore = false;
        }
    }
    return false;
}

} // namespace

QString CleanMarkup(QStringView text) {
    const QStringView trimmed = TrimmedView(text);
    QString result = trimmed.toString();
    if (!NeedsReplacing(trimmed))
        return result;
    for (const Replacement& row : replacements)
        ReplaceAll(result, row.Before, row.After);
    return Trim(result);
}

QString StripTags(QStringView text) {
    // Positions here are 1-based and 0 when absent: the arithmetic depends on it.
    const auto position = [](QStringView in, QChar c) { return in.indexOf(c) + 1; };
    qsizetype a = position(text, u'<');
    const qsizetype b = position(text, u'>');
    QString shortened;
    if (a > b) {
        // A ">" before the first "<" ends a tag whose beginning was cut off. The position of the "<" is not looked up
        // again after that, so the first removal works with the old one.
        shortened = text.sliced(b).toString();
        const qsizetype c = position(shortened, u'>');
        const qsizetype count = c - a + 1;
        if (count > 0 && a <= shortened.size())
            shortened.remove(a - 1, count);
        text = shortened;
    }
    // From here on each round removes from the first "<" to the first ">". Before the cursor neither is left, so one
    // pass does it; when a ">" comes first, or none is left, every further round would remove nothing.
    QString result;
    qsizetype from = 0;
    for (;;) {
        const QStringView rest = text.sliced(from);
        const qsizetype open = rest.indexOf(u'<');
        const qsizetype close = rest.indexOf(u'>');
        if (open < 0 || close < open) {
            result.append(rest);
            return Trim(result);
        }
        result.append(rest.first(open));
        from += close + 1;
    }
}

QStringList SplitText(QStringView text, QStringView separator) {
    QStringList parts;
    if (separator.isEmpty())
        return {text.toString()};
    qsizetype from = 0;
    for (;;) {
        const qsizetype at = text.indexOf(separator, from);
        if (at < 0)
            break;
        parts.append(text.sliced(from, at - from).toString());
        from = at + separator.size();
    }
    parts.append(text.sliced(from).toString());
    return parts;
}

QString SanitizeFileName(QStringView text) {
    static constexpr QStringView forbidden = u"\\/:?*\"<>|";
    QString result;
    result.reserve(text.size());
    for (const QChar c : text)
        if (!forbidden.contains(c))
            result.append(c);
    return result;
}

} // namespace Brindle
