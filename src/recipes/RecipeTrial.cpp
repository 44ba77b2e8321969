#include "recipes/RecipeTrial.h"

#include "discovery/Labels.h"
#include "discovery/StructuredLinks.h"
#include "recipes/RecipePattern.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostTried = 120; // records, evenly taken of longer lists
constexpr qsizetype longestValue = 300;
constexpr qint64 mostNodes = 400'000'000; // gone through for selectors, of all together

// Whether a value can be one of its column.
bool IsOfKind(Field column, const QString& value) {
    if (value.size() > longestValue && !IsLinkColumn(column))
        return false;
    const auto digits = std::count_if(value.cbegin(), value.cend(), [](QChar c) { return c.isDigit(); });
    switch (column) {
    case Field::Phone:
    case Field::Fax:
        return digits >= 5 && digits <= 40 && value.size() < 80;
    case Field::PostalCode:
        return digits >= 2 && value.size() <= 12;
    case Field::FullAddress:
    case Field::Address:
        // Not the line above or below it.
        return (LabelAtBegin(value).Hints & (Hint::Phone | Hint::Fax | Hint::Mail | Hint::Website)) == 0 &&
               !value.contains(u'@') && digits * 2 <= value.size();
    case Field::Category:
        return (LabelAtBegin(value).Hints & ~static_cast<HintSet>(Hint::Category)) == 0;
    case Field::Website:
        return !value.contains(u' ') && !value.contains(u"maps");
    case Field::Email:
        return !value.contains(u' ');
    case Field::BusinessName:
        return std::any_of(value.cbegin(), value.cend(), [](QChar c) { return c.isLetter(); });
    default:
        return true;
    }
}

} // namespace

const SelectorQuery& RecipeTrial::QueryOf(const QString& selector) {
    const auto known = queries_.constFind(selector);
    if (known != queries_.cend())
        return **known;
    // Past what a large page may cost, nothing more is tried.
    const bool spent = (queries_.size() + 1) * static_cast<qint64>(source_.Page.Count()) > mostNodes;
    const QString tried = spent && !queries_.isEmpty() ? u":not(*)"_s : selector;
    std::shared_ptr<SelectorQuery>& query = queries_[tried];
    if (!query)
        query = std::make_shared<SelectorQuery>(source_.Page, Selector::Parse(tried));
    return *query;
}

const std::vector<RecordSpan>& RecipeTrial::Records(const QString& selector, bool flat) {
    const auto known = records_.constFind({selector, flat});
    if (known != records_.cend())
        return *known;
    return *records_.insert({selector, flat}, RecordSpans(source_.Page, QueryOf(selector).All(), flat));
}

int RecipeTrial::CountOf(const QString& selector, RecordSpan record) {
    return static_cast<int>(SelectedIn(QueryOf(selector), record).size());
}

QString RecipeTrial::Read(const RecipeField& row, RecordSpan record) {
    const RecipePattern cut(row.Pattern);
    if (IsWholeFlatRecord(row, cut, record)) {
        QString text = FlatRecordText(source_, record);
        cut.Apply(text);
        return FinishedFieldValue(row.Column, source_.Base, text);
    }
    QStringList joined;
    NodeIndex end = 0;
    for (const NodeIndex node : SelectedIn(QueryOf(row.Selector), record)) {
        if (node < end)
            continue;
        QString text = RawFieldValue(source_, node, row.Column, row.Attribute, cut);
        cut.Apply(text);
        text = FinishedFieldValue(row.Column, source_.Base, text);
        if (text.isEmpty())
            continue;
        if (!row.Join)
            return text;
        joined.append(text);
        end = source_.Page.End(node);
    }
    return JoinedValues(row.Column, joined);
}

RecipeTrial::Fill RecipeTrial::FillOf(const RecipeField& row, const std::vector<RecordSpan>& records) {
    Fill fill;
    QSet<QString> different;
    int good = 0;
    int tried = 0;
    const size_t step = records.size() / mostTried + 1;
    for (size_t i = 0; i < records.size(); i += step) {
        ++tried;
        const QString value = Read(row, records[i]);
        if (value.isEmpty())
            continue;
        ++fill.Filled;
        if (fill.Sample.isEmpty())
            fill.Sample = value;
        // What cannot be right is worse than nothing.
        const bool isOwnPage = row.Column == Field::Website && IsSameSite(value, source_.Base);
        good += IsOfKind(row.Column, value) && !isOwnPage ? 1 : -1;
        different.insert(value);
    }
    if (tried > 0)
        fill.Share = std::max(0, good) / static_cast<double>(tried);
    if (fill.Filled > 0)
        fill.Difference = static_cast<double>(different.size()) / fill.Filled;
    return fill;
}

} // namespace Brindle
