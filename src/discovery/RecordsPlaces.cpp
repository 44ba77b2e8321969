#include "discovery/RecordsPlaces.h"

#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsAddress.h"
#include "discovery/RecordsPlaceText.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestDescribed = 100; // characters of an address within a description

constexpr HintSet partHints = Hint::Street | Hint::City | Hint::State | Hint::PostalCode | Hint::Country;

// Countries whose addresses may begin with the town.
bool PutsTownFirst(QStringView region) {
    constexpr std::array<QStringView, 9> regions{u"RU", u"UA", u"HU", u"BG", u"RS", u"JP", u"KR", u"CN", u"TW"};
    return std::find(regions.begin(), regions.end(), region) != regions.end();
}

// Three letters and a digit: "High Road 5".
bool IsNumberedName(QStringView text) {
    return HasDigit(text) && std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); }) >= 3;
}

// "Main St & Elm Ave"
bool IsCorner(QStringView text) {
    const qsizetype mark = text.indexOf(u" & ");
    return mark > 0 && HasStreetWord(text.first(mark)) && HasStreetWord(text.sliced(mark + 3));
}

bool IsPartingMark(QStringView text) {
    const QStringView mark = text.trimmed();
    return mark.size() == 1 && QStringView(u"\u00B7\u2022\u22C5|").contains(mark.front());
}

} // namespace

RecordPlaces::RecordPlaces(const RecordColumns& columns)
    : columns_(columns), page_(columns.Page), hasMeta_(page_.Page.NameIdOf(u"meta") >= 0) {
    const auto described = [this](const RecordLine& line) {
        return Has(line.Around, Hint::Description) && page_.IsAddressLine[static_cast<size_t>(line.Line)] &&
               columns_.TextOf(line).size() <= longestDescribed;
    };
    const auto records =
        std::count_if(columns.Lines.begin(), columns.Lines.end(), [&](const std::vector<RecordLine>& lines) {
            return std::any_of(lines.begin(), lines.end(), described);
        });
    inDescriptions_ = records * 2 >= std::ssize(columns.Lines);
}

bool RecordPlaces::Segment::Strong() const {
    constexpr HintSet strong = Hint::Street | Hint::PostalCode;
    return !Excluded && (PostalCode || Street || (Hints & strong) != 0 || (Label & (strong | Hint::Address)) != 0);
}

bool RecordPlaces::Segment::Weak() const {
    return !Excluded && ((Hints | Label) & placeHints) != 0;
}

// A line is parted where its elements say that they are different things: "$$ Dublin - Pizza 6 High Road".
std::vector<RecordPlaces::Segment> RecordPlaces::SegmentsOf(size_t record, NodeIndex name,
                                                            const QString& called) const {
    const PageTree& page = page_.Page;
    const RecordRange& range = columns_.List.Records[record];
    const NodeIndex nameEnd = name == noNode ? noNode : page.End(name);
    const QStringView nameText = name == noNode ? QStringView(called) : columns_.ViewOf(name);
    std::vector<Segment> segments;
    for (const RecordLine& line : columns_.Lines[record]) {
        const size_t before = segments.size();
        // A line that has the name and more is parted by the page's style at each of its elements.
        const auto named = [&](int i) {
            const NodeIndex node = page_.Lines.Pieces[static_cast<size_t>(i)].Node;
            return name != noNode && node >= name && node < nameEnd;
        };
        int namedPieces = 0;
        for (int i = line.FirstPiece; i < line.EndPiece; ++i)
            namedPieces += named(i);
        const bool mixed = namedPieces > 0 && namedPieces < line.EndPiece - line.FirstPiece;
        bool afterControl = false;
        for (int i = line.FirstPiece; i < line.EndPiece; ++i) {
            const TextPiece& piece = page_.Lines.Pieces[static_cast<size_t>(i)];
            HintSet hints = 0;
            // "B-<i class=zip>9000</i>" is all of it the code.
            const QStringView own = page_.Lines.TextOf(piece);
            const bool prefix = own.size() <= 3 && own.endsWith(u'-') && own.front().isUpper() && i + 1 < line.EndPiece;
            NodeIndex at = page.Parent(prefix ? page_.Lines.Pieces[static_cast<size_t>(i) + 1].Node : piece.Node);
            for (int level = 0; level < 3 && at >= range.Begin; ++level, at = page.Parent(at)) {
                if (at == range.Begin && !columns_.List.Flat)
                    break;
                hints |= page_.HintsOf(at) & (placeHints | otherHints);
                if (page.Is(at, u"address"))
                    hints = hints | Hint::Address;
                // The innermost element that says anything says it for its text.
                if ((hints & (partHints | otherHints)) != 0)
                    break;
            }
            const bool marks = IsMarksOnly(page_.Lines.TextOf(piece));
            const bool control = line.EndPiece - line.FirstPiece > 1 && IsControl(piece, range);
            const bool same =
                segments.size() > before && segments.back().Hints == hints && !control && !afterControl &&
                (!mixed || page.Parent(piece.Node) == page.Parent(page_.Lines.Pieces[static_cast<size_t>(i) - 1].Node));
            afterControl = control;
            // "Dentists · 12 High Road": a mark in an element of its own parts what stands in a line.
            const bool parted = i > line.FirstPiece &&
                                IsPartingMark(page_.Lines.TextOf(page_.Lines.Pieces[static_cast<size_t>(i) - 1]));
            if (segments.size() > before && ((same && !parted) || marks)) {
                segments.back().EndPiece = i + 1;
                continue;
            }
            Segment segment;
            segment.FirstPiece = i;
            segment.EndPiece = i + 1;
            segment.Line = line.Line;
            segment.Hints = hints;
            segments.push_back(segment);
        }
        for (size_t i = before; i < segments.size(); ++i) {
            Segment& segment = segments[i];
            if (i == before) {
                segment.Label = line.Label;
            }
            FindValue(segment, i == before ? line.LabelLength : 0, nameText);
            const QStringView value = ValueOf(segment);
            const auto number = static_cast<size_t>(segment.Line);
            const bool whole = value.size() == page_.Lines.Lines[number].Length;
            const bool digit = HasDigit(value);
            const NodeIndex node = page_.Lines.Pieces[static_cast<size_t>(segment.FirstPiece)].Node;
            const NodeIndex lastNode = page_.Lines.Pieces[static_cast<size_t>(segment.EndPiece) - 1].Node;
            const bool inName = name != noNode && node >= name && lastNode < nameEnd &&
                                (value == nameText || (nameText.size() > value.size() && nameText.contains(value)));
            // "IL" is a label in Turkish, and a state.
            const bool state = Has(segment.Hints, Hint::State) && IsStateOf(page_.Region, value);
            segment.IsLabel = value.isEmpty() || (HintsOfLabel(value) != 0 && !state);
            // What calls itself a description may be all that is said of a place.
            const bool described = inDescriptions_ &&
                                   (segment.Hints & otherHints) == static_cast<HintSet>(Hint::Description) &&
                                   value.size() <= (digit ? longestDescribed : 40);
            const bool other = (segment.Hints & otherHints) != 0 && (segment.Hints & placeHints) == 0 && !described;
            const bool otherLabel = (segment.Label & otherHints) != 0 && (segment.Label & placeHints) == 0;
            segment.Excluded = inName || segment.IsLabel || other || otherLabel || value.size() > 220 ||
                               value.contains(u'@') || (value.size() <= 40 && IsButtonText(value)) ||
                               (digit && ((whole ? page_.IsPriceLine[number] : HasPrice(value)) || IsHours(value) ||
                                          PageAnnotations::BeginsWithRating(value) || IsAside(value)));
            if (segment.Excluded || !digit)
                continue;
            const AddressSigns signs = whole ? AddressSigns{page_.IsCodeLine[number], page_.IsStreetLine[number]}
                                             : AddressSignsIn(value, page_.Region);
            segment.PostalCode = signs.PostalCode;
            segment.Street = signs.Street;
            // "Opens at 9:00"
            segment.Excluded = !signs.PostalCode && !signs.Street && (TimesIn(value) > 0 || described);
        }
    }
    return segments;
}

QStringView RecordPlaces::ValueOf(const Segment& segment) const {
    return QStringView(page_.Lines.Text).sliced(segment.Begin, segment.End - segment.Begin);
}

// Whether a segment is a postal code and nothing else.
bool RecordPlaces::IsBareCode(const Segment& segment) const {
    const QStringView value = ValueOf(segment);
    if (segment.Excluded || value.size() > 16 || value.size() < 3)
        return false;
    const std::vector<TextSpan> codes = PostalCodesIn(value, page_.Region);
    if (codes.size() != 1 || codes.front().End < value.size())
        return false;
    // "CEP 01310-100", "C.P. 44100"
    const QStringView before = value.first(codes.front().Begin);
    return before.size() <= 2 || Has(HintsOfLabel(before), Hint::PostalCode);
}

// Whether a segment has a postal code and, before it or behind a comma, what must be the street.
bool RecordPlaces::HoldsMoreThanTown(const Segment& segment) const {
    const QStringView value = ValueOf(segment);
    for (const TextSpan& code : PostalCodesIn(value, page_.Region)) {
        // "Dublin 2, D02 X285" names a district of the town.
        if (page_.Region == u"IE" && value.startsWith(u"Dublin "))
            continue;
        const qsizetype comma = value.indexOf(u',', code.End);
        if (IsNumberedName(value.first(code.Begin)) || (comma >= 0 && IsNumberedName(value.sliced(comma))))
            return true;
    }
    return false;
}

// Whether a segment is a postal code beside a name: "Wellington 6011". Only behind a street it is sure to be one.
bool RecordPlaces::IsTownWithCode(const Segment& segment) const {
    const QStringView value = ValueOf(segment);
    if (segment.Excluded || value.size() > 60 || !value.front().isLetterOrNumber())
        return false;
    const std::vector<TextSpan> codes = PostalCodesIn(value, page_.Region);
    if (codes.size() != 1)
        return false;
    const auto [begin, end] = codes.front();
    const QString rest = value.first(begin).toString() + value.sliced(end);
    const QString words = BareWords(rest);
    return words.size() >= 2 && !HasDigit(words) && !rest.trimmed().front().isLower() && HintsOfLabel(words) == 0;
}

// A line behind the street that may be the town: the first one, or one before a postal code. A trade is none, nor what
// stands in another place behind a street that has its town: "12 Bank St, Ottawa, ON" and "Pizza".
bool RecordPlaces::IsTownLike(const std::vector<Segment>& segments, size_t at, int added) const {
    if (at + 1 < segments.size() && IsBareCode(segments[at + 1]))
        return true;
    const Segment& before = segments[at - 1];
    const QStringView street = ValueOf(before);
    if (added == 0 && street.contains(u',') && StateAtEnd(page_.Region, street) > 0)
        return false;
    if (added > 0 || IsTrade(ValueOf(segments[at])))
        return false;
    const bool apart = before.Line != segments[at].Line && !LooksLike(ParentOf(segments[at]), ParentOf(before));
    return !apart || !street.contains(u',') || SplitAddress(street, page_.Country).City.isEmpty();
}

// Whether two elements are one, or of one name and class.
bool RecordPlaces::LooksLike(NodeIndex one, NodeIndex other) const {
    const PageTree& page = page_.Page;
    return one == other ||
           (page.Name(one) == page.Name(other) && page.Attribute(one, u"class") == page.Attribute(other, u"class"));
}

// Whether a text in an element like the street's, just before it, may be the town: it is short and names no trade.
bool RecordPlaces::IsTownBefore(const Segment& before, const Segment& street) const {
    const PageTree& page = page_.Page;
    const NodeIndex one = ParentOf(before);
    const NodeIndex other = ParentOf(street);
    const QStringView town = ValueOf(before);
    return page.Parent(one) == page.Parent(other) && LooksLike(one, other) && town.size() <= 40 &&
           town.front().isUpper() && !NamesBusinesses(BareView(town).View());
}

// "<i>12 High Road</i>, Old Town<br><i>W1 2AB</i>": what only a part of a line's elements name belongs to it, when more
// of the address follows.
bool RecordPlaces::IsWithinLine(const std::vector<Segment>& segments, size_t at, size_t next) const {
    const Segment& segment = segments[at];
    if (at == 0 || segment.Excluded || segment.Line != segments[at - 1].Line || ValueOf(segment).size() > 60)
        return false;
    const NodeIndex parent = page_.Page.Parent(ParentOf(segments[at - 1]));
    return parent == ParentOf(segment) && (ParentOf(segments[next]) == parent || Beside(segment, segments[next], 2));
}

// Whether two segments stand in one element or in ones that are near to each other: two levels are neighbours.
bool RecordPlaces::Beside(const Segment& one, const Segment& other, int levels) const {
    NodeIndex mine = ParentOf(one);
    for (int i = 0; i < levels && mine != noNode; ++i, mine = page_.Page.Parent(mine)) {
        NodeIndex theirs = ParentOf(other);
        for (int k = 0; k < levels && theirs != noNode; ++k, theirs = page_.Page.Parent(theirs))
            if (mine == theirs)
                return true;
    }
    return false;
}

// "Gaslamp", then "18 Broadway, Chula Vista, CA 92158": the quarter before a whole address is none of it.
void RecordPlaces::LeaveOutQuarter(const std::vector<Segment>& segments, Group& group) const {
    const auto isQuarter = [&](const Segment& segment) {
        return !segment.Street && !segment.PostalCode && Has(segment.Hints | segment.Label, Hint::City) &&
               !HasDigit(ValueOf(segment));
    };
    if (!group.PostalCode || !group.Street || PutsTownFirst(page_.Region) || !isQuarter(segments[group.Begin]))
        return;
    QString rest;
    size_t first = group.Begin;
    while (first + 1 < group.End && isQuarter(segments[first]))
        ++first;
    for (size_t i = first; i < group.End; ++i)
        if (!segments[i].IsLabel)
            rest += (rest.isEmpty() ? QString() : u", "_s) + PartedValue(segments[i]);
    const AddressParts parts = SplitAddress(rest, page_.Country);
    if (!parts.Street.isEmpty() && !parts.City.isEmpty())
        group.Begin = first;
}

void RecordPlaces::ReadAddress(size_t record, NodeIndex name, Lead& lead,
                               std::array<NodeIndex, FieldCount>& nodes) const {
    QString parted; // with commas where the page parts the address by its style
    const std::vector<Segment> segments = SegmentsOf(record, name, lead.Name);
    std::vector<Group> groups;
    for (size_t i = 0; i < segments.size(); ++i) {
        const Segment& segment = segments[i];
        if (!segment.Strong() && !segment.Weak())
            continue;
        bool joined = !groups.empty();
        for (size_t between = groups.empty() ? 0 : groups.back().End; joined && between < i; ++between)
            joined = segments[between].IsLabel || IsWithinLine(segments, between, i);
        // A second street begins a second address.
        if (joined && segment.Street && groups.back().Street && groups.back().PostalCode)
            joined = false;
        if (!joined)
            groups.push_back({i, i, 0, false, false});
        Group& group = groups.back();
        group.End = i + 1;
        group.PostalCode =
            group.PostalCode || segment.PostalCode || Has(segment.Hints | segment.Label, Hint::PostalCode);
        group.Street = group.Street || segment.Street || IsCorner(ValueOf(segment)) ||
                       Has(segment.Hints | segment.Label, Hint::Street);
    }
    const auto may = [&](size_t i, size_t neighbour, int levels = 2) {
        const Segment& segment = segments[i];
        const QStringView value = ValueOf(segment);
        return !segment.Excluded && value.size() <= 70 && value.size() >= 2 &&
               Beside(segment, segments[neighbour], levels) && !IsOfAnotherLink(segment, segments[neighbour]) &&
               page_.FactsOf(page_.Lines.Pieces[static_cast<size_t>(segment.FirstPiece)].Node).Phones == 0;
    };
    for (Group& group : groups) {
        // The street is often a line before the town, the town one behind the street, the postal code one before or
        // behind all, without any sign of their own.
        if (group.PostalCode && !group.Street && HoldsMoreThanTown(segments[group.Begin]))
            group.Street = true;
        if (group.PostalCode && !group.Street && group.Begin > 0 && may(group.Begin - 1, group.Begin)) {
            const Segment& before = segments[group.Begin - 1];
            if (HasDigit(ValueOf(before)) || HasStreetWord(ValueOf(before)) ||
                (before.Line + 1 == segments[group.Begin].Line &&
                 ParentOf(before) == ParentOf(segments[group.Begin]))) {
                --group.Begin;
                group.Street = true;
            }
        }
        if (group.PostalCode && !group.Street && group.End < segments.size() && may(group.End, group.End - 1) &&
            IsNumberedName(ValueOf(segments[group.End])))
            ++group.End;
        if (!group.PostalCode && group.Begin > 0 && PutsTownFirst(page_.Region) && may(group.Begin - 1, group.Begin) &&
            !HasDigit(ValueOf(segments[group.Begin - 1])) &&
            (ParentOf(segments[group.Begin - 1]) == ParentOf(segments[group.Begin]) ||
             IsTownBefore(segments[group.Begin - 1], segments[group.Begin])))
            --group.Begin;
        if (!group.PostalCode && group.Begin > 0 && IsBareCode(segments[group.Begin - 1])) {
            --group.Begin;
            group.PostalCode = true;
        }
        for (int added = 0; group.Street && !group.PostalCode && group.End < segments.size() && added < 3; ++added) {
            const Segment& behind = segments[group.End];
            const bool code = IsBareCode(behind) || IsTownWithCode(behind);
            if (!may(group.End, group.End - 1, code ? 3 : 2) || (behind.Label != 0 && (behind.Label & placeHints) == 0))
                break;
            group.PostalCode = code;
            const bool district = page_.Region == u"IE" && ValueOf(behind).startsWith(u"Dublin ");
            if (!group.PostalCode &&
                ((HasDigit(ValueOf(behind)) && !district) || added == 2 || !IsTownLike(segments, group.End, added)))
                break;
            ++group.End;
        }
        // "3074 Muri/BE"
        if (group.PostalCode && group.End < segments.size() &&
            segments[group.End].Line == segments[group.End - 1].Line && ValueOf(segments[group.End]).size() <= 3 &&
            IsStateOf(page_.Region, ValueOf(segments[group.End])))
            ++group.End;
        // An address that names its parts has none without a name at its end: that is something else in its element.
        const auto named = [&](size_t i) { return ((segments[i].Hints | segments[i].Label) & partHints) != 0; };
        const auto parts = std::count_if(segments.begin() + static_cast<std::ptrdiff_t>(group.Begin),
                                         segments.begin() + static_cast<std::ptrdiff_t>(group.End),
                                         [](const Segment& segment) { return (segment.Hints & partHints) != 0; });
        while (parts >= 2 && group.End > group.Begin + 1 && !named(group.End - 1) &&
               !segments[group.End - 1].PostalCode && !segments[group.End - 1].Street &&
               !IsStateOf(page_.Region, ValueOf(segments[group.End - 1])))
            --group.End;
        // A trade or a count behind it in the address's element.
        while (group.End > group.Begin + 1 && !segments[group.End - 1].Strong() &&
               ((segments[group.End - 1].Hints | segments[group.End - 1].Label) & partHints) == 0 &&
               IsTrade(ValueOf(segments[group.End - 1])))
            --group.End;
        LeaveOutQuarter(segments, group);
        const bool numbered =
            std::any_of(segments.begin() + static_cast<std::ptrdiff_t>(group.Begin),
                        segments.begin() + static_cast<std::ptrdiff_t>(group.End), [&](const Segment& one) {
                            return !one.IsLabel && Has(one.Hints, Hint::Address) && HasDigit(ValueOf(one));
                        });
        group.Score = (group.PostalCode ? 2 : 0) + (group.Street ? 2 : 0) + (numbered ? 0.5 : 0);
    }
    const auto best = std::max_element(groups.begin(), groups.end(),
                                       [](const Group& one, const Group& other) { return one.Score < other.Score; });
    if (best != groups.end()) {
        QString full;
        QString apart;
        int line = -1;
        qsizetype behind = 0;
        for (size_t i = best->Begin; i < best->End; ++i) {
            const Segment& segment = segments[i];
            if (segment.IsLabel)
                continue;
            if (lead.Category.isEmpty() && !segment.Trade.isEmpty()) {
                lead.Category = segment.Trade.toString();
                nodes[static_cast<size_t>(Field::Category)] = ParentOf(segment);
            }
            const TextPiece& first = page_.Lines.Pieces[static_cast<size_t>(segment.FirstPiece)];
            const QStringView value = ValueOf(segment);
            if (full.isEmpty())
                nodes[static_cast<size_t>(Field::FullAddress)] = page_.Page.Parent(first.Node);
            else if (segment.Line == line && segment.Begin - behind <= 4 &&
                     IsMarksOnly(QStringView(page_.Lines.Text).sliced(behind, segment.Begin - behind)))
                full += QStringView(page_.Lines.Text).sliced(behind, segment.Begin - behind);
            else
                full += full.endsWith(u',') ? u" "_s : u", "_s;
            full += value;
            apart += (apart.isEmpty() ? QString() : u", "_s) + PartedValue(segment);
            line = segment.Line;
            behind = segment.End;
        }
        lead.FullAddress = Tidy(full);
        parted = Tidy(apart);
    }
    ReadParts(segments, columns_.List.Records[record], parted, lead);
    if (lead.FullAddress.isEmpty())
        ReadDataAttributes(columns_.List.Records[record], lead, nodes);
}

// A segment's value with commas between the texts of different elements.
QString RecordPlaces::PartedValue(const Segment& segment) const {
    QString value;
    QStringView last;
    NodeIndex before = noNode;
    for (int i = segment.FirstPiece; i < segment.EndPiece; ++i) {
        const TextPiece& piece = page_.Lines.Pieces[static_cast<size_t>(i)];
        const qsizetype begin = std::max(piece.Begin, segment.Begin);
        const qsizetype end = std::min(piece.Begin + piece.Length, segment.End);
        if (begin >= end)
            continue;
        const NodeIndex parent = page_.Page.Parent(piece.Node);
        if (!value.isEmpty())
            value +=
                parent == before || IsMarksOnly(page_.Lines.TextOf(piece)) || Has(HintsOfLabel(last), Hint::PostalCode)
                    ? u" "_s
                    : u", "_s;
        last = QStringView(page_.Lines.Text).sliced(begin, end - begin);
        value += QStringView(page_.Lines.Text).sliced(begin, end - begin);
        before = parent;
    }
    bool doubled = false; // a comma behind a blank or another one
    for (qsizetype at = 1; at < value.size(); ++at)
        doubled |= value[at] == u',' && (value[at - 1] == u' ' || value[at - 1] == u',');
    if (!doubled)
        return value;
    return value.replace(u" ,"_s, u","_s).replace(u",,"_s, u","_s).replace(u", ,"_s, u","_s);
}

void RecordPlaces::ReadParts(const std::vector<Segment>& segments, const RecordRange& range, const QString& parted,
                             Lead& lead) const {
    const auto set = [this, &lead](HintSet hints, const QString& text) {
        const QString value = WithoutBasedIn(text);
        if (value.isEmpty() || value.size() > 120)
            return;
        // An element can call itself what only a part of it is.
        if (Has(hints, Hint::PostalCode) && !Has(hints, Hint::Street) && (value.size() > 12 || !HasDigit(value)))
            return;
        if (!Has(hints, Hint::Street) && value.size() > 60)
            return;
        if (Has(hints, Hint::Street) &&
            (AddressSignsIn(value, page_.Region).PostalCode || !RegionOfCountryName(value).isEmpty()))
            return;
        // "8001 Zürich" in the column of the towns.
        if (Has(hints, Hint::City) && HasDigit(value))
            if (const std::vector<TextSpan> codes = PostalCodesIn(value, page_.Region); !codes.empty()) {
                const AddressParts parts = SplitAddress(value, page_.Country);
                if (parts.PostalCode.isEmpty() || parts.City.isEmpty())
                    return;
                FillPart(lead.PostalCode, parts.PostalCode);
                FillPart(lead.City, parts.City);
                FillPart(lead.State, parts.State);
                return;
            }
        // "Austin, TX" calls itself a town.
        if (Has(hints, Hint::City) && !Has(hints, Hint::Street) && lead.City.isEmpty() && IsTownWithRegion(value)) {
            const qsizetype mark = value.endsWith(u')') ? value.lastIndexOf(u'(') : value.lastIndexOf(u',');
            const QString region = value.sliced(mark + 1).remove(u')').trimmed();
            lead.City = value.first(mark).trimmed();
            (RegionOfCountryName(region).isEmpty() || IsStateOf(page_.Region, region) ? lead.State : lead.Country) =
                region;
            return;
        }
        // "Alcudia, Mallorca, Spain" says where in the country the town lies.
        if (Has(hints, Hint::City) && !Has(hints, Hint::Street) && lead.City.isEmpty() && value.count(u',') == 2 &&
            !HasDigit(value) && !RegionOfCountryName(value.section(u',', 2).trimmed()).isEmpty()) {
            lead.City = value.section(u',', 0, 0).trimmed();
            lead.State = value.section(u',', 1, 1).trimmed();
            lead.Country = value.section(u',', 2).trimmed();
            return;
        }
        for (const auto& [hint, part] :
             {std::pair(Hint::Street, &lead.Street), std::pair(Hint::PostalCode, &lead.PostalCode),
              std::pair(Hint::City, &lead.City), std::pair(Hint::State, &lead.State),
              std::pair(Hint::Country, &lead.Country)})
            if (Has(hints, hint)) {
                if (part->isEmpty())
                    *part = value;
                return;
            }
    };
    // A quarter somewhere else in the record is not the town of an address that has one.
    const AddressParts own = lead.FullAddress.isEmpty() ? AddressParts() : SplitAddress(parted, page_.Country);
    const bool whole = !own.City.isEmpty() && (!own.PostalCode.isEmpty() || !own.State.isEmpty());
    for (const Segment& segment : segments)
        if (const HintSet says = (segment.Hints & partHints) != 0 ? segment.Hints : segment.Label;
            !segment.Excluded && (says & partHints) != 0 &&
            !(whole && Has(says, Hint::City) && !parted.contains(ValueOf(segment))))
            set(says, Tidy(ValueOf(segment).toString()));
    // Where town and code have places of their own, what else calls itself an address is the street.
    if (lead.Street.isEmpty() && !lead.City.isEmpty() && !lead.PostalCode.isEmpty())
        for (const Segment& segment : segments)
            if (!segment.Excluded && ((segment.Hints | segment.Label) & partHints) == 0 &&
                Has(segment.Hints | segment.Label, Hint::Address) && !segment.PostalCode && HasDigit(ValueOf(segment)))
                set(static_cast<HintSet>(Hint::Street), Tidy(ValueOf(segment).toString()));
    // What stands in the page for machines only.
    for (NodeIndex node = range.Begin; hasMeta_ && node < range.End; ++node)
        if (page_.Page.Is(node, u"meta") && page_.Page.HasAttribute(node, u"itemprop"))
            set(page_.HintsOf(node), Tidy(page_.Page.Attribute(node, u"content").toString()));
    if (lead.FullAddress.isEmpty())
        return;
    QString full = parted;
    if (std::any_of(full.cbegin(), full.cend(), [](QChar c) { return IsAmong(c, u"\u2022\u00B7|"); }))
        full.replace(u" \u2022 "_s, u", "_s).replace(u" \u00B7 "_s, u", "_s).replace(u" | "_s, u", "_s);
    const AddressParts parts = full == parted ? own : SplitAddress(full, page_.Country);
    const bool known = !lead.Street.isEmpty() || !lead.PostalCode.isEmpty();
    if (lead.City.isEmpty() || !parts.Street.startsWith(lead.City)) // the town has no street before it
        FillPart(lead.Street, parts.Street);
    FillPart(lead.PostalCode, parts.PostalCode);
    FillPart(lead.City, parts.City);
    FillPart(lead.State, parts.State);
    if (lead.Country.isEmpty() && !known)
        lead.Country = parts.Country;
    if (lead.City.isEmpty() && lead.Street.isEmpty() && IsTownWithRegion(lead.FullAddress) &&
        CommaBeforeCountry(lead.FullAddress) < 0 && lead.FullAddress.contains(u',')) {
        lead.City = lead.FullAddress.section(u',', 0, 0).trimmed(); // "North Vancouver, BC"
        lead.State = lead.FullAddress.section(u',', 1).trimmed();
    }
    // Where each part has a column of its own, the town's is the last one.
    if (!lead.City.isEmpty() && !lead.FullAddress.contains(lead.City) &&
        !lead.FullAddress.contains(lead.City, Qt::CaseInsensitive))
        lead.FullAddress += (lead.FullAddress.endsWith(lead.PostalCode) ? u" "_s : u", "_s) + lead.City;
}

} // namespace Brindle
