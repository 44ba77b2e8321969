#include "page/InnerText.h"

#include "page/TextSearch.h"
#include "toolkit/Ascii.h"

#include <algorithm>
#include <iterator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// So that links within links within links do not make a page's texts grow with the square of its size.
constexpr qsizetype longestText = 65'536;

template <size_t N>
bool IsOneOf(QStringView name, const QStringView (&names)[N]) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// Elements that begin and end a line.
constexpr QStringView blocks[] = {
    u"address", u"article", u"aside", u"blockquote", u"center",     u"dd",     u"details",  u"dialog", u"dir",
    u"div",     u"dl",      u"dt",    u"fieldset",   u"figcaption", u"figure", u"footer",   u"form",   u"h1",
    u"h2",      u"h3",      u"h4",    u"h5",         u"h6",         u"header", u"hgroup",   u"hr",     u"legend",
    u"li",      u"listing", u"main",  u"menu",       u"nav",        u"ol",     u"optgroup", u"option", u"pre",
    u"section", u"summary", u"table", u"caption",    u"ul",         u"xmp"};

constexpr QStringView hidden[] = {u"area",    u"audio",    u"canvas",   u"datalist", u"head", u"iframe",
                                  u"noembed", u"noframes", u"noscript", u"object",   u"rp",   u"script",
                                  u"style",   u"template", u"textarea", u"title",    u"video"};

constexpr QStringView preserving[] = {u"pre", u"xmp", u"listing", u"plaintext"};
constexpr QStringView hiddenInSvg[] = {u"title", u"desc", u"style", u"script"};

bool HidesByStyle(QStringView style) {
    QString plain(u';');
    for (const QChar c : style)
        if (!Ascii::IsBlank(c))
            plain += c.toLower();
    return plain.contains(u";display:none") || plain.contains(u";visibility:hidden");
}

} // namespace

class TextReader::Collector {
public:
    explicit Collector(const TextReader& reader) : reader_(reader), tree_(reader.tree_) {}

    QString Collect(NodeIndex first) {
        const NodeIndex end = tree_.End(first);
        preserved_ = tree_.Space(first) == NodeSpace::Html && reader_.TraitsOf(first).KeepsSpace ? 1 : 0;
        for (NodeIndex node = first + 1; node < end && out_.size() <= longestText;) {
            while (!open_.empty() && tree_.End(open_.back()) <= node)
                Leave();
            if (tree_.IsText(node))
                Add(tree_.Text(node));
            else if (tree_.IsElement(node) && (tree_.IsTemplate(node) || reader_.IsHidden(node))) {
                node = tree_.End(node);
                continue;
            } else if (tree_.IsElement(node))
                Enter(node);
            ++node;
        }
        return std::move(out_);
    }

private:
    void Enter(NodeIndex node) {
        open_.push_back(node);
        if (tree_.Space(node) != NodeSpace::Html)
            return;
        const Traits& traits = reader_.TraitsOf(node);
        preserved_ += traits.KeepsSpace ? 1 : 0;
        if (traits.BreaksLine)
            BreakLine();
        else
            lines_ = std::max<int>(lines_, traits.LinesAround);
    }

    void Leave() {
        const NodeIndex node = open_.back();
        open_.pop_back();
        if (tree_.Space(node) != NodeSpace::Html)
            return;
        const Traits& traits = reader_.TraitsOf(node);
        preserved_ -= traits.KeepsSpace ? 1 : 0;
        if (traits.IsCell)
            cellEnded_ = true;
        else if (traits.IsRow)
            lines_ = std::max(lines_, 1);
        else
            lines_ = std::max<int>(lines_, traits.LinesAround);
    }

    void Add(QStringView text) {
        for (const QChar c : text) {
            if (preserved_ > 0 && c == u'\n')
                BreakLine();
            else if (preserved_ == 0 && Ascii::IsBlank(c))
                blank_ = true;
            else
                AddCharacter(c);
        }
    }

    void AddCharacter(QChar c) {
        if (!out_.isEmpty()) {
            if (lines_ > 0)
                out_.append(QString(lines_, u'\n'));
            else if (cellEnded_)
                out_ += u'\t';
            else if (blank_ && out_.back() != u'\n')
                out_ += u' ';
        }
        lines_ = 0;
        blank_ = false;
        cellEnded_ = false;
        out_ += c;
    }

    void BreakLine() {
        if (!out_.isEmpty())
            out_ += u'\n';
        blank_ = false;
    }

    const TextReader& reader_;
    const PageTree& tree_;
    std::vector<NodeIndex> open_;
    QString out_;
    int lines_ = 0;
    int preserved_ = 0;
    bool blank_ = false;
    bool cellEnded_ = false;
};

TextReader::TextReader(const PageTree& tree) : tree_(tree) {
    traits_.resize(static_cast<size_t>(tree.NameCount()));
    std::vector<bool> known(traits_.size());
    for (NodeIndex node = 0; node < tree.Count(); ++node) {
        if (!tree.IsElement(node) || known[static_cast<size_t>(tree.NameId(node))])
            continue;
        known[static_cast<size_t>(tree.NameId(node))] = true;
        const QStringView name = tree.Name(node);
        Traits& traits = traits_[static_cast<size_t>(tree.NameId(node))];
        traits.LinesAround = name == u"p" ? 2 : IsOneOf(name, blocks) ? 1 : 0;
        traits.KeepsSpace = IsOneOf(name, preserving);
        traits.BreaksLine = name == u"br";
        traits.IsCell = name == u"td" || name == u"th";
        traits.IsRow = name == u"tr";
        traits.IsHidden = IsOneOf(name, hidden);
        traits.IsHiddenInSvg = IsOneOf(name, hiddenInSvg);
    }
}

bool TextReader::IsHidden(NodeIndex node) const {
    if (!tree_.IsElement(node))
        return false;
    const NodeSpace space = tree_.Space(node);
    const Traits& traits = TraitsOf(node);
    if ((space == NodeSpace::Html && (traits.IsHidden || tree_.HasAttribute(node, u"hidden"))) ||
        (space == NodeSpace::Svg && traits.IsHiddenInSvg))
        return true;
    const QStringView style = tree_.Attribute(node, u"style");
    return !style.isEmpty() && HidesByStyle(style);
}

QString TextReader::InnerText(NodeIndex node) const {
    return Collector(*this).Collect(node);
}

QString TextReader::TextContent(NodeIndex node) const {
    QString text;
    for (NodeIndex within = node; within < tree_.End(node) && text.size() <= longestText; ++within)
        if (tree_.IsText(within))
            text += tree_.Text(within);
    return text;
}

} // namespace Brindle
