#include "net/AddressGuard.h"

#include "toolkit/PageAddress.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Range {
    NumericAddress First;
    int Bits;
    AddressKind Kind;
};

constexpr NumericAddress V4(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    return {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, a, b, c, d};
}

constexpr NumericAddress V6(std::uint16_t a, std::uint16_t b, std::uint16_t c) {
    return {static_cast<std::uint8_t>(a >> 8), static_cast<std::uint8_t>(a & 0xFF),
            static_cast<std::uint8_t>(b >> 8), static_cast<std::uint8_t>(b & 0xFF),
            static_cast<std::uint8_t>(c >> 8), static_cast<std::uint8_t>(c & 0xFF)};
}

using enum AddressKind;

// The first row that holds the address tells. Bits of version 4 count from 96 on.
constexpr Range ranges[] = {
    {V4(0, 0, 0, 0), 96 + 8, Unusable}, // reaches this machine
    {V4(10, 0, 0, 0), 96 + 8, Private},
    {V4(100, 64, 0, 0), 96 + 10, Private}, // shared by the customers of a provider
    {V4(127, 0, 0, 0), 96 + 8, Loopback},
    {V4(169, 254, 0, 0), 96 + 16, LinkLocal},
    {V4(172, 16, 0, 0), 96 + 12, Private},
    {V4(192, 0, 0, 0), 96 + 24, Unusable},
    {V4(192, 0, 2, 0), 96 + 24, Unusable}, // documentation
    {V4(192, 168, 0, 0), 96 + 16, Private},
    {V4(198, 18, 0, 0), 96 + 15, Private}, // measurements
    {V4(198, 51, 100, 0), 96 + 24, Unusable},
    {V4(203, 0, 113, 0), 96 + 24, Unusable},
    {V4(224, 0, 0, 0), 96 + 3, Unusable}, // multicast, reserved, broadcast
    {V4(0, 0, 0, 0), 96, Public},
    {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 128, Unusable}, // unspecified
    {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, 128, Loopback},
    {V6(0x64, 0xFF9B, 1), 48, Private}, // local translation to version 4
    {V6(0x100, 0, 0), 64, Unusable},    // discarded
    {V6(0x2001, 0xDB8, 0), 32, Unusable},
    {V6(0xFC00, 0, 0), 7, Private},
    {V6(0xFE80, 0, 0), 10, LinkLocal},
    {V6(0xFEC0, 0, 0), 10, Private},
    {V6(0xFF00, 0, 0), 8, Unusable},
};

bool Holds(const NumericAddress& first, int bits, const NumericAddress& address) {
    const auto bytes = static_cast<size_t>(bits / 8);
    if (!std::equal(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(bytes), address.begin()))
        return false;
    const int rest = bits % 8;
    return rest == 0 || ((first[bytes] ^ address[bytes]) >> (8 - rest)) == 0;
}

NumericAddress Carried(const NumericAddress& address, size_t at, std::uint8_t mask) {
    return V4(address[at] ^ mask, address[at + 1] ^ mask, address[at + 2] ^ mask, address[at + 3] ^ mask);
}

} // namespace

AddressKind KindOf(const NumericAddress& address) {
    for (const Range& range : ranges)
        if (Holds(range.First, range.Bits, address))
            return range.Kind;
    if (Holds({}, 96, address) || Holds(V6(0x64, 0xFF9B, 0), 96, address)) // RFC 4291, 2.5.5.1 and RFC 6052
        return KindOf(Carried(address, 12, 0));
    if (Holds(V6(0x2002, 0, 0), 16, address)) // RFC 3056
        return KindOf(Carried(address, 2, 0));
    if (Holds(V6(0x2001, 0, 0), 32, address)) // RFC 4380
        return KindOf(Carried(address, 12, 0xFF));
    return Public;
}

std::optional<AddressKind> KindOfHost(QStringView host) {
    if (const std::optional<NumericAddress> address = ReadNumericAddress(host))
        return KindOf(*address);
    if (host.endsWith(u'.'))
        host.chop(1);
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0 || host.endsWith(u".localhost", Qt::CaseInsensitive))
        return Loopback;
    return std::nullopt;
}

AddressKind KindOfOrigin(const PageOrigin& origin) {
    if (const std::optional<NumericAddress> peer = ReadNumericAddress(origin.Peer))
        return KindOf(*peer);
    return KindOfHost(HostOf(origin.Address)).value_or(Public);
}

bool MayLeadTo(AddressKind from, AddressKind to) {
    return to == Public || (to == from && to != Unusable);
}

QString RefusalText(const QString& host, const QString& numeric) {
    const QString place = host == numeric ? host : u"%1 (%2)"_s.arg(host, numeric);
    return u"%1 is no place to which this page may lead"_s.arg(place);
}

} // namespace Brindle
