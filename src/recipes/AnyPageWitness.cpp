#include "recipes/AnyPageWitness.h"

#include "recipes/ExampleText.h"

#include <algorithm>

namespace Brindle {

namespace {

constexpr size_t mostCompared = 40; // records, evenly taken of longer lists
constexpr double muchAlike = 0.6;

} // namespace

double AnyPageWitness::Agreement(const std::vector<RecordSpan>& records) const {
    if (any_.Records.empty() || records.empty())
        return 0;
    int same = 0;
    size_t at = 0;
    for (const RecordSpan record : records) {
        int within = 0;
        for (; at < any_.Records.size() && any_.Records[at].Begin < record.End; ++at)
            within += any_.Records[at].End > record.Begin ? 1 : 0;
        same += within == 1 ? 1 : 0;
    }
    return static_cast<double>(same) / static_cast<double>(std::max(records.size(), any_.Records.size()));
}

bool AnyPageWitness::HasSeveralIn(const std::vector<RecordSpan>& records) const {
    size_t at = 0;
    for (const RecordSpan record : records) {
        int within = 0;
        for (; at < any_.Records.size() && any_.Records[at].Begin < record.End; ++at)
            within += any_.Records[at].Begin >= record.Begin ? 1 : 0;
        if (within > 1)
            return true;
    }
    return false;
}

int AnyPageWitness::CountBeside(const std::vector<RecordSpan>& records) const {
    int beside = 0;
    size_t at = 0;
    for (const PageRecord& known : any_.Records) {
        while (at < records.size() && records[at].End <= known.Begin)
            ++at;
        beside += at == records.size() || records[at].Begin >= known.End ? 1 : 0;
    }
    return beside;
}

double AnyPageWitness::Agreement(const RecipeField& row, const std::vector<RecordSpan>& records) const {
    int same = 0;
    int known = 0;
    size_t at = 0;
    const size_t step = records.size() / mostCompared + 1;
    for (size_t i = 0; i < records.size(); i += step) {
        const RecordSpan record = records[i];
        while (at < any_.Records.size() && any_.Records[at].End <= record.Begin)
            ++at;
        if (at == any_.Records.size() || any_.Records[at].Begin >= record.End)
            continue;
        const QString& value = any_.Records[at].Fields.At(static_cast<int>(row.Column));
        const QString own = trial_.Read(row, record);
        known += value.isEmpty() && own.isEmpty() ? 0 : 1;
        same += IsExample(row.Column, own, value) ? 1 : 0;
    }
    return known == 0 ? 0 : static_cast<double>(same) / known;
}

double AnyPageWitness::Strangers(const RecipeField& name, const std::vector<RecordSpan>& records) const {
    if (Agreement(records) < muchAlike)
        return 0;
    std::vector<RecordSpan> strangers;
    size_t at = 0;
    for (const RecordSpan record : records) {
        while (at < any_.Records.size() && any_.Records[at].End <= record.Begin)
            ++at;
        if (at == any_.Records.size() || any_.Records[at].Begin >= record.End)
            strangers.push_back(record);
    }
    return strangers.empty() ? 0 : trial_.FillOf(name, strangers).Share;
}

} // namespace Brindle
