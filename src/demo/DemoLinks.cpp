#include "demo/DemoLinks.h"

#include "demo/BusinessWebsites.h"

#include <optional>

namespace Brindle::Demo {

namespace {

std::optional<WebsiteKind> KindOf(Web website) {
    switch (website) {
    case Web::Plain:
        return WebsiteKind::Plain;
    case Web::Start:
        return WebsiteKind::Start;
    case Web::Contact:
        return WebsiteKind::Contact;
    case Web::Large:
        return WebsiteKind::Large;
    case Web::Missing:
        return WebsiteKind::Missing;
    case Web::None:
    case Web::Secure:
    case Web::Pdf:
        break;
    }
    return {};
}

} // namespace

QString SlugOf(QStringView name) {
    QString slug;
    for (const QChar c : name)
        if (c.unicode() < 0x80 && c.isLetterOrNumber())
            slug += c.toLower();
        else if (!slug.isEmpty() && !slug.endsWith(u'-'))
            slug += u'-';
    return slug.endsWith(u'-') ? slug.chopped(1) : slug;
}

QString AddressOf(const DemoContext& context, Web website, QStringView name) {
    const QString slug = SlugOf(name);
    if (website == Web::Secure)
        return u"https://127.0.0.1:9/" + slug + u'/'; // nobody answers there
    if (website == Web::Pdf)
        return WebsiteOf(context, WebsiteKind::Plain, slug) + u"catalogue.pdf";
    const std::optional<WebsiteKind> kind = KindOf(website);
    return kind ? WebsiteOf(context, *kind, slug) : QString();
}

QString EmailsBehind(Web website, QStringView name) {
    const std::optional<WebsiteKind> kind = KindOf(website);
    return kind ? EmailsOn(*kind, SlugOf(name)) : QString();
}

QString MapLinkOf(const DemoContext& context, const QString& fullAddress, QStringView country) {
    const QString query = fullAddress + u',' + country;
    return context.Maps + u"/maps?q=" + QString(query).replace(u' ', u'+');
}

} // namespace Brindle::Demo
