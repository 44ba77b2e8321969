#include "adapters/FieldTable.h"

#include "adapters/ListingSteps.h"
#include "toolkit/Markup.h"

namespace Brindle {

void ReadFields(WorkingText& text, std::span<const FieldRow> rows, Lead& lead, const Marker* nextListing) {
    bool applies = false;
    for (const FieldRow& row : rows) {
        if (row.FromStart)
            text.MoveTo(0);
        if (!row.AsAbove) {
            const Marker& test = row.Test.IsEmpty() ? row.From : row.Test;
            applies = nextListing ? text.Belongs(test, *nextListing) : text.Contains(test);
        }
        if (!applies)
            continue;
        if (!row.Via.IsEmpty())
            Skip(text, row.From, row.Via);
        const QStringView cut = text.TakeBetween(row.Via.IsEmpty() ? row.From : row.Via, row.To);
        if (!row.Target)
            continue;
        QString& value = lead.*row.Target;
        value = row.Treatment ? row.Treatment(cut) : cut.toString();
        if (row.Separator) {
            if (!row.OnlyBetween || !lead.FullAddress.isEmpty())
                lead.FullAddress += *row.Separator;
            lead.FullAddress += value;
        }
    }
}

QString CleanAndStrip(QStringView text) {
    return StripTags(CleanMarkup(text));
}

QString StripAndClean(QStringView text) {
    return CleanMarkup(StripTags(text));
}

} // namespace Brindle
