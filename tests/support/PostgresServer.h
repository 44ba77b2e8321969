#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace Brindle::Test {

/// A PostgreSQL server of the test's own: data in a folder of its own, reachable through a socket in it, gone with this
/// object. Run by root it belongs to the user "postgres", because the server refuses to be root's.
class PostgresServer {
public:
    PostgresServer();
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    /// Whether the machine has a server to start.
    static bool Installed();
    /// Why it did not start; empty when it did.
    const QString& Error() const { return error_; }
    /// The store's address.
    QString Address() const;

    void Start();
    /// As the system's manager stops it: connections are cut.
    void Stop();
    /// Stops the answers without cutting a connection, and lets them go on.
    void Freeze();
    void Thaw();

private:
    QStringList AsOwner(const QStringList& command) const;
    bool Run(const QStringList& command, int limitMs);
    void Signal(int signal);

    QTemporaryDir folder_;
    QString data_;
    QString error_;
    bool running_ = false;
};

} // namespace Brindle::Test
