#include "discovery/StructuredItems.h"

#include "discovery/JsonLd.h"
#include "discovery/Microdata.h"
#include "discovery/Microformats.h"
#include "discovery/NextPage.h"
#include "discovery/Rdfa.h"

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
