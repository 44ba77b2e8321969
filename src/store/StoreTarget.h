#pragma once

#include <QString>

namespace Brindle {

/// Where leads are kept: a file of SQLite, or a database of PostgreSQL.
struct StoreTarget {
    enum class Engine { SQLite, PostgreSQL };

    Engine Kind = Engine::SQLite;
    QString FileName; ///< of SQLite
    QString Host;     ///< name, address or folder of the server's socket; empty: libpq's own choice
    int Port = -1;
    QString Name; ///< of the database; empty: libpq's own choice
    QString User;
    QString Password; ///< from the address; empty: PGPASSWORD, passfile or service file, which libpq reads by itself
    QString Options;  ///< further connection options, "key=value;…"

    /// A file name, or an address `postgresql://user@host:port/database?option=value`. Throws `Failure` for an address
    /// that is none; the message never has the password.
    static StoreTarget Parse(const QString& text);
    /// For messages: without the password.
    QString Shown() const;
    bool IsPostgres() const { return Kind == Engine::PostgreSQL; }
    /// The beginning of the names of the files that hold what the store could not take yet. They lie beside an SQLite
    /// file; those of a server lie in `folder`.
    QString PendingBase(const QString& folder) const;
    /// The same in the folder, for a store whose own folder cannot be written.
    QString SparePendingBase(const QString& folder) const;
};

/// The store of the window in its settings folder.
QString DefaultStoreFile(const QString& settingsFolder);

} // namespace Brindle
