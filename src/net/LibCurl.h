#pragma once

#include "core/LoadedLibrary.h"

#include <curl/curl.h>

namespace Brindle {

#define CURL_FUNCTIONS(FUNCTION)                                                                                       \
    FUNCTION(curl_, easy_cleanup)                                                                                      \
    FUNCTION(curl_, easy_getinfo)                                                                                      \
    FUNCTION(curl_, easy_init)                                                                                         \
    FUNCTION(curl_, easy_reset)                                                                                        \
    FUNCTION(curl_, easy_setopt)                                                                                       \
    FUNCTION(curl_, easy_strerror)                                                                                     \
    FUNCTION(curl_, global_init)                                                                                       \
    FUNCTION(curl_, multi_add_handle)                                                                                  \
    FUNCTION(curl_, multi_cleanup)                                                                                     \
    FUNCTION(curl_, multi_info_read)                                                                                   \
    FUNCTION(curl_, multi_init)                                                                                        \
    FUNCTION(curl_, multi_remove_handle)                                                                               \
    FUNCTION(curl_, multi_setopt)                                                                                      \
    FUNCTION(curl_, multi_socket_action)                                                                               \
    FUNCTION(curl_, share_cleanup)                                                                                     \
    FUNCTION(curl_, share_init)                                                                                        \
    FUNCTION(curl_, share_setopt)                                                                                      \
    FUNCTION(curl_, slist_append)                                                                                      \
    FUNCTION(curl_, slist_free_all)                                                                                    \
    FUNCTION(curl_, version_info)

/// The functions of libcurl in use, each under its own name without "curl_".
BRINDLE_FUNCTION_TABLE(CurlFunctions, CURL_FUNCTIONS);

/// The library. Throws `Failure` when it cannot be loaded.
const CurlFunctions& LibCurl();

} // namespace Brindle
