#include "net/CurlSession.h"

namespace Brindle {

CurlSession::CurlSession() : cookies_(LibCurl().share_init()) {
    LibCurl().share_setopt(cookies_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
}

CurlHandle CurlSession::Take() {
    if (spare_.empty())
        return CurlHandle(LibCurl().easy_init());
    CurlHandle easy = std::move(spare_.back());
    spare_.pop_back();
    return easy;
}

void CurlSession::GiveBack(CurlHandle easy) {
    Reset(easy.get());
    spare_.push_back(std::move(easy));
}

void CurlSession::Reset(CURL* easy) {
    // The library's own reset forgets the list of cookie files without releasing it.
    LibCurl().easy_setopt(easy, CURLOPT_COOKIEFILE, nullptr);
    LibCurl().easy_setopt(easy, CURLOPT_SHARE, nullptr);
    LibCurl().easy_reset(easy);
}

} // namespace Brindle
