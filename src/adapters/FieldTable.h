#pragma once

#include "core/Lead.h"
#include "toolkit/Marker.h"
#include "toolkit/WorkingText.h"

#include <QString>
#include <QStringView>

#include <optional>
#include <span>

namespace Brindle {

// Where a page is read field by field in the order in which the fields stand on it, the reading is a table: "if this
// marker is here, cut from it to that one, clean, and that is the street, which belongs into the full address".

/// One field of a page, with its texts in it: the test, the cut and what becomes of the value. `CleanMarkup`,
/// `StripTags` and `Trim` are treatments as well as the two below.
struct FieldRow {
    Marker From;                                 ///< the cut begins behind this marker ...
    Marker Via = {};                             ///< ... or behind this one, when there is one: the next after `From`
    Marker To;                                   ///< and ends here
    QString Lead::*Target = nullptr;             ///< null: the cut only moves the cursor
    QString (*Treatment)(QStringView) = nullptr; ///< null: the value is taken as it is
    std::optional<QStringView> Separator = {};   ///< set: the value is appended to the full address behind this text
    bool OnlyBetween = false;                    ///< no separator while the full address is empty
    Marker Test = {};                            ///< marker whose presence decides, when it is not `From`
    bool AsAbove = false;                        ///< no test: the row applies when the row above did
    bool FromStart = false;                      ///< looks on the whole page again, whether it then applies or not
};

/// Reads the fields of a table, row by row; the cursor moves on with each cut. A row applies when its marker occurs in
/// what is left, as it stands; with `nextListing` the marker must also belong to the listing in hand, which is to say
/// that it stands before the next occurrence of that one. The target of a row that does not apply is left alone.
void ReadFields(WorkingText& text, std::span<const FieldRow> rows, Lead& lead, const Marker* nextListing = nullptr);

/// `CleanMarkup`, then `StripTags`.
QString CleanAndStrip(QStringView text);
/// `StripTags`, then `CleanMarkup`.
QString StripAndClean(QStringView text);

} // namespace Brindle
