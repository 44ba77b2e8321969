#include "toolkit/Phone.h"

#include "toolkit/PhonePlans.h"
#include "toolkit/PhoneText.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

// Countries whose plan is not in the table: their numbers are taken as they stand when the length is right for E.164.
struct OtherCode {
    int Code;
    QStringView Region;
};
constexpr OtherCode otherCodes[] = {
    {93, u"AF"},  {95, u"MM"},  {98, u"IR"},  {211, u"SS"}, {218, u"LY"}, {220, u"GM"}, {221, u"SN"}, {222, u"MR"},
    {223, u"ML"}, {224, u"GN"}, {225, u"CI"}, {226, u"BF"}, {227, u"NE"}, {228, u"TG"}, {229, u"BJ"}, {230, u"MU"},
    {231, u"LR"}, {232, u"SL"}, {235, u"TD"}, {236, u"CF"}, {237, u"CM"}, {238, u"CV"}, {239, u"ST"}, {240, u"GQ"},
    {241, u"GA"}, {242, u"CG"}, {243, u"CD"}, {244, u"AO"}, {245, u"GW"}, {248, u"SC"}, {249, u"SD"}, {250, u"RW"},
    {251, u"ET"}, {252, u"SO"}, {253, u"DJ"}, {255, u"TZ"}, {256, u"UG"}, {257, u"BI"}, {258, u"MZ"}, {260, u"ZM"},
    {261, u"MG"}, {262, u"RE"}, {263, u"ZW"}, {264, u"NA"}, {265, u"MW"}, {266, u"LS"}, {267, u"BW"}, {268, u"SZ"},
    {269, u"KM"}, {291, u"ER"}, {297, u"AW"}, {298, u"FO"}, {299, u"GL"}, {350, u"GI"}, {376, u"AD"}, {377, u"MC"},
    {378, u"SM"}, {383, u"XK"}, {423, u"LI"}, {501, u"BZ"}, {503, u"SV"}, {504, u"HN"}, {505, u"NI"}, {509, u"HT"},
    {590, u"GP"}, {592, u"GY"}, {594, u"GF"}, {596, u"MQ"}, {597, u"SR"}, {599, u"CW"}, {670, u"TL"}, {673, u"BN"},
    {674, u"NR"}, {675, u"PG"}, {676, u"TO"}, {677, u"SB"}, {678, u"VU"}, {679, u"FJ"}, {680, u"PW"}, {682, u"CK"},
    {685, u"WS"}, {686, u"KI"}, {687, u"NC"}, {688, u"TV"}, {689, u"PF"}, {691, u"FM"}, {692, u"MH"}, {850, u"KP"},
    {853, u"MO"}, {855, u"KH"}, {856, u"LA"}, {880, u"BD"}, {960, u"MV"}, {963, u"SY"}, {964, u"IQ"}, {967, u"YE"},
    {970, u"PS"}, {975, u"BT"}, {976, u"MN"}, {992, u"TJ"}, {993, u"TM"}, {996, u"KG"}, {998, u"UZ"},
};

const OtherCode* FindOther(int code) {
    const auto other = std::find_if(std::begin(otherCodes), std::end(otherCodes),
                                    [code](const OtherCode& o) { return o.Code == code; });
    return other != std::end(otherCodes) ? other : nullptr;
}

// Digits in a row, without an allocation.
class DigitRow {
public:
    void Add(int digit) {
        if (size_ < std::ssize(digits_))
            digits_[static_cast<size_t>(size_++)] = QChar(static_cast<char16_t>(u'0' + digit));
    }
    void Add(QStringView digits) {
        for (const QChar c : digits)
            Add(c.unicode() - u'0');
    }
    qsizetype Size() const { return size_; }
    QStringView View() const { return {digits_.data(), size_}; }

private:
    std::array<QChar, 40> digits_;
    qsizetype size_ = 0;
};

// The number that the text writes: its digits, and what it says of them.
struct Written {
    bool Plus = false;
    DigitRow Digits;
    QString Extension;
};

// A text of the tables, which outlive all numbers: it needs no copy.
QString Fixed(QStringView text) {
    return QString::fromRawData(text.data(), text.size());
}

constexpr QStringView extensionWords[] = {
    u"extension", u"extn", u"ext", u"x",   u"durchwahl", u"dw",   u"interno", u"int",   u"poste", u"anexo",
    u"ramal",     u"wewn", u"wew", u"доб", u"вн",        u"内線", u"toestel", u"lokal", u"#",
};

// The extension that stands at the beginning of `rest`; its end in `end`, -1 when there is none.
QString ExtensionAt(QStringView rest, qsizetype& end) {
    end = -1;
    qsizetype at = 0;
    while (at < rest.size() && (IsPhoneBlank(rest[at]) || rest[at] == u',' || rest[at] == u';' || rest[at] == u'('))
        ++at;
    // Most of what stands behind digits is no word.
    if (at == rest.size() || !(rest[at].isLetter() || rest[at] == u'#'))
        return {};
    for (const QStringView word : extensionWords) {
        if (!rest.sliced(at).startsWith(word, Qt::CaseInsensitive))
            continue;
        qsizetype digit = at + word.size();
        while (digit < rest.size() && (IsPhoneBlank(rest[digit]) || QStringView(u".:=-").contains(rest[digit])))
            ++digit;
        QString extension;
        for (; digit < rest.size() && DigitOf(rest[digit]) >= 0 && extension.size() < 8; ++digit)
            extension += QChar(u'0' + DigitOf(rest[digit]));
        if (extension.isEmpty() || extension.size() > 7 || (digit < rest.size() && rest[digit].isLetterOrNumber()))
            continue;
        end = digit < rest.size() && rest[digit] == u')' ? digit + 1 : digit;
        return extension;
    }
    return {};
}

// Letters as they stand on the keys of a phone, E.161. -1 for other characters.
int KeyOf(QChar c) {
    constexpr char keys[] = "22233344455566677778889999";
    const char16_t u = c.unicode() | 0x20;
    return u >= u'a' && u <= u'z' ? keys[u - u'a'] - '0' : -1;
}

// Letters from `at` on are part of the number when nothing but letters, digits and hyphens follow.
bool ReadVanity(QStringView rest, DigitRow& digits) {
    int letters = 0;
    bool mask = true; // "849-XX-XX" hides digits
    DigitRow keys;
    for (const QChar c : rest) {
        if (const int key = KeyOf(c); key >= 0) {
            keys.Add(key);
            mask = mask && (c == u'X' || c == u'x');
            ++letters;
        } else if (const int digit = DigitOf(c); digit >= 0)
            keys.Add(digit);
        else if (!IsPhoneBlank(c) && !IsPhoneDash(c) && c != u'.')
            return false;
    }
    if (letters < 3 || mask || keys.Size() > 12)
        return false;
    digits.Add(keys.View());
    return true;
}

std::optional<Written> ReadWriting(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && DigitOf(text[at]) < 0 && !IsPlus(text[at]))
        ++at;
    const QStringView before = text.first(at);
    if (std::any_of(before.begin(), before.end(), [](QChar c) { return c.isLetter(); }) && !EndsWithPhoneLabel(before))
        return {};
    Written written;
    for (; at < text.size() && IsPlus(text[at]); ++at)
        written.Plus = true;
    qsizetype read = at; // behind what belongs to the number
    for (; at < text.size(); ++at) {
        const QChar c = text[at];
        if (const int digit = DigitOf(c); digit >= 0) {
            read = at + 1;
            written.Digits.Add(digit);
            if (written.Digits.Size() > 22)
                return {};
            continue;
        }
        qsizetype end = -1;
        if (written.Digits.Size() >= 3)
            written.Extension = ExtensionAt(text.sliced(at), end);
        if (end >= 0) {
            read = at + end;
            break;
        }
        if (written.Digits.Size() >= 3 && KeyOf(c) >= 0) {
            if (ReadVanity(text.sliced(at), written.Digits))
                return written;
            break;
        }
        if (!IsPhoneSeparator(c))
            break;
    }
    if (written.Digits.Size() == 0)
        return {};
    // What follows may be a remark in brackets; anything else makes a running text of it.
    const QStringView behind = text.sliced(read);
    for (const QChar c : behind)
        if (c == u'(' || c == u'[')
            break;
        else if (c.isLetterOrNumber())
            return {};
    return written;
}

// Takes the country code from the front.
bool WithoutCode(QStringView& digits, int code) {
    const qsizetype size = code < 10 ? 1 : code < 100 ? 2 : 3;
    int begins = 0;
    for (qsizetype i = 0; i < size && i < digits.size(); ++i)
        begins = begins * 10 + (digits[i].unicode() - u'0');
    if (digits.size() <= size || begins != code)
        return false;
    digits = digits.sliced(size);
    return true;
}

bool WithoutPrefix(QStringView& digits, QStringView prefix) {
    if (prefix.isEmpty() || digits.size() <= prefix.size() || !digits.startsWith(prefix))
        return false;
    digits = digits.sliced(prefix.size());
    return true;
}

// Argentina dials a mobile as area code, 15, number; from abroad it is 9, area code, number.
QString ArgentineMobile(const PhonePlan& plan, QStringView national) {
    if (national.size() == 12)
        for (const qsizetype area : {2, 3, 4})
            if (national.sliced(area, 2) == u"15") {
                const QString mobile = u'9' + national.first(area) + national.sliced(area + 2);
                if (IsInUse(plan, mobile))
                    return mobile;
            }
    return {};
}

// An island with one area code dials seven digits.
QString WithIslandCode(const PhonePlan& plan, QStringView digits) {
    WithoutPrefix(digits, plan.Trunk);
    if (digits.size() != 7 || !IsExchangeOfIsland(plan, digits))
        return {};
    return plan.Numbers.first(3) + digits;
}

// What people dial before a national number inside the country; the first that fits is the one that counts.
std::span<const QStringView> TrunkPrefixes(const PhonePlan& plan) {
    static constexpr QStringView belarus[] = {u"80", u"8", u"0"};
    static constexpr QStringView lithuania[] = {u"8", u"0"};
    static constexpr QStringView mexico[] = {u"044", u"045", u"01", u"02", u"1"};
    // with the company that carries the call
    static constexpr QStringView colombia[] = {u"0444", u"0414", u"0456", u"05", u"07", u"09", u"0"};
    switch (plan.Code) {
    case 375:
        return belarus;
    case 370:
        return lithuania;
    case 52:
        return mexico;
    case 57:
        return colombia;
    default:
        return {&plan.Trunk, 1};
    }
}

// Whether the number keeps what looks like a trunk prefix: it is one of the country with it and none without it.
bool KeepsPrefix(const PhonePlan& plan, QStringView digits, QStringView stripped) {
    // In Belarus the 8 begins the numbers of services, too.
    if (plan.Region == u"BY")
        return IsPossibleLength(plan, digits.size()) && digits.startsWith(u'8') && !stripped.startsWith(u'8') &&
               stripped.size() != 9;
    return IsInUse(plan, digits) || (IsLikeOne(plan, digits) && !IsLikeOne(plan, stripped));
}

// The national number without what is only dialled inside the country; `made` holds it where it is no part of the
// digits.
QStringView NationalOf(const PhonePlan& plan, QStringView digits, QString& made) {
    if (plan.Code == 1)
        if (made = WithIslandCode(plan, digits); !made.isEmpty())
            return made;
    for (const QStringView prefix : TrunkPrefixes(plan)) {
        QStringView stripped = digits;
        if (!WithoutPrefix(stripped, prefix))
            continue;
        if (plan.Region == u"AR")
            if (made = ArgentineMobile(plan, stripped); !made.isEmpty())
                return made;
        // Brazil: between the zero and the area code stand two digits of the company that carries the call.
        if (plan.Region == u"BR" && stripped.size() >= 12 && IsInUse(plan, stripped.sliced(2)))
            return stripped.sliced(2);
        if (IsInUse(plan, stripped))
            return stripped;
        // What is too short without it keeps it.
        const bool fits = IsPossibleLength(plan, stripped.size()) || stripped.size() > LongestOf(plan);
        return fits && !KeepsPrefix(plan, digits, stripped) ? stripped : digits;
    }
    if (plan.Region == u"AR")
        if (made = ArgentineMobile(plan, digits); !made.isEmpty())
            return made;
    return digits;
}

std::optional<PhoneNumber> Judge(const PhonePlan& plan, QStringView national) {
    if (!IsPossibleLength(plan, national.size()))
        return {};
    PhoneNumber number;
    number.CountryCode = plan.Code;
    number.E164 = u'+' + QString::number(plan.Code) + national;
    const PhonePlan* const own = plan.Code == 1 || plan.Code == 7 ? PlanOfCode(plan.Code, national) : &plan;
    number.Region = Fixed(own->Region);
    number.Verdict = IsInUse(*own, national) ? PhoneVerdict::Valid : PhoneVerdict::Possible;
    return number;
}

// A number that begins with its country code.
std::optional<PhoneNumber> ReadInternational(QStringView digits) {
    QString made;
    for (qsizetype length = 1; length <= 3 && length < digits.size(); ++length) {
        const int code = digits.first(length).toInt();
        const QStringView rest = digits.sliced(length);
        if (const PhonePlan* const plan = PlanOfCode(code, rest))
            return Judge(*plan, NationalOf(*plan, rest, made));
        if (const OtherCode* const other = FindOther(code)) {
            // Numbers are this short on islands and in the smallest states alone.
            const bool small = (code >= 670 && code < 700) || code == 298 || code == 299 || code == 376 || code == 378;
            if (rest.size() < (small ? 5 : 7) || digits.size() > 15)
                return {};
            PhoneNumber number;
            number.CountryCode = code;
            number.E164 = u'+' + digits;
            number.Region = Fixed(other->Region);
            return number;
        }
    }
    return {};
}

std::optional<PhoneNumber> ReadDigits(const Written& written, QStringView region) {
    QStringView digits = written.Digits.View();
    QString made;
    QString madeBare;
    if (written.Plus) {
        WithoutPrefix(digits, u"00"); // "+0049" is seen
        return ReadInternational(digits);
    }
    const PhonePlan* const plan = PlanOfRegion(region);
    if (!plan)
        return WithoutPrefix(digits, u"00") ? ReadInternational(digits) : std::nullopt;
    if (const qsizetype abroad = AbroadPrefixOf(*plan, digits); abroad > 0)
        return ReadInternational(digits.sliced(abroad));
    // Where companies have prefixes of their own, the world's 00 stands before the country's own code all the same.
    if (QStringView own = digits; WithoutPrefix(own, u"00") && WithoutCode(own, plan->Code) && IsInUse(*plan, own))
        return Judge(*plan, own);
    if (plan->Code == 1 && digits.size() == 11 && digits.startsWith(u"11"))
        return {}; // no area code begins with a 1
    const QStringView national = NationalOf(*plan, digits, made);
    // The country code without its plus.
    QStringView stripped = digits;
    if (!IsInUse(*plan, national) && WithoutCode(stripped, plan->Code))
        if (const QStringView bare = NationalOf(*plan, stripped, madeBare);
            IsInUse(*plan, bare) || national.size() > LongestOf(*plan))
            return Judge(*plan, bare);
    return Judge(*plan, national);
}

} // namespace

std::optional<PhoneNumber> ReadPhone(QStringView text, QStringView region) {
    if (text.size() > 250)
        return {};
    const std::optional<Written> written = ReadWriting(text);
    if (!written)
        return {};
    std::optional<PhoneNumber> number = ReadDigits(*written, region);
    if (number)
        number->Extension = written->Extension;
    return number;
}

int CallingCodeOf(QStringView region) {
    if (const PhonePlan* const plan = PlanOfRegion(region))
        return plan->Code;
    for (const OtherCode& other : otherCodes)
        if (other.Region == region)
            return other.Code;
    return 0;
}

QString RegionOfCallingCode(int code) {
    if (code == 1 || code == 7)
        return {};
    if (const PhonePlan* const plan = PlanOfCode(code, {}))
        return plan->Region.toString();
    const OtherCode* const other = FindOther(code);
    return other ? other->Region.toString() : QString();
}

std::vector<QStringView> PhoneRegions() {
    std::vector<QStringView> regions;
    const auto [begin, end] = AllPlans();
    for (const PhonePlan* plan = begin; plan != end; ++plan)
        regions.push_back(plan->Region);
    return regions;
}

} // namespace Brindle
