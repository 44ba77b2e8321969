#pragma once

#include "core/Harvest.h"
#include "core/KeepLead.h"
#include "core/Lead.h"
#include "toolkit/Marker.h"
#include "toolkit/WorkingText.h"

#include <QString>

#include <span>

namespace Brindle {

// The steps that readers by markers share.

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
