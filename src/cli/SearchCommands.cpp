#include "cli/Commands.h"
#include "cli/SearchHarvest.h"
#include "cli/StoreLink.h"
#include "cli/Worker.h"
#include "platform/CreatePlatform.h"
#include "store/SearchTable.h"
#include "store/Searches.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestTable = 256 << 20;

// The searches of a file. Throws `Failure` that names every wrong row by its line.
SearchTable LoadSearches(const QString& fileName, Session& session) {
    QFile file(fileName);
    const bool opened = fileName == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QByteArray bytes = opened ? file.read(largestTable) : QByteArray();
    if (!opened || file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    SearchTable table = ReadSearchTable(
        TableText(bytes), [&](const SearchRow& row) { return WhyNoSearch(row, session.Sites, session.Catalogue); });
    const auto said = [&](const SearchProblem& problem) {
        return u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), problem.Text());
    };
    for (size_t i = 0; i + 1 < table.Problems.size(); ++i)
        session.Out.Error(said(table.Problems[i]));
    if (!table.Problems.empty())
        throw Failure(said(table.Problems.back()));
    return table;
}

// Adds the searches of a file; returns the list's name and how many were new.
std::pair<QString, qsizetype> AddSearches(const CommandLine& line, Console& console, Database& database,
                                          const QString& fileName) {
    Session session(line, console, LoadSites(line));
    const SearchTable table = LoadSearches(fileName, session);
    const QString list = table.Digest();
    const qsizetype added = Searches(database).Add(
        list, table.Rows, [&](const SearchRow& row) { return TurnHostOf(StartOf(row, session.Catalogue)); });
    return {list, added};
}

QString CountsText(const std::array<qint64, SearchStateCount>& counts) {
    QStringList parts;
    for (int state = 0; state < SearchStateCount; ++state)
        if (counts.at(static_cast<size_t>(state)) > 0)
            parts += u"%1 %2"_s.arg(counts.at(static_cast<size_t>(state))).arg(NameOf(static_cast<SearchState>(state)));
    return parts.isEmpty() ? u"none"_s : parts.join(u", "_s);
}

QList<qint64> Ids(const CommandLine& line) {
    QList<qint64> ids;
    for (const QString& argument : line.Arguments.sliced(1)) {
        bool isNumber = false;
        ids += argument.toLongLong(&isNumber);
        if (!isNumber)
            throw UsageError(u"searches: \u201C%1\u201D is no number of a search"_s.arg(argument));
    }
    return ids;
}

QByteArray ListLine(const CommandLine& line, const StoredSearch& search, qint64 leads) {
    const SearchRow& row = search.Row;
    if (line.Json)
        return QJsonDocument(QJsonObject{{u"kind"_s, u"search"_s},
                                         {u"id"_s, search.Id},
                                         {u"site"_s, row.Site},
                                         {u"start"_s, row.Start},
                                         {u"what"_s, row.What},
                                         {u"where"_s, row.Place},
                                         {u"state"_s, NameOf(search.State)},
                                         {u"worker"_s, search.Worker},
                                         {u"pages"_s, search.Pages},
                                         {u"leads"_s, leads},
                                         {u"error"_s, search.Error}})
                   .toJson(QJsonDocument::Compact) +
               '\n';
    const QString what = row.Start.isEmpty() ? QString(row.What + u", " + row.Place) : row.Start;
    const QStringList columns{QString::number(search.Id),
                              NameOf(search.State),
                              row.Site,
                              what,
                              QString::number(search.Pages) + u" pages"_s,
                              QString::number(leads) + u" leads"_s,
                              search.Error};
    return QString(columns.join(u'\t') + u'\n').toUtf8();
}

} // namespace

int RunSearches(const CommandLine& line, Console& console) {
    const std::unique_ptr<Platform> platform = CreatePlatform();
    Database database(StoreInForce(line, LoadOptionsInForce(line, *platform, console), *platform));
    Searches searches(database);
    const QString& verb = line.Arguments.first();
    if (verb == u"add") {
        if (line.Arguments.size() != 2)
            throw UsageError(u"searches add FILE: one file, please"_s);
        const auto [list, added] = AddSearches(line, console, database, line.Arguments[1]);
        console.Note(u"%1 searches added"_s.arg(added));
    } else if (verb == u"list") {
        for (const StoredSearch& search : searches.All())
            WriteToStandardOutput(ListLine(line, search, searches.LeadsOf(search)));
    } else if (verb == u"retry") {
        console.Note(u"%1 searches wait again"_s.arg(searches.Retry(Ids(line))));
    } else if (verb == u"cancel") {
        console.Note(u"%1 searches cancelled"_s.arg(searches.Cancel(Ids(line))));
    } else {
        throw UsageError(u"searches: \u201C%1\u201D is none of add, list, retry, cancel"_s.arg(verb));
    }
    return ExitStatus::Done;
}

int RunWork(const CommandLine& line, Console& console) {
    const std::unique_ptr<Platform> platform = CreatePlatform();
    const StoreTarget target = StoreInForce(line, LoadOptionsInForce(line, *platform, console), *platform);
    if (!target.IsPostgres())
        throw UsageError(
            u"work takes searches from a store in PostgreSQL; with a file, run SEARCHES.csv is the command"_s);
    Worker worker(line, console, target, platform->SettingsFolder(), {});
    return RunWorkers(line, worker, {});
}

int RunRun(const CommandLine& line, Console& console) {
    const std::unique_ptr<Platform> platform = CreatePlatform();
    const StoreTarget target = StoreInForce(line, LoadOptionsInForce(line, *platform, console), *platform);
    QString list = line.Member.value_or(QString());
    if (!line.Member) {
        Database database(target);
        list = AddSearches(line, console, database, line.Arguments.first()).first;
        Searches(database).BeginAgain(list);
    }
    Worker worker(line, console, target, platform->SettingsFolder(), list);
    const int status = RunWorkers(line, worker, list);
    if (line.Member)
        return status;
    Database database(target);
    Searches searches(database);
    const auto counts = searches.Counts(list);
    qint64 leads = 0;
    for (const StoredSearch& search : searches.All(list))
        leads += searches.LeadsOf(search);
    console.Report(u"searches: %1; %2 leads\n"_s.arg(CountsText(counts)).arg(leads));
    for (const StoredSearch& search : searches.All(list, SearchState::Failed))
        console.Error(u"line %1, %2: %3"_s.arg(search.Row.Line).arg(search.Row.Site, search.Error));
    if (status != ExitStatus::Done)
        return status;
    return counts[static_cast<size_t>(SearchState::Failed)] > 0 ? ExitStatus::Failed : ExitStatus::Done;
}

} // namespace Brindle
