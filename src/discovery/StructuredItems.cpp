#include "discovery/StructuredItems.h"

#include "discovery/JsonLd.h"
#include "discovery/Microdata.h"
#include "discovery/Microformats.h"
#include "discovery/Rdfa.h"
#include "toolkit/PageAddress.h"

namespace Brindle {

using namespace Qt::StringLiterals;

QString NotationName(Notation notation) {
    switch (notation) {
    case Notation::JsonLd:
        return u"json-ld"_s;
    case Notation::Microdata:
        return u"microdata"_s;
    case Notation::Rdfa:
        return u"rdfa"_s;
    case Notation::Microformats:
        return u"microformats"_s;
    }
    return {};
}

QString BaseAddressOf(const PageTree& page, const QString& url) {
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (page.Is(node, u"base") && page.HasAttribute(node, u"href"))
            return ResolveAddress(url, page.Attribute(node, u"href").toString());
    return url;
}

StructuredItems StructuredItemsOf(const PageTree& page, const QString& url) {
    StructuredItems items;
    const QString base = BaseAddressOf(page, url);
    StructuredText text(page);
    AddJsonLd(page, items);
    AddMicrodata(page, base, text, items);
    AddRdfa(page, base, text, items);
    AddMicroformats(page, base, text, items);
    return items;
}

} // namespace Brindle
