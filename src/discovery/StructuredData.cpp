#include "discovery/StructuredData.h"

#include "discovery/SchemaKinds.h"
#include "discovery/StructuredLead.h"
#include "discovery/StructuredLinks.h"
#include "toolkit/PageAddress.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// How an item is held by another one.
struct Hold {
    int By = -1;
    SchemaProperty As = SchemaProperty::None;
    int Order = 0; // among the values of that property
};

// What a list says of an entry.
struct Place {
    int List = -1;
    int Position = 0;
};

class RecordReader {
public:
    RecordReader(const PageTree& page, const QString& url)
        : page_(page), url_(url), items_(StructuredItemsOf(page, url)), leads_(page, url, items_) {}

    std::vector<StructuredRecord> Read() {
        NoteHolds();
        for (size_t i = 0; i < items_.Items.size(); ++i)
            AddRecord(static_cast<int>(i));
        if (std::is_sorted(places_.begin(), places_.end()))
            return std::move(found_);
        std::vector<size_t> order(found_.size());
        std::iota(order.begin(), order.end(), size_t{0});
        std::stable_sort(order.begin(), order.end(), [this](size_t a, size_t b) { return places_[a] < places_[b]; });
        std::vector<StructuredRecord> records;
        records.reserve(found_.size());
        for (const size_t i : order)
            records.push_back(std::move(found_[i]));
        return records;
    }

private:
    void NoteHolds() {
        holds_.resize(items_.Items.size());
        for (size_t i = 0; i < items_.Items.size(); ++i)
            kinds_.push_back(leads_.TypesOf(static_cast<int>(i)).Kind);
        for (size_t i = 0; i < items_.Items.size(); ++i) {
            int entries = 0;
            for (const StructuredProperty& property : items_.Items[i].Properties) {
                const SchemaProperty means = leads_.Meaning(property.Name);
                const int order = means == SchemaProperty::Entry ? ++entries : 0;
                if (property.Item < 0)
                    continue;
                Hold& hold = holds_[static_cast<size_t>(property.Item)];
                // What is an entry of a list is that, whatever else refers to it.
                if (hold.By < 0 || (hold.As != SchemaProperty::Entry && means == SchemaProperty::Entry))
                    hold = {static_cast<int>(i), means, order};
            }
        }
    }

    const Hold& HoldOf(int item) const { return holds_[static_cast<size_t>(item)]; }
    SchemaKind KindAt(int item) const { return kinds_[static_cast<size_t>(item)]; }

    // Whether an entry of a list is one of the path from the home page.
    bool IsOfTrail(int item) const {
        const Hold& hold = HoldOf(item);
        return hold.By >= 0 && (KindAt(hold.By) == SchemaKind::Trail ||
                                (hold.As == SchemaProperty::EntryItem && HoldOf(hold.By).By >= 0 &&
                                 KindAt(HoldOf(hold.By).By) == SchemaKind::Trail));
    }

    Place PlaceOf(int item) {
        const Hold* hold = &HoldOf(item);
        int entry = item;
        if (hold->As == SchemaProperty::EntryItem && hold->By >= 0) {
            entry = hold->By;
            hold = &HoldOf(entry);
        }
        if (hold->As != SchemaProperty::Entry)
            return {};
        const int said = leads_.PositionOf(entry);
        const auto known = lists_.constFind(hold->By);
        const int list = known != lists_.cend() ? *known : static_cast<int>(lists_.size());
        lists_.insert(hold->By, list);
        return {list, said > 0 ? said : hold->Order};
    }

    RecordRole RoleOf(int item, const Lead& lead) {
        const Hold& hold = HoldOf(item);
        if (hold.By < 0)
            return IsDirectoryItself(item, lead) ? RecordRole::Owner : RecordRole::Plain;
        switch (hold.As) {
        case SchemaProperty::Owner:
            return RecordRole::Owner;
        case SchemaProperty::EntryItem:
        case SchemaProperty::PageSubject:
            return KindAt(hold.By) == SchemaKind::Business ? RecordRole::Nested : RecordRole::Plain;
        default:
            return RecordRole::Nested;
        }
    }

    // A page's site says who it is by its home page.
    bool IsDirectoryItself(int item, const Lead& lead) {
        return !lead.DetailsLink.isEmpty() && IsHomeAddress(lead.DetailsLink) && leads_.TypesOf(item).Trade.isEmpty() &&
               !leads_.IsLocal(item);
    }

    void AddRecord(int item) {
        const StructuredItem& said = items_.At(item);
        const SchemaKind kind = KindAt(item);
        if (kind != SchemaKind::Business && kind != SchemaKind::Person && kind != SchemaKind::ListEntry &&
            kind != SchemaKind::List)
            return;
        if (IsOfTrail(item))
            return;
        if (kind == SchemaKind::List) {
            AddBareLinks(item);
            return;
        }
        StructuredRecord record;
        record.In = said.In;
        record.Types = leads_.TypesOf(item).LocalNames;
        record.Node = said.In == Notation::JsonLd ? noNode : said.Node;
        if (kind == SchemaKind::ListEntry) {
            if (leads_.Holds(item, SchemaProperty::EntryItem))
                return; // a record of its own, or none
            record.Kind = RecordKind::Link;
            record.Fields = leads_.LinkOf(item);
            if (record.Fields.DetailsLink.isEmpty() && record.Fields.Website.isEmpty())
                return;
        } else {
            record.Kind = kind == SchemaKind::Person ? RecordKind::Person : RecordKind::Business;
            record.Fields = leads_.LeadOf(item, record.CategoryIsOfType);
            const Lead& lead = record.Fields;
            if (kind == SchemaKind::Person && lead.Phone.isEmpty() && lead.FullAddress.isEmpty() &&
                lead.Email.isEmpty())
                return;
        }
        Keep(item, std::move(record));
    }

    void Keep(int item, StructuredRecord record) {
        const Place place = PlaceOf(item);
        record.List = place.List;
        record.Position = place.Position;
        record.Role = place.List >= 0 ? RecordRole::Listed : RoleOf(item, record.Fields);
        if (const Hold& hold = HoldOf(item); record.Role == RecordRole::Listed && hold.As == SchemaProperty::EntryItem)
            leads_.AddLinkOfEntry(hold.By, record.Fields);
        // What has no name is no business that anybody could call.
        if (record.Kind == RecordKind::Link || !record.Fields.Name.isEmpty())
            Add(items_.At(item).Node, std::move(record));
    }

    void Add(NodeIndex place, StructuredRecord record) {
        found_.push_back(std::move(record));
        places_.push_back(place);
    }

    // The entries of a list that are nothing but addresses.
    void AddBareLinks(int list) {
        int order = 0;
        for (const StructuredProperty& property : items_.At(list).Properties) {
            if (leads_.Meaning(property.Name) != SchemaProperty::Entry)
                continue;
            ++order;
            if (property.Item >= 0)
                continue;
            StructuredRecord record;
            record.In = items_.At(list).In;
            record.Kind = RecordKind::Link;
            record.Role = RecordRole::Listed;
            leads_.AddLink(property.Text, record.Fields);
            if (record.Fields.DetailsLink.isEmpty())
                continue;
            const auto known = lists_.constFind(list);
            record.List = known != lists_.cend() ? *known : static_cast<int>(lists_.size());
            lists_.insert(list, record.List);
            record.Position = order;
            record.Node = record.In == Notation::JsonLd ? noNode : property.Node;
            Add(property.Node, std::move(record));
        }
    }

    const PageTree& page_;
    const QString& url_;
    StructuredItems items_;
    StructuredLead leads_;
    std::vector<SchemaKind> kinds_; // by item, as the holds
    std::vector<Hold> holds_;
    QHash<int, int> lists_; // number of each list that has entries, by its item
    std::vector<StructuredRecord> found_;
    std::vector<NodeIndex> places_; // of these: where on the page they are said
};

} // namespace

std::vector<StructuredRecord> StructuredRecords(const PageTree& page, const QString& url) {
    return RecordReader(page, url).Read();
}

} // namespace Brindle
