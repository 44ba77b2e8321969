// Teaching where a page is shown as text and nothing can be pointed at: by the keys alone, from lists.
#include "PrintTo.h"
#include "WindowFixture.h"
#include "core/QtMessageLoop.h"
#include "ui/teach/TfrmAboutDirectory.h"
#include "ui/teach/TfrmDirectories.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class TeachTextTest : public testing::Test {
protected:
    Demo::DemoServer Server;
    QtMessageLoop Loop;
    std::unique_ptr<WindowRun> Run;

    void Open(const QString& start) {
        Loop.SetPace(0.01);
        Run = std::make_unique<WindowRun>(Loop, SitesFile::Parse(Server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                                          CreateStaticBrowser);
        Run->Show();
        const auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
        Run->Choose(u"cbxWebsites", sites->findText(u"Any website"_s));
        ASSERT_TRUE(Run->GoTo(start));
        Run->Window->Lessons().Watch().Look();
    }
    const TeachSession& Session() { return *Run->Window->Lessons().Lesson().Session(); }

    // Goes down a list with the keys to an entry and presses Enter there.
    void ChooseByKeys(const QString& text) {
        auto* const texts = Run->Control<QListWidget>(u"TeachTexts");
        texts->setFocus();
        QTest::keyClick(texts, Qt::Key_Home);
        for (int i = 0; i < texts->count() && texts->currentItem()->text() != text; ++i)
            QTest::keyClick(texts, Qt::Key_Down);
        ASSERT_EQ(texts->currentItem()->text(), text);
        QTest::keyClick(texts, Qt::Key_Return);
    }
};

TEST_F(TeachTextTest, ADirectoryIsTaughtFromTheListsOfTextsAndHarvested) {
    Server.Start();
    Demo::ModernSite site;
    for (const Demo::ModernSite& each : Server.ModernSites())
        site = each.Code == u"demo-hashed" ? each : site;
    Open(site.Start);
    const std::vector<Lead> planted = Server.ModernLeads(site.Code);
    Run->Click(u"btnTeach");
    ASSERT_TRUE(Run->Window->Lessons().Lesson().Active());
    EXPECT_EQ(Run->Control<PageOverlay>(u"PageOverlay"), nullptr);
    auto* const page = Run->Window->findChild<QTextBrowser*>();
    ASSERT_TRUE(page);
    QTextCursor link = page->textCursor();
    link.setPosition(static_cast<int>(page->toPlainText().indexOf(planted.front().Name)) + 2);
    QTest::mouseClick(page->viewport(), Qt::LeftButton, {}, page->cursorRect(link).center());
    EXPECT_TRUE(Run->Window->Lessons().Lesson().Active()) << "the page's links do nothing";
    EXPECT_FALSE(Run->Window->ewbMain().Busy());
    // A wrong field is taken away and said anew; the likely field is offered first.
    auto* const fields = Run->Control<QTreeWidget>(u"TeachFields");
    fields->setCurrentItem(fields->topLevelItem(static_cast<int>(Field::Phone)));
    Run->Click(u"btnTeachForget");
    EXPECT_TRUE(Session().Reading().Records.front().Fields.Phone.isEmpty());
    ChooseByKeys(planted.front().Phone);
    EXPECT_FALSE(Session().IsProposed(Field::Phone));
    ChooseByKeys(planted.front().Name);
    EXPECT_FALSE(Session().IsProposed(Field::BusinessName));
    Run->Click(u"btnTeachNoNext");
    EXPECT_TRUE(Session().Reading().Next.isEmpty());
    Run->Click(u"btnTeachNext");
    ChooseByKeys(u"Siguiente"_s);
    EXPECT_EQ(Session().Reading().Next, QString(site.Start + u"?page=2"));
    EXPECT_EQ(Run->Control<QListWidget>(u"TeachTexts")->item(0)->text(), planted.front().Name) << "the business again";

    Run->Control<QLineEdit>(u"edtTeachName")->setText(u"By the keys"_s);
    QTest::keyClick(Run->Control<QLineEdit>(u"edtTeachName"), Qt::Key_Return);
    ASSERT_EQ(Run->Window->State().CurrID, u"by-the-keys"_s);
    Run->Click(u"btnStart");
    ASSERT_TRUE(Run->Until([this] { return !Run->Window->Driver().Running() && !Run->Window->State().Parsing; }, 60));
    std::vector<Lead> shown = Run->ShownLeads();
    ASSERT_EQ(shown.size(), planted.size());
    for (size_t i = 0; i < shown.size(); ++i) {
        shown[i].MapLink.clear(); // which the harvest adds
        EXPECT_EQ(shown[i], planted[i]) << i;
    }
}

// The same for the businesses' own pages, with the country and the address of a search.
TEST_F(TeachTextTest, OwnPagesCountryAndSearchAddressAreTaughtByTheKeys) {
    Server.Start();
    Demo::ModernSite site;
    for (const Demo::ModernSite& each : Server.ModernSites())
        site = each.Code == u"demo-hashed" ? each : site;
    Open(site.Start + u"?what=plumber&where=Madrid"_s);
    const QString list = Run->Window->ewbMain().LocationAddress();
    const std::vector<Lead> planted = Server.ModernLeads(site.Code, true);
    Run->Click(u"btnTeach");
    Run->Click(u"btnTeachOwnPage");
    ASSERT_TRUE(Run->Until([this] { return Session().OnOwnPage(); }, 20));
    EXPECT_FALSE(Run->Control<QPushButton>(u"btnTeachNext")->isEnabled());
    auto* const texts = Run->Control<QListWidget>(u"TeachTexts");
    EXPECT_EQ(texts->accessibleName(), u"Texts of this page:"_s);
    ChooseByKeys(planted.front().Phone);
    EXPECT_EQ(Session().What().DetailsFields.size(), 1U);
    EXPECT_FALSE(Session().IsProposed(Field::Phone));
    EXPECT_EQ(Run->Control<TeachPanel>(u"TeachPanel")->Leads().At(1).Phone, planted[1].Phone);
    QTest::keyClick(Run->Control<QPushButton>(u"btnTeachOwnPage"), Qt::Key_Space);
    ASSERT_TRUE(Run->Until([this] { return !Session().OnOwnPage(); }, 20));
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), list);

    const auto about = [this](const std::function<void(TfrmAboutDirectory&)>& answer) {
        TfrmAboutDirectory* dialog = nullptr;
        Run->When([&] { return (dialog = Run->Window->findChild<TfrmAboutDirectory*>()) && dialog->isVisible(); },
                  [&] { answer(*dialog); });
        Run->Click(u"btnTeachAbout");
        EXPECT_TRUE(dialog);
    };
    about([&](TfrmAboutDirectory& dialog) {
        auto* const search = dialog.findChild<QLineEdit*>(u"edtAboutSearch"_s);
        EXPECT_EQ(search->text(), QString(site.Start + u"?what={what}&where={where}")) << "from the shown address";
        search->setText(u"https://{what}.example/"_s);
        const auto* const take = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        EXPECT_FALSE(take->isEnabled());
        EXPECT_NE(dialog.findChild<QLabel*>(u"lblAboutVerdict"_s)->text(), QString());
        QTest::keyClicks(dialog.findChild<QLineEdit*>(u"edtAboutWhat"_s), u"plumber"_s);
        EXPECT_EQ(search->text(), QString(site.Start + u"?what={what}&where=Madrid"));
        auto* const countries = dialog.findChild<QComboBox*>(u"cbxAboutCountry"_s);
        EXPECT_EQ(countries->currentData().toString(), u"ES"_s) << "of the page";
        QTest::keyClicks(countries, u"portug"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Session().What().Country, u"PT"_s);
    about([](TfrmAboutDirectory& dialog) {
        dialog.findChild<QLineEdit*>(u"edtAboutSearch"_s)->clear();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(Session().What().Search, QString(site.Start + u"?what={what}&where=Madrid")) << "nothing was changed";
    Run->Control<QLineEdit>(u"edtTeachName")->setText(u"Own pages"_s);
    Run->Click(u"btnTeachSave");
    const auto taught = Run->Window->Bench().Catalogue.Adapter(u"own-pages"_s);
    ASSERT_TRUE(taught);
    EXPECT_EQ(taught->SearchAddress, QString(site.Start + u"?what={what}&where=Madrid"));
}

// What a harvest has not found as it was taught is said, and one of the built-in directories that shows another page is
// offered to be read as any website.
TEST_F(TeachTextTest, TheBarSaysWhatIsAmiss) {
    Server.Start();
    const Demo::ModernSite site = Server.ModernSites().front();
    Open(site.Start);
    const auto bar = [this] { return Run->Control<AnyPageBar>(u"AnyPageBar")->Said(); };
    Run->Click(u"btnTeach");
    Run->Control<QLineEdit>(u"edtTeachName")->setText(u"Drifts"_s);
    Run->Click(u"btnTeachSave");
    TeachingDesk& desk = Run->Window->Lessons();
    struct Case {
        RecipeCounts Found;
        QString Said;
    };
    RecipeCounts few{.Records = 3};
    RecipeCounts emptier{.Records = 36};
    emptier.Filled.fill(36);
    emptier.Filled[static_cast<size_t>(Field::Phone)] = 4;
    for (const Case& one :
         {Case{few, u"3 businesses, were 12"_s}, Case{emptier, u"Phone in 4 of 36, was in 12 of 12"_s}}) {
        desk.Watch().HarvestEnded(one.Found);
        desk.Watch().Look();
        EXPECT_TRUE(bar().contains(one.Said)) << bar().toStdString();
        EXPECT_EQ(Run->Control<QPushButton>(u"btnTeach")->text(), u"Mend\u2026"_s);
    }
    ASSERT_TRUE(Run->GoTo(site.Start + u"?page=2"_s));
    desk.Watch().Look();
    EXPECT_FALSE(bar().contains(u"was in"_s)) << "of another page";

    Run->ChooseSite(SiteCode::UsYellowPages.toString(), Server);
    ASSERT_TRUE(Run->GoTo(site.Start));
    desk.Watch().Look();
    EXPECT_TRUE(Run->Until([&] { return bar().contains(u"another way than the directory's own"_s); }, 10))
        << bar().toStdString();
    Run->Click(u"btnAnyHarvest");
    EXPECT_EQ(Run->Window->State().CurrID, u"AUTO"_s);
    ASSERT_TRUE(Run->Until([this] { return Run->Window->Leads().Count() > 0; }, 30));
}

// The dialog with all directories, on folders of its own.
TEST(DirectoriesTest, TheUsersRecipesAreManagedAndTheOthersStay) {
    const QTemporaryDir folder;
    const QDir user(folder.filePath(u"user"_s));
    const QDir program(folder.filePath(u"program"_s));
    program.mkpath(u"."_s);
    user.mkpath(u"."_s);
    const auto write = [](const QString& fileName, const QByteArray& text) {
        QFile file(fileName);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    };
    const auto read = [](const QString& fileName) {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray recipe = "name = \"Towns\"\nhome = \"https://towns.example/\"\n[list]\nrecords = \"li\"\n"
                              "[fields]\n\"Business Name\" = \"h3\"\n";
    write(program.filePath(u"fixed.toml"_s), recipe);
    write(user.filePath(u"towns.toml"_s), recipe);
    write(user.filePath(u"broken.toml"_s), "name = 1\n");
    ScriptedDialogs notices;
    const WindowTexts texts;
    TfrmDirectories dialog({{u"http://built.in (USA)"_s}, program.path(), user.path(), notices, texts});
    const auto* const list = dialog.findChild<QListWidget*>(u"lstDirectories"_s);
    const auto enabled = [&](const char16_t* name) {
        return dialog.findChild<QPushButton*>(QString::fromUtf16(name))->isEnabled();
    };
    ASSERT_EQ(list->count(), 4) << "built in, of the program, of the user, and what is wrong with the broken one";
    EXPECT_TRUE(list->item(3)->text().contains(u"broken.toml"_s)) << list->item(3)->text().toStdString();
    EXPECT_FALSE(enabled(u"btnDirRename") || enabled(u"btnDirExport") || enabled(u"btnDirDelete"));
    dialog.Select(u"fixed"_s);
    EXPECT_TRUE(enabled(u"btnDirDuplicate") && enabled(u"btnDirExport"));
    EXPECT_FALSE(enabled(u"btnDirRename") || enabled(u"btnDirEdit") || enabled(u"btnDirDelete"));
    dialog.Delete();
    EXPECT_FALSE(dialog.Changed());

    dialog.Select(u"towns"_s);
    dialog.AskLine = [](const QString&, const QString& before) { return QString(before + u" and Villages"); };
    dialog.Rename();
    EXPECT_TRUE(read(user.filePath(u"towns.toml"_s)).contains("Towns and Villages"));
    dialog.Duplicate();
    EXPECT_TRUE(read(user.filePath(u"towns-2.toml"_s)).contains("Towns and Villages (2)"));

    // A stranger's file says first where it leads; refused, it is not taken.
    const QString strangers = folder.filePath(u"strange.toml"_s);
    write(strangers, QByteArray(recipe).replace("towns.example", "strange.example"));
    dialog.AskFile = [&] { return strangers; };
    notices.Answer = false;
    dialog.Import();
    EXPECT_TRUE(notices.Said.last().contains(u"strange.example"_s)) << notices.Said.last().toStdString();
    EXPECT_FALSE(QFile::exists(user.filePath(u"strange.toml"_s)));
    notices.Answer = true;
    dialog.Import();
    EXPECT_TRUE(QFile::exists(user.filePath(u"strange.toml"_s)));
    write(strangers, "name = 1\n");
    dialog.Import();
    EXPECT_TRUE(notices.Said.last().contains(u"strange.toml"_s)) << "file, line and reason";

    notices.Answer = false;
    dialog.Delete();
    EXPECT_TRUE(QFile::exists(user.filePath(u"strange.toml"_s))) << "after a question only";
    notices.Answer = true;
    dialog.Delete();
    EXPECT_FALSE(QFile::exists(user.filePath(u"strange.toml"_s)));

    // While it is typed, the text is checked.
    TfrmRecipeText text(u"towns.toml"_s, recipe, texts, nullptr);
    auto* const edit = text.findChild<QPlainTextEdit*>(u"edtRecipe"_s);
    const auto* const save = text.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
    EXPECT_TRUE(save->isEnabled());
    edit->setPlainText(QString::fromUtf8(QByteArray(recipe).replace("\"li\"", "\"li[\"")));
    EXPECT_FALSE(save->isEnabled());
    const QString verdict = text.findChild<QLabel*>(u"lblRecipeVerdict"_s)->text();
    EXPECT_TRUE(verdict.startsWith(u"towns.toml: line 4:"_s)) << verdict.toStdString();
}

// Any website has a name in each language, a broken recipe says what is wrong with it, and two of one name are told
// apart.
TEST_F(TeachTextTest, WhatTheSelectorOffersIsNamed) {
    Server.Start();
    const Demo::ModernSite site = Server.ModernSites().front();
    Open(site.Start);
    auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
    auto* const languages = Run->Control<QComboBox>(u"cbxLanguage");
    Run->Choose(u"cbxLanguage", languages->findData(u"fr"_s));
    EXPECT_EQ(sites->currentText(), u"N\u2019importe quel site"_s);
    EXPECT_EQ(Run->Window->State().CurrID, u"AUTO"_s);
    Run->Choose(u"cbxLanguage", languages->findData(u"en"_s));
    EXPECT_EQ(sites->currentText(), u"Any website"_s);
    for (int i = 0; i < 2; ++i) {
        Run->Choose(u"cbxWebsites", sites->findText(u"Any website"_s));
        Run->Window->Lessons().Watch().Look();
        Run->Click(u"btnTeach");
        Run->Control<QLineEdit>(u"edtTeachName")->setText(u"Same"_s);
        Run->Click(u"btnTeachSave");
    }
    EXPECT_TRUE(sites->currentText().contains(u"same-2"_s)) << sites->currentText().toStdString();
    QFile file(Run->System.SettingsFolder() + u"/recipes/same-2.toml"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("name = 1\n") > 0);
    file.close();
    Run->Window->Lessons().Watch().Look();
    const QString said = Run->Control<AnyPageBar>(u"AnyPageBar")->Said();
    EXPECT_TRUE(said.contains(u"same-2.toml: line 1:"_s)) << said.toStdString();
}

TEST_F(TeachTextTest, SaysThatItSeesNoListAndOffersTeaching) {
    Server.Start();
    Open(Server.Businesses() + u"/"_s);
    EXPECT_EQ(Run->Control<AnyPageBar>(u"AnyPageBar")->Said(), u"No list of businesses is seen on this page."_s);
    EXPECT_FALSE(Run->Control<QPushButton>(u"btnAnyHarvest")->isVisible());
    EXPECT_TRUE(Run->Control<QPushButton>(u"btnTeach")->isVisible());
}

} // namespace
} // namespace Brindle::Test
