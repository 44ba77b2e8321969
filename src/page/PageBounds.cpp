#include "page/PageBounds.h"

#include "core/Errors.h"
#include "page/MarkupScanner.h"

#include <algorithm>
#include <array>
#include <gumbo.h>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A name in any case as a number; two different names of HTML never give the same one.
constexpr quint64 IdOf(std::u16string_view name) {
    quint64 id = 14695981039346656037ULL;
    for (const char16_t u : name) {
        id = (id ^ (u >= u'A' && u <= u'Z' ? u + 32U : u)) * 1099511628211ULL;
    }
    return id;
}

template <size_t N>
class NameSet {
public:
    constexpr explicit NameSet(const std::u16string_view (&names)[N]) {
        std::transform(std::begin(names), std::end(names), ids_.begin(), IdOf);
        std::sort(ids_.begin(), ids_.end());
    }
    bool Contains(quint64 id) const { return std::binary_search(ids_.begin(), ids_.end(), id); }

private:
    std::array<quint64, N> ids_{};
};

// Elements without an end tag, those whose end tag is optional and those that end each other. These cannot lie in each
// other without one that is counted.
constexpr NameSet uncounted({u"a",      u"nobr",    u"area", u"base",     u"basefont", u"bgsound", u"body",
                             u"br",     u"caption", u"col",  u"colgroup", u"dd",       u"dt",      u"embed",
                             u"frame",  u"head",    u"hr",   u"html",     u"image",    u"img",     u"input",
                             u"keygen", u"li",      u"link", u"meta",     u"optgroup", u"option",  u"p",
                             u"param",  u"rb",      u"rp",   u"rt",       u"rtc",      u"source",  u"tbody",
                             u"td",     u"tfoot",   u"th",   u"thead",    u"tr",       u"track",   u"wbr"});

constexpr NameSet endsHead({u"body", u"br", u"head", u"html"});
constexpr NameSet ofHead({u"base", u"basefont", u"bgsound", u"head", u"html", u"link", u"meta", u"noframes",
                          u"noscript", u"script", u"style", u"template", u"title"});

// Counts how deep the elements of a page lie in each other.
class NestingCount {
public:
    bool IsOpen(quint64 id) const { return open_.contains(id); }
    /// Takes the next tag; the number of elements that are open then.
    qsizetype Add(quint64 id, bool closing) {
        if (uncounted.Contains(id))
            return Depth();
        if (!closing) {
            ++open_[id];
            stack_.push_back(id);
        } else if (open_.contains(id)) {
            // An end tag closes what was left open within its element.
            for (bool found = false; !found; stack_.pop_back()) {
                found = stack_.back() == id;
                const auto entry = open_.find(stack_.back());
                if (--entry->second == 0)
                    open_.erase(entry);
            }
        }
        return Depth();
    }

private:
    qsizetype Depth() const { return static_cast<qsizetype>(stack_.size()); }

    std::vector<quint64> stack_;
    std::unordered_map<quint64, int> open_; // only names that are on the stack
};

// Follows a page's tags as far as is needed to know whether its head is still open: there, raw text goes by other
// rules than between head and body.
class HeadWatch {
public:
    bool InHead() const { return inHead_; }
    void Add(quint64 id, bool closing) {
        // Any other end tag is ignored there.
        if (closing)
            inHead_ = inHead_ && !endsHead.Contains(id);
        else
            inHead_ = inHead_ && ofHead.Contains(id);
    }

private:
    bool inHead_ = true;
};

QStringView AliasOf(quint64 id, bool inHead) {
    // Scripts run in the browsers of today, so noscript is raw text. The parser has two elements that are.
    if (id == IdOf(u"noscript"))
        return inHead ? u"noframes" : u"noembed";
    // Both end a paragraph. Each has a name that pages of today hardly have, so that no end tag of another element ends
    // it.
    if (id == IdOf(u"main"))
        return u"hgroup";
    if (id == IdOf(u"dialog"))
        return u"dir";
    if (id == IdOf(u"menuitem") || id == IdOf(u"isindex"))
        return u"brindle-unknown"; // once an element without end tag and one that stood for a form
    return {};
}

// The parser takes all elements that it does not know for the same one.
bool IsKnown(QStringView name) {
    const QByteArray utf8 = name.toUtf8();
    return gumbo_tagn_enum(utf8.constData(), static_cast<unsigned>(utf8.size())) != GUMBO_TAG_UNKNOWN;
}

[[noreturn]] void Refuse(const QString& reason) {
    throw Failure(u"the page "_s + reason + u", so it was not read"_s);
}

// Characters that the parser takes for errors and replaces, which engines keep. They go through it as characters of
// the last private-use plane.
bool IsMoved(char16_t c) {
    return (c < 0x20 && c != 0 && c != u'\t' && c != u'\n' && c != u'\f' && c != u'\r') || (c >= 0x7f && c < 0xa0) ||
           (c >= 0xfdd0 && c < 0xfdf0);
}

constexpr char16_t movedHigh = 0xdbc0; // the first of the plane's 64 high surrogates

// Moves control characters and mends what is no UTF-16.
PreparedPage Encoded(const QString& html) {
    PreparedPage page;
    const auto isOdd = [](QChar c) { return IsMoved(c.unicode()) || c.isSurrogate(); };
    auto odd = std::find_if(html.cbegin(), html.cend(), isOdd);
    if (odd == html.cend()) {
        page.Utf8 = html.toUtf8();
        return page;
    }
    QString mended;
    mended.reserve(html.size() + 64);
    const QChar* done = html.cbegin();
    for (; odd != html.cend(); odd = std::find_if(odd, html.cend(), isOdd)) {
        mended.append(QStringView(done, odd));
        const char16_t c = odd->unicode();
        if (IsMoved(c)) {
            page.ControlsMoved = true;
            mended.append(QChar(movedHigh + (c >> 10)));
            mended.append(QChar(0xdc00 + (c & 0x3ff)));
        } else if (odd->isHighSurrogate() && odd + 1 != html.cend() && odd[1].isLowSurrogate()) {
            mended.append(QStringView(odd, 2));
            ++odd;
        } else {
            mended.append(QChar(QChar::ReplacementCharacter));
        }
        done = ++odd;
    }
    mended.append(QStringView(done, html.cend()));
    page.Utf8 = mended.toUtf8();
    return page;
}

} // namespace

QString WithControls(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t high = text[i].unicode();
        if (high >= movedHigh && high < movedHigh + 64 && i + 1 < text.size()) {
            const auto c = static_cast<char16_t>(((high - movedHigh) << 10) | (text[i + 1].unicode() & 0x3ff));
            if (IsMoved(c)) {
                result.append(QChar(c));
                ++i;
                continue;
            }
        }
        result.append(text[i]);
    }
    return result;
}

PreparedPage Prepare(const QString& html, const PageBounds& bounds) {
    if (html.size() > bounds.Size)
        Refuse(u"has more than %1 characters"_s.arg(bounds.Size));
    NestingCount nesting;
    HeadWatch head;
    MarkupScanner scanner(html, MarkupScanner::Reading::Page);
    QString aliased;
    qsizetype copied = 0;
    std::vector<qsizetype> valueless; // where attributes of the tag end that can repeat another and have no value
    while (scanner.NextTag()) {
        int attributes = 0;
        valueless.clear();
        while (scanner.NextAttribute()) {
            if (++attributes > bounds.Attributes)
                Refuse(u"has a tag with more than %1 attributes"_s.arg(bounds.Attributes));
            if (attributes > 1 && !scanner.Closing() && scanner.Current().Quoting == MarkupScanner::Quote::NoValue)
                valueless.push_back(scanner.Current().End);
        }
        if (!scanner.Closed())
            break;
        const quint64 id = IdOf({scanner.Name().utf16(), static_cast<size_t>(scanner.Name().size())});
        const bool endsNothing = scanner.Closing() && !nesting.IsOpen(id) && !IsKnown(scanner.Name());
        if (nesting.Add(id, scanner.Closing()) > bounds.Depth)
            Refuse(u"has more than %1 elements nested in each other"_s.arg(bounds.Depth));
        if (endsNothing || (scanner.Closing() && id == IdOf(u"form"))) {
            // Otherwise the end tag of an unknown element ends another one, and the text before that of a form comes
            // to stand behind the form.
            aliased.append(QStringView(html).mid(copied, scanner.TagBegin() - copied));
            aliased.append(u"<!--"_s + QLatin1String(flushComment) + u"-->"_s);
            copied = endsNothing ? scanner.Position() : scanner.TagBegin();
        } else if (const QStringView alias = AliasOf(id, head.InHead()); !alias.isEmpty()) {
            aliased.append(QStringView(html).mid(copied, scanner.NameBegin() - copied));
            aliased.append(alias);
            if (!scanner.Closing())
                // In quotes: a "/" may come next.
                aliased.append(u' ' + QLatin1String(aliasAttribute) + u"=\"" + scanner.Name().toString().toLower() +
                               u'"');
            copied = scanner.NameEnd();
        }
        // Otherwise the name of a repeated one is put in front of the name of the next.
        for (const qsizetype end : valueless) {
            aliased.append(QStringView(html).mid(copied, end - copied));
            aliased.append(u"=\"\"");
            copied = end;
        }
        head.Add(id, scanner.Closing());
    }
    if (copied == 0)
        return Encoded(html);
    aliased.append(QStringView(html).mid(copied));
    return Encoded(aliased);
}

} // namespace Brindle
