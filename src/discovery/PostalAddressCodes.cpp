#include "discovery/Labels.h"
#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressWords.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

namespace Brindle {

namespace {

bool IsLatinLetter(QChar c) {
    const char16_t u = c.unicode() | 0x20;
    return u >= u'a' && u <= u'z';
}

bool IsCodeDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'\uFF10' && c <= u'\uFF19');
}

// The end of the shape where the text has it at `at`; -1 where it has not.
qsizetype MatchShape(QStringView text, qsizetype at, QStringView shape) {
    bool upper = false;
    bool lower = false;
    for (const QChar s : shape) {
        const QChar c = at < text.size() ? text[at] : QChar();
        if (s == u' ') {
            at += c == u' ' || c == u'\u00A0' ? 1 : 0;
            continue;
        }
        bool fits = false;
        if (s == u'9')
            fits = IsCodeDigit(c);
        else if (s == u'A' || s == u'X') {
            fits = IsLatinLetter(c) || (s == u'X' && IsCodeDigit(c));
            upper = upper || c.isUpper();
            lower = lower || c.isLower();
        } else if (s == u'-')
            fits = c == u'-' || c == u'\u2010' || c == u'\u2011' || c == u'\u2013' || c == u'\u2212' || c == u'\uFF0D';
        else
            fits = c == s;
        if (!fits)
            return -1;
        ++at;
    }
    return upper && lower ? -1 : at;
}

bool Joins(QChar c) {
    return c == u'-' || c == u'/' || c == u'.' || c == u'+' || c == u'_' || c == u'@' || c == u'#' || c == u'&' ||
           c == u'=' || c == u'€' || c == u'$' || c == u'£';
}

// Ideographs and the marks beside them: 〒, 「.
bool IsEastern(QChar c) {
    return c.unicode() >= 0x2E80 && c.unicode() < 0xFF00;
}

// Whether a code may begin at `at`.
bool MayBegin(QStringView text, qsizetype at) {
    if (at == 0)
        return true;
    const QChar before = text[at - 1];
    // "(778) 420-7516"
    const qsizetype bracket = before == u' ' ? at - 2 : at - 1;
    if (bracket > 3 && text[bracket] == u')' && text[bracket - 1].isDigit() && text[bracket - 3].isDigit() &&
        text[at].isDigit())
        return false;
    return (!before.isLetterOrNumber() || IsEastern(before)) && !Joins(before);
}

// Whether one may because a letter and hyphen of the country stand before it.
bool MayFollow(QStringView text, qsizetype at, std::span<const QStringView> prefixes) {
    if (at == 0 || (text[at - 1] != u'-' && text[at - 1] != u'.'))
        return false;
    return std::any_of(prefixes.begin(), prefixes.end(), [text, at](QStringView prefix) {
        return at > prefix.size() && text.sliced(at - 1 - prefix.size(), prefix.size()) == prefix &&
               (at == prefix.size() + 1 || !text[at - 2 - prefix.size()].isLetterOrNumber());
    });
}

bool MayEnd(QStringView text, qsizetype at) {
    if (at >= text.size())
        return true;
    const QChar behind = text[at];
    if (behind.isLetterOrNumber() && !IsEastern(behind))
        return false;
    const bool digitNext = at + 1 < text.size() && text[at + 1].isLetterOrNumber();
    return !((Joins(behind) || behind == u',' || behind == u':') && digitNext &&
             (behind != u',' || text[at + 1].isDigit())) &&
           behind != u'%' && behind != u'€';
}

// A shape of postal codes, with what tells without looking closer that none of it can be there.
struct CodeShape {
    QStringView Text;
    std::vector<QStringView> Prefixes;
    bool Digit = false;     ///< begins with a digit
    bool HasDigit = false;  ///< one stands before its first blank or hyphen
    qsizetype First = 0;    ///< letters and digits before its first blank or hyphen
    qsizetype Longest = 0;  ///< letters and digits that may follow each other at its beginning
    qsizetype Shortest = 0; ///< as a whole

    explicit CodeShape(QStringView text, std::vector<QStringView> prefixes = {})
        : Text(text),
          Prefixes(std::move(prefixes)),
          Digit(text.front() == u'9'),
          First(std::find_if(text.begin(), text.end(), [](QChar c) { return c == u' ' || c == u'-'; }) - text.begin()),
          Longest(std::find(text.begin(), text.end(), u'-') - text.begin() - text.count(u' ')),
          Shortest(text.size() - text.count(u' ')) {
        HasDigit = text.first(First).contains(u'9');
    }
};

// The shapes of codes of a country.
class CodeShapes {
public:
    static constexpr qsizetype Most = 20;

    void Add(CodeShape shape) {
        if (std::ssize(shapes_) == Most)
            return;
        for (qsizetype length = shape.First; length <= shape.Longest && length < longestRun; ++length) {
            const quint32 bit = quint32(1) << shapes_.size();
            auto& ofLength = beginning_[static_cast<std::size_t>(length)];
            if (!shape.HasDigit)
                ofLength[OfLetters] |= bit;
            ofLength[shape.Digit ? FromDigit : FromLetter] |= bit;
        }
        shapes_.push_back(std::move(shape));
    }

    const CodeShape& At(qsizetype shape) const { return shapes_[static_cast<std::size_t>(shape)]; }
    const std::vector<CodeShape>& All() const { return shapes_; }

    // A bit for each shape that a run of so many letters and digits may begin.
    quint32 BegunBy(qsizetype length, bool digit, bool hasDigit) const {
        if (length >= longestRun)
            return 0;
        return beginning_[static_cast<std::size_t>(length)][digit ? FromDigit : hasDigit ? FromLetter : OfLetters];
    }

private:
    static constexpr qsizetype longestRun = 16;
    enum Kind : std::size_t { OfLetters, FromLetter, FromDigit };

    std::vector<CodeShape> shapes_;
    std::array<std::array<quint32, 3>, longestRun> beginning_{};
};

// Every place where the text has one of the shapes, in one pass over the text.
void FindShapes(QStringView text, const CodeShapes& shapes, std::vector<TextSpan>& spans) {
    std::array<qsizetype, CodeShapes::Most> done{}; // behind the last place of each
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool digit = IsCodeDigit(text[at]);
        if (!digit && !IsLatinLetter(text[at]))
            continue;
        qsizetype end = at + 1; // of the run of letters and digits
        bool hasDigit = digit;
        for (; end < text.size() && (IsCodeDigit(text[end]) || IsLatinLetter(text[end])); ++end)
            hasDigit = hasDigit || IsCodeDigit(text[end]);
        quint32 begun = shapes.BegunBy(end - at, digit, hasDigit);
        const bool begins = begun != 0 && MayBegin(text, at);
        for (; begun != 0; begun &= begun - 1) {
            const int number = std::countr_zero(begun);
            const CodeShape& shape = shapes.At(number);
            qsizetype& last = done[static_cast<std::size_t>(number)];
            if (at < last || text.size() - at < shape.Shortest || (!begins && !MayFollow(text, at, shape.Prefixes)))
                continue;
            const qsizetype stop = MatchShape(text, at, shape.Text);
            if (stop >= 0 && MayEnd(text, stop)) {
                spans.push_back({at, stop});
                last = stop;
            }
        }
        at = end - 1;
    }
}

CodeShapes ShapesIn(const AddressCountry& country) {
    const auto prefixes = country.CodePrefixes.split(u'|', Qt::SkipEmptyParts);
    CodeShapes shapes;
    for (const QStringView shape : country.Codes.split(u'|', Qt::SkipEmptyParts))
        shapes.Add(CodeShape(shape, std::vector<QStringView>(prefixes.begin(), prefixes.end())));
    return shapes;
}

const CodeShapes& ShapesOf(const AddressCountry& country) {
    static const std::vector<CodeShapes> tables = [] {
        std::vector<CodeShapes> all;
        for (const AddressCountry& one : addressCountries)
            all.push_back(ShapesIn(one));
        return all;
    }();
    return tables[static_cast<std::size_t>(&country - std::begin(addressCountries))];
}

// Those that can be told without knowing the country.
const CodeShapes& UnmistakableShapes() {
    static const CodeShapes shapes = [] {
        CodeShapes all;
        for (const QStringView region : {u"CA", u"GB", u"NL", u"PL"})
            for (const CodeShape& shape : ShapesOf(*AddressCountryOf(region)).All())
                all.Add(shape);
        all.Add(CodeShape(u"9999-999"));
        all.Add(CodeShape(u"99999-999"));
        all.Add(CodeShape(u"999-9999")); // Japan, told from half a phone number by its mark
        return all;
    }();
    return shapes;
}

} // namespace

std::vector<TextSpan> PostalCodesIn(QStringView text, QStringView region) {
    std::vector<TextSpan> spans;
    if (std::none_of(text.begin(), text.end(), IsCodeDigit))
        return spans;
    if (const AddressCountry* const country = AddressCountryOf(region))
        FindShapes(text, ShapesOf(*country), spans);
    if (region.isEmpty()) {
        FindShapes(text, UnmistakableShapes(), spans);
        std::erase_if(spans, [text](const TextSpan& s) {
            return s.End - s.Begin == 8 && text[s.Begin + 3] == u'-' && (s.Begin == 0 || text[s.Begin - 1] != u'〒');
        });
    }
    if (spans.size() < 2)
        return spans;
    // Two shapes may fit at one place: the longer one holds.
    std::sort(spans.begin(), spans.end(), [](const TextSpan& a, const TextSpan& b) {
        return a.Begin != b.Begin ? a.Begin < b.Begin : a.End > b.End;
    });
    qsizetype done = -1;
    std::erase_if(spans, [&done](const TextSpan& s) {
        if (s.Begin < done)
            return true;
        done = s.End;
        return false;
    });
    return spans;
}

bool LooksLikeAddress(QStringView text, QStringView region) {
    return LooksLikeAddress(text, region, HasStreetWord(text), PostalCodesIn(text, region));
}

bool LooksLikeAddress(QStringView text, QStringView region, bool hasStreetWord, const std::vector<TextSpan>& codes) {
    constexpr qsizetype longest = 250;
    if (text.size() < 6 || text.size() > longest)
        return false;
    if (hasStreetWord && HasDigit(text))
        return true;
    if (codes.empty())
        return false;
    // A code alone may be any number; a place stands beside it.
    const auto named = [text](qsizetype at) {
        while (at < text.size() && (text[at].isSpace() || text[at] == u',' || text[at] == u'-' || text[at] == u')'))
            ++at;
        return at < text.size() && (text[at].isUpper() || (text[at].isLetter() && !text[at].isLower()));
    };
    // "Coimbatore - 641022", "חיפה 3392335": the place stands before a code that is no year.
    const AddressCountry* const country = AddressCountryOf(region);
    const bool cityFirst = country && country->Order == AddressOrder::CityCode && text.size() <= 60;
    const auto follows = [text](const TextSpan& code) {
        QStringView place = text.first(code.Begin);
        while (!place.isEmpty() && (place.back().isSpace() || QStringView(u"-\u2013,").contains(place.back())))
            place.chop(1);
        const qsizetype word = place.lastIndexOf(u' ') + 1;
        return place.size() - word >= 3 && (!HasDigit(place) || !place[word].isUpper()) && place[word].isLetter() &&
               !place[word].isLower() && code.Begin > place.size() && HintsOfLabel(place) == 0 &&
               HintsOfLabel(place.sliced(word)) == 0;
    };
    for (const TextSpan& code : codes) {
        const bool letters = text.sliced(code.Begin, code.End - code.Begin).contains(u' ') ||
                             text.sliced(code.Begin, code.End - code.Begin).contains(u'-');
        // "D-10115 Berlin": a hyphen stands before a code behind the letters of its country alone.
        const bool prefixed = code.Begin > 1 && code.Begin <= 4 && text[code.Begin - 1] == u'-';
        const bool start = code.Begin == 0 || prefixed || text.first(code.Begin).endsWith(u'\n') ||
                           text.first(code.Begin).trimmed().endsWith(u',') || text[code.Begin - 1] == u'〒';
        const bool state = StateAtEnd(region, text.first(code.Begin).trimmed()) > 0;
        // "1925, Museum": a year and what happened.
        const bool year = code.End - code.Begin == 4 && code.End < text.size() && text[code.End] == u',' &&
                          (text[code.Begin] == u'1' || text[code.Begin] == u'2');
        if (year)
            continue;
        if (named(code.End) && (start || letters || HasDigit(text.first(code.Begin))))
            return true;
        if (cityFirst && code.End - code.Begin >= 5 && follows(code))
            return true;
        // "189, 2nd Cross, Indiranagar, Bengaluru - 560038"
        const qsizetype comma = text.first(code.Begin).lastIndexOf(u',');
        if (region == u"IN" && code.End == text.size() && code.End - code.Begin >= 6 && comma > 0 &&
            !HasDigit(text.sliced(comma, code.Begin - comma)))
            return true;
        if (state || (letters && code.Begin > 3 && code.End == text.size()))
            return true;
    }
    return false;
}

bool IsPlaceInStreet(QStringView text) {
    constexpr std::array<QStringView, 16> words{
        u"btwn ",     u"between ", u"bet ",         u"bet. ",   u"at ",      u"near ", u"off ",   u"corner of ",
        u"opposite ", u"opp. ",    u"across from ", u"behind ", u"next to ", u"ecke ", u"entre ", u"angle "};
    if (text.isEmpty())
        return false;
    const QChar first = text.front().toCaseFolded();
    return std::any_of(words.begin(), words.end(), [text, first](QStringView word) {
        return word.front() == first && text.startsWith(word, Qt::CaseInsensitive);
    });
}

bool EndsInHouseNumber(QStringView text) {
    const qsizetype blank = text.lastIndexOf(u' ');
    const QStringView number = text.sliced(blank + 1);
    return blank > 2 && text.front().isUpper() && number.size() <= 9 && !number.isEmpty() && number.front().isDigit() &&
           !HasDigit(text.first(blank)) && AreNames(text.first(blank)) &&
           std::count_if(number.begin(), number.end(), [](QChar c) { return c.isLetter(); }) <= 1;
}

QString RegionByState(QStringView text) {
    const qsizetype comma = std::max(text.lastIndexOf(u','), text.lastIndexOf(u'\n'));
    const QStringView state = comma < 0 ? QStringView() : text.sliced(comma + 1).trimmed();
    if (state.size() != 2 || !state[0].isUpper() || !state[1].isUpper() || text.count(u',') + text.count(u'\n') < 2)
        return {};
    for (const QStringView region : {u"US", u"CA"})
        if (IsStateOf(region, state))
            return region.toString();
    return {};
}

} // namespace Brindle
