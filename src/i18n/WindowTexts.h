#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace Brindle {

/// The texts of the windows that older language files do not know. Each has a name, under which it stands in a language
/// file as <text-NAME>...</text-NAME>, wherever in the file, and an English text for files that lack it.
enum class WindowText {
    HarvestCounts,
    HarvestReadsPage,
    HarvestWaitsForResults,
    HarvestLoadsNextPage,
    HarvestPageGivenUp,
    HarvestGivenUpCount,
    HarvestGoesRound,
    NoAddress,
    CannotOpen,
    DownloadRefused,
    Reload,
    CloseNotice,
    NoUpdateAddress,
    ProxyHint,
    CancelExport,
    History,
    HistoryAll,
    HistoryOpen,
    HistoryExport,
    HistoryDelete,
    HistoryErase,
    HistoryFind,
    HistoryFindHint,
    HistoryOnlyNew,
    HistoryDate,
    HistoryDirectory,
    HistorySearch,
    HistoryLeads,
    HistoryNew,
    HistoryEveryDirectory,
    HistoryAlways,
    HistoryToday,
    HistoryWeek,
    HistoryMonth,
    HistoryCount,
    HistoryConfirmDelete,
    HistoryConfirmErase,
    OfferLeads,
    OfferBringBack,
    More,
    MoreKeep,
    MoreTarget,
    MoreTargetHint,
    MoreMailServer,
    MoreMailServerHint,
    Teach,
    Mend,
    TeachHint,
    AnyHarvest,
    PreviousList,
    NextList,
    AnySees,
    AnyUnsure,
    AnySeesNothing,
    AnyOtherWay,
    AnyDrift,
    TeachTitle,
    TeachPointHint,
    TeachFieldColumn,
    TeachFirstColumn,
    TeachFilledColumn,
    TeachForget,
    TeachTexts,
    TeachUse,
    TeachPointNext,
    TeachPointNextHint,
    TeachNoNext,
    TeachNextIs,
    TeachNextNone,
    TeachDetails,
    TeachName,
    TeachSave,
    TeachLeave,
    TeachProposed,
    TeachThisIs,
    TeachIsNext,
    TeachIsDetails,
    TeachTableName,
    TeachNoPage,
    Directories,
    DirectoriesTitle,
    DirectoriesBuiltIn,
    DirectoriesTaught,
    DirectoryRename,
    DirectoryDuplicate,
    DirectoryEdit,
    DirectoryImport,
    DirectoryExport,
    DirectoryDelete,
    DirectoryClose,
    DirectoryNameAsk,
    DirectoryDeleteAsk,
    DirectoryImportAsk,
    DirectoryTextRight,
    ExportAs,
    ExportAsHint,
    ExportFormat,
    ExportClassic,
    ExportWorkbook,
    ExportSheetCsv,
    ExportCards,
    ExportPhone,
    ExportPhoneHint,
    ExportPhoneCheck,
    ExportPhoneCheckHint,
    ExportEmail,
    ExportEmailHint,
    ExportCardsHint,
    ExportPreview,
    MoreWorkbook,
    MoreSheetCsv,
    EndCopiesSaved,
    AutomaticFileHeld,
    Searches,
    SearchesHint,
    SearchesTitle,
    SearchesWhat,
    SearchesWhere,
    SearchesAdd,
    SearchesFile,
    SearchesFileHint,
    SearchesTable,
    SearchesCount,
    SearchesNeedStore,
    SearchesJobs,
    SearchesRobots,
    SearchesRobotsHint,
    SearchesRun,
    SearchesRunHint,
    SearchesStop,
    SearchesRetry,
    SearchesLine,
    SearchesState,
    SearchesPages,
    SearchesTrouble,
    SearchWaiting,
    SearchRunning,
    SearchDone,
    SearchFailed,
    SearchCancelled,
    SearchesProgress,
    SearchesWentOn,
    SearchesEnded,
    Count
};

/// What the windows say in the language of the user.
class WindowTexts {
public:
    /// English.
    WindowTexts();

    /// Takes the texts of a language file; English for those that it lacks.
    void Load(const QString& languageText);

    const QString& Text(WindowText text) const { return texts_.at(static_cast<size_t>(text)); }
    /// The text with "[VAR1]", "[VAR2]", ... replaced.
    QString With(WindowText text, const QStringList& values) const;

    static QString Name(WindowText text);
    static QString English(WindowText text);

private:
    std::array<QString, static_cast<size_t>(WindowText::Count)> texts_;
};

} // namespace Brindle
