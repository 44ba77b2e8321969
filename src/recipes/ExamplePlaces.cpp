#include "recipes/ExamplePlaces.h"

#include "discovery/Labels.h"
#include "discovery/StructuredLinks.h"
#include "recipes/RecipePattern.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostPlaces = 200;
constexpr qsizetype longestAround = 500; // characters of the text of which an example may be a part

bool IsPhone(Field column) {
    return column == Field::Phone || column == Field::Fax;
}

QString DigitsOf(QStringView text) {
    QString digits;
    for (const QChar c : text)
        if (c.isDigit())
            digits += c;
    return digits;
}

// An address without what differs between ways of writing it.
QString FoldedAddress(QStringView address) {
    QString text = Trim(address);
    const qsizetype scheme = text.indexOf(u"://");
    if (scheme >= 0)
        text.remove(0, scheme + 3);
    else if (text.startsWith(u"//"))
        text.remove(0, 2);
    if (StartsWithFolded(text, u"www."))
        text.remove(0, 4);
    while (text.endsWith(u'/'))
        text.chop(1);
    const qsizetype slash = text.indexOf(u'/');
    const qsizetype host = slash < 0 ? text.size() : slash;
    return text.left(host).toLower() + text.sliced(host);
}

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
const QString labelPattern = u"^[^:\uFF1A]{1,30}[:\uFF1A]\\s*(.+)$"_s;

// Patterns that cut a value out of a longer text, those for the column first.
QStringList PatternsFor(Field column, QStringView example) {
    QStringList patterns;
    if (IsPhone(column))
        patterns.append(phonePattern);
    if (column == Field::Email)
        patterns.append(mailPattern);
    if (column == Field::PostalCode)
        patterns.append(PatternOfShape(example));
    if (column == Field::State)
        patterns.append({u",\\s*([A-Z]{2,3})\\s+[A-Z0-9]"_s, u",\\s*([^,\\d]+?)\\s+[A-Z0-9]*\\d[A-Z0-9 ]*$"_s});
    if (column == Field::City)
        patterns.append({u"\\b\\d{4,5}\\s+([^,\\d]+?)\\s*(?:,|$)"_s, u"^([^,\\d]+?)\\s*,"_s});
    if (column == Field::FullAddress)
        for (int parts = 4; parts > 0; --parts)
            patterns.append(u"^((?:[^,]*,){%1}[^,]+?)\\s*,"_s.arg(parts));
    patterns.append({labelPattern, u"^\\d+\\s*[.)]\\s*(.+)$"_s});
    for (int part = 0; part < 5; ++part)
        patterns.append(part == 0 ? u"^\\s*([^,]+?)\\s*,"_s : u"^(?:[^,]*,){%1}\\s*([^,]+?)\\s*(?:,|$)"_s.arg(part));
    patterns.append({u"^(.+?)\\s*\\("_s, u"^(.+?)\\s+[-\u2013|\u00b7]\\s"_s, u"\\s[-\u2013|\u00b7]\\s+(.+)$"_s});
    return patterns;
}

} // namespace

QString FoldedExample(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    for (const QChar c : text)
        if (c.isLetterOrNumber() || c.isSurrogate())
            folded += c.toLower();
    return folded;
}

bool IsExample(Field column, QStringView value, QStringView example) {
    if (value.isEmpty())
        return false;
    if (IsLinkColumn(column))
        return FoldedAddress(value) == FoldedAddress(example);
    if (IsPhone(column) && DigitsOf(example).size() >= 5)
        return DigitsOf(value) == DigitsOf(example);
    return FoldedExample(value) == FoldedExample(example);
}

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
    std::stable_sort(found.begin(), found.end(),
                     [](const ExamplePlace& a, const ExamplePlace& b) { return a.Node < b.Node; });
    return found;
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
    if (IsPhone(column) || column == Field::Email) {
        const QString& pattern = IsPhone(column) ? phonePattern : mailPattern;
        const QString value = cut(pattern);
        // Beside words it is cut out; several numbers stay together.
        const auto isLetter = [](QChar c) { return c.isLetter(); };
        const bool amongWords = std::count_if(shown.cbegin(), shown.cend(), isLetter) >
                                std::count_if(value.cbegin(), value.cend(), isLetter);
        if (!value.isEmpty())
            return {.Node = node, .Pattern = amongWords ? pattern : QString()};
        const QStringView scheme = IsPhone(column) ? u"tel:" : u"mailto:";
        if (link != noNode && StartsWithFolded(TrimmedView(source_.Page.Attribute(link, u"href")), scheme))
            return {.Node = link, .Attribute = u"href"_s};
        return {.Node = node};
    }
    const LeadingLabel label = LabelAtBegin(shown);
    const bool labelled = label.Hints != 0 && label.Length > 0 && column != Field::BusinessName;
    const bool isCut = labelled && cut(labelPattern) == QStringView(shown).sliced(label.Length);
    return {.Node = node, .Pattern = isCut ? labelPattern : QString()};
}

void ExamplePlaces::AddTexts(Field column, const QString& text, std::vector<ExamplePlace>& found) const {
    const QString folded = IsPhone(column) && DigitsOf(text).size() >= 5 ? DigitsOf(text) : FoldedExample(text);
    if (folded.isEmpty())
        return;
    const PageTree& page = source_.Page;
    for (qsizetype at = folded_.indexOf(folded); at >= 0 && found.size() < mostPlaces;
         at = folded_.indexOf(folded, at + 1)) {
        const qsizetype end = at + folded.size();
        NodeIndex node = ElementAround(at, end);
        if (node == noNode)
            continue;
        if (IsLinkColumn(column)) {
            // The text of a link stands for where it leads.
            for (int level = 0; level < 3 && node != noNode && !page.Is(node, u"a"); ++level)
                node = page.Parent(node);
            if (node != noNode && page.Is(node, u"a") && BeginOf(node) == at && EndOf(node) == end)
                found.push_back({node, {}, {}, 0.2});
            continue;
        }
        if (BeginOf(node) == at && EndOf(node) == end) {
            for (int level = 0; level < 3 && node != noNode && BeginOf(node) == at && EndOf(node) == end; ++level) {
                found.push_back({node, {}, {}, 0.0});
                node = page.Parent(node);
            }
            continue;
        }
        if (EndOf(node) - BeginOf(node) > longestAround)
            continue;
        const QString around = RawFieldValue(source_, node, column, {});
        for (const QString& pattern : PatternsFor(column, text)) {
            QString cut = around;
            if (RecipePattern(pattern).Apply(cut) != RecipePattern::Outcome::Matched || !IsExample(column, cut, text))
                continue;
            found.push_back({node, {}, pattern, 1.0});
            break;
        }
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
                if (!holdsAddress || !IsExample(column, WebAddress(source_.Base, attribute.Value), text))
                    continue;
                const bool isOwn = isHref && page.Is(node, u"a");
                found.push_back({node, isOwn ? QString() : attribute.Name.toString(), {}, isOwn ? 0.0 : 0.5});
            } else if (isHref && (IsPhone(column) || column == Field::Email)) {
                const QString value = FinishedFieldValue(column, source_.Base, Trim(attribute.Value));
                const bool isCall = IsPhone(column) == StartsWithFolded(TrimmedView(attribute.Value), u"tel:");
                if (isCall && IsExample(column, value, text))
                    found.push_back({node, u"href"_s, {}, column == Field::Email ? 0.0 : 0.3});
            } else if (!isHref && attribute.Value.size() < longestAround && FoldedExample(attribute.Value) == folded) {
                found.push_back({node, attribute.Name.toString(), {}, 0.8});
            }
        }
    }
}

} // namespace Brindle
