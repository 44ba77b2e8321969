#include "page/PagePieces.h"

#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// The pieces of a page, "|" between them.
QString Pieces(const QString& page, PagePieces::Cuts cuts, qsizetype size) {
    PagePieces pieces(page, cuts, size);
    QStringList texts;
    for (qsizetype begin = 0; begin < page.size();) {
        const qsizetype end = pieces.EndOf(begin);
        texts.append(page.sliced(begin, end - begin));
        begin = end;
    }
    return texts.join(u'|');
}

TEST(PagePieces, EndBeforeTagsAndNotWithinScriptsAndComments) {
    using enum PagePieces::Cuts;
    struct Case {
        QString Pieces;
        PagePieces::Cuts Cuts = AtAnyTag;
    };
    const Case cases[] = {
        {u"<p>a</p>|<p>b < c|</p><p>d"_s},    {u"<p>a<!DOCTYPE x>|</p><p>b|</p>"_s},
        {u"<script>'<b>'</script>|<p>c"_s},   {u"<SCRIPT>'</styles>'</Script >|<p>c"_s},
        {u"<title><b><i></title>|<i>"_s},     {u"<style></style>|<p>a</p>|<p>b"_s},
        {u"<!-- <p> <b> --> a|<p>c"_s},       {u"<!-- -->|<p><b>b|</b>"_s},
        {u"<script> <b> never ends <b>"_s},   {u"<!-- <b> never ends <b>"_s},
        {u"<a title='|<b>'>a|</a>"_s}, // a wrong guess, which the other cuts put right
        {u"<a title='<b>'>a|</a>"_s, AtTags}, {u"<p>a</p><p>b</p>"_s, Nowhere},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Pieces(QString(c.Pieces).remove(u'|'), c.Cuts, 5), c.Pieces);
}

} // namespace
} // namespace Brindle
