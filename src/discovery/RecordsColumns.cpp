#include "discovery/RecordsColumns.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <map>
#include <unordered_map>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLevels = 40;
constexpr size_t mostColumns = 600;
constexpr int mostOrdinals = 12;
constexpr size_t mostMeasured = 400;

bool HasWord(QStringView text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i)
        if (text[i].isLetter() && (text[i + 1].isLetter() || text[i].unicode() >= 0x2E80))
            return true;
    return text.size() == 1 && text.front().unicode() >= 0x2E80;
}

} // namespace

RecordColumns::RecordColumns(const PageAnnotations& page, const Signatures& signatures, const RecordList& list)
    : Page(page), List(list), Lines(list.Records.size()), signatures_(signatures) {
    ReadHeader();
    for (size_t record = 0; record < Count(); ++record)
        ReadLines(record);
    for (size_t record = 0; record < Count(); ++record)
        ReadColumns(record);
    for (RecordColumn& column : Columns)
        Measure(column);
}

QStringView RecordColumns::TextOf(const RecordLine& line) const {
    const TextPiece& first = Page.Lines.Pieces[static_cast<size_t>(line.FirstPiece)];
    const TextPiece& last = Page.Lines.Pieces[static_cast<size_t>(line.EndPiece) - 1];
    return QStringView(Page.Lines.Text).sliced(first.Begin, last.Begin + last.Length - first.Begin);
}

QStringView RecordColumns::ViewOf(NodeIndex node) const {
    const NodeIndex end = Page.Page.End(node);
    const auto first = static_cast<size_t>(Page.Lines.PieceFrom(node));
    size_t last = first;
    while (last < Page.Lines.Pieces.size() && Page.Lines.Pieces[last].Node < end &&
           Page.Lines.Pieces[last].Line == Page.Lines.Pieces[first].Line)
        ++last;
    if (last == first)
        return {};
    const TextPiece& begin = Page.Lines.Pieces[first];
    const TextPiece& back = Page.Lines.Pieces[last - 1];
    return QStringView(Page.Lines.Text).sliced(begin.Begin, back.Begin + back.Length - begin.Begin);
}

quint64 RecordColumns::PathOf(NodeIndex node, const RecordRange& record) const {
    quint64 path = 1;
    int levels = 0;
    for (NodeIndex at = node; at != noNode && at >= record.Begin && levels < mostLevels;
         at = Page.Page.Parent(at), ++levels) {
        if (at == record.Begin && !List.Flat)
            break;
        path = Mixed(path, signatures_.Of(at));
    }
    return path;
}

HintSet RecordColumns::HintsAround(NodeIndex node, const RecordRange& record, int levels) const {
    HintSet hints = 0;
    for (NodeIndex at = node; at != noNode && at >= record.Begin && levels > 0; at = Page.Page.Parent(at), --levels) {
        if (at == record.Begin && !List.Flat)
            break;
        hints |= Page.HintsOf(at);
    }
    return hints;
}

int RecordColumns::CellOf(NodeIndex node, const RecordRange& record) const {
    NodeIndex cell = node;
    int levels = 0;
    const auto isCell = [&](NodeIndex at) {
        return rows_ ? Page.Page.Parent(at) == record.Begin : Page.Page.Is(at, u"td") || Page.Page.Is(at, u"th");
    };
    while (cell != noNode && cell > record.Begin && !isCell(cell) && ++levels < mostLevels)
        cell = Page.Page.Parent(cell);
    if (cell == noNode || cell <= record.Begin || levels >= mostLevels)
        return -1;
    int number = 0;
    for (NodeIndex other = Page.Page.FirstChild(Page.Page.Parent(cell)); other != noNode && other < cell && number < 60;
         other = Page.Page.NextSibling(other))
        number += Page.Page.IsElement(other);
    if (const auto shifted = spans_.find(record.Begin); shifted != spans_.end())
        for (const auto& reaching : shifted->second)
            number += reaching.first <= number ? 1 : 0;
    return number;
}

// Cells that reach down into rows below shift what stands there: the town of several rows is written once.
void RecordColumns::ReadSpans(NodeIndex table) {
    const PageTree& page = Page.Page;
    const auto spanOf = [&page](NodeIndex cell) {
        return page.HasAttribute(cell, u"rowspan") ? std::clamp(page.Attribute(cell, u"rowspan").toInt(), 1, 1000) : 1;
    };
    // Most tables have none: some rows tell.
    bool spans = false;
    for (size_t record = 0; record < std::min<size_t>(List.Records.size(), 100) && !spans; ++record)
        for (NodeIndex cell = page.FirstChild(List.Records[record].Begin); cell != noNode && !spans;
             cell = page.NextSibling(cell))
            spans = page.IsElement(cell) && spanOf(cell) > 1;
    if (!spans)
        return;
    std::map<int, std::pair<int, NodeIndex>> carried; // by column: rows left, the cell
    for (NodeIndex row = table + 1; row < List.Records.back().End; ++row) {
        if (!page.Is(row, u"tr") || (page.Parent(row) != table && page.Parent(page.Parent(row)) != table))
            continue;
        std::vector<std::pair<int, NodeIndex>> reaching;
        reaching.reserve(carried.size());
        for (auto& [column, one] : carried)
            reaching.emplace_back(column, one.second);
        std::map<int, std::pair<int, NodeIndex>> next;
        for (const auto& [column, one] : carried)
            if (one.first > 1)
                next[column] = {one.first - 1, one.second};
        int column = 0;
        for (NodeIndex cell = page.FirstChild(row); cell != noNode && column < 60; cell = page.NextSibling(cell)) {
            if (!page.IsElement(cell))
                continue;
            while (carried.contains(column))
                ++column;
            if (const int rows = spanOf(cell); rows > 1)
                next[column] = {rows - 1, cell};
            ++column;
        }
        carried = std::move(next);
        if (!reaching.empty())
            spans_[row] = std::move(reaching);
    }
}

NodeIndex RecordColumns::ReachingCell(size_t record, Hint hint) const {
    const auto reaching = spans_.find(List.Records[record].Begin);
    if (reaching != spans_.end())
        for (const auto& [column, cell] : reaching->second)
            if (column < static_cast<int>(header_.size()) && Has(header_[static_cast<size_t>(column)], hint))
                return cell;
    return noNode;
}

void RecordColumns::ReadHeader() {
    const PageTree& page = Page.Page;
    NodeIndex table = List.Records.front().Begin;
    if (!page.Is(table, u"tr")) {
        ReadHeaderOfRows();
        return;
    }
    for (int i = 0; i < 4 && table != noNode && !page.Is(table, u"table"); ++i)
        table = page.Parent(table);
    if (table != noNode && page.Is(table, u"table"))
        ReadSpans(table);
    if (table == noNode || !page.Is(table, u"table"))
        return;
    // The row above the first record.
    NodeIndex row = noNode;
    for (NodeIndex node = table; node < List.Records.front().Begin; ++node)
        if (page.Is(node, u"tr"))
            row = node;
    if (row == noNode)
        return;
    for (NodeIndex cell = page.FirstChild(row); cell != noNode && header_.size() < 60; cell = page.NextSibling(cell))
        if (page.IsElement(cell))
            header_.push_back(HintsOfLabel(Page.TextWithin(cell)));
}

// Rows and cells that only their style makes a table: what stands right above the first one has as many cells, which
// are labels.
void RecordColumns::ReadHeaderOfRows() {
    const PageTree& page = Page.Page;
    const NodeIndex first = List.Records.front().Begin;
    const NodeIndex parent = page.Parent(first);
    if (List.Flat || parent == noNode)
        return;
    NodeIndex above = noNode;
    int steps = 0;
    for (NodeIndex node = page.FirstChild(parent); node != noNode && node < first && ++steps < 200;
         node = page.NextSibling(node))
        if (page.IsElement(node))
            above = node;
    // A row of labels can look as the others do, and is the first of them then.
    for (const NodeIndex row : {above, first}) {
        std::vector<HintSet> header;
        for (NodeIndex cell = row == noNode ? noNode : page.FirstChild(row); cell != noNode && header.size() < 60;
             cell = page.NextSibling(cell))
            if (page.IsElement(cell))
                header.push_back(HintsOfLabel(Page.TextWithin(cell)));
        NodeIndex second = page.NextSibling(row == first ? first : above == noNode ? first : above);
        while (second != noNode && !page.IsElement(second))
            second = page.NextSibling(second);
        size_t cells = 0;
        for (NodeIndex cell = second == noNode ? noNode : page.FirstChild(second); cell != noNode;
             cell = page.NextSibling(cell))
            cells += page.IsElement(cell);
        const auto labels = std::count_if(header.begin(), header.end(), [](HintSet hints) { return hints != 0; });
        rows_ = header.size() >= 3 && header.size() == cells && labels >= 3 && labels * 2 >= std::ssize(header);
        if (rows_) {
            header_ = std::move(header);
            return;
        }
    }
}

void RecordColumns::ReadLines(size_t record) {
    const RecordRange& range = List.Records[record];
    const std::vector<TextPiece>& pieces = Page.Lines.Pieces;
    std::vector<RecordLine>& lines = Lines[record];
    for (auto i = static_cast<size_t>(Page.Lines.PieceFrom(range.Begin));
         i < pieces.size() && pieces[i].Node < range.End; ++i) {
        if (!lines.empty() && lines.back().Line == pieces[i].Line) {
            ++lines.back().EndPiece;
            continue;
        }
        RecordLine line;
        line.Line = pieces[i].Line;
        line.FirstPiece = static_cast<int>(i);
        line.EndPiece = static_cast<int>(i) + 1;
        lines.push_back(line);
    }
    HintSet before = 0; // the line before is a label and nothing else
    for (RecordLine& line : lines) {
        const QStringView text = TextOf(line);
        const NodeIndex node = pieces[static_cast<size_t>(line.FirstPiece)].Node;
        const NodeIndex parent = Page.Page.Parent(node);
        line.Around = HintsAround(parent, range, 4);
        const LeadingLabel label = LabelAtBegin(text);
        line.Label = label.Hints;
        line.LabelLength = label.Length;
        if (label.Hints == 0 && line.EndPiece - line.FirstPiece > 1 && !Page.LinkAt(parent))
            ReadLabelElement(line);
        if (line.Label == 0)
            line.Label = before;
        if (line.Label == 0 && !header_.empty())
            if (const int cell = CellOf(parent, range); cell >= 0 && cell < static_cast<int>(header_.size()))
                line.Label = header_[static_cast<size_t>(cell)];
        const bool onlyLabel = label.Length >= text.size() && label.Hints != 0;
        const bool isLabel =
            onlyLabel || (label.Hints == 0 && text.size() <= 30 && HintsOfLabel(text) != 0 &&
                          (text.endsWith(u':') || text.endsWith(u'\uFF1A') || Page.Page.Is(parent, u"dt") ||
                           Page.Page.Is(parent, u"th") || !Page.LinkAt(parent)));
        before = isLabel ? HintsOfLabel(text) : 0;
        // "Open now", "Directions": what says so without announcing anything says nothing of the next line.
        constexpr HintSet signs = Hint::Hours | Hint::Map | Hint::Rating | Hint::Review | Hint::Distance;
        const bool announces = text.endsWith(u':') || text.endsWith(u'\uFF1A') || Page.Page.Is(parent, u"dt") ||
                               Page.Page.Is(parent, u"th");
        if (!announces && (before & ~signs) == 0)
            before = 0;
    }
}

// "<span>Address</span> <span>12 Main St</span>": a label is an element of its own.
void RecordColumns::ReadLabelElement(RecordLine& line) const {
    const TextPiece& first = Page.Lines.Pieces[static_cast<size_t>(line.FirstPiece)];
    const TextPiece& second = Page.Lines.Pieces[static_cast<size_t>(line.FirstPiece) + 1];
    const QStringView text = Page.Lines.TextOf(first);
    if (text.size() < 3 || text.size() > 30 || Page.Page.Parent(first.Node) == Page.Page.Parent(second.Node))
        return;
    const HintSet hints = HintsOfLabel(text);
    if ((hints & ~(Hint::Name | Hint::Business)) == 0)
        return;
    line.Label = hints;
    line.LabelLength = second.Begin - first.Begin;
}

void RecordColumns::ReadColumns(size_t record) {
    const RecordRange& range = List.Records[record];
    const std::vector<TextPiece>& pieces = Page.Lines.Pieces;
    NodeIndex lastElement = noNode;
    int place = 0;
    for (const RecordLine& line : Lines[record]) {
        for (int i = line.FirstPiece; i < line.EndPiece; ++i) {
            NodeIndex element = Page.Page.Parent(pieces[static_cast<size_t>(i)].Node);
            if (element < range.Begin || element == lastElement)
                continue;
            lastElement = element;
            // The element of the text itself, and those around it that say what it is.
            for (int level = 0; element >= range.Begin && level < 6; element = Page.Page.Parent(element), ++level) {
                const QStringView name = Page.Page.Name(element);
                const HintSet hints = Page.HintsOf(element);
                const bool heading = IsHeading(Page.Page, element);
                const bool matters = level == 0 || heading || name == u"a" ||
                                     (hints & (Hint::Name | Hint::Category | Hint::City | Hint::Address)) != 0;
                if (matters) {
                    const quint64 path = PlaceOf(element, range);
                    Ordinal& ordinal = ordinals_[path];
                    if (ordinal.Record != record)
                        ordinal = {record, 0};
                    const quint64 key = Mixed(path, static_cast<quint64>(std::min(ordinal.Next++, mostOrdinals)));
                    auto found = numbers_.find(key);
                    if (found == numbers_.end()) {
                        if (Columns.size() >= mostColumns)
                            break;
                        found = numbers_.emplace(key, Columns.size()).first;
                        Columns.push_back({});
                        Columns.back().Key = key;
                        Columns.back().Nodes.assign(Count(), noNode);
                    }
                    RecordColumn& column = Columns[found->second];
                    if (column.Nodes[record] == noNode) {
                        column.Nodes[record] = element;
                        column.Own |= hints;
                        column.Around |= HintsAround(Page.Page.Parent(element), range, 2);
                        column.Label |= line.Label;
                        column.IsHeading = column.IsHeading || heading;
                        column.IsLink = column.IsLink || name == u"a";
                        column.IsStrong =
                            column.IsStrong || name == u"strong" || name == u"b" || name == u"dt" || name == u"th";
                        column.Order += place;
                        ++column.Filled;
                    }
                }
                if (element == range.Begin)
                    break;
            }
            // Stars, ranks and counts before a name do not make it a later text.
            place += HasWord(Page.Lines.TextOf(pieces[static_cast<size_t>(i)])) ? 1 : 0;
        }
    }
}

void RecordColumns::Measure(RecordColumn& column) const {
    QSet<QString> texts;
    qsizetype characters = 0;
    int pieces = 0;
    int phones = 0;
    int addresses = 0;
    int dates = 0;
    int prices = 0;
    int buttons = 0;
    int wordless = 0;
    int colons = 0;
    int digits = 0;
    int webs = 0;
    // Some hundred records of a long list say what all of them say.
    const size_t step = std::max<size_t>(1, column.Nodes.size() / mostMeasured);
    int seen = 0;
    for (size_t record = 0; record < column.Nodes.size(); record += step) {
        const NodeIndex node = column.Nodes[record];
        if (node == noNode)
            continue;
        ++seen;
        const auto piece = static_cast<size_t>(Page.Lines.PieceFrom(node));
        const auto line = static_cast<size_t>(Page.Lines.Pieces[piece].Line);
        const QStringView text = ViewOf(node);
        characters += text.size();
        for (size_t i = piece; i < Page.Lines.Pieces.size() && Page.Lines.Pieces[i].Node < Page.Page.End(node) &&
                               Page.Lines.Pieces[i].Line == static_cast<int>(line) && i < piece + 6;
             ++i)
            ++pieces;
        const QString words = BareWords(text.left(200));
        texts.insert(words);
        const bool wholeLine = text.size() * 2 > Page.Lines.Lines[line].Length;
        phones += wholeLine && text.size() < 80 && Page.FactsOf(node).Phones > 0;
        addresses += wholeLine && Page.IsAddressLine[line];
        dates += Page.IsDateLine[line] && HasDate(text);
        prices += Page.IsPriceLine[line] && HasPrice(text);
        buttons += IsButtonText(words);
        webs += !text.contains(u' ') &&
                (text.contains(u'@') || text.contains(u"://") || text.startsWith(u"www.", Qt::CaseInsensitive));
        colons += text.endsWith(u':') || text.endsWith(u'\uFF1A');
        wordless += !HasWord(text);
        digits += std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    }
    column.Order /= std::max(1, column.Filled);
    const double filled = std::max(1, seen);
    column.Distinct = static_cast<double>(texts.size()) / filled;
    column.Length = static_cast<double>(characters) / filled;
    column.Pieces = pieces / filled;
    column.Phones = phones / filled;
    column.AddressLines = addresses / filled;
    column.Dates = dates / filled;
    column.Prices = prices / filled;
    column.Buttons = buttons / filled;
    column.Colons = colons / filled;
    column.Wordless = wordless / filled;
    column.Digits = digits / filled;
    column.Addresses = webs / filled;
}

} // namespace Brindle
