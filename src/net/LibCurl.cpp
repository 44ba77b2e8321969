#include "net/LibCurl.h"

#include "core/Errors.h"

#ifdef BRINDLE_CURL_LIBRARY
#include <QLibrary>
#include <QString>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

#ifdef BRINDLE_CURL_LIBRARY
template <typename Function>
void Resolve(QLibrary& library, Function& function, const char* name) {
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function)
        throw Failure(u"%1: %2"_s.arg(library.fileName(), library.errorString()));
}

CurlFunctions Load() {
    QLibrary library(QStringLiteral(BRINDLE_CURL_LIBRARY)); // stays loaded to the end of the program
    if (!library.load())
        throw Failure(library.errorString());
    CurlFunctions functions{};
    Resolve(library, functions.easy_cleanup, "curl_easy_cleanup");
    Resolve(library, functions.easy_getinfo, "curl_easy_getinfo");
    Resolve(library, functions.easy_init, "curl_easy_init");
    Resolve(library, functions.easy_reset, "curl_easy_reset");
    Resolve(library, functions.easy_setopt, "curl_easy_setopt");
    Resolve(library, functions.easy_strerror, "curl_easy_strerror");
    Resolve(library, functions.global_init, "curl_global_init");
    Resolve(library, functions.multi_add_handle, "curl_multi_add_handle");
    Resolve(library, functions.multi_cleanup, "curl_multi_cleanup");
    Resolve(library, functions.multi_info_read, "curl_multi_info_read");
    Resolve(library, functions.multi_init, "curl_multi_init");
    Resolve(library, functions.multi_remove_handle, "curl_multi_remove_handle");
    Resolve(library, functions.multi_setopt, "curl_multi_setopt");
    Resolve(library, functions.multi_socket_action, "curl_multi_socket_action");
    Resolve(library, functions.share_cleanup, "curl_share_cleanup");
    Resolve(library, functions.share_init, "curl_share_init");
    Resolve(library, functions.share_setopt, "curl_share_setopt");
    Resolve(library, functions.slist_append, "curl_slist_append");
    Resolve(library, functions.slist_free_all, "curl_slist_free_all");
    Resolve(library, functions.version_info, "curl_version_info");
    return functions;
}
#else
CurlFunctions Load() {
    return {
        .easy_cleanup = &curl_easy_cleanup,
        .easy_getinfo = &curl_easy_getinfo,
        .easy_init = &curl_easy_init,
        .easy_reset = &curl_easy_reset,
        .easy_setopt = &curl_easy_setopt,
        .easy_strerror = &curl_easy_strerror,
        .global_init = &curl_global_init,
        .multi_add_handle = &curl_multi_add_handle,
        .multi_cleanup = &curl_multi_cleanup,
        .multi_info_read = &curl_multi_info_read,
        .multi_init = &curl_multi_init,
        .multi_remove_handle = &curl_multi_remove_handle,
        .multi_setopt = &curl_multi_setopt,
        .multi_socket_action = &curl_multi_socket_action,
        .share_cleanup = &curl_share_cleanup,
        .share_init = &curl_share_init,
        .share_setopt = &curl_share_setopt,
        .slist_append = &curl_slist_append,
        .slist_free_all = &curl_slist_free_all,
        .version_info = &curl_version_info,
    };
}
#endif

} // namespace

const CurlFunctions& LibCurl() {
    static const CurlFunctions functions = Load();
    return functions;
}

} // namespace Brindle
