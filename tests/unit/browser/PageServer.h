#pragma once

#include <QHash>
#include <QTcpServer>

#include <functional>

namespace Brindle::Test {

/// A server on the loopback that answers each path with what the test wrote for it, while messages are handled.
class PageServer : public QTcpServer {
    Q_OBJECT

public:
    PageServer();

    /// The body of a path's page; the path may have a query.
    QHash<QByteArray, QByteArray> Pages;
    /// Header lines of a path, each with its line end; with "Status: N text" the status line is replaced.
    QHash<QByteArray, QByteArray> Headers;
    /// The requests as they came, head only.
    QList<QByteArray> Requests;

    QString Address(const QString& path = QStringLiteral("/")) const;

private:
    void Answer(class QTcpSocket* socket);
};

} // namespace Brindle::Test
