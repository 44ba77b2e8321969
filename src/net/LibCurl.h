#pragma once

#include <curl/curl.h>

namespace Brindle {

/// The functions of libcurl in use, each under its own name without "curl_".
struct CurlFunctions {
    decltype(&curl_easy_cleanup) easy_cleanup;
    decltype(&curl_easy_getinfo) easy_getinfo;
    decltype(&curl_easy_init) easy_init;
    decltype(&curl_easy_reset) easy_reset;
    decltype(&curl_easy_setopt) easy_setopt;
    decltype(&curl_easy_strerror) easy_strerror;
    decltype(&curl_global_init) global_init;
    decltype(&curl_multi_add_handle) multi_add_handle;
    decltype(&curl_multi_cleanup) multi_cleanup;
    decltype(&curl_multi_info_read) multi_info_read;
    decltype(&curl_multi_init) multi_init;
    decltype(&curl_multi_remove_handle) multi_remove_handle;
    decltype(&curl_multi_setopt) multi_setopt;
    decltype(&curl_multi_socket_action) multi_socket_action;
    decltype(&curl_share_cleanup) share_cleanup;
    decltype(&curl_share_init) share_init;
    decltype(&curl_share_setopt) share_setopt;
    decltype(&curl_slist_append) slist_append;
    decltype(&curl_slist_free_all) slist_free_all;
    decltype(&curl_version_info) version_info;
};

/// The library. Where it is a shared one it is loaded by the first call, as it takes longer to load, with all that it
/// needs itself, than many a command takes to run. Throws `Failure` when it cannot be loaded.
const CurlFunctions& LibCurl();

} // namespace Brindle
