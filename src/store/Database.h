#pragma once

#include "core/Errors.h"
#include "store/StoreTarget.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <memory>

namespace Brindle {

/// The store could not do what was asked. The message is one line that names the store and the reason.
class StoreError : public Failure {
public:
    enum class Why { Locked, Full, ReadOnly, Damaged, Newer, Unreachable, Other };
    StoreError(Why reason, const QString& message) : Failure(message), Reason(reason) {}
    Why Reason;
};

/// One connection to a store, for the thread that made it. The schema is brought up to date when it is opened.
class Database {
public:
    enum class Access {
        Write,
        ReadAtLeast ///< a file that is there and cannot be written is opened for reading
    };
    /// Connects. A missing SQLite file is made, with its folder; a server is waited for a few seconds at most. Throws
    /// `StoreError`.
    explicit Database(const StoreTarget& target, Access access = Access::Write);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    bool IsPostgres() const { return target_.IsPostgres(); }
    const StoreTarget& Target() const { return target_; }
    /// Nothing can be written, and what others write from now on is not seen.
    bool IsReadOnly() const { return readOnly_; }

    /// Runs a statement with its values bound to the question marks. The query is good until the same statement is run
    /// again. Throws `StoreError`.
    QSqlQuery& Run(const QString& sql, const QVariantList& values = {});
    /// The first value of the first row; null when there is none.
    QVariant Value(const QString& sql, const QVariantList& values = {});
    /// As it stands, not prepared: for what is no data.
    void Execute(const QString& sql);

    /// Of a failed step. `what` is the statement's error.
    [[noreturn]] void Throw(const QSqlError& what) const;

private:
    void Close();
    void Connect();
    void Open();
    void OpenForReading();
    void BeginWriteAheadLog();

    StoreTarget target_;
    mutable bool lost_ = false; // the connection was cut
    bool readOnly_ = false;
    QString name_;
    QSqlDatabase database_;
    QHash<QString, std::shared_ptr<QSqlQuery>> prepared_;
};

/// A transaction that may write; rolled back unless committed. With SQLite it takes the one place of a writer at once.
class WriteTransaction {
public:
    explicit WriteTransaction(Database& database);
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction&) = delete;
    WriteTransaction& operator=(const WriteTransaction&) = delete;
    void Commit();

private:
    Database& database_;
    bool open_ = true;
};

/// "?,?,?" for so many values.
QString Marks(qsizetype count);

} // namespace Brindle
