#pragma once

#include <QString>

namespace Brindle {

/// A text as the system's wide calls take it; it lives as long as the text.
inline const wchar_t* Wide(const QString& text) {
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

} // namespace Brindle
