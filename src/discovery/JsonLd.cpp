#include "discovery/JsonLd.h"

#include "toolkit/Text.h"

#include <QHash>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsJsonLd(const PageTree& page, NodeIndex node) {
    if (!page.Is(node, u"script"))
        return false;
    const QStringView type = TrimmedView(page.Attribute(node, u"type"));
    constexpr QStringView wanted = u"application/ld+json";
    if (!StartsWithFolded(type, wanted))
        return false;
    const QStringView rest = TrimmedView(type.sliced(wanted.size()));
    return rest.isEmpty() || rest[0] == u';';
}

class JsonLdReader {
public:
    JsonLdReader(const PageTree& page, StructuredItems& items, const JsonBounds& bounds)
        : page_(page), items_(items), bounds_(bounds), json_(bounds) {}

    void Read() {
        const size_t first = items_.Items.size();
        qsizetype characters = 0;
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            if (!IsJsonLd(page_, node))
                continue;
            script_ = node;
            for (NodeIndex inner = node + 1; inner < page_.End(node); ++inner) {
                characters += page_.Text(inner).size();
                if (characters > bounds_.Size)
                    break;
                for (const int root : json_.Read(page_.Text(inner)))
                    AddOutermost(root);
            }
        }
        Connect(first);
    }

private:
    // An object or a list of them.
    void AddOutermost(int value) {
        if (json_.At(value).Kind == JsonKind::Array) {
            for (int child = json_.At(value).First; child >= 0; child = json_.At(child).Next)
                AddOutermost(child);
        } else if (json_.At(value).Kind == JsonKind::Object) {
            AddItem(value, -1);
        }
    }

    // The item of an object; -1 for one that holds others and says nothing of itself.
    int AddItem(int object, int parent) {
        StructuredItem item;
        item.In = Notation::JsonLd;
        item.Node = script_;
        item.Parent = parent;
        int graph = -1;
        bool says = false;
        size_t children = 0;
        for (int child = json_.At(object).First; child >= 0; child = json_.At(child).Next) {
            const JsonValue& value = json_.At(child);
            ++children;
            if (value.Key == u"@type")
                AddTexts(child, item.Types);
            else if (value.Key == u"@id")
                item.Id = value.Text;
            else if (value.Key == u"@graph")
                graph = child;
            else if (!value.Key.startsWith(u'@'))
                says = true;
        }
        int index = -1;
        if (says || !item.Types.isEmpty() || graph < 0) {
            item.Properties.reserve(children);
            index = items_.Add(std::move(item));
            for (int child = json_.At(object).First; child >= 0; child = json_.At(child).Next)
                if (!json_.At(child).Key.startsWith(u'@'))
                    AddValue(index, json_.At(child).Key, child);
        }
        if (graph >= 0)
            AddOutermost(graph);
        return index;
    }

    void AddValue(int item, const QString& name, int value) {
        const JsonValue& said = json_.At(value);
        switch (said.Kind) {
        case JsonKind::Null:
            break;
        case JsonKind::Array:
            for (int child = said.First; child >= 0; child = json_.At(child).Next)
                AddValue(item, name, child);
            break;
        case JsonKind::Object:
            AddObject(item, name, value);
            break;
        default:
            items_.At(item).Properties.push_back({.Name = name, .Text = said.Text, .Node = script_});
        }
    }

    void AddObject(int item, const QString& name, int object) {
        for (int child = json_.At(object).First; child >= 0; child = json_.At(child).Next) {
            const QString& key = json_.At(child).Key;
            if (key == u"@value" || key == u"@list" || key == u"@set") {
                AddValue(item, name, child);
                return;
            }
        }
        const int value = AddItem(object, item);
        if (value >= 0)
            items_.At(item).Properties.push_back({.Name = name, .Item = value, .Node = script_});
    }

    void AddTexts(int value, QStringList& texts) const {
        if (json_.At(value).Kind == JsonKind::Text)
            texts.append(json_.At(value).Text);
        for (int child = json_.At(value).First; child >= 0; child = json_.At(child).Next)
            if (json_.At(child).Kind == JsonKind::Text)
                texts.append(json_.At(child).Text);
    }

    // An item of which nothing stands but its name is the one that says something under that name.
    void Connect(size_t first) {
        QHash<QString, int> byId;
        for (size_t i = first; i < items_.Items.size(); ++i) {
            const StructuredItem& item = items_.Items[i];
            if (!item.Id.isEmpty() && !item.Properties.empty() && !byId.contains(item.Id))
                byId.insert(item.Id, static_cast<int>(i));
        }
        if (byId.isEmpty())
            return;
        for (size_t i = first; i < items_.Items.size(); ++i) {
            for (StructuredProperty& property : items_.Items[i].Properties) {
                if (property.Item < 0)
                    continue;
                const StructuredItem& named = items_.At(property.Item);
                if (named.Properties.empty() && !named.Id.isEmpty())
                    property.Item = byId.value(named.Id, property.Item);
            }
        }
    }

    const PageTree& page_;
    StructuredItems& items_;
    const JsonBounds& bounds_;
    JsonText json_;
    NodeIndex script_ = noNode;
};

} // namespace

void AddJsonLd(const PageTree& page, StructuredItems& items, const JsonBounds& bounds) {
    JsonLdReader(page, items, bounds).Read();
}

} // namespace Brindle
