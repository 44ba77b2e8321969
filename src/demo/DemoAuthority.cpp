#include "demo/DemoAuthority.h"

#ifdef BRINDLE_DEMO_TLS

#include <QFile>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

template <auto Free>
struct Freed {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freed<X509_free>>;

void AddExtension(X509* certificate, X509* issuer, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Freed<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    if (!extension || X509_add_ext(certificate, extension.get(), -1) != 1)
        throw std::runtime_error("the demo's certificate cannot be made");
}

// A certificate for a key, good for a day; signed by itself without an issuer.
Certificate MakeCertificate(EVP_PKEY* key, const char* name, long serial, X509* issuer, EVP_PKEY* issuerKey) {
    Certificate certificate(X509_new());
    X509* const made = certificate.get();
    X509_set_version(made, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(made), serial);
    X509_gmtime_adj(X509_getm_notBefore(made), -3600);
    X509_gmtime_adj(X509_getm_notAfter(made), 24L * 3600);
    X509_set_pubkey(made, key);
    X509_NAME* const subject = X509_get_subject_name(made);
    X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
    X509_set_issuer_name(made, issuer ? X509_get_subject_name(issuer) : subject);
    X509* const by = issuer ? issuer : made;
    AddExtension(made, by, NID_basic_constraints, issuer ? "critical,CA:FALSE" : "critical,CA:TRUE");
    AddExtension(made, by, NID_subject_key_identifier, "hash");
    if (issuer) {
        AddExtension(made, by, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost");
        AddExtension(made, by, NID_ext_key_usage, "serverAuth");
        AddExtension(made, by, NID_authority_key_identifier, "keyid");
    } else {
        AddExtension(made, by, NID_key_usage, "critical,keyCertSign,cRLSign");
        // Nothing else can be vouched for with it.
        AddExtension(made, by, NID_name_constraints,
                     "critical,permitted;IP:127.0.0.1/255.255.255.255,permitted;DNS:localhost");
    }
    if (X509_sign(made, issuer ? issuerKey : key, EVP_sha256()) == 0)
        throw std::runtime_error("the demo's certificate cannot be signed");
    return certificate;
}

} // namespace

struct DemoAuthority::Keys {
    Key Own{EVP_EC_gen("P-256")};
    Key Server{EVP_EC_gen("P-256")};
    Certificate OwnCertificate;
    Certificate ServerCertificate;
};

DemoAuthority::DemoAuthority() : keys_(std::make_unique<Keys>()) {
    Keys& keys = *keys_;
    if (!keys.Own || !keys.Server)
        throw std::runtime_error("the demo's keys cannot be made");
    keys.OwnCertificate = MakeCertificate(keys.Own.get(), "Brindle demo authority", 1, nullptr, nullptr);
    keys.ServerCertificate =
        MakeCertificate(keys.Server.get(), "127.0.0.1", 2, keys.OwnCertificate.get(), keys.Own.get());

    const std::unique_ptr<BIO, Freed<BIO_free_all>> memory(BIO_new(BIO_s_mem()));
    PEM_write_bio_X509(memory.get(), keys.OwnCertificate.get());
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    QFile file(File());
    if (!file.open(QIODevice::WriteOnly) || file.write(text, size) != size)
        throw std::runtime_error("the demo's certificate cannot be written: " + file.errorString().toStdString());
}

DemoAuthority::~DemoAuthority() = default;

QString DemoAuthority::File() const {
    return folder_.filePath(u"authority.pem"_s);
}

x509_st* DemoAuthority::ServerCertificate() const {
    return keys_->ServerCertificate.get();
}

evp_pkey_st* DemoAuthority::ServerKey() const {
    return keys_->Server.get();
}

} // namespace Brindle::Demo

#else

namespace Brindle::Demo {

// Without https nobody makes one.
struct DemoAuthority::Keys {};
DemoAuthority::DemoAuthority() = default;
DemoAuthority::~DemoAuthority() = default;

} // namespace Brindle::Demo

#endif
