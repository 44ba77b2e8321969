#include "DialogBench.h"
#include "PrintTo.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle::Test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_literals;

void Type(QWidget* widget, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
    }
}

void Press(QWidget* widget, Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}

LanguageFile Shipped(const QString& code) {
    return LanguageFile(ReadLanguageText(QStringLiteral(PROJECT_DIR "/languages/") + code + u".dat"_s));
}

TEST(TfrmSettings, EnablesWhatTheChoicesAllow) {
    const char* const controls[]{"edtHost",     "edtPort",          "chkAuthentification", "edtUsername",
                                 "edtPassword", "memRandomProxies", "edtFolder",           "btnBrowse"};
    struct Case {
        const char* Mode;
        bool Authentification;
        const char* Export;
        const char* Enabled; ///< one digit per control
    };
    const Case cases[]{
        {"rbtNoProxy", false, "rbtExportManually", "00000000"}, {"rbtNoProxy", true, "rbtExportAutomatic", "00000011"},
        {"rbtProxy", false, "rbtExportManually", "11100000"},   {"rbtProxy", true, "rbtExportManually", "11111000"},
        {"rbtRandom", true, "rbtExportAutomatic", "00000111"},  {"rbtRandom", false, "rbtExportManually", "00000100"},
    };
    const auto enabled = [&](const DialogBench& bench) {
        std::string flags;
        for (const char* name : controls)
            flags += bench.Control<QWidget>(name)->isEnabled() ? '1' : '0';
        return flags;
    };
    const DialogBench clicked;
    for (const Case& one : cases) {
        clicked.Control<QCheckBox>("chkAuthentification")->setChecked(one.Authentification);
        clicked.Click(one.Mode);
        clicked.Click(one.Export);
        EXPECT_EQ(enabled(clicked), one.Enabled) << one.Mode;
        Settings settings;
        settings.rNoProxy = settings.cExportManually = false;
        (one.Mode == "rbtProxy"s    ? settings.rUseProxy
         : one.Mode == "rbtRandom"s ? settings.rRandomProxy
                                    : settings.rNoProxy) = true;
        settings.rAuthentification = one.Authentification;
        (one.Export == "rbtExportManually"s ? settings.cExportManually : settings.cExportAutomatic) = true;
        EXPECT_EQ(enabled(DialogBench(settings)), one.Enabled) << one.Mode << " from the record";
    }
    // No export mode at all: the folder can be chosen.
    Settings none;
    none.rNoProxy = none.cExportManually = false;
    EXPECT_EQ(enabled(DialogBench(none)), "00000011");
}

TEST(TfrmSettings, OkLeavesAnUntouchedRecordAsItWas) {
    Settings odd;
    odd.rNoProxy = false;
    odd.rUseProxy = true;
    odd.rAuthentification = true;
    odd.eHost = u" a.test "_s;
    odd.ePort = u"80 80"_s;
    odd.eUserName = u"ü"_s;
    odd.ePassword = u"pass word"_s;
    odd.eRandomProxies = {u"a:1"_s, u""_s, u"b:2:u:p"_s};
    odd.eExportFields = u"1,2,12"_s;
    odd.eRandom = u"x-1234567890"_s;
    odd.cExtractEmails = true;
    odd.cExportManually = false;
    odd.cExportAutomatic = true;
    odd.eExportFolder = u" /x "_s;
    odd.eDelimiter = u"<->"_s;
    odd.Language = u"xx"_s;
    Settings none;
    none.rNoProxy = none.cExportManually = false;
    none.eExportFields = u""_s;
    none.eRandom = u""_s;
    for (const Settings& settings : {Settings(), odd, none}) {
        DialogBench bench(settings);
        bench.Dialog.show();
        bench.Click("btnOk");
        EXPECT_EQ(bench.Dialog.result(), QDialog::Accepted);
        EXPECT_EQ(bench.Options, settings);
        EXPECT_TRUE(bench.Notices.Said.isEmpty());
    }
}

TEST(TfrmSettings, ChecksColumnsByTheExportsOwnTest) {
    Settings settings;
    settings.eExportFields = u"12"_s;
    DialogBench bench(settings);
    bench.Control<QListWidget>("chlColumns")->item(2)->setCheckState(Qt::Unchecked);
    bench.Control<QListWidget>("chlColumns")->item(13)->setCheckState(Qt::Checked);
    bench.Click("btnOk");
    EXPECT_EQ(bench.Options.eExportFields, u"1,12,13"_s);
    EXPECT_EQ(bench.Control<QListWidget>("chlColumns")->item(6)->text(), u"Postal Code"_s);
}

TEST(TfrmSettings, RefusesOkAndKeepsTheModeEvenThen) {
    const QString noServer = u"Please enter a valid proxy server address and port."_s;
    const QString noDelay = u"Please enter at least one valid proxy."_s;
    struct Case {
        const char* Mode;
        QString Host;
        QString Port;
        QString Delay;
        QString Warning;
    };
    const Case cases[]{
        {"rbtProxy", u""_s, u"80"_s, u"3"_s, noServer}, {"rbtProxy", u"a.test"_s, u""_s, u"3"_s, noServer},
        {"rbtProxy", u" "_s, u"1"_s, u""_s, u""_s},     {"rbtRandom", u""_s, u""_s, u""_s, noDelay},
        {"rbtRandom", u""_s, u""_s, u"3"_s, u""_s}, // the list may be empty
        {"rbtNoProxy", u""_s, u""_s, u""_s, u""_s},
    };
    for (const Case& one : cases) {
        DialogBench bench;
        bench.Dialog.show();
        bench.Click(one.Mode);
        bench.Control<QCheckBox>("chkAuthentification")->setChecked(true);
        bench.SetText("edtHost", one.Host);
        bench.SetText("edtPort", one.Port);
        bench.Control<DigitsEdit>("speRandom")->SetText(one.Delay);
        bench.Click("btnOk");
        EXPECT_EQ(bench.Notices.Said, one.Warning.isEmpty() ? QStringList() : QStringList(one.Warning)) << one.Mode;
        EXPECT_EQ(bench.Dialog.isVisible(), !one.Warning.isEmpty()) << one.Mode;
        if (one.Warning.isEmpty()) {
            EXPECT_EQ(bench.Options.eHost, one.Host);
            EXPECT_EQ(bench.Options.eRandom, one.Delay);
            continue;
        }
        bench.Click("btnCancel");
        Settings expected;
        expected.rNoProxy = false;
        expected.rUseProxy = one.Warning == noServer;
        expected.rRandomProxy = one.Warning == noDelay;
        expected.rAuthentification = true;
        EXPECT_EQ(bench.Options, expected) << "the four mode options only";
        EXPECT_EQ(bench.Dialog.result(), QDialog::Rejected);
    }
}

TEST(TfrmSettings, StoresWhatWasEntered) {
    DialogBench bench;
    bench.Click("rbtRandom");
    bench.Control<QPlainTextEdit>("memRandomProxies")->setPlainText(u"a:1\n\nb:2\n"_s);
    bench.Click("rbtExportAutomatic");
    bench.Click("chkExtractEmails");
    bench.SetText("edtFolder", u"/x"_s);
    bench.Click("btnOk");
    Settings expected;
    expected.rNoProxy = false;
    expected.rRandomProxy = true;
    expected.eRandomProxies = {u"a:1"_s, u""_s, u"b:2"_s};
    expected.cExportManually = false;
    expected.cExportAutomatic = expected.cExtractEmails = true;
    expected.eExportFolder = u"/x"_s;
    EXPECT_EQ(bench.Options, expected);

    DialogBench cancelled;
    cancelled.Click("rbtProxy");
    cancelled.SetText("edtFolder", u"/x"_s);
    cancelled.Click("btnCancel");
    EXPECT_EQ(cancelled.Options, Settings());
}

TEST(TfrmSettings, LimitsWhatCanBeTyped) {
    Settings settings;
    settings.rUseProxy = true;
    settings.ePort = u"8"_s;
    settings.eDelimiter = u"||"_s;
    DialogBench bench(settings);
    bench.Dialog.show();
    auto* const port = bench.Control<QLineEdit>("edtPort");
    Type(port, u"x0-8.0٣"_s);
    EXPECT_EQ(port->text(), u"8080"_s);
    auto* const delay = bench.Control<DigitsEdit>("speRandom");
    Type(delay, u"a1b2"_s);
    EXPECT_EQ(delay->text(), u"312"_s);
    delay->stepBy(-313);
    EXPECT_EQ(delay->text(), u"0"_s);
    for (int i = 0; i < 2; ++i)
        Press(delay, Qt::Key_Backspace);
    EXPECT_EQ(delay->text(), u""_s) << "it can be left empty";
    auto* const delimiter = bench.Control<QLineEdit>("edtDelimiter");
    delimiter->clear();
    Type(delimiter, u";x"_s);
    EXPECT_EQ(delimiter->text(), u";"_s);
}

TEST(TfrmSettings, PicksAFolder) {
    const QTemporaryDir folder;
    Settings settings;
    settings.eExportFolder = folder.path();
    settings.cExportManually = false;
    settings.cExportAutomatic = true;
    DialogBench bench(settings);
    bench.Click("btnBrowse"); // cancelled
    EXPECT_EQ(bench.Control<QLineEdit>("edtFolder")->text(), folder.path());
    bench.SetText("edtFolder", folder.filePath(u"missing"_s));
    bench.Notices.FolderName = u"/chosen"_s;
    bench.Click("btnBrowse");
    EXPECT_EQ(bench.Control<QLineEdit>("edtFolder")->text(), QDir::toNativeSeparators(u"/chosen"_s));
    EXPECT_EQ(bench.Notices.Said, QStringList(2, u"Select a directory"_s));
    EXPECT_EQ(bench.Notices.Folders, (QStringList{folder.path(), u"/docs"_s}));

    bench.Click("btnFreeProxies");
    ASSERT_EQ(bench.System.Opened.size(), 1);
    EXPECT_TRUE(bench.System.Opened.first().startsWith(u"https://"_s));
}

TEST(TfrmSettings, IsAFixedSizeDialogWithKeys) {
    DialogBench bench;
    bench.Dialog.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(bench.Dialog.minimumSize(), bench.Dialog.maximumSize());
    EXPECT_LE(
        (bench.Dialog.frameGeometry().center() - bench.Dialog.screen()->availableGeometry().center()).manhattanLength(),
        2);
    EXPECT_EQ(bench.Control<QLineEdit>("edtPassword")->echoMode(), QLineEdit::Password);
    bench.SetText("edtPassword", u"abc"_s);
    EXPECT_EQ(bench.Control<QLineEdit>("edtPassword")->displayText(), u"***"_s);

    Press(bench.Control<QLineEdit>("edtHost"), Qt::Key_Escape);
    EXPECT_EQ(bench.Dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(bench.Dialog.isVisible());
    for (const char* from : {"edtHost", "edtFolder", "rbtNoProxy"}) {
        bench.Dialog.show();
        Press(bench.Control<QWidget>(from), Qt::Key_Return);
        EXPECT_EQ(bench.Dialog.result(), QDialog::Accepted) << from;
    }

    // Tab walks through a page from top to bottom, and every control says what it is.
    QStringList order;
    for (const QWidget* widget = bench.Dialog.nextInFocusChain(); widget != &bench.Dialog;
         widget = widget->nextInFocusChain()) {
        static const QStringList prefixes{u"rbt"_s, u"chk"_s, u"edt"_s, u"mem"_s, u"spe"_s, u"btn"_s, u"chl"_s};
        if (!prefixes.contains(widget->objectName().first(std::min<qsizetype>(3, widget->objectName().size()))))
            continue;
        order.append(widget->objectName());
        const auto* const button = qobject_cast<const QAbstractButton*>(widget);
        EXPECT_FALSE(widget->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
            << widget->objectName().toStdString();
    }
    EXPECT_EQ(order, (QStringList{u"rbtNoProxy"_s,
                                  u"rbtProxy"_s,
                                  u"edtHost"_s,
                                  u"edtPort"_s,
                                  u"chkAuthentification"_s,
                                  u"edtUsername"_s,
                                  u"edtPassword"_s,
                                  u"rbtRandom"_s,
                                  u"memRandomProxies"_s,
                                  u"speRandom"_s,
                                  u"btnFreeProxies"_s,
                                  u"chlColumns"_s,
                                  u"chkExtractEmails"_s,
                                  u"rbtExportManually"_s,
                                  u"rbtExportAutomatic"_s,
                                  u"edtFolder"_s,
                                  u"btnBrowse"_s,
                                  u"edtDelimiter"_s,
                                  u"chkKeep"_s,
                                  u"edtTarget"_s,
                                  u"edtMailServer"_s,
                                  u"chkWorkbook"_s,
                                  u"chkSheetCsv"_s,
                                  u"btnOk"_s,
                                  u"btnCancel"_s}));
    for (const auto& [label, control] :
         std::initializer_list<std::pair<const char*, const char*>>{{"lblHost", "edtHost"},
                                                                    {"lblPort", "edtPort"},
                                                                    {"lblUsername", "edtUsername"},
                                                                    {"lblPassword", "edtPassword"},
                                                                    {"lblRandomDelay", "speRandom"},
                                                                    {"lblColumns", "chlColumns"},
                                                                    {"lblDelimiter", "edtDelimiter"}})
        EXPECT_EQ(bench.Control<QLabel>(label)->buddy(), bench.Control<QWidget>(control));
}

class DialogLanguage : public testing::TestWithParam<const char*> {};

TEST_P(DialogLanguage, HasEveryCaptionInFull) {
    const LanguageFile language = Shipped(QString::fromLatin1(GetParam()));
    ASSERT_FALSE(language.IsEmpty());
    const DialogBench bench({}, language.ColumnCaptions());
    auto& dialog = const_cast<TfrmSettings&>(bench.Dialog);
    dialog.show();
    dialog.ApplyLanguage(language);
    const std::pair<const char*, int> captions[]{{"rbtNoProxy", 4},
                                                 {"rbtProxy", 5},
                                                 {"lblHost", 6},
                                                 {"lblPort", 7},
                                                 {"chkAuthentification", 8},
                                                 {"lblUsername", 9},
                                                 {"lblPassword", 10},
                                                 {"rbtRandom", 11},
                                                 {"lblRandomDelay", 12},
                                                 {"lblSeconds", 13},
                                                 {"btnFreeProxies", 14},
                                                 {"btnOk", 15},
                                                 {"btnCancel", 16},
                                                 {"lblColumns", 17},
                                                 {"rbtExportManually", 18},
                                                 {"rbtExportAutomatic", 19},
                                                 {"btnBrowse", 20},
                                                 {"lblDelimiterHeader", 21},
                                                 {"lblDelimiter", 22},
                                                 {"chkExtractEmails", 23}};
    auto* const pages = bench.Control<QTabWidget>("pgcSettings");
    EXPECT_EQ(dialog.windowTitle(), language.Settings(1));
    EXPECT_EQ(pages->tabText(0), language.Settings(2));
    EXPECT_EQ(pages->tabText(1), language.Settings(3));
    for (int page = 0; page < 2; ++page) {
        pages->setCurrentIndex(page);
        QCoreApplication::processEvents();
        for (const auto& [name, number] : captions) {
            const auto* const widget = bench.Control<QWidget>(name);
            EXPECT_EQ(widget->property("text").toString(), language.Settings(number)) << name;
            if (!widget->isVisible())
                continue;
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
            EXPECT_GE(widget->height(), widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                                    : widget->minimumSizeHint().height())
                << name;
            EXPECT_TRUE(dialog.rect().contains(QRect(widget->mapTo(&dialog, QPoint()), widget->size()))) << name;
        }
    }
    const auto* const columns = bench.Control<QListWidget>("chlColumns");
    for (int row = 0; row < columns->count(); ++row) {
        EXPECT_TRUE(columns->viewport()->rect().contains(columns->visualItemRect(columns->item(row)))) << row;
        EXPECT_GE(columns->visualItemRect(columns->item(row)).width(),
                  columns->fontMetrics().horizontalAdvance(columns->item(row)->text()) + 20);
    }
    EXPECT_LE(dialog.width(), 640);
}

INSTANTIATE_TEST_SUITE_P(Languages, DialogLanguage, testing::Values("en", "fr", "es", "it"),
                         [](const auto& info) { return info.param; });

TEST(TfrmSettings, LoadsTheLanguageOfTheRecordWhenItIsShown) {
    const QString code = u"settings-dialog-test"_s;
    ASSERT_TRUE(QDir().mkpath(LanguageFolder()));
    QFile file(LanguageFileName(code));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<settings1>Einstellungen</settings1>");
    file.close();
    Settings settings;
    settings.Language = code;
    DialogBench bench(settings);
    EXPECT_EQ(bench.Dialog.windowTitle(), u"Settings"_s);
    bench.Dialog.show();
    EXPECT_EQ(bench.Dialog.windowTitle(), u"Einstellungen"_s);
    EXPECT_TRUE(file.remove());
}

TEST(TfrmSettings, ShowsAnEmptyCaptionForAMissingText) {
    DialogBench bench;
    bench.Dialog.ApplyLanguage(LanguageFile(QString()));
    EXPECT_EQ(bench.Control<QPushButton>("btnOk")->text(), u"Ok"_s) << "no file: built-in texts";
    bench.Dialog.ApplyLanguage(LanguageFile(u"<settings4>Kein Proxy</settings4>"_s));
    EXPECT_EQ(bench.Control<QRadioButton>("rbtNoProxy")->text(), u"Kein Proxy"_s);
    EXPECT_EQ(bench.Control<QPushButton>("btnOk")->text(), u""_s);
}

TEST(TfrmSettings, EditsTheOptionsBeyondTheSettingsFile) {
    DialogBench bench;
    EXPECT_TRUE(bench.Control<QCheckBox>("chkKeep")->isChecked());
    EXPECT_FALSE(bench.Control<QCheckBox>("chkSheetCsv")->isChecked());
    bench.Click("chkWorkbook");
    bench.Click("chkKeep");
    bench.SetText("edtTarget", u" postgresql://me@host/leads "_s);
    bench.Click("btnOk");
    EXPECT_EQ(bench.More,
              (MoreOptions{.StoreKeep = false, .StoreTarget = u"postgresql://me@host/leads"_s, .WorkbookAtEnd = true}));
}

TEST(TfrmSettings, SaysThatAProxyIsNotUsedForEverything) {
    DialogBench bench;
    bench.Dialog.show();
    for (const char* choice : {"rbtProxy", "rbtRandom"})
        EXPECT_TRUE(bench.Control<QWidget>(choice)->toolTip().contains(u"directly")) << choice;
}

} // namespace
} // namespace Brindle::Test

int main(int argc, char** argv) {
#ifndef Q_OS_WIN // which has no other platform than its own
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    testing::InitGoogleTest(&argc, argv);
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
