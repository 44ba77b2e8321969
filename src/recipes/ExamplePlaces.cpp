#include "recipes/ExamplePlaces.h"

#include "discovery/Annotations.h"
#include "discovery/Labels.h"
#include "discovery/StructuredLinks.h"
#include "recipes/ExampleText.h"
#include "recipes/RecipePattern.h"
#include "toolkit/Text.h"

#include <QRegularExpression>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostPlaces = 200;
constexpr size_t mostParts = 6;          // elements of which a value is composed
constexpr int mostPatterns = 3;          // of one place
constexpr qsizetype longestAround = 500; // characters of the text of which an example may be a part

// The shape of a postal code as a pattern: digits and letters where the example has them.
QString PatternOfShape(QStringView example) {
    QString pattern = u"\\b"_s;
    for (const QChar c : example.trimmed()) {
        if (c.isDigit())
            pattern += u"\\d"_s;
        else if (c.isLetter())
            pattern += u"[A-Za-z]"_s;
        else
            pattern += u"[\\s-]?"_s;
    }
    return pattern + u"\\b"_s;
}

const QString phonePattern = u"[+(]?\\d[\\d\\s()./+-]{4,}\\d"_s;
const QString mailPattern = u"[^\\s<>;,:]+@[^\\s<>;,]+"_s;
const QString hiddenMailPattern = u"[^\\s<>;,:]+ ?[(\\[] ?at ?[)\\]] ?[^\\s<>;,]+"_s;
const QString webPattern = u"(?:https?://|www\\.)[^\\s<>,;]+"_s;
const QString numberPattern = u"^[+(]?\\d[\\d\\s()./+-]{4,}\\d$"_s;
const QString labelPattern = u"^[^:\uFF1A]{1,30}[:\uFF1A]\\s*(.+)$"_s;

// A value behind a label among other things: "…, Phone: 416-555-0100, …".
QStringList BehindLabel(Field column, const QString& around, const QString& example) {
    const qsizetype at = around.indexOf(example);
    if (at <= 0)
        return {};
    const QStringView before = QStringView(around).first(at).trimmed();
    const qsizetype begin = std::max({before.lastIndexOf(u','), before.lastIndexOf(u'|'), before.lastIndexOf(u'\u00b7'),
                                      before.lastIndexOf(u' ')}) +
                            1;
    const QString label = before.sliced(begin).toString();
    if (label.size() < 3 || HintsOfLabel(label) == 0)
        return {};
    return {QRegularExpression::escape(label) + u"\\s*"_s +
            (IsPhoneColumn(column) ? u'(' + phonePattern + u')' : u"([^,|\u00b7]+)"_s)};
}

// An address with commas of its own among other things: from the comma before it to the number or label behind it.
QStringList BetweenCommas(const QString& around, const QString& example) {
    const qsizetype at = around.indexOf(example);
    if (at < 0)
        return {};
    const QString before = u"^(?:[^,]*,\\s*){%1}"_s.arg(around.first(at).count(u','));
    QStringView behind = QStringView(around).sliced(at + example.size());
    while (!behind.isEmpty() && !behind.front().isLetterOrNumber())
        behind = behind.sliced(1);
    QStringList patterns;
    if (const LeadingLabel label = LabelAtBegin(behind); label.Hints != 0 && label.Length > 0)
        patterns.append(before + u"(.+?)[^\\w)]*"_s +
                        QRegularExpression::escape(behind.first(label.Length).trimmed().toString()));
    const QString number = u"[+(]?\\d[\\d\\s()./+-]{6,}"_s;
    patterns.append(before + u"(.+?)[^\\w)]*,\\s*(?:[^,\\d]{0,20}[:.]\\s*)?%1(?:,|$)"_s.arg(number));
    patterns.append(before + u"(.+)$"_s);
    return patterns;
}

// A value between two labels of one line: "Address: 1 Main St, Ulm Phone: 0731 …".
QStringList BetweenLabels(const QString& around, const QString& example) {
    const qsizetype at = around.indexOf(example);
    const QStringView before = at < 0 ? QStringView() : QStringView(around).first(at).trimmed();
    if (before.size() < 2 || before.back() != u':')
        return {};
    const QString label = before.sliced(before.chopped(1).lastIndexOf(u' ') + 1).toString();
    const QStringView behind = QStringView(around).sliced(at + example.size()).trimmed();
    const qsizetype end = behind.indexOf(u':') + 1;
    const QString start = u"(?:^|\\s)"_s + QRegularExpression::escape(label) + u"\\s*"_s;
    if (end < 2 || end > 25 || behind.first(end).contains(u'\n'))
        return behind.isEmpty() ? QStringList{start + u"(.+)$"_s} : QStringList();
    // The value may have a colon of its own.
    const QString next = QRegularExpression::escape(behind.first(end).toString());
    return {start + u"(.+?)\\s*(?:[^\\s:]{2,20}:|$)"_s, start + u"(.+?)\\s*(?:%1|$)"_s.arg(next)};
}

// A value before a word that does something: "1 Main St, Ulm [map]". It may be missing elsewhere.
QStringList BeforeControl(const QString& around, const QString& example) {
    if (example.isEmpty() || !around.startsWith(example))
        return {};
    const QString behind = around.sliced(example.size()).trimmed();
    const bool bracketed = behind.size() > 2 && behind.size() <= 20 && QStringView(u"[(").contains(behind.front()) &&
                           QStringView(u"])").contains(behind.back());
    if (!bracketed && !Has(HintsOfLabel(behind), Hint::Map))
        return {};
    return {u"^(.+?)\\s*(?:%1)?$"_s.arg(QRegularExpression::escape(behind))};
}

// Patterns that cut a value out of a longer text, those for the column first.
QStringList PatternsFor(Field column, const QString& around, const QString& example) {
    QStringList patterns = BeforeControl(around, example);
    if (!IsPhoneColumn(column))
        patterns += BetweenLabels(around, example);
    if (IsPhoneColumn(column))
        patterns.append(phonePattern);
    // "416-555-0100 ext. 12"
    if (IsPhoneColumn(column) && std::any_of(example.cbegin(), example.cend(), [](QChar c) { return c.isLetter(); }))
        patterns.append(phonePattern + u"(?:\\s+[^\\W\\d]{1,6}\\.?\\s?\\d{1,5}\\b)?"_s);
    if (column == Field::Email)
        patterns.append({mailPattern, hiddenMailPattern});
    if (column == Field::PostalCode)
        patterns.append(PatternOfShape(example));
    if (column == Field::State)
        patterns.append({u",\\s*([A-Z]{2,3})\\s+[A-Z0-9]"_s, u",\\s*([^,\\d]+?)\\s+[A-Z0-9]*\\d[A-Z0-9 ]*$"_s});
    if (column == Field::City)
        patterns.append({u"\\b\\d{4,5}\\s+([^,\\d]+?)\\s*(?:,|$)"_s, u"^([^,\\d]+?)\\s*,"_s});
    if (column == Field::City || column == Field::State)
        patterns.append({u"/\\s*([^/,\\d]+?)\\s*$"_s, u"([^\\s,/\\d]+)\\s*/\\s*[^/,\\d]+$"_s});
    if (column == Field::Website)
        patterns.append(webPattern);
    if (column == Field::FullAddress)
        patterns += BetweenCommas(around, example);
    else
        patterns = BehindLabel(column, around, example) + patterns;
    if (column == Field::FullAddress)
        for (int parts = 4; parts > 0; --parts)
            patterns.append(u"^((?:[^,]*,){%1}[^,]+?)\\s*,"_s.arg(parts));
    patterns.append(labelPattern);
    if (IsPhoneColumn(column))
        return patterns;
    patterns.append(u"^(?:#\\s*\\d+|\\d+\\s*[.)])\\s*(.+)$"_s);
    for (int part = 0; part < 5; ++part)
        patterns.append(part == 0 ? u"^\\s*([^,]+?)\\s*,"_s : u"^(?:[^,]*,){%1}\\s*([^,]+?)\\s*(?:,|$)"_s.arg(part));
    for (int part = 0; part < 4; ++part)
        patterns.append(u"^(?:.*?\\s[-\u2013|\u00b7\u2022]\\s){%1}(.+?)(?:\\s[-\u2013|\u00b7\u2022]\\s|$)"_s.arg(part));
    patterns.append({u"^(.+?)\\s*\\("_s, u"^(.+?)\\s+[-\u2013|\u00b7]\\s"_s, u"\\s[-\u2013|\u00b7]\\s+(.+)$"_s});
    return patterns;
}

// The pattern that cuts a number or address out of what happens at a click; empty for none.
QString CutFromScript(Field column, const PageAttribute& attribute, const QString& example) {
    if (!attribute.Name.startsWith(u"on") || !(IsPhoneColumn(column) || column == Field::Email))
        return {};
    const QString pattern = u"['\"]("_s + (IsPhoneColumn(column) ? phonePattern : mailPattern) + u")['\"]"_s;
    QString value = attribute.Value.toString();
    const bool cuts = RecipePattern(pattern).Apply(value) == RecipePattern::Outcome::Matched;
    return cuts && IsExample(column, value, example) ? pattern : QString();
}

// An example as the page writes it, with the marks that it begins and ends with.
QString WrittenAs(const QString& around, const QString& folded, const QString& example) {
    if (around.contains(example))
        return example;
    QString written = PartOfFold(around, folded);
    if (written.isEmpty())
        return example;
    const qsizetype at = around.indexOf(written);
    if (!example.front().isLetterOrNumber() && at > 0 && around[at - 1] == example.front())
        written.prepend(example.front());
    const qsizetype end = at + written.size();
    if (!example.back().isLetterOrNumber() && end < around.size() && around[end] == example.back())
        written.append(example.back());
    return written;
}

// Part of a pattern for that many lines or more.
QString LinesPattern(qsizetype count) {
    return count == 1 ? u"[^\\n]+"_s : u"[^\\n]+(?:\\n[^\\n]+){%1}"_s.arg(count - 1);
}

} // namespace

ExamplePlaces::ExamplePlaces(const ValueSource& source) : source_(source) {
    const PageTree& page = source.Page;
    begins_.reserve(static_cast<size_t>(page.Count()) + 1);
    NodeIndex hidden = 0; // up to where nothing is shown
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        begins_.push_back(folded_.size());
        if (node < hidden)
            continue;
        if (page.Is(node, u"script") || page.Is(node, u"style") || page.Is(node, u"template") ||
            page.Is(node, u"head") || page.Is(node, u"noscript") || page.Is(node, u"select")) {
            hidden = page.End(node);
        } else if (page.IsText(node)) {
            const QString text = FoldedExample(page.Text(node));
            if (!text.isEmpty())
                texts_.push_back(node);
            folded_ += text;
        }
    }
    begins_.push_back(folded_.size());
}

// By the label before the value, by what follows it, by its
// place from the beginning or the end.
QStringList ExamplePlaces::LinePatterns(Field column, const QString& shown, const QString& example) {
    const QStringList lines = shown.split(u'\n');
    const QString wanted = FoldedExample(example);
    QStringList patterns;
    if (wanted.isEmpty())
        return patterns;
    if (column == Field::Website)
        patterns.append(webPattern);
    for (qsizetype first = 0; first < lines.size(); ++first) {
        QString folded = FoldedExample(lines[first]);
        qsizetype label = 0; // of the first line, up to the value
        if (!wanted.startsWith(folded)) {
            const qsizetype at = lines[first].indexOf(u':') + 1;
            const LeadingLabel known = LabelAtBegin(lines[first]);
            label = known.Length > 0 && known.Hints != 0 ? known.Length : at;
            folded = FoldedExample(QStringView(lines[first]).sliced(label));
            if (label == 0 || folded.isEmpty() || !wanted.startsWith(folded))
                continue;
        }
        qsizetype last = first;
        while (folded.size() < wanted.size() && last + 1 < lines.size())
            folded += FoldedExample(lines[++last]);
        if (folded != wanted || folded.isEmpty())
            continue;
        const qsizetype count = last - first + 1;
        const qsizetype behind = lines.size() - 1 - last;
        if (label > 0) {
            const QString name = lines[first].left(label).trimmed();
            // "T" begins many a word.
            const QString word =
                QRegularExpression::escape(name) + (!name.isEmpty() && name.back().isLetter() ? u"\\b"_s : QString());
            patterns.append(u"(?:^|\\n)%1\\s*(%2)"_s.arg(word, LinesPattern(count)));
            continue;
        }
        const QString before = u"^(?:[^\\n]*\\n){%1}"_s.arg(first);
        if (IsPhoneColumn(column))
            patterns.append(u"(?:^|\\n)([+(]?\\d[\\d ()./+-]{4,}\\d)\\s*(?:\\n|$)"_s);
        if (column == Field::FullAddress) {
            const QString some = before + u"((?:[^\\n]+\\n)*?[^\\n]+?)"_s;
            const QString number = u"\\n[^\\n\\d+(]{0,25}[+(]?\\d[\\d ()./+-]{6,}\\s*(?:\\n|$)"_s;
            if (behind > 0) {
                const LeadingLabel next = LabelAtBegin(lines[last + 1]);
                if (next.Hints != 0 && next.Length > 0)
                    patterns.append(some + u"\\n"_s +
                                    QRegularExpression::escape(lines[last + 1].left(next.Length).trimmed()));
            }
            patterns.append(u"%1(?=%2|$)"_s.arg(some, number));
        }
        patterns.append(first == 0 ? u"^(%1)"_s.arg(LinesPattern(count)) : before + u"(%1)"_s.arg(LinesPattern(count)));
        if (behind < 3)
            patterns.append(u"(%1)(?:\\n[^\\n]*){%2}$"_s.arg(LinesPattern(count)).arg(behind));
    }
    return patterns;
}

NodeIndex ExamplePlaces::ElementAround(qsizetype begin, qsizetype end) const {
    // The text node in which it begins, then upward.
    auto at = std::upper_bound(texts_.begin(), texts_.end(), begin,
                               [this](qsizetype value, NodeIndex node) { return value < BeginOf(node); });
    if (at == texts_.begin())
        return noNode;
    NodeIndex node = source_.Page.Parent(*--at);
    while (node != noNode && EndOf(node) < end)
        node = source_.Page.Parent(node);
    return node;
}

std::vector<ExamplePlace> ExamplePlaces::Find(Field column, const QString& text) const {
    std::vector<ExamplePlace> found;
    AddAttributes(column, text, found);
    AddTexts(column, text, found);
    if (found.empty() && column == Field::FullAddress)
        AddComposed(text, found);
    std::stable_sort(found.begin(), found.end(),
                     [](const ExamplePlace& a, const ExamplePlace& b) { return a.Node < b.Node; });
    return found;
}

// What holds the parts of an address: it is read from them, not from there.
void ExamplePlaces::AddComposed(const QString& text, std::vector<ExamplePlace>& found) const {
    const PageTree& page = source_.Page;
    for (NodeIndex begin = 0; begin < page.Count() && found.size() < mostPlaces;) {
        const std::vector<NodeIndex> parts = Composed(text, begin, page.Count());
        if (parts.empty())
            return;
        NodeIndex node = parts.front();
        while (node != noNode && page.End(node) <= parts.back())
            node = page.Parent(node);
        if (node != noNode)
            found.push_back({node, {}, {}, Unreadable});
        begin = page.End(parts.front());
    }
}

NodeIndex ExamplePlaces::LinkAround(NodeIndex node) const {
    const PageTree& page = source_.Page;
    const auto isLink = [&page](NodeIndex at) { return page.Is(at, u"a") && page.HasAttribute(at, u"href"); };
    for (NodeIndex at = node; at != noNode; at = page.Parent(at))
        if (isLink(at))
            return at;
    for (NodeIndex at = node; at < page.End(node); ++at)
        if (isLink(at))
            return at;
    return noNode;
}

ExamplePlace ExamplePlaces::Pointed(Field column, NodeIndex node) const {
    const NodeIndex link = LinkAround(node);
    if (IsLinkColumn(column))
        return {.Node = link == noNode ? node : link};
    const QString shown = RawFieldValue(source_, node, column, {});
    const auto cut = [&shown](const QString& pattern) {
        QString text = shown;
        return RecipePattern(pattern).Apply(text) == RecipePattern::Outcome::Matched ? text : QString();
    };
    if (IsPhoneColumn(column) || column == Field::Email) {
        const QString& pattern = IsPhoneColumn(column) ? phonePattern : mailPattern;
        const QString value = cut(pattern);
        // Beside words it is cut out; several numbers stay together.
        const auto isLetter = [](QChar c) { return c.isLetter(); };
        const bool amongWords = std::count_if(shown.cbegin(), shown.cend(), isLetter) >
                                std::count_if(value.cbegin(), value.cend(), isLetter);
        if (!value.isEmpty())
            return {.Node = node, .Pattern = amongWords ? pattern : QString()};
        const QStringView scheme = IsPhoneColumn(column) ? u"tel:" : u"mailto:";
        if (link != noNode && StartsWithFolded(TrimmedView(source_.Page.Attribute(link, u"href")), scheme))
            return {.Node = link, .Attribute = u"href"_s};
        return {.Node = node};
    }
    const LeadingLabel label = LabelAtBegin(shown);
    const bool labelled = label.Hints != 0 && label.Length > 0 && column != Field::BusinessName;
    const bool isCut = labelled && cut(labelPattern) == QStringView(shown).sliced(label.Length);
    return {.Node = node, .Pattern = isCut ? labelPattern : QString()};
}

std::vector<NodeIndex> ExamplePlaces::Composed(const QString& text, NodeIndex begin, NodeIndex end) const {
    std::vector<NodeIndex> parts;
    if (!Compose(FoldedExample(text), begin, end, parts) || parts.size() < 2)
        return {};
    // What holds some of them and nothing else is one line.
    const auto lengthIn = [&](NodeIndex holder) {
        qsizetype length = 0;
        for (const NodeIndex part : parts)
            length += part >= holder && part < source_.Page.End(holder) ? EndOf(part) - BeginOf(part) : 0;
        return length;
    };
    std::vector<NodeIndex> lines;
    for (const NodeIndex part : parts) {
        NodeIndex line = part;
        for (NodeIndex at = source_.Page.Parent(part); at != noNode && at >= begin; at = source_.Page.Parent(at)) {
            const bool isAll = at <= parts.front() && source_.Page.End(at) > parts.back();
            if (isAll || EndOf(at) - BeginOf(at) != lengthIn(at))
                break;
            line = at;
        }
        if (lines.empty() || lines.back() != line)
            lines.push_back(line);
    }
    return lines;
}

// Goes on with elements that have a text of their own, up to what is left of it.
bool ExamplePlaces::Compose(const QString& rest, NodeIndex begin, NodeIndex end, std::vector<NodeIndex>& parts) const {
    if (rest.isEmpty())
        return true;
    if (parts.size() == mostParts)
        return false;
    // The second part stands not far behind the first one.
    const qsizetype last = parts.empty() ? folded_.size() : BeginOf(begin) + longestAround;
    for (auto at = std::lower_bound(texts_.begin(), texts_.end(), begin);
         at != texts_.end() && *at < end && BeginOf(*at) <= last; ++at) {
        const NodeIndex element = source_.Page.Parent(*at);
        const QStringView part = QStringView(folded_).sliced(BeginOf(*at), EndOf(*at) - BeginOf(*at));
        const bool isWhole = element != noNode && EndOf(element) - BeginOf(element) == part.size();
        if (!isWhole || !rest.startsWith(part))
            continue;
        parts.push_back(element);
        if (Compose(rest.sliced(part.size()), source_.Page.End(element), end, parts))
            return true;
        parts.pop_back();
    }
    return false;
}

void ExamplePlaces::AddTexts(Field column, const QString& text, std::vector<ExamplePlace>& found) const {
    const bool isNumber = IsPhoneColumn(column) && DigitsOf(text).size() >= 5;
    const QString folded = isNumber ? DigitsOf(text) : FoldedExample(text);
    if (folded.isEmpty())
        return;
    AddFolded(column, text, folded, found);
    // "416-555-0100 ext. 12" stands there with its letters.
    if (found.empty() && isNumber && FoldedExample(text) != folded)
        AddFolded(column, text, FoldedExample(text), found);
    // Here or there with the country's code or the zero before an area.
    for (qsizetype left = 1; found.empty() && isNumber && left <= 5 && folded.size() - left >= 7; ++left)
        AddFolded(column, text, folded.sliced(left), found);
    // "www.dir.example" for "https://dir.example/"
    if (column == Field::Website)
        for (const QString& start : {QString(), u"www"_s})
            AddFolded(column, text, start + FoldedExample(FoldedAddress(text)), found);
    // "info [at] dir [dot] example"
    if (const qsizetype at = text.indexOf(u'@'); column == Field::Email && at > 0) {
        const QString name = FoldedExample(QStringView(text).first(at)) + u"at";
        AddFolded(column, text, name + FoldedExample(text.sliced(at)), found);
        AddFolded(column, text, name + FoldedExample(text.sliced(at).replace(u"."_s, u"dot"_s)), found);
    }
}

void ExamplePlaces::AddFolded(Field column, const QString& text, const QString& folded,
                              std::vector<ExamplePlace>& found) const {
    const PageTree& page = source_.Page;
    for (qsizetype at = folded_.indexOf(folded); at >= 0 && found.size() < mostPlaces;
         at = folded_.indexOf(folded, at + 1)) {
        const qsizetype end = at + folded.size();
        NodeIndex node = ElementAround(at, end);
        if (node == noNode)
            continue;
        if (IsLinkColumn(column)) {
            AddLinkText(column, text, at, end, found);
            continue;
        }
        if (IsRunTogether(column, node, folded, text))
            continue;
        if (BeginOf(node) == at && EndOf(node) == end) {
            for (int level = 0; level < 3 && node != noNode && BeginOf(node) == at && EndOf(node) == end; ++level) {
                found.push_back({node, {}, {}, 0.0});
                // Of elements that look alike, the one that is a number.
                if (IsPhoneColumn(column))
                    found.push_back({node, {}, numberPattern, 0.8});
                node = page.Parent(node);
            }
            // Where it is a link here, it may begin a line elsewhere.
            if (column == Field::BusinessName && node != noNode && BeginOf(node) == at &&
                EndOf(node) - BeginOf(node) <= longestAround)
                AddCut(column, text, folded, node, 1.0, found);
            continue;
        }
        if (EndOf(node) - BeginOf(node) > longestAround) {
            found.push_back({node, {}, {}, Unreadable});
            continue;
        }
        const size_t before = found.size();
        AddCut(column, text, folded, node, 0, found);
        AddLines(column, text, node, found);
        if (found.size() == before)
            found.push_back({node, {}, {}, Unreadable});
    }
}

// An example that is a part of an element's text.
void ExamplePlaces::AddCut(Field column, const QString& text, const QString& folded, NodeIndex node, double cost,
                           std::vector<ExamplePlace>& found) const {
    const QString around = RawFieldValue(source_, node, column, {});
    if (column == Field::Email && IsExample(column, FinishedFieldValue(column, source_.Base, around), text))
        found.push_back({node, {}, {}, 0.6});
    int patterns = 0;
    for (const QString& pattern : PatternsFor(column, around, WrittenAs(around, folded, text))) {
        QString cut = around;
        if (RecipePattern(pattern).Apply(cut) != RecipePattern::Outcome::Matched ||
            !IsExample(column, FinishedFieldValue(column, source_.Base, cut), text))
            continue;
        found.push_back({node, {}, pattern, cost + 1.0 + 0.1 * patterns});
        if (++patterns == mostPatterns)
            break;
    }
}

// Whether the words of an example stand there as one, as names do in addresses of the web and of mail.
bool ExamplePlaces::IsRunTogether(Field column, NodeIndex node, const QString& folded, const QString& text) const {
    if (IsPhoneColumn(column) || column == Field::Email || !text.contains(u' ') ||
        EndOf(node) - BeginOf(node) > longestAround)
        return false;
    const QString shown = ShownText(source_.Lines, node, source_.Page.End(node), u"\n");
    const QString written = PartOfFold(shown, folded);
    return std::none_of(written.cbegin(), written.cend(), [](QChar c) { return c.isSpace(); }) &&
           (shown.contains(written + u'.') || shown.contains(u'@'));
}

// The text of a link stands for where it leads; without a link, an address is one by itself.
void ExamplePlaces::AddLinkText(Field column, const QString& text, qsizetype begin, qsizetype end,
                                std::vector<ExamplePlace>& found) const {
    const PageTree& page = source_.Page;
    const NodeIndex around = ElementAround(begin, end);
    NodeIndex node = around;
    for (int level = 0; level < 3 && node != noNode && !page.Is(node, u"a"); ++level)
        node = page.Parent(node);
    if (node != noNode && page.Is(node, u"a") && BeginOf(node) == begin && EndOf(node) == end) {
        found.push_back({node, {}, {}, 0.2});
    } else if (column == Field::Website && EndOf(around) - BeginOf(around) <= longestAround &&
               LinkAround(around) == noNode) {
        const QString value = RawFieldValue(source_, around, column, {});
        if (IsExample(column, FinishedFieldValue(column, source_.Base, value), text))
            found.push_back({around, {}, {}, 0.3});
        AddLines(column, text, around, found);
    }
}

// What holds a link alone is read as the link is, also where other records have the address as a text there.
void ExamplePlaces::AddHolders(Field column, const QString& text, NodeIndex link,
                               std::vector<ExamplePlace>& found) const {
    NodeIndex node = source_.Page.Parent(link);
    for (int level = 0; level < 2 && node != noNode; ++level, node = source_.Page.Parent(node)) {
        if (EndOf(node) - BeginOf(node) > longestAround)
            return;
        const QString value = FinishedFieldValue(column, source_.Base, RawFieldValue(source_, node, column, {}));
        if (IsExample(column, value, text))
            found.push_back({node, {}, {}, 0.6 + 0.2 * level});
    }
}

// An example that is one or some of an element's lines.
void ExamplePlaces::AddLines(Field column, const QString& text, NodeIndex node,
                             std::vector<ExamplePlace>& found) const {
    const QString shown = ShownText(source_.Lines, node, source_.Page.End(node), u"\n");
    double cost = 1.2;
    for (const QString& pattern : LinePatterns(column, shown, text)) {
        const RecipePattern cut(pattern);
        QString value = RawFieldValue(source_, node, column, {}, cut);
        if (cut.Apply(value) != RecipePattern::Outcome::Matched)
            continue;
        if (IsExample(column, FinishedFieldValue(column, source_.Base, value), text))
            found.push_back({node, {}, pattern, cost});
        cost += 0.1;
    }
}

void ExamplePlaces::AddAttributes(Field column, const QString& text, std::vector<ExamplePlace>& found) const {
    const PageTree& page = source_.Page;
    const QString folded = FoldedExample(text);
    for (NodeIndex node = 0; node < page.Count() && found.size() < mostPlaces; ++node) {
        for (const PageAttribute& attribute : page.Attributes(node)) {
            const bool isHref = attribute.Name == u"href";
            if (attribute.Name == u"class" || attribute.Name == u"id" || attribute.Name == u"style")
                continue;
            if (IsLinkColumn(column)) {
                const bool holdsAddress = isHref || attribute.Name.startsWith(u"data-") || attribute.Name == u"content";
                if (!holdsAddress ||
                    !IsExample(column, FinishedFieldValue(column, source_.Base, attribute.Value.toString()), text))
                    continue;
                const bool isOwn = isHref && page.Is(node, u"a");
                found.push_back({node, isOwn ? QString() : attribute.Name.toString(), {}, isOwn ? 0.0 : 0.5});
                if (isOwn && column == Field::Website)
                    AddHolders(column, text, node, found);
            } else if (isHref && (IsPhoneColumn(column) || column == Field::Email)) {
                const QString value = FinishedFieldValue(column, source_.Base, Trim(attribute.Value));
                const bool isCall = IsPhoneColumn(column) == StartsWithFolded(TrimmedView(attribute.Value), u"tel:");
                if (!isCall || !IsExample(column, value, text))
                    continue;
                // The number as it is shown goes before the one with the country's code.
                const bool isShown = column == Field::Email || DigitsOf(value) == DigitsOf(text);
                found.push_back({node, u"href"_s, {}, column == Field::Email ? 0.0 : isShown ? 0.3 : 1.3});
                if (column == Field::Email)
                    AddHolders(column, text, node, found);
            } else if (column == Field::Email && attribute.Name == u"data-cfemail") {
                if (IsExample(column, DecodedMail(attribute.Value), text))
                    found.push_back({node, attribute.Name.toString(), {}, 0.0});
            } else if (const QString pattern = CutFromScript(column, attribute, text); !pattern.isEmpty()) {
                found.push_back({node, attribute.Name.toString(), pattern, 1.4});
            } else if (!isHref && attribute.Value.size() < longestAround &&
                       (FoldedExample(attribute.Value) == folded ||
                        (IsPhoneColumn(column) && attribute.Name.startsWith(u"data-") && DigitsOf(text).size() >= 6 &&
                         IsSameNumber(attribute.Value, text)))) {
                found.push_back({node, attribute.Name.toString(), {}, 0.8});
            }
        }
    }
}

} // namespace Brindle
