#include "browser/ie/IeBrowser.h"

#include "browser/ie/IeError.h"
#include "browser/ie/IeSession.h"
#include "browser/ie/IeWidget.h"
#include "toolkit/PageAddress.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int idleCheckMs = 1000;

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

QString IeBrowser::MakeControl() {
    if (control_)
        return {};
    if (!IeControl::PageEngineInstalled())
        return u"Windows has no page engine for its web browser control"_s;
    control_ = IeControl::Create(*this);
    if (!control_)
        return u"Windows has no web browser control"_s;
    control_->Site().Pages().Login().SetProxyLogin(proxy_);
    control_->SetUserAgent(userAgent_);
    if (view_ && !view_->Show(control_.get()))
        return u"the web browser control cannot be shown in this window"_s;
    return {};
}

void IeBrowser::Navigate(const QString& address) {
    const QString target = TypedAddress(address);
    navigation_.Begin(target);
    QString problem = MakeControl();
    if (problem.isEmpty() && !control_->Navigate(target))
        problem = u"the web browser control does not take this address"_s;
    if (problem.isEmpty())
        return Watch();
    navigation_.Fail(target, problem);
    navigation_.End();
    if (view_)
        view_->SetNote(LastError());
    TellComplete();
}

void IeBrowser::Stop() {
    if (control_)
        control_->Stop();
    navigation_.End();
}

void IeBrowser::Refresh() {
    if (const QString missing = navigation_.ShownInPlaceOf(); !missing.isEmpty())
        Navigate(missing);
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
    return navigation_.Leaving() || (control_ && control_->Busy());
}

QString IeBrowser::LocationAddress() const {
    return control_ ? control_->LocationAddress() : QString();
}

QString IeBrowser::BodyOuterHtml(MarkupForm form) {
    return Document().BodyOuterHtml(form);
}

QString IeBrowser::DocumentHtml() {
    return Document().DocumentHtml();
}

int IeBrowser::LinkCount() {
    return Document().LinkCount();
}

QString IeBrowser::LinkInnerText(int index) {
    return Document().LinkInnerText(index);
}

void IeBrowser::ClickLink(int index) {
    clicked_ = true;
    Document().ClickLink(index);
}

void IeBrowser::SetProxy(const Proxy& proxy) {
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
    if (!wholePage)
        return;
    navigation_.Begin(address);
    Watch();
}

void IeBrowser::NavigationShows(const QString&, bool wholePage) {
    if (!wholePage)
        return;
    navigation_.Show();
    clicked_ = false;
    TellComplete();
}

void IeBrowser::DocumentLoaded(const QString&, bool wholePage) {
    if (wholePage)
        navigation_.End();
}

void IeBrowser::NavigationFails(const QString& address, qint32 status, bool wholePage) {
    // What a server answers with an error status is a page too.
    if (wholePage && status <= 0)
        navigation_.Fail(address, LoaderErrorText(status));
}

void IeBrowser::FileRefused() {
    navigation_.End();
}

void IeBrowser::WindowWanted(const QString& address, bool byUser) {
    if ((byUser || clicked_) && IeNavigation::BringsPage(address) && SchemeOf(address) != u"about")
        Tell([this, address] { Navigate(address); });
}

void IeBrowser::Progress(qint64 progress, qint64 maximum) {
    Tell([this, progress, maximum] { Q_EMIT ProgressChange(progress, maximum); });
}

IeDocument IeBrowser::Document() const {
    return control_ && navigation_.HasPage() ? control_->Document() : IeDocument({});
}

void IeBrowser::Watch() {
    if (navigation_.Leaving())
        idle_.start();
}

// A navigation can end without a word: the server sends no page, the address is a place on the page that is shown.
void IeBrowser::GiveUpWhenIdle() {
    if (navigation_.Leaving() && control_ && control_->Busy())
        return;
    idle_.stop();
    if (!navigation_.Leaving())
        return;
    navigation_.End();
    Q_EMIT NavigateComplete(LocationAddress());
}

// The control speaks up in the middle of its own work and waits for the answer. Whoever listens may handle messages and
// read the page meanwhile, so they are told afterwards.
void IeBrowser::Tell(std::function<void()> what) {
    QMetaObject::invokeMethod(this, std::move(what), Qt::QueuedConnection);
}

void IeBrowser::TellComplete() {
    Tell([this] { Q_EMIT NavigateComplete(LocationAddress()); });
}

} // namespace Brindle
