#pragma once

#include <QByteArray>
#include <QString>

namespace Brindle {

/// What a page may have and still be parsed. The parser's time grows with the square of the depth and of the number
/// of attributes of one tag, and its memory with the number of elements: a page beyond these is a failed page.
struct PageBounds {
    qint64 Size = 64LL * 1024 * 1024;           ///< characters
    int Depth = 4000;                           ///< elements that are open at the same time
    int Attributes = 2000;                      ///< of one tag
    qint64 ParserMemory = 1536LL * 1024 * 1024; ///< bytes that the parser may take
    int ParserMs = 2000;                        ///< of processor time that the parser may take, whatever the size
    int ParserMsPerMiB = 125;                   ///< and what it may take more for each MiB of the page
};

/// The attribute that tells the true name of an element that goes through the parser under another one.
inline constexpr char aliasAttribute[] = "brindle-alias";
/// The comment that stands where the parser must take note of the text before it; it is no part of the page.
inline constexpr char flushComment[] = "brindle-flush";

/// A page made ready for the parser, which reads some things by rules of its time rather than today's.
struct PreparedPage {
    QByteArray Utf8;
    bool ControlsMoved = false; ///< what the parser makes of it is to go through `WithControls`
};

/// Makes a page ready in one pass: elements go under the name of one that the parser reads by the right rules, with
/// `aliasAttribute`, `flushComment` stands before the end of a form and for the end tag of an unknown element that was
/// not begun, attributes without a value get an empty one, and control characters, which the parser would replace, are
/// moved out of its sight. Throws `Failure` with one line when the page is beyond its bounds.
PreparedPage Prepare(const QString& html, const PageBounds& bounds);

/// The text with its control characters back in their places.
QString WithControls(const QString& text);

} // namespace Brindle
