#pragma once

#include "discovery/RecordsLists.h"

#include <unordered_map>
#include <vector>

namespace Brindle {

/// A line of text of a record, as far as it lies within the record.
struct RecordLine {
    int Line = 0; ///< of the page
    int FirstPiece = 0;
    int EndPiece = 0;
    HintSet Label = 0;  ///< what stands before the value, in the line, the cell before or the head of the table
    HintSet Around = 0; ///< what the elements around call themselves
    qsizetype LabelLength = 0;
};

/// What stands at the same place in the records of a list.
struct RecordColumn {
    quint64 Key = 0;
    std::vector<NodeIndex> Nodes; ///< by record; `noNode` where it is missing
    HintSet Own = 0;              ///< what the elements call themselves, in any record
    HintSet Around = 0;           ///< what the elements around them call themselves
    HintSet Label = 0;
    bool IsHeading = false;
    bool IsLink = false;
    bool IsStrong = false;
    double Order = 0; ///< its place in the records, on the average: 0 is the first text

    // As shares of the records that have it.
    int Filled = 0;
    double Distinct = 0;
    double Length = 0; ///< characters, on the average
    double Pieces = 0; ///< texts of different elements, on the average
    double Phones = 0;
    double AddressLines = 0;
    double Dates = 0;
    double Prices = 0;
    double Buttons = 0;
    double Colons = 0;    ///< ended by a colon
    double Wordless = 0;  ///< without two letters in a row
    double Digits = 0;    ///< with a digit
    double Addresses = 0; ///< of the web or of mail
};

/// The texts of a list's records: line by line, and aligned in columns by their places.
class RecordColumns {
public:
    RecordColumns(const PageAnnotations& page, const Signatures& signatures, const RecordList& list);

    const PageAnnotations& Page;
    const RecordList& List;
    std::vector<std::vector<RecordLine>> Lines; ///< by record
    std::vector<RecordColumn> Columns;

    size_t Count() const { return List.Records.size(); }
    QStringView TextOf(const RecordLine& line) const;
    /// Without its label.
    QStringView ValueOf(const RecordLine& line) const { return TextOf(line).sliced(line.LabelLength); }
    /// What an element of a column says: its first line.
    QString TextOf(NodeIndex node) const { return ViewOf(node).toString(); }
    QStringView ViewOf(NodeIndex node) const;
    /// The columns' path of an element within a record.
    quint64 PathOf(NodeIndex node, const RecordRange& record) const;
    /// The same with its cell, where the record is the row of a table.
    quint64 PlaceOf(NodeIndex node, const RecordRange& record) const {
        return Mixed(PathOf(node, record), static_cast<quint64>(CellOf(node, record) + 1));
    }

    /// The cell of a row above that reaches down into the record's row and whose column's head says `hint`; `noNode`
    /// when there is none.
    NodeIndex ReachingCell(size_t record, Hint hint) const;

private:
    void ReadSpans(NodeIndex table);
    void ReadHeader();
    void ReadHeaderOfRows();
    void ReadLines(size_t record);
    void ReadLabelElement(RecordLine& line) const;
    void ReadColumns(size_t record);
    void Measure(RecordColumn& column) const;
    HintSet HintsAround(NodeIndex node, const RecordRange& record, int levels) const;
    int CellOf(NodeIndex node, const RecordRange& record) const;

    const Signatures& signatures_;
    std::vector<HintSet> header_; // by cell
    std::unordered_map<NodeIndex, std::vector<std::pair<int, NodeIndex>>>
        spans_;                                   // by row: columns that cells above fill
    bool rows_ = false;                           // the children of the records are its cells
    std::unordered_map<quint64, size_t> numbers_; // of columns by key
    // How often a path stands in the record at hand.
    struct Ordinal {
        size_t Record = 0;
        int Next = 0;
    };
    std::unordered_map<quint64, Ordinal> ordinals_;
};

} // namespace Brindle
