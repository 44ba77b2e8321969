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
    {WindowText::History, u"History", u"History"},
    {WindowText::HistoryAll, u"HistoryAll", u"All harvests"},
    {WindowText::HistoryOpen, u"HistoryOpen", u"Open in the list"},
    {WindowText::HistoryExport, u"HistoryExport", u"Export"},
    {WindowText::HistoryDelete, u"HistoryDelete", u"Delete harvest"},
    {WindowText::HistoryErase, u"HistoryErase", u"Erase business everywhere"},
    {WindowText::HistoryFind, u"HistoryFind", u"Find:"},
    {WindowText::HistoryFindHint, u"HistoryFindHint", u"beginnings of words, in any field"},
    {WindowText::HistoryOnlyNew, u"HistoryOnlyNew", u"Only new"},
    {WindowText::HistoryDate, u"HistoryDate", u"Date"},
    {WindowText::HistoryDirectory, u"HistoryDirectory", u"Directory"},
    {WindowText::HistorySearch, u"HistorySearch", u"Search"},
    {WindowText::HistoryLeads, u"HistoryLeads", u"Leads"},
    {WindowText::HistoryNew, u"HistoryNew", u"New"},
    {WindowText::HistoryEveryDirectory, u"HistoryEveryDirectory", u"Every directory"},
    {WindowText::HistoryAlways, u"HistoryAlways", u"Any date"},
    {WindowText::HistoryToday, u"HistoryToday", u"Today"},
    {WindowText::HistoryWeek, u"HistoryWeek", u"Last 7 days"},
    {WindowText::HistoryMonth, u"HistoryMonth", u"Last 30 days"},
    {WindowText::HistoryCount, u"HistoryCount", u"Leads found: [VAR1]"},
    {WindowText::HistoryConfirmDelete, u"HistoryConfirmDelete",
     u"Do you really want to delete the harvest of [VAR1] with its leads ([VAR2])?"},
    {WindowText::HistoryConfirmErase, u"HistoryConfirmErase",
     u"Do you really want to erase everything that is kept of \u201C[VAR1]\u201D, in every harvest and in the list of "
     u"results?"},
    {WindowText::OfferLeads, u"OfferLeads", u"Leads of earlier harvests that were not exported: [VAR1]"},
    {WindowText::OfferBringBack, u"OfferBringBack", u"Bring them back"},
    {WindowText::More, u"More", u"More"},
    {WindowText::MoreKeep, u"MoreKeep", u"Keep leads in the history"},
    {WindowText::MoreTarget, u"MoreTarget", u"Store:"},
    {WindowText::MoreTargetHint, u"MoreTargetHint",
     u"A file, or postgresql://user@host/database. Empty: a file in the settings folder."},
    {WindowText::MoreMailServer, u"MoreMailServer", u"Name server:"},
    {WindowText::MoreMailServerHint, u"MoreMailServerHint",
     u"Asked whether a mail domain takes mail, as address:port. Empty: that of the system."},
    {WindowText::Teach, u"Teach", u"Teach\u2026"},
    {WindowText::Mend, u"Mend", u"Mend\u2026"},
    {WindowText::TeachHint, u"TeachHint", u"Show the program what stands where on this page"},
    {WindowText::AnyHarvest, u"AnyHarvest", u"Get Data"},
    {WindowText::PreviousList, u"PreviousList", u"Previous list"},
    {WindowText::NextList, u"NextList", u"Next list"},
    {WindowText::AnySees, u"AnySees", u"[VAR1] businesses: [VAR2]"},
    {WindowText::AnyUnsure, u"AnyUnsure", u"Perhaps a list of [VAR1] businesses (list [VAR2] of [VAR3])"},
    {WindowText::AnySeesNothing, u"AnySeesNothing", u"No list of businesses is seen on this page."},
    {WindowText::AnyOtherWay, u"AnyOtherWay",
     u"This page is not laid out as [VAR1] was. It can be read as any website ([VAR2] businesses), which is another "
     u"way than the directory's own."},
    {WindowText::AnyDrift, u"AnyDrift", u"Not as it was taught: [VAR1]"},
    {WindowText::TeachTitle, u"TeachTitle", u"Teach a directory"},
    {WindowText::TeachPointHint, u"TeachPointHint",
     u"Click a text in the page, or choose one below, and say what it is."},
    {WindowText::TeachFieldColumn, u"TeachFieldColumn", u"Field"},
    {WindowText::TeachFirstColumn, u"TeachFirstColumn", u"First business"},
    {WindowText::TeachFilledColumn, u"TeachFilledColumn", u"Filled"},
    {WindowText::TeachForget, u"TeachForget", u"Not this"},
    {WindowText::TeachTexts, u"TeachTexts", u"&Texts of the first business:"},
    {WindowText::TeachUse, u"TeachUse", u"Use"},
    {WindowText::TeachPointNext, u"TeachPointNext", u"Point at the next page"},
    {WindowText::TeachPointNextHint, u"TeachPointNextHint", u"Click the link to the next page."},
    {WindowText::TeachNoNext, u"TeachNoNext", u"No next page"},
    {WindowText::TeachNextIs, u"TeachNextIs", u"Next page: [VAR1]"},
    {WindowText::TeachNextNone, u"TeachNextNone", u"Next page: none"},
    {WindowText::TeachDetails, u"TeachDetails", u"Read each business's own page too"},
    {WindowText::TeachName, u"TeachName", u"&Name:"},
    {WindowText::TeachSave, u"TeachSave", u"Save"},
    {WindowText::TeachLeave, u"TeachLeave", u"Leave"},
    {WindowText::TeachProposed, u"TeachProposed", u"Proposed by the program"},
    {WindowText::TeachThisIs, u"TeachThisIs", u"This is"},
    {WindowText::TeachIsNext, u"TeachIsNext", u"the next page"},
    {WindowText::TeachIsDetails, u"TeachIsDetails", u"the business's own page"},
    {WindowText::TeachTableName, u"TeachTableName", u"All businesses of this page"},
    {WindowText::TeachNoPage, u"TeachNoPage", u"There is no page to teach."},
    {WindowText::TeachNameFirst, u"TeachNameFirst", u"Point at the name of a business first."},
    {WindowText::TeachNothingLike, u"TeachNothingLike", u"The other businesses have nothing like it there."},
    {WindowText::TeachNoLink, u"TeachNoLink", u"This leads to no other page of the website."},
    {WindowText::TeachLinks, u"TeachLinks", u"&Links of the page:"},
    {WindowText::AnyFewer, u"AnyFewer", u"[VAR1] businesses, were [VAR2]"},
    {WindowText::AnyEmptier, u"AnyEmptier", u"[VAR1] in [VAR2] of [VAR3], was in [VAR4] of [VAR5]"},
    {WindowText::Directories, u"Directories", u"Directories\u2026"},
    {WindowText::DirectoriesTitle, u"DirectoriesTitle", u"Directories"},
    {WindowText::DirectoriesBuiltIn, u"DirectoriesBuiltIn", u"comes with the program"},
    {WindowText::DirectoriesTaught, u"DirectoriesTaught", u"taught"},
    {WindowText::DirectoryRename, u"DirectoryRename", u"Rename\u2026"},
    {WindowText::DirectoryDuplicate, u"DirectoryDuplicate", u"Duplicate"},
    {WindowText::DirectoryEdit, u"DirectoryEdit", u"Edit as text\u2026"},
    {WindowText::DirectoryImport, u"DirectoryImport", u"Import\u2026"},
    {WindowText::DirectoryExport, u"DirectoryExport", u"Export\u2026"},
    {WindowText::DirectoryDelete, u"DirectoryDelete", u"Delete"},
    {WindowText::DirectoryClose, u"DirectoryClose", u"Close"},
    {WindowText::DirectoryNameAsk, u"DirectoryNameAsk", u"Name of the directory:"},
    {WindowText::DirectoryDeleteAsk, u"DirectoryDeleteAsk", u"Delete the directory \u201C[VAR1]\u201D?"},
    {WindowText::DirectoryImportAsk, u"DirectoryImportAsk",
     u"\u201C[VAR1]\u201D reads pages of these hosts: [VAR2]. Use it?"},
    {WindowText::DirectoryTextRight, u"DirectoryTextRight", u"This text can be used."},
    {WindowText::ExportAs, u"ExportAs", u"Export as\u2026"},
    {WindowText::ExportAsHint, u"ExportAsHint", u"Choose the format and further columns, and see the first rows"},
    {WindowText::ExportFormat, u"ExportFormat", u"Format:"},
    {WindowText::ExportClassic, u"ExportClassic", u"CSV"},
    {WindowText::ExportWorkbook, u"ExportWorkbook", u"Excel workbook"},
    {WindowText::ExportSheetCsv, u"ExportSheetCsv", u"CSV for spreadsheets"},
    {WindowText::ExportCards, u"ExportCards", u"vCard (address books)"},
    {WindowText::ExportPhone, u"ExportPhone", u"Phone (international)"},
    {WindowText::ExportPhoneHint, u"ExportPhoneHint",
     u"Each phone number in international form, checked against the numbering plan of its country"},
    {WindowText::ExportPhoneCheck, u"ExportPhoneCheck", u"Phone (check)"},
    {WindowText::ExportPhoneCheckHint, u"ExportPhoneCheckHint",
     u"\u201Cimpossible\u201D when one of the numbers can be none"},
    {WindowText::ExportEmail, u"ExportEmail", u"Email (checked)"},
    {WindowText::ExportEmailHint, u"ExportEmailHint",
     u"The addresses that can be ones, those of the business's own domain first"},
    {WindowText::ExportCardsHint, u"ExportCardsHint",
     u"A card has a place for each field of its own; further columns have none in it."},
    {WindowText::ExportPreview, u"ExportPreview", u"First rows ([VAR1] of [VAR2])"},
    {WindowText::MoreWorkbook, u"MoreWorkbook", u"Automatic file also as an Excel workbook, when the harvest ends"},
    {WindowText::MoreSheetCsv, u"MoreSheetCsv", u"The same as CSV for spreadsheets"},
    {WindowText::ExportMailDomains, u"ExportMailDomains", u"Ask whether the domain takes mail"},
    {WindowText::ExportMailDomainsHint, u"ExportMailDomainsHint",
     u"Asks the name server and leaves out addresses whose domain takes no mail"},
    {WindowText::ExportLostCharacters, u"ExportLostCharacters",
     u"Texts without characters that the format cannot hold: [VAR1]"},
    {WindowText::ExportShortened, u"ExportShortened", u"Texts shortened: [VAR1]"},
    {WindowText::ExportPlainLinks, u"ExportPlainLinks", u"Links as plain text: [VAR1]"},
    {WindowText::EndCopiesSaved, u"EndCopiesSaved", u"Also saved: [VAR1]"},
    {WindowText::AutomaticFileHeld, u"AutomaticFileHeld",
     u"[VAR1] is held by another program; the leads go on in [VAR2]"},
    {WindowText::Searches, u"Searches", u"Searches\u2026"},
    {WindowText::SearchesHint, u"SearchesHint", u"Make many searches, one after the other, from a table"},
    {WindowText::SearchesTitle, u"SearchesTitle", u"Searches"},
    {WindowText::SearchesWhat, u"SearchesWhat", u"What:"},
    {WindowText::SearchesWhere, u"SearchesWhere", u"Where:"},
    {WindowText::SearchesAdd, u"SearchesAdd", u"Add"},
    {WindowText::SearchesFile, u"SearchesFile", u"Open a file\u2026"},
    {WindowText::SearchesFileHint, u"SearchesFileHint", u"A CSV file with the columns site,what,where or site,start"},
    {WindowText::SearchesTable, u"SearchesTable",
     u"One search a line, as copied from a spreadsheet: directory, what, where; or directory and the address of a "
     u"results page"},
    {WindowText::SearchesCount, u"SearchesCount", u"Searches in this table: [VAR1]"},
    {WindowText::SearchesNeedStore, u"SearchesNeedStore",
     u"Searches need the history: turn on \u201CKeep leads in the history\u201D in the settings, page More."},
    {WindowText::SearchesJobs, u"SearchesJobs", u"At once:"},
    {WindowText::SearchesRobots, u"SearchesRobots", u"Honour robots.txt"},
    {WindowText::SearchesRobotsHint, u"SearchesRobotsHint",
     u"Pages that a website asks programs to leave alone are not read"},
    {WindowText::SearchesRun, u"SearchesRun", u"Run"},
    {WindowText::SearchesRunHint, u"SearchesRunHint",
     u"Make the searches of the table; those that are done already are left out until all are"},
    {WindowText::SearchesStop, u"SearchesStop", u"Stop"},
    {WindowText::SearchesRetry, u"SearchesRetry", u"Try failed ones again"},
    {WindowText::SearchesLine, u"SearchesLine", u"Line"},
    {WindowText::SearchesState, u"SearchesState", u"State"},
    {WindowText::SearchesPages, u"SearchesPages", u"Pages"},
    {WindowText::SearchesTrouble, u"SearchesTrouble", u"What went wrong"},
    {WindowText::SearchWaiting, u"SearchWaiting", u"waiting"},
    {WindowText::SearchRunning, u"SearchRunning", u"under way"},
    {WindowText::SearchDone, u"SearchDone", u"done"},
    {WindowText::SearchFailed, u"SearchFailed", u"failed"},
    {WindowText::SearchCancelled, u"SearchCancelled", u"cancelled"},
    {WindowText::SearchesProgress, u"SearchesProgress",
     u"Waiting: [VAR1]   under way: [VAR2]   done: [VAR3]   failed: [VAR4]   leads: [VAR5]"},
    {WindowText::SearchesWentOn, u"SearchesWentOn",
     u"Searches go on that were not done when the program ended (Searches\u2026)"},
    {WindowText::SearchesEnded, u"SearchesEnded",
     u"The searches have ended. Done: [VAR1], failed: [VAR2], leads: [VAR3] (Searches\u2026)"},
    {WindowText::TeachOwnPage, u"TeachOwnPage", u"Its Fields\u2026"},
    {WindowText::TeachBackToList, u"TeachBackToList", u"Back to the List"},
    {WindowText::TeachOwnPageHint, u"TeachOwnPageHint",
     u"The own page of \u201C[VAR1]\u201D: click a text in it, or choose one below, and say what it is."},
    {WindowText::TeachOwnPageTexts, u"TeachOwnPageTexts", u"&Texts of this page:"},
    {WindowText::TeachOwnPageWait, u"TeachOwnPageWait", u"Reading the own pages of the first businesses\u2026"},
    {WindowText::TeachOwnPageLost, u"TeachOwnPageLost", u"[VAR1]: the page cannot be read."},
    {WindowText::TeachNotFetched, u"TeachNotFetched",
     u"A harvest does not get this text: it reads these pages without their scripts."},
    {WindowText::TeachAbout, u"TeachAbout", u"More\u2026"},
    {WindowText::TeachAboutTitle, u"TeachAboutTitle", u"Country and search address"},
    {WindowText::TeachCountry, u"TeachCountry", u"&Country:"},
    {WindowText::TeachCountryOfPage, u"TeachCountryOfPage", u"As the page says"},
    {WindowText::TeachSearch, u"TeachSearch", u"&Search address:"},
    {WindowText::TeachSearchHint, u"TeachSearchHint",
     u"With a search address the directory can be searched from the program. Type the words that led to this page, "
     u"or "
     u"the address with {what} and {where} in it."},
    {WindowText::TeachSearchedWhat, u"TeachSearchedWhat", u"&What was searched for:"},
    {WindowText::TeachSearchedWhere, u"TeachSearchedWhere", u"W&here:"},
    {WindowText::TeachSearchNot, u"TeachSearchNot", u"These words are not in the address of this page: [VAR1]"},
    {WindowText::SearchesWrongLine, u"SearchesWrongLine", u"line [VAR1]: [VAR2]"},
    {WindowText::SearchesOpenQuote, u"SearchesOpenQuote", u"a quote is not closed"},
    {WindowText::SearchesColumns, u"SearchesColumns", u"[VAR1] columns instead of [VAR2]"},
    {WindowText::SearchesNoAddress, u"SearchesNoAddress", u"\u201C[VAR1]\u201D is no http or https address"},
    {WindowText::SearchesNothingAsked, u"SearchesNothingAsked", u"nothing is looked for"},
    {WindowText::SearchesUnknownDirectory, u"SearchesUnknownDirectory", u"there is no directory \u201C[VAR1]\u201D"},
    {WindowText::SearchesNoSearchAddress, u"SearchesNoSearchAddress",
     u"[VAR1]: no search address is known of this directory; give a start address"},
    {WindowText::AnyWebsite, u"AnyWebsite", u"Any website"},
    {WindowText::TeachChooseHint, u"TeachChooseHint",
     u"Choose a text of the first business below, and say what it is."},
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
