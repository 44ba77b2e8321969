#include "core/LoadedLibrary.h"

#include "core/Errors.h"

namespace Brindle {

using namespace Qt::StringLiterals;

LoadedLibrary::LoadedLibrary(const char* fileName) : library_(QString::fromLatin1(fileName)) {
    if (!library_.load())
        throw Failure(library_.errorString());
}

QFunctionPointer LoadedLibrary::Find(const char* name) {
    const QFunctionPointer function = library_.resolve(name);
    if (!function)
        throw Failure(u"%1: %2"_s.arg(library_.fileName(), library_.errorString()));
    return function;
}

} // namespace Brindle
