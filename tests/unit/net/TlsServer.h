#pragma once

#include "Sockets.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <thread>

struct evp_pkey_st;
struct ssl_ctx_st;
struct x509_st;

namespace Brindle::Test {

/// A certificate authority that exists for one test.
class TestAuthority {
public:
    TestAuthority();
    ~TestAuthority();
    TestAuthority(const TestAuthority&) = delete;
    TestAuthority& operator=(const TestAuthority&) = delete;

    /// The file with its certificate, for clients that trust it.
    QString CaFile() const;
    /// A certificate for 127.0.0.1 with its key; valid from and to, in seconds from now.
    std::pair<x509_st*, evp_pkey_st*> Issue(long validFrom, long validTo) const;

private:
    QTemporaryDir folder_;
    evp_pkey_st* key_;
    x509_st* certificate_;
};

enum class TlsVersions { Only12, Only13 };

/// An https server on 127.0.0.1 that answers every request with the same bytes.
class TlsServer {
public:
    TlsServer(const TestAuthority& authority, TlsVersions versions, QByteArray answer, long validTo = 3600);
    ~TlsServer();
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;

    QString Base() const { return QStringLiteral("https://127.0.0.1:%1").arg(port_); }
    /// The last request that came through; valid when no request is under way.
    const QByteArray& LastRequest() const { return request_; }
    QByteArray LastVersion() const { return version_; }

private:
    void Run();

    QByteArray answer_;
    ssl_ctx_st* context_;
    int port_ = 0;
    Socket listener_ = noSocket;
    QByteArray request_;
    QByteArray version_;
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

} // namespace Brindle::Test
