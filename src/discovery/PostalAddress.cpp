#include "discovery/PostalAddress.h"

#include "discovery/Labels.h"
#include "discovery/PostalAddressWords.h"
#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

// One line break or blank for any run of them.
QString Levelled(QStringView text) {
    QString level(text.size(), Qt::Uninitialized);
    QChar* const begin = level.data();
    QChar* end = begin;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == 0x200B || u == 0x200E || u == 0x200F || u == 0xFEFF || u == 0xAD)
            continue;
        const bool line = u == u'\n' || u == u'\r' || u == 0x2028;
        if (!line && !c.isSpace())
            *end++ = c;
        else if (end == begin || end[-1] == u'\n')
            continue;
        else if (line && end[-1] == u' ')
            end[-1] = u'\n';
        else if (line)
            *end++ = u'\n';
        else if (end[-1] != u' ')
            *end++ = u' ';
    }
    while (end != begin && (end[-1] == u' ' || end[-1] == u'\n'))
        --end;
    level.truncate(end - begin);
    return level;
}

QStringView WithoutLabel(QStringView text) {
    const LeadingLabel label = LabelAtBegin(text);
    return Has(label.Hints, Hint::Address) ? Stripped(text.sliced(label.Length)) : text;
}

class Splitter {
public:
    Splitter(QStringView text, QString region) : text_(text), region_(std::move(region)) {}

    AddressParts Run() {
        TakeCountry();
        if (region_.isEmpty())
            region_ = RegionByCode(text_);
        if (const QString region = RegionByState(text_); !region.isEmpty() && !IsStateOf(region_, text_.last(2)))
            region_ = region;
        Cut();
        if (segments_.empty())
            return parts_;
        const AddressCountry* const country = AddressCountryOf(region_);
        const AddressOrder order = country ? country->Order : AddressOrder::CityCode;
        const bool ideographs = std::any_of(text_.begin(), text_.end(), IsIdeograph);
        if (order == AddressOrder::LargeToSmall && ideographs)
            ReadLargeToSmall(segments_, region_, parts_);
        else if (order == AddressOrder::CodeCity)
            ReadCodeCity();
        else
            ReadStateAndCodeBehind(country);
        return parts_;
    }

private:
    using Segments = QVarLengthArray<QStringView, 12>;

    void TakeCountry() {
        text_ = WithoutLabel(Stripped(text_));
        QString region;
        const qsizetype size = CountryAtEnd(text_.endsWith(u')') ? text_.chopped(1) : text_, region);
        if (size > 0) {
            QStringView body = text_;
            const bool bracket = body.endsWith(u')');
            if (bracket)
                body.chop(1);
            const QStringView name = body.last(size);
            QStringView rest = body.chopped(size);
            // "Rue de France" and "México" that is the city end in a name, too.
            const QStringView plain = Stripped(rest, u" ");
            const bool apart = plain.isEmpty() || plain.endsWith(u',') || plain.endsWith(u'\n') ||
                               plain.endsWith(u'(') || plain.endsWith(u'-') || plain.endsWith(u'|');
            const bool behindCode = !plain.isEmpty() && plain.back().isDigit();
            const bool known = region == region_ || region_.isEmpty();
            if ((apart && !(plain.isEmpty() && size < 3)) || (behindCode && (known || apart)) ||
                (known && size > 4 && !HasStreetWord(text_.sliced(text_.size() - qMin(text_.size(), size + 12))))) {
                const bool isCity = plain.isEmpty() || (region == u"SG" && !apart) || IsPlaceToo(region, name, plain);
                if (!isCity) {
                    parts_.Country = name.toString();
                    text_ = Stripped(rest, u" ,;|•·\n-–—/(");
                }
                region_ = region;
                return;
            }
        }
        for (const QStringView first : {u"日本", u"中国", u"대한민국", u"台灣"})
            if (!text_.isEmpty() && text_.front() == first.front() && text_.startsWith(first) &&
                text_.size() > first.size() + 2 && Stripped(text_.sliced(first.size())) != text_.sliced(first.size())) {
                parts_.Country = first.toString();
                region_ = RegionOfCountryName(first);
                text_ = Stripped(text_.sliced(first.size()));
            }
    }

    // "Ciudad de México", "Luxembourg" behind its own code, "Singapore 123456".
    static bool IsPlaceToo(QStringView region, QStringView name, QStringView before) {
        if (region == u"MX")
            return before.endsWith(u"de", Qt::CaseInsensitive);
        if (region == u"LU" || region == u"SG" || region == u"HK") {
            const QStringView line = Stripped(before);
            return !line.contains(name, Qt::CaseInsensitive) && !line.isEmpty() && !before.endsWith(u'\n') &&
                   !line.back().isLetter();
        }
        return false;
    }

    static bool MayPart(QChar c) {
        static constexpr auto parting = [] {
            std::array<bool, 0x80> table{};
            for (const char16_t u : {u'\n', u',', u';', u'|', u'-'})
                table[u] = true;
            return table;
        }();
        return c.unicode() >= parting.size() || parting[c.unicode()];
    }

    void Cut() {
        qsizetype from = 0;
        const auto add = [this, &from](qsizetype to) {
            const QStringView segment = Stripped(text_.sliced(from, to - from));
            if (!segment.isEmpty())
                segments_.push_back(segment);
        };
        for (qsizetype at = 0; at < text_.size(); ++at) {
            const QChar c = text_[at];
            if (!MayPart(c))
                continue;
            const bool dash = (c == u'-' || c == u'–' || c == u'—') && at > 0 && at + 1 < text_.size() &&
                              text_[at - 1] == u' ' && text_[at + 1] == u' ';
            // A comma between digits separates a number from its suffix: "12,5".
            const bool comma = (c == u',' || c == u';') &&
                               !(at > 0 && at + 1 < text_.size() && text_[at - 1].isDigit() && text_[at + 1].isDigit());
            if (c == u'\n' || comma || c == u'|' || c == u'•' || c == u'·' || c == u'，' || c == u'、' || c == u'،' ||
                dash) {
                add(at);
                from = at + 1;
            }
        }
        add(text_.size());
    }

    // The text from the first of the segments to the last as it stands there.
    QString Verbatim(const Segments& segments) const {
        if (segments.empty())
            return {};
        const QChar* const begin = segments.front().data();
        const QChar* const end = segments.back().data() + segments.back().size();
        QString text = QStringView(begin, end - begin).toString();
        if (text.contains(u'\n')) {
            text.replace(u",\n"_s, u", "_s);
            text.replace(u"\n"_s, u", "_s);
        }
        return text;
    }

    struct Code {
        qsizetype Segment;
        TextSpan Span;
    };

    using Codes = QVarLengthArray<Code, 6>;

    Codes FindCodes() const {
        Codes codes;
        for (qsizetype i = 0; i < segments_.size(); ++i)
            for (const TextSpan& span : PostalCodesIn(segments_[i], region_))
                if (!IsNumberOfBox(segments_[i].first(span.Begin)))
                    codes.push_back({i, span});
        return codes;
    }

    // "PO Box 5801"
    static bool IsNumberOfBox(QStringView before) {
        const QStringView words = Stripped(before);
        for (const QStringView box : {u"box", u"postfach", u"postbus", u"boks", u"casilla", u"apartado", u"apdo."})
            if (words.endsWith(box, Qt::CaseInsensitive))
                return true;
        return false;
    }

    QStringView BeforeCode(const Code& code) const {
        QStringView before = segments_[code.Segment].first(code.Span.Begin);
        const AddressCountry* const country = AddressCountryOf(region_);
        if (country && !country->CodePrefixes.isEmpty() &&
            (before.endsWith(u'-') || before.endsWith(u'.') || before.endsWith(u' ') || before.endsWith(u'(')))
            for (const QStringView prefix : country->CodePrefixes.split(u'|'))
                if (const QStringView bare = before.chopped(1);
                    !prefix.isEmpty() && bare.endsWith(prefix) &&
                    (bare.size() == prefix.size() || !bare[bare.size() - prefix.size() - 1].isLetterOrNumber()))
                    before = bare.chopped(prefix.size());
        // "(M5500) Mendoza"
        return Stripped(before, IsInBrackets(code) ? u" ,;|•·\n、，-–—/〒(" : u" ,;|•·\n、，-–—/〒");
    }

    QStringView BehindCode(const Code& code) const {
        return Stripped(segments_[code.Segment].sliced(code.Span.End + (IsInBrackets(code) ? 1 : 0)));
    }

    bool IsInBrackets(const Code& code) const {
        const QStringView segment = segments_[code.Segment];
        return code.Span.Begin > 0 && segment[code.Span.Begin - 1] == u'(' && code.Span.End < segment.size() &&
               segment[code.Span.End] == u')';
    }

    bool IsAlone(const Code& code) const { return BeforeCode(code).isEmpty() && BehindCode(code).isEmpty(); }

    // Whether the line behind a code is a place's and the one before it is not.
    bool IsCityBehind(const Code& code) const {
        return code.Segment + 1 < segments_.size() && StartsLikePlace(segments_[code.Segment + 1]) &&
               !HasDigit(segments_[code.Segment + 1]) &&
               (code.Segment == 0 || HasDigit(segments_[code.Segment - 1]) || code.Segment + 2 == segments_.size() ||
                (code.Segment + 3 == segments_.size() && IsStateOf(region_, segments_.back())));
    }

    void SetCode(const Code& code) {
        parts_.PostalCode = segments_[code.Segment].sliced(code.Span.Begin, code.Span.End - code.Span.Begin).toString();
    }

    static bool StartsLikePlace(QStringView text) {
        return !text.isEmpty() && (text.front().isUpper() || text.front() == u'\'' || text.front() == u'’' ||
                                   (text.front().isLetter() && !text.front().isLower()) ||
                                   (text.front().isLetter() && text.size() > 2 && text[1] == u'\'') ||
                                   text.startsWith(u"s-") || text.startsWith(u"den ") || text.startsWith(u"la "));
    }

    static bool StreetLike(QStringView text) { return HasDigit(text) || HasStreetWord(text); }

    // Takes the state in brackets or behind a blank from the end of a place.
    QStringView TakeStateFrom(QStringView place) {
        QStringView rest = place;
        // "Bologna (BO) Emilia Romagna"
        if (const qsizetype open = rest.indexOf(u'('); open > 0 && !rest.endsWith(u')'))
            if (const qsizetype close = rest.indexOf(u')', open); close > 0 && close - open <= 4)
                if (const QStringView inside = rest.sliced(open + 1, close - open - 1); IsStateOf(region_, inside)) {
                    parts_.State = inside.toString();
                    return Stripped(rest.first(open));
                }
        if (rest.endsWith(u')')) {
            const qsizetype open = rest.lastIndexOf(u'(');
            if (open > 0) {
                const QStringView inside = Stripped(rest.sliced(open + 1, rest.size() - open - 2));
                const bool code = inside.size() <= 3 && inside.size() >= 2 && inside.toString().toUpper() == inside;
                if (code || IsStateOf(region_, inside)) {
                    if (parts_.State.isEmpty())
                        parts_.State = inside.toString();
                    return Stripped(rest.first(open));
                }
                if (const QStringView outside = Stripped(rest.first(open)); IsStateOf(region_, outside)) {
                    parts_.State = outside.toString();
                    return {};
                }
                return place;
            }
        }
        const qsizetype size = StateAtEnd(region_, rest);
        if (size == 0 || size == rest.size())
            return place;
        const QStringView state = rest.last(size);
        // A province that is named like its capital stands behind it in capitals, or behind a comma.
        const bool shortForm = state.size() <= 3;
        if (!shortForm && (region_ == u"IT" || region_ == u"ES" || region_ == u"AR"))
            return place;
        parts_.State = state.toString();
        return Stripped(rest.chopped(size));
    }

    void ReadCodeCity() {
        const Codes codes = FindCodes();
        const Code* best = nullptr;
        for (const Code& code : codes)
            if (BeforeCode(code).isEmpty() && StartsLikePlace(BehindCode(code)))
                best = &code;
        if (!best)
            for (const Code& code : codes)
                if (StartsLikePlace(BehindCode(code)) && !HasStreetWord(BehindCode(code)))
                    best = &code;
        if (!best)
            for (const Code& code : codes)
                if (IsAlone(code) && IsCityBehind(code))
                    best = &code;
        if (!best) {
            // "Madrid 28001", or the code on a line of its own before or behind the city's.
            for (const Code& code : codes)
                if (BehindCode(code).isEmpty() && !codes.empty() && &code == &codes.back())
                    best = &code;
            if (best) {
                ReadCityBeforeCode(*best);
                return;
            }
            ReadWithoutCode(segments_);
            return;
        }
        SetCode(*best);
        Segments street(segments_.begin(), segments_.begin() + best->Segment);
        if (const QStringView before = BeforeCode(*best); !before.isEmpty())
            street.push_back(before);
        QStringView city = BehindCode(*best);
        const qsizetype behind = best->Segment + (city.isEmpty() ? 2 : 1);
        if (city.isEmpty())
            city = segments_[best->Segment + 1]; // on a line of its own
        for (qsizetype i = behind; i < segments_.size(); ++i) {
            const QStringView segment = segments_[i];
            if (IsStateOf(region_, segment) && parts_.State.isEmpty())
                parts_.State = segment.toString();
            else if (region_ == u"PL" && segment.startsWith(u"woj. "))
                parts_.State = segment.sliced(5).toString();
            else if ((street.empty() && StreetLike(segment)) ||
                     // "1051 Budapest, Fő utca 5, 2. em."
                     (street.size() == 1 && street.front().data() > city.data() && HasDigit(segment)))
                street.push_back(segment);
        }
        city = TakeStateFrom(city);
        if (street.empty() && HasStreetWord(city) && HasDigit(city)) {
            // City and street without a mark between them: only the code is sure.
            return;
        }
        parts_.City = city.toString();
        parts_.Street = Verbatim(street);
    }

    void ReadCityBeforeCode(const Code& code) {
        Segments rest(segments_.begin(), segments_.begin() + code.Segment);
        if (const QStringView before = BeforeCode(code); !before.isEmpty())
            rest.push_back(before);
        if (rest.empty() && code.Segment + 1 < segments_.size())
            rest = Segments(segments_.begin() + code.Segment + 1, segments_.end());
        if (rest.empty())
            return;
        SetCode(code);
        ReadWithoutCode(rest);
    }

    // What is left when the code is gone, the city last.
    void ReadWithoutCode(Segments rest) {
        if (ReadCityFirst(rest))
            return;
        const bool sure = !parts_.PostalCode.isEmpty() || !parts_.Country.isEmpty();
        bool stateApart = false; // behind a comma
        // The states of Nigeria are named like their capitals: "12, Allen Avenue, Lagos".
        const bool behindStreet = region_ == u"NG" && rest.size() > 1 && StreetLike(rest[rest.size() - 2]);
        if (rest.size() > 1 && IsStateOf(region_, rest.back()) && !behindStreet &&
            (rest.size() > 2 || !StreetLike(rest.front()) || rest.back().size() <= 3)) {
            parts_.State = rest.back().toString();
            rest.pop_back();
            stateApart = true;
        } else {
            QStringView& last = rest.back();
            const QStringView bare = TakeStateFrom(last);
            if (bare.isEmpty() && rest.size() > 1)
                rest.pop_back(); // "California (Ontario)"
            else
                last = bare;
        }
        const bool known = sure || !parts_.State.isEmpty();
        const QStringView last = rest.back();
        if (rest.size() == 1) {
            const bool isTown = stateApart && !HasDigit(last); // "Cedar Park, TX"
            if (!isTown && StreetLike(last)) {
                const qsizetype end = EndOfStreetIn(last);
                const QStringView city = end < 0 ? QStringView() : Stripped(last.sliced(end));
                if (known && !city.isEmpty() && !HasDigit(city)) {
                    parts_.Street = Stripped(last.first(end)).toString();
                    parts_.City = city.toString();
                } else if (end == last.size() || (!known && HasStreetWord(last))) {
                    parts_.Street = last.toString();
                    TakeStateForCity();
                } else {
                    parts_.State.clear();
                }
            } else if (isTown || known) {
                parts_.City = last.toString();
            }
            return;
        }
        if (!IsPlace(last)) {
            // All of it is the street's, as far as can be seen.
            if (!known && std::any_of(rest.begin(), rest.end(), [](QStringView s) { return HasStreetWord(s); }))
                parts_.Street = Verbatim(rest);
            return;
        }
        const Segments street(rest.begin(), rest.end() - 1);
        const bool streetLike = std::any_of(street.begin(), street.end(), StreetLike);
        const bool streetWord =
            std::any_of(street.begin(), street.end(), [](QStringView s) { return HasStreetWord(s); });
        const bool numbered = rest.size() == 2 && EndsInHouseNumber(rest.front());
        if (!known && !(streetLike && (streetWord || ((numbered || !region_.isEmpty()) && AreNames(last)))))
            return;
        parts_.City = last.toString();
        if (streetLike || !street.empty())
            parts_.Street = Verbatim(street);
    }

    // "350 5th Ave New York" names the city, not the state.
    void TakeStateForCity() {
        if (parts_.State.size() > 3)
            std::swap(parts_.State, parts_.City);
    }

    // Where the city stands before the street: "Москва, ул. Тверская, 5".
    bool ReadCityFirst(const Segments& rest) {
        static const QStringView regions[] = {u"RU", u"UA", u"PL", u"HU", u"BG", u"RS", u"RO"};
        if (rest.size() < 2 || std::find(std::begin(regions), std::end(regions), region_) == std::end(regions) ||
            StreetLike(rest[0]) || !HasStreetWord(rest[1]) || !AreNames(rest[0]))
            return false;
        parts_.City = WithoutTownMark(rest[0]).toString();
        parts_.Street = Verbatim({rest.begin() + 1, rest.end()});
        return true;
    }

    // A city's name, with the number of a district at most.
    static bool IsPlace(QStringView text) {
        if (IsPartOfHouse(text) || IsPlaceInStreet(text))
            return false;
        int digits = 0;
        for (const QChar c : text)
            digits += c.isDigit() ? 1 : 0;
        if (text.isEmpty() || text.front().isDigit() || text.front() == u'#' || digits > 2)
            return false;
        if (digits > 0)
            return text.back().isDigit() || text.contains(u' ');
        return text.size() > 3 || text.contains(u'-') || !HasStreetWord(text);
    }

    void ReadStateAndCodeBehind(const AddressCountry* country) {
        const Codes codes = country ? FindCodes() : Codes();
        const Code* best = nullptr;
        for (const Code& code : codes) {
            // The number of a house may have as many digits.
            const bool house = BeforeCode(code).isEmpty() && !BehindCode(code).isEmpty() &&
                               HasStreetWord(code.Segment == 0 ? segments_[0] : BehindCode(code));
            const bool alone = segments_.size() == 1 && BeforeCode(code).isEmpty() && BehindCode(code).isEmpty();
            if (!house && !alone)
                best = &code;
        }
        if (!best) {
            ReadWithoutCode(segments_);
            return;
        }
        SetCode(*best);
        const QStringView before = BeforeCode(*best);
        const QStringView behind = BehindCode(*best);
        const auto at = segments_.begin() + best->Segment;
        Segments rest(segments_.begin(), at);
        if (!before.isEmpty())
            rest.push_back(before);
        const Segments rear(at + 1, segments_.end());
        if (rest.empty()) {
            // The code first: city, then street ("101000, Москва, ул. Тверская, 1"), or city beside it.
            Segments follow = rear;
            if (!behind.isEmpty())
                follow.insert(follow.begin(), behind);
            if (follow.empty())
                return;
            parts_.City = WithoutTownMark(follow.front()).toString();
            if (IsStateOf(region_, follow.front()) && follow.size() > 2) {
                parts_.State = parts_.City;
                follow.erase(follow.begin());
                parts_.City = WithoutTownMark(follow.front()).toString();
            }
            follow.erase(follow.begin());
            parts_.Street = Verbatim(follow);
            return;
        }
        // "Mumbai 400069, Maharashtra", "00-100 Nairobi" in a country that mostly writes it behind.
        for (const QStringView segment : rear)
            if (IsStateOf(region_, segment))
                parts_.State = segment.toString();
        // "пр. Свободи, буд. 37, 01559, м. Київ"
        if (before.isEmpty() && behind.isEmpty() && !rear.empty() && parts_.State.isEmpty() && HasDigit(rest.back()) &&
            !HasDigit(rear.front()) &&
            (WithoutTownMark(rear.front()) != rear.front() || StartsLikePlace(rear.front()))) {
            parts_.City = WithoutTownMark(rear.front()).toString();
            parts_.Street = Verbatim(rest);
            return;
        }
        if (!behind.isEmpty() && StartsLikePlace(behind)) {
            if (IsStateOf(region_, behind)) {
                parts_.State = behind.toString();
            } else {
                parts_.City = WithoutTownMark(TakeStateFrom(behind)).toString();
                parts_.Street = Verbatim(rest);
                return;
            }
        }
        ReadStateAndCity(rest);
    }

    static QStringView WithoutTownMark(QStringView city) {
        static constexpr std::array<QStringView, 10> marks{u"г. ", u"г.",     u"гр. ",   u"гр.",  u"м. ",
                                                           u"м.",  u"город ", u"місто ", u"TP. ", u"TP "};
        for (const QStringView mark : marks)
            if (!city.isEmpty() && city.front() == mark.front() && city.startsWith(mark))
                return Stripped(city.sliced(mark.size()));
        return city;
    }

    void ReadStateAndCity(Segments rest) {
        // "29 Trafalgar Street, Nelson, Nelson": a region that is named like its town.
        if (rest.size() > 2 && rest.back() == rest[rest.size() - 2] && parts_.State.isEmpty()) {
            parts_.State = rest.back().toString();
            rest.pop_back();
        }
        if (parts_.State.isEmpty()) {
            QStringView& last = rest.back();
            if (last.size() > 2 && last.startsWith(u'(') && last.endsWith(u')'))
                last = last.sliced(1, last.size() - 2);
            // "New York, NY" and "New York" alone: the name of a city that is a state's, too. "12 Elm St, Oak Park,
            // Illinois": a city that sounds like a street stands behind the street.
            const qsizetype size = rest.size();
            const bool behindCity =
                size > 1 && (!StreetLike(rest[size - 2]) || (size > 2 && !HasDigit(rest[size - 2]) &&
                                                             HasDigit(rest[size - 3]) && StreetLike(rest[size - 3])));
            if (IsStateOf(region_, last) && (behindCity || (last.size() <= 3 && size > 1))) {
                parts_.State = last.toString();
                rest.pop_back();
            } else {
                last = TakeStateFrom(last);
            }
        }
        if (rest.empty())
            return;
        const QStringView city = rest.back();
        if (rest.size() > 1 && HasDigit(city) && HasStreetWord(city))
            if (const qsizetype end = EndOfStreetIn(city); end > 0 && end < city.size()) {
                // "Shop 19, 12 Collins Street Geelong"
                if (const QStringView place = Stripped(city.sliced(end)); !place.isEmpty() && !HasDigit(place)) {
                    rest.back() = Stripped(city.first(end));
                    parts_.City = place.toString();
                    parts_.Street = Verbatim(rest);
                    return;
                }
            }
        if (rest.size() == 1 && StreetLike(city)) {
            // Street and city without a comma: behind the word that ends the street.
            qsizetype end = EndOfStreetIn(city);
            if (end < 0 || end == city.size())
                end = std::max(end, EndOfNumberIn(city));
            const QStringView place = end < 0 ? QStringView() : Stripped(city.sliced(end));
            if (!place.isEmpty() && !HasDigit(place)) {
                parts_.Street = Stripped(city.first(end)).toString();
                parts_.City = place.toString();
            } else if (end == city.size() && (HasDigit(city) || parts_.State.isEmpty())) {
                parts_.Street = city.toString();
                TakeStateForCity();
            } else if (!HasDigit(city)) {
                parts_.City = city.toString();
            }
            return;
        }
        if (!IsPlace(city)) {
            parts_.Street = Verbatim(rest);
            return;
        }
        parts_.City = WithoutTownMark(city).toString();
        rest.pop_back();
        parts_.Street = Verbatim(rest);
    }

    QStringView text_;
    QString region_;
    Segments segments_;
    AddressParts parts_;
};

} // namespace

AddressParts SplitAddress(QStringView text, const AddressHints& hints) {
    constexpr qsizetype longest = 400;
    const QString level = Levelled(text);
    if (level.isEmpty() || level.size() > longest || level.count(u'\n') > 10)
        return {};
    return Splitter(level, GuessCountry(hints).Region).Run();
}

} // namespace Brindle
