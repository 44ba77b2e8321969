#include "CommandLine.h"
#include "PrintTo.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// What was learned from one business reads the others, on the page and on the next one.
TEST(Teach, ARecipeFromExamplesReadsSavedPages) {
    const QTemporaryDir folder;
    const auto write = [&folder](const QString& name, int from) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        for (int i = from; i < from + 5; ++i)
            file.write(u"<li class=hit><h2><a href='/biz/%1'>Joe %1</a></h2><p class=tel>555-010%1</p></li>"_s.arg(i)
                           .toUtf8());
        return file.fileName();
    };
    const QString first = write(u"1.html"_s, 0);
    const QString second = write(u"2.html"_s, 5);
    const QStringList url{u"--url"_s, u"https://dir.example/list"_s};
    const QString recipe = folder.filePath(u"joes.toml"_s);
    const Outcome taught = RunCli(QStringList{u"teach"_s} + url +
                                  QStringList{u"--example"_s, u"Business Name=Joe 3"_s, u"--example"_s,
                                              u"phone=5550103"_s, u"--out"_s, recipe, first});
    ASSERT_EQ(taught.Status, 0) << taught.Err.toStdString();
    EXPECT_EQ(taught.Out, QByteArray());
    const QStringList parse = QStringList{u"parse"_s, u"--recipe"_s, recipe, u"--format"_s, u"jsonl"_s} + url;
    const Outcome read = RunCli(parse + QStringList{first, second});
    ASSERT_EQ(read.Status, 0) << read.Err.toStdString();
    const std::vector<Lead> leads = LeadsOfJsonl(read.Out);
    ASSERT_EQ(leads.size(), 10U);
    Lead last;
    last.Name = u"Joe 9"_s;
    last.Phone = u"555-0109"_s;
    last.DetailsLink = u"https://dir.example/biz/9"_s;
    EXPECT_EQ(leads[9], last);
    EXPECT_FALSE(read.Err.contains("was 5 of 5")) << read.Err.toStdString();

    // A page without what was taught: no lead, no failure, and a word about it.
    const Outcome none = RunCli(parse + QStringList{recipe});
    EXPECT_EQ(none.Status, 0);
    EXPECT_TRUE(none.Out.isEmpty() && none.Err.contains("no records, was 5")) << none.Err.toStdString();
}

TEST(Teach, WhatCannotBeTaughtEndsWithOneLine) {
    const QTemporaryDir folder;
    QFile page(folder.filePath(u"page.html"_s));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.write("<h1>Joe</h1>");
    page.close();
    const struct {
        QString Example;
        int Status;
        QByteArray Err;
    } cases[] = {
        {u"Business Name=Ann"_s, 1, "brindle-cli: Business Name=Ann: not found on the page\n"},
        {u"Business Name=Joe"_s, 1, "brindle-cli: Business Name=Joe: nothing else on the page is made like it\n"},
        {u"Name=Joe"_s, 2, ""},
        {u"Business Name="_s, 2, ""}};
    for (const auto& row : cases) {
        const QString recipe = folder.filePath(u"r.toml"_s);
        const Outcome outcome = RunCli({u"teach"_s, u"--url"_s, u"https://dir.example/"_s, u"--example"_s, row.Example,
                                        u"--out"_s, recipe, page.fileName()});
        EXPECT_EQ(outcome.Status, row.Status) << row.Example.toStdString();
        if (!row.Err.isEmpty()) {
            EXPECT_EQ(outcome.Err, row.Err);
        }
        EXPECT_FALSE(QFile::exists(recipe));
    }
}

} // namespace
} // namespace Brindle::Test
