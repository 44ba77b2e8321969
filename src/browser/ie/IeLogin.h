#pragma once

#include "browser/ie/ComObject.h"
#include "core/EmbeddedBrowser.h"

#include <urlmon.h>

namespace Brindle {

/// Answers the loader of pages when a proxy or a server asks who the user is: the proxy is told the user name and
/// password, once for each page; a server is told nothing, and the page that goes with its refusal is shown. The user
/// is never asked.
class IeLogin final : public ComObject<IAuthenticateEx> {
public:
    void SetProxyLogin(const Proxy& proxy);

    /// One that does not say who asks, so nothing is told: the password must not go to a server.
    HRESULT STDMETHODCALLTYPE Authenticate(HWND* window, LPWSTR* userName, LPWSTR* password) override;
    HRESULT STDMETHODCALLTYPE AuthenticateEx(HWND* window, LPWSTR* userName, LPWSTR* password,
                                             AUTHENTICATEINFO* asker) override;

protected:
    bool FindMore(REFIID wanted, void** found) override;

private:
    QString userName_;
    QString password_;
};

} // namespace Brindle
