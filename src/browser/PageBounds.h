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
    qint64 ParserMemory = 2048LL * 1024 * 1024; ///< bytes that the parser may take
    int ParserMs = 2000;                        ///< of processor time that the parser may take, whatever the size
    int ParserMsPerMiB = 125;                   ///< and what it may take more for each MiB of the page
};

/// The attribute that tells the true name of an element that goes through the parser under another one.
inline constexpr char aliasAttribute[] = "brindle-alias";

/// The page as UTF-8 for the parser, in one pass. Elements that the parser reads by rules of its time rather than
/// today's go under the name of one that it reads by the right ones; `aliasAttribute` then tells the true name.
/// Throws `Failure` with one line when the page is beyond its bounds.
QByteArray PreparedPage(const QString& html, const PageBounds& bounds);

} // namespace Brindle
