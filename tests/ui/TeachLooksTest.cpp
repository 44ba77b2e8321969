// Every modern demo directory is taught in the whole window with the real Chromium engine, as a person would who looks
// at the table below the page and points at what is missing there.
#include "PrintTo.h"
#include "TeachFixture.h"

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

struct Look {
    const char16_t* Code;
    const char16_t* NextPage; ///< what its link says; null: more comes by itself
};

void PrintTo(const Look& look, std::ostream* out) {
    *out << QString::fromUtf16(look.Code).toStdString();
}

class TeachLooksTest : public TeachFixture, public testing::WithParamInterface<Look> {
protected:
    std::vector<Lead> Planted;

    // What is taught reads every business of the page field by field.
    void ExpectNothingWrong() {
        const auto& records = Session().Reading().Records;
        ASSERT_GE(records.size(), 10U);
        for (size_t i = 0; i < records.size(); ++i)
            EXPECT_EQ(records[i].Fields, Planted[i]) << i;
    }
};

TEST_P(TeachLooksTest, IsTaughtByPointingAndHarvestedFieldByField) {
    const Demo::ModernSite site = StartSite(QString::fromUtf16(GetParam().Code));
    Planted = Server.ModernLeads(site.Code);
    Open(site.Start);
    ASSERT_TRUE(BarSays(u"businesses"_s)) << Bar().toStdString();
    const QString before = Run->Window->ewbMain().DocumentHtml();
    Teach();
    // Three clicks, in a business that is not the first one; the rest is proposed.
    ASSERT_TRUE(PointAt(Planted[4].Name, Field::BusinessName));
    ASSERT_TRUE(PointAt(Planted[4].Phone, Field::Phone));
    if (GetParam().NextPage) {
        ASSERT_TRUE(PointAt(QString::fromUtf16(GetParam().NextPage), PointNext));
        EXPECT_TRUE(!Session().What().Next.isEmpty() && Session().What().Next != automaticNextPage);
    }
    for (const Field field : {Field::BusinessName, Field::Phone})
        EXPECT_FALSE(Session().IsProposed(field)) << static_cast<int>(Session().Problem());
    ExpectNothingWrong();
    EXPECT_EQ(Run->Window->ewbMain().DocumentHtml(), before) << "nothing is drawn into the page";

    // What the table below shows is what a harvest of this page gives.
    const LeadList& table = Run->Control<TeachPanel>(u"TeachPanel")->Leads();
    std::vector<Lead> taught;
    for (qsizetype row = 0; row < table.Count(); ++row)
        taught.push_back(table.At(row));
    SaveAs(u"Taught by pointing"_s);
    ASSERT_TRUE(Harvest());
    std::vector<Lead> shown = Run->ShownLeads();
    for (Lead& lead : shown)
        lead.MapLink.clear(); // which the harvest adds
    ASSERT_EQ(shown.size(), Planted.size());
    for (size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i], Planted[i]) << i;
    ASSERT_LE(taught.size(), shown.size());
    for (size_t i = 0; i < taught.size(); ++i)
        EXPECT_EQ(taught[i], shown[i]) << i;

    // After a relaunch the classes are others; what is left of the recipe and what the program sees mend it.
    Server.ChangeClasses(site.Code, true);
    ASSERT_TRUE(Run->GoTo(site.Start));
    ASSERT_TRUE(Run->Until([this] { return !Bar().isEmpty(); }, 30));
    Teach();
    ASSERT_TRUE(PointAt(Planted[2].Name, Field::BusinessName));
    ExpectNothingWrong();
    const QString code = Run->Window->State().CurrID;
    Run->Click(u"btnTeachSave");
    EXPECT_EQ(Run->Window->State().CurrID, code) << "under its own name";
    EXPECT_TRUE(BarSays(u"businesses"_s)) << Bar().toStdString();
    EXPECT_FALSE(Bar().contains(u'\n')) << Bar().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Looks, TeachLooksTest,
                         testing::Values(Look{u"demo-json-ld", u"Next"}, Look{u"demo-microdata", u"Weiter ›"},
                                         Look{u"demo-hcard", u"Suivant"}, Look{u"demo-hashed", u"Siguiente"},
                                         Look{u"demo-table", u"Następna »"}, Look{u"demo-definitions", u"次へ"},
                                         Look{u"demo-mixed", u"Next page"}, Look{u"demo-secure", u"Nächste Seite"},
                                         Look{u"demo-load-more", u"Load more"}, Look{u"demo-scrolling", nullptr}),
                         [](const auto& info) {
                             return QString::fromUtf16(info.param.Code).remove(u"demo-"_s).remove(u'-').toStdString();
                         });

} // namespace
} // namespace Brindle::Test
