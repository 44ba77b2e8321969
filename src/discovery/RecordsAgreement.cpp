// What the addresses of a list's records have in common tells of the ones that say little by themselves.
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsPlaceText.h"
#include "discovery/RecordsPlaces.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t fullField = static_cast<size_t>(Field::FullAddress);

bool HasAddress(const Lead& lead) {
    return !lead.FullAddress.isEmpty();
}

void DropAddress(Lead& lead, std::array<NodeIndex, FieldCount>& nodes) {
    for (QString* const part : {&lead.FullAddress, &lead.Street, &lead.City, &lead.State, &lead.PostalCode})
        part->clear();
    nodes[fullField] = noNode;
}

// Whether a text is written as names are, not as a sentence.
bool ReadsAsNames(QStringView text) {
    int small = 0;
    int large = 0;
    for (qsizetype at = 0; at < text.size(); ++at)
        if (text[at].isLetter() && (at == 0 || text[at - 1].isSpace()))
            ++(text[at].isLower() ? small : large);
    return small <= 2 && small < large && !text.contains(u". ");
}

// The last of the parts of an address, and where it begins; empty when it has one part only.
QStringView LastPart(QStringView full) {
    qsizetype at = full.size();
    while (at > 0 && !IsAmong(full[at - 1], u",\u2022\u00B7|"))
        --at;
    return at > 1 ? full.sliced(at).trimmed() : QStringView();
}

} // namespace

void RecordPlaces::AgreeOnAddresses(const RecordNames& names, std::vector<Lead>& leads,
                                    std::vector<std::array<NodeIndex, FieldCount>>& nodes) const {
    const auto filled = std::count_if(leads.begin(), leads.end(), HasAddress);
    // One text in many that sounds like a street is none: "As featured in The Food Trail".
    if (leads.size() >= 10 && filled * 8 < std::ssize(leads)) {
        for (size_t record = 0; record < leads.size(); ++record)
            if (leads[record].PostalCode.isEmpty() && leads[record].Phone.isEmpty())
                DropAddress(leads[record], nodes[record]);
        return;
    }
    if (filled < 4 || filled * 10 < std::ssize(leads) * 6)
        return;
    FillFromPlace(names, leads, nodes);
    AgreeOnTowns(leads);
}

// Where nearly all records have their address, the others have theirs: "Main St & Elm Ave", "Rose Cottage".
void RecordPlaces::FillFromPlace(const RecordNames& names, std::vector<Lead>& leads,
                                 std::vector<std::array<NodeIndex, FieldCount>>& nodes) const {
    // The element of a whole record holds more than its address.
    struct Place {
        int Times = 0;
        int Firsts = 0; // the address is what the element begins with
    };
    QHash<quint64, Place> places;
    int seen = 0;
    for (size_t record = 0; record < leads.size(); ++record) {
        const NodeIndex node = nodes[record][fullField];
        if (node == noNode || node <= columns_.List.Records[record].Begin)
            continue;
        ++seen;
        Place& place = places[columns_.PlaceOf(node, columns_.List.Records[record])];
        ++place.Times;
        const QStringView text = columns_.ViewOf(node);
        place.Firsts +=
            !text.isEmpty() && leads[record].FullAddress.startsWith(text.first(std::min<qsizetype>(4, text.size())));
    }
    const auto most = std::max_element(places.cbegin(), places.cend(),
                                       [](const Place& one, const Place& other) { return one.Times < other.Times; });
    if (most == places.cend() || most->Times * 10 < seen * 8 || most->Firsts * 10 < most->Times * 9)
        return;
    for (size_t record = 0; record < leads.size(); ++record) {
        Lead& lead = leads[record];
        if (HasAddress(lead))
            continue;
        const RecordRange& range = columns_.List.Records[record];
        const NodeIndex name = names.NodeOf(record);
        for (NodeIndex node = range.Begin + 1; node < range.End; ++node) {
            if (!page_.Page.IsElement(node) || columns_.PlaceOf(node, range) != most.key())
                continue;
            const QString text = AddressAt(node, name);
            if (text.isEmpty())
                continue;
            lead.FullAddress = text;
            nodes[record][fullField] = node;
            const AddressParts parts = SplitAddress(text, page_.Country);
            FillPart(lead.Street, parts.Street);
            FillPart(lead.City, parts.City);
            FillPart(lead.State, parts.State);
            FillPart(lead.PostalCode, parts.PostalCode);
            break;
        }
    }
}

// The first line of an element, when it may be an address.
QString RecordPlaces::AddressAt(NodeIndex node, NodeIndex name) const {
    const QStringView text = columns_.ViewOf(node);
    const auto letters = std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
    if (letters < 4 || text.size() > 120 || (name != noNode && name >= node && name < page_.Page.End(node)) ||
        !(text.front().isUpper() || text.front().isDigit()) || text.endsWith(u'.') || text.contains(u'@') ||
        text.contains(u"://") || text.contains(u"www.") || HasPrice(text) || IsHours(text) || IsAside(text) ||
        IsTrade(text) || LabelAtBegin(text).Length > 0 || HintsOfLabel(text) != 0 ||
        IsButtonText(BareView(text).View()) || text.count(u' ') > 12 ||
        !(HasDigit(text) || text.contains(u',') || HasStreetWord(text)) || !ReadsAsNames(text))
        return {};
    const auto first = static_cast<size_t>(page_.Lines.PieceFrom(node));
    for (size_t i = first;
         i < page_.Lines.Pieces.size() && page_.Lines.Pieces[i].Line == page_.Lines.Pieces[first].Line; ++i)
        if (page_.FactsOf(page_.Lines.Pieces[i].Node).Phones > 0)
            return {};
    return Tidy(text.toString());
}

// Addresses of one list are written alike: where nearly all end in their town, the others do.
void RecordPlaces::AgreeOnTowns(std::vector<Lead>& leads) const {
    // Or are streets and nothing else.
    const auto isStreet = [](const Lead& lead) { return HasAddress(lead) && lead.Street == lead.FullAddress; };
    if (std::count_if(leads.begin(), leads.end(), isStreet) * 5 >= std::ssize(leads) * 4)
        for (Lead& lead : leads)
            if (lead.Street.isEmpty() && lead.PostalCode.isEmpty() && !lead.FullAddress.contains(u',') &&
                HasDigit(lead.FullAddress))
                lead.Street = lead.FullAddress;
    int towns = 0;
    int others = 0;
    for (const Lead& lead : leads)
        if (const QStringView last = LastPart(lead.FullAddress); !last.isEmpty() && !lead.City.isEmpty())
            ++(last == lead.City ? towns : others);
    if (towns < 3 || others * 4 > towns)
        return;
    for (Lead& lead : leads) {
        const QStringView last = LastPart(lead.FullAddress);
        if (last.size() < 3 || !lead.City.isEmpty() || !lead.PostalCode.isEmpty() || HasDigit(last) ||
            !last.front().isUpper() || IsStateOf(page_.Region, last))
            continue;
        if (!lead.Street.isEmpty() && lead.Street.contains(last))
            lead.Street.clear();
        const QStringView rest = QStringView(lead.FullAddress).chopped(last.size());
        FillPart(lead.Street, Tidy(rest.toString()));
        lead.City = last.toString();
    }
}

} // namespace Brindle
