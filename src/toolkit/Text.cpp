#include "toolkit/Text.h"

#include "toolkit/Marker.h"

#include <algorithm>
#include <array>

namespace Brindle {

namespace {

// Windows-1252 from 0x80 to 0x9F (WHATWG Encoding, index windows-1252); the other bytes are those of Latin-1.
constexpr std::array<char16_t, 32> windows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                               0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

QStringView TrimmedView(QStringView text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin].unicode() <= 0x20)
        ++begin;
    while (end > begin && text[end - 1].unicode() <= 0x20)
        --end;
    return text.sliced(begin, end - begin);
}

QString Trim(QStringView text) {
    return TrimmedView(text).toString();
}

QString UpperTrimmed(QStringView text) {
    // No character's upper-case form is a blank or control character, so the order of the two steps is free.
    const QStringView trimmed = TrimmedView(text);
    const bool ascii = std::all_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.unicode() < 0x80; });
    if (!ascii)
        return trimmed.toString().toUpper();
    QString upper(trimmed.size(), Qt::Uninitialized);
    std::transform(trimmed.begin(), trimmed.end(), upper.begin(), [](QChar c) { return Ascii::Upper(c); });
    return upper;
}

namespace {

// Values are short and their needles shorter: looking for the first character is all the preparation that pays.
qsizetype FindPlain(QStringView text, QStringView wanted, qsizetype from) {
    const char16_t first = wanted.front().unicode();
    const char16_t* const units = text.utf16();
    const qsizetype last = text.size() - wanted.size();
    for (qsizetype at = from; at <= last; ++at)
        if (units[at] == first && std::equal(wanted.utf16() + 1, wanted.utf16() + wanted.size(), units + at + 1))
            return at;
    return -1;
}

} // namespace

void ReplaceAll(QString& text, QStringView before, QStringView after) {
    if (before.isEmpty())
        return;
    qsizetype at = FindPlain(text, before, 0);
    if (at < 0)
        return;
    if (after.size() > before.size()) {
        QString result;
        const QStringView source(text);
        qsizetype done = 0;
        for (; at >= 0; at = FindPlain(source, before, done)) {
            result.append(source.sliced(done, at - done));
            result.append(after);
            done = at + before.size();
        }
        result.append(source.sliced(done));
        text = std::move(result);
        return;
    }
    // What is put in is not longer, so the text moves together where it lies.
    QChar* const units = text.data();
    const QStringView source(units, text.size());
    qsizetype to = at;
    while (at >= 0) {
        to = std::copy(after.begin(), after.end(), units + to) - units;
        const qsizetype from = at + before.size();
        at = FindPlain(source, before, from);
        to = std::copy(units + from, units + (at < 0 ? source.size() : at), units + to) - units;
    }
    text.truncate(to);
}

qsizetype IndexOfFolded(QStringView text, QStringView marker, qsizetype from) {
    return Marker(marker).FindFolded(text, from);
}

bool ContainsFolded(QStringView text, QStringView marker) {
    return IndexOfFolded(text, marker) >= 0;
}

bool ContainsExact(QStringView text, QStringView marker) {
    return !marker.isEmpty() && text.contains(marker);
}

bool StartsWithFolded(QStringView text, QStringView prefix) {
    return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(), [](QChar a, QChar b) {
               return Ascii::Lower(a) == Ascii::Lower(b);
           });
}

QString FromWindows1252(const QByteArray& bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text)
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0)
            c = QChar(windows1252.at(c.unicode() - 0x80U));
    return text;
}

} // namespace Brindle
