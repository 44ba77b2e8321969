#include "page/HtmlSerializer.h"

#include "page/HtmlTree.h"
#include "page/MarkupScanner.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

namespace Brindle {

namespace {

// Engines put elements that lie deeper than this beside their parent instead of into it; its texts stay.
constexpr int deepest = 512;

bool IsVoid(std::string_view name) {
    static constexpr std::string_view names[] = {"area",  "base",  "basefont", "bgsound", "br",    "col",    "embed",
                                                 "frame", "hr",    "image",    "img",     "input", "keygen", "link",
                                                 "meta",  "param", "source",   "track",   "wbr"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// SVG attributes to which the parser gives a case that later editions of the standard no longer give.
bool IsLowerCasedSince(std::string_view name) {
    return name == "contentScriptType" || name == "contentStyleType" || name == "externalResourcesRequired" ||
           name == "filterRes";
}

class Serializer {
public:
    explicit Serializer(int rootDepth) : rootDepth_(rootDepth) {}

    QString Write(const GumboNode* first) {
        Walk(
            first, [this](const GumboNode* node, int depth) { return Enter(node, depth); },
            [this](const GumboNode* node, int depth) { Leave(node, depth); });
        return QString::fromUtf8(out_);
    }

private:
    bool IsFlattened(int depth) const { return depth + rootDepth_ > deepest; }

    bool Enter(const GumboNode* node, int depth) {
        switch (node->type) {
        case GUMBO_NODE_ELEMENT:
        case GUMBO_NODE_TEMPLATE:
            templates_ += node->type == GUMBO_NODE_TEMPLATE ? 1 : 0;
            return WriteStartTag(node->v.element, depth);
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_WHITESPACE:
        case GUMBO_NODE_CDATA:
            if (!IsFlattened(depth - 1)) // otherwise it is written already
                WriteText(node);
            return false;
        case GUMBO_NODE_COMMENT:
            if (std::strcmp(node->v.text.text, flushComment) == 0)
                return false;
            out_ += "<!--";
            out_ += node->v.text.text;
            out_ += "-->";
            return false;
        case GUMBO_NODE_DOCUMENT:
            break;
        }
        return false;
    }

    void Leave(const GumboNode* node, int depth) {
        templates_ -= node->type == GUMBO_NODE_TEMPLATE ? 1 : 0;
        if (!IsFlattened(depth))
            WriteEndTag(NameOf(node->v.element));
    }

    bool WriteStartTag(const GumboElement& element, int depth) {
        const QByteArray name = NameOf(element);
        out_ += '<';
        out_ += name;
        for (unsigned i = 0; i < element.attributes.length; ++i)
            WriteAttribute(*static_cast<const GumboAttribute*>(element.attributes.data[i]),
                           element.tag_namespace == GUMBO_NAMESPACE_SVG);
        out_ += '>';
        if (element.tag_namespace == GUMBO_NAMESPACE_HTML &&
            IsVoid({name.constData(), static_cast<size_t>(name.size())}))
            return false;
        if (IsFlattened(depth)) {
            for (unsigned i = 0; i < element.children.length; ++i)
                if (const auto* const child = static_cast<const GumboNode*>(element.children.data[i]); IsText(child))
                    WriteText(child);
            WriteEndTag(name);
        }
        return true;
    }

    void WriteText(const GumboNode* text) {
        if (HoldsRawText(text->parent))
            out_ += text->v.text.text;
        else
            WriteEscaped(text->v.text.text, false);
    }

    void WriteEndTag(const QByteArray& name) {
        out_ += "</";
        out_ += name;
        out_ += '>';
    }

    void WriteAttribute(const GumboAttribute& attribute, bool ofSvg) {
        std::string_view name = attribute.name;
        if (name == aliasAttribute)
            return;
        out_ += ' ';
        switch (attribute.attr_namespace) {
        case GUMBO_ATTR_NAMESPACE_XLINK:
            out_ += "xlink:";
            break;
        case GUMBO_ATTR_NAMESPACE_XML:
            out_ += "xml:";
            break;
        case GUMBO_ATTR_NAMESPACE_XMLNS:
            if (name != "xmlns")
                out_ += "xmlns:";
            break;
        case GUMBO_ATTR_NAMESPACE_NONE:
            break;
        }
        const QByteArrayView written(name.data(), static_cast<qsizetype>(name.size()));
        if (ofSvg && IsLowerCasedSince(name))
            out_ += written.toByteArray().toLower();
        else
            out_ += written;
        out_ += "=\"";
        WriteEscaped(attribute.value, true);
        out_ += '"';
    }

    void WriteEscaped(const char* text, bool inAttribute) {
        const char* const special = inAttribute ? "&\"\xc2" : "&<>\xc2";
        while (*text) {
            const size_t run = std::strcspn(text, special);
            out_.append(text, static_cast<qsizetype>(run));
            text += run;
            switch (*text) {
            case '\0':
                return;
            case '&':
                out_ += "&amp;";
                break;
            case '<':
                out_ += "&lt;";
                break;
            case '>':
                out_ += "&gt;";
                break;
            case '"':
                out_ += "&quot;";
                break;
            default: // the first byte of U+00A0 and of its neighbours
                if (text[1] == '\xa0') {
                    out_ += "&nbsp;";
                    ++text;
                } else {
                    out_ += *text;
                }
            }
            ++text;
        }
    }

    bool HoldsRawText(const GumboNode* parent) const {
        if (!parent || parent->type != GUMBO_NODE_ELEMENT || parent->v.element.tag_namespace != GUMBO_NAMESPACE_HTML)
            return false;
        switch (parent->v.element.tag) {
        case GUMBO_TAG_STYLE:
        case GUMBO_TAG_SCRIPT:
        case GUMBO_TAG_XMP:
        case GUMBO_TAG_IFRAME:
        case GUMBO_TAG_PLAINTEXT:
            return true;
        case GUMBO_TAG_NOEMBED:
        case GUMBO_TAG_NOFRAMES:
            // A noscript goes under these two names. No script runs in a template.
            return templates_ == 0 || NameOf(parent->v.element) != "noscript";
        default:
            return false;
        }
    }

    QByteArray out_;
    int rootDepth_;
    int templates_ = 0; // that are open
};

} // namespace

QString OuterHtml(const GumboNode* node) {
    int rootDepth = 1;
    for (const GumboNode* up = node->parent; up && up->type != GUMBO_NODE_DOCUMENT; up = up->parent)
        ++rootDepth;
    return Serializer(rootDepth).Write(node);
}

} // namespace Brindle
