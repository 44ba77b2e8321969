#include "recipes/RecipeReader.h"

#include "core/Errors.h"
#include "discovery/NextPage.h"
#include "discovery/SavedPage.h"
#include "discovery/StructuredData.h"
#include "discovery/StructuredLead.h"
#include "discovery/StructuredLinks.h"
#include "discovery/StructuredText.h"
#include "recipes/RecipeValue.h"
#include "recipes/RecordSpans.h"
#include "toolkit/PageAddress.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostRecords = 100'000; // of a page

// The records of structured data that are the page's list, not what stands behind it.
std::vector<StructuredRecord> ListOf(std::vector<StructuredRecord> records) {
    const bool listed = std::any_of(records.begin(), records.end(), [](const StructuredRecord& record) {
        return record.Role == RecordRole::Listed && record.Kind != RecordKind::Link;
    });
    std::erase_if(records, [listed](const StructuredRecord& record) {
        return record.Kind == RecordKind::Link || record.Role != (listed ? RecordRole::Listed : RecordRole::Plain);
    });
    return records;
}

} // namespace

// A page with what all rows need of it, made once.
class RecipeReader::PageInHand {
public:
    PageInHand(const PageTree& page, const QString& url, QStringList& problems)
        : Page(page), Url(WebAddressOfPage(page, url)), Base(BaseAddressOf(page, Url)), problems_(problems) {}

    const PageLines& Lines() {
        if (!lines_)
            lines_.emplace(Page);
        return *lines_;
    }

    // The elements that each row selects, on the whole page.
    std::vector<std::unique_ptr<SelectorQuery>> Queries(const std::vector<Row>& rows) const {
        std::vector<std::unique_ptr<SelectorQuery>> queries;
        queries.reserve(rows.size());
        for (const Row& row : rows)
            queries.push_back(std::make_unique<SelectorQuery>(Page, row.Where));
        return queries;
    }

    // What a row reads within an element: the first value that is none but blanks.
    QString Read(const Row& row, const SelectorQuery& query, RecordSpan within) {
        if (IsWholeFlatRecord(row.Says, row.Cut, within))
            return Finished(row, FlatRecordText({Page, Lines(), Base}, within));
        QStringList joined;
        NodeIndex end = 0; // of the last one that was joined
        for (const NodeIndex node : SelectedIn(query, within)) {
            if (node < end)
                continue;
            QString text =
                Finished(row, RawFieldValue({Page, Lines(), Base}, node, row.Says.Column, row.Says.Attribute, row.Cut));
            if (text.isEmpty())
                continue;
            if (!row.Says.Join)
                return text;
            joined.append(text);
            end = Page.End(node);
        }
        return JoinedValues(row.Says.Column, joined);
    }

    void ReadRows(const std::vector<Row>& rows, const std::vector<std::unique_ptr<SelectorQuery>>& queries,
                  RecordSpan within, const QString& country, Lead& lead) {
        for (size_t i = 0; i < rows.size(); ++i) {
            const QString text = Read(rows[i], *queries[i], within);
            if (text.isEmpty())
                continue;
            lead.At(static_cast<int>(rows[i].Says.Column)) = text;
            if (rows[i].Says.SplitAddress)
                SplitFullAddress(Page, Url, country, lead);
        }
        // An address that stands in parts alone.
        const bool hasPlace = !lead.City.isEmpty() || !lead.PostalCode.isEmpty();
        if (lead.FullAddress.isEmpty() && hasPlace && !lead.Street.isEmpty())
            lead.FullAddress = ComposedAddress(lead);
    }

    const PageTree& Page;
    const QString Url;
    const QString Base;

private:
    QString Finished(const Row& row, QString text) {
        if (text.isEmpty())
            return {};
        if (row.Cut.Apply(text) == RecipePattern::Outcome::TooCostly)
            ReportCostly(row);
        return FinishedFieldValue(row.Says.Column, Base, text);
    }

    void ReportCostly(const Row& row) {
        const QString line = u"%1: the pattern takes too many steps on this page; the field stays empty"_s.arg(
            EnglishCaptions()[static_cast<int>(row.Says.Column)]);
        if (!problems_.contains(line))
            problems_.append(line);
    }

    std::optional<PageLines> lines_;
    QStringList& problems_;
};

RecipeReader::RecipeReader(Recipe recipe) : recipe_(std::move(recipe)) {
    if (recipe_.Records != structuredRecords)
        records_ = Selector::Parse(recipe_.Records);
    if (!recipe_.Next.isEmpty() && recipe_.Next != automaticNextPage)
        next_ = Selector::Parse(recipe_.Next);
    std::vector<RecipeField> fields = recipe_.Fields;
    const auto isLink = [](const RecipeField& field) { return field.Column == Field::DetailsLink; };
    if (!recipe_.DetailsLink.isEmpty() && std::none_of(fields.begin(), fields.end(), isLink))
        fields.push_back({.Column = Field::DetailsLink, .Selector = recipe_.DetailsLink});
    rows_ = RowsOf(fields);
    detailsRows_ = RowsOf(recipe_.DetailsFields);
}

RecipeReader::~RecipeReader() = default;
RecipeReader::RecipeReader(RecipeReader&&) noexcept = default;
RecipeReader& RecipeReader::operator=(RecipeReader&&) noexcept = default;

std::vector<RecipeReader::Row> RecipeReader::RowsOf(const std::vector<RecipeField>& fields) {
    std::vector<Row> rows;
    rows.reserve(fields.size());
    for (const RecipeField& field : fields)
        rows.push_back({field, Selector::Parse(field.Selector), RecipePattern(field.Pattern)});
    // An address that is taken apart comes first: rows of its parts go before what it gives.
    std::stable_partition(rows.begin(), rows.end(), [](const Row& row) { return row.Says.SplitAddress; });
    return rows;
}

RecipeReading RecipeReader::Read(const PageTree& page, const QString& url) const {
    RecipeReading reading;
    PageInHand hand(page, url, reading.Problems);
    if (records_)
        ReadElements(hand, reading);
    else
        ReadStructured(hand, reading);
    std::erase_if(reading.Records, [](const PageRecord& record) { return record.Fields.Name.isEmpty(); });
    if (hand.Url == UnknownWebsite)
        for (PageRecord& record : reading.Records)
            DropUnknownLinks(record.Fields);
    reading.Counts = CountsOf(reading.Records);
    ReadNext(hand, reading);
    return reading;
}

void RecipeReader::ReadElements(PageInHand& hand, RecipeReading& reading) const {
    const std::vector<std::unique_ptr<SelectorQuery>> queries = hand.Queries(rows_);
    for (const RecordSpan span : RecordSpans(hand.Page, records_->SelectAll(hand.Page), recipe_.Flat)) {
        if (reading.Records.size() >= mostRecords)
            break;
        PageRecord record;
        record.Begin = span.Begin;
        record.End = span.End;
        hand.ReadRows(rows_, queries, span, recipe_.Country, record.Fields);
        reading.Records.push_back(std::move(record));
    }
}

void RecipeReader::ReadStructured(PageInHand& hand, RecipeReading& reading) const {
    const std::vector<std::unique_ptr<SelectorQuery>> queries = hand.Queries(rows_);
    for (StructuredRecord& found : ListOf(StructuredRecords(hand.Page, hand.Url))) {
        if (reading.Records.size() >= mostRecords)
            break;
        PageRecord record;
        record.Fields = std::move(found.Fields);
        if (found.Node != noNode) {
            record.Begin = found.Node;
            record.End = hand.Page.End(found.Node);
            hand.ReadRows(rows_, queries, {record.Begin, record.End}, recipe_.Country, record.Fields);
        }
        reading.Records.push_back(std::move(record));
    }
}

void RecipeReader::ReadNext(PageInHand& hand, RecipeReading& reading) const {
    if (recipe_.Next == automaticNextPage) {
        reading.Next = FindNextPage(hand.Page, hand.Lines(), hand.Url).Address;
    } else if (next_) {
        const QString attribute = recipe_.NextAttribute.isEmpty() ? u"href"_s : recipe_.NextAttribute;
        for (const NodeIndex node : next_->SelectAll(hand.Page)) {
            const QString address = WebAddress(hand.Base, hand.Page.Attribute(node, attribute));
            const bool isOther = WithoutFragment(address) != WithoutFragment(hand.Url);
            if (!address.isEmpty() && isOther && IsSameSite(address, hand.Url)) {
                reading.Next = address;
                return;
            }
            if (IsPageButton(hand.Page, node))
                reading.LoadMore = recipe_.Next;
        }
    }
}

void RecipeReader::ReadDetails(const PageTree& page, const QString& url, Lead& lead, QStringList& problems) const {
    PageInHand hand(page, url, problems);
    if (!detailsRows_.empty() && page.Root() != noNode)
        hand.ReadRows(detailsRows_, hand.Queries(detailsRows_), {page.Root(), page.End(page.Root())}, recipe_.Country,
                      lead);
    // The business that the page is about: the one of that name, or the only one.
    const std::vector<StructuredRecord> records = ListOf(StructuredRecords(page, url));
    const StructuredRecord* about = records.size() == 1 ? &records.front() : nullptr;
    for (const StructuredRecord& record : records)
        if (record.Fields.Name.compare(lead.Name, Qt::CaseInsensitive) == 0)
            about = &record;
    if (!about)
        return;
    for (int column = 0; column < FieldCount; ++column)
        if (lead.At(column).isEmpty() && static_cast<Field>(column) != Field::DetailsLink)
            lead.At(column) = about->Fields.At(column);
}

bool IsPageButton(const PageTree& page, NodeIndex node) {
    const QStringView href = page.Attribute(node, u"href");
    return page.Is(node, u"button") || page.Attribute(node, u"role") == u"button" ||
           (page.Is(node, u"input") && page.Attribute(node, u"type") == u"button") ||
           (page.Is(node, u"a") && (href.isEmpty() || href.startsWith(u'#')));
}

RecipeCounts CountsOf(const std::vector<PageRecord>& records) {
    RecipeCounts counts;
    counts.Records = static_cast<int>(records.size());
    for (const PageRecord& record : records)
        for (int column = 0; column < FieldCount; ++column)
            counts.Filled[static_cast<size_t>(column)] += record.Fields.At(column).isEmpty() ? 0 : 1;
    return counts;
}

void AddCounts(RecipeCounts& sum, const RecipeCounts& more) {
    sum.Records += more.Records;
    for (size_t column = 0; column < sum.Filled.size(); ++column)
        sum.Filled[column] += more.Filled[column];
}

std::vector<RecipeDrift> DriftsOf(const RecipeCounts& taught, const RecipeCounts& seen) {
    if (taught.Records <= 0)
        return {};
    if (seen.Records == 0)
        return {{-1, 0, 0, taught.Records, taught.Records}};
    std::vector<RecipeDrift> drifts;
    for (int column = 0; column < FieldCount; ++column) {
        const int was = taught.Filled[static_cast<size_t>(column)];
        const int is = seen.Filled[static_cast<size_t>(column)];
        const double expected = static_cast<double>(was) * seen.Records / taught.Records;
        if (expected >= 2 && is < expected / 2)
            drifts.push_back({column, is, seen.Records, was, taught.Records});
    }
    return drifts;
}

QStringList DriftOf(const RecipeCounts& taught, const RecipeCounts& seen) {
    QStringList lines;
    for (const RecipeDrift& drift : DriftsOf(taught, seen))
        lines.append(drift.Column < 0
                         ? u"no records, was %1"_s.arg(drift.Was)
                         : u"%1: filled in %2 of %3, was %4 of %5"_s.arg(EnglishCaptions()[drift.Column].toLower())
                               .arg(drift.Seen)
                               .arg(drift.OfSeen)
                               .arg(drift.Was)
                               .arg(drift.OfWas));
    return lines;
}

} // namespace Brindle
