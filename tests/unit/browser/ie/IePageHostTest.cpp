#include "browser/ie/IePageHost.h"

#include "PrintTo.h"
#include "browser/ie/IeSession.h"
#include "browser/ie/IeSite.h"

#include <gtest/gtest.h>
#include <idispids.h>
#include <mshtmdid.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

class IePageHostTest : public testing::Test {
protected:
    template <typename Interface>
    ComPointer<Interface> Asked() {
        return Site.As<Interface>();
    }

    // What the control's surroundings say about one thing.
    ComValue Ambient(DISPID id, HRESULT expected = S_OK) {
        ComValue value;
        EXPECT_EQ(
            Asked<IDispatch>()->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, value.Get(), nullptr, nullptr),
            expected);
        return value;
    }

    ComPointer<IeSite> Site = ComPointer<IeSite>::Adopt(new IeSite);
};

TEST_F(IePageHostTest, IsOneObjectWithTheSite) {
    const auto identity = Asked<IUnknown>();
    for (const IID& iid : {IID_IOleClientSite, IID_IOleWindow, IID_IOleInPlaceSite, IID_IOleInPlaceUIWindow,
                           IID_IOleInPlaceFrame, IID_IOleControlSite, IID_IDocHostUIHandler, __uuidof(IDocHostShowUI),
                           IID_IOleCommandTarget, IID_IServiceProvider, IID_IDispatch}) {
        ComPointer<IUnknown> part;
        ASSERT_EQ(Site->QueryInterface(iid, part.OutVoid()), S_OK);
        EXPECT_EQ(part.As<IUnknown>().Get(), identity.Get());
    }
    ComPointer<IUnknown> other;
    EXPECT_EQ(Site->QueryInterface(IID_IPersist, other.OutVoid()), E_NOINTERFACE);
    EXPECT_FALSE(other);
}

TEST_F(IePageHostTest, NothingIsPutToTheUser) {
    EXPECT_NE(Ambient(DISPID_AMBIENT_SILENT).Number(), 0);
    EXPECT_TRUE(Ambient(DISPID_AMBIENT_DLCONTROL).Number() & DLCTL_SILENT);
    Ambient(-1, DISP_E_MEMBERNOTFOUND);

    const GUID commands{0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
    ComValue handled;
    const auto target = Asked<IOleCommandTarget>();
    EXPECT_EQ(target->Exec(&commands, OLECMDID_SHOWSCRIPTERROR, 0, nullptr, handled.Get()), S_OK);
    EXPECT_NE(handled.Number(), 0) << "the page's scripts run on";
    EXPECT_EQ(target->Exec(nullptr, OLECMDID_SHOWSCRIPTERROR, 0, nullptr, nullptr), OLECMDERR_E_UNKNOWNGROUP);

    for (const auto& [buttons, button] : {std::pair<DWORD, LRESULT>{MB_OK, IDOK},
                                          {MB_OKCANCEL | MB_ICONQUESTION, IDOK},
                                          {MB_YESNO | MB_ICONWARNING, IDYES},
                                          {MB_RETRYCANCEL, IDCANCEL}}) {
        LRESULT answer = 0;
        EXPECT_EQ(Asked<IDocHostShowUI>()->ShowMessage(nullptr, nullptr, nullptr, buttons, nullptr, 0, &answer), S_OK);
        EXPECT_EQ(answer, button);
    }
}

TEST_F(IePageHostTest, GivesTheUserAgent) {
    Ambient(DISPID_AMBIENT_USERAGENT, DISP_E_MEMBERNOTFOUND);
    Site->Pages().SetUserAgent(u"Agent/1 (a; b)"_s);
    EXPECT_EQ(Ambient(DISPID_AMBIENT_USERAGENT).Text(), u"Agent/1 (a; b)"_s);
    Site->Pages().SetUserAgent({});
    Ambient(DISPID_AMBIENT_USERAGENT, DISP_E_MEMBERNOTFOUND);
}

TEST_F(IePageHostTest, TellsTheLoginToTheProxyAlone) {
    ComPointer<IAuthenticateEx> login;
    const auto services = Asked<IServiceProvider>();
    ASSERT_EQ(services->QueryService(IID_IAuthenticate, IID_IAuthenticateEx, login.OutVoid()), S_OK);

    HWND window = nullptr;
    LPWSTR user = nullptr;
    LPWSTR password = nullptr;
    const auto ask = [&](DWORD asker) {
        AUTHENTICATEINFO info{asker, 0};
        return login->AuthenticateEx(&window, &user, &password, &info);
    };
    EXPECT_EQ(ask(AUTHENTICATEF_PROXY | AUTHENTICATEF_BASIC), E_ACCESSDENIED) << "there is no login";

    Site->Pages().Login().SetProxyLogin({u"proxy"_s, 80, ProxyLogin{u"u\u00e9"_s, QString()}});
    EXPECT_EQ(ask(AUTHENTICATEF_BASIC), E_ACCESSDENIED);
    EXPECT_EQ(login->Authenticate(&window, &user, &password), E_ACCESSDENIED);
    EXPECT_EQ(user, nullptr);
    ASSERT_EQ(ask(AUTHENTICATEF_PROXY | AUTHENTICATEF_BASIC), S_OK);
    EXPECT_EQ(window, nullptr);
    EXPECT_STREQ(user, L"u\u00e9");
    EXPECT_STREQ(password, L"");
    CoTaskMemFree(user);
    CoTaskMemFree(password);
}

std::string UserAgentInForce() {
    char text[512] = "";
    DWORD size = sizeof text;
    EXPECT_EQ(ObtainUserAgentString(0, text, &size), S_OK);
    return text;
}

TEST(IeSession, SetsTheUserAgentAndTakesItBack) {
    const std::string systemsOwn = UserAgentInForce();
    EXPECT_FALSE(systemsOwn.empty());
    EXPECT_TRUE(SetSessionUserAgent(u"Agent/1 (a; b)"_s));
    EXPECT_EQ(UserAgentInForce(), "Agent/1 (a; b)");
    EXPECT_TRUE(SetSessionUserAgent({}));
    EXPECT_EQ(UserAgentInForce(), systemsOwn);
}

} // namespace
} // namespace Brindle
