#include "workbench/Diagnose.h"

#include "core/DataFiles.h"
#include "core/Errors.h"
#include "i18n/LanguageFile.h"
#include "net/LibraryVersions.h"
#include "recipes/RecipeFolders.h"
#include "settings/OptionsFile.h"
#include "settings/SettingsStore.h"
#include "store/Database.h"
#include "store/Schema.h"
#include "workbench/Product.h"
#include "workbench/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QSqlDatabase>
#include <QSysInfo>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

class Report {
public:
    explicit Report(const DiagnoseParts& parts) : parts_(parts) {}

    QString Text() {
        Versions();
        const Settings settings = Files();
        Say(u"engine", parts_.Engine);
        Say(u"sandbox", Sandbox());
        Say(u"proxy", ProxyMode(settings));
        Sites();
        Recipes();
        Store();
        for (const QString& problem : std::as_const(problems_))
            Say(u"problem", problem);
        return text_;
    }

private:
    void Say(QStringView key, QString value) {
        // One line each, whatever a file's name or a driver's message holds.
        std::replace_if(
            value.begin(), value.end(), [](QChar c) { return c.unicode() < 0x20; }, u' ');
        text_ += key + u": " + value + u'\n';
    }
    static QString Shown(const QString& fileName) { return QDir::toNativeSeparators(fileName); }
    static QString WithState(const QString& fileName) {
        return Shown(fileName) + (QFileInfo::exists(fileName) ? QString() : u" (not there)"_s);
    }

    void Versions() {
        const LibraryVersions net = NetworkLibraries();
        Say(u"program", ProductTitle() + u' ' + ProductVersion());
        Say(u"system", QSysInfo::prettyProductName() + u", " + QSysInfo::kernelType() + u' ' +
                           QSysInfo::kernelVersion() + u", " + QSysInfo::currentCpuArchitecture());
        Say(u"Qt", QString::fromLatin1(qVersion()));
        Say(u"libcurl", net.Curl);
        Say(u"TLS", net.Tls.isEmpty() ? u"none"_s : net.Tls);
        Say(u"database drivers", QSqlDatabase::drivers().join(u", "));
    }

    Settings Files() {
        const QString settingsFile = ProgramFiles::Settings(parts_.System, parts_.SettingsFileName);
        const QString optionsFile = ProgramFiles::Options(parts_.System, parts_.SettingsFileName);
        Say(u"program folder", Shown(QCoreApplication::applicationDirPath()));
        Say(u"language files", WithState(LanguageFolder()));
        Say(u"settings folder", WithState(parts_.System.SettingsFolder()));
        Say(u"settings", WithState(settingsFile));
        Say(u"options", WithState(optionsFile));
        Settings settings;
        try {
            QString damage;
            settings = SettingsStore(settingsFile, parts_.System.GetDocumentsFolder()).LoadSettings(damage);
            if (!damage.isEmpty())
                problems_ += damage;
        } catch (const Failure& failure) {
            problems_ += failure.Message();
        }
        more_ = OptionsFile(optionsFile).Load(problems_);
        WindowFile();
        const QString language = LanguageFileName(settings.Language);
        Say(u"language", settings.Language);
        if (LanguageFile(ReadLanguageText(language)).IsEmpty())
            problems_ += Shown(language) + u": no language file, or it cannot be read";
        return settings;
    }

    // The place of the window, as the window has left it.
    void WindowFile() {
        const QString fileName = QDir(parts_.System.SettingsFolder()).filePath(u"window.ini"_s);
        Say(u"window", WithState(fileName));
        const QFileInfo info(fileName);
        if (!info.exists())
            return;
        const QSettings file(fileName, QSettings::IniFormat);
        const QByteArray geometry = file.value(u"Window/Geometry"_s).toByteArray();
        if (!info.isFile() || file.status() != QSettings::NoError)
            problems_ += Shown(fileName) + u": cannot be read";
        else if (info.size() > 0 && !geometry.startsWith("\x01\xd9\xd0\xcb")) // QWidget::saveGeometry
            problems_ += Shown(fileName) + u": there is no place of a window in it";
    }

    QString Sandbox() const {
        if (!parts_.WhyNoSandbox)
            return u"none: there is no Chromium here"_s;
        if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
            return u"off: the environment says so"_s;
        return parts_.WhyNoSandbox->isEmpty() ? u"on"_s : u"off: "_s + *parts_.WhyNoSandbox;
    }

    static QString ProxyMode(const Settings& settings) {
        if (settings.rRandomProxy)
            return u"a list of %1"_s.arg(settings.eRandomProxies.size());
        if (settings.rUseProxy)
            return settings.rAuthentification ? u"one, with a login"_s : u"one, without a login"_s;
        return u"none"_s;
    }

    void Sites() {
        Say(u"sites", WithState(ProgramFiles::Sites(parts_.SitesFileName)));
        if (parts_.SitesFileName.isEmpty())
            Say(u"own sites", WithState(ProgramFiles::OwnSites(parts_.System)));
        try {
            const SitesFile sites = ProgramFiles::LoadSites(parts_.System, parts_.SitesFileName, parts_.Directories);
            Say(u"directories", u"%1 of %2"_s.arg(sites.Sites.size()).arg(parts_.Directories.size()));
            for (const SitesProblem& problem : sites.Problems)
                problems_ += problem.Text;
        } catch (const Failure& failure) {
            problems_ += failure.Message();
        }
    }

    void Recipes() {
        const QFileInfo settings(ProgramFiles::Settings(parts_.System, parts_.SettingsFileName));
        const QString own = settings.dir().filePath(u"recipes"_s);
        Say(u"recipes of the program", WithState(ProgramFiles::Recipes()));
        Say(u"recipes of the user", WithState(own));
        QStringList codes;
        for (const RecipeEntry& recipe : LoadRecipes(ProgramFiles::Recipes(), own, problems_))
            codes += recipe.Code;
        Say(u"recipes", codes.isEmpty() ? u"none"_s : codes.join(u", "));
    }

    void Store() {
        QString named = parts_.Store.isEmpty() ? more_.StoreTarget : parts_.Store;
        if (named.isEmpty())
            named = DefaultStoreFile(parts_.System.SettingsFolder());
        Say(u"store keeps the window's leads", more_.StoreKeep ? u"yes"_s : u"no"_s);
        try {
            const StoreTarget target = StoreTarget::Parse(named);
            if (!target.IsPostgres() && !QFileInfo::exists(target.FileName)) {
                Say(u"store", target.Shown() + u" (not there yet)");
                return;
            }
            Say(u"store", target.Shown());
            Database database(target, Database::Access::ReadAtLeast);
            const QString version =
                database.Value(target.IsPostgres() ? u"SHOW server_version"_s : u"SELECT sqlite_version()"_s)
                    .toString();
            Say(u"store engine", (target.IsPostgres() ? u"PostgreSQL "_s : u"SQLite "_s) + version);
            Say(u"store opens", u"yes, schema %1"_s.arg(SchemaVersion()));
        } catch (const Failure& failure) {
            Say(u"store opens", u"no"_s);
            problems_ += failure.Message();
        }
    }

    const DiagnoseParts& parts_;
    MoreOptions more_;
    QString text_;
    QStringList problems_;
};

} // namespace

QString Diagnose(const DiagnoseParts& parts) {
    return Report(parts).Text();
}

} // namespace Brindle
