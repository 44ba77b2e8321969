#include "toolkit/Markup.h"

#include "toolkit/Text.h"

#include <algorithm>
#include <array>

namespace Brindle {

namespace {

struct Replacement {
    QStringView Before;
    QStringView After;
    char16_t Trigger; // a text without this character has nothing for the row; no row brings one of them in anew
};

// The order is deliberate: a later row sees what the earlier ones made. The row of two blanks makes a single pass, so
// longer runs are only halved.
constexpr std::array<Replacement, 29> replacements{{
    {u"%3A", u":", u'%'},
    {u"%2F", u"/", u'%'},
    {u"<SPAN>", u"", u'<'},
    {u"<BR>", u" ", u'<'},
    {u"<br>", u" ", u'<'},
    {u"</SPAN>", u"", u'<'},
    {u"http%3A%2F%2F", u"http://", u'%'},
    {u"\"", u"", u'"'},
    {u"<br/>", u"", u'<'},
    {u"&amp;", u"&", u'&'},
    {u"<b>", u"", u'<'},
    {u"</b>", u"", u'<'},
    {u"<li>", u"", u'<'},
    {u"</li>", u"", u'<'},
    {u"</ul>", u"", u'<'},
    {u"<ul>", u"", u'<'},
    {u"</A>", u"", u'<'},
    {u"&nbsp;", u" ", u'&'},
    {u"\r", u" ", u'\r'},
    {u"\n", u" ", u'\n'},
    {u"\t", u" ", u'\t'},
    {u"&#039;", u"'", u'&'},
    {u"&#39;", u"'", u'&'},
    {u"  ", u" ", u' '},
    {u"<STRONG>", u"", u'<'},
    {u"</STRONG>", u"", u'<'},
    {u"<strong>", u"", u'<'},
    {u"</strong>", u"", u'<'},
    {u"&#10;", u"", u'&'},
}};

// One bit per character up to "?", which all triggers are.
constexpr quint64 BitOf(char16_t c) {
    return c < 64 ? quint64{1} << c : 0;
}

constexpr quint64 triggers = [] {
    quint64 bits = 0;
    for (const Replacement& row : replacements)
        bits |= BitOf(row.Trigger);
    return bits;
}();

// The triggers that the text holds. A single blank triggers nothing, but the rows can bring a second one beside it.
quint64 TriggersIn(QStringView text) {
    quint64 bits = 0;
    bool twoBlanks = false;
    char16_t previous = 0;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        bits |= BitOf(unit);
        twoBlanks = twoBlanks || (unit == u' ' && previous == u' ');
        previous = unit;
    }
    const quint64 others = bits & triggers & ~BitOf(u' ');
    return others != 0 || twoBlanks ? others | BitOf(u' ') : 0;
}

} // namespace

QString CleanMarkup(QStringView text) {
    const QStringView trimmed = TrimmedView(text);
    QString result = trimmed.toString();
    const quint64 present = TriggersIn(trimmed);
    if (present == 0)
        return result;
    for (const Replacement& row : replacements)
        if ((present & BitOf(row.Trigger)) != 0)
            ReplaceAll(result, row.Before, row.After);
    const QStringView trimmedAgain = TrimmedView(result);
    return trimmedAgain.size() == result.size() ? result : trimmedAgain.toString();
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
