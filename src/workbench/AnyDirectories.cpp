#include "workbench/AnyDirectories.h"

#include "core/BusinessKey.h"
#include "discovery/AnyPage.h"
#include "discovery/StructuredData.h"
#include "discovery/StructuredLinks.h"
#include "recipes/RecipeReader.h"

#include <QHash>

#include <memory>

namespace Brindle {

namespace {

// Reads one page after the other, and remembers of each site what its list looks like.
class AnyDocuments {
public:
    DocumentRecords Read(const QString& html, const QString& address) {
        const PageTree page(html);
        const QString site = SiteOf(address);
        AnyPageReading reading = ReadAnyPage(page, address, Selectors::Left, looks_.value(site));
        if (!reading.Looks.isEmpty()) {
            if (looks_.size() >= mostSites)
                looks_.clear();
            looks_.insert(site, reading.Looks);
        }
        DocumentRecords found;
        found.Leads.reserve(reading.Records.size());
        for (PageRecord& record : reading.Records)
            found.Leads.push_back(std::move(record.Fields));
        found.NextPage = reading.Next.Address;
        return found;
    }

private:
    static constexpr qsizetype mostSites = 200;

    QHash<QString, QStringList> looks_;
};

} // namespace

SiteAdapter AnyWebsite(bool readsDetails) {
    SiteAdapter site;
    site.Code = AnyWebsiteCode.toString();
    site.Links = Way::Modern;
    site.ReadDocument = [documents = std::make_shared<AnyDocuments>()](const QString& html, const QString& address) {
        return documents->Read(html, address);
    };
    if (readsDetails)
        site.ReadDetails = [](const QString& html, const QString& address, Lead& lead) {
            AddOwnPage(PageTree(html), address, lead);
        };
    site.IsSameSite = [](const QString& start, const QString& address) { return IsSameSite(start, address); };
    return site;
}

SiteAdapter DirectoryOfRecipe(const RecipeEntry& entry, bool readsDetails) {
    const auto reader = std::make_shared<const RecipeReader>(entry.What);
    SiteAdapter site;
    site.Code = entry.Code;
    site.Links = Way::Modern;
    site.SearchAddress = reader->What().Search;
    site.ReadDocument = [reader](const QString& html, const QString& address) {
        RecipeReading reading = reader->Read(PageTree(html), address);
        DocumentRecords found;
        found.Leads.reserve(reading.Records.size());
        for (PageRecord& record : reading.Records)
            found.Leads.push_back(std::move(record.Fields));
        found.NextPage = reading.Next;
        found.LoadMore = reading.LoadMore;
        found.Problems = reading.Problems;
        return found;
    };
    if (readsDetails || reader->What().Details)
        site.ReadDetails = [reader](const QString& html, const QString& address, Lead& lead) {
            QStringList problems;
            reader->ReadDetails(PageTree(html), address, lead, problems);
        };
    site.DriftOf = [reader](const RecordCounts& seen) {
        return Brindle::DriftOf(reader->What().Taught, {seen.Records, seen.Filled});
    };
    site.IsSameSite = [](const QString& start, const QString& address) { return IsSameSite(start, address); };
    return site;
}

void AddOwnPage(const PageTree& page, const QString& url, Lead& lead) {
    const std::vector<StructuredRecord> records = StructuredRecords(page, url);
    const QString name = FoldedForKey(lead.Name);
    const StructuredRecord* own = nullptr;
    int businesses = 0;
    for (const StructuredRecord& record : records) {
        if (record.Kind != RecordKind::Business || record.Role == RecordRole::Owner)
            continue;
        ++businesses;
        if (!own || FoldedForKey(record.Fields.Name) == name)
            own = &record;
    }
    if (!own || (businesses > 1 && FoldedForKey(own->Fields.Name) != name))
        return;
    for (int column = 0; column < FieldCount; ++column)
        if (lead.At(column).isEmpty())
            lead.At(column) = own->Fields.At(column);
}

} // namespace Brindle
