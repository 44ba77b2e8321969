#include "recipes/LearnStrangers.h"

#include "discovery/PostalAddress.h"
#include "recipes/SturdySelectors.h"

#include <QStringList>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr double typicalShare = 0.8; // of the records in which a column is filled that every business has
constexpr size_t mostMembers = 2000; // beyond them nothing is looked at

class Strangers {
public:
    Strangers(LearnPage& in, const RecordSet& set, const Recipe& recipe) : in_(in), set_(set), recipe_(recipe) {}

    std::optional<QString> Selector() {
        if (set_.Flat || set_.Members.size() > mostMembers || recipe_.Records.contains(u','))
            return {};
        Find();
        if (strangers_.empty() || strangers_.size() * 4 > set_.Members.size() * 3 || businesses_.size() < 2)
            return {};
        std::optional<QString> best;
        size_t fewest = strangers_.size();
        for (const QString& candidate : Candidates()) {
            const std::vector<RecordSpan>& members = in_.Trial.Records(candidate, false);
            if (!HoldsAll(members, businesses_))
                continue;
            const size_t left = CountIn(members, strangers_);
            if (left < fewest) {
                fewest = left;
                best = candidate;
            }
            if (left == 0)
                break;
        }
        return best;
    }

private:
    static bool IsIn(const std::vector<RecordSpan>& members, RecordSpan record) {
        return std::find(members.begin(), members.end(), record) != members.end();
    }
    static size_t CountIn(const std::vector<RecordSpan>& members, const std::vector<RecordSpan>& records) {
        return static_cast<size_t>(
            std::count_if(records.begin(), records.end(), [&](RecordSpan record) { return IsIn(members, record); }));
    }
    static bool HoldsAll(const std::vector<RecordSpan>& members, const std::vector<RecordSpan>& records) {
        return CountIn(members, records) == records.size();
    }

    // Whether a record has in a column what a business has there.
    bool IsFilled(const RecipeField& row, RecordSpan record) {
        if (in_.Trial.FillOf(row, {record}).Share <= 0)
            return false;
        const bool isAddress = row.Column == Field::FullAddress || row.Column == Field::Address;
        const QString value = isAddress ? in_.Trial.Read(row, record) : QString();
        return !isAddress || (lookLikeAddresses_ && row.Column == Field::FullAddress
                                  ? LooksLikeAddress(value, recipe_.Country)
                                  : std::any_of(value.cbegin(), value.cend(), [](QChar c) { return c.isDigit(); }));
    }

    // The columns that almost every one of the records has.
    std::vector<const RecipeField*> TypicalOf(const std::vector<RecordSpan>& records) {
        std::vector<const RecipeField*> typical;
        for (const RecipeField& row : recipe_.Fields) {
            if (row.Column == Field::BusinessName || row.Column == Field::DetailsLink)
                continue;
            const auto isTypical = [&] {
                const auto filled = std::count_if(records.begin(), records.end(),
                                                  [&](RecordSpan record) { return IsFilled(row, record); });
                return static_cast<double>(filled) >= typicalShare * static_cast<double>(records.size());
            };
            if (row.Column == Field::FullAddress)
                lookLikeAddresses_ = true;
            const bool is = isTypical();
            if (row.Column == Field::FullAddress && !is)
                lookLikeAddresses_ = false;
            if (is || (row.Column == Field::FullAddress && isTypical()))
                typical.push_back(&row);
        }
        return typical;
    }

    bool IsKnown(RecordSpan record) const {
        return std::any_of(in_.Any.Records.begin(), in_.Any.Records.end(), [record](const PageRecord& known) {
            return known.End > record.Begin && known.Begin < record.End;
        });
    }

    // A record that lacks what the others have: all of it, or some of it where any page's reader passes it by too.
    void Find() {
        std::vector<RecordSpan> named;
        std::vector<RecordSpan> known;
        for (const RecipeField& row : recipe_.Fields)
            if (row.Column == Field::BusinessName)
                for (const RecordSpan member : set_.Members)
                    if (!in_.Trial.Read(row, member).isEmpty())
                        named.push_back(member);
        std::copy_if(named.begin(), named.end(), std::back_inserter(known),
                     [this](RecordSpan member) { return IsKnown(member); });
        const auto all = static_cast<double>(in_.Any.Records.size());
        const bool asked = known.size() >= 2 && static_cast<double>(known.size()) >= typicalShare * all &&
                           !in_.Witness.HasSeveralIn(set_.Members);
        const std::vector<const RecipeField*> typical = TypicalOf(asked ? known : named);
        for (const RecordSpan member : named) {
            const auto lacks = std::count_if(typical.begin(), typical.end(),
                                             [&](const RecipeField* row) { return !IsFilled(*row, member); });
            const bool lacksAll = !typical.empty() && static_cast<size_t>(lacks) == typical.size();
            const bool isStrange = asked ? lacks > 0 && !IsKnown(member) : lacksAll;
            (isStrange && !IsIn(set_.OfBusiness, member) ? strangers_ : businesses_).push_back(member);
        }
    }

    QStringList Candidates() const {
        QStringList found;
        const QString& records = recipe_.Records;
        // By what they call themselves.
        for (const RecordSpan stranger : strangers_)
            for (const CandidateSelector& own : OwnSelectors(in_.Page, stranger.Begin))
                if (own.Text.startsWith(u'.') || own.Text.startsWith(u'['))
                    found.append(records + u":not("_s + own.Text + u')');
        // By what they hold.
        const RecordSpan record = set_.OfBusiness.front();
        for (const FoundExample& example : in_.Examples)
            for (const ExamplePlace& place : example.Places)
                if (place.Node > record.Begin && place.Node < record.End && found.size() < 60)
                    for (const CandidateSelector& own : OwnSelectors(in_.Page, place.Node))
                        found.append(records + u":has("_s + own.Text + u')');
        for (const RecipeField& row : recipe_.Fields)
            if (!row.Selector.contains(u":scope") && !row.Selector.contains(u','))
                found.append(records + u":has("_s + row.Selector + u')');
        found.append({records + u":not(:has(th))"_s, records + u":not(:first-child)"_s,
                      records + u":not(:last-child)"_s, records + u":not(:first-child):not(:last-child)"_s});
        for (int cells = 2; cells <= 5; ++cells)
            found.append(records + u":has(td:nth-of-type(%1))"_s.arg(cells));
        found.removeDuplicates();
        return found;
    }

    LearnPage& in_;
    const RecordSet& set_;
    const Recipe& recipe_;
    bool lookLikeAddresses_ = false;
    std::vector<RecordSpan> businesses_;
    std::vector<RecordSpan> strangers_;
};

} // namespace

std::optional<QString> SelectorWithoutStrangers(LearnPage& in, const RecordSet& set, const Recipe& recipe) {
    return Strangers(in, set, recipe).Selector();
}

} // namespace Brindle
