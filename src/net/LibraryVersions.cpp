#include "net/LibraryVersions.h"

#include <curl/curl.h>

namespace Brindle {

LibraryVersions NetworkLibraries() {
    const curl_version_info_data* const info = curl_version_info(CURLVERSION_NOW);
    return {QString::fromLatin1(info->version), QString::fromLatin1(info->ssl_version)};
}

} // namespace Brindle
