#include "discovery/Microdata.h"

#include "toolkit/PageAddress.h"

#include <QHash>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Where the address of an element stands that has one as its value; empty for none.
QStringView AddressAttribute(const PageTree& page, NodeIndex node) {
    struct Row {
        QStringView Element;
        QStringView Attribute;
    };
    static constexpr Row rows[] = {{u"a", u"href"},    {u"area", u"href"}, {u"link", u"href"},  {u"img", u"src"},
                                   {u"audio", u"src"}, {u"embed", u"src"}, {u"iframe", u"src"}, {u"source", u"src"},
                                   {u"track", u"src"}, {u"video", u"src"}, {u"object", u"data"}};
    if (page.Space(node) != NodeSpace::Html)
        return {};
    const QStringView name = page.Name(node);
    for (const Row& row : rows)
        if (row.Element.size() == name.size() && row.Element == name)
            return row.Attribute;
    return {};
}

class MicrodataReader {
public:
    MicrodataReader(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items)
        : page_(page), base_(base), text_(text), items_(items) {}

    void Read() {
        const auto first = static_cast<int>(items_.Items.size());
        AddItems();
        if (static_cast<int>(items_.Items.size()) == first)
            return;
        AddProperties();
        if (!referring_.empty())
            AddReferred();
        for (auto item = static_cast<size_t>(first); item < items_.Items.size(); ++item)
            if (items_.Items[item].Properties.empty())
                AddWholeText(static_cast<int>(item));
    }

private:
    void AddItems() {
        if (!page_.NamesAttribute(u"itemscope"))
            return;
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            if (!page_.IsElement(node) || !page_.HasAttribute(node, u"itemscope"))
                continue;
            StructuredItem item;
            item.In = Notation::Microdata;
            item.Node = node;
            item.Types = WordsOf(page_.Attribute(node, u"itemtype"));
            item.Id = WithLevelBlanks(page_.Attribute(node, u"itemid"));
            const int index = items_.Add(std::move(item));
            byNode_.insert(node, index);
            if (page_.HasAttribute(node, u"itemref"))
                referring_.push_back(index);
        }
    }

    // Properties belong to the item around them.
    void AddProperties() {
        std::vector<int> open; // items around the place, innermost last
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            while (!open.empty() && !page_.Contains(items_.At(open.back()).Node, node))
                open.pop_back();
            if (!page_.IsElement(node))
                continue;
            if (page_.HasAttribute(node, u"itemprop") && !open.empty())
                AddProperty(open.back(), node, false);
            if (const auto item = byNode_.constFind(node); item != byNode_.cend())
                open.push_back(*item);
        }
    }

    void AddProperty(int item, NodeIndex node, bool referred) {
        StructuredProperty property{.Node = node};
        if (const auto value = byNode_.constFind(node); value != byNode_.cend()) {
            if (referred && IsWithin(item, *value))
                return; // an item that would hold itself
            property.Item = *value;
            if (items_.At(*value).Parent < 0)
                items_.At(*value).Parent = item;
        } else {
            property.Text = TextOf(node);
        }
        std::vector<StructuredProperty>& properties = items_.At(item).Properties;
        if (properties.empty())
            properties.reserve(4);
        for (const QString& name : WordsOf(page_.Attribute(node, u"itemprop"))) {
            property.Name = name;
            properties.push_back(property);
        }
    }

    // The words of an attribute, which many elements have.
    const QStringList& WordsOf(QStringView attribute) {
        auto known = words_.constFind(attribute);
        if (known == words_.cend())
            known = words_.insert(attribute, WithLevelBlanks(attribute).split(u' ', Qt::SkipEmptyParts));
        return *known;
    }

    // Whether an item is the other one or is held by it.
    bool IsWithin(int item, int outer) {
        for (int at = item; at >= 0; at = items_.At(at).Parent)
            if (at == outer || !text_.Spend(1))
                return true;
        return false;
    }

    // What elements elsewhere on the page add to the items that name them.
    void AddReferred() {
        QHash<QStringView, NodeIndex> byId;
        for (NodeIndex node = 0; node < page_.Count(); ++node)
            if (const QStringView id = page_.Attribute(node, u"id"); !id.isEmpty() && !byId.contains(id))
                byId.insert(id, node);
        for (const int item : referring_) {
            const NodeIndex own = items_.At(item).Node;
            const QString ids = WithLevelBlanks(page_.Attribute(own, u"itemref"));
            QHash<NodeIndex, bool> done;
            for (const QString& id : ids.split(u' ', Qt::SkipEmptyParts)) {
                const NodeIndex root = byId.value(id, noNode);
                // What lies within the item is its own without being named.
                if (root == noNode || done.contains(root) || page_.Contains(root, own))
                    continue;
                done.insert(root, true);
                AddFrom(item, root);
            }
        }
    }

    void AddFrom(int item, NodeIndex root) {
        for (NodeIndex node = root; node < page_.End(root);) {
            if (!text_.Spend(1))
                return;
            if (page_.IsElement(node) && page_.HasAttribute(node, u"itemprop"))
                AddProperty(item, node, true);
            node = byNode_.contains(node) ? page_.End(node) : node + 1;
        }
    }

    // An item without properties often says all in its text: an address, a country.
    void AddWholeText(int item) {
        const QString text = TextOf(items_.At(item).Node);
        if (!text.isEmpty())
            items_.At(item).Properties.push_back({.Text = text, .Node = items_.At(item).Node});
    }

    QString TextOf(NodeIndex node) {
        if (page_.Is(node, u"meta"))
            return page_.Attribute(node, u"content").toString();
        if (const QStringView name = AddressAttribute(page_, node); !name.isEmpty()) {
            const QStringView href = page_.Attribute(node, name);
            return href.isNull() ? QString() : ResolveAddress(base_, href.toString());
        }
        if (page_.Is(node, u"data") || page_.Is(node, u"meter"))
            return page_.Attribute(node, u"value").toString();
        if (page_.Is(node, u"time") && page_.HasAttribute(node, u"datetime"))
            return page_.Attribute(node, u"datetime").toString();
        // Not in the standard, but many write it.
        if (const QStringView content = page_.Attribute(node, u"content"); !content.isEmpty())
            return content.toString();
        return text_.Of(node);
    }

    const PageTree& page_;
    const QString& base_;
    StructuredText& text_;
    StructuredItems& items_;
    QHash<QStringView, QStringList> words_; // by what stands in the page
    QHash<NodeIndex, int> byNode_;
    std::vector<int> referring_;
};

} // namespace

void AddMicrodata(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items) {
    MicrodataReader(page, base, text, items).Read();
}

} // namespace Brindle
