#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace Brindle::Fuzz {

/// Ends the run as a finding.
inline void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::cerr << "Does not hold: " << what << std::endl;
    std::abort();
}

/// An input as a text.
inline QString TextOf(const std::uint8_t* data, std::size_t size) {
    return QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

} // namespace Brindle::Fuzz
