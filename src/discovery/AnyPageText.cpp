#include "discovery/AnyPageText.h"

#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <array>

namespace Brindle {

namespace {

constexpr std::array<QStringView, 52> blockNames{
    u"address", u"article", u"aside",  u"blockquote", u"body",    u"caption",  u"center",     u"dd",     u"details",
    u"dialog",  u"dir",     u"div",    u"dl",         u"dt",      u"fieldset", u"figcaption", u"figure", u"footer",
    u"form",    u"h1",      u"h2",     u"h3",         u"h4",      u"h5",       u"h6",         u"header", u"hgroup",
    u"hr",      u"html",    u"legend", u"li",         u"main",    u"menu",     u"nav",        u"ol",     u"option",
    u"p",       u"pre",     u"search", u"section",    u"summary", u"table",    u"tbody",      u"td",     u"tfoot",
    u"th",      u"thead",   u"tr",     u"ul",         u"video",   u"frameset", u"br"};

constexpr std::array<QStringView, 15> silentNames{u"script", u"style",  u"template", u"head",     u"select",
                                                  u"iframe", u"object", u"textarea", u"canvas",   u"datalist",
                                                  u"audio",  u"video",  u"noembed",  u"noframes", u"noscript"};

bool IsBlank(QChar c) {
    return c.isSpace() || c == QChar(0x200B) || c == QChar(0xFEFF);
}

// Lower-cases a text of Latin-1 letters with single blanks into `folded`, which has room for it; false for other texts.
bool FoldWestern(QStringView text, QChar* folded) {
    // What each character becomes; 0: it is none that stands for itself.
    static constexpr auto lower = [] {
        std::array<char16_t, 256> table{};
        for (char16_t u = u' '; u < 256; ++u) {
            const bool upper = (u >= u'A' && u <= u'Z') || (u >= 0xC0 && u <= 0xDE && u != 0xD7);
            table[u] = u == 0x85 || u == 0xA0 ? char16_t(0) : static_cast<char16_t>(upper ? u + 0x20 : u);
        }
        return table;
    }();
    char16_t before = 0;
    for (const QChar c : text) {
        const char16_t u = c.unicode() < lower.size() ? lower[c.unicode()] : char16_t(0);
        if (u == 0 || (u == u' ' && before == u' '))
            return false;
        *folded++ = QChar(u);
        before = u;
    }
    return true;
}

// Fonts of pictures draw the name of a picture as the picture: "<i class=material-icons>place</i>".
bool IsNameOfPicture(const PageTree& page, NodeIndex text) {
    const QStringView name = page.Text(text).trimmed();
    const auto ofName = [](QChar c) { return (c >= u'a' && c <= u'z') || c == u'_' || c.isDigit(); };
    if (name.isEmpty() || name.size() > 40 || !std::all_of(name.begin(), name.end(), ofName))
        return false;
    const NodeIndex element = page.Parent(text);
    const QStringView look = page.Attribute(element, u"class");
    return page.Is(element, u"mat-icon") || look.contains(u"material-icons") || look.contains(u"material-symbols") ||
           look.contains(u"mat-icon");
}

std::vector<bool> FlagsOf(const PageTree& page, std::span<const QStringView> names) {
    std::vector<bool> flags(static_cast<size_t>(page.NameCount()), false);
    for (const QStringView name : names)
        if (const int id = page.NameIdOf(name); id >= 0)
            flags[static_cast<size_t>(id)] = true;
    return flags;
}

} // namespace

class PageLines::Builder {
public:
    Builder(PageLines& lines, const PageTree& page)
        : lines_(lines), page_(page), blocks_(FlagsOf(page, blockNames)), silent_(FlagsOf(page, silentNames)) {}

    void Build() {
        const NodeIndex body = page_.Body();
        if (body == noNode)
            return;
        // Where open elements end, the innermost last.
        std::vector<NodeIndex> blockEnds;
        for (NodeIndex node = body; node < page_.End(body);) {
            while (!blockEnds.empty() && blockEnds.back() <= node) {
                blockEnds.pop_back();
                EndLine();
            }
            if (page_.IsElement(node)) {
                const auto name = static_cast<size_t>(page_.NameId(node));
                if (silent_[name] || page_.Space(node) != NodeSpace::Html) {
                    node = page_.End(node);
                    continue;
                }
                if (blocks_[name]) {
                    EndLine();
                    blockEnds.push_back(page_.End(node));
                } else {
                    tagBefore_ = true;
                }
            } else if (page_.IsText(node) && !IsNameOfPicture(page_, node)) {
                AddText(node);
            }
            ++node;
        }
        EndLine();
    }

private:
    void AddText(NodeIndex node) {
        const QStringView text = page_.Text(node);
        const qsizetype begin = lines_.Text.size();
        qsizetype at = 0;
        while (at < text.size()) {
            if (IsBlank(text[at])) {
                blankBefore_ = true;
                ++at;
                continue;
            }
            // Words with single blanks between them are taken at once.
            qsizetype end = at + 1;
            while (end < text.size() &&
                   (!IsBlank(text[end]) || (text[end] == u' ' && end + 1 < text.size() && !IsBlank(text[end + 1]))))
                ++end;
            const bool lineBegun = lineBegin_ < lines_.Text.size();
            // Neighbouring elements without a blank are told apart by the page's style: "<b>12345</b><b>Town</b>".
            const bool apart = tagBefore_ && lineBegun && !IsAmong(lines_.Text.back(), u"(/[") &&
                               !IsAmong(text[at], u",.;:)/%]\u00BB") && page_.Parent(node) != lastParent_ &&
                               !page_.Contains(lastParent_, node) && !page_.Contains(page_.Parent(node), lastNode_);
            if (lineBegun && (blankBefore_ || apart))
                lines_.Text += u' ';
            if (lines_.Pieces.empty() || lines_.Pieces.back().Node != node)
                lines_.Pieces.push_back({node, lines_.Text.size(), 0, static_cast<int>(lines_.Lines.size())});
            lines_.Text += text.sliced(at, end - at);
            lines_.Pieces.back().Length = lines_.Text.size() - lines_.Pieces.back().Begin;
            blankBefore_ = false;
            tagBefore_ = false;
            at = end;
        }
        if (lines_.Text.size() > begin) {
            lastNode_ = node;
            lastParent_ = page_.Parent(node);
        }
    }

    void EndLine() {
        const qsizetype length = lines_.Text.size() - lineBegin_;
        if (length > 0) {
            const int pieces = static_cast<int>(lines_.Pieces.size());
            lines_.Lines.push_back({lineBegin_, length, firstPiece_, pieces - firstPiece_});
            firstPiece_ = pieces;
            lineBegin_ = lines_.Text.size();
        }
        blankBefore_ = false;
        tagBefore_ = false;
        lastNode_ = lastParent_ = noNode;
    }

    PageLines& lines_;
    const PageTree& page_;
    std::vector<bool> blocks_;
    std::vector<bool> silent_;
    qsizetype lineBegin_ = 0;
    int firstPiece_ = 0;
    bool blankBefore_ = false;
    bool tagBefore_ = false;
    NodeIndex lastNode_ = noNode;
    NodeIndex lastParent_ = noNode;
};

PageLines::PageLines(const PageTree& page) {
    Builder(*this, page).Build();
    firstPieces_.resize(static_cast<size_t>(page.Count()) + 1);
    size_t node = 0;
    for (size_t piece = 0; piece < Pieces.size(); ++piece)
        for (; node <= static_cast<size_t>(Pieces[piece].Node); ++node)
            firstPieces_[node] = static_cast<int>(piece);
    std::fill(firstPieces_.begin() + static_cast<std::ptrdiff_t>(node), firstPieces_.end(),
              static_cast<int>(Pieces.size()));
}

QString ShownText(const PageLines& lines, NodeIndex begin, NodeIndex end, QStringView between, qsizetype most) {
    QString shown;
    int line = -1;
    qsizetype behind = 0;
    for (auto i = static_cast<size_t>(lines.PieceFrom(begin)); i < lines.Pieces.size(); ++i) {
        const TextPiece& piece = lines.Pieces[i];
        if (piece.Node >= end || shown.size() >= most)
            break;
        if (line >= 0 && piece.Line != line)
            shown += between;
        else if (line >= 0 && piece.Begin > behind)
            shown += u' ';
        shown += lines.TextOf(piece);
        line = piece.Line;
        behind = piece.Begin + piece.Length;
    }
    shown.truncate(most);
    return shown;
}

SilentElements::SilentElements(const PageTree& page) : page_(page), silent_(FlagsOf(page, silentNames)) {}

bool IsHeading(const PageTree& page, NodeIndex element) {
    const QStringView name = page.Name(element);
    return (name.size() == 2 && name[0] == u'h' && name[1] >= u'1' && name[1] <= u'6') ||
           page.Attribute(element, u"role") == u"heading";
}

QStringView WithoutEndMarks(QStringView text) {
    const auto isMark = [](QChar c) {
        return !Ascii::IsLetterOrDigit(c) &&
               (c.unicode() < 0x80 || (!c.isLetterOrNumber() && !c.isMark() && !c.isSurrogate()));
    };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isMark(text[begin]))
        ++begin;
    while (end > begin && isMark(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

bool IsPlainText(QStringView text) {
    char16_t before = 0;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < u' ' || u > u'~' || (u == u' ' && before == u' '))
            return false;
        before = u;
    }
    return true;
}

QString BareWords(QStringView text) {
    text = WithoutEndMarks(text);
    QString words(text.size(), Qt::Uninitialized);
    if (FoldWestern(text, words.data()))
        return words;
    words = text.toString().toLower();
    bool tidy = true; // the lines of a page have single blanks already
    for (qsizetype i = 0; tidy && i < words.size(); ++i)
        tidy = words[i] == u' ' ? i == 0 || words[i - 1] != u' ' : !words[i].isSpace();
    return tidy ? words : words.simplified();
}

BareView::BareView(QStringView text) {
    text = WithoutEndMarks(text);
    if (text.size() <= static_cast<qsizetype>(short_.size()) && FoldWestern(text, short_.data()))
        size_ = text.size();
    else
        other_ = BareWords(text);
}

} // namespace Brindle
