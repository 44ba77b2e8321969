#include "toolkit/Phone.h"
#include "toolkit/PhonePlans.h"
#include "toolkit/PhoneText.h"

#include <algorithm>
#include <span>
#include <vector>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

// A run of digits within a candidate.
struct Group {
    qsizetype Begin;
    qsizetype End;
};

class Finder {
public:
    Finder(QStringView text, QStringView region) : text_(text), region_(region), plan_(PlanOfRegion(region)) {}

    std::vector<FoundPhone> Run() {
        for (qsizetype at = 0; at < text_.size();) {
            const QChar c = text_[at];
            if (DigitOf(c) < 0 && !(IsPlus(c) && at + 1 < text_.size())) {
                ++at;
                continue;
            }
            at = ReadSpan(at);
        }
        return std::move(found_);
    }

private:
    QStringView Cut(qsizetype begin, qsizetype end) const { return text_.sliced(begin, end - begin); }

    // Collects the digits from `begin` on that could be one number or several; returns where to go on.
    qsizetype ReadSpan(qsizetype begin) {
        groups_.clear();
        qsizetype at = begin;
        qsizetype end = begin;
        int digits = 0;
        if (IsPlus(text_[at]))
            while (at < text_.size() && (IsPlus(text_[at]) || IsPhoneBlank(text_[at]) || text_[at] == u'('))
                ++at;
        while (at < text_.size()) {
            if (DigitOf(text_[at]) >= 0) {
                const qsizetype from = at;
                while (at < text_.size() && DigitOf(text_[at]) >= 0)
                    ++at;
                groups_.push_back({from, at});
                digits += static_cast<int>(at - from);
                end = at;
                if (digits > 40)
                    break;
                continue;
            }
            const qsizetype gap = at;
            while (at < text_.size() && at - gap < 5 && IsPhoneSeparator(text_[at]) && text_[at] != u'\n')
                ++at;
            if (at == gap || at >= text_.size() || DigitOf(text_[at]) < 0)
                break;
            // A point in the middle between blanks parts what stands in a line.
            if (const QStringView between = Cut(gap, at);
                between.size() >= 3 && (between.contains(u'\u00B7') || between.contains(u'\u2022')))
                break;
            // A bracket behind enough digits begins the next number.
            if (digits >= 8 && Cut(gap, at).contains(u'('))
                break;
        }
        if (groups_.empty())
            return qMax(at, begin + 1);
        const qsizetype next = end;
        if (digits > 40)
            while (at < text_.size() && DigitOf(text_[at]) >= 0)
                ++at;
        Judge(begin, digits);
        return std::max({next, done_, digits > 40 ? at : next});
    }

    void Judge(qsizetype begin, int digits) {
        // "D02 X285 - (021) 555": what is a part of a word is none of the number behind it.
        if (begin > 0 && !IsPlus(text_[begin]) && IsGlued(text_[begin - 1])) {
            while (groups_.size() > 1 && Gap(0).size() < 3)
                groups_.erase(groups_.begin());
            if (groups_.size() < 2)
                return;
            groups_.erase(groups_.begin());
            begin = groups_.front().Begin;
            digits = 0;
            for (const Group& group : groups_)
                digits += static_cast<int>(group.End - group.Begin);
        }
        bool bracket = begin > 0 && text_[begin - 1] == u'(';
        const QStringView before = text_.first(bracket ? begin - 1 : begin);
        const Announced announced = WhatIsAnnounced(before, nullptr);
        labelled_ = announced == Announced::Phone;
        if ((announced == Announced::Other && !IsPlus(text_[begin])) || (digits < 5 && !labelled_ && !MayBeVanity()))
            return;
        if (TakeVanity(begin) || digits < 5)
            return;
        if (!labelled_ && !IsPlus(text_[begin]) && IsMeasure())
            return;
        while (!labelled_ && SkipDate())
            begin = groups_.empty() ? begin : groups_.front().Begin;
        if (groups_.empty() || (!labelled_ && !IsPlus(text_[begin]) && IsTimesOrYears()))
            return;
        TakeFrom(begin);
    }

    static bool IsGlued(QChar c) {
        return (c.isLetterOrNumber() && !IsPhoneIdeograph(c)) || QStringView(u"_=&%@#$€£¥₹№*<>").contains(c);
    }

    // What stands directly around the digits makes another quantity of them.
    bool IsMeasure() const {
        const qsizetype begin = groups_.front().Begin;
        const qsizetype end = groups_.back().End;
        if (begin > 1 && QStringView(u",:.").contains(text_[begin - 1]) && DigitOf(text_[begin - 2]) >= 0)
            return true;
        QStringView before = text_.first(begin);
        while (!before.isEmpty() && IsPhoneBlank(before.back()))
            before.chop(1);
        if (!before.isEmpty() && QStringView(u"$€£¥₹₽₺₩#№").contains(before.back()))
            return true;
        for (const QStringView money : {u"EUR", u"USD", u"CHF", u"PLN", u"CAD", u"Rs", u"kr"})
            if (!before.isEmpty() && before.back() == money.back() && before.endsWith(money))
                return true;
        QStringView behind = text_.sliced(end);
        if (behind.size() > 1 && (behind[0] == u',' || behind[0] == u':') && DigitOf(behind[1]) >= 0)
            return true;
        if (!behind.isEmpty() && (behind.front() == u'%' || behind.front() == u'°'))
            return true;
        if (!behind.isEmpty() && behind.front().isLetter() && !IsPhoneIdeograph(behind.front()) &&
            !behind.startsWith(u'x'))
            return true;
        while (!behind.isEmpty() && IsPhoneBlank(behind.front()))
            behind = behind.sliced(1);
        for (const QStringView unit : {u"€", u"£", u"EUR", u"zł", u"Kč", u"km", u"m²", u"kg", u"円", u"USD", u"CHF",
                                       u"元", u"₽", u"руб", u"Ft", u"%", u"reviews", u"Bewertungen", u"avis"})
            if (!behind.isEmpty() && behind.front() == unit.front() && behind.startsWith(unit))
                return true;
        return false;
    }

    int Value(std::size_t group) const {
        int value = 0;
        for (qsizetype at = groups_[group].Begin; at < groups_[group].End && value < 100000; ++at)
            value = value * 10 + DigitOf(text_[at]);
        return value;
    }
    qsizetype Size(std::size_t group) const { return groups_[group].End - groups_[group].Begin; }
    QStringView Gap(std::size_t group) const { return Cut(groups_[group].End, groups_[group + 1].Begin); }
    bool IsYear(std::size_t group) const { return Size(group) == 4 && Value(group) >= 1800 && Value(group) < 2100; }

    // Day, month and year at the front of the candidate are taken away.
    bool SkipDate() {
        if (groups_.size() < 3 || Gap(0) != Gap(1) || Gap(0).size() != 1 || !QStringView(u"./-").contains(Gap(0)[0]))
            return false;
        const bool yearLast = Size(0) <= 2 && Size(1) <= 2 && (IsYear(2) || (Size(2) == 2 && groups_.size() == 3));
        const bool yearFirst = IsYear(0) && Size(1) <= 2 && Size(2) <= 2;
        const int first = Value(yearLast ? 0 : 2);
        const int second = Value(1);
        if (!(yearLast || yearFirst) || first < 1 || second < 1 || qMax(first, second) > 31 || qMin(first, second) > 12)
            return false;
        groups_.erase(groups_.begin(), groups_.begin() + 3);
        return true;
    }

    bool IsTimesOrYears() const {
        const std::size_t count = groups_.size();
        if (count == 2 && IsYear(0) && IsYear(1))
            return true;
        // 9.00-18.30, 8-12 14-18
        bool small = count >= 2;
        bool dashed = false;
        for (std::size_t i = 0; i < count; ++i) {
            small = small && Size(i) <= 2 && (Value(i) <= 24 || (Value(i) < 60 && Value(i) % 5 == 0));
            if (i + 1 < count)
                dashed = dashed || std::any_of(Gap(i).begin(), Gap(i).end(), IsPhoneDash);
        }
        if (small && dashed && (count <= 4 || Gap(0) == u"."))
            return true;
        if (count == 4 && dashed && Size(0) <= 2 && Size(1) == 2 && Size(2) <= 2 && Size(3) == 2 && Value(0) <= 24 &&
            Value(1) < 60 && Value(1) % 5 == 0 && Value(2) <= 24 && Value(3) < 60 && Value(3) % 5 == 0)
            return true;
        // 1000 and 1400 as times without a point, 52.5200 as a place on the globe
        if (count == 2 && Size(0) == 4 && Size(1) == 4 && Value(0) <= 2400 && Value(1) <= 2400 && dashed)
            return true;
        return count == 2 && Gap(0) == u"." && Size(0) <= 3 && (Value(0) == 0 || DigitOf(text_[groups_[0].Begin]) != 0);
    }

    bool MayBeVanity() const {
        const qsizetype end = groups_.back().End;
        return Size(groups_.size() - 1) <= 4 && end + 1 < text_.size() &&
               (IsPhoneDash(text_[end]) || IsPhoneBlank(text_[end])) && text_[end + 1] >= u'A' &&
               text_[end + 1] <= u'Z';
    }

    // 1-800-FLOWERS: the word ends where the number has as many digits as it needs.
    bool TakeVanity(qsizetype begin) {
        if (!MayBeVanity() || !plan_)
            return false;
        qsizetype end = groups_.back().End;
        int letters = 0;
        while (end < text_.size() && end - begin < 24 &&
               ((text_[end] >= u'A' && text_[end] <= u'Z') || DigitOf(text_[end]) >= 0 || IsPhoneDash(text_[end]) ||
                (IsPhoneBlank(text_[end]) && end + 1 < text_.size() && text_[end + 1] >= u'A' &&
                 text_[end + 1] <= u'Z'))) {
            letters += text_[end].isLetter() ? 1 : 0;
            ++end;
        }
        if (letters < 3 || (end < text_.size() && text_[end].isLetterOrNumber()))
            return false;
        return Keep(begin, end, PhoneVerdict::Valid);
    }

    bool Keep(qsizetype begin, qsizetype end, PhoneVerdict least) {
        std::optional<PhoneNumber> number = ReadPhone(Cut(begin, end), region_);
        if (!number || (least == PhoneVerdict::Valid && number->Verdict != PhoneVerdict::Valid))
            return false;
        if (begin > 0 && text_[begin - 1] == u'(' && Cut(begin, end).contains(u')'))
            --begin;
        found_.push_back({begin, end, std::move(*number)});
        done_ = end;
        return true;
    }

    // Where an extension behind `end` ends.
    qsizetype WithExtension(qsizetype begin, qsizetype end) const {
        constexpr qsizetype reach = 24;
        qsizetype stop = end;
        for (; stop < text_.size() && stop - end < reach && text_[stop] != u'\n'; ++stop)
            if (const std::optional<PhoneNumber> whole =
                    stop > end && DigitOf(text_[stop]) >= 0 &&
                            (stop + 1 == text_.size() || !text_[stop + 1].isLetterOrNumber())
                        ? ReadPhone(Cut(begin, stop + 1), region_)
                        : std::nullopt;
                whole && !whole->Extension.isEmpty())
                return stop + 1;
            else if (stop > end && text_[stop] == u')')
                break;
        return end;
    }

    bool MayBeExtended(qsizetype end) const {
        const QStringView behind = text_.sliced(end, qMin<qsizetype>(4, text_.size() - end));
        return std::any_of(behind.begin(), behind.end(), [](QChar c) { return c.isLetter() || c == u'#'; });
    }

    // Without a label a number must look like one: as the country writes its trunk prefix, or in groups.
    bool LooksLikeOne(std::size_t first, std::size_t last, bool international) const {
        if (labelled_ || international)
            return true;
        if (!plan_)
            return false;
        const qsizetype begin = groups_[first].Begin;
        const bool alone = Cut(begin, groups_[last].End).size() + 2 >= text_.size();
        const bool bracket = begin > 0 && text_[begin - 1] == u'(';
        if (first == last)
            return alone || (Size(first) >= 8 && IsListed(begin, groups_[last].End)) ||
                   (!plan_->Trunk.isEmpty() && plan_->Trunk != u"1" && Size(first) >= 9 &&
                    Cut(begin, groups_[last].End).startsWith(plan_->Trunk)) ||
                   (plan_->Trunk.isEmpty() && plan_->Region == u"IT" && DigitOf(text_[begin]) == 0 && Size(first) >= 9);
        const bool trunk = (!plan_->Trunk.isEmpty() && DigitOf(text_[begin]) == plan_->Trunk[0].digitValue()) ||
                           (plan_->Region == u"IT" && (DigitOf(text_[begin]) == 0 || DigitOf(text_[begin]) == 3));
        if (alone || bracket || trunk)
            return true;
        if (plan_->Code == 1) // 416-555-0100
            return last - first == 2 && Size(first) == 3 && Size(first + 1) == 3 && Size(last) == 4;
        if (plan_->Trunk.isEmpty() || plan_->Region == u"FR") {
            qsizetype digits = 0;
            for (std::size_t i = first; i <= last; ++i) {
                digits += Size(i);
                if (Size(i) < 2 || (i < last && (Gap(i).contains(u'/') || Gap(i) == u".")))
                    return false;
            }
            return digits >= 8;
        }
        return false;
    }

    // Whether marks part it from the rest of its line on both sides: "12 High Road, 61069546".
    bool IsListed(qsizetype begin, qsizetype end) const {
        constexpr QStringView marks = u",;|\u00B7\u2022\u2013\u2014";
        const auto next = [&](qsizetype at, qsizetype step) {
            while (at >= 0 && at < text_.size() && IsPhoneBlank(text_[at]))
                at += step;
            return at < 0 || at >= text_.size() || marks.contains(text_[at]);
        };
        return begin > 1 && IsPhoneBlank(text_[begin - 1]) && next(begin - 1, -1) && next(end, 1);
    }

    // Whether the groups are a day, a month and a year that stand beside a number.
    bool IsDateBeside(std::size_t first, std::size_t last) const {
        return groups_.size() > 3 && last - first == 2 && Gap(first) == u"." && Gap(first + 1) == u"." &&
               Size(first) <= 2 && Size(first + 1) <= 2 && IsYear(last) && Value(first) <= 31 && Value(first + 1) <= 12;
    }

    bool TakeGroups(qsizetype begin, std::size_t first, std::size_t last) {
        if (IsDateBeside(first, last))
            return false;
        const bool international = IsPlus(text_[begin]) || Cut(begin, groups_[last].End).startsWith(u"00");
        if (!LooksLikeOne(first, last, international))
            return false;
        qsizetype end = groups_[last].End;
        if (MayBeExtended(end))
            end = WithExtension(begin, end);
        return Keep(begin, end, labelled_ || IsPlus(text_[begin]) ? PhoneVerdict::Possible : PhoneVerdict::Valid);
    }

    // Two numbers may stand apart by a slash or dash between blanks; many are apart by the slash alone, which others
    // write behind the area code.
    enum class Apart { Widely, AtAll };

    bool SeparatesNumbers(std::size_t group, Apart how) const {
        const QStringView gap = Gap(group);
        return gap.size() >= 3 || (how == Apart::AtAll && (gap.contains(u'/') || gap.contains(u'\uFF0F')));
    }

    void TakeFrom(qsizetype begin) {
        // One number, unless each of several parts is one by itself.
        if (TakeParts(begin, Apart::Widely, true) || TakeParts(begin, Apart::AtAll, true))
            return;
        const std::size_t count = groups_.size();
        if (TakeGroups(begin, 0, count - 1) || TakeParts(begin, Apart::Widely, false) ||
            TakeParts(begin, Apart::AtAll, false))
            return;
        // A house number or postal code before it, another number behind it.
        constexpr std::size_t tries = 8;
        for (std::size_t first = 0; first < qMin(count, tries); ++first)
            for (std::size_t last = count; last-- > first + (first == 0 ? 0 : 1);) {
                if (first == 0 && last == count - 1)
                    continue;
                if (count - last > tries)
                    break;
                if (first > 0 && !IsPhoneBlank(text_[groups_[first].Begin - 1]) &&
                    text_[groups_[first].Begin - 1] != u'(')
                    break;
                if (last + 1 < count && !IsPhoneBlank(text_[groups_[last].End]))
                    continue;
                if (TakeGroups(first == 0 ? begin : groups_[first].Begin, first, last))
                    return;
            }
    }

    // With `all` every part must be a number.
    bool TakeParts(qsizetype begin, Apart how, bool all) {
        std::size_t cuts = 0;
        for (std::size_t i = 0; i + 1 < groups_.size(); ++i)
            cuts += SeparatesNumbers(i, how) ? 1 : 0;
        if (cuts == 0)
            return false;
        const std::size_t before = found_.size();
        const qsizetype doneBefore = done_;
        bool every = true;
        std::size_t first = 0;
        for (std::size_t i = 0; i < groups_.size(); ++i)
            if (i + 1 == groups_.size() || SeparatesNumbers(i, how)) {
                qsizetype digits = 0;
                for (std::size_t g = first; g <= i; ++g)
                    digits += Size(g);
                const bool taken =
                    (digits >= 7 || !all) && TakeGroups(first == 0 ? begin : groups_[first].Begin, first, i);
                every = every && taken;
                first = i + 1;
            }
        if (every || !all)
            return found_.size() > before;
        found_.resize(before);
        done_ = doneBefore;
        return false;
    }

    QStringView text_;
    QStringView region_;
    const PhonePlan* plan_;
    std::vector<Group> groups_; // of the candidate at hand
    bool labelled_ = false;
    qsizetype done_ = 0;
    std::vector<FoundPhone> found_;
};

} // namespace

std::vector<FoundPhone> FindPhones(QStringView text, QStringView region) {
    return Finder(text, region).Run();
}

} // namespace Brindle
