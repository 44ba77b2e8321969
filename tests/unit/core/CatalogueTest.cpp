#include "HarvestBench.h"
#include "PrintTo.h"
#include "SiteCodes.h"
#include "core/Errors.h"
#include "core/SiteCatalogue.h"
#include "core/SitesFile.h"

#include <QFile>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

struct Page {
    QStringView Site;
    QStringView Text;
    int Before;
    int After;
    QStringView Disabled;
};

TEST(GetInitTokens, PicksTheFirstSetThatMatches) {
    const Page pages[] = {
        {SiteCode::YellowPagesCanada, u"<div class=\"ypgresultstop\" main <div class=ypgfooterlegal footer", 0, 1, u""},
        {SiteCode::YellowPagesCanada, u"<DIV CLASS=\"YPGRESULTSTOP\" main footer", 0, 2, u""},
        {SiteCode::YellowPagesCanada, u"nothing", 1, 1, u""},
        {SiteCode::UsYellowPages, u"ROW-FLUID footer-wrapper", 0, 2, u""},
        {SiteCode::InfobelItaly, u"span-4 people ID=FOOTER", 0, 2, u"ec disabled>successivo"},
        {SiteCode::Virgilio, u"CONTEGGI vf_footer", 7, 1, u""},
        {u"KVPX000000", u"main footer", 3, 3, u""},
    };
    for (const Page& c : pages) {
        MarkerSet markers;
        int variant = c.Before;
        GetInitTokens(c.Text.toString(), SiteOfCode(c.Site), markers, variant);
        EXPECT_EQ(variant, c.After) << c.Text.toUtf8().data();
        EXPECT_EQ(markers.TknNextPageDisabled, c.Disabled.toString());
    }
    MarkerSet markers;
    int variant = 0;
    GetInitTokens(u"nothing"_s, SiteOfCode(SiteCode::YellowPagesCanada), markers, variant);
    EXPECT_EQ(markers.TknInitList, u"main"_s); // the last set tried stays assigned
    EXPECT_EQ(MissingListMarkers(u"x main"_s, SiteOfCode(SiteCode::YellowPagesCanada)),
              u"missing list marker layout 1: \u201C<DIV class=\"ypgResultsTop\u201D and \u201C<DIV "
              u"class=ypgFooterLegal\u201D; "
              u"layout 2: \u201Cfooter\u201D"_s);
}

TEST(Catalogue, KeepsEntriesAndCodesInParallel) {
    SiteCatalogue catalogue(u"http://maps.test"_s);
    catalogue.Add({.Code = u"A"_s, .Base = u"http://a.test"_s, .Label = u"USA"_s}, {.Code = u"A"_s});
    catalogue.Add({.Code = u"B"_s, .Base = u"http://b.test"_s, .Label = u"Canada"_s}, {.Code = u"B"_s});
    EXPECT_EQ(catalogue.WebsiteURLS(), (QStringList{u"http://a.test (USA)"_s, u"http://b.test (Canada)"_s}));
    EXPECT_EQ(catalogue.GetCountryID(u"http://b.test (Canada)"_s), u"B"_s);
    EXPECT_EQ(catalogue.GetCountryID(u"http://b.test"_s), QString());
    EXPECT_EQ(GetCountryURL(u" http://b.test (Canada) (x)"_s), u"http://b.test"_s);
    EXPECT_EQ(GetCountryURL(u" http://b.test "_s), u" http://b.test "_s);
}

TEST(Catalogue, TakesDirectoriesThatAreMadeAtRunTime) {
    SiteCatalogue catalogue;
    {
        const QString page = u"of "_s + QString::number(1);
        const SiteAdapter made{
            .Code = u"ANY"_s,
            .Links = Way::Classic,
            .Layouts = {{.InitList = u"list"_s,
                         .EndList = u"end"_s,
                         .Read = [page](Harvest& harvest,
                                        const QString& text) { harvest.Leads.Append({.Name = text + page}); }}},
            .SearchAddress = u"http://a.test/?q={what}"_s};
        catalogue.Add({.Code = u"ANY"_s, .Label = u"Any website"_s, .Links = Way::Modern}, made);
    }
    EXPECT_EQ(catalogue.WebsiteURLS(), QStringList{u"Any website"_s});
    EXPECT_EQ(catalogue.GetCountryID(u"Any website"_s), u"ANY"_s);
    const std::shared_ptr<const SiteAdapter> site = catalogue.Adapter(u"ANY");
    catalogue = {}; // what is in use stays
    EXPECT_EQ(site->Links, Way::Modern);
    EXPECT_EQ(site->SearchAddress, u"http://a.test/?q={what}"_s);
    Brindle::Test::HarvestBench bench(std::span(site.get(), 1), u"ANY", 0);
    site->Read(bench.Job, 0, u"a page "_s);
    EXPECT_EQ(bench.Leads.At(0).Name, u"a page of 1"_s);
}

QByteArray CompleteSites() {
    QByteArray text = "[map]\nbase=https://maps.test\n";
    for (const QString& code : KnownSiteCodes())
        text += "[" + code.toUtf8() + "]\nbase=http://" + code.toLower().toUtf8() + ".test ; no slash\nlabel=Land\n";
    return text;
}

TEST(SitesFile, ReadsEntriesAndComments) {
    QByteArray text = "\xEF\xBB\xBF; head\r\n# too\r\n" + CompleteSites();
    text.replace(
        "label=Land\n[KVPN002001]",
        "label=A;B (x) ; "
        "c\nlinks=modern\nsearch=http://s.test/{what}/{where}\ndetails_base=http://d.test\nown_host=own\n[KVPN002001]");
    const SitesFile file = SitesFile::Parse(text + "[browser]\nuser_agent=Agent/1\n[publisher]\nnews=http://n.test\n",
                                            u"s.ini"_s, SiteAdapters());
    ASSERT_EQ(file.Sites.size(), SiteAdapters().size());
    EXPECT_TRUE(file.Problems.empty());
    EXPECT_EQ(file.Sites[0].Base, u"http://kvpn001001.test"_s);
    EXPECT_EQ(file.Sites[0].Label, u"A;B (x)"_s);
    EXPECT_EQ(file.Sites[0].DetailsBase, u"http://d.test"_s);
    EXPECT_EQ(file.Sites[1].DetailsBase, file.Sites[1].Base);
    const SiteCatalogue catalogue = file.Catalogue();
    EXPECT_EQ(catalogue.Adapter(u"KVPN001001")->Links, Way::Modern);
    EXPECT_EQ(catalogue.Adapter(u"KVPN001001")->SearchAddress, u"http://s.test/{what}/{where}"_s);
    EXPECT_EQ(catalogue.Adapter(u"KVPN002001")->Links, Way::Classic);
    EXPECT_EQ(file.MapBase, u"https://maps.test"_s);
    EXPECT_EQ(file.BrowserUserAgent, u"Agent/1"_s);
    EXPECT_EQ(file.PublisherNews, u"http://n.test"_s);
}

TEST(SitesFile, NamesFileGroupAndKeyOfWhatIsWrong) {
    struct Case {
        QByteArray Before, After;
        QString Problem;
        qsizetype Disabled;
    };
    const Case cases[] = {
        {"[map]\nbase=https://maps.test\n", "", u"s.ini: group [map], key base: missing, as is the group"_s, 0},
        {"base=http://kvpe001003.test ; no slash\n", "", u"s.ini: group [KVPE001003], key base: missing"_s, 1},
        {"base=http://kvpe001003.test ", "base=www.x.test",
         u"s.ini: group [KVPE001003], key base: \u201Cwww.x.test; no slash\u201D is no http or https address"_s, 1},
        {"[map]", "stray=1\n[map]",
         u"s.ini: line 1, before the first group: \u201Cstray=1\u201D is not of the form key=value"_s, 0},
        {"base=http://kvpe001003.test ", "links=new\nbase=http://kvpe001003.test ",
         u"s.ini: group [KVPE001003], key links: \u201Cnew\u201D is neither classic nor modern"_s, 0},
        {"[map]\n", "[map]\nbroken\n", u"s.ini: line 2, group [map]: \u201Cbroken\u201D is not of the form key=value"_s,
         0},
    };
    for (const Case& c : cases) {
        const SitesFile file = SitesFile::Parse(CompleteSites().replace(c.Before, c.After), u"s.ini"_s, SiteAdapters());
        ASSERT_EQ(file.Problems.size(), 1U) << c.Before.data();
        EXPECT_EQ(file.Problems[0].Text, c.Problem);
        EXPECT_EQ(file.DisabledSites.size(), c.Disabled);
    }
    const SitesFile none = SitesFile::Parse("\xFF\xFE\x00garbage", u"s.ini"_s, SiteAdapters());
    EXPECT_TRUE(none.Sites.empty());
    EXPECT_FALSE(none.ProblemsOf(SiteCode::Virgilio).isEmpty());
    EXPECT_THROW(SitesFile::Load(u"/nonexistent/sites.ini"_s, SiteAdapters()), Failure);
    EXPECT_THROW(SitesFile::Load(u"/"_s, SiteAdapters()), Failure);
}

TEST(SitesFile, TheShippedOneIsComplete) {
    const SitesFile file = SitesFile::Load(QStringLiteral(PROJECT_DIR "/config/sites.ini"), SiteAdapters());
    EXPECT_EQ(file.Sites.size(), SiteAdapters().size());
    EXPECT_TRUE(file.Problems.empty());
    for (const SiteEntry& entry : file.Sites)
        EXPECT_TRUE(entry.Search.startsWith(entry.Base) && entry.Search.contains(u"{what}"_s) &&
                    entry.Search.contains(u"{where}"_s))
            << entry.Search.toStdString();
}

} // namespace
} // namespace Brindle
