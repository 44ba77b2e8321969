#include "discovery/StructuredData.h"

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

std::vector<StructuredRecord> StructuredRecords(const PageTree&, const QString&) {
    return {};
}

} // namespace Brindle
