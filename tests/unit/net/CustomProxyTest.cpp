#include "net/CustomProxy.h"

#include "PrintTo.h"
#include "ScriptedBrowser.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(SetCustomProxy, AppliesTheModeAndItsSideEffects) {
    const QString agent = u"agent "_s + BrowserUserAgent();
    struct Case {
        Settings Before;
        QString Proxy; // empty: none beyond the reset
        QString Host, Port, UserName, Password;
    };
    const auto single = [](bool authentication) {
        Settings s;
        s.rUseProxy = true;
        s.rAuthentification = authentication;
        s.eHost = u"h"_s;
        s.ePort = u"81"_s;
        s.eUserName = u"u"_s;
        s.ePassword = u"p"_s;
        return s;
    };
    Settings noPort = single(true);
    noPort.ePort.clear();
    Settings list = single(false);
    list.rUseProxy = false;
    list.rRandomProxy = true;
    list.eRandomProxies = {u"a:1"_s, u"b:2:x:y"_s, u"c"_s};
    Settings listWithLogin = list;
    listWithLogin.rAuthentification = true;
    Settings emptyList = list;
    emptyList.eRandomProxies.clear();
    Settings off = single(false);
    off.rUseProxy = false;
    const Case cases[] = {
        {single(true), u"proxy h:81 u p"_s, u"h"_s, u"81"_s, u"u"_s, u"p"_s},
        {single(false), u"proxy h:81  "_s, u"h"_s, u"81"_s, {}, {}}, // the stored login is cleared
        {noPort, {}, u"h"_s, {}, u"u"_s, u"p"_s},
        {off, {}, u"h"_s, u"81"_s, u"u"_s, u"p"_s},
        {list, u"proxy b:2  "_s, u"b"_s, u"2"_s, {}, {}}, // the picked entry takes the single proxy's place
        {listWithLogin, u"proxy b:2 x y"_s, u"b"_s, u"2"_s, u"x"_s, u"y"_s},
        {emptyList, {}, u"h"_s, u"81"_s, u"u"_s, u"p"_s},
    };
    for (const Case& c : cases) {
        Brindle::Test::ScriptedBrowser browser;
        Settings settings = c.Before;
        EXPECT_FALSE(SetCustomProxy(browser, settings, BrowserUserAgent(), [](qint32 count) {
            EXPECT_EQ(count, 3);
            return 1;
        }));
        QStringList expected{u"proxy :80  "_s, agent};
        if (!c.Proxy.isEmpty())
            expected += {c.Proxy, agent};
        EXPECT_EQ(browser.Calls, expected);
        EXPECT_EQ((QStringList{settings.eHost, settings.ePort, settings.eUserName, settings.ePassword}),
                  (QStringList{c.Host, c.Port, c.UserName, c.Password}));
    }
}

} // namespace
} // namespace Brindle
