#include "Session.h"

#include "CreatePlatform.h"
#include "LanguageFile.h"
#include "SettingsStore.h"
#include "SettingsText.h"
#include "TickCount.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Brindle {

Settings LoadSettingsInForce(const CommandLine& line, Platform& platform) {
    const QString fileName =
        line.SettingsFileName.value_or(QDir(platform.SettingsFolder()).filePath(QStringLiteral("settings.dat")));
    if (line.SettingsFileName && !QFileInfo::exists(fileName))
        throw Failure(QStringLiteral("%1: no such file").arg(QDir::toNativeSeparators(fileName)));
    Settings settings = SettingsStore(fileName, platform.GetDocumentsFolder()).LoadSettings();
    for (const QString& assignment : line.Overrides) {
        const qsizetype equals = assignment.indexOf(u'=');
        if (equals < 0)
            throw UsageError(QStringLiteral("--set: \u201C%1\u201D is not of the form KEY=VALUE").arg(assignment));
        QString reason;
        if (!SetOption(settings, assignment.first(equals), assignment.sliced(equals + 1), platform.GetDocumentsFolder(),
                       reason))
            throw UsageError(QStringLiteral("--set: %1").arg(reason));
    }
    return settings;
}

SitesFile LoadSites(const CommandLine& line) {
    return SitesFile::Load(
        line.SitesFileName.value_or(QCoreApplication::applicationDirPath() + QStringLiteral("/sites.ini")));
}

Session::Session(const CommandLine& line, Console& console, SitesFile sites)
    : Out(console),
      System(CreatePlatform()),
      Sites(std::move(sites)),
      Catalogue(Sites.Catalogue()),
      Options(LoadSettingsInForce(line, *System)),
      Loop(SystemTickCount),
      Notices(console),
      Fetcher(State, Options, Texts, Loop, Status),
      Emails(State, Options, Fetcher),
      Saver(State, Options, Leads, Texts, Status, Loop),
      Job({State, Leads, Options, Texts, Catalogue, Loop, Status, Notices, Fetcher, Emails, Saver}),
      CtrlC([this] {
          State.ShouldStop = true;
          Loop.Quit();
          Fetcher.Disconnect();
      }) {
    Loop.SetPace(line.Pace);
    const LanguageFile language(ReadLanguageText(LanguageFileName(Options.Language)));
    language.FillMessages(Texts, 0, QStringLiteral("Brindle"));
    if (!language.IsEmpty())
        Leads.Captions = language.ColumnCaptions();
    Job.LeadKept = [this](const Lead& lead) { Report.Add(lead); };
}

void Session::SelectSite(const QString& siteCode) {
    if (!KnownSiteCodes().contains(siteCode))
        throw UsageError(
            QStringLiteral("--site: \u201C%1\u201D is no site code; brindle-cli sites lists them").arg(siteCode));
    const QStringList problems = Sites.ProblemsOf(siteCode);
    for (qsizetype i = 0; i + 1 < problems.size(); ++i)
        Out.Error(problems[i]);
    if (!problems.isEmpty())
        throw Failure(problems.last());
    State.CurrID = siteCode;
    State.SelectedEntry = Catalogue.Find(siteCode)->DisplayEntry();
}

} // namespace Brindle
