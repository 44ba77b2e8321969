#include "store/SearchTable.h"

#include <QStringConverter>

#include <gtest/gtest.h>

using namespace Brindle;
using namespace Qt::StringLiterals;

namespace {

SearchTable Read(const QString& text) {
    return ReadSearchTable(text, [](const SearchRow& row) {
        return SearchFault{row.Site == u"NONE" ? SearchFault::Why::UnknownDirectory : SearchFault::Why::None,
                           {row.Site}};
    });
}

} // namespace

TEST(SearchTable, ReadsWhatSpreadsheetsGive) {
    const std::vector<SearchRow> starts{{2, u"A"_s, u"http://dir.test/?a=1,2"_s, {}, {}},
                                        {4, u"B"_s, u"https://dir.test/"_s, {}, {}}};
    for (const QString& text : {u"site,start\nA,\"http://dir.test/?a=1,2\"\n\nB,https://dir.test/"_s,
                                u"\uFEFFSite;Start\r\nA;http://dir.test/?a=1,2\r\n\r\nB;https://dir.test/\r\n"_s,
                                u"site\tstart\nA\t http://dir.test/?a=1,2\n\nB\thttps://dir.test/\n"_s}) {
        const SearchTable table = Read(text);
        EXPECT_EQ(table.Rows, starts) << text.toStdString();
        EXPECT_TRUE(table.Problems.empty());
        EXPECT_EQ(table.Digest(), Read(u"site,start\nA,\"http://dir.test/?a=1,2\"\n\nB,https://dir.test/"_s).Digest());
    }
    const SearchTable searches = Read(u"site,what,where\nA,\"Bars \"\"X\"\",\nCafés\",Milano\nA,,Roma\n"_s);
    const std::vector<SearchRow> expected{{2, u"A"_s, {}, u"Bars \"X\",\nCafés"_s, u"Milano"_s},
                                          {4, u"A"_s, {}, u""_s, u"Roma"_s}};
    EXPECT_EQ(searches.Rows, expected);
}

TEST(SearchTable, NeedsNoHeaderWhereItIsPasted) {
    const auto whyNot = [](const SearchRow&) { return SearchFault(); };
    const SearchTable pasted =
        ReadSearchTable(u"A\tBars; Cafés\tMilano, MI\nB\t\tRoma\n"_s, whyNot, TableHeader::Optional);
    const std::vector<SearchRow> expected{{1, u"A"_s, {}, u"Bars; Cafés"_s, u"Milano, MI"_s},
                                          {2, u"B"_s, {}, u""_s, u"Roma"_s}};
    EXPECT_EQ(pasted.Rows, expected);
    const SearchTable starts = ReadSearchTable(u"A;http://a.test/,1"_s, whyNot, TableHeader::Optional);
    ASSERT_EQ(starts.Rows.size(), 1U);
    EXPECT_EQ(starts.Rows[0].Start, u"http://a.test/,1"_s);
    const SearchTable few = ReadSearchTable(u"A"_s, whyNot, TableHeader::Optional);
    ASSERT_EQ(few.Problems.size(), 1U);
    EXPECT_EQ(few.Problems[0].Text(), u"line 1: 1 columns instead of 3"_s);
    // The store knows a search by its line, so the same searches on other lines are another list.
    const SearchTable headed = Read(u"site\twhat\twhere\nA\tBars; Cafés\tMilano, MI\nB\t\tRoma\n"_s);
    EXPECT_EQ(headed.Rows.size(), pasted.Rows.size());
    EXPECT_NE(headed.Digest(), pasted.Digest());
}

TEST(SearchTable, ReadsTheFilesOfSpreadsheets) {
    const QString text = u"site,what,where\nA,Caffè,Forlì\n"_s;
    QStringEncoder utf16(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    for (const QByteArray& bytes :
         {text.toUtf8(), QByteArray("\xEF\xBB\xBF" + text.toUtf8()), text.toLatin1(), QByteArray(utf16(text))})
        EXPECT_EQ(Read(TableText(bytes)).Rows.at(0).Place, u"Forlì"_s);
}

TEST(SearchTable, NamesWrongRowsByTheirLine) {
    const SearchTable table =
        Read(u"site,start\nA,ftp://dir.test/\nNONE,http://a.test/\nA\nA,http://,\nA,http://ok.test/\n"
             "A,javascript:alert(1)\nA,\"http://open.test/\n"_s);
    ASSERT_EQ(table.Rows.size(), 1U);
    EXPECT_EQ(table.Rows[0].Line, 6);
    using Why = SearchFault::Why;
    const std::pair<int, Why> expected[] = {{2, Why::NoAddress}, {3, Why::UnknownDirectory}, {4, Why::Columns},
                                            {5, Why::Columns},   {7, Why::NoAddress},        {8, Why::OpenQuote}};
    ASSERT_EQ(table.Problems.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(table.Problems[i].Line, expected[i].first);
        EXPECT_EQ(table.Problems[i].Fault.Kind, expected[i].second) << table.Problems[i].Text().toStdString();
    }
    for (const QString& text : {u"start,site\nhttp://a.test/,A\n"_s, QString()}) {
        ASSERT_EQ(Read(text).Problems.size(), 1U);
        EXPECT_EQ(Read(text).Problems[0].Text(), u"line 1: the header is neither site,start nor site,what,where"_s);
    }
}
