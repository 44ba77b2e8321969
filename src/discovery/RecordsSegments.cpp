// What stands in the text of an address and is none of it.
#include "discovery/RecordsPlaces.h"

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// "1,2 km", "(0.4 mi)", "300 m away"
bool IsDistance(QStringView text) {
    const QString words = BareWords(text);
    const qsizetype unit = words.lastIndexOf(u' ', words.endsWith(u" away") ? words.size() - 6 : -1) + 1;
    constexpr std::array<QStringView, 6> units{u"km", u"mi", u"m", u"miles", u"mile", u"meters"};
    const QStringView name = QStringView(words).sliced(unit).chopped(words.endsWith(u" away") ? 5 : 0);
    return unit > 0 && std::find(units.begin(), units.end(), name) != units.end() &&
           std::none_of(words.begin(), words.begin() + unit, [](QChar c) { return c.isLetter(); });
}

bool HasDigit(QStringView text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

} // namespace

// "Plumber · 12 Main St, Springfield · 0.4 mi"
void RecordPlaces::LeaveOutTradeAndDistance(Segment& segment) const {
    constexpr std::array<QStringView, 4> marks{u" \u00B7 ", u" \u2022 ", u" \u22C5 ", u" | "};
    for (const QStringView mark : marks) {
        const QStringView all = ValueOf(segment);
        for (qsizetype at = all.indexOf(mark); at > 0; at = ValueOf(segment).indexOf(mark)) {
            const QStringView part = ValueOf(segment).first(at);
            const bool trade = !HasDigit(part) && !HasStreetWord(part) && NamesBusinesses(BareView(part).View());
            if (!trade && !IsDistance(part))
                break;
            if (trade)
                segment.Trade = part;
            segment.Begin += at + mark.size();
        }
        for (qsizetype at = ValueOf(segment).lastIndexOf(mark);
             at > 0 && IsDistance(ValueOf(segment).sliced(at + mark.size())); at = ValueOf(segment).lastIndexOf(mark))
            segment.End = segment.Begin + at;
    }
}

// "View map" behind an address: a link or a button that says what it does.
bool RecordPlaces::IsControl(const TextPiece& piece, const RecordRange& range) const {
    const QStringView text = page_.Lines.TextOf(piece);
    if (text.size() > 30)
        return false;
    NodeIndex at = page_.Page.Parent(piece.Node);
    for (int level = 0; level < 2 && at > range.Begin; ++level, at = page_.Page.Parent(at))
        if (page_.Page.Is(at, u"a") || page_.Page.Is(at, u"button"))
            return HintsOfLabel(text) != 0 || IsButtonText(BareView(text).View());
    return false;
}

} // namespace Brindle
