#pragma once

#include "net/LibCurl.h"

#include <memory>

namespace Brindle {

// libcurl's handles, each released by its owner.

struct CurlCloser {
    void operator()(CURL* easy) const { LibCurl().easy_cleanup(easy); }
};
struct CurlMultiCloser {
    void operator()(CURLM* multi) const { LibCurl().multi_cleanup(multi); }
};
struct CurlShareCloser {
    void operator()(CURLSH* share) const { LibCurl().share_cleanup(share); }
};
struct CurlListCloser {
    void operator()(curl_slist* list) const { LibCurl().slist_free_all(list); }
};

using CurlHandle = std::unique_ptr<CURL, CurlCloser>;
using CurlMultiHandle = std::unique_ptr<CURLM, CurlMultiCloser>;
using CurlShareHandle = std::unique_ptr<CURLSH, CurlShareCloser>;
using CurlList = std::unique_ptr<curl_slist, CurlListCloser>;

} // namespace Brindle
