#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"
#include "toolkit/Marker.h"
#include "toolkit/WorkingText.h"

#include <QString>

#include <span>

namespace Brindle {

// The steps that all directories share. An adapter reads the fields of a listing; what then happens to the lead is the
// same everywhere but for the few differences in `ListingRules`.

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

/// Clears the lead for the next listing; the category is that of the page and stays.
void StartListing(Lead& lead);

/// The harvest remembers the category when it has none yet.
void RememberCategory(Harvest& harvest, const QString& category);
/// A category that is blank becomes the one that the harvest remembers.
void FallBackOnRemembered(const Harvest& harvest, QString& category);

/// The text up to the first occurrence of `marker`, trimmed; without the marker the text as it is.
QString KeptBefore(const QString& text, QStringView marker);

/// Appends a blank and the word, then trims the whole.
void AppendWord(QString& text, QStringView word);

/// Calls `readListing` while the page holds a listing and no stop was requested; ends after a round that did not move
/// the working text. `hasListing` and `readListing` are called without arguments; `readListing` returns false to leave
/// the page.
template <typename HasListing, typename ReadListing>
void ForEachListing(const Harvest& harvest, const WorkingText& page, HasListing hasListing, ReadListing readListing) {
    while (!harvest.ShouldStop() && hasListing()) {
        const qsizetype before = page.Position();
        if (!readListing() || page.Position() == before)
            return;
    }
}

/// A cut whose value is not wanted: only the cursor moves.
inline void Skip(WorkingText& text, const Marker& begin, const Marker& end) {
    text.TakeBetween(begin, end);
}

} // namespace Brindle
