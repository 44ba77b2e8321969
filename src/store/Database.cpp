#include "store/Database.h"

#include "store/Schema.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <cstdio>

namespace Brindle {

using namespace Qt::StringLiterals;
using Why = StoreError::Why;

namespace {

// How long another program's work on the same file is waited for.
constexpr std::chrono::milliseconds busyTimeout(5000);

// Result codes of SQLite, https://www.sqlite.org/rescode.html, without their extension.
Why WhyOfSqlite(int code) {
    switch (code & 0xff) {
    case 5: // busy
    case 6: // locked
        return Why::Locked;
    case 10: // I/O error: of a disk that took no more, most often
    case 13:
        return Why::Full;
    case 11:
    case 26:
        return Why::Damaged;
    case 8:
        return Why::ReadOnly;
    case 14: // cannot open
        return Why::Unreachable;
    default:
        return Why::Other;
    }
}

// SQLSTATE classes, https://www.postgresql.org/docs/15/errcodes-appendix.html.
Why WhyOfPostgres(const QString& state) {
    if (state.isEmpty() || state.startsWith(u"08"_s) || state.startsWith(u"57P"_s))
        return Why::Unreachable;
    if (state.startsWith(u"53"_s))
        return Why::Full;
    if (state.startsWith(u"55"_s) || state == u"57014" || state.startsWith(u"40"_s))
        return Why::Locked;
    return state.startsWith(u"XX"_s) ? Why::Damaged : Why::Other;
}

// Qt's driver says of each statement of a connection that was cut that it cannot free it.
thread_local bool connectionLost = false;
QtMessageHandler otherMessages = nullptr;

void TakeMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (connectionLost)
        return;
    if (otherMessages)
        otherMessages(type, context, text);
    else
        std::fputs(qUtf8Printable(qFormatLogMessage(type, context, text) + u'\n'), stderr);
}

QString FirstLine(const QSqlError& error) {
    QString text = error.databaseText();
    if (text.trimmed().isEmpty())
        text = error.driverText();
    return text.section(u'\n', 0, 0).trimmed();
}

} // namespace

Database::Database(const StoreTarget& target, Access access) : target_(target) {
    static std::atomic<quint64> next{0};
    name_ = u"brindle-store-%1"_s.arg(++next);
    const QString driver = IsPostgres() ? u"QPSQL"_s : u"QSQLITE"_s;
    if (!QSqlDatabase::isDriverAvailable(driver))
        throw StoreError(Why::Other, u"%1: this installation cannot use %2"_s.arg(
                                         target_.Shown(), IsPostgres() ? u"PostgreSQL"_s : u"SQLite"_s));
    database_ = QSqlDatabase::addDatabase(driver, name_);
    try {
        try {
            Open();
            MigrateSchema(*this);
        } catch (const StoreError& error) {
            const bool maybeReadable = error.Reason == Why::ReadOnly || error.Reason == Why::Unreachable;
            if (access == Access::Write || IsPostgres() || !maybeReadable)
                throw;
            OpenForReading();
            MigrateSchema(*this);
        }
    } catch (...) {
        Close();
        throw;
    }
}

Database::~Database() {
    Close();
}

void Database::Close() {
    if (lost_) {
        static const bool installed = [] {
            otherMessages = qInstallMessageHandler(TakeMessage);
            return true;
        }();
        connectionLost = installed;
    }
    prepared_.clear();
    connectionLost = false;
    database_.close();
    database_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
}

void Database::Open() {
    if (IsPostgres()) {
        database_.setHostName(target_.Host);
        database_.setDatabaseName(target_.Name);
        database_.setUserName(target_.User);
        database_.setPassword(target_.Password);
        if (target_.Port > 0)
            database_.setPort(target_.Port);
        // libpq takes no shorter wait than two seconds. A server that falls silent later is given up by the system.
        database_.setConnectOptions(target_.Options +
                                    u"connect_timeout=2;tcp_user_timeout=10000;application_name=brindle"_s);
    } else {
        QDir().mkpath(QFileInfo(target_.FileName).absolutePath());
        database_.setDatabaseName(target_.FileName);
        database_.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeout.count()));
    }
    Connect();
    if (IsPostgres()) {
        Execute(u"SET client_min_messages TO warning"_s);
        Execute(u"SET lock_timeout TO '5s'"_s);
        Execute(u"SET statement_timeout TO '60s'"_s);
        return;
    }
    // What is written is in the file's log before the statement returns, so a program that is killed loses nothing;
    // only a machine that loses its power can lose the last moments.
    // Of a new file: sorting by a column reads all of it, in a quarter of the steps of the usual size.
    Execute(u"PRAGMA page_size=16384"_s);
    BeginWriteAheadLog();
    Execute(u"PRAGMA synchronous=NORMAL"_s);
    Execute(u"PRAGMA cache_size=-65536"_s);
    // Bringing the log into the file waits for the disk, so it is not done after every few leads.
    Execute(u"PRAGMA wal_autocheckpoint=1000"_s);
    Execute(u"PRAGMA journal_size_limit=4194304"_s);
    Execute(u"PRAGMA temp_store=MEMORY"_s);
}

void Database::Connect() {
    if (database_.open())
        return;
    const QSqlError error = database_.lastError();
    throw StoreError(IsPostgres() ? Why::Unreachable : WhyOfSqlite(error.nativeErrorCode().toInt()),
                     u"%1: %2"_s.arg(target_.Shown(), FirstLine(error)));
}

// In a folder that takes no file there can be no log, and nobody who writes one: the file is read as it stands. One
// with a log is left to those who can write there.
void Database::OpenForReading() {
    prepared_.clear();
    database_.close();
    QString options = u"QSQLITE_OPEN_READONLY"_s;
    if (QFileInfo(target_.FileName + u"-wal"_s).size() == 0) {
        QUrl url = QUrl::fromLocalFile(target_.FileName);
        url.setQuery(u"immutable=1"_s);
        database_.setDatabaseName(url.toString(QUrl::FullyEncoded));
        options += u";QSQLITE_OPEN_URI"_s;
    }
    database_.setConnectOptions(options);
    Connect();
    readOnly_ = true;
}

void Database::BeginWriteAheadLog() {
    // SQLite does not wait by itself when two programs bring a new file to its log at the same moment.
    QDeadlineTimer deadline(busyTimeout);
    for (;;) {
        try {
            Execute(u"PRAGMA journal_mode=WAL"_s);
            return;
        } catch (const StoreError& error) {
            if (error.Reason != Why::Locked || deadline.hasExpired())
                throw;
        }
        QThread::msleep(10);
    }
}

QSqlQuery& Database::Run(const QString& sql, const QVariantList& values) {
    std::shared_ptr<QSqlQuery>& query = prepared_[sql];
    if (!query) {
        auto made = std::make_shared<QSqlQuery>(database_);
        made->setForwardOnly(true);
        if (!made->prepare(sql)) {
            const QSqlError error = made->lastError();
            prepared_.remove(sql);
            Throw(error);
        }
        query = made;
    }
    for (qsizetype i = 0; i < values.size(); ++i)
        query->bindValue(static_cast<int>(i), values[i]);
    if (!query->exec())
        Throw(query->lastError());
    return *query;
}

QVariant Database::Value(const QString& sql, const QVariantList& values) {
    QSqlQuery& query = Run(sql, values);
    QVariant value = query.next() ? query.value(0) : QVariant();
    query.finish();
    return value;
}

void Database::Execute(const QString& sql) {
    QSqlQuery query(database_);
    if (!query.exec(sql))
        Throw(query.lastError());
}

void Database::Throw(const QSqlError& what) const {
    const Why reason =
        IsPostgres() ? WhyOfPostgres(what.nativeErrorCode()) : WhyOfSqlite(what.nativeErrorCode().toInt());
    lost_ = lost_ || (IsPostgres() && reason == Why::Unreachable);
    throw StoreError(reason, u"%1: %2"_s.arg(target_.Shown(), FirstLine(what)));
}

WriteTransaction::WriteTransaction(Database& database) : database_(database) {
    database_.Execute(database_.IsPostgres() ? u"BEGIN"_s : u"BEGIN IMMEDIATE"_s);
}

WriteTransaction::~WriteTransaction() {
    if (!open_)
        return;
    try {
        database_.Execute(u"ROLLBACK"_s);
    } catch (const StoreError&) {
        // The connection is gone, and the transaction with it.
    }
}

void WriteTransaction::Commit() {
    database_.Execute(u"COMMIT"_s);
    open_ = false;
}

QString Marks(qsizetype count) {
    QString marks = u"?"_s;
    marks.reserve(2 * count);
    for (qsizetype i = 1; i < count; ++i)
        marks += u",?"_s;
    return marks;
}

} // namespace Brindle
