#include "discovery/Rdfa.h"

#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QHash>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Prefixes that every page may use without declaring them, those that business data comes with.
const QHash<QString, QString>& KnownPrefixes() {
    static const QHash<QString, QString> known{
        {u"schema"_s, u"http://schema.org/"_s},
        {u"foaf"_s, u"http://xmlns.com/foaf/0.1/"_s},
        {u"gr"_s, u"http://purl.org/goodrelations/v1#"_s},
        {u"vcard"_s, u"http://www.w3.org/2006/vcard/ns#"_s},
        {u"v"_s, u"http://rdf.data-vocabulary.org/#"_s},
        {u"og"_s, u"http://ogp.me/ns#"_s},
        {u"dc"_s, u"http://purl.org/dc/terms/"_s},
        {u"dcterms"_s, u"http://purl.org/dc/terms/"_s},
    };
    return known;
}

class RdfaReader {
public:
    RdfaReader(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items)
        : page_(page), base_(base), text_(text), items_(items) {}

    void Read() {
        if (!SaysAnything())
            return;
        open_.push_back({.End = page_.Count()});
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            while (open_.size() > 1 && open_.back().End <= node)
                Close();
            if (page_.IsElement(node))
                Enter(node);
        }
    }

private:
    // What holds from an element on, for what lies in it.
    struct Context {
        NodeIndex End = 0;
        int Item = -1; // that properties belong to
        QString Vocabulary{};
        std::vector<QString> Prefixes{}; // declared here
    };

    bool SaysAnything() const {
        const NodeIndex count = page_.NamesAttribute(u"typeof") ? page_.Count() : 0;
        for (NodeIndex node = 0; node < count; ++node)
            if (page_.HasAttribute(node, u"typeof"))
                return true;
        return false;
    }

    void Close() {
        for (const QString& prefix : open_.back().Prefixes)
            prefixes_[prefix].pop_back();
        open_.pop_back();
    }

    void Enter(NodeIndex node) {
        const std::span<const PageAttribute> attributes = page_.Attributes(node);
        if (attributes.empty())
            return;
        bool speaks = false;
        for (const PageAttribute& attribute : attributes)
            speaks = speaks || attribute.Name == u"property" || attribute.Name == u"typeof" ||
                     attribute.Name == u"vocab" || attribute.Name == u"prefix" || attribute.Name == u"resource" ||
                     attribute.Name == u"about" || attribute.Name.startsWith(u"xmlns:");
        if (!speaks)
            return;
        Context context{.End = page_.End(node), .Item = open_.back().Item, .Vocabulary = open_.back().Vocabulary};
        if (const QStringView vocabulary = page_.Attribute(node, u"vocab"); !vocabulary.isNull())
            context.Vocabulary = Trim(vocabulary);
        AddPrefixes(node, context);

        const QString property = WithLevelBlanks(page_.Attribute(node, u"property"));
        const QStringView types = page_.Attribute(node, u"typeof");
        if (!types.isNull()) {
            const int item = ItemOf(node, types, context.Vocabulary);
            if (!property.isEmpty() && open_.back().Item >= 0 && open_.back().Item != item) {
                if (items_.At(item).Parent < 0 && item > open_.back().Item)
                    items_.At(item).Parent = open_.back().Item;
                AddProperty(open_.back().Item, property, context.Vocabulary, {.Item = item, .Node = node});
            }
            context.Item = item;
        } else if (property.isEmpty()) {
            // What lies within says something of the thing that is named here.
            const QString id = Named(node, {u"about", u"resource"});
            if (!id.isEmpty())
                context.Item = byId_.value(id, -1);
        } else {
            int item = open_.back().Item;
            if (const QString id = Named(node, {u"about"}); !id.isEmpty())
                item = byId_.value(id, -1);
            if (item >= 0)
                AddProperty(item, property, context.Vocabulary, ValueOf(node));
        }
        open_.push_back(std::move(context));
    }

    void AddPrefixes(NodeIndex node, Context& context) {
        const auto declare = [&](const QString& prefix, const QString& meaning) {
            prefixes_[prefix].push_back(meaning);
            context.Prefixes.push_back(prefix);
        };
        for (const PageAttribute& attribute : page_.Attributes(node))
            if (attribute.Name.startsWith(u"xmlns:"))
                declare(attribute.Name.sliced(6).toString().toLower(), Trim(attribute.Value));
        const QStringList words = WithLevelBlanks(page_.Attribute(node, u"prefix")).split(u' ', Qt::SkipEmptyParts);
        for (qsizetype i = 0; i + 1 < words.size(); i += 2)
            if (words[i].endsWith(u':'))
                declare(words[i].chopped(1).toLower(), words[i + 1]);
    }

    // The item of an element with a type: a new one, or what was already said of the thing of that name.
    int ItemOf(NodeIndex node, QStringView types, const QString& vocabulary) {
        QString id = Named(node, {u"about", u"resource"});
        if (id.isEmpty() && !page_.Is(node, u"html"))
            id = Named(node, {u"href", u"src"});
        QStringList names;
        for (const QString& type : WithLevelBlanks(types).split(u' ', Qt::SkipEmptyParts))
            if (QString name = InFull(type, vocabulary); !name.isEmpty())
                names.append(std::move(name));
        if (!id.isEmpty()) {
            if (const int known = byId_.value(id, -1); known >= 0) {
                for (const QString& name : names)
                    if (!items_.At(known).Types.contains(name))
                        items_.At(known).Types.append(name);
                return known;
            }
        }
        StructuredItem item;
        item.In = Notation::Rdfa;
        item.Types = names;
        item.Id = id;
        item.Node = node;
        const int index = items_.Add(std::move(item));
        if (!id.isEmpty())
            byId_.insert(id, index);
        return index;
    }

    // The address in the first of these attributes that has one.
    QString Named(NodeIndex node, std::initializer_list<QStringView> attributes) const {
        for (const QStringView name : attributes) {
            const QStringView value = TrimmedView(page_.Attribute(node, name));
            // "#" is what a link has that leads nowhere; it names nothing.
            if (!value.isEmpty() && value != u"#")
                return AddressOf(value);
        }
        return {};
    }

    QString AddressOf(QStringView value) const {
        QString text = value.toString();
        if (text.startsWith(u"_:"))
            return text;
        if (text.startsWith(u'[') && text.endsWith(u']'))
            return InFull(text.sliced(1, text.size() - 2), {});
        return ResolveAddress(base_, text);
    }

    StructuredProperty ValueOf(NodeIndex node) {
        StructuredProperty value{.Node = node};
        if (const QStringView content = page_.Attribute(node, u"content"); !content.isNull()) {
            value.Text = content.toString();
        } else if (const QString address = Named(node, {u"resource", u"href", u"src"}); !address.isEmpty()) {
            const int item = byId_.value(address, -1);
            value.Text = address;
            if (item >= 0 && page_.HasAttribute(node, u"resource"))
                value.Item = item;
        } else if (page_.HasAttribute(node, u"datetime")) {
            value.Text = page_.Attribute(node, u"datetime").toString();
        } else {
            value.Text = text_.Of(node);
        }
        return value;
    }

    void AddProperty(int item, const QString& names, const QString& vocabulary, StructuredProperty property) {
        for (const QString& name : names.split(u' ', Qt::SkipEmptyParts)) {
            property.Name = InFull(name, vocabulary);
            if (!property.Name.isEmpty())
                items_.At(item).Properties.push_back(property);
        }
    }

    // A term of the vocabulary, a name with a prefix or an address as an address; empty for a term without vocabulary.
    QString InFull(QStringView name, const QString& vocabulary) const {
        const qsizetype colon = name.indexOf(u':');
        if (colon < 0)
            return vocabulary.isEmpty() ? QString() : QString(vocabulary + name);
        if (name.sliced(colon).startsWith(u"://"))
            return name.toString();
        const QString prefix = name.first(colon).toString().toLower();
        const auto declared = prefixes_.constFind(prefix);
        if (declared != prefixes_.cend() && !declared->isEmpty())
            return QString(declared->back() + name.sliced(colon + 1));
        if (const auto known = KnownPrefixes().constFind(prefix); known != KnownPrefixes().cend())
            return QString(*known + name.sliced(colon + 1));
        return name.toString();
    }

    const PageTree& page_;
    const QString& base_;
    StructuredText& text_;
    StructuredItems& items_;
    std::vector<Context> open_;
    QHash<QString, QStringList> prefixes_;
    QHash<QString, int> byId_;
};

} // namespace

void AddRdfa(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items) {
    RdfaReader(page, base, text, items).Read();
}

} // namespace Brindle
