#include "discovery/StructuredData.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(StructuredData, APageThatSaysNothingHasNoRecords) {
    const QString html = u"<ul><li>Joe's Pizza, 416-555-0100</ul>"_s;
    EXPECT_TRUE(StructuredRecords(PageTree(html), u"https://dir.example/"_s).empty());
}

} // namespace
} // namespace Brindle
