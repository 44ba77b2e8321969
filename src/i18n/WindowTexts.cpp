#include "i18n/WindowTexts.h"

#include "toolkit/WorkingText.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Row {
    WindowText Text;
    const char16_t* Name;
    const char16_t* English;
};

constexpr auto count = static_cast<size_t>(WindowText::Count);

constexpr std::array<Row, count> rows{{
    {WindowText::HarvestCounts, u"HarvestCounts", u"[VAR1]   pages: [VAR2]   leads: [VAR3]"},
    {WindowText::HarvestReadsPage, u"HarvestReadsPage", u"reading the page"},
    {WindowText::HarvestWaitsForResults, u"HarvestWaitsForResults", u"waiting for a results page: [VAR1]"},
    {WindowText::HarvestLoadsNextPage, u"HarvestLoadsNextPage", u"waiting for the next page"},
    {WindowText::HarvestPageGivenUp, u"HarvestPageGivenUp", u"[VAR1] could not be read to its end: [VAR2]"},
    {WindowText::HarvestGivenUpCount, u"HarvestGivenUpCount", u"given up: [VAR1]"},
    {WindowText::HarvestGoesRound, u"HarvestGoesRound",
     u"The harvest has ended because the result pages go round in a circle: [VAR1]"},
    {WindowText::NoAddress, u"NoAddress", u"\u201C[VAR1]\u201D is no address of a page."},
    {WindowText::CannotOpen, u"CannotOpen", u"This cannot be opened in the browser: \u201C[VAR1]\u201D"},
    {WindowText::DownloadRefused, u"DownloadRefused", u"Nothing is downloaded here: [VAR1]"},
    {WindowText::Reload, u"Reload", u"Reload"},
    {WindowText::CloseNotice, u"CloseNotice", u"Close this notice"},
    {WindowText::NoUpdateAddress, u"NoUpdateAddress",
     u"No update address is configured ([publisher] updates in sites.ini)."},
    {WindowText::ProxyHint, u"ProxyHint",
     u"The start pages of websites and secure pages may be fetched directly, without the proxy."},
    {WindowText::CancelExport, u"CancelExport", u"Cancel"},
}};

const Row& RowOf(WindowText text) {
    return rows.at(static_cast<size_t>(text));
}

static_assert([] {
    for (size_t i = 0; i < count; ++i)
        if (rows.at(i).Text != static_cast<WindowText>(i))
            return false;
    return true;
}());

} // namespace

WindowTexts::WindowTexts() {
    Load({});
}

void WindowTexts::Load(const QString& languageText) {
    for (const Row& row : rows) {
        const QString tag = u"text-"_s + QString::fromUtf16(row.Name);
        WorkingText file(languageText);
        const QString found = file.ExtractBetween(QString(u'<' + tag + u'>'), QString(u"</" + tag + u'>')).toString();
        texts_.at(static_cast<size_t>(row.Text)) = found.isEmpty() ? QString::fromUtf16(row.English) : found;
    }
}

QString WindowTexts::With(WindowText text, const QStringList& values) const {
    // In one pass: a value may hold what looks like a placeholder.
    QString result;
    const QString& source = Text(text);
    for (qsizetype at = 0; at < source.size();) {
        const QStringView rest = QStringView(source).sliced(at);
        const bool placeholder =
            rest.size() >= 6 && rest.startsWith(u"[VAR") && rest[4] >= u'1' && rest[4] <= u'9' && rest[5] == u']';
        result += placeholder ? values.value(rest[4].digitValue() - 1) : rest.first(1).toString();
        at += placeholder ? 6 : 1;
    }
    return result;
}

QString WindowTexts::Name(WindowText text) {
    return QString::fromUtf16(RowOf(text).Name);
}

QString WindowTexts::English(WindowText text) {
    return QString::fromUtf16(RowOf(text).English);
}

} // namespace Brindle
