#include "page/PagePieces.h"

#include "page/TextSearch.h"
#include "toolkit/Ascii.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool BeginsTag(QStringView text) {
    const qsizetype name = text.size() > 1 && text[1] == u'/' ? 2 : 1;
    const QChar first = text.size() > name ? Ascii::Lower(text[name]) : QChar();
    return Ascii::IsLower(first);
}

qsizetype BehindNext(const QString& html, QStringView what, qsizetype from) {
    const qsizetype found = html.indexOf(what, from);
    return found < 0 ? html.size() : found + what.size();
}

QStringView NameAt(QStringView page, qsizetype at) {
    qsizetype end = at;
    while (end < page.size() && Ascii::IsLetter(page[end]))
        ++end;
    return page.sliced(at, end - at);
}

bool HoldsText(QStringView name) {
    return HoldsRawText(name) || IsSameInAnyCase(name, u"textarea") || IsSameInAnyCase(name, u"title");
}

// Without a way out, so the compiler takes many characters at once.
bool HasSurrogates(QStringView text) {
    char16_t seen = 0;
    for (const QChar c : text)
        seen = static_cast<char16_t>(seen | ((c.unicode() & 0xF800) == 0xD800 ? 1 : 0));
    return seen != 0;
}

// The comment or text element that seems to be open before `end`: what ends it; empty when there is none. A guess from
// the last few tags, so that a page need not be read from its beginning: a wrong one costs time alone.
QStringView SeemsOpen(QStringView page, qsizetype begin, qsizetype end) {
    bool ended = false; // a comment, and so all before it
    for (qsizetype at = end - 1; at >= begin; --at) {
        if (page[at] != u'<' || at + 3 >= end)
            continue;
        if (page[at + 1] == u'!') {
            if (ended || !page.sliced(at).startsWith(u"<!--"))
                continue;
            ended = page.sliced(at + 4, end - at - 4).indexOf(u"-->") >= 0;
            if (!ended)
                return u"-->";
            continue;
        }
        const bool closing = page[at + 1] == u'/';
        const QStringView name = NameAt(page.first(end), at + (closing ? 2 : 1));
        if (name.size() >= 3 && HoldsText(name))
            return closing ? QStringView() : name;
    }
    return {};
}

} // namespace

PagePieces::PagePieces(QStringView page, Cuts cuts, qsizetype size)
    : page_(page), cuts_(cuts), size_(std::max<qsizetype>(size, 1)) {
    if (cuts == Cuts::AtTags)
        scanner_.emplace(page, MarkupScanner::Reading::Page);
}

// Where the next of what looks like a tag begins; another "<" is text, and a text is not cut. -1: nowhere.
qsizetype PagePieces::TagFrom(qsizetype from) const {
    qsizetype at = page_.indexOf(u'<', from);
    while (at >= 0 && !BeginsTag(page_.sliced(at)))
        at = page_.indexOf(u'<', at + 1);
    return at;
}

// Behind what ends an open comment ("-->") or text element (its name).
qsizetype PagePieces::EndOfOpen(QStringView open, qsizetype from) const {
    if (open == u"-->") {
        const qsizetype found = page_.indexOf(open, from);
        return found < 0 ? page_.size() : found + open.size();
    }
    for (qsizetype at = page_.indexOf(u"</", from); at >= 0; at = page_.indexOf(u"</", at + 2))
        if (IsSameInAnyCase(NameAt(page_, at + 2), open))
            return at + 2 + open.size();
    return page_.size();
}

qsizetype PagePieces::EndOf(qsizetype begin) {
    qsizetype end = -1;
    switch (cuts_) {
    case Cuts::AtAnyTag:
        for (end = TagFrom(begin + size_); end >= 0; end = TagFrom(end)) {
            const QStringView open = SeemsOpen(page_, begin, end);
            if (open.isEmpty())
                break;
            end = EndOfOpen(open, end);
        }
        break;
    case Cuts::AtTags:
        while (end < 0 && scanner_->NextTag())
            if (scanner_->TagBegin() >= begin + size_)
                end = scanner_->TagBegin();
        break;
    case Cuts::Nowhere:
        break;
    }
    return end < 0 ? page_.size() : end;
}

QByteArray EncodedPiece(QStringView text) {
    if (!HasSurrogates(text))
        return text.toUtf8();
    QString mended = text.toString();
    for (qsizetype i = 0; i < mended.size(); ++i) {
        if (mended[i].isHighSurrogate() && i + 1 < mended.size() && mended[i + 1].isLowSurrogate())
            ++i;
        else if (mended[i].isSurrogate())
            mended[i] = QChar(QChar::ReplacementCharacter);
    }
    return mended.toUtf8();
}

QString WithoutNuls(const QString& html) {
    QString without;
    without.reserve(html.size());
    const QStringView all(html);
    // Within tags, comments and raw texts a mark stands in their place.
    const auto addMarked = [&](qsizetype begin, qsizetype end) {
        for (const QChar c : all.sliced(begin, end - begin))
            without += c.isNull() ? QChar(QChar::ReplacementCharacter) : c;
    };
    // In texts they are nothing; what follows one begins no tag.
    const auto addText = [&](qsizetype begin, qsizetype end) {
        for (qsizetype at = begin; at < end; ++at)
            if (!all[at].isNull())
                without += all[at];
            else if (at > begin && all[at - 1] == u'<')
                without.replace(without.size() - 1, 1, u"&lt;"_s);
    };
    MarkupScanner scanner(html, MarkupScanner::Reading::Page);
    bool raw = false;
    qsizetype done = 0;
    for (bool tag = true; tag;) {
        tag = scanner.NextTag();
        const qsizetype end = tag ? scanner.TagBegin() : html.size();
        for (qsizetype at = done; !raw && at < end; ++at) {
            const QStringView rest = all.sliced(at, std::min<qsizetype>(4, end - at));
            const bool comment = rest.startsWith(u"<!") || rest.startsWith(u"<?") || rest.startsWith(u"</");
            if (!comment)
                continue;
            addText(done, at);
            done = std::min(end, BehindNext(html, rest == u"<!--" ? u"-->" : u">", at + 2));
            addMarked(at, done);
            at = done - 1;
        }
        if (raw)
            addMarked(done, end);
        else
            addText(done, end);
        while (tag && scanner.NextAttribute()) {
        }
        done = tag ? scanner.Position() : html.size();
        addMarked(end, done);
        raw = tag && !scanner.Closing() && HoldsText(scanner.Name());
    }
    return without;
}

QString WithoutEmptyEndTags(const QString& html) {
    QString without;
    qsizetype copied = 0;
    qsizetype text = 0; // where what stands between the tags begins
    bool raw = false;
    MarkupScanner scanner(html, MarkupScanner::Reading::Page);
    for (bool tag = true; tag;) {
        tag = scanner.NextTag();
        const qsizetype end = tag ? scanner.TagBegin() : html.size();
        for (qsizetype at = html.indexOf(u'<', text); !raw && at >= 0 && at < end; at = html.indexOf(u'<', at)) {
            const QStringView rest = QStringView(html).sliced(at);
            if (rest.startsWith(u"</>")) {
                without += QStringView(html).sliced(copied, at - copied);
                copied = at += 3;
            } else if (rest.startsWith(u"<!--")) {
                at = BehindNext(html, u"-->", at + 4);
            } else if (rest.size() > 1 && (rest[1] == u'!' || rest[1] == u'?' || rest[1] == u'/')) {
                at = BehindNext(html, u">", at + 2);
            } else {
                ++at;
            }
        }
        while (tag && scanner.NextAttribute()) {
        }
        text = scanner.Position();
        raw = tag && !scanner.Closing() &&
              (HoldsRawText(scanner.Name()) || IsSameInAnyCase(scanner.Name(), u"textarea") ||
               IsSameInAnyCase(scanner.Name(), u"title"));
    }
    return without + QStringView(html).sliced(copied);
}

} // namespace Brindle
