#include "discovery/AnyPage.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString site = u"https://www.guide.example.de"_s;

std::vector<PageRecord> ReadEntries(const QString& entries, const QString& title) {
    const PageTree page(
        u"<!DOCTYPE html><html lang=de><title>%1</title><body><h1>%1</h1><div>%2</div>"_s.arg(title, entries));
    return ReadAnyPage(page, site + u"/x"_s).Records;
}

TEST(Agreement, WhatComesAgainAndAgainBehindTheNamesIsATrade) {
    const auto thirdOf = [](const QStringList& texts) {
        QString list;
        for (int i = 1; i <= 9; ++i)
            list += u"<section><h3><a href='/b/%1'>Haus %2</a></h3><h4>%3</h4><p>Ringweg %1, 50667 Köln</p></section>"_s
                        .arg(QString::number(i), QChar(u'A' + i), texts[i % 3]);
        const PageTree page(u"<!DOCTYPE html><html lang=de><title>Firmen in Köln</title><body><h1>Firmen</h1>"_s +
                            list);
        const auto records = ReadAnyPage(page, site + u"/x"_s).Records;
        return records.size() == 9 ? records[2].Fields.Category : u"not read"_s;
    };
    EXPECT_EQ(thirdOf({u"Zwirnerei"_s, u"Färberei"_s, u"Weberei"_s}), u"Zwirnerei"_s);
    EXPECT_EQ(thirdOf({u"Erdgeschoss, Hof"_s, u"Haus 2/3"_s, u"c/o Meier"_s}), QString());
    EXPECT_EQ(thirdOf({u"Geschlossen"_s, u"Geöffnet"_s, u"Jetzt geöffnet"_s}), QString());
}

TEST(Agreement, AnAddressStandsWhereTheOthersHaveTheirs) {
    QString list;
    for (int i = 1; i <= 6; ++i)
        list +=
            u"<section><h3><a href='/b/%1'>Haus %2</a></h3><p>%3, Köln</p><p>Tel. 0221 55512%1</p></section>"_s.arg(i)
                .arg(QChar(u'A' + i))
                .arg(i == 3 ? u"Im Alten Hof"_s : u"Ringweg %1"_s.arg(i));
    const auto records = ReadEntries(list, u"Elektriker in Köln"_s);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_EQ(records[2].Fields.FullAddress, u"Im Alten Hof, Köln"_s);
}

TEST(Agreement, ARoleMakesAHeading) {
    QString list;
    for (int i = 1; i <= 3; ++i)
        list += u"<section><div role=heading aria-level=3>Haus %2</div><div>Ringweg %1, 50667 Köln</div>"
                u"<div>0221 55512%1</div><a href='/b/%1'>Details</a></section>"_s.arg(i)
                    .arg(QChar(u'A' + i));
    EXPECT_EQ(ReadEntries(list, u"Willkommen"_s).size(), 3U);
}

} // namespace
} // namespace Brindle
