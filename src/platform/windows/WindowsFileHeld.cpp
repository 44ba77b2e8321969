#include "platform/FileHeld.h"
#include "platform/windows/WideText.h"

#include <QDir>

#include <windows.h>

namespace Brindle {

bool HeldByAnotherProgram(const QString& fileName) {
    const QString name = QDir::toNativeSeparators(fileName);
    const HANDLE file = CreateFileW(Wide(name), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(file);
    return false;
}

} // namespace Brindle
