#include "discovery/RecordsMerge.h"

#include "core/BusinessKey.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QStringView LinkKey(QStringView link) {
    QStringView key = WithoutFragment(link);
    while (key.endsWith(u'/'))
        key.chop(1);
    return key.sliced(StartsWithFolded(key, u"https:")  ? 5
                      : StartsWithFolded(key, u"http:") ? 4
                                                        : SchemeOf(key).size());
}

// What the page says in so many words goes before what its look suggests, but never a part for the whole.
void Complete(Lead& lead, const Lead& said) {
    for (const Field field : {Field::BusinessName, Field::Address, Field::City, Field::State, Field::PostalCode,
                              Field::Country, Field::Email, Field::Website})
        if (const QString& value = said.At(static_cast<int>(field)); !value.isEmpty())
            lead.At(static_cast<int>(field)) = value;
    for (const Field field :
         {Field::Category, Field::FullAddress, Field::Phone, Field::Fax, Field::MapLink, Field::DetailsLink})
        if (QString& value = lead.At(static_cast<int>(field)); value.isEmpty())
            value = said.At(static_cast<int>(field));
}

bool IsReachable(const Lead& lead) {
    return !lead.Phone.isEmpty() || !lead.Street.isEmpty() || !lead.PostalCode.isEmpty() || !lead.FullAddress.isEmpty();
}

} // namespace

RecordsMerge::RecordsMerge(const PageTree& page, std::vector<StructuredRecord> structured)
    : page_(page), structured_(std::move(structured)) {
    std::erase_if(structured_, [](const StructuredRecord& record) {
        return record.Role != RecordRole::Plain && record.Role != RecordRole::Listed;
    });
    names_.reserve(structured_.size());
    for (const StructuredRecord& said : structured_)
        names_.push_back(FoldedForKey(said.Fields.Name));
}

// By record of the list: the structured records that speak of it.
std::vector<QVarLengthArray<size_t, 1>> RecordsMerge::Matches(const RecordsReading& list) const {
    std::vector<QVarLengthArray<size_t, 1>> matches(list.Records.size());
    struct Named {
        size_t Last = 0;
        int Times = 0;
    };
    QHash<QStringView, size_t> links;
    QHash<QString, Named> names;
    links.reserve(std::ssize(list.Records));
    names.reserve(std::ssize(list.Records));
    for (size_t i = 0; i < list.Records.size(); ++i) {
        if (const QString& link = list.Records[i].Fields.DetailsLink; !link.isEmpty())
            links.insert(LinkKey(link), i);
        Named& named = names[FoldedForKey(list.Records[i].Fields.Name)];
        named = {i, named.Times + 1};
    }
    for (size_t i = 0; i < structured_.size(); ++i) {
        const StructuredRecord& said = structured_[i];
        if (said.Node != noNode) {
            const auto found =
                std::upper_bound(list.Records.begin(), list.Records.end(), said.Node,
                                 [](NodeIndex node, const PageRecord& record) { return node < record.Begin; });
            if (found != list.Records.begin() && said.Node < std::prev(found)->End) {
                matches[static_cast<size_t>(std::prev(found) - list.Records.begin())].push_back(i);
                continue;
            }
            // The item can be the element around the record.
            if (found != list.Records.end() && page_.Contains(said.Node, found->Begin) &&
                (std::next(found) == list.Records.end() || !page_.Contains(said.Node, std::next(found)->Begin))) {
                matches[static_cast<size_t>(found - list.Records.begin())].push_back(i);
                continue;
            }
        }
        const auto link =
            said.Fields.DetailsLink.isEmpty() ? links.cend() : links.constFind(LinkKey(said.Fields.DetailsLink));
        const QString& name = names_[i];
        if (link != links.cend())
            matches[*link].push_back(i);
        else if (const Named named = name.isEmpty() ? Named() : names.value(name); named.Times == 1)
            matches[named.Last].push_back(i);
    }
    return matches;
}

double RecordsMerge::WitnessFor(RecordsReading& list) const {
    if (structured_.size() < 2 || list.Records.empty())
        return 0;
    list.Said = Matches(list);
    const auto matched =
        std::count_if(list.Said.begin(), list.Said.end(), [](const auto& said) { return said.size() == 1; });
    return static_cast<double>(matched) / static_cast<double>(std::max(list.Records.size(), structured_.size() / 2));
}

void RecordsMerge::AddTo(RecordsReading& list) const {
    // Paid entries may have come between the records since.
    const auto matches = list.Said.size() == list.Records.size() ? std::move(list.Said) : Matches(list);
    std::vector<PageRecord> merged;
    merged.reserve(list.Records.size());
    for (size_t i = 0; i < list.Records.size(); ++i) {
        // Several different businesses in one record, or the same one in several notations.
        QStringList keys;
        for (const size_t said : matches[i]) {
            if (matches[i].size() < 2)
                break;
            const Lead& lead = structured_[said].Fields;
            const QString key = names_[said] + u'|' + FoldedForKey(lead.FullAddress) + u'|' + LinkKey(lead.DetailsLink);
            if (structured_[said].Node != noNode && !lead.Name.isEmpty() && IsReachable(lead) && !keys.contains(key))
                keys << key;
        }
        if (keys.size() >= 2 && matches[i].size() == keys.size()) {
            for (const size_t said : matches[i]) {
                merged.push_back({structured_[said].Fields, list.Records[i].Begin, list.Records[i].End});
                if (merged.back().Fields.Category.isEmpty())
                    merged.back().Fields.Category = list.Records[i].Fields.Category;
            }
            continue;
        }
        merged.push_back(std::move(list.Records[i]));
        for (const size_t said : matches[i])
            Complete(merged.back().Fields, structured_[said].Fields);
    }
    list.Records = std::move(merged);
}

std::vector<PageRecord> RecordsMerge::Alone() const {
    std::vector<PageRecord> records;
    QSet<QString> seen;
    int reachable = 0;
    int persons = 0;
    for (const StructuredRecord& said : structured_) {
        if (said.Fields.Name.isEmpty())
            continue;
        const QString key = BusinessKey(said.Fields);
        if (!key.isEmpty() && seen.contains(key))
            continue;
        seen.insert(key);
        reachable += IsReachable(said.Fields);
        persons += said.Types.contains(u"Person"_s);
        const NodeIndex end = said.Node == noNode ? noNode : page_.End(said.Node);
        records.push_back({said.Fields, said.Node, end});
    }
    const auto count = static_cast<int>(records.size());
    const bool listed = std::count_if(structured_.begin(), structured_.end(),
                                      [](const StructuredRecord& said) { return said.Role == RecordRole::Listed; }) *
                            2 >
                        static_cast<std::ptrdiff_t>(structured_.size());
    const bool sure = count >= 2 && persons * 2 < count && (reachable * 2 >= count || (listed && reachable > 0));
    if (!sure && !(count == 1 && listed && reachable == 1))
        records.clear();
    return records;
}

QString RecordsMerge::Source() const {
    std::array<size_t, 4> counts{};
    for (const StructuredRecord& said : structured_)
        ++counts[static_cast<size_t>(said.In)];
    const auto most = std::max_element(counts.begin(), counts.end()) - counts.begin();
    return structured_.empty() ? QString() : NotationName(static_cast<Notation>(most));
}

} // namespace Brindle
