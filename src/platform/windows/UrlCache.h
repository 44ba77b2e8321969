#pragma once

namespace Brindle {

/// Deletes every entry of WinINet's cache, which the system's browser control and other programs of the user share.
/// Failures are ignored.
void ClearWinInetCache();

} // namespace Brindle
