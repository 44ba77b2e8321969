#pragma once

#include "discovery/Labels.h"
#include "toolkit/Text.h"

#include <QString>

#include <algorithm>

// What those who read the places and trades of records share.
namespace Brindle {

inline constexpr HintSet placeHints =
    Hint::Address | Hint::Street | Hint::City | Hint::State | Hint::PostalCode | Hint::Country;
inline constexpr HintSet otherHints = Hint::Phone | Hint::Fax | Hint::Mail | Hint::Website | Hint::Review |
                                      Hint::Hours | Hint::Rating | Hint::Description | Hint::Category | Hint::Price |
                                      Hint::Date | Hint::Author | Hint::Distance;

/// Whether a text has neither letters nor digits.
inline bool IsMarksOnly(QStringView text) {
    return std::none_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

/// Fills a part of an address that is not known yet.
inline void FillPart(QString& part, const QString& value) {
    if (part.isEmpty())
        part = value;
}

/// Whether no white space but single blanks between words stands in it.
inline bool IsSimple(QStringView text) {
    bool blank = true;
    for (const QChar c : text) {
        if (c.isSpace() && (c != u' ' || blank))
            return false;
        blank = c == u' ';
    }
    return text.isEmpty() || !blank;
}

/// A value with single blanks and without the marks that part it from others.
inline QString Tidy(QString text) {
    constexpr QStringView marks = u",;\u2022\u00B7|-\u2013 ";
    if (!IsSimple(text))
        text = text.simplified();
    qsizetype end = text.size();
    while (end > 0 && IsAmong(text[end - 1], marks))
        --end;
    qsizetype begin = 0;
    while (begin < end && IsAmong(text[begin], marks))
        ++begin;
    return end - begin == text.size() ? text : text.sliced(begin, end - begin);
}

/// "Based in Farnham, Surrey" without what is no place.
inline QString WithoutBasedIn(const QString& text) {
    for (const QStringView words : {u"Based in ", u"Located in ", u"Serving "})
        if (text.startsWith(words))
            return text.sliced(words.size());
    return text;
}

} // namespace Brindle
