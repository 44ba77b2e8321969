#pragma once

#include <QChar>
#include <QStringView>

namespace Brindle {

// The characters of which phone numbers are written.

/// The value of a decimal digit of any script; -1 for other characters.
inline int DigitOf(QChar c) {
    const char16_t u = c.unicode();
    if (u < 0x80)
        return u >= u'0' && u <= u'9' ? u - u'0' : -1;
    return u >= 0x660 && c.isDigit() ? c.digitValue() : -1;
}

inline bool IsPlus(QChar c) {
    return c == u'+' || c == u'\uFF0B';
}

/// A blank within a line; zero-width and direction marks count as such.
inline bool IsPhoneBlank(QChar c) {
    const char16_t u = c.unicode();
    return u == 0x20 || u == 0x9 || u == 0xA0 || u == 0x202F || u == 0x3000 || (u >= 0x2000 && u <= 0x200F) ||
           u == 0x2060 || (u >= 0x202A && u <= 0x202E) || u == 0xAD;
}

inline bool IsPhoneDash(QChar c) {
    const char16_t u = c.unicode();
    return u == u'-' || (u >= 0x2010 && u <= 0x2015) || u == 0x2212 || u == 0xFF0D || u == 0x30FC || u == 0xFF70;
}

/// What may stand between the digits of one number.
inline bool IsPhoneSeparator(QChar c) {
    const char16_t u = c.unicode();
    return IsPhoneBlank(c) || IsPhoneDash(c) || u == u'.' || u == u'/' || u == u'(' || u == u')' || u == u'[' ||
           u == u']' || u == u'\n' || u == u'\r' || u == 0xB7 || u == 0x2022 || u == 0xFF08 || u == 0xFF09 ||
           u == 0xFF0E || u == 0xFF0F || u == u'*' || u == u'~';
}

/// Characters of East Asia, which stand beside digits without a blank.
inline bool IsPhoneIdeograph(QChar c) {
    const char16_t u = c.unicode();
    return u >= 0x2E80 && u < 0xFF00;
}

/// What the end of a text says of the digits behind it: a phone number ("Tel."), or a number of another kind ("VAT").
enum class Announced { Nothing, Phone, Other };

/// `fax`, which may be null, is set when it is a number of a telefax.
Announced WhatIsAnnounced(QStringView before, bool* fax);

} // namespace Brindle
