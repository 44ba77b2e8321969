#pragma once

#include <QtGlobal>

namespace Brindle {

/// What a page may have and still be parsed. The parser's time grows with the square of the depth, and its memory with
/// the number of elements: a page beyond these is a failed page.
struct PageBounds {
    qint64 Size = 64LL * 1024 * 1024;           ///< characters
    int Depth = 4000;                           ///< elements that are open at the same time
    int Attributes = 2000;                      ///< of one tag
    qint64 ParserMemory = 1536LL * 1024 * 1024; ///< bytes that parser and tree may take
    int ParserMs = 2000;                        ///< of processor time that the parser may take, whatever the size
    int PieceSize = 64 * 1024;                  ///< characters that the parser gets at a time, at least
    int ParserMsPerMiB = 125;                   ///< and what it may take more for each MiB of the page
};

} // namespace Brindle
