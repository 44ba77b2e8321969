#include "ScriptedBrowser.h"

using namespace Qt::StringLiterals;

namespace Brindle::Test {

void ScriptedBrowser::Navigate(const QString& address) {
    Calls.append(u"navigate "_s + address);
    address_ = address;
    Q_EMIT NavigateComplete(address);
}

QString ScriptedBrowser::BodyOuterHtml(MarkupForm form) {
    LastForm = form;
    if (OnRead)
        OnRead();
    return Pages.value(address_);
}

QString ScriptedBrowser::LinkInnerText(int index) {
    return LinksOf.value(address_).value(index).Text;
}

void ScriptedBrowser::ClickLink(int index) {
    Calls.append(u"click %1"_s.arg(index));
    const QList<Link> links = LinksOf.value(address_);
    if (index >= 0 && index < links.size())
        address_ = links[index].Address;
}

void ScriptedBrowser::SetProxy(const Proxy& proxy) {
    const ProxyLogin login = proxy.Login.value_or(ProxyLogin());
    Calls.append(u"proxy %1:%2 %3 %4"_s.arg(proxy.Host).arg(proxy.Port).arg(login.UserName, login.Password));
}

void ScriptedBrowser::SetUserAgent(const QString& userAgent) {
    Calls.append(u"agent "_s + userAgent);
}

} // namespace Brindle::Test
