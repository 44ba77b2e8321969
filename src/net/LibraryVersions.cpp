#include "net/LibraryVersions.h"

#include "net/LibCurl.h"

namespace Brindle {

LibraryVersions NetworkLibraries() {
    const curl_version_info_data* const info = LibCurl().version_info(CURLVERSION_NOW);
    return {QString::fromLatin1(info->version), QString::fromLatin1(info->ssl_version)};
}

} // namespace Brindle
