// Towns without an address, and what records keep in attributes.
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsAddress.h"
#include "discovery/RecordsPlaceText.h"
#include "discovery/RecordsPlaces.h"
#include "discovery/StructuredLead.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

// Cards that show the name alone can have the rest for a map: "<div data-street='1 Main St' data-city=Ulm>".
void RecordPlaces::ReadDataAttributes(const RecordRange& range, Lead& lead,
                                      std::array<NodeIndex, FieldCount>& nodes) const {
    const PageTree& page = page_.Page;
    QString whole;
    const Lead before = lead;
    for (NodeIndex node = range.Begin; node < range.End && node < range.Begin + 40; ++node) {
        if (!page.IsElement(node))
            continue;
        for (const PageAttribute& attribute : page.Attributes(node)) {
            if (!attribute.Name.startsWith(u"data-") || attribute.Value.isEmpty() || attribute.Value.size() > 200)
                continue;
            const HintSet hints = HintsOfName(attribute.Name.sliced(5));
            const QString value = Tidy(attribute.Value.toString());
            bool part = false;
            for (const auto& [hint, field] :
                 {std::pair(Hint::Street, &lead.Street), std::pair(Hint::PostalCode, &lead.PostalCode),
                  std::pair(Hint::City, &lead.City), std::pair(Hint::State, &lead.State)})
                if (!part && Has(hints, hint)) {
                    part = true;
                    FillPart(*field, value);
                }
            const AddressSigns signs =
                part || !Has(hints, Hint::Address) ? AddressSigns{} : AddressSignsIn(value, page_.Region);
            if (signs.PostalCode || signs.Street)
                whole = value;
            if ((part || !whole.isEmpty()) && nodes[static_cast<size_t>(Field::FullAddress)] == noNode)
                nodes[static_cast<size_t>(Field::FullAddress)] = node;
        }
    }
    if (whole.isEmpty() && lead.Street.isEmpty() && lead.PostalCode.isEmpty()) {
        lead = before; // a town alone says little: it may be a filter's word
        return;
    }
    lead.FullAddress = whole.isEmpty() ? ComposedAddress(lead) : whole;
    const AddressParts parts = whole.isEmpty() ? AddressParts() : SplitAddress(whole, page_.Country);
    FillPart(lead.Street, parts.Street);
    FillPart(lead.PostalCode, parts.PostalCode);
    FillPart(lead.City, parts.City);
    FillPart(lead.State, parts.State);
}

// "Savannah, United States": where the comma stands; -1 for other texts.
qsizetype RecordPlaces::CommaBeforeCountry(QStringView text) const {
    const qsizetype comma = text.lastIndexOf(u',');
    const bool two = comma > 1 && text.first(comma).count(u',') == 0 && !HasDigit(text);
    // "San Diego, CA" lies in no country of that code.
    if (two && (page_.Region.isEmpty() || page_.Region == u"US") && IsStateOf(u"US", text.sliced(comma + 1).trimmed()))
        return -1;
    return two && !RegionOfCountryName(text.sliced(comma + 1).trimmed()).isEmpty() ? comma : -1;
}

// "Portland, OR", "Cefalù (PA)": a town and the state, province or country that it lies in.
bool RecordPlaces::IsTownWithRegion(QStringView text) const {
    if (text.size() < 5 || text.size() > 60 || !text.front().isUpper() || HasDigit(text))
        return false;
    if (CommaBeforeCountry(text) > 0)
        return true;
    const auto isState = [this](QStringView state) {
        return page_.Region.isEmpty() ? IsStateOf(u"US", state) || IsStateOf(u"CA", state)
                                      : IsStateOf(page_.Region, state);
    };
    const qsizetype open = text.lastIndexOf(u'(');
    if (text.endsWith(u')') && open > 2)
        return isState(text.sliced(open + 1, text.size() - open - 2).trimmed());
    const qsizetype comma = text.lastIndexOf(u',');
    return comma > 1 && text.first(comma).count(u',') == 0 && isState(text.sliced(comma + 1).trimmed());
}

// Without an address, short texts that the page's headings name or that end in a country may be the towns: "25 lawyers
// in Vancouver", "Porto, Portugal".
void RecordPlaces::ChooseTown(const QString& subject, const std::vector<Lead>& leads) {
    const auto placed = std::count_if(leads.begin(), leads.end(), [](const Lead& lead) {
        return !lead.FullAddress.isEmpty() || !lead.City.isEmpty();
    });
    if (placed * 4 > std::ssize(leads) || subject.isEmpty())
        return;
    int most = static_cast<int>(columns_.Count()) / 2;
    for (size_t i = 0; i < columns_.Columns.size(); ++i) {
        const RecordColumn& column = columns_.Columns[i];
        if (column.IsHeading || ((column.Own | column.Label) & (otherHints | Hint::Name)) != 0 || column.Digits > 0.4 ||
            column.Length > 40 || column.Length < 2 || column.Buttons > 0.2 || column.Filled <= most)
            continue;
        int named = 0;
        int trades = 0;
        for (const NodeIndex node : column.Nodes) {
            const QString text = node == noNode ? QString() : columns_.TextOf(node);
            const QString words = BareWords(text);
            named += words.size() >= 2 && (subject.contains(words) || IsTownWithRegion(text));
            trades += NamesBusinesses(words);
        }
        if (named > most && trades * 4 < named) {
            most = named;
            town_ = static_cast<int>(i);
        }
    }
}

void RecordPlaces::ReadTown(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    const NodeIndex node = town_ < 0 ? noNode : columns_.Columns[static_cast<size_t>(town_)].Nodes[record];
    if (node == noNode || node == name || !lead.FullAddress.isEmpty() || !lead.City.isEmpty())
        return;
    lead.FullAddress = WithoutBasedIn(columns_.TextOf(node));
    nodes[static_cast<size_t>(Field::City)] = node;
    nodes[static_cast<size_t>(Field::FullAddress)] = node;
    if (const qsizetype comma = CommaBeforeCountry(lead.FullAddress); comma > 0) {
        lead.City = lead.FullAddress.first(comma).trimmed();
        lead.Country = lead.FullAddress.sliced(comma + 1).trimmed();
        return;
    }
    if (lead.FullAddress.contains(u',') && IsTownWithRegion(lead.FullAddress)) {
        lead.City = lead.FullAddress.section(u',', 0, 0).trimmed();
        lead.State = lead.FullAddress.section(u',', 1).trimmed();
        return;
    }
    AddressParts parts = SplitAddress(lead.FullAddress, page_.Country);
    if (parts.City.isEmpty()) { // "Salem, OR" says so itself
        AddressHints states;
        states.Country = u"US"_s;
        parts = SplitAddress(lead.FullAddress, states);
    }
    lead.City = parts.City.isEmpty() ? lead.FullAddress : parts.City;
    if (!parts.City.isEmpty())
        lead.State = parts.State;
}

} // namespace Brindle
