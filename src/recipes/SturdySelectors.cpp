#include "recipes/SturdySelectors.h"

#include "discovery/Labels.h"
#include "discovery/StructuredText.h"
#include "page/Selector.h"
#include "toolkit/Text.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 40;
constexpr size_t mostClasses = 6;
constexpr int mostHolders = 4;
constexpr NodeIndex nearNodes = 400; // within which a table shows how it is made
constexpr double lastResort = 8;     // cost of what will not last

bool IsVowel(QChar c) {
    return QStringView(u"aeiouyäöüáéíóúàèìòùâêîôû").contains(c.toLower());
}

// Whether letters read as words written together: "searchResults" does, "bdVaJa" and "hzkfq" do not.
bool ReadsAsWords(QStringView letters) {
    static const QSet<QString> shortWords{u"to"_s,    u"is"_s,    u"in"_s,  u"of"_s,  u"on"_s,  u"my"_s,  u"id"_s,
                                          u"no"_s,    u"by"_s,    u"tel"_s, u"fax"_s, u"adr"_s, u"org"_s, u"url"_s,
                                          u"zip"_s,   u"txt"_s,   u"btn"_s, u"img"_s, u"nav"_s, u"www"_s, u"fn"_s,
                                          u"tr"_s,    u"td"_s,    u"li"_s,  u"ul"_s,  u"dl"_s,  u"dt"_s,  u"dd"_s,
                                          u"hcard"_s, u"vcard"_s, u"str"_s, u"plz"_s, u"nr"_s};
    qsizetype begin = 0;
    while (begin < letters.size()) {
        qsizetype end = begin + 1;
        // A run of capitals is a word too: "FAQList", "ID".
        while (end < letters.size() && letters[end - 1].isUpper() && letters[end].isUpper())
            ++end;
        while (end < letters.size() && !letters[end].isUpper())
            ++end;
        const QStringView word = letters.sliced(begin, end - begin);
        const bool known = shortWords.contains(word.toString().toLower());
        const bool pronounced = word.size() >= 3 && std::any_of(word.begin(), word.end(), IsVowel);
        const bool isOnlyPart = begin == 0 && end == letters.size() && word.size() <= 4;
        if (!known && !pronounced && !isOnlyPart)
            return false;
        begin = end;
    }
    return true;
}

bool IsState(QStringView name) {
    static constexpr QStringView states[] = {
        u"active",   u"odd",       u"even",     u"first",    u"last",      u"selected", u"current",  u"hover",
        u"open",     u"closed",    u"hidden",   u"visible",  u"show",      u"hide",     u"clearfix", u"premium",
        u"featured", u"sponsored", u"promoted", u"expanded", u"collapsed", u"loaded",   u"lazy",     u"highlight"};
    const QString lower = name.toString().toLower();
    return std::any_of(std::begin(states), std::end(states), [&](QStringView state) {
        return lower == state || lower.endsWith(u'-' + state.toString()) ||
               lower.endsWith(u"--"_s + state.toString()) || lower == u"is-"_s + state.toString();
    });
}

// An attribute that says what an element is for, with a value that is a name.
bool IsTelling(QStringView attribute) {
    return attribute == u"itemprop" || attribute == u"property" || attribute == u"data-testid" ||
           attribute == u"data-test" || attribute == u"data-qa" || attribute == u"data-field" ||
           attribute == u"data-type" || attribute == u"data-role" || attribute == u"role";
}

QString Equals(QStringView attribute, QStringView value) {
    return u'[' + attribute + u'=' + EscapedString(value) + u']';
}

std::vector<QStringView> SturdyClasses(const PageTree& page, NodeIndex element) {
    std::vector<QStringView> names;
    for (QStringView name : page.Attribute(element, u"class").tokenize(u' ')) {
        name = TrimmedView(name);
        if (names.size() < mostClasses && IsSturdyName(name) &&
            std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    return names;
}

QString PositionOf(const PageTree& page, NodeIndex element) {
    int position = 1;
    const NodeIndex parent = page.Parent(element);
    if (parent != noNode)
        for (NodeIndex at = page.FirstChild(parent); at != noNode && at != element; at = page.NextSibling(at))
            position += page.NameId(at) == page.NameId(element) ? 1 : 0;
    return page.Name(element) + u":nth-of-type(" + QString::number(position) + u')';
}

NodeIndex ElementBefore(const PageTree& page, NodeIndex element) {
    const NodeIndex parent = page.Parent(element);
    NodeIndex before = noNode;
    if (parent != noNode)
        for (NodeIndex at = page.FirstChild(parent); at != noNode && at != element; at = page.NextSibling(at))
            if (page.IsElement(at))
                before = at;
    return before;
}

// By the label in the element before: a term of a list, a head of a row, "Phone:".
void AddByLabel(const PageTree& page, NodeIndex element, StructuredText& text, std::vector<CandidateSelector>& found) {
    const NodeIndex before = ElementBefore(page, element);
    if (before == noNode)
        return;
    const QString label = text.Of(before);
    const bool isHead = page.Is(before, u"dt") || page.Is(before, u"th");
    if (label.isEmpty() || label.size() > 30 || !(isHead || label.endsWith(u':')))
        return;
    if (std::any_of(label.cbegin(), label.cend(), [](QChar c) { return c.isDigit(); }))
        return;
    found.push_back({page.Name(before) + u":has-text(" + EscapedString(label) + u") + " + page.Name(element), 1.8});
}

} // namespace

bool IsSturdyName(QStringView name) {
    if (name.size() < 2 || name.size() > longestName || IsState(name))
        return false;
    if (std::any_of(name.begin(), name.end(),
                    [](QChar c) { return !(c.isLetter() || c == u'-' || c == u'_') || c.unicode() > 0x24f; }))
        return false;
    static constexpr QStringView prefixes[] = {u"css-",    u"sc-", u"jss", u"jsx-",  u"emotion-",    u"svelte-",
                                               u"styled-", u"_ng", u"ng-", u"ember", u"makeStyles-", u"chakra-",
                                               u"js-",     u"u-",  u"mt-", u"mb-",   u"px-",         u"py-"};
    if (std::any_of(std::begin(prefixes), std::end(prefixes), [&](QStringView p) { return name.startsWith(p); }))
        return false;
    qsizetype begin = 0;
    bool any = false;
    while (begin < name.size()) {
        const auto end = std::find_if(name.begin() + begin, name.end(), [](QChar c) { return c == u'-' || c == u'_'; });
        const QStringView part = name.sliced(begin, (end - name.begin()) - begin);
        if (!part.isEmpty() && !ReadsAsWords(part))
            return false;
        any = any || part.size() >= 2;
        begin += part.size() + 1;
    }
    return any;
}

std::vector<CandidateSelector> OwnSelectors(const PageTree& page, NodeIndex element) {
    std::vector<CandidateSelector> found;
    const QString tag = page.Name(element).toString();
    for (const PageAttribute& attribute : page.Attributes(element)) {
        const QString value = Trim(attribute.Value);
        if (IsTelling(attribute.Name) && IsSturdyName(value))
            found.push_back({Equals(attribute.Name, attribute.Value), attribute.Name == u"itemprop" ? 0.4 : 0.8});
        else if (attribute.Name == u"itemtype" && !value.isEmpty() && !value.contains(u' '))
            found.push_back({Equals(attribute.Name, attribute.Value), 0.9});
        else if (attribute.Name == u"href" && StartsWithFolded(value, u"tel:"))
            found.push_back({tag + u"[href^=\"tel:\"]", 0.5});
        else if (attribute.Name == u"href" && StartsWithFolded(value, u"mailto:"))
            found.push_back({tag + u"[href^=\"mailto:\"]", 0.5});
        else if (attribute.Name == u"href" && tag == u"a" &&
                 (StartsWithFolded(value, u"http:") || StartsWithFolded(value, u"https:")))
            found.push_back({tag + u"[href^=\"http\"]", 1.9});
        else if (attribute.Name == u"rel" && IsSturdyName(value))
            found.push_back({tag + u"[rel~=" + EscapedString(value) + u']', 1.6});
    }
    const std::vector<QStringView> classes = SturdyClasses(page, element);
    for (const QStringView name : classes) {
        found.push_back({u'.' + EscapedIdentifier(name), 1.0});
        found.push_back({tag + u'.' + EscapedIdentifier(name), 1.1});
    }
    for (size_t i = 0; i + 1 < std::min<size_t>(classes.size(), 3); ++i)
        found.push_back({tag + u'.' + EscapedIdentifier(classes[i]) + u'.' + EscapedIdentifier(classes[i + 1]), 1.4});
    const bool isHeading = tag.size() == 2 && tag[0] == u'h' && tag[1].isDigit();
    found.push_back({tag, isHeading || tag == u"address" || tag == u"article" || tag == u"dt" ? 1.7 : 3.0});
    std::stable_sort(found.begin(), found.end(),
                     [](const CandidateSelector& a, const CandidateSelector& b) { return a.Cost < b.Cost; });
    return found;
}

namespace {

// By the elements above, name by name: what is left where a build made all names, or lists of one make stand in
// different parts of a page.
void AddByPath(const PageTree& page, NodeIndex record, const CandidateSelector& own,
               std::vector<CandidateSelector>& found) {
    QString path = own.Text;
    double cost = own.Cost + 0.4;
    NodeIndex holder = page.Parent(record);
    for (int level = 0; level < 5 && holder != noNode && holder != page.Root(); ++level, holder = page.Parent(holder)) {
        cost += 0.5;
        if (const QStringView id = page.Attribute(holder, u"id"); IsSturdyName(id))
            found.push_back({u'#' + EscapedIdentifier(id) + u" > " + path, cost - 0.1});
        path = page.Name(holder) + u" > " + path;
        // A path that begins at just any element holds elsewhere too.
        found.push_back({path, cost + (page.Is(holder, u"div") || page.Is(holder, u"span") ? 2.5 : 0)});
    }
}

} // namespace

std::vector<CandidateSelector> RecordSelectors(const PageTree& page, NodeIndex record) {
    const std::vector<CandidateSelector> own = OwnSelectors(page, record);
    std::vector<CandidateSelector> found = own;
    NodeIndex holder = page.Parent(record);
    for (int level = 0; level < 3 && holder != noNode && holder != page.Root(); ++level, holder = page.Parent(holder)) {
        std::vector<CandidateSelector> holders = OwnSelectors(page, holder);
        holders.resize(std::min<size_t>(holders.size(), 2));
        if (const QStringView id = page.Attribute(holder, u"id"); IsSturdyName(id))
            holders.insert(holders.begin(), {u'#' + EscapedIdentifier(id), 0.9});
        for (const CandidateSelector& outer : holders) {
            if (outer.Cost > 2)
                continue;
            for (size_t i = 0; i < std::min<size_t>(own.size(), 4); ++i)
                found.push_back({outer.Text + (level == 0 ? u" > "_s : u" "_s) + own[i].Text,
                                 outer.Cost * 0.4 + own[i].Cost + 0.3 * level});
            found.push_back({outer.Text + (level == 0 ? u" > "_s : u" "_s) + page.Name(record),
                             outer.Cost * 0.4 + 1.6 + 0.3 * level});
        }
    }
    AddByPath(page, record, own.front(), found);
    if (own.size() > 1)
        AddByPath(page, record, own.back(), found);
    return found;
}

namespace {

// By the label in the element itself: "Phone: 416-555-0100".
void AddByOwnLabel(const PageTree& page, NodeIndex element, StructuredText& text,
                   std::vector<CandidateSelector>& found) {
    const QString shown = text.Of(element).left(60);
    const LeadingLabel label = LabelAtBegin(shown);
    const QString word = shown.left(label.Length).trimmed();
    if (label.Hints != 0 && !word.isEmpty() && word.size() < shown.size())
        found.push_back({page.Name(element) + u":has-text(" + EscapedString(word) + u')', 2.0});
}

// By the elements between the first one of a flat record and this one.
void AddByOrder(const PageTree& page, NodeIndex first, NodeIndex element, std::vector<CandidateSelector>& found) {
    QString chain;
    int count = 0;
    for (NodeIndex at = page.NextSibling(first); at != noNode && count < mostHolders; at = page.NextSibling(at)) {
        if (!page.IsElement(at))
            continue;
        ++count;
        chain += u" + "_s + page.Name(at);
        if (at == element)
            for (const CandidateSelector& own : OwnSelectors(page, first))
                found.push_back({own.Text + chain, 1.6 + 0.2 * own.Cost + 0.4 * count});
        if (at >= element)
            return;
    }
}

// Of a table in which a cell stands beside several rows: such cells are not counted.
void AddByCell(const PageTree& page, NodeIndex record, NodeIndex element, std::vector<CandidateSelector>& found) {
    NodeIndex cell = element;
    while (cell != noNode && cell != record && page.Parent(cell) != record)
        cell = page.Parent(cell);
    if (!page.Is(record, u"tr") || cell == noNode || !page.Is(cell, u"td") || page.HasAttribute(cell, u"rowspan"))
        return;
    const NodeIndex rows = page.Parent(record);
    const NodeIndex end = rows == noNode ? page.End(record) : std::min(page.End(rows), record + nearNodes);
    bool spans = false;
    for (NodeIndex at = rows == noNode ? record : std::max(rows, record - nearNodes); at < end && !spans; ++at)
        spans = page.Is(at, u"td") && page.HasAttribute(at, u"rowspan");
    if (!spans)
        return;
    QString path;
    for (NodeIndex at = page.FirstChild(record); at != cell; at = page.NextSibling(at)) {
        if (!page.IsElement(at))
            continue;
        if (!page.Is(at, u"td") || (page.HasAttribute(at, u"rowspan") && !path.isEmpty()))
            return;
        path += page.HasAttribute(at, u"rowspan") ? QString() : u" + td"_s;
    }
    const QString own = cell == element ? QString() : QString(u' ' + page.Name(element));
    found.push_back({u":scope > td:not([rowspan])"_s + path + own, 2.5});
}

} // namespace

std::vector<CandidateSelector> FieldSelectors(const PageTree& page, NodeIndex record, NodeIndex element,
                                              NodeIndex first) {
    if (element == record)
        return {{u":scope"_s, 1.0}};
    StructuredText text(page);
    const std::vector<CandidateSelector> own = OwnSelectors(page, element);
    std::vector<CandidateSelector> found = own;
    AddByLabel(page, element, text, found);
    AddByOwnLabel(page, element, text, found);
    AddByCell(page, record, element, found);
    if (first != noNode)
        AddByOrder(page, first, element, found);
    // A name that a build made lasts until the next build only, but it may be all that tells a field from others.
    for (const QStringView name : page.Attribute(element, u"class").tokenize(u' '))
        if (!name.trimmed().isEmpty() && !IsSturdyName(name.trimmed()) && !IsState(name.trimmed()))
            found.push_back({u'.' + EscapedIdentifier(name.trimmed()), lastResort});
    QString place = PositionOf(page, element);
    double placeCost = 4;
    NodeIndex holder = page.Parent(element);
    for (int level = 0; level < mostHolders && holder != noNode && holder != record; ++level) {
        std::vector<CandidateSelector> byLabel;
        AddByLabel(page, holder, text, byLabel);
        std::vector<CandidateSelector> holders = OwnSelectors(page, holder);
        holders.resize(std::min<size_t>(holders.size(), 3));
        holders.insert(holders.end(), byLabel.begin(), byLabel.end());
        for (const CandidateSelector& outer : holders) {
            for (size_t i = 0; i < std::min<size_t>(own.size(), 3); ++i)
                found.push_back({outer.Text + u' ' + own[i].Text, outer.Cost * 0.6 + own[i].Cost * 0.6 + 0.3});
            found.push_back({outer.Text + u" > " + place, outer.Cost * 0.6 + placeCost * 0.7});
            if (own.back().Text == page.Name(element))
                found.push_back({outer.Text + u' ' + own.back().Text, outer.Cost * 0.6 + 1.2});
        }
        place = PositionOf(page, holder) + u" > " + place;
        placeCost += 1;
        holder = page.Parent(holder);
    }
    if (holder == record)
        found.push_back({u":scope > "_s + place, placeCost});
    std::stable_sort(found.begin(), found.end(),
                     [](const CandidateSelector& a, const CandidateSelector& b) { return a.Cost < b.Cost; });
    return found;
}

} // namespace Brindle
