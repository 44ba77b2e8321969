#include "settings/SettingsText.h"

#include "CodePage.h"
#include "PrintTo.h"

#include <functional>
#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString documents = u"/home/ada/Documents"_s;

QString Show(const Settings& settings) {
    return QString::fromLocal8Bit(SettingsText(settings));
}

TEST(SettingsText, HasEveryOptionInTheFilesOrder) {
    Settings settings = DefaultSettings(documents);
    settings.eRandomProxies = QStringList{u"10.0.0.1:8080"_s};
    settings.ePassword = u"pà<ss"_s;
    EXPECT_EQ(SettingsText(settings).toStdString(),
              Brindle::Test::In8Bit("<%%rUseProxy%%>0<%%/rUseProxy%%>\r\n"
                                    "<%%rNoProxy%%>-1<%%/rNoProxy%%>\r\n"
                                    "<%%rAuthentification%%>0<%%/rAuthentification%%>\r\n"
                                    "<%%eHost%%><%%/eHost%%>\r\n"
                                    "<%%ePort%%>80<%%/ePort%%>\r\n"
                                    "<%%eUserName%%><%%/eUserName%%>\r\n"
                                    "<%%ePassword%%>pà<ss<%%/ePassword%%>\r\n"
                                    "<%%eExportFields%%>0,1,2,3,4,5,6,7,8,9,10,11,12,13<%%/eExportFields%%>\r\n"
                                    "<%%eRandom%%>3<%%/eRandom%%>\r\n"
                                    "<%%rRandomProxy%%>0<%%/rRandomProxy%%>\r\n"
                                    "<%%eRandomProxies%%>10.0.0.1:8080\r\n<%%/eRandomProxies%%>\r\n"
                                    "<%%cExtractEmails%%>0<%%/cExtractEmails%%>\r\n"
                                    "<%%cExportManually%%>-1<%%/cExportManually%%>\r\n"
                                    "<%%cExportAutomatic%%>0<%%/cExportAutomatic%%>\r\n"
                                    "<%%eExportFolder%%>/home/ada/Documents<%%/eExportFolder%%>\r\n"
                                    "<%%eDelimiter%%>,<%%/eDelimiter%%>\r\n"
                                    "<%%Language%%>en<%%/Language%%>\r\n"));
}

TEST(SettingsText, ReadsBackWhatItWrote) {
    const Settings settings{.rNoProxy = false,
                            .rUseProxy = true,
                            .rAuthentification = true,
                            .eHost = u" proxy.test "_s,
                            .ePort = u""_s,
                            .eUserName = u"ada"_s,
                            .ePassword = u"<%%eHost%%>x&\"€\u00A0"_s,
                            .rRandomProxy = true,
                            .eRandomProxies = {u"a:1"_s, u""_s, u" b:2:u:p"_s},
                            .eExportFields = u""_s,
                            .eRandom = u"007"_s,
                            .cExtractEmails = true,
                            .cExportManually = false,
                            .cExportAutomatic = true,
                            .eExportFolder = u" /tmp/è "_s,
                            .eDelimiter = u";"_s,
                            .Language = u"it"_s};
    EXPECT_EQ(Show(ParseSettings(Show(settings), documents)), Show(settings));
    EXPECT_EQ(ParseSettings(Show(settings), documents), settings);
}

TEST(ParseSettings, ReadsFilesOfEveryShape) {
    struct Case {
        const char* What;
        QString Text;
        std::function<void(Settings&)> Change; ///< what differs from the defaults
    };
    const Case cases[]{
        {"nothing", u""_s, [](Settings&) {}},
        {"one element", u"<%%eHost%%>10.0.0.1<%%/eHost%%>"_s, [](Settings& s) { s.eHost = u"10.0.0.1"_s; }},
        {"tags in another case, key as it is elsewhere", u"eHost <%%EHOST%%>a<%%/ehost%%>"_s,
         [](Settings& s) { s.eHost = u"a"_s; }},
        {"tags in lower case only: skipped", u"<%%ehost%%>a<%%/ehost%%><%%rnoproxy%%>0<%%/rnoproxy%%>"_s,
         [](Settings&) {}},
        {"tags in lower case among the last five: read",
         u"<%%eexportfolder%%>/x<%%/eexportfolder%%><%%LANGUAGE%%>fr<%%/LANGUAGE%%>"_s,
         [](Settings& s) {
             s.eExportFolder = u"/x"_s;
             s.Language = u"fr"_s;
         }},
        {"the bare key counts as present, and no element reads empty", u"eHost ePort eExportFields rNoProxy"_s,
         [](Settings& s) {
             s.ePort.clear();
             s.eExportFields.clear();
         }},
        {"eRandom is there when eRandomProxies is", u"<%%eRandomProxies%%>a:1\r\nb:2\r\n<%%/eRandomProxies%%>"_s,
         [](Settings& s) {
             s.eRandomProxies = QStringList{u"a:1"_s, u"b:2"_s};
             s.eRandom.clear();
         }},
        {"lines ended in any way",
         u"<%%eRandomProxies%%>a\nb\rc\r\n\r\nd<%%/eRandomProxies%%><%%eRandom%%>9<%%/eRandom%%>"_s,
         [](Settings& s) {
             s.eRandomProxies = QStringList{u"a"_s, u"b"_s, u"c"_s, u""_s, u"d"_s};
             s.eRandom = u"9"_s;
         }},
        {"the first twelve in any order", u"<%%ePort%%>1<%%/ePort%%>\n<%%eHost%%>h<%%/eHost%%>"_s,
         [](Settings& s) {
             s.ePort = u"1"_s;
             s.eHost = u"h"_s;
         }},
        {"the first of two", u"<%%eHost%%>a<%%/eHost%%><%%eHost%%>b<%%/eHost%%>"_s,
         [](Settings& s) { s.eHost = u"a"_s; }},
        {"no closing tag", u"<%%eHost%%>a <%%ePort%%>81<%%/ePort%%>"_s, [](Settings& s) { s.ePort = u"81"_s; }},
        {"a value over several lines, with its own closing tag in it",
         u"<%%ePassword%%>a\r\nb<%%/ePassword%%>c<%%/ePassword%%>"_s, [](Settings& s) { s.ePassword = u"a\r\nb"_s; }},
        {"malformed booleans keep the default",
         u"<%%rNoProxy%%>no<%%/rNoProxy%%><%%rUseProxy%%>yes<%%/rUseProxy%%><%%rAuthentification%%>1.5<%%/"
         "rAuthentification%%><%%rRandomProxy%%><%%/rRandomProxy%%><%%cExtractEmails%%>-<%%/cExtractEmails%%>"
         "<%%cExportManually%%>x<%%/cExportManually%%><%%cExportAutomatic%%>x<%%/cExportAutomatic%%>"_s,
         [](Settings&) {}},
        {"booleans",
         u"<%%rNoProxy%%>fAlSe<%%/rNoProxy%%><%%rUseProxy%%>TRUE<%%/rUseProxy%%><%%rAuthentification%%>+7"
         "<%%/rAuthentification%%><%%rRandomProxy%%>99999999999999999999<%%/rRandomProxy%%>"
         "<%%cExtractEmails%%>-1<%%/cExtractEmails%%><%%cExportManually%%>000<%%/cExportManually%%>"_s,
         [](Settings& s) {
             s.rNoProxy = false;
             s.rUseProxy = s.rAuthentification = s.rRandomProxy = s.cExtractEmails = true;
             s.cExportManually = false;
         }},
        {"of the last five, those before cExtractEmails are not seen",
         u"<%%Language%%>it<%%/Language%%><%%cExtractEmails%%>0<%%/cExtractEmails%%><%%eDelimiter%%>;<%%/eDelimiter%%>"_s,
         [](Settings& s) { s.eDelimiter = u";"_s; }},
        {"nor those out of order",
         u"<%%Language%%>it<%%/Language%%><%%eDelimiter%%>;<%%/eDelimiter%%><%%cExportManually%%>0<%%/cExportManually%%>"_s,
         [](Settings& s) { s.cExportManually = false; }},
        {"blanks stand for the default, other values keep theirs",
         u"<%%eExportFolder%%> \t<%%/eExportFolder%%><%%eDelimiter%%> <%%/eDelimiter%%><%%Language%%> <%%/Language%%>"_s,
         [](Settings&) {}},
        {"untrimmed", u"<%%eExportFolder%%> /x <%%/eExportFolder%%><%%eDelimiter%%>\u00A0<%%/eDelimiter%%>"_s,
         [](Settings& s) {
             s.eExportFolder = u" /x "_s;
             s.eDelimiter = u"\u00A0"_s;
         }},
    };
    for (const Case& one : cases) {
        Settings expected = DefaultSettings(documents);
        one.Change(expected);
        EXPECT_EQ(Show(ParseSettings(one.Text, documents)), Show(expected)) << one.What;
    }
}

TEST(SetOption, ReadsAValueAsTheFileDoes) {
    struct Case {
        QString Key;
        QString Value;
        std::function<void(Settings&)> Change; ///< none: refused
    };
    const Case cases[]{
        {u"cExtractEmails"_s, u"-1"_s, [](Settings& s) { s.cExtractEmails = true; }},
        {u"rNoProxy"_s, u"False"_s, [](Settings& s) { s.rNoProxy = false; }},
        {u"cExportManually"_s, u"maybe"_s, {}},
        {u"rUseProxy"_s, u""_s, {}},
        {u"ehost"_s, u"a"_s, {}},
        {u""_s, u"a"_s, {}},
        {u"eHost"_s, u" a=b "_s, [](Settings& s) { s.eHost = u" a=b "_s; }},
        {u"eRandomProxies"_s, u"a:1\nb:2"_s,
         [](Settings& s) {
             s.eRandomProxies = QStringList{u"a:1"_s, u"b:2"_s};
         }},
        {u"eRandomProxies"_s, u""_s, [](Settings& s) { s.eRandomProxies.clear(); }},
        {u"eDelimiter"_s, u" "_s, [](Settings& s) { s.eDelimiter = u","_s; }},
        {u"eDelimiter"_s, u"||"_s, [](Settings& s) { s.eDelimiter = u"||"_s; }},
        {u"eExportFolder"_s, u""_s, [](Settings& s) { s.eExportFolder = documents; }},
        {u"eExportFields"_s, u""_s, [](Settings& s) { s.eExportFields.clear(); }},
        {u"Language"_s, u""_s, [](Settings& s) { s.Language = u"en"_s; }},
    };
    for (const Case& one : cases) {
        Settings settings = DefaultSettings(u"/other"_s);
        settings.eRandomProxies = QStringList{u"old:1"_s};
        settings.eDelimiter = u";"_s;
        settings.Language = u"it"_s;
        Settings expected = settings;
        if (one.Change)
            one.Change(expected);
        QString reason;
        EXPECT_EQ(SetOption(settings, one.Key, one.Value, documents, reason), static_cast<bool>(one.Change));
        EXPECT_EQ(reason.isEmpty(), static_cast<bool>(one.Change)) << reason.toStdString();
        EXPECT_EQ(Show(settings), Show(expected)) << one.Key.toStdString();
    }
}

} // namespace
} // namespace Brindle
