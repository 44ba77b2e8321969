#pragma once

#include <QString>

namespace Brindle {

/// Versions of the libraries that the network goes through, as they are at run time.
struct LibraryVersions {
    QString Curl;
    QString Tls; ///< name and version; empty: there is none
};
LibraryVersions NetworkLibraries();

} // namespace Brindle
