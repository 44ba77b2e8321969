#include "page/PagePieces.h"

#include "page/TextSearch.h"

#include <algorithm>

namespace Brindle {

namespace {

bool BeginsTag(QStringView text) {
    const qsizetype name = text.size() > 1 && text[1] == u'/' ? 2 : 1;
    const QChar first = text.size() > name ? LowerLetter(text[name]) : QChar();
    return first >= u'a' && first <= u'z';
}

qsizetype BehindNext(const QString& html, QStringView what, qsizetype from) {
    const qsizetype found = html.indexOf(what, from);
    return found < 0 ? html.size() : found + what.size();
}

} // namespace

PagePieces::PagePieces(QStringView page, Cuts cuts, qsizetype size)
    : page_(page), cuts_(cuts), size_(std::max<qsizetype>(size, 1)) {
    if (cuts == Cuts::AtTags)
        scanner_.emplace(page, MarkupScanner::Reading::Page);
}

qsizetype PagePieces::EndOf(qsizetype begin) {
    qsizetype end = -1;
    switch (cuts_) {
    case Cuts::AtAnyTag:
        // Another "<" is text, and a text is not cut.
        for (end = page_.indexOf(u'<', begin + size_); end >= 0 && !BeginsTag(page_.sliced(end));)
            end = page_.indexOf(u'<', end + 1);
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
    if (std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); }))
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
