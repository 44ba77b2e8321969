#include "PageServer.h"

#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

PageServer::PageServer() {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* const socket = nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { Answer(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QString PageServer::Address(const QString& path) const {
    return u"http://127.0.0.1:%1"_s.arg(serverPort()) + path;
}

void PageServer::Answer(QTcpSocket* socket) {
    const QByteArray request = socket->peek(64LL * 1024);
    if (!request.contains("\r\n\r\n"))
        return;
    socket->readAll();
    Requests.append(request);
    const QByteArray path = request.split(' ').value(1);
    const bool known = Pages.contains(path);
    QByteArray headers = Headers.value(path);
    QByteArray status = known ? "200 OK" : "404 Not Found";
    if (headers.startsWith("Status: ")) {
        const qsizetype end = headers.indexOf("\r\n");
        status = headers.sliced(8, end - 8);
        headers.remove(0, end + 2);
    }
    if (!headers.contains("Content-Type"))
        headers += "Content-Type: text/html; charset=utf-8\r\n";
    const QByteArray body = known ? Pages.value(path) : QByteArray("<body>missing</body>");
    socket->write("HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + QByteArray::number(body.size()) +
                  "\r\nConnection: close\r\n\r\n" + body);
    socket->disconnectFromHost();
}

} // namespace Brindle::Test
