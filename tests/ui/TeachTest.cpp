// Teaching by pointing, in the whole window with the real Chromium engine on the modern demo directories.
#include "PrintTo.h"
#include "TeachFixture.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class TeachTest : public TeachFixture {
protected:
    Demo::ModernSite Site;

    void OpenDemo(QStringView code = u"demo-json-ld") {
        Site = StartSite(code);
        Open(Site.Start);
        ASSERT_TRUE(BarSays(u"businesses"_s)) << Bar().toStdString();
    }
    void ExpectNothingLeft(const QString& document);
};

// Nothing of a lesson that was left is anywhere: page, window, folder.
void TeachTest::ExpectNothingLeft(const QString& document) {
    EXPECT_FALSE(Lesson().Active());
    EXPECT_FALSE(Run->Control<TeachPanel>(u"TeachPanel")->isVisible());
    EXPECT_FALSE(Run->Control<QTableView>(u"TeachTable")->isVisible());
    EXPECT_TRUE(Run->Items().isVisible());
    EXPECT_EQ(InPage(u"document.activeElement.tagName"_s).toString(), u"BODY"_s);
    EXPECT_TRUE(Overlay().Marks().empty() && Overlay().Likes().empty());
    EXPECT_TRUE(Overlay().testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), Site.Start);
    EXPECT_EQ(Run->Window->ewbMain().DocumentHtml(), document);
    EXPECT_TRUE(QDir(Run->System.SettingsFolder() + u"/recipes"_s).isEmpty());
    EXPECT_EQ(Run->Control<QToolButton>(u"imgStop")->shortcut(), QKeySequence(Qt::Key_Escape));
}

TEST_F(TeachTest, EscapeAtEveryStepLeavesNothingBehind) {
    OpenDemo();
    const QString document = Run->Window->ewbMain().DocumentHtml();
    const Lead lead = Server.ModernLeads(Site.Code).front();
    QApplication::setActiveWindow(Run->Window.get());
    const auto press = [this](QWidget* focus) {
        QApplication::setActiveWindow(Run->Window.get()); // keys go to the active window alone
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key_Escape);
        Run->Until([this] { return !Lesson().Active(); }, 5);
    };
    auto* const view = Run->Window->findChild<QWebEngineView*>();
    const std::function<QWidget*()> steps[] = {
        [&]() -> QWidget* { return Run->Control<TeachPanel>(u"TeachPanel"); },
        [&]() -> QWidget* {
            QTest::mouseMove(&Overlay(), PlaceOf(lead.Phone).toPoint());
            EXPECT_TRUE(Run->Until([this] { return Overlay().Likes().size() > 5; }, 10)) << "the likes light up";
            return view->focusProxy();
        },
        [&]() -> QWidget* {
            EXPECT_TRUE(PointAt(lead.Name, Field::BusinessName));
            return Run->Control<QLineEdit>(u"edtTeachName");
        },
        [&]() -> QWidget* {
            Run->Click(u"btnTeachNext");
            return Run->Control<QListWidget>(u"TeachTexts");
        },
        [&]() -> QWidget* {
            Run->Click(u"btnTeachForget");
            return Run->Control<QTableView>(u"TeachTable");
        }};
    for (const auto& step : steps) {
        Teach();
        press(step());
        ExpectNothingLeft(document);
    }
    // In the menu it closes the menu alone.
    Teach();
    const QPoint place = PlaceOf(lead.Name).toPoint();
    QMenu* menu = nullptr;
    Run->When([&] { return (menu = Run->Control<QMenu>(u"TeachMenu")) && menu->isVisible(); },
              [&] {
                  EXPECT_EQ(menu->activeAction()->text(), u"Business Name"_s) << "the likely field stands first";
                  QTest::keyClick(menu, Qt::Key_Escape);
              });
    QTest::qWait(200);
    QTest::mouseClick(&Overlay(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(Run->Until([&] { return menu && !Run->Control<QMenu>(u"TeachMenu"); }, 10));
    EXPECT_TRUE(Lesson().Active() && Session().IsProposed(Field::BusinessName));
    press(Run->Control<TeachPanel>(u"TeachPanel"));
    ExpectNothingLeft(document);
}

// The page's links and buttons do nothing meanwhile, its scripts see nothing, and marks stay where they belong.
TEST_F(TeachTest, ThePageIsOnlyLookedAt) {
    OpenDemo();
    const Lead lead = Server.ModernLeads(Site.Code).front();
    // An advertisement lies over all of it, as pages have it.
    InPage(u"document.body.insertAdjacentHTML('beforeend', '<a href=/biz style=\"position:fixed;inset:0\"></a>')"_s);
    InPage(u"window.before = 0; window.seen = []; for (const kind of ['mousemove', 'mousedown', 'click', 'keydown'])"
           " document.addEventListener(kind, event => seen.push(event.type), true);"
           "new MutationObserver(() => seen.push('change')).observe(document, {childList: true, subtree: true,"
           " attributes: true, characterData: true}); window.before = Object.keys(window).length"_s);
    Teach();
    ASSERT_TRUE(PointAt(lead.Phone, Field::Phone));
    ASSERT_TRUE(PointAt(lead.Name, -1)) << "the link";
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), Site.Start);
    EXPECT_EQ(InPage(u"seen.join() + (Object.keys(window).length - before)"_s).toString(), u"0"_s);
    EXPECT_TRUE(Session().IsProposed(Field::BusinessName)) << "nothing was chosen";

    const auto markAt = [&](const QString& text) {
        return Run->Until(
            [&] {
                const QRectF mark = MarkOf(u"Phone"_s);
                return mark.isValid() && mark.adjusted(-2, -2, 2, 2).contains(PlaceOf(text));
            },
            10);
    };
    EXPECT_TRUE(markAt(lead.Phone));
    InPage(u"scrollBy(0, 90)"_s);
    EXPECT_TRUE(markAt(lead.Phone)) << "follows scrolling";
    InPage(u"scrollTo(0, 0)"_s);
    const QPointF middle = QRectF(Overlay().rect()).center();
    QWheelEvent turned(middle, Overlay().mapToGlobal(middle), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                       Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Overlay(), &turned);
    EXPECT_TRUE(Run->Until([&] { return InPage(u"scrollY"_s).toInt() > 20; }, 10)) << "the wheel scrolls the page";
    // With the wheel, as people zoom.
    const double before = InPage(u"devicePixelRatio"_s).toDouble();
    QWheelEvent zoomed(middle, Overlay().mapToGlobal(middle), {}, {0, 240}, Qt::NoButton, Qt::ControlModifier,
                       Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Overlay(), &zoomed);
    ASSERT_TRUE(Run->Until([&] { return InPage(u"devicePixelRatio"_s).toDouble() > before * 1.1; }, 10));
    EXPECT_TRUE(markAt(lead.Phone)) << "follows zoom";
    ASSERT_TRUE(PointAt(lead.Phone, Field::Phone));
    EXPECT_FALSE(Session().IsProposed(Field::Phone)) << "and is pointed at there";
    // It is built anew, with other elements.
    const size_t records = Session().Reading().Records.size();
    InPage(u"document.querySelector('main').outerHTML += ''"_s);
    QTest::qWait(300);
    EXPECT_TRUE(Lesson().Active());
    EXPECT_EQ(Session().Reading().Records.size(), records);
    EXPECT_FALSE(Session().IsProposed(Field::Phone));
    EXPECT_TRUE(markAt(lead.Phone));

    // A wrong mark is clicked away by its cross.
    PageOverlay::Mark wrong;
    for (const PageOverlay::Mark& each : Overlay().Marks())
        if (each.Caption == u"Phone" && Overlay().rect().contains(Overlay().CrossOf(each).toRect()))
            wrong = each;
    ASSERT_FALSE(wrong.Caption.isEmpty());
    QTest::mouseClick(&Overlay(), Qt::LeftButton, {}, Overlay().CrossOf(wrong).center().toPoint());
    EXPECT_FALSE(MarkOf(u"Phone"_s).isValid() && !Session().ElementsOf(Field::Phone).empty());
    EXPECT_TRUE(Session().Reading().Records.front().Fields.Phone.isEmpty());

    // Asked for the next page, a click says which it is, without a question.
    Lesson().AskField = [](const std::vector<Field>&) { return -1; };
    Run->Click(u"btnTeachNoNext");
    EXPECT_TRUE(Session().Reading().Next.isEmpty());
    Run->Click(u"btnTeachNext");
    const QPointF next = PlaceOf(u"Next"_s);
    QTest::qWait(200);
    QTest::mouseClick(&Overlay(), Qt::LeftButton, {}, next.toPoint());
    EXPECT_TRUE(Run->Until([this] { return !Session().Reading().Next.isEmpty(); }, 10));
}

TEST_F(TeachTest, ThePagesOfTheBusinessesAreReadWhereTheyArePointedAt) {
    OpenDemo(u"demo-hashed");
    const std::vector<Lead> planted = Server.ModernLeads(Site.Code, true);
    Teach();
    ASSERT_TRUE(PointAt(planted[1].Name, PointDetails));
    EXPECT_TRUE(Run->Control<QCheckBox>(u"chkTeachDetails")->isChecked());
    SaveAs(u"With details"_s);
    ASSERT_TRUE(Harvest());
    const std::vector<Lead> shown = Run->ShownLeads();
    ASSERT_EQ(shown.size(), planted.size());
    for (size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i].Email, planted[i].Email) << i << " stands on its own page alone";
}

// A business's own page is shown and pointed at like the list; what is pointed at there is read on the pages of all.
TEST_F(TeachTest, TheFieldsOfTheBusinessesOwnPagesAreTaughtByPointing) {
    OpenDemo(u"demo-hashed");
    const std::vector<Lead> planted = Server.ModernLeads(Site.Code, true);
    const QString document = Run->Window->ewbMain().DocumentHtml();
    const auto openOwnPage = [&] {
        Run->Click(u"btnTeachOwnPage");
        ASSERT_TRUE(Run->Until([this] { return Session().OnOwnPage(); }, 30));
        EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), planted.front().DetailsLink);
    };
    const auto isBack = [&] {
        return Run->Window->ewbMain().LocationAddress() == Site.Start && !Run->Window->ewbMain().Busy();
    };
    Teach();
    openOwnPage();
    QTest::keyClick(Run->Control<TeachPanel>(u"TeachPanel"), Qt::Key_Escape);
    ASSERT_TRUE(Run->Until([&] { return !Lesson().Active() && isBack(); }, 20)) << "leaving shows the list again";
    QTest::qWait(200);
    ExpectNothingLeft(document);

    Teach();
    auto* const fields = Run->Control<QTreeWidget>(u"TeachFields");
    fields->setCurrentItem(fields->topLevelItem(static_cast<int>(Field::Category)));
    Run->Click(u"btnTeachForget");
    openOwnPage();
    ASSERT_TRUE(PointAt(planted.front().Category, Field::Category));
    EXPECT_TRUE(Run->Until([this] { return MarkOf(u"Category"_s).isValid(); }, 10)) << "it is marked there";
    const Recipe& recipe = Session().What();
    ASSERT_EQ(recipe.DetailsFields.size(), 1U) << Run->Control<QLabel>(u"TeachSaid")->text().toStdString();
    EXPECT_EQ(Run->Control<TeachPanel>(u"TeachPanel")->Leads().At(2).Category, planted[2].Category);
    Run->Click(u"btnTeachOwnPage");
    ASSERT_TRUE(Run->Until([this] { return !Session().OnOwnPage() && MarkOf(u"Phone"_s).isValid(); }, 20));
    EXPECT_TRUE(isBack());
    SaveAs(u"With fields of own pages"_s);
    ASSERT_TRUE(Harvest());
    const std::vector<Lead> shown = Run->ShownLeads();
    ASSERT_EQ(shown.size(), planted.size());
    for (size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i].Category + shown[i].Email, planted[i].Category + planted[i].Email) << i;

    // Somebody who goes elsewhere from there stays where he went.
    ASSERT_TRUE(Run->GoTo(Site.Start));
    Run->Window->Lessons().Watch().Look();
    Teach();
    openOwnPage();
    ASSERT_TRUE(Run->GoTo(planted[3].DetailsLink));
    EXPECT_FALSE(Lesson().Active());
    QTest::qWait(300);
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), planted[3].DetailsLink);
}

TEST_F(TeachTest, StopAnotherSiteGetDataAndClosingEndALessonCleanly) {
    OpenDemo();
    Teach();
    Run->Click(u"btnStop");
    EXPECT_TRUE(Lesson().Active()) << "there is no harvest to stop";
    Run->Click(u"imgRefresh");
    ASSERT_TRUE(Run->Until([this] { return !Run->Window->ewbMain().Busy() && MarkOf(u"Phone"_s).isValid(); }, 20));
    EXPECT_TRUE(Lesson().Active()) << "the same page again";
    Run->ChooseSite(SiteCode::YellowPagesCanada.toString(), Server);
    EXPECT_FALSE(Lesson().Active());
    EXPECT_TRUE(Run->Items().isVisible());

    const auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
    Run->Choose(u"cbxWebsites", sites->findText(u"Any website"_s));
    ASSERT_TRUE(Run->GoTo(Site.Start));
    ASSERT_TRUE(BarSays(u"businesses"_s));
    Teach();
    Run->Click(u"btnStart");
    EXPECT_FALSE(Lesson().Active()) << "a harvest shows its own results";
    ASSERT_TRUE(Run->Until([this] { return Run->Window->Leads().Count() > 0; }, 30));
    Run->Click(u"btnStop");
    ASSERT_TRUE(Run->Until([this] { return Idle(); }, 30));
    ASSERT_TRUE(Run->GoTo(Site.Start));
    ASSERT_TRUE(BarSays(u"businesses"_s));
    Teach();
    ASSERT_TRUE(PointAt(Server.ModernLeads(Site.Code).front().Name, Field::BusinessName));
    Run->Window->close();
    Run->Window.reset();
}

// On a page from disk. Where nothing is sure, the lists that may be one are stepped through, and teaching begins with
// the one that is shown.
TEST_F(TeachTest, ListsThatMayBeOneAreSteppedThrough) {
    Server.Start();
    QString html = u"<html lang=en><body><h1>Our friends</h1><ul>"_s;
    for (const QString& name : {u"Harbour Rowing"_s, u"Old Mill Players"_s, u"Green Lane Choir"_s, u"Hilltop Runners"_s,
                                u"Riverside Chess"_s, u"Station Gardeners"_s})
        html += u"<li><a href=\"/c/%1\">%1</a> <span>since 1952</span></li>"_s.arg(name);
    html += u"</ul><h2>News</h2>"_s;
    for (const QString& name : {u"Summer fair"_s, u"New roof"_s, u"Harvest supper"_s, u"Winter walk"_s})
        html +=
            u"<div class=n><h3><a href=\"/n/%1\">%1</a></h3><p>All are welcome to it this year.</p></div>"_s.arg(name);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"page.html"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(html.toUtf8()) > 0);
    file.close();
    Open(QUrl::fromLocalFile(file.fileName()).toString());
    EXPECT_TRUE(BarSays(u"Perhaps a list of 4 businesses (list 1 of 3)"_s)) << Bar().toStdString();
    EXPECT_TRUE(Run->Until([this] { return Overlay().Records().size() == 4; }, 10));
    EXPECT_FALSE(Run->Control<QPushButton>(u"btnAnyHarvest")->isVisible());
    Run->Click(u"btnPreviousList");
    EXPECT_TRUE(Bar().endsWith(u"(list 3 of 3)"_s)) << Bar().toStdString();
    Run->Click(u"btnNextList");
    Run->Click(u"btnNextList");
    EXPECT_TRUE(Run->Until([this] { return Overlay().Records().size() == 6; }, 10));
    EXPECT_EQ(Bar(), u"Perhaps a list of 6 businesses (list 2 of 3)"_s);
    Teach();
    ASSERT_EQ(Session().Reading().Records.size(), 6U);
    EXPECT_EQ(Session().Reading().Records[2].Fields.Name, u"Green Lane Choir"_s);
}

} // namespace
} // namespace Brindle::Test
