#include "cli/Session.h"

#include "i18n/LanguageFile.h"
#include "platform/CreatePlatform.h"
#include "platform/TickCount.h"
#include "settings/OptionsFile.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

Settings LoadSettingsInForce(const CommandLine& line, Platform& platform) {
    const QString fileName =
        line.SettingsFileName.value_or(QDir(platform.SettingsFolder()).filePath(u"settings.dat"_s));
    if (line.SettingsFileName && !QFileInfo::exists(fileName))
        throw Failure(u"%1: no such file"_s.arg(QDir::toNativeSeparators(fileName)));
    Settings settings = SettingsStore(fileName, platform.GetDocumentsFolder()).LoadSettings();
    for (const QString& assignment : line.Overrides) {
        const qsizetype equals = assignment.indexOf(u'=');
        if (equals < 0)
            throw UsageError(u"--set: \u201C%1\u201D is not of the form KEY=VALUE"_s.arg(assignment));
        QString reason;
        if (IsMoreOptionKey(assignment.first(equals))) {
            MoreOptions ignored; // they have a record of their own; a wrong one is wrong for every command
            if (!SetMoreOption(ignored, assignment.first(equals), assignment.sliced(equals + 1), reason))
                throw UsageError(u"--set: %1"_s.arg(reason));
            continue;
        }
        if (!SetOption(settings, assignment.first(equals), assignment.sliced(equals + 1), platform.GetDocumentsFolder(),
                       reason))
            throw UsageError(u"--set: %1"_s.arg(reason));
    }
    return settings;
}

MoreOptions LoadOptionsInForce(const CommandLine& line, Platform& platform, Console& console) {
    const QDir folder = line.SettingsFileName ? QFileInfo(*line.SettingsFileName).dir() : platform.SettingsFolder();
    QStringList problems;
    MoreOptions options = OptionsFile(folder.filePath(u"options.toml"_s)).Load(problems);
    for (const QString& problem : problems)
        console.Error(problem);
    for (const QString& assignment : line.Overrides) {
        const QString key = assignment.section(u'=', 0, 0);
        QString reason;
        if (IsMoreOptionKey(key) && !SetMoreOption(options, key, assignment.section(u'=', 1), reason))
            throw UsageError(u"--set: %1"_s.arg(reason));
    }
    return options;
}

SitesFile LoadSites(const CommandLine& line) {
    return SitesFile::Load(line.SitesFileName.value_or(QCoreApplication::applicationDirPath() + u"/sites.ini"_s));
}

Session::Session(const CommandLine& line, Console& console, SitesFile sites)
    : Out(console),
      System(CreatePlatform()),
      Sites(std::move(sites)),
      Catalogue(Sites.Catalogue()),
      Options(LoadSettingsInForce(line, *System)),
      More(LoadOptionsInForce(line, *System, console)),
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
    Fetcher.SetPatience(qRound64(line.PatienceSeconds * 1000));
    Fetcher.AttemptFailed = [this](const QString& failure) { Out.Note(failure); };
    Fetcher.GaveUp = [this](const QString& failure) { Out.Error(failure); };
    const LanguageFile language(ReadLanguageText(LanguageFileName(Options.Language)));
    language.FillMessages(Texts, 0, u"Brindle"_s);
    if (!language.IsEmpty())
        Leads.Captions = language.ColumnCaptions();
    Job.LeadKept = [this](const Lead& lead) { Report.Add(lead); };
}

void Session::SelectSite(const QString& siteCode) {
    if (!KnownSiteCodes().contains(siteCode))
        throw UsageError(u"--site: \u201C%1\u201D is no site code; brindle-cli sites lists them"_s.arg(siteCode));
    const QStringList problems = Sites.ProblemsOf(siteCode);
    for (qsizetype i = 0; i + 1 < problems.size(); ++i)
        Out.Error(problems[i]);
    if (!problems.isEmpty())
        throw Failure(problems.last());
    State.CurrID = siteCode;
    State.SelectedEntry = Catalogue.Find(siteCode)->DisplayEntry();
}

} // namespace Brindle
