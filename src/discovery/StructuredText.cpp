#include "discovery/StructuredText.h"

namespace Brindle {

namespace {

constexpr char inlineKind = 0;
constexpr char blockKind = 1;
constexpr char hiddenKind = 2;
constexpr char imageKind = 3;

// How often a page may be gone through for the sake of values that lie in each other.
constexpr qint64 passes = 8;
constexpr qint64 smallPage = 20'000;
constexpr qsizetype charactersOfAStep = 32;

constexpr QStringView blocks[] = {u"address", u"article", u"aside", u"blockquote", u"br", u"dd",     u"div", u"dl",
                                  u"dt",      u"footer",  u"form",  u"h1",         u"h2", u"h3",     u"h4",  u"h5",
                                  u"h6",      u"header",  u"hr",    u"li",         u"ol", u"option", u"p",   u"pre",
                                  u"section", u"table",   u"tbody", u"td",         u"th", u"tr",     u"ul"};
constexpr QStringView hidden[] = {u"script", u"style", u"template", u"noscript"};

bool HasNoWidth(char16_t c) {
    return c == 0xad || (c >= 0x200b && c <= 0x200f) || c == 0x2060 || c == 0xfeff;
}

bool IsBlank(QChar c) {
    return c.unicode() <= u' ' || c.isSpace();
}

// Whether a text stays as it is when its blanks are levelled.
bool IsLevel(QStringView text) {
    bool blank = true;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool plain = u > u' ' && u < 0x80;
        if (!plain && (u == u' ' ? blank : IsBlank(c) || HasNoWidth(u)))
            return false;
        blank = u == u' ';
    }
    return text.isEmpty() || !blank;
}

// Appends texts with a single blank wherever blanks stood.
class Levelled {
public:
    void Blank() { blank_ = true; }
    void Add(QStringView text) {
        for (qsizetype at = 0; at < text.size();) {
            if (IsBlank(text[at])) {
                blank_ = true;
                ++at;
            } else if (HasNoWidth(text[at].unicode())) {
                ++at;
            } else {
                const qsizetype begin = at;
                while (at < text.size() && !IsBlank(text[at]) && !HasNoWidth(text[at].unicode()))
                    ++at;
                AddWord(text.sliced(begin, at - begin));
            }
        }
    }
    // A text that is level already.
    void AddLevel(QStringView text) {
        if (!text.isEmpty())
            AddWord(text);
    }
    QString Take() { return std::move(result_); }

private:
    void AddWord(QStringView word) {
        if (result_.isEmpty())
            result_ = word.toString();
        else if (blank_)
            result_ += u' ' + word;
        else
            result_ += word;
        blank_ = false;
    }

    QString result_;
    bool blank_ = false;
};

} // namespace

QString WithLevelBlanks(const QString& text) {
    return IsLevel(text) ? text : WithLevelBlanks(QStringView(text));
}

QString WithLevelBlanks(QStringView text) {
    if (IsLevel(text))
        return text.toString();
    Levelled levelled;
    levelled.Add(text);
    return levelled.Take();
}

StructuredText::StructuredText(const PageTree& page)
    : page_(page), kinds_(static_cast<size_t>(page.NameCount()), inlineKind), left_(smallPage + passes * page.Count()) {
    const auto note = [this](QStringView name, char kind) {
        if (const int id = page_.NameIdOf(name); id >= 0)
            kinds_[static_cast<size_t>(id)] = kind;
    };
    for (const QStringView name : blocks)
        note(name, blockKind);
    for (const QStringView name : hidden)
        note(name, hiddenKind);
    note(u"img", imageKind);
}

QString StructuredText::Of(NodeIndex node, Images images) {
    Levelled text;
    const NodeIndex end = page_.End(node);
    std::vector<NodeIndex> blockEnds; // of the blocks around the place, innermost last
    for (NodeIndex at = node; at < end;) {
        if (!Spend(1))
            break;
        while (!blockEnds.empty() && blockEnds.back() <= at) {
            blockEnds.pop_back();
            text.Blank();
        }
        NodeIndex next = at + 1;
        if (page_.IsText(at)) {
            const QStringView characters = page_.Text(at);
            if (!Spend(characters.size() / charactersOfAStep))
                break;
            if (IsLevel(characters))
                text.AddLevel(characters);
            else
                text.Add(characters);
        } else if (page_.IsElement(at)) {
            switch (kinds_[static_cast<size_t>(page_.NameId(at))]) {
            case blockKind:
                text.Blank();
                blockEnds.push_back(page_.End(at));
                break;
            case hiddenKind:
                if (at != node)
                    next = page_.End(at);
                break;
            case imageKind:
                if (images == Images::Described) {
                    text.Blank();
                    text.Add(page_.Attribute(at, u"alt"));
                    text.Blank();
                }
                break;
            default:
                break;
            }
        }
        at = next;
    }
    return text.Take();
}

} // namespace Brindle
