#include "browser/webengine/WebEnginePage.h"

#include "net/AddressGuard.h"
#include "net/ServerTrust.h"

#include <QAuthenticator>
#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QWebEngineCertificateError>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

namespace Brindle {

using namespace Qt::StringLiterals;

WebEnginePage::WebEnginePage(QWebEngineProfile* profile) : QWebEnginePage(profile, nullptr) {
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](QWebEngineNewWindowRequest& request) {
        const QUrl target = request.requestedUrl();
        const bool wanted = request.isUserInitiated() || !windowExpected_.hasExpired();
        windowExpected_.setRemainingTime(0); // one click, one window
        if (wanted && !target.isEmpty() && target.scheme() != u"about"_s)
            load(target);
    });
    // An authenticator without a name gives up, and the page that goes with the refusal is shown.
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [](const QUrl&, QAuthenticator* login) { *login = QAuthenticator(); });
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
            [this](const QUrl& asker, QAuthenticator* login, const QString&) { AnswerProxy(asker, login); });
    // The engine knows the system's authorities alone.
    connect(this, &QWebEnginePage::certificateError, this, [](QWebEngineCertificateError error) {
        if (error.type() == QWebEngineCertificateError::CertificateAuthorityInvalid &&
            !AuthorityOf(error.url().toString()).isEmpty())
            error.acceptCertificate();
        else
            error.rejectCertificate();
    });
    connect(this, &QWebEnginePage::loadStarted, this, [this] {
        askedFor_.clear();
        windowExpected_.setRemainingTime(0);
    });
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

void WebEnginePage::EndClick() {
    if (windowExpected_.isForever())
        windowExpected_.setRemainingTime(5000);
}

QString WebEnginePage::RefusalOf(const QString& from, const QUrl& url) const {
    if (from.isEmpty())
        return {};
    const AddressKind origin = KindOfOrigin({from, {}});
    const QString host = url.host(QUrl::FullyEncoded);
    if (const std::optional<AddressKind> kind = KindOfHost(host))
        return MayLeadTo(origin, *kind) ? QString() : RefusalText(host, host);
    if (QNetworkProxy::applicationProxy().type() != QNetworkProxy::NoProxy)
        return {};
    for (const QHostAddress& address : QHostInfo::fromName(host).addresses())
        if (const std::optional<NumericAddress> numeric = ReadNumericAddress(address.toString());
            numeric && !MayLeadTo(origin, KindOf(*numeric)))
            return RefusalText(host, address.toString());
    return {};
}

bool WebEnginePage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (isMainFrame && type == NavigationTypeRedirect)
        if (const QString refusal = RefusalOf(guarded_, url); !refusal.isEmpty()) {
            refusal_ = refusal;
            return false;
        }
    return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
}

void WebEnginePage::javaScriptAlert(const QUrl&, const QString&) {}

// True: the same question asks whether a page may be left.
bool WebEnginePage::javaScriptConfirm(const QUrl&, const QString&) {
    return true;
}

bool WebEnginePage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) {
    return false;
}

void WebEnginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) {}

QStringList WebEnginePage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) {
    return {};
}

void WebEnginePage::AnswerProxy(const QUrl& asker, QAuthenticator* login) {
    // Asked for the same address again: the proxy did not take what it was given.
    if (!proxy_.Login || askedFor_.contains(asker)) {
        *login = QAuthenticator();
        return;
    }
    askedFor_.insert(asker);
    login->setUser(proxy_.Login->UserName);
    login->setPassword(proxy_.Login->Password);
}

} // namespace Brindle
