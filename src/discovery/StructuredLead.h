#pragma once

#include "core/Lead.h"
#include "discovery/SchemaKinds.h"
#include "discovery/StructuredItems.h"
#include "discovery/StructuredText.h"

#include <QHash>
#include <QVarLengthArray>

#include <array>

namespace Brindle {

/// The parts of a lead's address in one line; empty when it has none.
QString ComposedAddress(const Lead& lead);

/// Makes leads of a page's items. It keeps references to all that it is given.
class StructuredLead {
public:
    StructuredLead(const PageTree& page, const QString& url, const StructuredItems& items);

    /// `MeaningOf`, remembered by the name.
    SchemaProperty Meaning(const QString& name);
    /// What an item's types say; good until the next call.
    const KnownTypes::Meaning& TypesOf(int item) { return types_.Of(items_.At(item).Types); }

    /// What an item says of a business or person. `categoryIsOfType`: the category is only what its type says.
    Lead LeadOf(int item, bool& categoryIsOfType);
    /// Name and link of an entry that holds no item.
    Lead LinkOf(int entry);
    /// Adds what an entry says of the item that it holds, where the item does not say it.
    void AddLinkOfEntry(int entry, Lead& lead);
    /// Adds a link as that to the details or to the website, where there is none yet.
    void AddLink(QStringView href, Lead& lead) const;
    /// The place in its list that an entry tells, from 1; 0 for none.
    int PositionOf(int entry);
    /// Whether the item says something in that way.
    bool Holds(int item, SchemaProperty means);
    /// Whether the item is somewhere: it has an address.
    bool IsLocal(int item) const;

private:
    using Values = QVarLengthArray<const StructuredProperty*, 1>;
    using Meanings = std::array<Values, static_cast<size_t>(SchemaProperty::Owner) + 1>;

    Meanings MeaningsOf(int item);
    static const Values& Of(const Meanings& says, SchemaProperty means) { return says[static_cast<size_t>(means)]; }

    QString ValueText(const StructuredProperty& value, int depth = 0);
    QString FirstText(const Values& values);
    QString Joined(const Values& values, QStringView separator);
    QString PhoneOf(const StructuredProperty& value, bool& isFax);
    void AddPhones(const Values& values, bool areFaxes, Lead& lead);
    void AddEmails(const Values& values, Lead& lead);
    void AddAddress(const Values& values, Lead& lead);
    void AddAddressParts(const Meanings& says, Lead& lead);
    void AddContacts(const Meanings& says, Lead& lead);
    bool IsOfPageSite(const QString& address) const;
    void AddLinks(int item, const Meanings& says, Lead& lead);
    void AddLinkOfName(int item, const Meanings& says, Lead& lead) const;

    const PageTree& page_;
    const QString& url_;
    QString base_;
    QString host_; // of the page
    const StructuredItems& items_;
    StructuredText text_;
    QHash<QString, SchemaProperty> meanings_;
    KnownTypes types_;
};

} // namespace Brindle
