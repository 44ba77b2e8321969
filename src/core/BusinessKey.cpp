#include "core/BusinessKey.h"

#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype fewestDigits = 5;
constexpr qsizetype comparedDigits = 8;

QString FoldedPhone(QStringView text) {
    QString digits;
    for (const QChar c : text) {
        // The next number of the field, or an extension.
        if (c == u';' || c == u',' || c == u'|' || (c.isLetter() && digits.size() >= fewestDigits))
            break;
        if (c.isDigit())
            digits += QChar(u'0' + c.digitValue());
    }
    return digits.size() < fewestDigits ? QString() : digits.last(std::min(digits.size(), comparedDigits));
}

QString FoldedLink(QStringView text) {
    QStringView link = TrimmedView(text);
    if (const qsizetype fragment = link.indexOf(u'#'); fragment >= 0)
        link = link.first(fragment);
    const qsizetype scheme = link.indexOf(u"://");
    if (scheme >= 0 && link.first(scheme).indexOf(u'/') < 0)
        link = link.sliced(scheme + 3);
    if (StartsWithFolded(link, u"www."))
        link = link.sliced(4);
    while (link.endsWith(u'/'))
        link.chop(1);
    return link.toString().toCaseFolded();
}

bool IsPlain(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

QString FoldedForKey(QStringView text) {
    if (IsPlain(text)) {
        QString plain(text.size(), Qt::Uninitialized);
        QChar* to = plain.data();
        for (const QChar c : text)
            if (Ascii::IsLetterOrDigit(c))
                *to++ = Ascii::Lower(c);
        plain.truncate(to - plain.constData());
        return plain;
    }
    QString folded;
    folded.reserve(text.size());
    // Upper case first: it is what makes two letters of "ß", as those who write in capitals do.
    const QString dissolved = text.toString().normalized(QString::NormalizationForm_KD).toUpper().toLower();
    for (const QChar c : dissolved) {
        // Characters beyond the basic plane are kept whole: letters of rare scripts are.
        if (c.isSurrogate() || c.isLetterOrNumber())
            folded += c;
    }
    return folded;
}

QString BusinessKey(const Lead& lead) {
    const QString link = FoldedLink(lead.DetailsLink);
    return link.isEmpty() ? BusinessKeys(lead).value(0) : QString(u"link:"_s + link);
}

QStringList BusinessKeys(const Lead& lead, bool linkTellsApart) {
    QStringList keys;
    const QString name = FoldedForKey(lead.Name);
    const QString link = FoldedLink(lead.DetailsLink);
    if (!link.isEmpty() && (linkTellsApart || !name.isEmpty()))
        keys += linkTellsApart ? QString(u"link:"_s + link) : QString(u"link:"_s + link + u'|' + name);
    if (name.isEmpty())
        return keys;
    const QString phone = FoldedPhone(lead.Phone);
    if (!phone.isEmpty())
        keys += u"phone:"_s + name + u'|' + phone;
    const QString address = FoldedForKey(lead.FullAddress);
    if (!address.isEmpty())
        keys += u"address:"_s + name + u'|' + address;
    return keys;
}

} // namespace Brindle
