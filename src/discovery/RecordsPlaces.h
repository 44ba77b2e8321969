#pragma once

#include "core/Lead.h"
#include "discovery/RecordsColumns.h"
#include "discovery/RecordsNames.h"

#include <array>

namespace Brindle {

/// Where the businesses of a list's records are, and their trades.
class RecordPlaces {
public:
    explicit RecordPlaces(const RecordColumns& columns);

    /// Fills the address of one record; `nodes` gets the element that it was taken from.
    void ReadAddress(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    /// Fills and mends the addresses of all records by what they have in common.
    void AgreeOnAddresses(const RecordNames& names, std::vector<Lead>& leads,
                          std::vector<std::array<NodeIndex, FieldCount>>& nodes) const;
    /// Chooses the column of the towns where no record has an address; `subject` as below.
    void ChooseTown(const QString& subject, const std::vector<Lead>& leads);
    /// Fills the town of one record that has no address.
    void ReadTown(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    /// Chooses the column of the trades; `leads` by record, with their names and addresses; `subject`: bare words of
    /// the page's headings.
    void ChooseCategory(const QString& subject, const std::vector<Lead>& leads);
    /// Fills the category of one record.
    void ReadCategory(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    /// Why the category is taken for one; empty when there is none.
    const QString& CategoryWhy() const { return categoryWhy_; }

private:
    struct Segment {
        int FirstPiece = 0;
        int EndPiece = 0;
        int Line = 0;
        HintSet Hints = 0;
        HintSet Label = 0;
        qsizetype Begin = 0; ///< of its value, in the text of the page
        qsizetype End = 0;
        QStringView Trade; ///< that stands before the address in the same text
        bool PostalCode = false;
        bool Street = false;
        bool IsLabel = false;
        bool Excluded = false;

        bool Strong() const;
        bool Weak() const;
    };
    /// Segments that are an address together.
    struct Group {
        size_t Begin = 0;
        size_t End = 0;
        double Score = 0;
        bool PostalCode = false;
        bool Street = false;
    };
    void FindValue(Segment& segment, qsizetype label, QStringView name) const;
    void LeaveOutTradeAndDistance(Segment& segment) const;
    static bool IsHours(QStringView text) { return TimesIn(text) >= 2; }
    static bool IsAside(QStringView text);
    void LeaveOutOtherElements(Segment& segment, QStringView name) const;
    static int TimesIn(QStringView text);
    bool IsOfAnotherLink(const Segment& segment, const Segment& neighbour) const;
    bool IsControl(const TextPiece& piece, const RecordRange& range) const;
    std::vector<Segment> SegmentsOf(size_t record, NodeIndex name, const QString& called) const;
    QStringView ValueOf(const Segment& segment) const;
    QString PartedValue(const Segment& segment) const;
    bool IsBareCode(const Segment& segment) const;
    bool HoldsMoreThanTown(const Segment& segment) const;
    bool IsTownWithCode(const Segment& segment) const;
    NodeIndex ParentOf(const Segment& segment) const {
        return page_.Page.Parent(page_.Lines.Pieces[static_cast<size_t>(segment.FirstPiece)].Node);
    }
    bool IsTownLike(const std::vector<Segment>& segments, size_t at, int added) const;
    bool LooksLike(NodeIndex one, NodeIndex other) const;
    void LeaveOutQuarter(const std::vector<Segment>& segments, Group& group) const;
    bool IsTownBefore(const Segment& before, const Segment& street) const;
    bool IsWithinLine(const std::vector<Segment>& segments, size_t at, size_t next) const;
    bool Beside(const Segment& one, const Segment& other, int levels) const;
    void ReadParts(const std::vector<Segment>& segments, const RecordRange& range, const QString& parted,
                   Lead& lead) const;
    QString ListText(NodeIndex node) const;
    static QStringView TradeBesideRange(QStringView text);
    void ChooseTradeBesideRange();
    static QStringView PartOf(QStringView text, int number);
    void ChooseTradeAmongParts();
    bool ReadLabelledCategory(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    void FindCategoryElsewhere();
    qsizetype CommaBeforeCountry(QStringView text) const;
    bool IsTownWithRegion(QStringView text) const;
    void FillFromPlace(const RecordNames& names, std::vector<Lead>& leads,
                       std::vector<std::array<NodeIndex, FieldCount>>& nodes) const;
    QString AddressAt(NodeIndex node, NodeIndex name) const;
    void AgreeOnTowns(std::vector<Lead>& leads) const;
    void ReadDataAttributes(const RecordRange& range, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    bool HoldsPartsOfHouses(const RecordColumn& column) const;
    QString FurtherTrades(NodeIndex first, const RecordRange& range) const;

    const RecordColumns& columns_;
    const PageAnnotations& page_;
    bool inDescriptions_ = false; // most records have their address in what calls itself a description
    bool hasMeta_;                // some value may stand in the page for machines only
    int town_ = -1;               // of the columns
    int category_ = -1;
    std::vector<size_t> categoryElsewhere_; // columns of records that have none in that one
    bool besideRange_ = false;              // the category is a part of its column's texts
    int part_ = -1;                         // the same, its number
    QString categoryWhy_;
};

} // namespace Brindle
