#include "ui/SearchDesk.h"

#include "platform/Programs.h"
#include "workbench/SearchAddress.h"

#include <QFileInfo>
#include <QPointer>
#include <QSettings>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int rowsKind = 4; // of questions to the store
constexpr int lookInterval = 1000;
constexpr int stopPatience = 5000; // a member that was told to end writes its last leads
constexpr int leavePatience = 2000;

const QString listKey = u"Searches/List"_s;
const QString goingKey = u"Searches/Going"_s;
const QString jobsKey = u"Searches/Jobs"_s;
const QString robotsKey = u"Searches/AskRobots"_s;

// A line of the command line, without the name in front of it that people need there.
QString LastLine(const QByteArray& said) {
    const QStringList lines = QString::fromLocal8Bit(said).split(u'\n', Qt::SkipEmptyParts);
    return lines.isEmpty() ? QString() : lines.last().trimmed();
}

} // namespace

SearchDesk::SearchDesk(const Parts& parts) : parts_(parts) {
    look_.setInterval(lookInterval);
    connect(&look_, &QTimer::timeout, this, &SearchDesk::AskRows);
    patience_.setInterval(stopPatience);
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, [this] {
        for (const auto& member : members_)
            member->kill();
    });
}

SearchDesk::~SearchDesk() {
    Leave();
    for (const auto& member : members_) {
        member->disconnect(this);
        if (!member->waitForFinished(leavePatience))
            member->kill();
        member->waitForFinished(leavePatience);
    }
}

SearchTable SearchDesk::Read(const QString& text) const {
    return ReadSearchTable(
        text,
        [this](SearchRow& row) {
            row.Site = CodeOfName(row.Site, parts_.Bench.Catalogue);
            return WhyNoSearch(row, parts_.Bench.Sites, parts_.Bench.Catalogue);
        },
        TableHeader::Optional);
}

QString SearchDesk::List() const {
    return QSettings(parts_.StateFileName, QSettings::IniFormat).value(listKey).toString();
}

SearchWish SearchDesk::Wish() const {
    const QSettings file(parts_.StateFileName, QSettings::IniFormat);
    return {std::max(1, file.value(jobsKey, 1).toInt()), file.value(robotsKey, true).toBool()};
}

void SearchDesk::SetGoing(bool going) const {
    QSettings(parts_.StateFileName, QSettings::IniFormat).setValue(goingKey, going);
}

qint64 SearchDesk::Count(SearchState state) const {
    return std::count_if(rows_.begin(), rows_.end(),
                         [state](const SearchProgress& row) { return row.Search.State == state; });
}

qint64 SearchDesk::Leads() const {
    qint64 leads = 0;
    for (const SearchProgress& row : rows_)
        leads += row.Leads;
    return leads;
}

void SearchDesk::Run(const SearchTable& table, const SearchWish& wish) {
    const QString list = table.Digest();
    {
        QSettings file(parts_.StateFileName, QSettings::IniFormat);
        file.setValue(listKey, list);
        file.setValue(jobsKey, wish.Jobs);
        file.setValue(robotsKey, wish.AskRobots);
    }
    std::vector<QString> hosts;
    for (const SearchRow& row : table.Rows)
        hosts.push_back(TurnHostOf(StartOf(row, parts_.Bench.Catalogue)));
    parts_.Desk.Post(0, [this, list, wish, rows = table.Rows, hosts](Database& database) -> std::function<void()> {
        size_t next = 0;
        Searches searches(database);
        searches.Add(list, rows, [&](const SearchRow&) { return hosts[next++]; });
        searches.BeginAgain(list);
        return [this, wish] { Begin(wish); };
    });
}

void SearchDesk::Retry() {
    QList<qint64> failed;
    for (const SearchProgress& row : rows_)
        if (row.Search.State == SearchState::Failed)
            failed += row.Search.Id;
    if (failed.isEmpty() || Running())
        return;
    parts_.Desk.Post(0, [this, failed](Database& database) -> std::function<void()> {
        Searches(database).Retry(failed);
        return [this] { Begin(Wish()); };
    });
}

void SearchDesk::GoOn() {
    if (List().isEmpty())
        return;
    AskRows();
    if (!QSettings(parts_.StateFileName, QSettings::IniFormat).value(goingKey).toBool())
        return;
    Begin(Wish());
    if (Running())
        Q_EMIT WentOn();
}

void SearchDesk::Begin(const SearchWish& wish) {
    const QString program = ProgramBeside(u"brindle-cli"_s);
    if (Running())
        return;
    parts_.Prepare();
    QStringList arguments{u"run"_s,        u"-"_s,
                          u"--member"_s,   List(),
                          u"--settings"_s, parts_.SettingsFileName,
                          u"--pace"_s,     QString::number(parts_.Pace),
                          u"--quiet"_s};
    // The address of a server may have a password in it; the processes find it where this one did.
    if (const QString& file = parts_.Desk.FileName(); !file.isEmpty())
        arguments += {u"--store"_s, file};
    if (!parts_.SitesFileName.isEmpty())
        arguments += {u"--sites"_s, parts_.SitesFileName};
    if (!wish.AskRobots)
        arguments += u"--ignore-robots"_s;
    SetGoing(true);
    stopping_ = false;
    trouble_.clear();
    for (int i = 0; i < wish.Jobs; ++i) {
        auto member = std::make_unique<QProcess>();
        QProcess* const process = member.get();
        process->setStandardOutputFile(QProcess::nullDevice());
        connect(process, &QProcess::finished, this, [this, process] { MemberEnded(process); });
        connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return;
            trouble_ = process->program() + u": " + process->errorString();
            MemberEnded(process);
        });
        members_.push_back(std::move(member));
        process->start(program, arguments);
    }
    look_.start();
    AskRows();
    Q_EMIT Changed();
}

void SearchDesk::MemberEnded(QProcess* member) {
    const auto at =
        std::find_if(members_.begin(), members_.end(), [member](const auto& one) { return one.get() == member; });
    if (at == members_.end())
        return;
    if (member->exitCode() != 0 && !stopping_)
        trouble_ = LastLine(member->readAllStandardError());
    at->release()->deleteLater(); // it is being called
    members_.erase(at);
    if (Running())
        return;
    look_.stop();
    patience_.stop();
    ended_ = true;
    AskRows();
    Q_EMIT Changed();
}

void SearchDesk::Stop() {
    if (!Running())
        return;
    SetGoing(false);
    stopping_ = true;
    for (const auto& member : members_)
        member->closeWriteChannel();
    patience_.start();
    Q_EMIT Changed();
}

void SearchDesk::Leave() {
    stopping_ = true;
    for (const auto& member : members_)
        member->closeWriteChannel();
}

void SearchDesk::AskRows() {
    parts_.Desk.Post(rowsKind, [this, list = List(), last = !Running()](Database& database) -> std::function<void()> {
        Searches searches(database);
        std::vector<StoredSearch> found = searches.All(list);
        const std::vector<qint64> leads = searches.LeadsOfAll(list);
        std::vector<SearchProgress> rows;
        for (size_t i = 0; i < found.size() && i < leads.size(); ++i)
            rows.push_back({std::move(found[i]), leads[i]});
        return [this, last, rows = std::move(rows)] {
            rows_ = rows;
            if (last && std::exchange(ended_, false)) {
                if (!stopping_) {
                    SetGoing(false);
                    if (!trouble_.isEmpty())
                        Q_EMIT Failed(trouble_);
                }
                Q_EMIT Changed();
                return stopping_ ? void() : Q_EMIT Ended();
            }
            Q_EMIT Changed();
        };
    });
}

} // namespace Brindle
