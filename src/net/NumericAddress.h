#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace Brindle {

/// An address of the Internet in network order, those of version 4 as they stand in version 6 (RFC 4291, section
/// 2.5.5.2).
using NumericAddress = std::array<std::uint8_t, 16>;

/// The address of 4 or 16 bytes.
std::optional<NumericAddress> NumericAddressOf(std::span<const std::uint8_t> bytes);

/// The address that a host names in figures, in brackets or not; nothing for a name. Version 4 is read as browsers and
/// name resolvers do: in one to four parts, decimal, octal or hexadecimal ("127.1", "0x7f000001").
std::optional<NumericAddress> ReadNumericAddress(QStringView host);

/// The address in figures, one of version 4 in its own form.
QString TextOf(const NumericAddress& address);

} // namespace Brindle
