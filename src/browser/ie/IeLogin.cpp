#include "browser/ie/IeLogin.h"

#include <cstring>
#include <objbase.h>

namespace Brindle {

namespace {

// A copy that belongs to who gets it.
LPWSTR HandedOver(const QString& text) {
    const size_t bytes = (static_cast<size_t>(text.size()) + 1) * sizeof(wchar_t);
    void* const copy = CoTaskMemAlloc(bytes);
    if (copy)
        std::memcpy(copy, text.utf16(), bytes);
    return static_cast<LPWSTR>(copy);
}

} // namespace

void IeLogin::SetProxyLogin(const Proxy& proxy) {
    const ProxyLogin login = proxy.Login.value_or(ProxyLogin());
    userName_ = login.UserName;
    password_ = login.Password;
}

HRESULT IeLogin::Authenticate(HWND* window, LPWSTR* userName, LPWSTR* password) {
    return AuthenticateEx(window, userName, password, nullptr);
}

HRESULT IeLogin::AuthenticateEx(HWND* window, LPWSTR* userName, LPWSTR* password, AUTHENTICATEINFO* asker) {
    if (!window || !userName || !password)
        return E_INVALIDARG;
    *window = nullptr;
    *userName = nullptr;
    *password = nullptr;
    if (!asker || !(asker->dwFlags & AUTHENTICATEF_PROXY) || userName_.isEmpty())
        return E_ACCESSDENIED;
    *userName = HandedOver(userName_);
    *password = HandedOver(password_);
    return S_OK;
}

bool IeLogin::FindMore(REFIID wanted, void** found) {
    return FindInterface<IAuthenticate>(this, wanted, found);
}

} // namespace Brindle
