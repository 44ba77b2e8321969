#include "toolkit/PhonePlans.h"

#include "toolkit/PhonePlanTable.h"

#include <QString>

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

namespace Brindle {

namespace {

// A cut from the front of a view up to a separator; what is behind it stays.
QStringView TakeUpTo(QStringView& rest, QChar separator) {
    const qsizetype at = rest.indexOf(separator);
    const QStringView part = at < 0 ? rest : rest.first(at);
    rest = at < 0 ? QStringView() : rest.sliced(at + 1);
    return part;
}

// How many digits of `digits` the prefix covers; -1 when they do not fit.
qsizetype Fits(QStringView prefix, QStringView digits) {
    qsizetype at = 0;
    for (qsizetype i = 0; i < prefix.size(); ++i, ++at) {
        if (at >= digits.size())
            return -1;
        const QChar digit = digits[at];
        if (prefix[i] != u'[') {
            if (prefix[i] != digit)
                return -1;
            continue;
        }
        bool within = false;
        for (++i; prefix[i] != u']'; ++i) {
            const bool range = prefix[i + 1] == u'-';
            const QChar last = range ? prefix[i + 2] : prefix[i];
            within = within || (digit >= prefix[i] && digit <= last);
            i += range ? 2 : 0;
        }
        if (!within)
            return -1;
    }
    return at;
}

// The digit, or the choice of digits, that a prefix begins with.
QStringView FirstDigitOf(QStringView prefix) {
    return prefix.first(prefix.startsWith(u'[') ? prefix.indexOf(u']') + 1 : 1);
}

using Lengths = quint32; // a bit for each

Lengths ReadLengths(QStringView text) {
    Lengths lengths = 0;
    while (!text.isEmpty()) {
        QStringView range = TakeUpTo(text, u',');
        const int first = TakeUpTo(range, u'-').toInt();
        const int last = range.isEmpty() ? first : range.toInt();
        for (int length = first; length <= last; ++length)
            lengths |= Lengths(1) << length;
    }
    return lengths;
}

template <typename Visit>
void EachEntry(const PhonePlan& plan, Visit visit) {
    for (QStringView rest = plan.Numbers; !rest.isEmpty();) {
        QStringView entry = TakeUpTo(rest, u' ');
        if (entry.isEmpty())
            continue;
        QStringView prefixes = TakeUpTo(entry, u':');
        const QStringView heads = TakeUpTo(prefixes, u'+');
        visit(heads, prefixes, entry);
    }
}

using Digits = quint16; // a bit for each
constexpr Digits anyDigit = 0x3FF;

// Takes what a prefix has for its first place: the digit, or one of those in brackets.
Digits TakeDigits(QStringView& prefix) {
    const auto bit = [](QChar digit) { return 1U << (digit.unicode() - u'0'); };
    const QStringView whole = prefix;
    unsigned digits = 0;
    qsizetype at = 0;
    if (whole.front() != u'[') {
        digits = bit(whole.front());
    } else {
        for (++at; whole[at] != u']'; ++at) {
            const QChar first = whole[at];
            if (whole[at + 1] == u'-')
                at += 2;
            for (QChar digit = first; digit <= whole[at]; digit = QChar(digit.unicode() + 1))
                digits |= bit(digit);
        }
    }
    prefix = whole.sliced(at + 1);
    return static_cast<Digits>(digits);
}

// A plan's entries, taken apart.
struct Entry {
    QStringView Head;
    QStringView Tail;
    Lengths Sizes = 0;
    Digits First = anyDigit; // that may stand at the first place
    Digits Second = anyDigit;
    Digits Third = anyDigit;

    Entry(QStringView head, QStringView tail, Lengths sizes) : Head(head), Tail(tail), Sizes(sizes) {
        const auto next = [&head, &tail] {
            return !head.isEmpty() ? TakeDigits(head) : !tail.isEmpty() ? TakeDigits(tail) : anyDigit;
        };
        First = next();
        Second = next();
        Third = next();
    }
};
struct ReadPlan {
    std::array<std::vector<Entry>, 10> Entries; // by the first digit that they may have
    std::array<std::vector<Entry>, 10> Unassigned;
    Lengths Sizes = 0; // of all
};

std::size_t FirstDigit(QStringView national) {
    return static_cast<std::size_t>(national.front().unicode() - u'0') % 10;
}

bool AnyCovers(const std::vector<Entry>& entries, QStringView national) {
    const auto bitOf = [national](qsizetype place) -> unsigned {
        return place < national.size() ? 1U << (national[place].unicode() - u'0') : anyDigit;
    };
    const Lengths size = Lengths(1) << national.size();
    const unsigned second = bitOf(1);
    const unsigned third = bitOf(2);
    return std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
        if ((entry.Sizes & size) == 0 || (entry.Second & second) == 0 || (entry.Third & third) == 0)
            return false;
        const qsizetype at = Fits(entry.Head, national);
        return at >= 0 && Fits(entry.Tail, national.sliced(at)) >= 0;
    });
}

const ReadPlan& Read(const PhonePlan& plan) {
    static const auto all = [] {
        std::array<ReadPlan, std::size(phonePlans)> plans;
        for (std::size_t i = 0; i < plans.size(); ++i)
            EachEntry(phonePlans[i], [&](QStringView heads, QStringView tails, QStringView text) {
                const Lengths sizes = ReadLengths(text);
                const bool unassigned = heads.startsWith(u'!');
                if (unassigned)
                    heads = heads.sliced(1);
                else
                    plans[i].Sizes |= sizes;
                auto& entries = unassigned ? plans[i].Unassigned : plans[i].Entries;
                while (!heads.isEmpty()) {
                    const QStringView head = TakeUpTo(heads, u',');
                    QStringView rest = tails;
                    do {
                        const Entry entry{head, TakeUpTo(rest, u','), sizes};
                        for (std::size_t digit = 0; digit < entries.size(); ++digit)
                            if ((entry.First >> digit & 1) != 0)
                                entries[digit].push_back(entry);
                    } while (!rest.isEmpty());
                }
            });
        return plans;
    }();
    return all[static_cast<std::size_t>(&plan - phonePlans)];
}

} // namespace

const PhonePlan* PlanOfRegion(QStringView region) {
    // By its two letters: each text of a page is looked through with the plan of the page's region.
    constexpr std::size_t none = std::size_t{26} * 26;
    const auto slotOf = [](QStringView name) -> std::size_t {
        const auto letter = [name](qsizetype at) { return static_cast<std::size_t>(name[at].unicode() - u'A'); };
        return name.size() == 2 && letter(0) < 26 && letter(1) < 26 ? letter(0) * 26 + letter(1) : none;
    };
    static const auto plans = [slotOf] {
        std::array<const PhonePlan*, none + 1> all{};
        for (const PhonePlan& plan : phonePlans)
            all[slotOf(plan.Region)] = &plan;
        all[none] = nullptr;
        return all;
    }();
    return plans[slotOf(region)];
}

namespace {

bool IsAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

std::size_t AreaNumber(QStringView area) {
    const auto digit = [area](qsizetype at) { return static_cast<std::size_t>(area[at].unicode() - u'0') % 10; };
    return digit(0) * 100 + digit(1) * 10 + digit(2);
}

// The countries of the North American plan that have an area code of their own or among what all share.
const std::vector<const PhonePlan*>& PlansOfArea(QStringView area) {
    static const auto all = [] {
        std::array<std::vector<const PhonePlan*>, 1000> plans;
        for (const PhonePlan& plan : phonePlans) {
            if (plan.Code != 1)
                continue;
            if (plan.Numbers.size() > 400) { // of a country with many
                for (auto& ofArea : plans)
                    ofArea.push_back(&plan);
                continue;
            }
            const QStringView own = plan.Numbers.first(std::max<qsizetype>(0, plan.Numbers.indexOf(u'+')));
            for (qsizetype at = 0; at + 3 <= own.size(); ++at)
                if (const QStringView three = own.sliced(at, 3); std::all_of(three.begin(), three.end(), IsAsciiDigit))
                    if (auto& ofArea = plans[AreaNumber(three)]; ofArea.empty() || ofArea.back() != &plan)
                        ofArea.push_back(&plan);
        }
        return plans;
    }();
    return all[AreaNumber(area)];
}

// The plan of each country code; of several that share one the first by region.
const PhonePlan* FirstPlanOf(int code) {
    static const auto all = [] {
        std::array<const PhonePlan*, 1000> plans{};
        for (auto plan = std::rbegin(phonePlans); plan != std::rend(phonePlans); ++plan)
            plans[static_cast<std::size_t>(plan->Code) % plans.size()] = &*plan;
        return plans;
    }();
    return code > 0 && code < static_cast<int>(all.size()) ? all[static_cast<std::size_t>(code)] : nullptr;
}

} // namespace

const PhonePlan* PlanOfCode(int code, QStringView national) {
    if (code == 7)
        return PlanOfRegion(national.startsWith(u'7') || national.startsWith(u'6') ? u"KZ" : u"RU");
    if (code == 1) {
        const PhonePlan* const us = PlanOfRegion(u"US");
        if (national.size() != 10 || IsInUse(*us, national))
            return us;
        const std::vector<const PhonePlan*>& plans = PlansOfArea(national.first(3));
        const auto own = std::find_if(plans.begin(), plans.end(),
                                      [national](const PhonePlan* plan) { return IsInUse(*plan, national); });
        return own != plans.end() ? *own : us;
    }
    return FirstPlanOf(code);
}

qsizetype AbroadPrefixOf(const PhonePlan& plan, QStringView digits) {
    const qsizetype size = Fits(plan.Abroad, digits);
    return size > 0 && size < digits.size() && digits[size] != u'0' ? size : 0; // no country code begins with 0
}

bool IsPossibleLength(const PhonePlan& plan, qsizetype length) {
    return length > 0 && length < 20 && (Read(plan).Sizes >> length & 1) != 0;
}

qsizetype LongestOf(const PhonePlan& plan) {
    qsizetype length = 19;
    while (length > 0 && !IsPossibleLength(plan, length))
        --length;
    return length;
}

bool IsInUse(const PhonePlan& plan, QStringView national) {
    if (!IsPossibleLength(plan, national.size()))
        return false;
    const ReadPlan& read = Read(plan);
    const std::size_t first = FirstDigit(national);
    return AnyCovers(read.Entries[first], national) && !AnyCovers(read.Unassigned[first], national);
}

bool IsExchangeOfIsland(const PhonePlan& plan, QStringView digits) {
    if (plan.Code != 1 || plan.Numbers[3] != u'+')
        return false;
    QStringView exchanges = plan.Numbers.sliced(4);
    for (exchanges = TakeUpTo(exchanges, u':'); !exchanges.isEmpty();)
        if (Fits(FirstDigitOf(TakeUpTo(exchanges, u',')), digits) >= 0)
            return true;
    return false;
}

bool IsLikeOne(const PhonePlan& plan, QStringView national) {
    if (national.isEmpty() || !IsPossibleLength(plan, national.size()))
        return false;
    const std::vector<Entry>& entries = Read(plan).Entries[FirstDigit(national)];
    return std::any_of(entries.begin(), entries.end(),
                       [national](const Entry& entry) { return (entry.Sizes >> national.size() & 1) != 0; });
}

std::pair<const PhonePlan*, const PhonePlan*> AllPlans() {
    return {std::begin(phonePlans), std::end(phonePlans)};
}

} // namespace Brindle
