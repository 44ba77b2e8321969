#pragma once

#include "page/PageTree.h"

#include <QByteArrayView>
#include <QHash>

#include <vector>

namespace Brindle {

/// Takes the pieces of a page from a parser and makes the tree of them. The pieces come in runs, each in document
/// order; a later run can name an earlier one, which then stands in that place. All texts are UTF-8 and are copied.
class PageTreeBuilder {
public:
    /// `expectedCharacters`: how long all texts together will hardly be more than.
    PageTreeBuilder(PageTree& tree, qsizetype expectedCharacters);

    /// A number for the name of elements, to be asked for once for each.
    int NameNumber(QByteArrayView name);
    void OpenElement(NodeSpace space, int nameNumber);
    /// Of the element that was opened last, before anything else; a repeated name is left out.
    void AddAttribute(QByteArrayView prefix, QByteArrayView name, QByteArrayView value);
    void CloseElement();
    void AddText(NodeKind kind, QByteArrayView text);
    void AddRun(int run);
    /// Ends the run and gives its number, from 0.
    int EndRun();

    /// Bytes of what was taken so far.
    qint64 Size() const;
    /// Makes the tree of a run with one outermost element.
    void Finish(int run);

private:
    enum class Kind : quint8 { Element, Text, Comment, Close, Run };
    struct Piece {
        quint32 First = 0; // as in a node; the number of a run
        quint32 Count = 0;
        quint16 NameId = 0;
        Kind What = Kind::Element;
        NodeSpace Space = NodeSpace::Html;
    };
    struct Attribute {
        quint32 Name;
        quint32 Value;
        quint32 ValueLength;
    };

    quint32 AddCharacters(QByteArrayView utf8);
    quint32 AttributeName(QByteArrayView prefix, QByteArrayView name);
    void Place(const Piece& piece);
    void NoteLandmarks(NodeIndex index);
    void FinishAttributes();

    PageTree& tree_;
    std::vector<Piece> pieces_;
    std::vector<size_t> runEnds_;
    std::vector<Attribute> attributes_;
    qsizetype used_ = 0; // of the tree's characters
    QHash<QByteArray, quint32> attributeNames_;
    std::vector<quint32> lastElementWith_; // by attribute name
    quint32 elements_ = 0;
    std::vector<NodeIndex> open_;
    QHash<QByteArray, int> names_;
};

} // namespace Brindle
