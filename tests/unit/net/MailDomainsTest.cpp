#include "net/MailDomains.h"

#include <QHash>
#include <QThread>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// A name server on loopback that answers MX and address questions about a few domains (RFC 1035), handled while the
// question is waited for.
class NameServer {
public:
    NameServer() { EXPECT_TRUE(socket_.bind(QHostAddress::LocalHost)); }

    QString Address() const { return u"127.0.0.1:%1"_s.arg(socket_.localPort()); }
    void Handle() {
        while (socket_.waitForReadyRead(0) || socket_.hasPendingDatagrams()) {
            QByteArray question(static_cast<qsizetype>(socket_.pendingDatagramSize()), Qt::Uninitialized);
            QHostAddress from;
            quint16 port = 0;
            socket_.readDatagram(question.data(), question.size(), &from, &port);
            if (const QByteArray answer = AnswerTo(question); !answer.isEmpty())
                socket_.writeDatagram(answer, from, port);
        }
    }

private:
    static QByteArray AnswerTo(const QByteArray& question) {
        QByteArray name;
        qsizetype at = 12;
        while (at < question.size() && question[at] != 0) {
            name += (name.isEmpty() ? "" : ".") + question.mid(at + 1, question[at]);
            at += 1 + question[at];
        }
        const int type = static_cast<unsigned char>(question[at + 2]);
        const auto message = [&](char code, const QByteArray& record) {
            QByteArray answer = question.first(2) + "\x81" + char(0x80 | code) + QByteArray("\0\1\0", 3) +
                                char(record.isEmpty() ? 0 : 1) + QByteArray("\0\0\0\0", 4) +
                                question.sliced(12, at - 12 + 5);
            if (!record.isEmpty())
                answer += QByteArray("\xc0\x0c\0", 3) + char(type) + QByteArray("\0\1\0\0\0\x3c\0", 7) +
                          char(record.size()) + record;
            return answer;
        };
        constexpr char noSuchName = 3;
        constexpr char serverFailed = 2;
        if (name == "silent.test")
            return {};
        if (name == "broken.test")
            return message(serverFailed, {});
        if (name == "mail.test" && type == 15)
            return message(0, QByteArray("\0\x0a\2mx\xc0\x0c", 7));
        if (name == "null.test" && type == 15)
            return message(0, QByteArray("\0\0\0", 3));
        if (name == "host.test")
            return message(0, type == 1 ? QByteArray("\x7f\0\0\1", 4) : QByteArray());
        if (name == "longhost.test")
            return message(0, type == 28 ? QByteArray(15, '\0') + '\1' : QByteArray());
        if (name == "bare.test" || name == "null.test")
            return message(0, {});
        return message(noSuchName, {});
    }

    QUdpSocket socket_;
};

TEST(MailDomains, AsksWhetherADomainTakesMail) {
    NameServer server;
    MailDomains domains(server.Address(), std::chrono::seconds(20), [&server] { server.Handle(); });
    struct Case {
        QString Domain;
        MailDomain Verdict;
    };
    const Case cases[]{
        {u"mail.test"_s, MailDomain::TakesMail}, {u"null.test"_s, MailDomain::TakesNone},
        {u"host.test"_s, MailDomain::TakesMail}, {u"longhost.test"_s, MailDomain::TakesMail},
        {u"bare.test"_s, MailDomain::TakesNone}, {u"missing.test"_s, MailDomain::TakesNone},
        {u"broken.test"_s, MailDomain::Unknown},
    };
    for (int round = 0; round < 2; ++round)
        for (const Case& one : cases)
            EXPECT_EQ(domains.Check(one.Domain), one.Verdict) << one.Domain.toStdString();
    EXPECT_EQ(domains.Asked(), static_cast<qint64>(std::size(cases))) << "each once";
}

TEST(MailDomains, NoAnswerInTimeIsUnknown) {
    NameServer server;
    MailDomains domains(server.Address(), std::chrono::milliseconds(60), [&server] { server.Handle(); });
    EXPECT_EQ(domains.Check(u"silent.test"_s), MailDomain::Unknown);
    EXPECT_EQ(MailDomains(u"rubbish"_s, std::chrono::milliseconds(60)).Check(u"mail.test"_s), MailDomain::Unknown);
}

} // namespace
} // namespace Brindle
