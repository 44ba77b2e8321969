#include "platform/FileHeld.h"

namespace Brindle {

bool HeldByAnotherProgram(const QString&) {
    return false; // whoever has a file open here keeps nobody from writing to it
}

} // namespace Brindle
