#include "platform/BrowserCommand.h"

#include "PrintTo.h"

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

} // namespace
} // namespace Brindle
