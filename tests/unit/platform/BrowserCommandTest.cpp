#include "platform/BrowserCommand.h"

#include "PrintTo.h"
#include "platform/OpenableAddress.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(BrowserProgram, IsTheCommandUpToItsExe) {
    EXPECT_EQ(BrowserProgram(u"\"C:\\Program Files\\Fox\\FOX.EXE\" -url \"%1\" x.exe"_s),
              u"c:\\program files\\fox\\fox.exe"_s);
    EXPECT_EQ(BrowserProgram(u"C:\\a.exe.exe -x"_s), u"c:\\a.exe"_s);
    EXPECT_EQ(BrowserProgram(u"\"fox\" %1"_s), u".exe"_s);
}

TEST(EngineExecutable, IsWhatFollowsTheOpeningQuoteUpToTheEndOfItsName) {
    EXPECT_EQ(EngineExecutable(u"\"C:\\Program Files\\Internet Explorer\\iexplore.exe\" %1"_s),
              u"C:\\Program Files\\Internet Explorer\\iexplore.exe"_s);
    EXPECT_EQ(EngineExecutable(u"C:\\iexplore.exe iexplore.exe"_s), u":\\iexplore.exe"_s) << "no quote to drop";
    for (const QString& command : {QString(), u"\""_s, u"\"C:\\IEXPLORE.EXE\" %1"_s, u"\"C:\\fox.exe\""_s})
        EXPECT_EQ(EngineExecutable(command), QString()) << command.toStdString();
}

TEST(OpenableAddress, IsAWebAddressOrABareHost) {
    for (const QStringView address : {u"http://a.test/x y", u"HTTPS://a.test", u"http://a"})
        EXPECT_EQ(OpenableAddress(u"  %1\n"_s.arg(address)), address.toString());
    for (const QStringView host :
         {u"www.x.it", u"x.it", u"x.it/chi-siamo?a=b", u"caff\u00E8.it:8080/", u"a-b.c.museum"})
        EXPECT_EQ(OpenableAddress(host.toString()), u"http://" + host.toString());
    for (const QStringView other :
         {u"", u"  ", u"http://", u"file:///bin/sh", u"/bin/sh", u"../x.it", u"javascript:alert(1)", u"info@x.it",
          u"mailto:info@x.it", u"N/A", u"pizza in milano", u"via Roma 1", u"3.16", u"-x.it", u"x.it --help", u"x..it"})
        EXPECT_EQ(OpenableAddress(other.toString()), QString()) << other.toString().toStdString();
}

} // namespace
} // namespace Brindle
