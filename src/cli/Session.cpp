#include "cli/Session.h"

#include "adapters/Adapters.h"
#include "i18n/LanguageFile.h"
#include "platform/CreatePlatform.h"
#include "platform/FileHeld.h"
#include "platform/TickCount.h"
#include "settings/OptionsFile.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsText.h"
#include "workbench/ProgramFiles.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

Settings LoadSettingsInForce(const CommandLine& line, Platform& platform) {
    const QString fileName = ProgramFiles::Settings(platform, line.SettingsFileName.value_or(QString()));
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
    QStringList problems;
    const QString fileName = ProgramFiles::Options(platform, line.SettingsFileName.value_or(QString()));
    MoreOptions options = OptionsFile(fileName).Load(problems);
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
    return ProgramFiles::LoadSites(*CreatePlatform(), line.SitesFileName.value_or(QString()), SiteAdapters());
}

Session::Session(const CommandLine& line, Console& console, SitesFile sites)
    : Out(console),
      System(CreatePlatform()),
      Loop(SystemTickCount),
      Notices(console),
      Bench({Loop, Status, Notices}, std::move(sites)),
      CtrlC([this] {
          State.ShouldStop = true;
          Loop.Quit();
          Fetcher.Disconnect();
      }) {
    Options = LoadSettingsInForce(line, *System);
    More = LoadOptionsInForce(line, *System, console);
    Bench.SettingsFolder =
        QFileInfo(ProgramFiles::Settings(*System, line.SettingsFileName.value_or(QString()))).absolutePath();
    Bench.ReadsDetails = line.Details;
    Bench.LoadCatalogue();
    Loop.SetPace(line.Pace);
    Fetcher.SetPatience(qRound64(line.PatienceSeconds * 1000));
    Fetcher.AttemptFailed = [this](const QString& failure) { Out.Note(failure); };
    Fetcher.GaveUp = [this](const QString& failure) { Out.Error(failure); };
    Bench.Use(LanguageFile(ReadLanguageText(LanguageFileName(Options.Language))));
    Bench.Saver.IsHeld = HeldByAnotherProgram;
    Bench.Saver.MovedOn = [this](const QString& held, const QString& next) {
        Out.Error(u"%1 is held by another program; the leads go on in %2"_s.arg(held, next));
    };
    Job.LeadKept = [this](const Lead& lead) { Report.Add(lead); };
}

bool Session::EndCopies() {
    const Brindle::EndCopies::Ending ending = Bench.Copies.Finish();
    for (const QString& fileName : ending.Saved)
        Out.Note(u"also saved: %1"_s.arg(QDir::toNativeSeparators(fileName)));
    if (!ending.Losses.IsEmpty())
        Out.Note(ending.Losses.Text());
    for (const QString& problem : ending.Problems)
        Out.Error(problem);
    return ending.Problems.isEmpty();
}

void Session::SelectSite(const QString& siteCode) {
    const auto directories = SiteAdapters();
    const bool builtIn = std::any_of(directories.begin(), directories.end(),
                                     [&](const SiteAdapter& site) { return site.Code == siteCode; });
    if (!builtIn && !Catalogue.Find(siteCode))
        throw UsageError(u"--site: \u201C%1\u201D is no site code; brindle-cli sites lists them"_s.arg(siteCode));
    const QStringList problems = builtIn ? Sites.ProblemsOf(siteCode) : QStringList();
    for (qsizetype i = 0; i + 1 < problems.size(); ++i)
        Out.Error(problems[i]);
    if (!problems.isEmpty())
        throw Failure(problems.last());
    State.CurrID = siteCode;
    State.SelectedEntry = Catalogue.Find(siteCode)->DisplayEntry();
}

} // namespace Brindle
