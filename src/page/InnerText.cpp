#include "page/InnerText.h"

#include "page/HtmlTree.h"

#include <algorithm>

namespace Brindle {

namespace {

// So that links within links within links do not make a page's texts grow with the square of its size.
constexpr qsizetype longestText = 65'536;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

// How many line ends an element needs before and after itself.
int LinesAround(GumboTag tag) {
    switch (tag) {
    case GUMBO_TAG_P:
        return 2;
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_ARTICLE:
    case GUMBO_TAG_ASIDE:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DETAILS:
    case GUMBO_TAG_DIR:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_FIELDSET:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FOOTER:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HEADER:
    case GUMBO_TAG_HGROUP:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_LEGEND:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_LISTING:
    case GUMBO_TAG_MAIN:
    case GUMBO_TAG_MENU:
    case GUMBO_TAG_NAV:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_OPTGROUP:
    case GUMBO_TAG_OPTION:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_SECTION:
    case GUMBO_TAG_SUMMARY:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_XMP:
        return 1;
    default:
        return 0;
    }
}

bool KeepsSpace(GumboTag tag) {
    return tag == GUMBO_TAG_PRE || tag == GUMBO_TAG_XMP || tag == GUMBO_TAG_LISTING || tag == GUMBO_TAG_PLAINTEXT;
}

bool HidesByStyle(const char* style) {
    QByteArray plain;
    for (; *style; ++style)
        if (!IsBlank(*style))
            plain += *style;
    plain = ';' + plain.toLower();
    return plain.contains(";display:none") || plain.contains(";visibility:hidden");
}

class TextCollector {
public:
    QString Collect(const GumboNode* first) {
        Walk(
            first, [this, first](const GumboNode* node, int) { return Enter(node, node == first); },
            [this, first](const GumboNode* node, int) {
                if (node != first)
                    Leave(node->v.element.tag);
            });
        return QString::fromUtf8(out_);
    }

private:
    bool Enter(const GumboNode* node, bool isFirst) {
        if (out_.size() > longestText)
            return false;
        if (IsText(node)) {
            Add(node->v.text.text);
            return false;
        }
        if (!ChildrenOf(node) || (!isFirst && IsHidden(node)))
            return false;
        const GumboTag tag = node->v.element.tag;
        preserved_ += KeepsSpace(tag) ? 1 : 0;
        if (isFirst)
            return true;
        if (tag == GUMBO_TAG_BR)
            BreakLine();
        else
            lines_ = std::max(lines_, LinesAround(tag));
        return true;
    }

    void Leave(GumboTag tag) {
        preserved_ -= KeepsSpace(tag) ? 1 : 0;
        if (tag == GUMBO_TAG_TD || tag == GUMBO_TAG_TH)
            cellEnded_ = true;
        else if (tag == GUMBO_TAG_TR)
            lines_ = std::max(lines_, 1);
        else
            lines_ = std::max(lines_, LinesAround(tag));
    }

    void Add(const char* text) {
        for (; *text; ++text) {
            if (preserved_ > 0 ? *text == '\n' : false)
                BreakLine();
            else if (preserved_ == 0 && IsBlank(*text))
                blank_ = true;
            else
                AddCharacter(*text);
        }
    }

    void AddCharacter(char c) {
        if (!out_.isEmpty()) {
            if (lines_ > 0)
                out_.append(lines_, '\n');
            else if (cellEnded_)
                out_ += '\t';
            else if (blank_ && out_.back() != '\n')
                out_ += ' ';
        }
        lines_ = 0;
        blank_ = false;
        cellEnded_ = false;
        out_ += c;
    }

    void BreakLine() {
        if (!out_.isEmpty())
            out_ += '\n';
        blank_ = false;
    }

    QByteArray out_;
    int lines_ = 0;
    int preserved_ = 0;
    bool blank_ = false;
    bool cellEnded_ = false;
};

} // namespace

bool IsHidden(const GumboNode* node) {
    if (!ChildrenOf(node))
        return false;
    const GumboElement& element = node->v.element;
    if (element.tag_namespace == GUMBO_NAMESPACE_HTML) {
        switch (element.tag) {
        case GUMBO_TAG_AREA:
        case GUMBO_TAG_AUDIO:
        case GUMBO_TAG_CANVAS:
        case GUMBO_TAG_DATALIST:
        case GUMBO_TAG_HEAD:
        case GUMBO_TAG_IFRAME:
        case GUMBO_TAG_NOEMBED:
        case GUMBO_TAG_NOFRAMES:
        case GUMBO_TAG_OBJECT:
        case GUMBO_TAG_RP:
        case GUMBO_TAG_SCRIPT:
        case GUMBO_TAG_STYLE:
        case GUMBO_TAG_TEMPLATE:
        case GUMBO_TAG_TEXTAREA:
        case GUMBO_TAG_TITLE:
        case GUMBO_TAG_VIDEO:
            return true;
        default:
            break;
        }
        if (AttributeOf(element, "hidden"))
            return true;
    }
    if (element.tag_namespace == GUMBO_NAMESPACE_SVG &&
        (element.tag == GUMBO_TAG_TITLE || element.tag == GUMBO_TAG_DESC || element.tag == GUMBO_TAG_STYLE ||
         element.tag == GUMBO_TAG_SCRIPT))
        return true;
    const char* const style = AttributeOf(element, "style");
    return style && HidesByStyle(style);
}

QString InnerText(const GumboNode* node) {
    return TextCollector().Collect(node);
}

QString TextContent(const GumboNode* node) {
    QByteArray text;
    Walk(
        node,
        [&text](const GumboNode* within, int) {
            if (IsText(within))
                text += within->v.text.text;
            return text.size() <= longestText;
        },
        [](const GumboNode*, int) {});
    return QString::fromUtf8(text);
}

} // namespace Brindle
