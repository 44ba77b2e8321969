#include "export/EmailCheck.h"

#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(EmailCheck, TellsAddressesFromWhatOnlyLooksLikeThem) {
    struct Case {
        QString Text;
        bool CanBe;
    };
    const Case cases[]{
        {u"info@example.com"_s, true},
        {u"Jo.O'Neil+x@mail.example.co.uk"_s, true},
        {u"info@bücher.de"_s, true},
        {u"info@xn--bcher-kva.de"_s, true},
        {u"a@b.museum"_s, true},
        {u"logo@2x.png"_s, false},
        {u"bootstrap@5.3.0"_s, false},
        {u"icon@3x.webp"_s, false},
        {u"jquery@3.min.js"_s, false},
        {u"info@example.notatld"_s, false},
        {u"info@localhost"_s, false},
        {u"@example.com"_s, false},
        {u"info@"_s, false},
        {u"a@b@example.com"_s, false},
        {u".a@example.com"_s, false},
        {u"a..b@example.com"_s, false},
        {u"a b@example.com"_s, false},
        {u"info@-example.com"_s, false},
        {u"info@exam_ple.com"_s, false},
        {u"info@example..com"_s, false},
        {u"info@192.168.0.1"_s, false},
        {QString(65, u'a') + u"@example.com", false},
        {u"a@"_s + QString(250, u'b') + u".com", false},
    };
    for (const Case& one : cases)
        EXPECT_EQ(CanBeEmail(one.Text), one.CanBe) << one.Text.toStdString();
}

TEST(EmailCheck, OwnDomainFirst) {
    const QString emails = u"someone@gmail.com; Info@Bar.it,info@bar.it;sales@shop.bar.it logo@2x.png"_s;
    EXPECT_EQ(UsableEmails(emails, u"http://www.bar.it/contact"_s),
              (QStringList{u"Info@Bar.it"_s, u"sales@shop.bar.it"_s, u"someone@gmail.com"_s}));
    EXPECT_EQ(UsableEmails(emails, u"gmail.com"_s).first(), u"someone@gmail.com"_s);
    EXPECT_EQ(UsableEmails(u"a@x.co.uk;b@y.co.uk"_s, u"http://y.co.uk"_s).first(), u"b@y.co.uk"_s);
    EXPECT_EQ(UsableEmails({}, u"http://y.co.uk"_s), QStringList());
}

} // namespace
} // namespace Brindle
