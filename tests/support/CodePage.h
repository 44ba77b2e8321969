#pragma once

#include <QString>

#include <string>

namespace Brindle::Test {

/// A text as files hold it: in the system's 8-bit code page.
inline std::string In8Bit(const char* utf8) {
    return QString::fromUtf8(utf8).toLocal8Bit().toStdString();
}

} // namespace Brindle::Test
