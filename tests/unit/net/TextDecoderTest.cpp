#include "net/TextDecoder.h"

#include "PrintTo.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(DecodePage, ChoosesTheCharacterSetInOrder) {
    struct Case {
        QByteArray Bytes;
        QByteArray ContentType;
        QString Text;
    };
    const QByteArray e8 = "\xC3\xA9";
    const Case cases[] = {
        {e8, "text/html; charset=UTF-8", u"\u00E9"_s},
        {e8, "text/html; charset=\"utf-8\"; x=y", u"\u00E9"_s},
        {"\xE9\x80\x99", "text/html;charset=ISO-8859-1", u"\u00E9\u20AC\u2122"_s}, // the label of Windows-1252
        {"\xA4", "text/html; charset=iso-8859-15", u"\u20AC"_s},
        {QByteArray("\xFE\xFF\x00\xE9", 4), "text/html; charset=utf-16", u"\u00E9"_s},
        {"\x80", "text/html; charset=iso-8859-9", u"\u20AC"_s}, // the label of Windows-1254
        {"\xC9", "text/html; charset=koi", u"\u0438"_s},        // labels that no converter has
        {"\xA1", "text/html; charset=dos-874", u"\u0E01"_s},
        {"\xBA\xBA", "text/html; charset=gb_2312-80", u"\u6C49"_s},
        // One replacement for each beginning of a character, at the end too.
        {"\xE2\x82 \xF0\x9F\x98<\xED\xA0\x80\xC0\xF4\x90\xC3\xA9\xE2\x82", "text/html; charset=utf-8",
         u"\uFFFD \uFFFD<\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u00E9\uFFFD"_s},
        {"\xEF\xBB\xBF" + e8, "", u"\u00E9"_s},
        {"\xEF\xBB\xBF" + e8, "text/html; charset=utf-8", u"\u00E9"_s},
        {QByteArray("\xFF\xFE\xE9\x00", 4), "", u"\u00E9"_s},
        {QByteArray("\xFE\xFF\x00\xE9", 4), "", u"\u00E9"_s},
        {"\xEF\xBB\xBF" + e8, "text/html; charset=windows-1252",
         u"\u00EF\u00BB\u00BF\u00C3\u00A9"_s}, // the header first
        {"<meta charset=latin1>\xE9", "", u"<meta charset=latin1>\u00E9"_s},
        {"<META content='text/html; charset=windows-1251' HTTP-EQUIV=Content-Type>\xC0", "",
         u"<META content='text/html; charset=windows-1251' HTTP-EQUIV=Content-Type>\u0410"_s},
        {"<meta content='charset=windows-1251'>\xC3\xA9", "", u"<meta content='charset=windows-1251'>\u00E9"_s},
        {"<!-- <meta charset=windows-1251> -->\xC3\xA9", "", u"<!-- <meta charset=windows-1251> -->\u00E9"_s},
        {"<meta charset=utf-16>\xC3\xA9", "", u"<meta charset=utf-16>\u00E9"_s},
        {"<meta charset=no-such-set>\xE9", "", u"<meta charset=no-such-set>\u00E9"_s},
        {"<! <meta charset=windows-1251>\xC3\xA9", "", u"<! <meta charset=windows-1251>\u00E9"_s},
        {"<meta charset=windows-1251 \xC3\xA9", "", u"<meta charset=windows-1251 \u00E9"_s}, // never ends
        {"<meta charset=utf-8 charset=windows-1251>\xC3\xA9", "", u"<meta charset=utf-8 charset=windows-1251>\u00E9"_s},
        {"<meta charset=no-such-set><meta charset=windows-1251>\xC0", "",
         u"<meta charset=no-such-set><meta charset=windows-1251>\u0410"_s},
        {e8, "text/html; charset=no-such-set", u"\u00E9"_s},
        {QByteArray(1100, ' ') + "<meta charset=windows-1251>\xC3\xA9", "",
         QString(1100, u' ') + u"<meta charset=windows-1251>\u00E9"}, // too far down
        {"\xE9", "", u"\u00E9"_s},                                    // no UTF-8
        {"a\xC3", "", u"a\u00C3"_s},                                  // a cut-off character is none either
        {QByteArray("a\0b", 3), "", QString(u"a\0b"_s)},
        {"", "", u""_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DecodePage(c.Bytes, c.ContentType), c.Text)
            << c.Bytes.left(90).toHex(' ').data() << c.ContentType.data();
}

TEST(DecodePage, OfADeviceIsThatOfItsBytes) {
    const QByteArray filling = QByteArray("caff\xC3\xA8 \xE2\x82\xAC\xEF\xBB\xBF.").repeated(20'000);
    const QByteArray pages[] = {
        "",
        "caff\xC3\xA8",
        filling,
        filling.first(1 << 16),
        "\xEF\xBB\xBF" + filling,
        "<meta charset=utf-8>" + filling + "\xC3",  // cut off at the end
        "<meta charset=utf-8>" + filling + "\xC3<", // and inside
        filling + "\xE9",
        "<meta charset=windows-1251>" + filling,
        "<meta charset=unicode>" + filling,
        QByteArray("\xFF\xFE") + filling,
        QByteArray(200'000, '\xE9'), // no character ends anywhere
        QByteArray("\xF0\x9F\x98\x80").repeated(50'000),
    };
    for (const QByteArray& page : pages) {
        QBuffer device;
        device.setData(page);
        ASSERT_TRUE(device.open(QIODevice::ReadOnly));
        EXPECT_EQ(DecodePage(device), DecodePage(page)) << page.left(30).toHex(' ').data();
    }
}

} // namespace
} // namespace Brindle
