#pragma once

namespace Brindle {

/// Sets the Chromium engine up. To be called first thing in main(), before the application object is made: the engine
/// reads its environment once. Where its sandbox cannot work (run as root, in a container without user namespaces) it
/// is turned off, and that is said once on standard error. What the environment sets already is kept.
void PrepareWebEngine();

} // namespace Brindle
