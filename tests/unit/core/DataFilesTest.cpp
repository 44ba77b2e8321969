#include "core/DataFiles.h"

#include "HarvestBench.h"
#include "PrintTo.h"
#include "core/SitesFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

void Put(const QString& fileName, const QByteArray& text) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(fileName).path()));
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

TEST(DataFile, IsBesideTheProgramOrWhereItIsInstalled) {
    const QTemporaryDir root;
    const QString usr = root.path();
    Put(usr + u"/share/brindle/sites.ini", "installed");
    const QString installed = usr + u"/share/brindle/sites.ini";
    EXPECT_EQ(DataFileFor(usr + u"/bin", u"sites.ini"_s), installed);
    EXPECT_EQ(DataFileFor(usr + u"/libexec/brindle", u"sites.ini"_s), installed);
    // Nowhere: the place that a message should name.
    EXPECT_EQ(DataFileFor(usr + u"/bin", u"languages"_s), usr + u"/bin/languages");
    // A program of a build tree keeps to its own files.
    Put(usr + u"/bin/sites.ini", "beside");
    EXPECT_EQ(DataFileFor(usr + u"/bin", u"sites.ini"_s), usr + u"/bin/sites.ini");
}

TEST(SitesFile, TheUsersOwnEntriesWinKeyByKey) {
    const QTemporaryDir folder;
    const QString program = folder.filePath(u"sites.ini"_s);
    const QString own = folder.filePath(u"own/sites.ini"_s);
    Put(program, "[map]\nbase=http://map\n[A]\nbase=http://a\nlabel=Aland\n[B]\nbase=http://b\nlabel=Bonaire\n");
    SiteAdapter a;
    a.Code = u"A"_s;
    SiteAdapter b;
    b.Code = u"B"_s;
    const SiteAdapter directories[] = {a, b};

    EXPECT_EQ(SitesFile::Load(program, own, directories).Sites.size(), 2); // none of his own is the usual case
    Put(own, "[A]\nbase=http://mine\n[B]\nbase=gopher://b\n");
    const SitesFile sites = SitesFile::Load(program, own, directories);
    ASSERT_EQ(sites.Sites.size(), 1);
    EXPECT_EQ(sites.Sites[0].Base, u"http://mine");
    EXPECT_EQ(sites.Sites[0].DetailsBase, u"http://mine");
    EXPECT_EQ(sites.Sites[0].Label, u"Aland");
    ASSERT_EQ(sites.Problems.size(), 1);
    EXPECT_TRUE(sites.Problems[0].Text.startsWith(QDir::toNativeSeparators(own)))
        << sites.Problems[0].Text.toStdString();

    // What cannot be read stops nothing.
    ASSERT_TRUE(QFile::remove(own) && QDir().mkdir(own));
    const SitesFile without = SitesFile::Load(program, own, directories);
    EXPECT_EQ(without.Sites.size(), 2);
    EXPECT_EQ(without.Problems.size(), 1);
}

} // namespace
} // namespace Brindle
