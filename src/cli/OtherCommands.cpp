#include "cli/Commands.h"
#include "cli/Session.h"
#include "i18n/LanguageFile.h"
#include "platform/CreatePlatform.h"
#include "platform/StandardStreams.h"
#include "settings/SettingsText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>
namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A text on one line of a table.
QString Escaped(QString text) {
    text.replace(u"\r\n"_s, u"\\n"_s);
    text.replace(u'\n', u"\\n"_s);
    text.replace(u'\r', u"\\n"_s);
    text.replace(u'\t', u"\\t"_s);
    return text;
}

} // namespace

void WriteToStandardOutput(const QByteArray& bytes) {
    QFile output;
    if (!output.open(StandardOutputDescriptor(), QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        output.write(bytes) != bytes.size())
        throw Failure(u"standard output: cannot be written"_s);
}

int RunSites(const CommandLine& line, Console& console) {
    const Session session(line, console, LoadSites(line));
    QByteArray lines;
    for (const QString& code : session.Catalogue.WebsiteKeys()) {
        const SiteEntry& site = *session.Catalogue.Find(code);
        lines += QString(site.Code + u'\t' + site.Base + u'\t' + site.Label + u'\n').toLocal8Bit();
    }
    WriteToStandardOutput(lines);
    for (const SitesProblem& problem : session.Sites.Problems)
        console.Error(problem.Text);
    for (const QString& problem : session.Bench.RecipeProblems)
        console.Error(problem);
    return session.Sites.Problems.empty() && session.Bench.RecipeProblems.isEmpty() ? ExitStatus::Done
                                                                                    : ExitStatus::Failed;
}

int RunFetch(const CommandLine& line, Console& console) {
    Session session(line, console, {});
    session.Fetcher.GaveUp = {}; // it is what ends the command
    const QString& url = line.Arguments.first();
    QString page;
    const bool fetched = line.Direct ? session.Fetcher.DirectDownloadURL(url, page, line.Utf8)
                                     : session.Fetcher.DownloadURL(url, page, line.Utf8);
    if (session.CtrlC.Happened())
        return ExitStatus::Interrupted;
    if (!fetched)
        throw Failure(session.Fetcher.LastError());
    WriteToStandardOutput(page.toUtf8());
    return ExitStatus::Done;
}

int RunEmails(const CommandLine& line, Console& console) {
    Session session(line, console, {});
    // The command itself is the wish to search, unless the command line says otherwise.
    const auto setsExtraction = [](const QString& assignment) { return assignment.startsWith(u"cExtractEmails="); };
    if (std::none_of(line.Overrides.begin(), line.Overrides.end(), setsExtraction))
        session.Options.cExtractEmails = true;
    const std::optional<QString> emails = session.Emails.EmailsOfWebsite(line.Arguments.first());
    if (session.CtrlC.Happened())
        return ExitStatus::Interrupted;
    if (!emails)
        throw Failure(session.Fetcher.LastError());
    WriteToStandardOutput(QString(*emails + u'\n').toUtf8());
    return ExitStatus::Done;
}

int RunSettings(const CommandLine& line) {
    WriteToStandardOutput(SettingsText(LoadSettingsInForce(line, *CreatePlatform())));
    return ExitStatus::Done;
}

int RunLanguage(const CommandLine& line, Console& console) {
    const QString& fileName = line.Arguments.first();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    file.close();
    const LanguageFile language(ReadLanguageText(fileName));
    QString lines;
    const auto add = [&lines](QStringView name, int number, const QString& text) {
        lines += name + QString::number(number) + u'\t' + Escaped(text) + u'\n';
    };
    for (int number = 1; number <= LanguageFile::LastMain; ++number)
        if (number != LanguageFile::NoMain)
            add(u"main", number, language.Main(number));
    for (int number = 1; number <= LanguageFile::LastSettings; ++number)
        add(u"settings", number, language.Settings(number));
    WriteToStandardOutput(lines.toUtf8());
    for (const QString& tag : language.Missing())
        console.Error(u"%1: %2 not found"_s.arg(QDir::toNativeSeparators(fileName), tag));
    return language.Missing().isEmpty() ? ExitStatus::Done : ExitStatus::Failed;
}

} // namespace Brindle
