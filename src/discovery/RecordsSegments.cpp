// What stands in the text of an address and is none of it.
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsAddress.h"
#include "discovery/RecordsPlaceText.h"
#include "discovery/RecordsPlaces.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// "1,2 km", "(0.4 mi)", "300 m away"
bool IsDistance(QStringView text) {
    const QStringView bare = WithoutEndMarks(text);
    if (bare.isEmpty() || bare.front().isLetter())
        return false;
    const QString words = BareWords(bare);
    const qsizetype unit = words.lastIndexOf(u' ', words.endsWith(u" away") ? words.size() - 6 : -1) + 1;
    constexpr std::array<QStringView, 6> units{u"km", u"mi", u"m", u"miles", u"mile", u"meters"};
    const QStringView name = QStringView(words).sliced(unit).chopped(words.endsWith(u" away") ? 5 : 0);
    return unit > 0 && std::find(units.begin(), units.end(), name) != units.end() &&
           std::none_of(words.begin(), words.begin() + unit, [](QChar c) { return c.isLetter(); });
}

} // namespace

// "Mon - Fri 9:00 - 17:00": two times of the day.
int RecordPlaces::TimesIn(QStringView text) {
    int times = 0;
    for (qsizetype at = text.indexOf(u':'); at > 0 && times < 2; at = text.indexOf(u':', at + 1))
        times += at + 2 < text.size() && text[at - 1].isDigit() && text[at + 1].isDigit() && text[at + 2].isDigit();
    return times;
}

// "<span>Plumber</span><span>12 Main St</span><span>0.4 mi</span>": lines by style alone.
void RecordPlaces::LeaveOutOtherElements(Segment& segment, QStringView name) const {
    const std::vector<TextPiece>& pieces = page_.Lines.Pieces;
    const auto parentOf = [&](int piece) { return page_.Page.Parent(pieces[static_cast<size_t>(piece)].Node); };
    int first = segment.FirstPiece;
    int last = segment.EndPiece - 1;
    while (first < last && pieces[static_cast<size_t>(first)].Begin >= segment.Begin &&
           parentOf(first) != parentOf(first + 1)) {
        const QStringView text = page_.Lines.TextOf(pieces[static_cast<size_t>(first)]);
        const NodeIndex parent = parentOf(first);
        const bool marked =
            page_.Page.Is(parent, u"strong") || page_.Page.Is(parent, u"b") || IsHeading(page_.Page, parent);
        const bool trade = !marked && !name.startsWith(text) && text.size() >= 3 && text.size() <= 60 &&
                           !HasDigit(text) && !HasStreetWord(text) && !text.contains(u',') &&
                           NamesBusinesses(BareView(text).View());
        if (!trade && !IsDistance(text))
            break;
        if (trade)
            segment.Trade = text;
        segment.Begin = pieces[static_cast<size_t>(++first)].Begin;
    }
    while (first < last && parentOf(last) != parentOf(last - 1)) {
        const TextPiece& piece = pieces[static_cast<size_t>(last)];
        const QStringView text = page_.Lines.TextOf(piece);
        // "12 Main St <a href=tel:…>Show number</a>"
        const auto linkOf = [&](int of) {
            NodeIndex at = parentOf(of);
            for (int level = 0; level < 3 && at != noNode; ++level, at = page_.Page.Parent(at))
                if (page_.Page.Is(at, u"a") || page_.Page.Is(at, u"button"))
                    return at;
            return noNode;
        };
        const NodeIndex link = HasDigit(text) ? noNode : linkOf(last);
        const PageLink* const known = link == noNode ? nullptr : page_.LinkAt(link);
        const bool control = link != noNode && link != linkOf(first) &&
                             (page_.Page.Is(link, u"button") ||
                              (known && (known->Kind == LinkKind::Phone || known->Kind == LinkKind::Mail)));
        if (!IsMarksOnly(text) && !IsDistance(text) && TimesIn(text) == 0 && !control)
            break;
        --last;
        segment.End =
            std::min(segment.End, pieces[static_cast<size_t>(last)].Begin + pieces[static_cast<size_t>(last)].Length);
    }
    segment.End = std::max(segment.End, segment.Begin);
}

// What stands beside an address and is none: "0.7 miles away", "147 fans".
bool RecordPlaces::IsAside(QStringView text) {
    if (IsDistance(text))
        return true;
    // "825 則評論"
    if (text.size() <= 14 && text.front().isDigit())
        for (const QStringView count :
             {u"評論", u"评价", u"评论", u"点评", u"口コミ", u"리뷰", u"후기", u"รีวิว", u"ביקורות", u"تقييم"})
            if (text.endsWith(count))
                return true;
    const BareView bare(text);
    const QStringView words = bare.View();
    qsizetype at = 0;
    while (at < words.size() && (words[at].isDigit() || words[at] == u',' || words[at] == u'.'))
        ++at;
    if (at == 0 || at + 3 >= words.size() || words[at] != u' ' || words.count(u' ') > 2)
        return false;
    // A count of something is written small.
    const QStringView what = text.sliced(std::min(text.size(), text.indexOf(u' ') + 1));
    return std::all_of(what.begin(), what.end(), [](QChar c) { return c.isLower() || c == u' '; }) &&
           !HasStreetWord(text);
}

// "Plumber · 12 Main St, Springfield · 0.4 mi"
void RecordPlaces::LeaveOutTradeAndDistance(Segment& segment) const {
    const QStringView value = ValueOf(segment);
    if (const qsizetype open = value.endsWith(u')') ? value.lastIndexOf(u'(') : 0;
        open > 0 && IsDistance(value.sliced(open)))
        segment.End = segment.Begin + Stripped(value.first(open)).size();
    bool dashed = false;
    bool marked = false;
    for (const QChar c : value) {
        const char16_t u = c.unicode();
        dashed = dashed || u == u'-' || u == u'\u2013';
        marked = marked || u == u'|' || (u >= 0xB7 && IsAmong(c, u"\u00B7\u2022\u22C5"));
    }
    for (const QStringView dash : {QStringView(u" - "), QStringView(u" \u2013 ")})
        if (!dashed)
            break;
        else if (const qsizetype at = value.lastIndexOf(dash); at > 0 && IsDistance(value.sliced(at + dash.size()))) {
            segment.End = segment.Begin + at;
            break;
        }
    if (!marked)
        return;
    constexpr std::array<QStringView, 4> marks{u" \u00B7 ", u" \u2022 ", u" \u22C5 ", u" | "};
    for (const QStringView mark : marks) {
        const QStringView all = ValueOf(segment);
        for (qsizetype at = all.indexOf(mark); at > 0; at = ValueOf(segment).indexOf(mark)) {
            const QStringView part = ValueOf(segment).first(at);
            const bool trade =
                !HasDigit(part) && (IsTrade(part) || (!HasStreetWord(part) && NamesBusinesses(BareView(part).View())));
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

// "$$ | French, Bistro | Old Montreal": what stands behind the mark of how dear a place is, "French, Bistro". Empty for
// other texts.
QStringView RecordPlaces::TradeBesideRange(QStringView text) {
    constexpr QStringView signs = u"$\u20AC\u00A3\u00A5\u20B9";
    if (std::none_of(text.begin(), text.end(),
                     [&](QChar c) { return c == u'$' || (c.unicode() >= 0xA3 && IsAmong(c, signs)); }))
        return {};
    bool ranged = false;
    for (qsizetype begin = 0; begin < text.size() && text.size() <= 150;) {
        qsizetype end = begin;
        while (end < text.size() && !QStringView(u"|\u00B7\u2022\u22C5").contains(text[end]))
            ++end;
        const QStringView part = text.sliced(begin, end - begin).trimmed();
        const auto isSign = [&part](QChar c) { return c == part.front(); };
        if (!part.isEmpty() && part.size() <= 5 && signs.contains(part.front()))
            ranged = end < text.size() && std::all_of(part.begin(), part.end(), isSign);
        else if (ranged)
            return part.size() >= 3 && part.size() <= 60 && part.front().isLetter() && !HasDigit(part) ? part
                                                                                                       : QStringView();
        begin = end + 1;
    }
    return {};
}

void RecordPlaces::ChooseTradeBesideRange() {
    for (size_t i = 0; i < columns_.Columns.size() && category_ < 0; ++i) {
        const RecordColumn& column = columns_.Columns[i];
        bool known = column.Distinct * column.Filled >= 1.5; // one text in all records may be the town as well
        const auto trades = std::count_if(column.Nodes.begin(), column.Nodes.end(), [&](NodeIndex node) {
            const QStringView trade = node == noNode ? QStringView() : TradeBesideRange(columns_.ViewOf(node));
            known = known || (!trade.isEmpty() && NamesBusinesses(BareView(trade).View()));
            return !trade.isEmpty();
        });
        besideRange_ = !column.IsHeading && known && trades * 5 >= std::ssize(column.Nodes) * 3;
        if (besideRange_) {
            category_ = static_cast<int>(i);
            categoryWhy_ = u"stands beside how dear each place is"_s;
        }
    }
}

// What is left of a segment without its label, the record's name, phones, and addresses of the web and of mail.
void RecordPlaces::FindValue(Segment& segment, qsizetype label, QStringView name) const {
    const TextPiece& first = page_.Lines.Pieces[static_cast<size_t>(segment.FirstPiece)];
    const TextPiece& last = page_.Lines.Pieces[static_cast<size_t>(segment.EndPiece) - 1];
    const QStringView all(page_.Lines.Text);
    segment.End = last.Begin + last.Length;
    segment.Begin = std::min(first.Begin + label, segment.End);
    const auto trim = [&] {
        constexpr QStringView marks = u",;|\u22C5\u2022\u00B7-\u2013\u2014 /";
        while (segment.Begin < segment.End && IsAmong(all[segment.Begin], marks))
            ++segment.Begin;
        while (segment.End > segment.Begin && IsAmong(all[segment.End - 1], marks))
            --segment.End;
    };
    if (!name.isEmpty() && all.sliced(segment.Begin, segment.End - segment.Begin).startsWith(name) &&
        segment.End - segment.Begin > name.size() + 3)
        segment.Begin += name.size();
    trim();
    auto phone = std::lower_bound(page_.Phones.begin(), page_.Phones.end(), first.Node,
                                  [](const PagePhone& one, NodeIndex node) { return one.Node < node; });
    for (; phone != page_.Phones.end() && phone->Node <= last.Node; ++phone) {
        if (phone->Line != segment.Line || phone->End <= segment.Begin || phone->Begin >= segment.End)
            continue;
        // What stands before the first number is kept, or what stands behind it when that is more.
        qsizetype before = phone->Begin;
        bool labelled = true;
        while (labelled) {
            QStringView text = all.sliced(segment.Begin, before - segment.Begin);
            while (!text.isEmpty() && !text.back().isLetterOrNumber() && text.back() != u')')
                text.chop(1);
            const qsizetype word =
                std::max({text.lastIndexOf(u' '), text.lastIndexOf(u','), text.lastIndexOf(u'|')}) + 1;
            const HintSet hints = HintsOfLabel(text.sliced(word));
            labelled = !text.isEmpty() && (Has(hints, Hint::Phone) || Has(hints, Hint::Fax));
            before = segment.Begin + (labelled ? word : text.size());
        }
        // "1 Main St, Ulm Tel. 1234 Fax 1235 Mobile 1236": numbers behind it can be longer than an address.
        const auto isAddress = [&] {
            const AddressSigns signs = AddressSignsIn(all.sliced(segment.Begin, before - segment.Begin), page_.Region);
            return signs.PostalCode || signs.Street;
        };
        if (before - segment.Begin >= segment.End - phone->End || (before > segment.Begin + 6 && isAddress())) {
            segment.End = before;
            trim();
            break;
        }
        segment.Begin = phone->End;
        trim();
    }
    const QStringView rest = all.sliced(segment.Begin, segment.End - segment.Begin);
    const bool mayBeWeb =
        std::any_of(rest.begin(), rest.end(),
                    [](QChar c) { return c == u'@' || c == u'/' || c == u'w' || c == u'('; }) &&
        (rest.contains(u'@') || rest.contains(u"://") || rest.contains(u"www") || rest.contains(u"(at)"));
    for (const QStringView sign : {QStringView(u"@"), QStringView(u"(at)"), QStringView(u"www."),
                                   QStringView(u"http://"), QStringView(u"https://")})
        if (!mayBeWeb)
            break;
        else if (const qsizetype at = rest.indexOf(sign); at >= 0) {
            const qsizetype blank = rest.first(at).lastIndexOf(u' ');
            segment.End = std::min(segment.End, segment.Begin + std::max<qsizetype>(blank, 0));
        }
    LeaveOutOtherElements(segment, name);
    trim();
    LeaveOutTradeAndDistance(segment);
}

// A link to another page of this site, or a button, that stands beside an address is none of it: "12 Main St
// <a>More</a>".
bool RecordPlaces::IsOfAnotherLink(const Segment& segment, const Segment& neighbour) const {
    const auto linkOf = [this](const Segment& one) {
        NodeIndex at = ParentOf(one);
        for (int level = 0; level < 4 && at != noNode; ++level, at = page_.Page.Parent(at))
            if (page_.Page.Is(at, u"a") || page_.Page.Is(at, u"button"))
                return at;
        return noNode;
    };
    const NodeIndex link = linkOf(segment);
    if (link == noNode || HasDigit(ValueOf(segment)) || link == linkOf(neighbour))
        return false;
    const PageLink* const known = page_.LinkAt(link);
    return !known || known->Kind == LinkKind::Own || known->Kind == LinkKind::None;
}

// "View map" behind an address: a link or a button that says what it does.
bool RecordPlaces::IsControl(const TextPiece& piece, const RecordRange& range) const {
    const QStringView text = page_.Lines.TextOf(piece);
    if (text.size() > 30)
        return false;
    if ((text.front().isDigit() || text.front() == u'(') && IsAside(text))
        return true;
    NodeIndex at = page_.Page.Parent(piece.Node);
    for (int level = 0; level < 2 && at > range.Begin; ++level, at = page_.Page.Parent(at))
        if (page_.Page.Is(at, u"a") || page_.Page.Is(at, u"button"))
            return HintsOfLabel(text) != 0 || IsButtonText(text);
    return false;
}

} // namespace Brindle
