#include "SelectorSamples.h"

#include "page/Selector.h"

#include <QRegularExpression>
#include <QStringList>

#include <vector>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

const std::vector<QString> names{u"div"_s, u"span"_s, u"section"_s, u"DIV"_s, u"x-y"_s, u"g"_s, u"linearGradient"_s};
const std::vector<QString> classes{u"a"_s, u"B"_s, u"b"_s, u"2c"_s, u"d\u00e9"_s, u"-"_s};
const std::vector<QString> attributes{u"type"_s,  u"title"_s,   u"data-x"_s,  u"lang"_s,
                                      u"class"_s, u"viewBox"_s, u"CHECKED"_s, u"xlink:href"_s};
const std::vector<QString> values{u"x"_s, u"X"_s,       u"x-y"_s,    u"x y"_s, u" y\tx "_s,
                                  u""_s,  u"\u00c9x"_s, u"a\"]\\"_s, u"xyx"_s};
const std::vector<QString> words{u"one"_s, u"two  three"_s, u" four\n"_s, u"one&nbsp;"_s, u" "_s};
const std::vector<QString> searched{u"one"_s, u"two three"_s, u"three four"_s, u"e o"_s, u"four one"_s, u"zero"_s};

// The places of elements among those beside them, from 1.
int PlaceOf(const PageTree& tree, NodeIndex node, bool ofType) {
    int place = 1;
    for (NodeIndex other = tree.Parent(node) == noNode ? node : tree.FirstChild(tree.Parent(node)); other != node;
         other = tree.NextSibling(other))
        place += tree.IsElement(other) &&
                 (!ofType || (tree.Name(other) == tree.Name(node) && tree.Space(other) == tree.Space(node)));
    return place;
}

std::vector<NodeIndex> ElementsBeside(const PageTree& tree, NodeIndex node, bool before) {
    std::vector<NodeIndex> found;
    if (tree.Parent(node) == noNode)
        return found;
    for (NodeIndex other = tree.FirstChild(tree.Parent(node)); other != noNode; other = tree.NextSibling(other))
        if (tree.IsElement(other) && (before ? other < node : other > node))
            found.push_back(other);
    return found;
}

// What a relation leads to, up the page or down.
std::vector<NodeIndex> Related(const PageTree& tree, NodeIndex node, QChar relation, bool up) {
    std::vector<NodeIndex> found;
    if (relation == u'+' || relation == u'~') {
        found = ElementsBeside(tree, node, up);
        if (relation == u'+' && !found.empty())
            found = {up ? found.back() : found.front()};
    } else if (up) {
        for (NodeIndex other = tree.Parent(node); other != noNode; other = tree.Parent(other))
            if (found.empty() || relation == u' ')
                found.push_back(other);
    } else {
        for (NodeIndex other = node + 1; other < tree.End(node); ++other)
            if (tree.IsElement(other) && (relation == u' ' || tree.Parent(other) == node))
                found.push_back(other);
    }
    return found;
}

QString TextOf(const PageTree& tree, NodeIndex node) {
    QString text;
    for (NodeIndex within = node; within < tree.End(node); ++within)
        if (tree.IsText(within) && tree.Name(tree.Parent(within)) != u"script")
            text += tree.Text(within);
    return text.replace(QChar(QChar::Nbsp), u' ').simplified();
}

} // namespace

QString SelectorSamples::Page() {
    number_ = 0;
    QString page = u"<!doctype html><html><head><title>t</title></head><body>"_s;
    for (int i = 0; i < 4; ++i)
        page += Element(0);
    return page + u"</body></html>"_s;
}

QString SelectorSamples::Attributes() {
    QString text = u" n=%1"_s.arg(number_++);
    if (Below(2))
        text += u" class=\"%1 %2\""_s.arg(One(classes), One(classes));
    if (Below(8) == 0)
        text += u" id=\"%1\""_s.arg(One(classes));
    for (int i = Below(3); i > 0; --i)
        text += u" %1=\"%2\""_s.arg(One(attributes), One(values).toHtmlEscaped());
    return text;
}

QString SelectorSamples::Element(int depth) {
    QString name = depth > 4 ? u"input"_s : One(names);
    if (name == u"g" || name == u"linearGradient") {
        const QString graphics = Below(3) ? name : QString();
        return u"<svg%1><%2%3><%4%5>%6</%4></%2></svg>"_s.arg(Attributes(), One(std::vector{u"g"_s, u"a"_s}),
                                                              Attributes(), name, Attributes(), One(words));
    }
    QString text = u'<' + name + Attributes() + u'>';
    if (name == u"input")
        return text;
    for (int i = Below(5); i > 0; --i)
        switch (Below(6)) {
        case 0:
            text += One(words);
            break;
        case 1:
            text += Below(2) ? u"<!--one-->"_s : u"<script>one</script>"_s;
            break;
        default:
            text += Element(depth + 1);
        }
    return text + u"</"_s + name + u'>';
}

SelectorSample SelectorSamples::Selector(bool extended) {
    return List(0, extended, false);
}

SelectorSample SelectorSamples::List(int depth, bool extended, bool relative) {
    SelectorSample list = relative ? Relative(depth, extended) : Complex(depth, extended);
    if (Below(4) == 0) {
        const SelectorSample more = relative ? Relative(depth, extended) : Complex(depth, extended);
        list = {list.Text + u" , "_s + more.Text, [a = list.Fits, b = more.Fits](const PageTree& tree, NodeIndex node) {
                    return a(tree, node) || b(tree, node);
                }};
    }
    return list;
}

SelectorSample SelectorSamples::Complex(int depth, bool extended) {
    SelectorSample all = Compound(depth, extended);
    for (int i = Below(depth > 0 ? 2 : 3); i > 0; --i) {
        const QChar relation = u" >+~"[Below(4)];
        const SelectorSample next = Compound(depth, extended);
        all = {all.Text + (relation == u' ' || Below(2) ? u' ' + QString(relation) + u' ' : QString(relation)) +
                   next.Text,
               [before = all.Fits, last = next.Fits, relation](const PageTree& tree, NodeIndex node) {
                   const std::vector<NodeIndex> above = Related(tree, node, relation, true);
                   return last(tree, node) &&
                          std::any_of(above.begin(), above.end(), [&](NodeIndex other) { return before(tree, other); });
               }};
    }
    return all;
}

// One or two steps down or aside from the element.
SelectorSample SelectorSamples::Relative(int depth, bool extended) {
    SelectorSample all;
    for (int i = 1 + Below(2); i > 0; --i) {
        const QChar relation = u" >+~"[Below(4)];
        const SelectorSample first = Compound(depth, extended);
        all = {QString(relation) + first.Text + all.Text,
               [own = first.Fits, then = all.Fits, relation](const PageTree& tree, NodeIndex node) {
                   const std::vector<NodeIndex> below = Related(tree, node, relation, false);
                   return std::any_of(below.begin(), below.end(), [&](NodeIndex other) {
                       return own(tree, other) && (!then || then(tree, other));
                   });
               }};
    }
    return all;
}

SelectorSample SelectorSamples::Compound(int depth, bool extended) {
    SelectorSample all{u"*"_s, [](const PageTree&, NodeIndex) { return true; }};
    if (Below(2)) {
        const QString name = One(names);
        all = {name, [name](const PageTree& tree, NodeIndex node) {
                   return tree.Name(node).toString().toLower() == name.toLower();
               }};
    }
    for (int i = Below(3); i > 0; --i) {
        const SelectorSample more = Simple(depth, extended);
        all = {all.Text + more.Text, [a = all.Fits, b = more.Fits](const PageTree& tree, NodeIndex node) {
                   return a(tree, node) && b(tree, node);
               }};
    }
    return all;
}

SelectorSample SelectorSamples::Simple(int depth, bool extended) {
    switch (Below(extended ? 9 : 7)) {
    case 0: {
        const QString name = One(classes);
        return {u'.' + EscapedIdentifier(name), [name](const PageTree& tree, NodeIndex node) {
                    return tree.Attribute(node, u"class").toString().simplified().split(u' ').contains(name);
                }};
    }
    case 1: {
        const QString name = One(classes);
        return {u'#' + EscapedIdentifier(name),
                [name](const PageTree& tree, NodeIndex node) { return tree.Attribute(node, u"id") == name; }};
    }
    case 2:
    case 3:
        return Attribute();
    case 4:
        return Place(false);
    case 5:
        return Place(true);
    case 6: {
        if (depth > 1)
            return Attribute();
        const SelectorSample inner = List(depth + 1, extended, false);
        return {u":not("_s + inner.Text + u')',
                [fits = inner.Fits](const PageTree& tree, NodeIndex node) { return !fits(tree, node); }};
    }
    case 7: {
        const SelectorSample inner = List(depth + 1, false, true);
        return {u":has("_s + inner.Text + u')', inner.Fits};
    }
    default: {
        const QString text = One(searched);
        return {u":has-text("_s + EscapedString(text) + u')',
                [text](const PageTree& tree, NodeIndex node) { return TextOf(tree, node).contains(text); }};
    }
    }
}

SelectorSample SelectorSamples::Attribute() {
    const QString name = One(attributes);
    const QString value = One(values);
    const int how = Below(7);
    const bool anyCase = how > 0 && Below(3) == 0;
    static const QStringList operators{QString(), u"="_s, u"^="_s, u"$="_s, u"*="_s, u"~="_s, u"|="_s};
    const QString text = u'[' + EscapedIdentifier(name) + operators[how] +
                         (how ? EscapedString(value) + (anyCase ? u" i"_s : QString()) : QString()) + u']';
    return {text, [=](const PageTree& tree, NodeIndex node) {
                const bool html = tree.Space(node) == NodeSpace::Html;
                QStringView found;
                for (const PageAttribute& attribute : tree.Attributes(node))
                    if (attribute.Name.toString().toLower() == name.toLower())
                        found = attribute.Value;
                if (found.isNull() || (!html && name.contains(u':')))
                    return false;
                const bool ofHtml = name == u"type" || name == u"lang" || name == u"CHECKED";
                // A to Z alone have another case here.
                const auto folded = [&](QString any) {
                    for (QChar& c : any)
                        c = (anyCase || ofHtml) && c < u'\x7f' ? c.toLower() : c;
                    return any;
                };
                const QString a = folded(found.toString());
                const QString b = folded(value);
                switch (how) {
                case 0:
                    return true;
                case 1:
                    return a == b;
                case 2:
                    return !b.isEmpty() && a.startsWith(b);
                case 3:
                    return !b.isEmpty() && a.endsWith(b);
                case 4:
                    return !b.isEmpty() && a.contains(b);
                case 5:
                    return !b.isEmpty() && a.split(QRegularExpression(u"[ \\t\\n]"_s)).contains(b);
                default:
                    return a == b || a.startsWith(b + u'-');
                }
            }};
}

SelectorSample SelectorSamples::Place(bool ofType) {
    if (!ofType && Below(3) == 0) {
        const bool first = Below(2);
        return {first ? u":first-child"_s : u":last-child"_s,
                [first](const PageTree& tree, NodeIndex node) { return ElementsBeside(tree, node, first).empty(); }};
    }
    const int a = Below(7) - 3;
    const int b = Below(9) - 4;
    QString text = u"%1n%2%3"_s.arg(a).arg(b < 0 ? u" - "_s : u"+"_s).arg(b < 0 ? -b : b);
    if (a == 0 && Below(2))
        text = QString::number(b);
    else if (a == 2 && (b == 0 || b == 1))
        text = b ? u"odd"_s : u"EVEN"_s;
    return {(ofType ? u":nth-of-type("_s : u":Nth-Child( "_s) + text + u')',
            [a, b, ofType](const PageTree& tree, NodeIndex node) {
                const int place = PlaceOf(tree, node, ofType);
                for (int n = 0; n < 100; ++n)
                    if (a * n + b == place)
                        return true;
                return false;
            }};
}

} // namespace Brindle::Test
