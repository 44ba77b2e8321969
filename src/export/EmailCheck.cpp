#include "export/EmailCheck.h"

#include <QSet>
#include <QUrl>

#include <algorithm>
#include <array>

#ifdef BRINDLE_HAS_PSL
#include "core/Errors.h"
#include "core/LoadedLibrary.h"
#include "toolkit/Ascii.h"

#include <libpsl.h>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsDomainLabel(QStringView label) {
    if (label.isEmpty() || label.size() > 63 || label.front() == u'-' || label.back() == u'-')
        return false;
    return std::all_of(label.begin(), label.end(),
                       [](QChar c) { return Ascii::IsLower(c) || Ascii::IsDigit(c) || c == u'-'; });
}

#ifdef BRINDLE_HAS_PSL
#define PSL_FUNCTIONS(FUNCTION)                                                                                        \
    FUNCTION(psl_, builtin)                                                                                            \
    FUNCTION(psl_, is_public_suffix2)                                                                                  \
    FUNCTION(psl_, registrable_domain)
BRINDLE_FUNCTION_TABLE(PslFunctions, PSL_FUNCTIONS);
#ifdef BRINDLE_PSL_LIBRARY
BRINDLE_LOADED_LIBRARY(PslFunctions, Psl, PSL_FUNCTIONS, BRINDLE_PSL_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(PslFunctions, Psl, PSL_FUNCTIONS)
#endif

// Null where there is no list.
const psl_ctx_t* SuffixList() {
    static const psl_ctx_t* const list = []() -> const psl_ctx_t* {
        try {
            return Psl().builtin();
        } catch (const Failure&) {
            return nullptr;
        }
    }();
    return list;
}
#endif

bool IsTopLevelDomain(const QString& label) {
#ifdef BRINDLE_HAS_PSL
    // Every top-level domain is a rule of the list; its rule for names that it does not know is left out.
    if (SuffixList())
        return Psl().is_public_suffix2(SuffixList(), label.toLatin1().constData(),
                                       PSL_TYPE_ICANN | PSL_TYPE_NO_STAR_RULE) != 0;
#endif
    return label.size() >= 2 && std::all_of(label.begin(), label.end(), [](QChar c) { return c.isLetter(); });
}

// Names with an "@" that websites have for their files: pictures at several densities, versions of scripts.
bool IsFileName(QStringView domain) {
    static constexpr std::array<QStringView, 16> endings{u"png", u"jpg", u"jpeg", u"gif",  u"webp", u"svg",
                                                         u"bmp", u"ico", u"avif", u"tiff", u"css",  u"js",
                                                         u"mjs", u"map", u"woff", u"pdf"};
    const QStringView last = domain.sliced(domain.lastIndexOf(u'.') + 1);
    return std::find(endings.begin(), endings.end(), last) != endings.end();
}

bool IsLocalPart(QStringView text) {
    if (text.isEmpty() || text.size() > 64 || text.front() == u'.' || text.back() == u'.' || text.contains(u".."))
        return false;
    static constexpr QStringView others = u"!#$%&'*+-/=?^_`{|}~.";
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return Ascii::IsLetterOrDigit(c) || others.contains(c) || c.unicode() >= 0xa0; // RFC 6531
    });
}

} // namespace

QString DomainOfEmail(const QString& address) {
    const qsizetype at = address.lastIndexOf(u'@');
    return at < 0 ? QString() : QString::fromLatin1(QUrl::toAce(address.sliced(at + 1).toLower()));
}

QString RegisteredDomain(const QString& host) {
#ifdef BRINDLE_HAS_PSL
    const QByteArray ascii = QUrl::toAce(host.toLower());
    if (const char* const domain = SuffixList() ? Psl().registrable_domain(SuffixList(), ascii.constData()) : nullptr)
        return QString::fromLatin1(domain);
#endif
    return host.toLower();
}

bool CanBeEmail(const QString& address) {
    const qsizetype at = address.indexOf(u'@');
    if (at < 1 || address.size() > 254 || address.indexOf(u'@', at + 1) >= 0 || !IsLocalPart(address.first(at)))
        return false;
    const QString domain = DomainOfEmail(address);
    const QStringList labels = domain.split(u'.');
    return labels.size() >= 2 &&
           std::all_of(labels.begin(), labels.end(), [](const QString& l) { return IsDomainLabel(l); }) &&
           !IsFileName(domain) && IsTopLevelDomain(labels.last());
}

QStringList UsableEmails(const QString& emails, const QString& website) {
    QString host = QUrl(website.trimmed()).host();
    if (host.isEmpty())
        host = QUrl(u"http://"_s + website.trimmed()).host();
    const QString own = host.isEmpty() ? QString() : RegisteredDomain(host);
    QStringList ofOwn;
    QStringList others;
    QSet<QString> seen;
    QString text = emails;
    for (QChar& c : text)
        if (c == u';' || c == u',' || c.isSpace() || c.unicode() < 0x20)
            c = u';';
    for (const QString& address : text.split(u';', Qt::SkipEmptyParts)) {
        if (!CanBeEmail(address) || seen.contains(address.toLower()))
            continue;
        seen.insert(address.toLower());
        (!own.isEmpty() && RegisteredDomain(DomainOfEmail(address)) == own ? ofOwn : others).append(address);
    }
    return ofOwn + others;
}

} // namespace Brindle
