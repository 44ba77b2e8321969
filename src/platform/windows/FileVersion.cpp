#include "platform/windows/FileVersion.h"

#include "platform/windows/WideText.h"

#include <vector>
#include <windows.h>

namespace Brindle {

using namespace Qt::StringLiterals;

QString FileVersion(const QString& fileName) {
    const QString none = u"0"_s;
    DWORD unused = 0;
    const DWORD size = fileName.isEmpty() ? 0 : GetFileVersionInfoSizeW(Wide(fileName), &unused);
    if (size == 0)
        return none;
    std::vector<char> block(size);
    void* found = nullptr;
    UINT foundSize = 0;
    if (GetFileVersionInfoW(Wide(fileName), 0, size, block.data()) == 0 ||
        VerQueryValueW(block.data(), L"\\", &found, &foundSize) == 0 || foundSize < sizeof(VS_FIXEDFILEINFO))
        return none;
    const auto* const version = static_cast<const VS_FIXEDFILEINFO*>(found);
    return u"%1.%2.%3.%4"_s.arg(HIWORD(version->dwFileVersionMS))
        .arg(LOWORD(version->dwFileVersionMS))
        .arg(HIWORD(version->dwFileVersionLS))
        .arg(LOWORD(version->dwFileVersionLS));
}

} // namespace Brindle
