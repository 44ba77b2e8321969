#include "discovery/StructuredLead.h"

#include "discovery/NextPage.h"
#include "discovery/StructuredLinks.h"
#include "toolkit/Marker.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestValue = 1000; // characters; what is longer is no field of a lead
constexpr size_t mostValues = 12;        // of one property of an item
constexpr QStringView separator = u";";

// Pages that speak of a business and are not its own.
constexpr QStringView networks[] = {
    u"facebook.com",  u"twitter.com", u"x.com",         u"instagram.com", u"linkedin.com", u"youtube.com",
    u"pinterest.com", u"tiktok.com",  u"wikipedia.org", u"wikidata.org",  u"yelp.com",     u"foursquare.com",
    u"t.me",          u"threads.net", u"google.com",    u"vk.com",        u"flickr.com",   u"tumblr.com",
    u"snapchat.com",  u"bsky.app",    u"wa.me",         u"xing.com",      u"vimeo.com"};

bool IsNetwork(const QString& address) {
    return std::any_of(std::begin(networks), std::end(networks),
                       [&](QStringView network) { return IsSameSite(address, QString(u"https://"_s + network)); });
}

// Texts of scripts are often written as markup: "Joe&#39;s &amp; Sons", "12 High St.<br>Leeds".
bool HasMarkup(QStringView text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        const QChar next = text[i + 1];
        if ((text[i] == u'&' && (next == u'#' || next.isLetter())) ||
            (text[i] == u'<' && (next == u'/' || next.isLetter())))
            return true;
    }
    return false;
}

QString WithoutMarkup(const QString& text) {
    const PageTree tree(text);
    return tree.Body() == noNode ? QString() : StructuredText(tree).Of(tree.Body());
}

qsizetype DigitsIn(QStringView text) {
    return std::count_if(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

bool SaysFax(QStringView text) {
    static constexpr Marker fax(u"fax");
    return fax.FindFolded(text, 0) >= 0;
}

// Adds a part behind the others, unless it is there.
void AddPart(QString& parts, QStringView part, QStringView between) {
    if (part.isEmpty())
        return;
    if (!parts.isEmpty())
        parts += between;
    parts += part;
}

// Whether a postal code stands behind the town, as those of the British Isles do ("SW9 9SL", "D02 X285").
bool StandsBehindTown(QStringView postalCode) {
    return !postalCode.isEmpty() && postalCode[0].isLetter() && !postalCode.contains(u'-') &&
           DigitsIn(postalCode.first(std::min(postalCode.size(), qsizetype{4}))) > 0;
}

} // namespace

// Where there is a state, the postal code stands behind it.
QString ComposedAddress(const Lead& lead) {
    QString town;
    QString address;
    address.reserve(lead.Street.size() + lead.City.size() + lead.State.size() + lead.PostalCode.size() + 6);
    address += lead.Street;
    if (lead.State.isEmpty()) {
        const bool behind = StandsBehindTown(lead.PostalCode);
        AddPart(town, behind ? lead.City : lead.PostalCode, u" ");
        AddPart(town, behind ? lead.PostalCode : lead.City, u" ");
        AddPart(address, town, u", ");
    } else {
        AddPart(town, lead.State, u" ");
        AddPart(town, lead.PostalCode, u" ");
        AddPart(address, lead.City, u", ");
        AddPart(address, town, u", ");
    }
    return address;
}

StructuredLead::StructuredLead(const PageTree& page, const QString& url, const StructuredItems& items)
    : page_(page), url_(url), base_(BaseAddressOf(page, url)), host_(HostOfAddress(url)), items_(items), text_(page) {}

SchemaProperty StructuredLead::Meaning(const QString& name) {
    const auto known = meanings_.constFind(name);
    return known != meanings_.cend() ? *known : *meanings_.insert(name, MeaningOf(name));
}

StructuredLead::Meanings StructuredLead::MeaningsOf(int item) {
    Meanings says;
    for (const StructuredProperty& property : items_.At(item).Properties) {
        const SchemaProperty means = Meaning(property.Name);
        Values& values = says[static_cast<size_t>(means)];
        // A value within one of the same name is what was meant, where somebody forgot to close an element.
        if (!values.empty() && items_.At(item).In != Notation::JsonLd && values.back()->Node != property.Node &&
            page_.Contains(values.back()->Node, property.Node))
            values.back() = &property;
        else if (static_cast<size_t>(values.size()) < mostValues)
            values.push_back(&property);
    }
    return says;
}

QString StructuredLead::ValueText(const StructuredProperty& value, int depth) {
    QString text = value.Text;
    if (value.Item >= 0) {
        // A country, a region, an organisation as an item: its name.
        text.clear();
        if (depth < 2) {
            const Meanings says = MeaningsOf(value.Item);
            for (const SchemaProperty means :
                 {SchemaProperty::Name, SchemaProperty::WholeText, SchemaProperty::OtherName})
                for (const StructuredProperty* inner : Of(says, means))
                    if (text.isEmpty())
                        text = ValueText(*inner, depth + 1);
        }
        if (text.isEmpty())
            text = value.Text;
    }
    if (text.size() > longestValue)
        return {};
    if (HasMarkup(text))
        text = WithoutMarkup(text);
    return WithLevelBlanks(text);
}

QString StructuredLead::FirstText(const Values& values) {
    for (const StructuredProperty* value : values)
        if (QString text = ValueText(*value); !text.isEmpty())
            return text;
    return {};
}

QString StructuredLead::Joined(const Values& values, QStringView between) {
    QStringList texts;
    for (const StructuredProperty* value : values)
        if (QString text = ValueText(*value); !text.isEmpty() && !texts.contains(text))
            texts.append(std::move(text));
    return texts.join(between);
}

QString StructuredLead::PhoneOf(const StructuredProperty& value, bool& isFax) {
    QString text = ValueText(value);
    if (StartsWithFolded(text, u"tel:") || StartsWithFolded(text, u"fax:")) {
        // The link is for machines; the text beside it is how the business writes its number.
        const bool isElement = value.Node != noNode && page_.Is(value.Node, u"a");
        const QString shown = isElement ? text_.Of(value.Node) : QString();
        text.remove(0, 4);
        const qsizetype parameters = text.indexOf(u';');
        if (parameters >= 0)
            text.truncate(parameters);
        text = WithLevelBlanks(QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8())));
        if (DigitsIn(shown) >= std::max(qsizetype{5}, DigitsIn(text) - 4))
            text = shown;
    }
    isFax = isFax || SaysFax(text);
    // A card marks the sort of a number beside it.
    if (value.Node != noNode && value.Item < 0 && !items_.Items.empty() && page_.IsElement(value.Node)) {
        for (NodeIndex node = value.Node + 1; node < page_.End(value.Node) && text_.Spend(1); ++node)
            if (page_.IsElement(node) && page_.Attribute(node, u"class") == u"type")
                isFax = isFax || SaysFax(text_.Of(node));
    }
    // What stands before the number is a label: "Tel.: 0123".
    const auto isBegin = [](QChar c) { return c.isDigit() || c == u'+' || c == u'('; };
    const auto begin = std::find_if(text.cbegin(), text.cend(), isBegin);
    text.remove(0, begin - text.cbegin());
    return DigitsIn(text) >= 3 ? text : QString();
}

void StructuredLead::AddPhones(const Values& values, bool areFaxes, Lead& lead) {
    for (const StructuredProperty* value : values) {
        bool isFax = areFaxes;
        const QString phone = PhoneOf(*value, isFax);
        QString& field = isFax ? lead.Fax : lead.Phone;
        if (field.isEmpty() || !QStringView(field).split(separator).contains(phone))
            AddPart(field, phone, separator);
    }
}

void StructuredLead::AddEmails(const Values& values, Lead& lead) {
    for (const StructuredProperty* value : values) {
        const QString email = MailAddress(ValueText(*value));
        if (!QStringView(lead.Email).split(separator).contains(email))
            AddPart(lead.Email, email, separator);
    }
}

void StructuredLead::AddAddressParts(const Meanings& says, Lead& lead) {
    lead.Street = Joined(Of(says, SchemaProperty::Street), u", ");
    if (const QString more = Joined(Of(says, SchemaProperty::StreetMore), u", "); !lead.Street.contains(more))
        AddPart(lead.Street, more, u", ");
    if (lead.Street.isEmpty())
        lead.Street = FirstText(Of(says, SchemaProperty::PostOfficeBox));
    lead.City = FirstText(Of(says, SchemaProperty::City));
    lead.State = FirstText(Of(says, SchemaProperty::State));
    lead.PostalCode = FirstText(Of(says, SchemaProperty::PostalCode));
    lead.Country = FirstText(Of(says, SchemaProperty::Country));
    lead.FullAddress = ComposedAddress(lead);
}

void StructuredLead::AddAddress(const Values& values, Lead& lead) {
    for (const StructuredProperty* value : values) {
        if (!lead.FullAddress.isEmpty())
            return;
        if (value->Item < 0) {
            lead.FullAddress = ValueText(*value);
            continue;
        }
        const Meanings says = MeaningsOf(value->Item);
        AddAddressParts(says, lead);
        if (lead.FullAddress.isEmpty())
            lead.FullAddress = FirstText(Of(says, SchemaProperty::WholeText));
        if (lead.FullAddress.isEmpty())
            lead.FullAddress = FirstText(Of(says, SchemaProperty::Name));
        if (lead.Phone.isEmpty())
            AddPhones(Of(says, SchemaProperty::Telephone), false, lead);
    }
}

// A contact point or place speaks for the business where it says nothing itself.
void StructuredLead::AddContacts(const Meanings& says, Lead& lead) {
    for (const SchemaProperty means : {SchemaProperty::Location, SchemaProperty::ContactPoint}) {
        for (const StructuredProperty* value : Of(says, means)) {
            if (value->Item < 0) {
                if (means == SchemaProperty::Location && lead.FullAddress.isEmpty())
                    lead.FullAddress = ValueText(*value);
                continue;
            }
            const Meanings inner = MeaningsOf(value->Item);
            if (lead.FullAddress.isEmpty())
                AddAddress(Of(inner, SchemaProperty::Address), lead);
            if (lead.FullAddress.isEmpty())
                AddAddressParts(inner, lead);
            if (lead.Phone.isEmpty())
                AddPhones(Of(inner, SchemaProperty::Telephone), false, lead);
            if (lead.Fax.isEmpty())
                AddPhones(Of(inner, SchemaProperty::Fax), true, lead);
            if (lead.Email.isEmpty())
                AddEmails(Of(inner, SchemaProperty::Email), lead);
        }
    }
}

bool StructuredLead::IsOfPageSite(const QString& address) const {
    // Mostly the very same host.
    const qsizetype host = address.indexOf(u"://") + 3;
    QStringView begin = QStringView(address).sliced(std::min(host, address.size()));
    if (begin.startsWith(u"www."))
        begin = begin.sliced(4);
    if (host > 3 && !host_.isEmpty() && begin.size() > host_.size() && begin[host_.size()] == u'/' &&
        begin.startsWith(host_))
        return true;
    return IsSameHost(HostOfAddress(address), host_);
}

void StructuredLead::AddLink(QStringView href, Lead& lead) const {
    const QString address = WebAddress(base_, href);
    if (address.isEmpty() || address.size() > 2 * longestValue)
        return;
    if (!IsOfPageSite(address)) {
        if (lead.Website.isEmpty())
            lead.Website = address;
    } else if (lead.DetailsLink.isEmpty() && WithoutFragment(address) != WithoutFragment(url_)) {
        lead.DetailsLink = address;
    }
}

void StructuredLead::AddLinks(int item, const Meanings& says, Lead& lead) {
    for (const StructuredProperty* value : Of(says, SchemaProperty::Url))
        AddLink(value->Item < 0 ? value->Text : items_.At(value->Item).Id, lead);
    const QString& id = items_.At(item).Id;
    // A name that is an address of the site is often that of the details; elsewhere it is only a name.
    if (const QString address = id.contains(u'/') ? WebAddress(base_, id) : QString();
        !address.isEmpty() && IsOfPageSite(address))
        AddLink(WithoutFragment(address), lead);
    if (lead.Website.isEmpty()) {
        for (const StructuredProperty* value : Of(says, SchemaProperty::SameAs)) {
            const QString address = WebAddress(base_, value->Text);
            if (lead.Website.isEmpty() && !address.isEmpty() && !IsSameHost(HostOfAddress(address), host_) &&
                !IsNetwork(address))
                lead.Website = address;
        }
    }
    for (const StructuredProperty* value : Of(says, SchemaProperty::Map)) {
        QString href = value->Text;
        if (value->Item >= 0) {
            const Values urls = Of(MeaningsOf(value->Item), SchemaProperty::Url);
            href = urls.empty() ? items_.At(value->Item).Id : urls.front()->Text;
        }
        if (lead.MapLink.isEmpty())
            lead.MapLink = WebAddress(base_, href);
    }
    if (lead.DetailsLink.isEmpty())
        AddLinkOfName(item, says, lead);
}

// A name that is a link leads to the details, although nobody wrote so.
void StructuredLead::AddLinkOfName(int item, const Meanings& says, Lead& lead) const {
    if (Of(says, SchemaProperty::Name).empty() || items_.At(item).In == Notation::JsonLd)
        return;
    const NodeIndex name = Of(says, SchemaProperty::Name).front()->Node;
    const NodeIndex own = items_.At(item).Node;
    Lead found;
    for (NodeIndex node = name, steps = 0; node != noNode && node != own && steps < 8; ++steps) {
        if (page_.Is(node, u"a"))
            AddLink(page_.Attribute(node, u"href"), found);
        node = page_.Parent(node);
    }
    for (NodeIndex node = name; node < std::min(page_.End(name), name + 32) && found.DetailsLink.isEmpty(); ++node)
        if (page_.Is(node, u"a"))
            AddLink(page_.Attribute(node, u"href"), found);
    lead.DetailsLink = found.DetailsLink;
}

Lead StructuredLead::LeadOf(int item, bool& categoryIsOfType) {
    const Meanings says = MeaningsOf(item);
    Lead lead;
    lead.Name = FirstText(Of(says, SchemaProperty::Name));
    if (lead.Name.isEmpty())
        lead.Name = FirstText(Of(says, SchemaProperty::OtherName));
    AddAddress(Of(says, SchemaProperty::Address), lead);
    if (lead.FullAddress.isEmpty())
        AddAddressParts(says, lead); // written into the item itself
    AddPhones(Of(says, SchemaProperty::Telephone), false, lead);
    AddPhones(Of(says, SchemaProperty::Fax), true, lead);
    AddEmails(Of(says, SchemaProperty::Email), lead);
    AddContacts(says, lead);
    AddLinks(item, says, lead);
    lead.Category = Joined(Of(says, SchemaProperty::Category), u", ");
    categoryIsOfType = lead.Category.isEmpty();
    if (categoryIsOfType)
        lead.Category = TypesOf(item).Trade;
    return lead;
}

Lead StructuredLead::LinkOf(int entry) {
    const Meanings says = MeaningsOf(entry);
    Lead lead;
    lead.Name = FirstText(Of(says, SchemaProperty::Name));
    AddLinks(entry, says, lead);
    return lead;
}

void StructuredLead::AddLinkOfEntry(int entry, Lead& lead) {
    const Lead said = LinkOf(entry);
    if (lead.DetailsLink.isEmpty())
        lead.DetailsLink = said.DetailsLink;
    if (lead.Name.isEmpty())
        lead.Name = said.Name;
}

int StructuredLead::PositionOf(int entry) {
    const QString text = FirstText(Of(MeaningsOf(entry), SchemaProperty::Position));
    return std::max(0, text.toInt());
}

bool StructuredLead::Holds(int item, SchemaProperty means) {
    return std::any_of(items_.At(item).Properties.begin(), items_.At(item).Properties.end(),
                       [&](const StructuredProperty& property) { return Meaning(property.Name) == means; });
}

bool StructuredLead::IsLocal(int item) const {
    const QStringList& types = items_.At(item).Types;
    return std::any_of(types.begin(), types.end(),
                       [](const QString& type) { return LocalName(type) == u"LocalBusiness"; });
}

} // namespace Brindle
