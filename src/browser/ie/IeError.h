#pragma once

#include <QString>

namespace Brindle {

/// What the loader of pages means by an error (INET_E_..., or any other of the system's), in words, one line.
QString LoaderErrorText(qint32 error);

} // namespace Brindle
