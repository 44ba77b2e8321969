#include "IeBrowser.h"

#include "HtmlDocument.h"
#include "IeError.h"
#include "IeSession.h"
#include "IeWidget.h"
#include "MarkupFormText.h"
#include "PageAddress.h"

#include <utility>

namespace Brindle {

namespace {

constexpr int idleCheckMs = 1000;

// Addresses that bring up a document; the others run a script, write a mail, or show the engine's own messages.
bool BringsPage(const QString& address) {
    const QString scheme = SchemeOf(address);
    return scheme == u"http" || scheme == u"https" || scheme == u"about" || scheme == u"file";
}

} // namespace

IeBrowser::IeBrowser() : view_(new IeWidget) {
    idle_.setInterval(idleCheckMs);
    connect(&idle_, &QTimer::timeout, this, &IeBrowser::GiveUpWhenIdle);
}

IeBrowser::~IeBrowser() {
    if (view_) {
        view_->Show(nullptr);
        if (!view_->parent())
            delete view_;
    }
}

QWidget* IeBrowser::Widget() const {
    return view_;
}

bool IeBrowser::MakeControl() {
    if (control_)
        return true;
    control_ = IeControl::Create(*this);
    if (!control_)
        return false;
    control_->Site().Pages().Login().SetProxyLogin(proxy_);
    control_->SetUserAgent(userAgent_);
    if (view_)
        view_->Show(control_.get());
    return true;
}

void IeBrowser::Navigate(const QString& address) {
    const QString target = TypedAddress(address);
    lastError_.clear();
    if (!MakeControl())
        return Fail(target, QStringLiteral("this system has no web browser control"));
    if (!IeControl::PageEngineInstalled())
        return Fail(target, QStringLiteral("this system has no page engine for its web browser control"));
    if (BringsPage(target))
        Leave();
    if (!control_->Navigate(target))
        Fail(target, QStringLiteral("the web browser control does not take this address"));
}

void IeBrowser::Stop() {
    if (control_)
        control_->Stop();
    Arrive();
}

void IeBrowser::Refresh() {
    if (!failedAddress_.isEmpty())
        Navigate(QString(failedAddress_));
    else if (control_)
        control_->Refresh();
}

void IeBrowser::GoBack() {
    if (control_)
        control_->GoBack();
}

void IeBrowser::GoForward() {
    if (control_)
        control_->GoForward();
}

bool IeBrowser::Busy() const {
    return leaving_ || (control_ && control_->Busy());
}

QString IeBrowser::LocationAddress() const {
    return control_ ? control_->LocationAddress() : QString();
}

QString IeBrowser::BodyOuterHtml(MarkupForm form) {
    const QString html = Document().BodyOuterHtml();
    // The engine serialises a page that it shows as its predecessors did in their way too.
    if (form == MarkupForm::Standard && html.startsWith(u"<BODY"))
        return HtmlDocument(html).BodyOuterHtml(form);
    return InMarkupForm(html, form);
}

int IeBrowser::LinkCount() {
    return Document().LinkCount();
}

QString IeBrowser::LinkInnerText(int index) {
    return Document().LinkInnerText(index);
}

void IeBrowser::ClickLink(int index) {
    Document().ClickLink(index);
}

void IeBrowser::SetProxy(const BrowserProxy& proxy) {
    proxy_ = proxy;
    SetSessionProxy(proxy);
    if (control_)
        control_->Site().Pages().Login().SetProxyLogin(proxy);
}

void IeBrowser::SetUserAgent(const QString& userAgent) {
    userAgent_ = userAgent;
    SetSessionUserAgent(userAgent);
    if (control_)
        control_->SetUserAgent(userAgent);
}

void IeBrowser::NavigationBegins(const QString& address, bool wholePage) {
    if (!wholePage || !BringsPage(address))
        return;
    lastError_.clear();
    failing_.clear();
    Leave();
}

void IeBrowser::NavigationShows(const QString&, bool wholePage) {
    if (!wholePage)
        return;
    failedAddress_ = std::exchange(failing_, {});
    Arrive();
    Tell([this] { Q_EMIT NavigateComplete(LocationAddress()); });
}

void IeBrowser::DocumentLoaded(const QString&, bool wholePage) {
    if (wholePage)
        Arrive();
}

void IeBrowser::NavigationFails(const QString& address, qint32 status, bool wholePage) {
    // What a server answers with an error status is a page too.
    if (!wholePage || status > 0)
        return;
    failing_ = address;
    lastError_ = address + QStringLiteral(": ") + LoaderErrorText(status);
}

void IeBrowser::FileRefused() {
    Arrive();
}

void IeBrowser::WindowWanted(const QString& address) {
    if (BringsPage(address) && SchemeOf(address) != u"about")
        Tell([this, address] { Navigate(address); });
}

void IeBrowser::Progress(qint64 progress, qint64 maximum) {
    Tell([this, progress, maximum] { Q_EMIT ProgressChange(progress, maximum); });
}

IeDocument IeBrowser::Document() const {
    const bool readable = control_ && !leaving_ && failedAddress_.isEmpty();
    return readable ? control_->Document() : IeDocument({});
}

void IeBrowser::Leave() {
    leaving_ = true;
    idle_.start();
}

void IeBrowser::Arrive() {
    leaving_ = false;
    idle_.stop();
}

// A navigation can end without a word: the server sends no page, the address is a place on the page that is shown.
void IeBrowser::GiveUpWhenIdle() {
    if (control_ && control_->Busy())
        return;
    Arrive();
    Q_EMIT NavigateComplete(LocationAddress());
}

void IeBrowser::Fail(const QString& address, const QString& reason) {
    Arrive();
    lastError_ = address + QStringLiteral(": ") + reason;
    if (view_)
        view_->SetNote(lastError_);
    Tell([this] { Q_EMIT NavigateComplete(LocationAddress()); });
}

// The control speaks up in the middle of its own work and waits for the answer. Whoever listens may handle messages and
// read the page meanwhile, so they are told afterwards.
void IeBrowser::Tell(std::function<void()> what) {
    QMetaObject::invokeMethod(this, std::move(what), Qt::QueuedConnection);
}

} // namespace Brindle
