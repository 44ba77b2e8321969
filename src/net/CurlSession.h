#pragma once

#include "net/CurlHandles.h"
#include "net/CurlLoop.h"

#include <vector>

namespace Brindle {

/// What the transfers of one client share: the loop that they run in, the cookies, and handles that were used before.
class CurlSession {
public:
    CurlSession();

    CurlLoop& Loop() { return loop_; }
    CURLSH* Cookies() const { return cookies_.get(); }

    /// A handle without any options.
    CurlHandle Take();
    /// Takes back a handle that no transfer uses any more.
    void GiveBack(CurlHandle easy);

    /// Forgets a handle's options; the cookies are shared and stay.
    static void Reset(CURL* easy);

private:
    CurlLoop loop_;
    CurlShareHandle cookies_;
    std::vector<CurlHandle> spare_; // before the cookies in destruction
};

} // namespace Brindle
