// The trades of records.
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsPlaceText.h"
#include "discovery/RecordsPlaces.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostTexts = 60; // of a column, to see what it holds

} // namespace

void RecordPlaces::ReadCategory(size_t record, NodeIndex name, Lead& lead,
                                std::array<NodeIndex, FieldCount>& nodes) const {
    if (ReadLabelledCategory(record, lead, nodes) || category_ < 0)
        return;
    NodeIndex node = columns_.Columns[static_cast<size_t>(category_)].Nodes[record];
    for (auto other = categoryElsewhere_.begin(); node == noNode && other != categoryElsewhere_.end(); ++other)
        node = columns_.Columns[*other].Nodes[record];
    if (node == noNode || node == name)
        return;
    // A part of the name's own line is a part of the name; a heading may hold more lines.
    const auto lineOf = [this](NodeIndex at) {
        return page_.Lines.Pieces[static_cast<size_t>(page_.Lines.PieceFrom(at))].Line;
    };
    if (name != noNode && node > name && node < page_.Page.End(name) && lineOf(node) == lineOf(name))
        return;
    const QString category = besideRange_ ? TradeBesideRange(columns_.TextOf(node)).toString()
                             : part_ >= 0 ? PartOf(columns_.ViewOf(node), part_).toString()
                                          : ListText(node) + FurtherTrades(node, columns_.List.Records[record]);
    if (category == lead.Name || category.contains(u'@') || category.contains(u"(at)") || HintsOfLabel(category) != 0 ||
        !DigitsOfPhone(category).isEmpty() || LabelAtBegin(category).Hints != 0 || IsHours(category))
        return;
    lead.Category = category;
    nodes[static_cast<size_t>(Field::Category)] = node;
}

// "Category: Florists", or the label in the cell before: it says of each record where its trade is.
bool RecordPlaces::ReadLabelledCategory(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    for (const RecordLine& line : columns_.Lines[record]) {
        if (!Has(line.Label, Hint::Category))
            continue;
        const qsizetype begin = page_.Lines.Pieces[static_cast<size_t>(line.FirstPiece)].Begin + line.LabelLength;
        int pieces = 0;
        for (int i = line.FirstPiece; i < line.EndPiece; ++i) {
            const TextPiece& piece = page_.Lines.Pieces[static_cast<size_t>(i)];
            pieces += piece.Begin + piece.Length > begin;
        }
        if (pieces != 1)
            continue;
        const QStringView value = columns_.ValueOf(line).trimmed();
        if (value.size() < 3 || value.size() > 80 || HasDigit(value) || value.contains(u'@') ||
            HintsOfLabel(value) != 0)
            continue;
        lead.Category = Tidy(value.toString());
        nodes[static_cast<size_t>(Field::Category)] =
            page_.Page.Parent(page_.Lines.Pieces[static_cast<size_t>(line.FirstPiece)].Node);
        return true;
    }
    return false;
}

// One of the parts of a text with marks between them: 1 of "Downtown | Italian | $$" is "Italian".
QStringView RecordPlaces::PartOf(QStringView text, int number) {
    const auto parts = [](QChar c) { return c == u'|' || (c.unicode() >= 0xB7 && IsAmong(c, u"\u00B7\u2022\u22C5")); };
    for (qsizetype begin = 0; begin <= text.size();) {
        qsizetype end = begin;
        while (end < text.size() && !parts(text[end]))
            ++end;
        if (number-- == 0)
            return text.sliced(begin, end - begin).trimmed();
        begin = end + 1;
    }
    return {};
}

// "Downtown | Italian": where a part of a text is a trade in nearly all records, it is the trade.
void RecordPlaces::ChooseTradeAmongParts() {
    for (size_t i = 0; i < columns_.Columns.size() && category_ < 0; ++i) {
        const RecordColumn& column = columns_.Columns[i];
        if (column.IsHeading || column.Length > 100 || static_cast<size_t>(column.Filled) * 5 < columns_.Count() * 3)
            continue;
        std::vector<QStringView> parted;
        for (const NodeIndex node : column.Nodes)
            if (const QStringView text = node == noNode ? QStringView() : columns_.ViewOf(node);
                !PartOf(text, 1).isEmpty())
                parted.push_back(text);
        double best = 0;
        for (int part = 0; part < 4; ++part) {
            QSet<QString> different;
            const auto trades = std::count_if(parted.begin(), parted.end(), [&](QStringView text) {
                const bool trade = IsTrade(PartOf(text, part));
                if (trade)
                    different.insert(PartOf(text, part).toString());
                return trade;
            });
            // A quarter that all share can sound like a trade.
            const double score = static_cast<double>(trades) + (different.size() > 1 ? 0.5 : 0);
            if (trades < 3 || trades * 5 < std::ssize(column.Nodes) * 3 || score <= best)
                continue;
            best = score;
            category_ = static_cast<int>(i);
            part_ = part;
            categoryWhy_ = u"part of a text that names trades"_s;
        }
    }
}

// The trades beside the first one, each in an element that looks like its: "<a>Plumbers</a> <a>Heating</a>".
QString RecordPlaces::FurtherTrades(NodeIndex first, const RecordRange& range) const {
    const PageTree& page = page_.Page;
    QString further;
    if (first <= range.Begin || page.Is(first, u"p") || page.Is(first, u"td"))
        return further;
    const QString look = page.Attribute(first, u"class").toString();
    int most = 12;
    for (NodeIndex next = page.NextSibling(first); next != noNode && next < range.End; next = page.NextSibling(next)) {
        if (!page.IsElement(next)) {
            if (!IsMarksOnly(page_.TextWithin(next)))
                break;
            continue;
        }
        const QString text = ListText(next);
        if (page.Name(next) != page.Name(first) || page.Attribute(next, u"class") != look || text.isEmpty() ||
            text.size() > 60 || HasDigit(text) || IsButtonText(text) || --most < 0)
            break;
        further += u", "_s + text;
    }
    return further;
}

// Whether one of a column's first texts is a part of an address.
bool RecordPlaces::HoldsPartsOfHouses(const RecordColumn& column) const {
    int left = mostTexts;
    return std::any_of(column.Nodes.begin(), column.Nodes.end(), [&](NodeIndex node) {
        if (node == noNode || left-- <= 0)
            return false;
        const QStringView text = columns_.ViewOf(node);
        return text.contains(u'/') || text.contains(u',') || IsPartOfHouse(text) || HasStreetWord(text);
    });
}

void RecordPlaces::ChooseCategory(const QString& subject, const std::vector<Lead>& leads) {
    double best = 0;
    const double count = static_cast<double>(columns_.Count());
    const auto placed =
        std::count_if(leads.begin(), leads.end(), [](const Lead& lead) { return !lead.FullAddress.isEmpty(); });
    for (size_t i = 0; i < columns_.Columns.size(); ++i) {
        const RecordColumn& column = columns_.Columns[i];
        if (static_cast<int>(i) == town_)
            continue;
        const bool says = Has(column.Own, Hint::Category) || Has(column.Label, Hint::Category);
        const bool other = (column.IsHeading && column.Distinct > 0.8) || Has(column.Own, Hint::Name) ||
                           ((column.Own & (placeHints | otherHints)) != 0 && !says) || column.Phones > 0.2 ||
                           column.AddressLines > 0.2 || column.Dates > 0.2 || (column.Prices > 0.2 && !says) ||
                           column.Buttons > 0.3 || column.Wordless > 0.3 || column.Length > 150 || column.Length < 2;
        // Nothing below would take it.
        const bool unlike = !says && (column.Filled < count * 0.5 || column.Digits >= 0.2 || column.Length > 60);
        if (other || unlike)
            continue;
        int labels = 0;
        int kinds = 0;
        int ofSubject = 0;
        int seen = 0;
        int places = 0;
        int ranged = 0;
        int sentences = 0;
        int mixed = 0; // trades and other things parted by marks
        bool onLinks = false;
        qsizetype wordsOfOne = 0;
        for (size_t record = 0; record < column.Nodes.size(); ++record) {
            const NodeIndex node = column.Nodes[record];
            if (node == noNode || seen >= mostTexts)
                continue;
            ++seen;
            const QStringView text = columns_.ViewOf(node);
            const BareView bare(text);
            const QStringView words = bare.View();
            places += (leads[record].Name.size() >= 3 && text.contains(leads[record].Name)) ||
                      (!text.isEmpty() && leads[record].FullAddress.contains(text));
            labels += HintsOfLabel(text) != 0;
            const auto piece = static_cast<size_t>(page_.Lines.PieceFrom(node));
            NodeIndex around = page_.Page.Parent(page_.Lines.Pieces[piece].Node);
            for (int level = 0; level < 3 && around != noNode && !onLinks; ++level, around = page_.Page.Parent(around))
                onLinks = page_.LinkAt(around) != nullptr;
            wordsOfOne = std::max(wordsOfOne, words.count(u' ') + 1);
            ranged += !TradeBesideRange(text).isEmpty();
            sentences += text.endsWith(u'.') && words.count(u' ') > 0;
            const bool trade = IsTrade(text);
            kinds += trade || NamesBusinesses(words);
            mixed += !PartOf(page_.Lines.TextOf(page_.Lines.Pieces[piece]), 1).isEmpty() &&
                     (!trade || IsAmong(text.back(), u"$\u20AC\u00A3"));
            ofSubject += words.size() >= 4 && subject.contains(words);
        }
        if (places * 2 > seen || ranged * 2 > seen || (!says && (sentences * 2 > seen || mixed * 2 > seen)))
            continue;
        if (labels * 2 > seen && !Has(column.Own, Hint::Category))
            continue;
        if (labels * 4 > seen * 3)
            continue;
        // What is the same in all records is part of the page's furniture, unless the page is about it.
        const bool constant = column.Distinct * column.Filled < 1.5;
        const bool labelled = Has(column.Label, Hint::Category);
        const bool trade = kinds == seen && seen >= 3 && !onLinks && wordsOfOne == 1;
        // "<span class=tag>Open</span>": what only calls itself a tag must name a trade.
        const auto first =
            std::find_if(column.Nodes.begin(), column.Nodes.end(), [](NodeIndex node) { return node != noNode; });
        const QString look =
            first == column.Nodes.end() ? QString() : page_.Page.Attribute(*first, u"class").toString().toLower();
        const bool tag = look.contains(u"tag") || look.contains(u"service") || look.contains(u"status");
        const bool furniture = !says || (column.IsLink && !labelled) || (!labelled && tag && kinds < seen);
        if (constant && furniture && ofSubject * 2 <= seen && !trade)
            continue;
        double score = 0;
        if (says)
            score = 3;
        else if (column.Filled >= count * 0.5 && column.Digits < 0.2 && column.Length <= 60 && column.Distinct < 0.9 &&
                 (kinds * 2 > seen || ofSubject * 2 > seen))
            score = 1.5;
        else if (column.Filled >= count * 0.5 && column.Digits < 0.1 && column.Length <= 40 && column.Distinct < 0.5 &&
                 column.Distinct * column.Filled > 2.5 && std::max(kinds, ofSubject) * 4 >= seen)
            score = 1.2; // what is said again and again is a trade when some of it is known to be one
        // A few entries may all be of different trades.
        else if (column.Filled >= count * 0.8 && column.Digits == 0 && column.Length <= 30 && wordsOfOne <= 4 &&
                 kinds == seen && seen >= 3)
            score = 1.1;
        // Some texts that come again and again behind the names, where the places are known: nothing else does so.
        else if (placed * 5 >= std::ssize(leads) * 3 && column.Filled >= count * 0.6 && column.Digits == 0 &&
                 column.Length >= 3 && column.Length <= 36 && wordsOfOne <= 5 && column.Order < 3.5 && labels == 0 &&
                 column.Colons == 0 && column.Buttons == 0 && column.Distinct <= 0.7 &&
                 column.Distinct * column.Filled > 2.5 && !HoldsPartsOfHouses(column))
            score = 0.9;
        score *= 0.3 + 0.7 * column.Filled / count;
        if (score > best) {
            best = score;
            category_ = static_cast<int>(i);
            categoryWhy_ =
                says ? u"calls itself a category"_s : u"short texts that name trades or the page’s subject"_s;
        }
    }
    if (category_ >= 0)
        FindCategoryElsewhere();
    if (category_ < 0)
        ChooseTradeBesideRange();
    if (category_ < 0)
        ChooseTradeAmongParts();
}

// Paid entries may have their category at another place: it is an element of the same name and class.
void RecordPlaces::FindCategoryElsewhere() {
    const auto first = [](const RecordColumn& column) {
        return *std::find_if(column.Nodes.begin(), column.Nodes.end(), [](NodeIndex node) { return node != noNode; });
    };
    const RecordColumn& chosen = columns_.Columns[static_cast<size_t>(category_)];
    const NodeIndex node = first(chosen);
    const QStringView look = page_.Page.Attribute(node, u"class");
    if (static_cast<size_t>(chosen.Filled) == columns_.Count())
        return;
    // One trade alone in an element that others fill with several: "<p><a>Bars</a> | <a>Clubs</a></p>".
    const auto beginsChosen = [&](const RecordColumn& column) {
        int both = 0;
        int within = 0;
        for (size_t record = 0; record < columns_.Count(); ++record) {
            const NodeIndex outer = chosen.Nodes[record];
            const NodeIndex inner = column.Nodes[record];
            both += outer != noNode && inner != noNode;
            within += outer != noNode && inner > outer && inner < page_.Page.End(outer) &&
                      page_.Lines.PieceFrom(inner) == page_.Lines.PieceFrom(outer);
        }
        return both >= 2 && within == both;
    };
    for (size_t i = 0; i < columns_.Columns.size(); ++i) {
        const NodeIndex other = static_cast<int>(i) == category_ ? noNode : first(columns_.Columns[i]);
        const bool alike = other != noNode && !look.isEmpty() && page_.Page.Name(other) == page_.Page.Name(node) &&
                           page_.Page.Attribute(other, u"class") == look;
        if (alike || (other != noNode && beginsChosen(columns_.Columns[i])))
            categoryElsewhere_.push_back(i);
    }
}

// The texts of an element's parts, parted by commas where the page parts them by its style.
QString RecordPlaces::ListText(NodeIndex node) const {
    constexpr QStringView marks = u",;/|\u203A\u2022\u00B7>-\u2013&(";
    QString text;
    NodeIndex parent = noNode;
    qsizetype behind = -1;
    const NodeIndex end = page_.Page.End(node);
    for (auto i = static_cast<size_t>(page_.Lines.PieceFrom(node));
         i < page_.Lines.Pieces.size() && page_.Lines.Pieces[i].Node < end && text.size() < 300; ++i) {
        const TextPiece& piece = page_.Lines.Pieces[i];
        const QStringView part = page_.Lines.TextOf(piece);
        if (text.isEmpty() && Has(HintsOfLabel(part), Hint::Category))
            continue;
        // "Italian <span>12-30 €</span>", "Dentists <a>Map</a>"
        if (!text.isEmpty() && ((HasDigit(part) && HasPrice(part)) || IsButtonText(BareView(part).View())))
            break;
        if (!text.isEmpty()) {
            const NodeIndex element = page_.Page.Parent(piece.Node);
            const bool parted = marks.contains(text.back()) || marks.contains(part.front());
            if (!parted && element != parent && element != node && parent != node)
                text += u", ";
            else if (piece.Begin > behind && part.front() != u',')
                text += u' ';
        }
        text += part;
        behind = piece.Begin + piece.Length;
        parent = page_.Page.Parent(piece.Node);
    }
    if (const LeadingLabel label = LabelAtBegin(text); Has(label.Hints, Hint::Category))
        text = text.sliced(label.Length);
    if (text.startsWith(u"in ")) // "in Pubs & Bars"
        text = text.sliced(3);
    return Tidy(text);
}

} // namespace Brindle
