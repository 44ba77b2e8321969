#include "TlsServer.h"

#include <QFile>

#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

namespace {

X509* MakeCertificate(EVP_PKEY* key, const char* name, long validFrom, long validTo) {
    X509* const certificate = X509_new();
    X509_set_version(certificate, 2);
    static long serial = 1;
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial++);
    X509_gmtime_adj(X509_getm_notBefore(certificate), validFrom);
    X509_gmtime_adj(X509_getm_notAfter(certificate), validTo);
    X509_set_pubkey(certificate, key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
    return certificate;
}

void AddExtension(X509* certificate, int id, const char* value) {
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, id, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

} // namespace

TestAuthority::TestAuthority()
    : key_(EVP_EC_gen("P-256")), certificate_(MakeCertificate(key_, "Test authority", -7200, 7200)) {
    X509_set_issuer_name(certificate_, X509_get_subject_name(certificate_));
    AddExtension(certificate_, NID_basic_constraints, "critical,CA:TRUE");
    X509_sign(certificate_, key_, EVP_sha256());
    BIO* const text = BIO_new(BIO_s_mem());
    PEM_write_bio_X509(text, certificate_);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text, &bytes);
    QFile file(CaFile());
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes, size);
    BIO_free(text);
}

TestAuthority::~TestAuthority() {
    X509_free(certificate_);
    EVP_PKEY_free(key_);
}

QString TestAuthority::CaFile() const {
    return folder_.filePath(u"authority.pem"_s);
}

std::pair<X509*, EVP_PKEY*> TestAuthority::Issue(long validFrom, long validTo) const {
    EVP_PKEY* const key = EVP_EC_gen("P-256");
    X509* const certificate = MakeCertificate(key, "Test server", validFrom, validTo);
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate_));
    AddExtension(certificate, NID_subject_alt_name, "IP:127.0.0.1");
    X509_sign(certificate, key_, EVP_sha256());
    return {certificate, key};
}

TlsServer::TlsServer(const TestAuthority& authority, TlsVersions versions, QByteArray answer, long validTo)
    : answer_(std::move(answer)), context_(SSL_CTX_new(TLS_server_method())) {
    const int version = versions == TlsVersions::Only12 ? TLS1_2_VERSION : TLS1_3_VERSION;
    SSL_CTX_set_min_proto_version(context_, version);
    SSL_CTX_set_max_proto_version(context_, version);
    const auto [certificate, key] = authority.Issue(-3600, validTo);
    SSL_CTX_use_certificate(context_, certificate);
    SSL_CTX_use_PrivateKey(context_, key);
    X509_free(certificate);
    EVP_PKEY_free(key);
    listener_ = ListenOnLoopback(port_);
    thread_ = std::thread([this] { Run(); });
}

TlsServer::~TlsServer() {
    ending_ = true;
    thread_.join();
    CloseSocket(listener_);
    SSL_CTX_free(context_);
}

void TlsServer::Run() {
    while (!ending_) {
        if (!Readable(listener_, 10))
            continue;
        const Socket connection = AcceptConnection(listener_);
        const SocketTimeout limit = TimeoutOf(5);
        setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit), sizeof limit);
        SSL* const tls = SSL_new(context_);
        SSL_set_fd(tls, static_cast<int>(connection));
        if (SSL_accept(tls) == 1) {
            char buffer[4096];
            const int count = SSL_read(tls, buffer, sizeof buffer);
            if (count > 0) {
                request_ = QByteArray(buffer, count);
                version_ = SSL_get_version(tls);
                SSL_write(tls, answer_.constData(), static_cast<int>(answer_.size()));
                SSL_shutdown(tls);
            }
        }
        SSL_free(tls);
        CloseSocket(connection);
    }
}

} // namespace Brindle::Test
