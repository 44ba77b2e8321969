#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"

#include <QString>
#include <QStringView>

namespace Brindle {

/// What differs between the directories once the fields of a listing are read.
struct ListingRules {
    QStringView Country{};              ///< country of every lead; empty: each lead has its own
    QStringView MapCountry{};           ///< the country's name in a map query; empty: as above
    bool DropsOddWebsites = false;      ///< a website that does not begin with "http" is cleared
    bool DropsEmptyParentheses = false; ///< a full address "()" is cleared
    bool CleansCategory = false;        ///< the search form's markup is removed from the category
    bool CleansPhone = false;           ///< the phone type's markup is removed from the phone
    bool CountsExtracted = false;       ///< leads count as extracted
    bool KeyedByBusiness = false;       ///< duplicates are told by the business, also among leads that are saved
};

/// Whether the lead's details link is that of a lead in the results list; the listing then is passed over. An empty
/// link is held when an empty key is.
bool IsListed(Harvest& harvest, const QString& detailsLink);

/// The duplicate key of a lead; empty for one that no other can be a duplicate of.
QString LeadKey(const ListingRules& rules, const Lead& lead);

/// Whether a lead of this key is in the results list, or was saved by this harvest.
bool IsKnown(const Harvest& harvest, const QString& key);

/// What remains to be done once the fields of a listing are read: stop test, name and duplicate tests, e-mail search on
/// the business's website, map link, clean-up, counting, saving or listing, list count in the status bar. False when
/// the adapter must leave the page because a stop was requested.
///
/// When the lead cannot be saved, the harvest is stopped, the user told, and the lead put into the results list.
bool KeepLead(Harvest& harvest, const ListingRules& rules, Lead& lead);

} // namespace Brindle
