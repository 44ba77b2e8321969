#pragma once

#include "page/PageTree.h"

#include <QString>
#include <QStringView>

#include <array>
#include <vector>

namespace Brindle {

/// A run of shown text between two block boundaries or line breaks.
struct TextLine {
    qsizetype Begin = 0; ///< in `PageLines::Text`
    qsizetype Length = 0;
    int FirstPiece = 0; ///< in `PageLines::Pieces`
    int PieceCount = 0;
};

/// What one text node gives to its line.
struct TextPiece {
    NodeIndex Node = noNode;
    qsizetype Begin = 0; ///< in `PageLines::Text`
    qsizetype Length = 0;
    int Line = 0;
};

/// The shown text of a page's body, line by line in the page's order: white space is collapsed; scripts, styles,
/// templates, lists of choices and graphics are left out. Style sheets are not read. Linear in the page.
class PageLines {
public:
    explicit PageLines(const PageTree& page);

    QString Text; ///< of all lines, one after the other
    std::vector<TextLine> Lines;
    std::vector<TextPiece> Pieces;

    QStringView TextOf(const TextLine& line) const { return QStringView(Text).sliced(line.Begin, line.Length); }
    QStringView TextOf(const TextPiece& piece) const { return QStringView(Text).sliced(piece.Begin, piece.Length); }
    /// The number of the first piece whose node is `node` or stands behind it; `Pieces.size()` when there is none.
    int PieceFrom(NodeIndex node) const { return firstPieces_[static_cast<size_t>(node)]; }

private:
    class Builder;

    std::vector<int> firstPieces_; // by node, and one more
};

/// The shown text within [begin, end), lines joined by `between`, cut off behind `most` characters.
QString ShownText(const PageLines& lines, NodeIndex begin, NodeIndex end, QStringView between = u" ",
                  qsizetype most = 2000);

/// The elements of which nothing is text that a page shows.
class SilentElements {
public:
    explicit SilentElements(const PageTree& page);

    bool Have(NodeIndex element) const {
        return page_.Space(element) != NodeSpace::Html || silent_[static_cast<size_t>(page_.NameId(element))];
    }

private:
    const PageTree& page_;
    std::vector<bool> silent_; // by name
};

/// Whether an element is a heading: by its name, or by the role that it gives itself.
bool IsHeading(const PageTree& page, NodeIndex element);

/// The text without marks at its ends.
QStringView WithoutEndMarks(QStringView text);

/// Whether all its characters are ASCII's visible ones and single blanks: folded it has as many.
bool IsPlainText(QStringView text);

/// The lower-cased text without marks at its ends ("Next »" is "next"), blanks collapsed.
QString BareWords(QStringView text);

/// `BareWords` of a text that is only looked up: without an allocation where it is short and its letters are western.
class BareView {
public:
    explicit BareView(QStringView text);

    QStringView View() const { return size_ >= 0 ? QStringView(short_.data(), size_) : QStringView(other_); }

private:
    std::array<QChar, 40> short_;
    qsizetype size_ = -1;
    QString other_;
};

} // namespace Brindle
