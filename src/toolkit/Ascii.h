#pragma once

#include <QChar>

namespace Brindle::Ascii {

// Letters, digits and blanks of ASCII alone, whatever the locale, for `QChar`, `char16_t` and `char`.

constexpr char16_t Unit(QChar c) {
    return c.unicode();
}
constexpr char16_t Unit(char16_t c) {
    return c;
}
constexpr char16_t Unit(char c) {
    return static_cast<unsigned char>(c);
}

template <typename C>
constexpr bool IsDigit(C c) {
    return Unit(c) >= u'0' && Unit(c) <= u'9';
}
template <typename C>
constexpr bool IsUpper(C c) {
    return Unit(c) >= u'A' && Unit(c) <= u'Z';
}
template <typename C>
constexpr bool IsLower(C c) {
    return Unit(c) >= u'a' && Unit(c) <= u'z';
}
template <typename C>
constexpr bool IsLetter(C c) {
    return IsUpper(c) || IsLower(c);
}
template <typename C>
constexpr bool IsLetterOrDigit(C c) {
    return IsLetter(c) || IsDigit(c);
}
/// What HTML calls white space: blank, tab, line feed, form feed, carriage return.
template <typename C>
constexpr bool IsBlank(C c) {
    const char16_t u = Unit(c);
    return u == u' ' || u == u'\t' || u == u'\n' || u == u'\f' || u == u'\r';
}
template <typename C>
constexpr C Lower(C c) {
    return IsUpper(c) ? C(static_cast<char16_t>(Unit(c) + 0x20)) : c;
}
template <typename C>
constexpr C Upper(C c) {
    return IsLower(c) ? C(static_cast<char16_t>(Unit(c) - 0x20)) : c;
}
/// The value of a hexadecimal digit, -1 for anything else.
template <typename C>
constexpr int HexValue(C c) {
    if (IsDigit(c))
        return Unit(c) - u'0';
    const char16_t lower = Lower(Unit(c));
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

} // namespace Brindle::Ascii
