#include "discovery/Microformats.h"

#include "toolkit/Ascii.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QHash>
#include <QVarLengthArray>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// How the value of a property is read: the letter with which its class begins in the newer form.
enum class Reading : quint8 { Text, Address, Date, Markup };

enum class Format : quint8 { Card, Place, Coordinates, Other };

struct RootClass {
    QStringView Class;
    QStringView Type;
    Format Is;
    bool Classic;
};

// Not every class that begins with "h-": style sheets are full of those.
constexpr RootClass rootClasses[] = {
    {u"h-card", u"h-card", Format::Card, false},      {u"h-adr", u"h-adr", Format::Place, false},
    {u"h-geo", u"h-geo", Format::Coordinates, false}, {u"h-org", u"h-org", Format::Card, false},
    {u"h-entry", u"h-entry", Format::Other, false},   {u"h-feed", u"h-feed", Format::Other, false},
    {u"h-event", u"h-event", Format::Other, false},   {u"h-review", u"h-review", Format::Other, false},
    {u"h-cite", u"h-cite", Format::Other, false},     {u"h-product", u"h-product", Format::Other, false},
    {u"h-item", u"h-item", Format::Other, false},     {u"h-recipe", u"h-recipe", Format::Other, false},
    {u"h-resume", u"h-resume", Format::Other, false}, {u"vcard", u"h-card", Format::Card, true},
    {u"adr", u"h-adr", Format::Place, true},          {u"geo", u"h-geo", Format::Coordinates, true},
    {u"hentry", u"h-entry", Format::Other, true},     {u"hfeed", u"h-feed", Format::Other, true},
    {u"vevent", u"h-event", Format::Other, true},     {u"hreview", u"h-review", Format::Other, true},
    {u"hproduct", u"h-product", Format::Other, true}, {u"hrecipe", u"h-recipe", Format::Other, true},
    {u"hresume", u"h-resume", Format::Other, true},
};

struct ClassicProperty {
    QStringView Class;
    QStringView Name;
    Reading As;
    Format Of;
};

constexpr ClassicProperty classicProperties[] = {
    {u"fn", u"name", Reading::Text, Format::Card},
    {u"org", u"org", Reading::Text, Format::Card},
    {u"organization-name", u"organization-name", Reading::Text, Format::Card},
    {u"organization-unit", u"organization-unit", Reading::Text, Format::Card},
    {u"honorific-prefix", u"honorific-prefix", Reading::Text, Format::Card},
    {u"given-name", u"given-name", Reading::Text, Format::Card},
    {u"additional-name", u"additional-name", Reading::Text, Format::Card},
    {u"family-name", u"family-name", Reading::Text, Format::Card},
    {u"honorific-suffix", u"honorific-suffix", Reading::Text, Format::Card},
    {u"nickname", u"nickname", Reading::Text, Format::Card},
    {u"tel", u"tel", Reading::Text, Format::Card},
    {u"fax", u"fax", Reading::Text, Format::Card},
    {u"email", u"email", Reading::Address, Format::Card},
    {u"url", u"url", Reading::Address, Format::Card},
    {u"photo", u"photo", Reading::Address, Format::Card},
    {u"logo", u"logo", Reading::Address, Format::Card},
    {u"uid", u"uid", Reading::Address, Format::Card},
    {u"adr", u"adr", Reading::Text, Format::Card},
    {u"geo", u"geo", Reading::Text, Format::Card},
    {u"label", u"label", Reading::Text, Format::Card},
    {u"category", u"category", Reading::Text, Format::Card},
    {u"title", u"job-title", Reading::Text, Format::Card},
    {u"role", u"role", Reading::Text, Format::Card},
    {u"note", u"note", Reading::Text, Format::Card},
    {u"bday", u"bday", Reading::Date, Format::Card},
    {u"rev", u"rev", Reading::Date, Format::Card},
    {u"post-office-box", u"post-office-box", Reading::Text, Format::Place},
    {u"street-address", u"street-address", Reading::Text, Format::Place},
    {u"extended-address", u"extended-address", Reading::Text, Format::Place},
    {u"locality", u"locality", Reading::Text, Format::Place},
    {u"region", u"region", Reading::Text, Format::Place},
    {u"postal-code", u"postal-code", Reading::Text, Format::Place},
    {u"country-name", u"country-name", Reading::Text, Format::Place},
    {u"latitude", u"latitude", Reading::Text, Format::Coordinates},
    {u"longitude", u"longitude", Reading::Text, Format::Coordinates},
    // What part a card plays in another format.
    {u"author", u"author", Reading::Text, Format::Other},
    {u"item", u"item", Reading::Text, Format::Other},
    {u"location", u"location", Reading::Text, Format::Other},
    {u"organizer", u"organizer", Reading::Text, Format::Other},
    {u"reviewer", u"author", Reading::Text, Format::Other},
    {u"contact", u"contact", Reading::Text, Format::Other},
    {u"brand", u"brand", Reading::Text, Format::Other},
};

// The property that a class of the newer form names; an empty name for another class.
std::pair<QStringView, Reading> PropertyOf(QStringView name) {
    static constexpr struct {
        QStringView Prefix;
        Reading As;
    } prefixes[] = {
        {u"p-", Reading::Text}, {u"u-", Reading::Address}, {u"dt-", Reading::Date}, {u"e-", Reading::Markup}};
    for (const auto& row : prefixes) {
        if (!name.startsWith(row.Prefix))
            continue;
        const QStringView property = name.sliced(row.Prefix.size());
        const bool isName = !property.isEmpty() && Ascii::IsLower(property[0]) &&
                            std::all_of(property.begin(), property.end(),
                                        [](QChar c) { return Ascii::IsLower(c) || c == u'-' || Ascii::IsDigit(c); });
        return {isName ? property : QStringView(), row.As};
    }
    return {};
}

class MicroformatsReader {
public:
    MicroformatsReader(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items)
        : page_(page), base_(base), text_(text), items_(items) {
        for (const RootClass& root : rootClasses)
            roots_.insert(root.Class, &root);
        for (const ClassicProperty& property : classicProperties)
            classic_.insert(property.Class, &property);
    }

    void Read() {
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            while (!open_.empty() && open_.back().End <= node)
                Close();
            if (!page_.IsElement(node))
                continue;
            const QStringView classes = page_.Attribute(node, u"class");
            if (!classes.isEmpty())
                Enter(node, classes);
        }
        while (!open_.empty())
            Close();
    }

private:
    struct Open {
        int Item;
        NodeIndex End;
        bool Classic;
        bool HasText = false;    // a property of text or markup: the name is not implied then
        bool HasAddress = false; // a property with an address: nor is the address
        bool HasNested = false;
        std::vector<Format> Formats;
    };

    void Enter(NodeIndex node, QStringView classes) {
        QVarLengthArray<QStringView, 8> names;
        for (qsizetype at = 0; at < classes.size();) {
            while (at < classes.size() && classes[at].unicode() <= u' ')
                ++at;
            const qsizetype begin = at;
            while (at < classes.size() && classes[at].unicode() > u' ')
                ++at;
            if (at > begin)
                names.append(classes.sliced(begin, at - begin));
        }
        const int item = RootOf(node, names);
        if (!open_.empty())
            AddProperties(node, names, item);
        if (item >= 0)
            open_.push_back(std::move(opening_));
    }

    // Begins the item of an element with the class of one; -1 for others.
    int RootOf(NodeIndex node, const QVarLengthArray<QStringView, 8>& names) {
        QVarLengthArray<const RootClass*, 4> found;
        bool newer = false;
        for (const QStringView name : names) {
            if (const RootClass* root = roots_.value(name)) {
                found.append(root);
                newer = newer || !root->Classic;
            }
        }
        if (found.isEmpty())
            return -1;
        StructuredItem item;
        item.In = Notation::Microformats;
        item.Node = node;
        item.Parent = open_.empty() ? -1 : open_.back().Item;
        opening_ = {.Item = 0, .End = page_.End(node), .Classic = !newer, .Formats = {}};
        for (const RootClass* root : found) {
            if (root->Classic == newer)
                continue; // an element that has both forms goes by the newer one
            item.Types.append(root->Type.toString());
            opening_.Formats.push_back(root->Is);
        }
        opening_.Item = items_.Add(std::move(item));
        return opening_.Item;
    }

    void AddProperties(NodeIndex node, const QVarLengthArray<QStringView, 8>& names, int item) {
        Open& around = open_.back();
        for (const QStringView name : names) {
            auto [property, reading] = PropertyOf(name);
            if (around.Classic) {
                const ClassicProperty* known = classic_.value(name);
                if (!known || !Has(around, known->Of))
                    continue;
                property = known->Name;
                reading = known->As;
                if (known->Of == Format::Other && item < 0)
                    continue;
            }
            if (property.isEmpty())
                continue;
            around.HasText = around.HasText || reading == Reading::Text || reading == Reading::Markup;
            around.HasAddress = around.HasAddress || reading == Reading::Address;
            // Of other formats only what they hold is of interest.
            if (item < 0 && Has(around, Format::Other))
                continue;
            items_.At(around.Item)
                .Properties.push_back({.Name = property.toString(),
                                       .Text = ValueOf(node, property, reading),
                                       .Item = item,
                                       .Node = node});
        }
        around.HasNested = around.HasNested || item >= 0;
    }

    static bool Has(const Open& open, Format format) {
        // An address may be written into a card without being held together.
        return std::any_of(open.Formats.begin(), open.Formats.end(), [format](Format own) {
            return own == format || (own == Format::Card && format != Format::Other);
        });
    }

    QString ValueOf(NodeIndex node, QStringView property, Reading reading) {
        if (reading == Reading::Address) {
            for (const auto& [element, attribute] : {std::pair(u"a"_s, u"href"_s),
                                                     {u"area"_s, u"href"_s},
                                                     {u"link"_s, u"href"_s},
                                                     {u"img"_s, u"src"_s},
                                                     {u"audio"_s, u"src"_s},
                                                     {u"video"_s, u"src"_s},
                                                     {u"source"_s, u"src"_s},
                                                     {u"object"_s, u"data"_s}})
                if (page_.Is(node, element) && page_.HasAttribute(node, attribute))
                    return ResolveAddress(base_, page_.Attribute(node, attribute).toString());
        }
        if (reading == Reading::Date && page_.HasAttribute(node, u"datetime"))
            return Trim(page_.Attribute(node, u"datetime"));
        QString text;
        if (reading == Reading::Markup || !ValueClass(node, text))
            text = PlainValueOf(node);
        return reading == Reading::Address && property != u"email" ? ResolveAddress(base_, text) : text;
    }

    QString PlainValueOf(NodeIndex node) {
        if ((page_.Is(node, u"abbr") || page_.Is(node, u"link")) && page_.HasAttribute(node, u"title"))
            return WithLevelBlanks(page_.Attribute(node, u"title"));
        if ((page_.Is(node, u"data") || page_.Is(node, u"input")) && page_.HasAttribute(node, u"value"))
            return WithLevelBlanks(page_.Attribute(node, u"value"));
        if (page_.Is(node, u"img") || page_.Is(node, u"area"))
            return WithLevelBlanks(page_.Attribute(node, u"alt"));
        return text_.Of(node, StructuredText::Images::Described);
    }

    // What the parts of an element say that are marked as the value proper; false when there are none.
    bool ValueClass(NodeIndex node, QString& text) {
        bool found = false;
        for (NodeIndex at = node + 1; at < page_.End(node);) {
            if (!text_.Spend(1))
                break;
            NodeIndex next = at + 1;
            const QStringView classes = page_.IsElement(at) ? page_.Attribute(at, u"class") : QStringView();
            if (HasClass(classes, u"value-title")) {
                text += WithLevelBlanks(page_.Attribute(at, u"title"));
                found = true;
            } else if (HasClass(classes, u"value")) {
                text += PlainValueOf(at);
                found = true;
            }
            if (found || IsRoot(classes))
                next = page_.End(at);
            at = next;
        }
        return found;
    }

    static bool HasClass(QStringView classes, QStringView name) {
        for (qsizetype at = classes.indexOf(name); at >= 0; at = classes.indexOf(name, at + name.size())) {
            const qsizetype end = at + name.size();
            if ((at == 0 || classes[at - 1].unicode() <= u' ') &&
                (end == classes.size() || classes[end].unicode() <= u' '))
                return true;
        }
        return false;
    }

    bool IsRoot(QStringView classes) const {
        return !classes.isEmpty() && std::any_of(std::begin(rootClasses), std::end(rootClasses),
                                                 [&](const RootClass& root) { return HasClass(classes, root.Class); });
    }

    void Close() {
        const Open& closed = open_.back();
        if (!closed.Classic &&
            std::find(closed.Formats.begin(), closed.Formats.end(), Format::Other) == closed.Formats.end()) {
            const NodeIndex node = items_.At(closed.Item).Node;
            if (!closed.HasText && !closed.HasNested)
                AddImplied(closed.Item, u"name"_s, ImpliedName(node));
            if (!closed.HasAddress && !closed.HasNested)
                AddImplied(closed.Item, u"url"_s, ImpliedAddress(node));
        }
        open_.pop_back();
    }

    void AddImplied(int item, const QString& name, QString text) {
        if (!text.isEmpty())
            items_.At(item).Properties.push_back({.Name = name, .Text = std::move(text), .Node = items_.At(item).Node});
    }

    QString ImpliedName(NodeIndex node) {
        NodeIndex at = node;
        for (int depth = 0; depth < 3 && at != noNode; ++depth, at = OnlyElementOf(at)) {
            if ((page_.Is(at, u"img") || page_.Is(at, u"area")) && page_.HasAttribute(at, u"alt"))
                return WithLevelBlanks(page_.Attribute(at, u"alt"));
            if (page_.Is(at, u"abbr") && page_.HasAttribute(at, u"title"))
                return WithLevelBlanks(page_.Attribute(at, u"title"));
        }
        return text_.Of(node, StructuredText::Images::Described);
    }

    QString ImpliedAddress(NodeIndex node) const {
        NodeIndex at = node;
        for (int depth = 0; depth < 3 && at != noNode; ++depth) {
            if ((page_.Is(at, u"a") || page_.Is(at, u"area")) && page_.HasAttribute(at, u"href"))
                return ResolveAddress(base_, page_.Attribute(at, u"href").toString());
            NodeIndex next = noNode;
            for (const QStringView name : {QStringView(u"a"), QStringView(u"area")})
                if (next == noNode)
                    next = OnlyChild(at, [&](NodeIndex child) { return page_.Is(child, name); });
            at = next != noNode ? next : OnlyElementOf(at);
        }
        return {};
    }

    // The only element directly in another one; `noNode` when there are more or none.
    NodeIndex OnlyElementOf(NodeIndex node) const {
        return OnlyChild(node, [this](NodeIndex child) { return page_.IsElement(child); });
    }
    template <typename Wanted>
    NodeIndex OnlyChild(NodeIndex node, const Wanted& wanted) const {
        NodeIndex found = noNode;
        for (NodeIndex child = page_.FirstChild(node); child != noNode; child = page_.NextSibling(child)) {
            if (!wanted(child))
                continue;
            if (found != noNode)
                return noNode;
            found = child;
        }
        return found;
    }

    const PageTree& page_;
    const QString& base_;
    StructuredText& text_;
    StructuredItems& items_;
    QHash<QStringView, const RootClass*> roots_;
    QHash<QStringView, const ClassicProperty*> classic_;
    std::vector<Open> open_;
    Open opening_{};
};

} // namespace

void AddMicroformats(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items) {
    MicroformatsReader(page, base, text, items).Read();
}

} // namespace Brindle
