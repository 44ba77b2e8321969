#include "HarvestBench.h"
#include "PrintTo.h"
#include "adapters/Adapters.h"
#include "core/Errors.h"
#include "core/HarvestDriver.h"
#include "core/SitesFile.h"
#include "page/HtmlDocument.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUrlQuery>

#include <gtest/gtest.h>
#include <ostream>

// The saved pages under tests/data/pages: what a person can open in a browser must be read as that person reads it.

namespace Brindle::Test {
namespace {

using namespace Qt::Literals::StringLiterals;

const QString pagesFolder = QStringLiteral(TEST_DATA_DIR "/pages");

QString ReadFile(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        ADD_FAILURE() << "cannot read " << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

// The address in the comment that browsers write into a page that they save.
QString AddressOf(const QString& page) {
    const qsizetype begin = page.indexOf(u')', page.indexOf(u"<!-- saved from url=("_s)) + 1;
    return page.sliced(begin, page.indexOf(u" -->"_s, begin) - begin);
}

std::vector<Lead> LeadsIn(const QString& jsonl) {
    std::vector<Lead> leads;
    for (const QString& line : jsonl.split(u'\n', Qt::SkipEmptyParts)) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        EXPECT_EQ(object.size(), FieldCount) << line.toStdString();
        Lead& lead = leads.emplace_back();
        for (int column = 0; column < FieldCount; ++column)
            lead.At(column) = object.value(EnglishCaptions()[column]).toString();
    }
    return leads;
}

// Delivers the pages of a folder. The click server leads where the address says.
class SavedPages : public PageSource {
public:
    explicit SavedPages(HarvestState& state) : state_(state) {}
    bool DownloadURL(const QString& url, QString& page, bool /*utf8*/) override {
        const QString target = QUrlQuery(QUrl(url)).queryItemValue(u"dest"_s, QUrl::FullyDecoded);
        if (!target.isEmpty())
            state_.CurrRedirect = target;
        const auto found = Pages.constFind(target.isEmpty() ? url : target);
        if (found == Pages.cend())
            return false;
        page = *found;
        return true;
    }
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override {
        return DownloadURL(url, page, utf8);
    }
    void Disconnect() override {}

    QHash<QString, QString> Pages;

private:
    HarvestState& state_;
};

class SavedFolder : public testing::TestWithParam<QString> {};

TEST_P(SavedFolder, IsReadAsAPersonReadsIt) {
    const QDir folder(pagesFolder + u'/' + GetParam());
    const SitesFile sites =
        SitesFile::Parse(ReadFile(pagesFolder + u"/sites.ini").toUtf8(), u"sites.ini"_s, SiteAdapters());
    const SiteCatalogue catalogue = sites.Catalogue();
    const QString code = GetParam().first(10);
    ASSERT_NE(catalogue.Find(code), nullptr) << "sites.ini has no " << code.toStdString();

    const SiteAdapter& site = SiteOfCode(code);
    HarvestBench bench(code, 0);
    SavedPages pages(bench.State);
    Harvest job({bench.State, bench.Leads, bench.Options, bench.Texts, catalogue, bench.Loop, bench.Status,
                 bench.Notices, pages, bench.Emails, bench.Saver});
    bench.State.SelectedEntry = catalogue.Find(code)->DisplayEntry();

    QStringList results;
    for (const QString& name : folder.entryList({u"*.html"_s, u"*.htm"_s}, QDir::Files, QDir::Name)) {
        const QString page = ReadFile(folder.filePath(name));
        if (name.startsWith(u"results"_s))
            results.append(page);
        else
            pages.Pages.insert(AddressOf(page), page);
    }
    ASSERT_FALSE(results.isEmpty());
    for (const QString& page : results) {
        const QString body = BodyOfPage(page, site.Form);
        MarkerSet markers;
        bench.State.CurrSite = 0;
        GetInitTokens(body, site, markers, bench.State.CurrSite);
        EXPECT_NE(bench.State.CurrSite, 0) << MissingListMarkers(body, site).toStdString();
        // A second layout that has the same list markers as the first is told by the folder alone.
        if (GetParam().endsWith(u"layout2") && !MarkersOfVariant(site, 2))
            bench.State.CurrSite = 2;
        try {
            GetDataResults(job, body);
        } catch (const PageError&) {
            // The leads read so far stay, as in a harvest.
        }
    }
    EXPECT_EQ(bench.AllLeads(), LeadsIn(ReadFile(folder.filePath(u"leads.jsonl"_s))));
}

std::vector<QString> Folders() {
    const QStringList names = QDir(pagesFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    return {names.begin(), names.end()};
}

INSTANTIATE_TEST_SUITE_P(Pages, SavedFolder, testing::ValuesIn(Folders()), [](const auto& info) {
    QString name = info.param;
    return name.replace(u'-', u'_').toStdString();
});

} // namespace
} // namespace Brindle::Test
