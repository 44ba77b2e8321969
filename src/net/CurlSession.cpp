#include "net/CurlSession.h"

namespace Brindle {

CurlSession::CurlSession() : cookies_(curl_share_init()) {
    curl_share_setopt(cookies_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
}

CurlHandle CurlSession::Take() {
    if (spare_.empty())
        return CurlHandle(curl_easy_init());
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
    curl_easy_setopt(easy, CURLOPT_COOKIEFILE, nullptr);
    curl_easy_setopt(easy, CURLOPT_SHARE, nullptr);
    curl_easy_reset(easy);
}

} // namespace Brindle
