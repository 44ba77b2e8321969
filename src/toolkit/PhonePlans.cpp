#include "toolkit/PhonePlans.h"

#include "toolkit/PhonePlanTable.h"

#include <QString>

#include <algorithm>
#include <array>
#include <iterator>

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

const std::array<Lengths, std::size(phonePlans)>& PossibleLengths() {
    static const auto all = [] {
        std::array<Lengths, std::size(phonePlans)> lengths{};
        for (std::size_t i = 0; i < lengths.size(); ++i)
            EachEntry(phonePlans[i],
                      [&](QStringView, QStringView, QStringView text) { lengths[i] |= ReadLengths(text); });
        return lengths;
    }();
    return all;
}

Lengths LengthsOf(const PhonePlan& plan) {
    return PossibleLengths()[static_cast<std::size_t>(&plan - phonePlans)];
}

} // namespace

const PhonePlan* PlanOfRegion(QStringView region) {
    const auto plan = std::lower_bound(std::begin(phonePlans), std::end(phonePlans), region,
                                       [](const PhonePlan& p, QStringView r) { return p.Region < r; });
    return plan != std::end(phonePlans) && plan->Region == region ? plan : nullptr;
}

const PhonePlan* PlanOfCode(int code, QStringView national) {
    if (code == 7)
        return PlanOfRegion(national.startsWith(u'7') || national.startsWith(u'6') ? u"KZ" : u"RU");
    if (code == 1) {
        const PhonePlan* const us = PlanOfRegion(u"US");
        if (national.size() != 10 || IsInUse(*us, national))
            return us;
        for (const PhonePlan& plan : phonePlans)
            if (plan.Code == 1 && IsInUse(plan, national))
                return &plan;
        return us;
    }
    const auto plan = std::find_if(std::begin(phonePlans), std::end(phonePlans),
                                   [code](const PhonePlan& p) { return p.Code == code; });
    return plan != std::end(phonePlans) ? plan : nullptr;
}

bool IsPossibleLength(const PhonePlan& plan, qsizetype length) {
    return length > 0 && length < 20 && (LengthsOf(plan) >> length & 1) != 0;
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
    bool inUse = false;
    EachEntry(plan, [&](QStringView heads, QStringView tail, QStringView lengths) {
        if (inUse || (ReadLengths(lengths) >> national.size() & 1) == 0)
            return;
        while (!inUse && !heads.isEmpty()) {
            const QStringView head = TakeUpTo(heads, u',');
            const qsizetype at = Fits(head, national);
            inUse = at >= 0 && Fits(tail, national.sliced(at)) >= 0;
        }
    });
    return inUse;
}

bool IsLikeOne(const PhonePlan& plan, QStringView national) {
    if (national.isEmpty() || !IsPossibleLength(plan, national.size()))
        return false;
    bool like = false;
    EachEntry(plan, [&](QStringView heads, QStringView, QStringView lengths) {
        if (like || (ReadLengths(lengths) >> national.size() & 1) == 0)
            return;
        while (!like && !heads.isEmpty()) {
            const QStringView head = TakeUpTo(heads, u',');
            const qsizetype first = head.startsWith(u'[') ? head.indexOf(u']') + 1 : 1;
            like = Fits(head.first(first), national) >= 0;
        }
    });
    return like;
}

std::pair<const PhonePlan*, const PhonePlan*> AllPlans() {
    return {std::begin(phonePlans), std::end(phonePlans)};
}

} // namespace Brindle
