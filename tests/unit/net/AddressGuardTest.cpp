#include "net/AddressGuard.h"

#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using enum AddressKind;

TEST(AddressGuard, KnowsWhereAHostStands) {
    struct Case {
        AddressKind Kind;
        std::vector<QStringView> Hosts;
    };
    const Case cases[] = {
        {Loopback,
         {u"127.0.0.1", u"127.255.1.2", u"127.1", u"2130706433", u"0x7f.1", u"0177.0.0.01", u"127.0.0.1.", u"localhost",
          u"a.LocalHost.", u"[::1]", u"::1", u"0:0:0:0:0:0:0:1", u"[::ffff:127.0.0.1]", u"::ffff:7f00:1",
          u"::127.0.0.1", u"64:ff9b::127.0.0.1", u"2002:7f00:1::", u"2001:0:1:2:3:4:80ff:fffe"}},
        {Private,
         {u"10.1.2.3", u"172.16.0.1", u"172.31.255.255", u"192.168.1", u"100.64.0.1", u"100.127.255.255", u"198.19.0.1",
          u"fc00::1", u"fdff:1::", u"::ffff:10.0.0.1", u"fec0::1"}},
        {LinkLocal, {u"169.254.169.254", u"fe80::1%eth0", u"[febf::1]", u"::ffff:a9fe:a9fe"}},
        {Unusable,
         {u"0.0.0.0", u"0", u"0.1.2.3", u"::", u"224.0.0.1", u"255.255.255.255", u"240.1.1.1", u"192.0.2.7", u"ff02::1",
          u"2001:db8::1", u"100::1"}},
        {Public,
         {u"8.8.8.8", u"9.255.255.255", u"11.0.0.1", u"100.63.255.255", u"100.128.0.1", u"172.15.0.1", u"172.32.0.1",
          u"192.167.255.255", u"198.20.0.1", u"223.255.255.255", u"2600::1", u"2002:808:808::", u"::ffff:8.8.8.8"}},
    };
    for (const Case& c : cases)
        for (const QStringView host : c.Hosts)
            EXPECT_EQ(KindOfHost(host), c.Kind) << host.toString().toStdString();
    for (const QStringView name : {u"directory.example"_s, u"1.2.3.4.5"_s, u"256.1.1.1"_s, u"1.2.3.x"_s, u"08.1"_s,
                                   u"1::2::3"_s, u"1:2"_s, u"::12345"_s, u":1"_s, u"localhost.example"_s, QString()})
        EXPECT_FALSE(KindOfHost(name)) << name.toString().toStdString();
}

TEST(AddressGuard, APageLeadsToItsOwnKindAndToThePublic) {
    for (const AddressKind from : {Public, Private, LinkLocal, Loopback, Unusable})
        for (const AddressKind to : {Public, Private, LinkLocal, Loopback, Unusable})
            EXPECT_EQ(MayLeadTo(from, to), to == Public || (from == to && to != Unusable));
    // The server that was asked counts, not the name; a name alone tells nothing.
    EXPECT_EQ(KindOfOrigin({u"http://directory.example/"_s, u"10.0.0.1"_s}), Private);
    EXPECT_EQ(KindOfOrigin({u"http://u:p@[::1]:80/x"_s, {}}), Loopback);
    EXPECT_EQ(KindOfOrigin({u"http://directory.example/"_s, {}}), Public);
}

} // namespace
} // namespace Brindle
