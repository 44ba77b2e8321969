#include "adapters/ListingSteps.h"

#include "toolkit/Text.h"

namespace Brindle {

void StartListing(Lead& lead) {
    QString category = std::move(lead.Category);
    lead = Lead{};
    lead.Category = std::move(category);
}

void RememberCategory(Harvest& harvest, const QString& category) {
    if (TrimmedView(harvest.State.MainCategory).isEmpty())
        harvest.State.MainCategory = category;
}

void FallBackOnRemembered(const Harvest& harvest, QString& category) {
    if (TrimmedView(category).isEmpty())
        category = harvest.State.MainCategory;
}

void AppendWord(QString& text, QStringView word) {
    // Both ends of the text are trimmed already, so only the new piece can bring something to trim.
    if (text.isEmpty()) {
        text = Trim(word);
        return;
    }
    text += u' ';
    text += word;
    while (text.back().unicode() <= 0x20)
        text.chop(1);
}

QString KeptBefore(const QString& text, QStringView marker) {
    const qsizetype at = text.indexOf(marker);
    return at < 0 ? text : Trim(QStringView(text).first(at));
}

} // namespace Brindle
