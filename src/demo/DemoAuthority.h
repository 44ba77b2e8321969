#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

struct evp_pkey_st;
struct x509_st;

namespace Brindle::Demo {

/// A certificate authority that exists as long as the demo runs, for its own https addresses on 127.0.0.1. Nobody else
/// trusts it.
class DemoAuthority {
public:
    /// Makes the keys. Throws std::runtime_error when the file cannot be written.
    DemoAuthority();
    ~DemoAuthority();
    DemoAuthority(const DemoAuthority&) = delete;
    DemoAuthority& operator=(const DemoAuthority&) = delete;

    /// The file with its certificate, PEM; gone with this object.
    QString File() const;
    /// Certificate and key of a server on 127.0.0.1, owned by this object.
    x509_st* ServerCertificate() const;
    evp_pkey_st* ServerKey() const;

private:
    struct Keys;
    QTemporaryDir folder_;
    std::unique_ptr<Keys> keys_;
};

} // namespace Brindle::Demo
