#include "discovery/RecordsNames.h"

#include "discovery/RecordsContacts.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr double nameEnough = 1.2; // what RecordsReader takes for names

// "12. Joe's Pizza": the number is the page's.
QString WithoutNumber(const QString& text) {
    if (text.startsWith(u'#')) { // "#1 Joe's Pizza"
        qsizetype end = 1;
        while (end < text.size() && text[end].isDigit())
            ++end;
        const bool rank = end > 1 && end < 5 && end + 1 < text.size() && text[end].isSpace();
        return rank ? text.sliced(end).trimmed() : text;
    }
    qsizetype at = 0;
    while (at < text.size() && at < 4 && text[at].isDigit())
        ++at;
    if (at == 0 || at + 1 >= text.size() || (text[at] != u'.' && text[at] != u')') || !text[at + 1].isSpace())
        return text;
    return text.sliced(at + 2).trimmed();
}

} // namespace

RecordNames::RecordNames(const RecordColumns& columns)
    : columns_(columns), nodes_(columns.Count(), noNode), details_(columns.Count(), noNode) {
    ChooseNames();
    if (score_ < nameEnough)
        ChooseOneName();
    if (score_ < nameEnough)
        ChoosePictures();
    if (score_ < nameEnough)
        ChooseFirstLines();
    if (score_ >= nameEnough && beginnings_.empty())
        FindBeginnings();
    CountBadges();
    CountNumbers();
    ChooseDetails();
    names_.reserve(columns_.Count());
    for (size_t record = 0; record < columns_.Count(); ++record)
        names_.push_back(ReadName(record));
}

double RecordNames::ScoreOf(const RecordColumn& column) const {
    const double count = static_cast<double>(columns_.Count());
    double score = 0;
    if (column.IsHeading || Has(column.Around, Hint::Title))
        score += 1.5;
    if (column.IsHeading)
        score += 1.5;
    if (Has(column.Own, Hint::Name) || Has(column.Around, Hint::Name))
        score += 3;
    if (Has(column.Own, Hint::Title))
        score += 1.5;
    if (Has(column.Label, Hint::Name))
        score += 2;
    if (column.IsLink)
        score += 1.5;
    if (column.IsStrong)
        score += 1;
    score += column.Order < 0.5 ? 1.5 : column.Order < 1.5 ? 1 : column.Order < 2.5 ? 0.5 : 0;
    const HintSet own = column.Own | column.Label;
    const bool saysName = Has(own, Hint::Name) || Has(own, Hint::Title);
    if (!saysName)
        for (const Hint other :
             {Hint::Address,  Hint::Street,      Hint::City,  Hint::State, Hint::PostalCode, Hint::Country,
              Hint::Category, Hint::Phone,       Hint::Fax,   Hint::Mail,  Hint::Website,    Hint::Review,
              Hint::Author,   Hint::Description, Hint::Date,  Hint::Price, Hint::Hours,      Hint::Rating,
              Hint::Map,      Hint::Distance,    Hint::Person})
            if (Has(own, other))
                score -= 2;
    for (const Hint other : {Hint::Review, Hint::Description, Hint::Category, Hint::City, Hint::Phone})
        if (!saysName && Has(column.Around, other))
            score -= 1;
    if (!column.IsHeading && !saysName)
        score -= 4 * column.Addresses;
    score -= 4 * column.AddressLines + 4 * column.Phones + 3 * column.Dates + 3 * column.Prices + 6 * column.Buttons +
             5 * column.Wordless;
    if (column.Length > 90)
        score -= 3;
    else if (column.Length > 60)
        score -= 1;
    score -= std::min(column.IsHeading ? 2.0 : 4.5, 1.5 * (column.Pieces - 1)) + 3 * column.Colons;
    if (column.Length < 3)
        score -= 2;
    const double filled = column.Filled / count;
    return score * filled * column.Distinct;
}

void RecordNames::ChooseNames() {
    std::vector<std::pair<double, const RecordColumn*>> ranking;
    for (const RecordColumn& column : columns_.Columns)
        if (const double score = ScoreOf(column); score > 0.2)
            ranking.emplace_back(score, &column);
    std::stable_sort(ranking.begin(), ranking.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    if (ranking.empty())
        return;
    score_ = ranking.front().first;
    const RecordColumn& best = *ranking.front().second;
    why_ = best.IsHeading                            ? u"heading"_s
           : Has(best.Own | best.Around, Hint::Name) ? u"its element calls itself a name"_s
           : best.IsLink                             ? u"first link that differs from record to record"_s
           : best.IsStrong                           ? u"bold text that differs from record to record"_s
                                                     : u"first text that differs from record to record"_s;
    // Variants of one list (paid entries) have their names elsewhere.
    for (const auto& [score, column] : ranking) {
        const bool alike = score * static_cast<double>(columns_.Count()) / std::max(1, column->Filled) >= 0.5 * score_;
        if (column != &best && !alike)
            continue;
        for (size_t record = 0; record < columns_.Count(); ++record)
            if (nodes_[record] == noNode && column->Nodes[record] != noNode &&
                !IsButtonText(columns_.ViewOf(column->Nodes[record])))
                nodes_[record] = column->Nodes[record];
    }
    FindAlike(best);
}

// An entry whose elements around the name are called otherwise, "details no-photo", has it in an element that looks as
// the others' do.
void RecordNames::FindAlike(const RecordColumn& best) {
    const PageTree& page = columns_.Page.Page;
    const NodeIndex known =
        *std::find_if(best.Nodes.begin(), best.Nodes.end(), [](NodeIndex node) { return node != noNode; });
    const QStringView look = page.Attribute(known, u"class");
    if ((look.isEmpty() && !best.IsHeading) || columns_.List.Flat)
        return;
    double worth = 0; // of an entry with a name, on the average
    for (size_t record = 0; record < columns_.Count(); ++record)
        if (best.Nodes[record] != noNode)
            worth += WorthOf(columns_.Page.FactsOf(columns_.List.Records[record].Begin)) / best.Filled;
    for (size_t record = 0; record < columns_.Count(); ++record) {
        const RecordRange& range = columns_.List.Records[record];
        if (WorthOf(columns_.Page.FactsOf(range.Begin)) < 0.7 * worth)
            continue; // a note among the entries
        for (NodeIndex node = range.Begin + 1; node < range.End && nodes_[record] == noNode; ++node)
            if (page.IsElement(node) && page.Name(node) == page.Name(known) && page.Attribute(node, u"class") == look)
                if (const QStringView text = columns_.ViewOf(node);
                    text.size() > 1 && !IsButtonText(BareView(text).View()))
                    nodes_[record] = node;
    }
}

// The stores of a chain bear one name: a heading that calls itself a name, or stands first.
void RecordNames::ChooseOneName() {
    for (const RecordColumn& column : columns_.Columns) {
        const bool says = Has(column.Own, Hint::Name) || Has(column.Own, Hint::Title);
        const bool one =
            column.Distinct * column.Filled < 1.5 && static_cast<size_t>(column.Filled) == columns_.Count();
        if (!one || !(column.IsHeading || (says && column.Order < 1.5)) || column.Length < 3 || column.Length > 60 ||
            column.Buttons > 0 || column.Digits > 0 || column.Wordless > 0 ||
            HintsOfLabel(columns_.TextOf(column.Nodes.front())) != 0)
            continue;
        nodes_ = column.Nodes;
        score_ = 2;
        oneName_ = true;
        why_ = u"heading, the same in all records"_s;
        return;
    }
}

// "<a>Joe's Pizza<br>1 Main St<br>555 0100</a>": the first of the lines of records that nothing parts.
void RecordNames::ChooseFirstLines() {
    std::vector<QString> first(columns_.Count());
    QSet<QString> different;
    for (size_t record = 0; record < columns_.Count(); ++record) {
        const std::vector<RecordLine>& lines = columns_.Lines[record];
        if (columns_.List.Flat || !columns_.Page.Page.Is(columns_.List.Records[record].Begin, u"a") || lines.size() < 2)
            continue;
        const QStringView text = columns_.TextOf(lines.front());
        if (text.size() < 2 || text.size() > 80 || lines.front().Label != 0 || HintsOfLabel(text) != 0 ||
            IsButtonText(text) || text.endsWith(u':') ||
            std::count_if(text.begin(), text.end(), [](QChar c) { return c.isDigit(); }) > 4)
            continue;
        first[record] = text.toString();
        different.insert(BareWords(text));
    }
    if (static_cast<size_t>(different.size()) * 10 < columns_.Count() * 9)
        return;
    std::fill(nodes_.begin(), nodes_.end(), noNode);
    beginnings_ = std::move(first);
    score_ = 2;
    why_ = u"first line, which differs from record to record"_s;
}

// "<li><a>Joe's Pizza</a>, 1 Main St</li><li>Ann's Diner, 2 Main St</li>": where names are what lines begin with, up to
// a mark, they do so without an element as well.
void RecordNames::FindBeginnings() {
    const PageTree& page = columns_.Page.Page;
    const PageLines& lines = columns_.Page.Lines;
    beginnings_.resize(columns_.Count());
    size_t missing = 0;
    size_t begin = 0;
    QChar mark;
    for (size_t record = 0; record < columns_.Count(); ++record) {
        if (nodes_[record] == noNode) {
            ++missing;
            continue;
        }
        const NodeIndex node = nodes_[record];
        if (page.Is(node, u"img") || columns_.Lines[record].empty())
            return;
        const QStringView line = columns_.TextOf(columns_.Lines[record].front());
        const QString name = columns_.TextOf(node);
        if (line.startsWith(name) && line.size() > name.size() + 1 &&
            (line[name.size()] == u',' || line[name.size()] == u';')) {
            ++begin;
            mark = line[name.size()];
        }
    }
    if (missing == 0 || begin < 2 || (columns_.Count() - missing) * 9 > begin * 10)
        return;
    for (size_t record = 0; record < columns_.Count(); ++record) {
        if (nodes_[record] != noNode || columns_.Lines[record].empty())
            continue;
        const RecordLine& line = columns_.Lines[record].front();
        const QStringView text = columns_.TextOf(line);
        const qsizetype at = text.indexOf(mark);
        if (at < 2 || at > 80 || lines.Pieces[static_cast<size_t>(line.FirstPiece)].Length < at)
            continue;
        beginnings_[record] = text.first(at).trimmed().toString();
    }
}

// Walls of logos: the names stand for readers who do not see the pictures only.
void RecordNames::ChoosePictures() {
    const PageTree& page = columns_.Page.Page;
    std::vector<NodeIndex> pictures(columns_.Count(), noNode);
    QSet<QString> names;
    for (size_t record = 0; record < columns_.Count(); ++record) {
        const RecordRange& range = columns_.List.Records[record];
        for (NodeIndex node = range.Begin; node < range.End && pictures[record] == noNode; ++node) {
            if (!page.Is(node, u"img"))
                continue;
            const QString words = BareWords(page.Attribute(node, u"alt"));
            if (words.size() < 3 || words.size() > 80 || IsButtonText(words) || names.contains(words))
                continue;
            pictures[record] = node;
            names.insert(words);
        }
    }
    if (static_cast<size_t>(names.size()) * 10 < columns_.Count() * 8)
        return;
    nodes_ = std::move(pictures);
    score_ = 2;
    why_ = u"the texts of pictures, which differ from record to record"_s;
}

// The last text of a name's line, when it stands in an element of its own behind the name: "Joe's Pizza [Verified]".
const TextPiece* RecordNames::BadgeOf(NodeIndex name) const {
    const PageTree& page = columns_.Page.Page;
    const std::vector<TextPiece>& pieces = columns_.Page.Lines.Pieces;
    const auto first = static_cast<size_t>(columns_.Page.Lines.PieceFrom(name));
    size_t last = first;
    while (last + 1 < pieces.size() && pieces[last + 1].Node < page.End(name) &&
           pieces[last + 1].Line == pieces[first].Line)
        ++last;
    if (last == first || last >= pieces.size())
        return nullptr;
    // Beside a link or beside the name's own text: parts of one name ("<i>Anna</i> <i>Berg</i>") stand side by side.
    const NodeIndex beside = page.Parent(pieces[last - 1].Node);
    const NodeIndex own = page.Parent(pieces[last].Node);
    const auto linkAround = [&](NodeIndex node) {
        while (node > name && !page.Is(node, u"a"))
            node = page.Parent(node);
        return page.Is(node, u"a") ? node : noNode;
    };
    const bool apart = own != name && (beside == name || page.Parent(own) == beside || linkAround(beside) > name);
    const bool inLink = linkAround(own) != noNode && linkAround(own) == linkAround(beside) && beside != linkAround(own);
    return apart && !inLink && pieces[last].Length <= 30 ? &pieces[last] : nullptr;
}

// What names end with in elements of their own is no part of them when it is the same again and again.
void RecordNames::CountBadges() {
    int seen = 0;
    for (const NodeIndex node : nodes_)
        if (const TextPiece* const badge = node == noNode ? nullptr : BadgeOf(node)) {
            ++badges_[BareWords(columns_.Page.Lines.TextOf(*badge))];
            ++seen;
        }
    badges_.removeIf([seen](const auto& badge) { return badge.value() < 2 || badge.value() * 10 < seen * 3; });
}

// "<span>7</span>Joe's Pizza": the length of a number in an element of its own before a name, with marks behind it.
qsizetype RecordNames::NumberOf(NodeIndex name) const {
    const std::vector<TextPiece>& pieces = columns_.Page.Lines.Pieces;
    const auto first = static_cast<size_t>(columns_.Page.Lines.PieceFrom(name));
    if (first + 1 >= pieces.size() || pieces[first + 1].Node >= columns_.Page.Page.End(name) ||
        pieces[first + 1].Line != pieces[first].Line)
        return 0;
    const QStringView text = columns_.Page.Lines.TextOf(pieces[first]);
    qsizetype digits = 0;
    while (digits < text.size() && text[digits].isDigit())
        ++digits;
    const bool number = digits > 0 && digits < 5 && text.size() - digits <= 1 &&
                        std::none_of(text.begin() + digits, text.end(), [](QChar c) { return c.isLetter(); });
    return number && columns_.Page.Page.Parent(pieces[first].Node) != columns_.Page.Page.Parent(pieces[first + 1].Node)
               ? text.size()
               : 0;
}

// The page counts its entries: nearly all names begin with a number, each with another one.
void RecordNames::CountNumbers() {
    QSet<QString> numbers;
    int named = 0;
    for (const NodeIndex node : nodes_) {
        if (node == noNode || columns_.Page.Page.Is(node, u"img"))
            continue;
        ++named;
        if (const qsizetype size = NumberOf(node); size > 0)
            numbers.insert(columns_.TextOf(node).first(size));
    }
    numbered_ = named >= 3 && numbers.size() * 10 >= qsizetype{9} * named;
}

QString RecordNames::ReadName(size_t record) const {
    const NodeIndex node = nodes_[record];
    if (node == noNode)
        return beginnings_.empty() ? QString() : beginnings_[record];
    const PageTree& page = columns_.Page.Page;
    if (page.Is(node, u"img"))
        return page.Attribute(node, u"alt").toString().simplified().left(300);
    QString name = columns_.TextOf(node);
    if (const TextPiece* const badge = badges_.isEmpty() ? nullptr : BadgeOf(node))
        if (const QStringView text = columns_.Page.Lines.TextOf(*badge); badges_.contains(BareWords(text)))
            name = name.chopped(text.size()).trimmed();
    // A name that is cut off may stand whole in the title, of its element, one around it or its link.
    if (name.endsWith(u"...") || name.endsWith(u'\u2026')) {
        const QString kept = name.chopped(name.endsWith(u'\u2026') ? 1 : 3).trimmed();
        const auto take = [&](NodeIndex at) {
            const QString title = page.Attribute(at, u"title").toString().simplified();
            if (title.size() > kept.size() && title.startsWith(kept) && title != name)
                name = title;
        };
        for (NodeIndex at = std::min(page.End(node), node + 4) - 1; at > node; --at)
            take(at);
        for (NodeIndex at = node; at != noNode && at >= node - 2; at = page.Parent(at))
            take(at);
    }
    if (numbered_)
        name = name.sliced(NumberOf(node)).trimmed();
    name = WithoutNumber(name);
    if (const LeadingLabel label = LabelAtBegin(name); Has(label.Hints, Hint::Name))
        name = name.sliced(label.Length);
    return name.left(300);
}

void RecordNames::ChooseDetails() {
    const PageAnnotations& page = columns_.Page;
    const auto ownLinks = [&page](const RecordRange& range, auto use) {
        auto link = std::lower_bound(page.Links.begin(), page.Links.end(), range.Begin,
                                     [](const PageLink& one, NodeIndex node) { return one.Node < node; });
        for (; link != page.Links.end() && link->Node < range.End; ++link)
            if (link->Kind == LinkKind::Own && RedirectTarget(link->Address).isEmpty())
                use(*link);
    };
    // Links to the same page from many records lead to no record's own page.
    struct Seen {
        size_t Record = 0;
        int Records = 0;
    };
    QHash<QStringView, Seen> seen;
    const auto count = [](Seen& one, size_t record) {
        if (one.Records == 0 || one.Record != record)
            ++one.Records;
        one.Record = record;
    };
    const auto recordsOf = [&seen](const PageLink& link) { return seen.value(link.Address).Records; };
    for (size_t record = 0; record < columns_.Count(); ++record)
        ownLinks(columns_.List.Records[record], [&](const PageLink& link) { count(seen[link.Address], record); });
    // The paths of links, to take the one that most records have; only where a name has no link.
    QHash<quint64, Seen> paths;
    bool pathsCounted = false;
    const auto countPaths = [&] {
        for (size_t record = 0; record < columns_.Count(); ++record) {
            const RecordRange& range = columns_.List.Records[record];
            ownLinks(range, [&](const PageLink& link) {
                if (recordsOf(link) == 1)
                    count(paths[columns_.PathOf(link.Node, range)], record);
            });
        }
    };
    for (size_t record = 0; record < columns_.Count(); ++record) {
        const RecordRange& range = columns_.List.Records[record];
        // The link of the name itself, around it or within it.
        const PageLink* around = nullptr;
        if (const NodeIndex name = nodes_[record]; name != noNode) {
            int levels = 0;
            for (NodeIndex at = name; at != noNode && levels < 8 && !around; at = page.Page.Parent(at), ++levels) {
                if (const PageLink* const link = page.LinkAt(at); link && link->Kind == LinkKind::Own)
                    around = link;
                if (at <= range.Begin)
                    break;
            }
            if (!around)
                ownLinks({name, page.Page.End(name)}, [&](const PageLink& link) { around = around ? around : &link; });
        }
        // A card that lies within a link.
        if (!around && !columns_.List.Flat)
            if (const NodeIndex parent = page.Page.Parent(range.Begin); parent != noNode)
                if (const PageLink* const link = page.LinkAt(parent); link && link->Kind == LinkKind::Own)
                    around = link;
        if (around && (recordsOf(*around) <= 2 || recordsOf(*around) * 4 < static_cast<int>(columns_.Count()))) {
            details_[record] = around->Node;
            continue;
        }
        if (!pathsCounted)
            countPaths();
        pathsCounted = true;
        int best = static_cast<int>(columns_.Count()) / 3;
        ownLinks(range, [&](const PageLink& link) {
            if (recordsOf(link) > 1 || LeadsElsewhere(link))
                return;
            const int records = paths.value(columns_.PathOf(link.Node, range)).Records;
            if (records > best) {
                best = records;
                details_[record] = link.Node;
            }
        });
    }
}

// Links that say that they lead to something else than the record's page.
bool RecordNames::LeadsElsewhere(const PageLink& link) const {
    constexpr HintSet others = Hint::Map | Hint::Category | Hint::Review | Hint::Mail | Hint::Phone | Hint::Fax;
    const PageTree& page = columns_.Page.Page;
    QString label = columns_.Page.TextWithin(link.Node);
    for (NodeIndex node = link.Node + 1; label.isEmpty() && node < page.End(link.Node); ++node)
        if (page.Is(node, u"img"))
            label = page.Attribute(node, u"alt").toString();
    return ((columns_.Page.HintsOf(link.Node) | HintsOfLabel(label)) & others) != 0;
}

const PageLink* RecordNames::DetailsOf(size_t record) const {
    return details_[record] == noNode ? nullptr : columns_.Page.LinkAt(details_[record]);
}

double RecordNames::DistinctNames() const {
    QSet<QString> names;
    int filled = 0;
    for (size_t record = 0; record < columns_.Count(); ++record)
        if (const QString& name = names_[record]; !name.isEmpty()) {
            names.insert(BareWords(name));
            ++filled;
        }
    return filled == 0 ? 0 : static_cast<double>(names.size()) / filled;
}

double RecordNames::DistinctDetails() const {
    QSet<QString> links;
    for (size_t record = 0; record < columns_.Count(); ++record)
        if (const PageLink* const link = DetailsOf(record))
            links.insert(link->Address);
    return static_cast<double>(links.size()) / static_cast<double>(columns_.Count());
}

} // namespace Brindle
