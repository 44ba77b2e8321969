#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"

#include <QString>
#include <QStringView>

namespace Brindle {

/// What differs between the directories once the fields of a listing are read.
struct ListingRules {
    QStringView Country;                ///< country of every lead
    QStringView MapCountry;             ///< the country's name in a map query
    bool DropsOddWebsites = false;      ///< a website that does not begin with "http" is cleared
    bool DropsEmptyParentheses = false; ///< a full address "()" is cleared
    bool CleansCategory = false;        ///< the search form's markup is removed from the category
    bool CleansPhone = false;           ///< the phone type's markup is removed from the phone
    bool CountsExtracted = false;       ///< leads count as extracted
};

/// Whether the lead's details link is that of a lead in the results list; the listing then is passed over. An empty
/// link is held when an empty key is.
bool IsListed(Harvest& harvest, const QString& detailsLink);

/// What remains to be done once the fields of a listing are read: stop test, name and duplicate tests, e-mail search on
/// the business's website, map link, clean-up, counting, saving or listing, list count in the status bar. False when
/// the adapter must leave the page because a stop was requested.
///
/// When the lead cannot be saved, the harvest is stopped, the user told, and the lead put into the results list.
bool KeepLead(Harvest& harvest, const ListingRules& rules, Lead& lead);

} // namespace Brindle
