#include "net/NumericAddress.h"

#include "toolkit/Ascii.h"

#include <QList>
#include <QStringList>

#include <algorithm>

namespace Brindle {

namespace {

// A part of an address of version 4; nothing when it is no number of 32 bits.
std::optional<quint64> ReadPart(QStringView part) {
    unsigned base = 10;
    if (part.startsWith(u"0x") || part.startsWith(u"0X")) {
        base = 16;
        part = part.sliced(2);
    } else if (part.size() > 1 && part.front() == u'0') {
        base = 8;
    }
    quint64 value = 0;
    for (const QChar c : part) {
        const int digit = Ascii::HexValue(c);
        if (digit < 0 || static_cast<unsigned>(digit) >= base)
            return std::nullopt;
        value = value * base + static_cast<unsigned>(digit);
        if (value > 0xFFFFFFFF)
            return std::nullopt;
    }
    return value;
}

std::optional<quint32> ReadVersion4(QStringView host) {
    const QList<QStringView> parts = host.split(u'.');
    if (parts.size() > 4 || parts.first().isEmpty())
        return std::nullopt;
    quint64 address = 0;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const std::optional<quint64> part = parts[i].isEmpty() ? std::nullopt : ReadPart(parts[i]);
        const bool last = i + 1 == parts.size();
        // The last part fills what the others left.
        const auto bits = static_cast<unsigned>(last ? 8 * (4 - i) : 8);
        if (!part || *part >= (quint64{1} << bits))
            return std::nullopt;
        address = (address << bits) | *part;
    }
    return static_cast<quint32>(address);
}

// RFC 4291, section 2.2.
std::optional<NumericAddress> ReadVersion6(QStringView host) {
    if (const qsizetype zone = host.indexOf(u'%'); zone >= 0)
        host = host.first(zone);
    NumericAddress address{};
    size_t filled = 0;
    std::optional<size_t> gap; // where "::" stands
    if (host.startsWith(u"::")) {
        gap = 0;
        host = host.sliced(2);
    }
    while (!host.isEmpty()) {
        const qsizetype colon = host.indexOf(u':');
        const QStringView group = colon < 0 ? host : host.first(colon);
        if (colon < 0 && group.contains(u'.')) {
            const std::optional<quint32> tail = ReadVersion4(group);
            if (!tail || filled > 12)
                return std::nullopt;
            for (int shift = 24; shift >= 0; shift -= 8)
                address[filled++] = static_cast<std::uint8_t>(*tail >> shift);
            break;
        }
        if (group.isEmpty() || group.size() > 4 || filled > 14)
            return std::nullopt;
        unsigned value = 0;
        for (const QChar c : group) {
            const int digit = Ascii::HexValue(c);
            if (digit < 0)
                return std::nullopt;
            value = value * 16 + static_cast<unsigned>(digit);
        }
        address[filled++] = static_cast<std::uint8_t>(value >> 8);
        address[filled++] = static_cast<std::uint8_t>(value & 0xFF);
        if (colon < 0)
            break;
        host = host.sliced(colon + 1);
        if (host.startsWith(u':')) {
            if (gap)
                return std::nullopt;
            gap = filled;
            host = host.sliced(1);
        } else if (host.isEmpty()) {
            return std::nullopt;
        }
    }
    if (gap ? filled > 14 : filled != 16)
        return std::nullopt;
    if (!gap)
        return address;
    NumericAddress spread{}; // what stands behind the gap belongs to the end
    std::copy_n(address.begin(), *gap, spread.begin());
    std::copy_n(address.begin() + static_cast<std::ptrdiff_t>(*gap), filled - *gap,
                spread.end() - static_cast<std::ptrdiff_t>(filled - *gap));
    return spread;
}

} // namespace

std::optional<NumericAddress> NumericAddressOf(std::span<const std::uint8_t> bytes) {
    NumericAddress address{};
    if (bytes.size() == 4)
        address[10] = address[11] = 0xFF;
    else if (bytes.size() != 16)
        return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), address.end() - static_cast<std::ptrdiff_t>(bytes.size()));
    return address;
}

std::optional<NumericAddress> ReadNumericAddress(QStringView host) {
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.sliced(1, host.size() - 2);
    if (host.contains(u':'))
        return ReadVersion6(host);
    if (host.endsWith(u'.'))
        host.chop(1);
    if (host.isEmpty())
        return std::nullopt;
    const std::optional<quint32> v4 = ReadVersion4(host);
    if (!v4)
        return std::nullopt;
    const std::array<std::uint8_t, 4> bytes{static_cast<std::uint8_t>(*v4 >> 24), static_cast<std::uint8_t>(*v4 >> 16),
                                            static_cast<std::uint8_t>(*v4 >> 8), static_cast<std::uint8_t>(*v4)};
    return NumericAddressOf(bytes);
}

QString TextOf(const NumericAddress& address) {
    static constexpr NumericAddress version4{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    QStringList parts;
    if (std::equal(address.begin(), address.begin() + 12, version4.begin())) {
        for (size_t i = 12; i < 16; ++i)
            parts.append(QString::number(address[i]));
        return parts.join(u'.');
    }
    for (size_t i = 0; i < 16; i += 2)
        parts.append(QString::number(address[i] << 8 | address[i + 1], 16));
    return parts.join(u':');
}

} // namespace Brindle
