#pragma once

#include "page/MarkupScanner.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Brindle {

/// Where a page is cut into the pieces that the parser gets, always before what looks like a tag.
class PagePieces {
public:
    /// Before what looks like a tag, also in a value and now and then in a script; before tags; the whole page is one
    /// piece.
    enum class Cuts { AtAnyTag, AtTags, Nowhere };

    /// `size`: characters that a piece has at least. The page must outlive it.
    PagePieces(QStringView page, Cuts cuts, qsizetype size);

    /// Where the piece ends that begins here; the pieces are asked for in order.
    qsizetype EndOf(qsizetype begin);

private:
    qsizetype TagFrom(qsizetype from) const;
    qsizetype EndOfOpen(QStringView open, qsizetype from) const;

    QStringView page_;
    Cuts cuts_;
    qsizetype size_;
    std::optional<MarkupScanner> scanner_;
};

/// A piece as UTF-8, with what is no UTF-16 mended.
QByteArray EncodedPiece(QStringView text);

/// The page without its NUL characters, as the parsing of HTML leaves them out (section 13.2.5): in texts they are
/// dropped, elsewhere U+FFFD stands in their place. The parser's library cannot be given them.
QString WithoutNuls(const QString& html);

/// The page without its end tags without a name ("</>"), which are nothing.
QString WithoutEmptyEndTags(const QString& html);

} // namespace Brindle
