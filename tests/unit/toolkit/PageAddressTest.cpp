#include "toolkit/PageAddress.h"

#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

struct AddressCase {
    QStringView Base;
    QStringView Href;
    QStringView Target;
};

TEST(PageAddress, LinksAreResolvedAsBrowsersDo) {
    const AddressCase cases[] = {
        {u"http://a.b/c/d?e=/f#g", u"h", u"http://a.b/c/h"},
        {u"http://a.b/c/d?e=/f#g", u"/h", u"http://a.b/h"},
        {u"http://a.b/c/d?e=/f#g", u"?h", u"http://a.b/c/d?h"},
        {u"http://a.b/c/d?e=/f#g", u"#h", u"http://a.b/c/d?e=/f#h"},
        {u"http://a.b/c/d?e=/f#g", u"", u"http://a.b/c/d?e=/f"},
        {u"https://a.b/c", u"//d.e/f", u"https://d.e/f"},
        {u"https://a.b/c", u"http://d.e/f?g=h\\i", u"http://d.e/f?g=h\\i"},
        {u"https://a.b/c", u" HTTPS://d.e/ ", u"HTTPS://d.e/"},
        {u"http://a.b", u"c", u"http://a.b/c"},
        {u"http://a.b?q", u"c", u"http://a.b/c"},
        {u"http://a.b/c/d", u"../e:f", u"http://a.b/c/../e:f"},
        {u"http://a.b/c/d", u"\t/e\n/f g\n", u"http://a.b/e/f g"},
        {u"http://a.b/c/d", u"\\e\\f", u"http://a.b/e/f"},
        {u"http://a.b/c/d", u"http:e", u"http://a.b/c/e"},
        {u"http://a.b/c/d", u"javascript:go('/x\\n')", u"javascript:go('/x\\n')"},
    };
    for (const AddressCase& c : cases)
        EXPECT_EQ(ResolveAddress(c.Base.toString(), c.Href.toString()), c.Target.toString());
}

TEST(PageAddress, RequestsNameThemNormally) {
    struct Case {
        QStringView Given;
        QStringView Normal;
    };
    const Case cases[] = {
        {u"HTTP://A.b", u"http://A.b/"},
        {u"http://a.b?c=d e#f g", u"http://a.b/?c=d%20e#f%20g"},
        {u"http://u:p@a.b:80/./c/../d/..", u"http://u:p@a.b:80/"},
        {u"http://a.b/c/./d//../e/.", u"http://a.b/c/d/e/"},
        {u"http://a.b/../../c?/../d", u"http://a.b/c?/../d"},
        {u"http://a.b/\u00E9%20%zz\"<>", u"http://a.b/%C3%A9%20%zz%22%3C%3E"},
        {u"http://\u00E9.b/\u00E9", u"http://\u00E9.b/%C3%A9"},
        {u"ftp://a.b/c/../d", u"ftp://a.b/c/../d"},
        {u"", u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(NormalAddress(c.Given.toString()), c.Normal.toString());
        EXPECT_EQ(NormalAddress(c.Normal.toString()), c.Normal.toString());
    }
}

TEST(PageAddress, TypedOnesGetAScheme) {
    EXPECT_EQ(TypedAddress(u" www.a.b/c "_s), u"http://www.a.b/c"_s);
    EXPECT_EQ(TypedAddress(u"localhost:8080/c"_s), u"http://localhost:8080/c"_s);
    EXPECT_EQ(TypedAddress(u"HTTPS://a.b"_s), u"HTTPS://a.b"_s);
    EXPECT_EQ(TypedAddress(u"about:blank"_s), u"about:blank"_s);
    EXPECT_EQ(TypedAddress(QString()), QString());
}

TEST(PageAddress, TheRefererTellsNoMoreThanItShould) {
    const auto referer = [](const char* from, const char* to) {
        return RefererFor(QString::fromLatin1(from), QString::fromLatin1(to));
    };
    EXPECT_EQ(referer("http://a.b/c?d#e", "http://a.b/f"), u"http://a.b/c?d"_s);
    EXPECT_EQ(referer("https://a.b/c", "https://d.e/f"), u"https://a.b/"_s);
    EXPECT_EQ(referer("https://a.b/c", "http://a.b/f"), QString());
    EXPECT_EQ(referer("http://u:p@a.b/c", "http://u:p@a.b/f"), QString());
    EXPECT_EQ(referer("about:blank", "http://a.b/f"), QString());
}

} // namespace
} // namespace Brindle
