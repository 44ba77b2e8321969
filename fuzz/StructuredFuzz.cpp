#include "Input.h"
#include "core/Errors.h"
#include "discovery/StructuredData.h"

using namespace Qt::StringLiterals;

// A page with structured data; one that begins with a brace or bracket is the text of a script of JSON-LD.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    const QString input = Fuzz::TextOf(data, size);
    const bool isScript = input.startsWith(u'{') || input.startsWith(u'[');
    const QString html = isScript ? QString(u"<script type=application/ld+json>"_s + input) : input;
    const QString url = u"https://www.dir.example/list?page=2"_s;
    try {
        const PageTree page(html);
        const StructuredItems items = StructuredItemsOf(page, url);
        const int count = static_cast<int>(items.Items.size());
        for (const StructuredItem& item : items.Items) {
            Fuzz::Require(item.Parent < count && item.Node < page.Count(), "an item stands on the page");
            for (const StructuredProperty& property : item.Properties)
                Fuzz::Require(property.Item < count && property.Node < page.Count(), "a value stands on the page");
            int steps = 0;
            for (int at = item.Parent; at >= 0; at = items.At(at).Parent)
                Fuzz::Require(++steps <= count, "no item holds itself");
        }
        for (const StructuredRecord& record : StructuredRecords(page, url)) {
            Fuzz::Require(record.Node == noNode || page.IsElement(record.Node), "a record is an element");
            for (const QString& link : {record.Fields.Website, record.Fields.DetailsLink, record.Fields.MapLink})
                Fuzz::Require(link.isEmpty() || link.startsWith(u"http:", Qt::CaseInsensitive) ||
                                  link.startsWith(u"https:", Qt::CaseInsensitive),
                              "links are those of the web");
        }
    } catch (const Failure&) {
        // A page beyond the parser's bounds.
    }
    return 0;
}
