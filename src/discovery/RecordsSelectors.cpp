#include "discovery/RecordsSelectors.h"

#include "core/Errors.h"
#include "page/Selector.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t sample = 40; // records that a selector is tried on

// A name that a program made up anew for each release is no name to keep: "css-1q2w3e", "sc-bdVaJa".
bool IsSturdy(const QString& name) {
    int digits = 0;
    int turns = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        digits += name[i].isDigit();
        if (i > 0 && name[i].isLetter() && name[i - 1].isLetter() && name[i].isUpper() != name[i - 1].isUpper())
            ++turns;
    }
    return name.size() <= 40 && digits <= 1 && turns <= 3;
}

// The sturdy classes that all of the elements have, in the order of the first one; others only where there are none.
QStringList CommonClasses(const PageTree& page, const std::vector<NodeIndex>& elements) {
    QHash<QString, size_t> counts;
    QStringList order;
    size_t seen = 0;
    for (const NodeIndex element : elements) {
        if (element == noNode)
            continue;
        for (const QString& name : SturdyClasses(page.Attribute(element, u"class"))) {
            if (seen == 0 && !order.contains(name))
                order << name;
            ++counts[name];
        }
        if (++seen == sample)
            break;
    }
    QStringList sturdy;
    QStringList others;
    for (const QString& name : order)
        if (counts.value(name) >= seen)
            (IsSturdy(name) ? sturdy : others) << name;
    return sturdy.isEmpty() ? others.mid(0, 1) : sturdy.mid(0, 3);
}

NodeIndex FirstOf(const std::vector<NodeIndex>& elements) {
    for (const NodeIndex element : elements)
        if (element != noNode)
            return element;
    return noNode;
}

bool SameName(const PageTree& page, const std::vector<NodeIndex>& elements) {
    const NodeIndex first = FirstOf(elements);
    return std::all_of(elements.begin(), elements.end(),
                       [&](NodeIndex element) { return element == noNode || page.Name(element) == page.Name(first); });
}

// What describes the elements, the plainest first.
QStringList Descriptions(const PageTree& page, const std::vector<NodeIndex>& elements) {
    const NodeIndex first = FirstOf(elements);
    const QString name = SameName(page, elements) ? EscapedIdentifier(page.Name(first)) : u"*"_s;
    QStringList list;
    const QStringView property = page.Attribute(first, u"itemprop");
    if (!property.isEmpty() && std::all_of(elements.begin(), elements.end(), [&](NodeIndex element) {
            return element == noNode || page.Attribute(element, u"itemprop") == property;
        }))
        list << name + u"[itemprop=" + EscapedString(property) + u"]";
    QString classes;
    for (const QString& one : CommonClasses(page, elements)) {
        classes += u'.' + EscapedIdentifier(one);
        list << name + classes;
    }
    list << name;
    return list;
}

std::vector<NodeIndex> ParentsOf(const PageTree& page, const std::vector<NodeIndex>& elements) {
    std::vector<NodeIndex> parents;
    for (const NodeIndex element : elements) {
        const NodeIndex parent = element == noNode ? noNode : page.Parent(element);
        if (parent != noNode && (parents.empty() || parents.back() != parent))
            parents.push_back(parent);
    }
    return parents;
}

// How well what is selected is what was meant: 1 for the same elements.
double Fit(const std::vector<NodeIndex>& selected, const std::vector<NodeIndex>& wanted) {
    std::vector<NodeIndex> both;
    std::set_intersection(selected.begin(), selected.end(), wanted.begin(), wanted.end(), std::back_inserter(both));
    return 2.0 * static_cast<double>(both.size()) / static_cast<double>(selected.size() + wanted.size());
}

} // namespace

QString SelectorOfElements(const PageTree& page, const std::vector<NodeIndex>& elements) {
    if (elements.empty())
        return {};
    QStringList attempts = Descriptions(page, elements);
    const QString last = attempts.size() > 1 ? attempts[attempts.size() - 2] : attempts.last();
    const std::vector<NodeIndex> parents = ParentsOf(page, elements);
    if (const NodeIndex parent = FirstOf(parents); parent != noNode) {
        const QStringView id = page.Attribute(parent, u"id");
        if (parents.size() == 1 && !id.isEmpty() && IsSturdy(id.toString()) && !id.contains(u' '))
            attempts << u"#" + EscapedIdentifier(id) + u" > " + last;
        for (const QString& around : Descriptions(page, parents))
            attempts << around + u" > " + last;
        const std::vector<NodeIndex> outer = ParentsOf(page, parents);
        if (const NodeIndex second = FirstOf(outer); second != noNode)
            for (const QString& around : Descriptions(page, outer))
                attempts << around + u" > " + Descriptions(page, parents).first() + u" > " + last;
    }
    QString best;
    double bestFit = 0;
    int tried = 0;
    for (const QString& attempt : attempts) {
        if (tried++ == 8)
            break;
        try {
            const double fit = Fit(Selector::Parse(attempt).SelectAll(page), elements);
            if (fit > bestFit + 0.001) {
                bestFit = fit;
                best = attempt;
            }
            if (fit >= 0.999)
                break;
        } catch (const Failure&) {
            continue; // a name that no selector can bear
        }
    }
    return best;
}

QString SelectorWithin(const PageTree& page, const RecordList& list, const std::vector<NodeIndex>& elements) {
    if (FirstOf(elements) == noNode || list.Flat)
        return FirstOf(elements) == noNode ? QString() : Descriptions(page, elements).first();
    QStringList attempts = Descriptions(page, elements);
    const QString last = attempts.last();
    for (const QString& around : Descriptions(page, ParentsOf(page, elements)))
        attempts << around + u" > " + last;
    QString best;
    double bestFit = 0;
    int tried = 0;
    for (const QString& attempt : attempts) {
        if (tried++ == 6)
            break;
        try {
            const SelectorQuery query(page, Selector::Parse(attempt));
            size_t right = 0;
            size_t all = 0;
            for (size_t record = 0; record < list.Records.size() && all < sample; ++record) {
                if (elements[record] == noNode)
                    continue;
                ++all;
                // A record that is a link itself is what its own fields are taken from.
                const NodeIndex begin = list.Records[record].Begin;
                const NodeIndex found = query.Matches(begin) ? begin : query.FirstWithin(begin);
                right += found == elements[record];
            }
            const double fit = static_cast<double>(right) / static_cast<double>(std::max<size_t>(all, 1));
            if (fit > bestFit + 0.001) {
                bestFit = fit;
                best = attempt;
            }
            if (fit >= 0.999)
                break;
        } catch (const Failure&) {
            continue;
        }
    }
    return bestFit >= 0.5 ? best : QString();
}

} // namespace Brindle
