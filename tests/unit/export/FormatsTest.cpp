#include "PrintTo.h"
#include "core/Errors.h"
#include "export/JsonLine.h"
#include "export/LeadLines.h"
#include "export/LeadReader.h"
#include "export/SheetCsv.h"
#include "export/Workbook.h"

#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <random>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

Lead Plain(int number) {
    Lead lead;
    for (int column = 0; column < FieldCount; ++column)
        lead.At(column) = u"%1 of %2"_s.arg(EnglishCaptions()[column]).arg(number);
    lead.Website = u"https://shop-%1.example/"_s.arg(number);
    lead.DetailsLink = u"https://directory.example/%1"_s.arg(number);
    return lead;
}

// Leads with what formats stumble over, a different text in each field.
std::vector<Lead> HardLeads(const QStringList& texts) {
    std::vector<Lead> leads;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        Lead lead = Plain(static_cast<int>(i));
        lead.Name = texts[i];
        lead.FullAddress = texts[(i + 1) % texts.size()];
        lead.City = texts[(i + 2) % texts.size()];
        lead.Category = texts[(i + 3) % texts.size()];
        leads.push_back(lead);
    }
    return leads;
}

const QStringList hardTexts{u"Caffè \"Da Gino\", S.r.l.; \u201Cquoted\u201D"_s,
                            u"two\nlines"_s,
                            u"return\r\nand line"_s,
                            u"=1+1"_s,
                            u"+cmd|' /C calc'!A0"_s,
                            u"-2"_s,
                            u"@SUM(A1)"_s,
                            u"\tindented"_s,
                            u"'apostrophe"_s,
                            u"שלום עולם مرحبا"_s,
                            u"\U0001F355 pizza \U0001F1EE\U0001F1F9"_s,
                            u"C:\\path\\n"_s,
                            u"a^b^nc ^' \"x\""_s,
                            u"_x0041_ & <b> ]]>"_s,
                            QString(32'767, u'x'),
                            u" blanks around "_s};

class Formats : public testing::Test {
protected:
    QTemporaryDir folder_;

    QString Written(LeadFormat format, const std::vector<Lead>& leads, const ExportShape& shape = {},
                    ExportLosses* losses = nullptr) {
        const QString fileName = folder_.filePath(u"leads."_s + LeadFormatNames()[static_cast<int>(format)]);
        if (format == LeadFormat::Workbook) {
            Workbook workbook(fileName, shape);
            for (const Lead& lead : leads)
                workbook.Add(lead);
            workbook.Finish();
            if (losses)
                *losses = workbook.Losses();
            return fileName;
        }
        const std::unique_ptr<LeadLines> lines = MakeLeadLines(format, shape);
        QByteArray bytes;
        lines->AppendHeader(bytes);
        for (const Lead& lead : leads)
            lines->AppendLead(bytes, lead);
        if (losses)
            *losses = lines->Losses();
        return WrittenBytes(bytes, fileName);
    }
    QString WrittenBytes(const QByteArray& bytes, const QString& fileName) {
        QFile file(fileName);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return fileName;
    }
    QString WrittenBytes(const QByteArray& bytes) { return WrittenBytes(bytes, folder_.filePath(u"list"_s)); }
};

TEST_F(Formats, WhatGoesOutComesBackEqual) {
    const std::vector<Lead> leads = HardLeads(hardTexts);
    for (const LeadFormat format :
         {LeadFormat::CsvSheet, LeadFormat::JsonLines, LeadFormat::Workbook, LeadFormat::VCard}) {
        ExportLosses losses;
        const LeadFile back = ReadLeadFile(Written(format, leads, {}, &losses));
        ASSERT_EQ(back.Leads.size(), leads.size()) << static_cast<int>(format);
        for (size_t i = 0; i < leads.size(); ++i) {
            Lead lead = leads[i];
            for (int field = 0; field < FieldCount && format == LeadFormat::VCard; ++field)
                lead.At(field).replace(u"\r\n"_s, u"\n"_s); // the one line break that a card knows
            EXPECT_EQ(back.Leads[i], lead) << static_cast<int>(format) << ' ' << i;
        }
        EXPECT_TRUE(back.Problems.isEmpty()) << back.Problems.join(u'\n').toStdString();
        EXPECT_TRUE(losses.IsEmpty());
    }
}

TEST(JsonLineOfALead, HasEveryKeyInOrderAndEscapesWhatItMust) {
    QByteArray empty = "{";
    for (const QString& caption : EnglishCaptions())
        empty += (empty.size() > 1 ? ", \"" : "\"") + caption.toUtf8() + "\": \"\"";
    EXPECT_EQ(JsonLine({}), empty + "}\n");

    const std::pair<QString, QByteArray> cases[]{
        {u"a\"b\\c/d"_s, R"("a\"b\\c/d")"},
        {u"\n\r\t\u0001\u001f\u007f"_s, "\"\\n\\r\\t\\u0001\\u001f\x7f\""},
        {u"Città ☎ \U0001F355"_s, "\"Citt\xC3\xA0 \xE2\x98\x8E \xF0\x9F\x8D\x95\""},
        {QString(QChar(0xD83C)) + u'x' + QChar(0xDF55), R"("\ud83cx\udf55")"}, // halves of a pair
    };
    for (const auto& [text, written] : cases)
        EXPECT_TRUE(JsonLine({.Category = text})
                        .startsWith(QByteArray("{\"Category\": " + written + ", \"Business Name\": \"\"")))
            << JsonLine({.Category = text}).constData();
    EXPECT_TRUE(JsonLine({}, {u"Phone (E.164)"_s, u"B"_s}, {u"+1"_s})
                    .endsWith("\"Details Link\": \"\", \"Phone (E.164)\": \"+1\", \"B\": \"\"}\n"));
}

TEST_F(Formats, WhatAFormatCannotHoldIsCounted) {
    Lead lead = Plain(1);
    lead.Name = u"nul\0here"_s;
    lead.City = QString(32'768, u'y');
    lead.Street = QString(32'766, u'y') + u"\U0001F355";
    ExportLosses losses;
    LeadFile back = ReadLeadFile(Written(LeadFormat::Workbook, {lead}, {}, &losses));
    ASSERT_EQ(back.Leads.size(), 1U);
    EXPECT_EQ(back.Leads[0].Name, u"nulhere"_s);
    EXPECT_EQ(back.Leads[0].City.size(), 32'767);
    EXPECT_EQ(back.Leads[0].Street, QString(32'766, u'y'));
    EXPECT_EQ(losses.Characters, 1);
    EXPECT_EQ(losses.Shortened, 2);
    EXPECT_EQ(losses.Text(), u"1 texts without characters that the format cannot hold, 2 texts shortened"_s);

    back = ReadLeadFile(Written(LeadFormat::VCard, {lead}, {}, &losses));
    EXPECT_EQ(back.Leads.at(0).Name, u"nulhere"_s);
    EXPECT_EQ(losses.Characters, 1);
    EXPECT_EQ(losses.Shortened, 0);

    back = ReadLeadFile(Written(LeadFormat::CsvSheet, {lead}, {}, &losses));
    EXPECT_EQ(back.Leads.at(0), lead);
    EXPECT_TRUE(losses.IsEmpty());
}

TEST_F(Formats, RowsBeyondASheetGoOnInTheNext) {
    const QString fileName = folder_.filePath(u"many.xlsx"_s);
    Workbook workbook(fileName, {}, 4);
    std::vector<Lead> leads;
    for (int i = 0; i < 10; ++i) {
        leads.push_back(Plain(i));
        workbook.Add(leads.back());
    }
    EXPECT_FALSE(QFile::exists(fileName)) << "not before it is whole";
    workbook.Finish();
    const LeadFile back = ReadLeadFile(fileName);
    ASSERT_EQ(back.Leads.size(), 10U);
    for (size_t i = 0; i < leads.size(); ++i)
        EXPECT_EQ(back.Leads[i], leads[i]);
}

TEST_F(Formats, LinksBeyondWhatASheetHoldsAreText) {
    std::vector<Lead> leads(40'000);
    for (size_t i = 0; i < leads.size(); ++i) {
        leads[i].Website = u"https://shop-%1.example/"_s.arg(i);
        leads[i].DetailsLink = u"https://directory.example/%1"_s.arg(i);
    }
    leads[0].Website = u"https://shop.example/"_s + QString(3000, u'a'); // longer than a link may be
    ExportLosses losses;
    const LeadFile back = ReadLeadFile(Written(LeadFormat::Workbook, leads, {}, &losses));
    EXPECT_EQ(losses.PlainLinks, 80'000 - 1 - Workbook::MostLinks);
    ASSERT_EQ(back.Leads.size(), leads.size());
    EXPECT_EQ(back.Leads[0], leads[0]);
    EXPECT_EQ(back.Leads.back(), leads.back());
}

TEST_F(Formats, NoHalfWorkbook) {
    const QString nowhere = folder_.filePath(u"missing/leads.xlsx"_s);
    Workbook workbook(nowhere, {});
    workbook.Add(Plain(1));
    try {
        workbook.Finish();
        ADD_FAILURE() << "it was written";
    } catch (const SaveError& error) {
        EXPECT_TRUE(error.Message().contains(u"leads.xlsx"_s)) << error.what();
    }
}

TEST_F(Formats, ColumnsAndDelimiterOfASpreadsheet) {
    ExportShape shape;
    shape.Options.eExportFields = u"8"_s; // the phone
    shape.Extra = ExtraColumns({ExtraColumn::InternationalPhone, ExtraColumn::PhoneCheck, ExtraColumn::CheckedEmail});
    Lead lead;
    lead.Country = u"Italy"_s;
    lead.Phone = u"06 6982 1234"_s;
    lead.Email = u"logo@2x.png; sales@other.it;info@bar.it; info@bar.it"_s;
    lead.Website = u"http://www.bar.it/x"_s;
    Lead impossible;
    impossible.Country = u"Italy"_s;
    impossible.Phone = u"12"_s;
    const auto lines = MakeLeadLines(LeadFormat::CsvSheet, shape);
    QByteArray bytes;
    lines->AppendHeader(bytes);
    lines->AppendLead(bytes, lead);
    lines->AppendLead(bytes, impossible);
    EXPECT_EQ(bytes.toStdString(),
              "\xef\xbb\xbf\"Phone\",\"Phone (international)\",\"Phone (check)\",\"Email (checked)\"\r\n"
              "\"06 6982 1234\",\"+390669821234\",\"\",\"info@bar.it; sales@other.it\"\r\n"
              "\"12\",\"\",\"impossible\",\"\"\r\n");
    EXPECT_EQ(ExtraColumnsNamed({u" phone (CHECK)"_s}), std::vector{ExtraColumn::PhoneCheck});
    EXPECT_THROW(ExtraColumnsNamed({u"Shoe size"_s}), Failure);

    struct Case {
        QString Phone;
        QString Delimiter;
        std::string Line;
    };
    for (const Case& one : {Case{u"+1 (416) 555-0100/1.2"_s, u";"_s, "\"+1 (416) 555-0100/1.2\"\r\n"},
                            Case{u"+1 416;x"_s, u";"_s, "\"'+1 416;x\"\r\n"}, Case{u"-1"_s, u"\t"_s, "\"'-1\"\r\n"},
                            Case{u"+"_s, u"##"_s, "\"'+\"\r\n"}, Case{u"=\"x\""_s, u","_s, "\"'=\"\"x\"\"\"\r\n"}}) {
        ExportShape phones;
        phones.Options.eExportFields = u"8"_s;
        phones.Options.eDelimiter = one.Delimiter;
        Lead row;
        row.Phone = one.Phone;
        QByteArray written;
        MakeLeadLines(LeadFormat::CsvSheet, phones)->AppendLead(written, row);
        EXPECT_EQ(written.toStdString(), one.Line);
    }
}

TEST_F(Formats, CardsKeepToTheirRules) {
    Lead lead = Plain(1);
    lead.Name = u"Łódzka Piekarnia "_s + QString(60, u'\u0105') + QString(200, u'x');
    lead.Phone = u"030 1; 030 2"_s;
    lead.Fax = u"030\u007f 3\u0007"_s;
    QByteArray bytes;
    const auto lines = MakeLeadLines(LeadFormat::VCard, {});
    lines->AppendLead(bytes, lead);
    for (const QByteArray& line : bytes.split('\n')) {
        EXPECT_LE(line.size(), 76) << line.toStdString(); // 75 and the carriage return
        EXPECT_TRUE(QString::fromUtf8(line).toUtf8() == line) << "cut within a character";
    }
    for (const char* const part : {"BEGIN:VCARD\r\nVERSION:4.0\r\n", "\r\nTEL;VALUE=text;TYPE=\"voice,work\":030 2\r\n",
                                   "\r\nTEL;VALUE=text;TYPE=\"fax,work\":030 3\r\n", "\r\nEND:VCARD\r\n"})
        EXPECT_TRUE(bytes.contains(part)) << part;
    EXPECT_EQ(lines->Losses().Characters, 1);
    QByteArray again;
    lines->AppendLead(again, lead);
    EXPECT_EQ(again, bytes) << "the same card each time";
    bytes.clear();
    lines->AppendLead(bytes, Lead{});
    EXPECT_TRUE(bytes.contains("\r\nFN:?\r\n"));
}

// Classic CSV: quotes within fields are as they are, so is everything else.
TEST_F(Formats, ClassicCsvIsReadBack) {
    struct Case {
        const char* What;
        QByteArray Bytes;
        std::vector<Lead> Leads;
        QStringList Problems;
    };
    const auto named = [](const QString& category, const QString& name) {
        Lead lead;
        lead.Category = category;
        lead.Name = name;
        return lead;
    };
    const auto utf16 = [](const char* text) {
        QStringEncoder encode(QStringConverter::Utf16LE);
        return QByteArray(encode(QString::fromUtf8(text)));
    };
    const QByteArray header = "\"Category\",\"Business Name\"\r\n";
    const Case cases[]{
        {"plain", header + "\"a\",\"b\"\r\n", {named(u"a"_s, u"b"_s)}, {}},
        {"quotes as they are",
         header + "\"a\",\"Joe \"X\" P\"\r\n\"c\",\"\"\r\n",
         {named(u"a"_s, u"Joe \"X\" P"_s), named(u"c"_s, {})},
         {}},
        {"line breaks",
         header + "\"a \"1\"\r\nb\",\"c\nd\"\r\n\"e\",\"f\"\r\n",
         {named(u"a \"1\"\r\nb"_s, u"c\nd"_s), named(u"e"_s, u"f"_s)},
         {}},
        {"semicolons", "\"Category\";\"Business Name\"\r\n\"a;1\";\"b\"x\"\r\n", {named(u"a;1"_s, u"b\"x"_s)}, {}},
        {"automatic: header with its delimiter, records with commas",
         "\"Category\";\"Business Name\"\r\n\"a\",\"b\"x\"\r\n",
         {named(u"a"_s, u"b\"x"_s)},
         {}},
        {"a long delimiter leaves a part of itself",
         "\"Category\"<->\"Business Name\"<-\r\n\"a\"<->\"b\"<-\r\n",
         {named(u"a"_s, u"b"_s)},
         {}},
        {"8 bit", header + "\"Caff\xe8\",\"\x80 uro\"\r\n", {named(u"Caffè"_s, u"\u20AC uro"_s)}, {}},
        {"UTF-8", header + "\"Caff\xc3\xa8\",\"b\"\r\n", {named(u"Caffè"_s, u"b"_s)}, {}},
        {"UTF-16 with tabs, which spreadsheets call Unicode text",
         QByteArray("\xff\xfe") + utf16("Category\tBusiness Name\r\na\tCaffè\r\n"),
         {named(u"a"_s, u"Caffè"_s)},
         {}},
        {"other programs: no quotes, other order, more columns",
         "Business Name;Shoe size;Category\nb;43;\"a;\"\"1\"\"\"\n",
         {named(u"a;\"1\""_s, u"b"_s)},
         {}},
        {"cannot be told apart",
         header + "\"a \"x\"\",\"b\",\"c\"\r\n\"d\",\"e\"\r\n",
         {named(u"d"_s, u"e"_s)},
         {u"line 2: its fields cannot be told apart"_s}},
        {"captions of another language", "\"Categoria\",\"Nome\"\r\n\"a\",\"b\"\r\n", {named(u"a"_s, u"b"_s)}, {}},
        {"empty", "", {}, {}},
        {"JSON lines",
         "{\"Category\": \"a\", \"Business Name\": \"b\"}\nrubbish\n",
         {named(u"a"_s, u"b"_s)},
         {u"line 2: illegal value"_s}},
    };
    QStringList italian = EnglishCaptions();
    italian[0] = u"Categoria"_s;
    italian[1] = u"Nome"_s;
    for (const Case& one : cases) {
        const LeadFile file = ReadLeadFile(WrittenBytes(one.Bytes), std::span(&italian, 1));
        EXPECT_EQ(file.Leads, one.Leads) << one.What;
        EXPECT_EQ(file.Problems, one.Problems) << one.What;
    }
    EXPECT_THROW(ReadLeadFile(WrittenBytes("shopping list\nmilk\n")), Failure);
    EXPECT_THROW(ReadLeadFile(WrittenBytes("PK\x03\x04 no package")), Failure);
    EXPECT_THROW(ReadLeadFile(folder_.filePath(u"missing"_s)), Failure);
}

TEST_F(Formats, ClassicCsvOfAnyLeadsIsReadBackOrNamed) {
    std::mt19937 random(7);
    const QStringList pieces{u"a"_s, u"\""_s, u","_s, u"\r\n"_s, u" "_s, u"\",\""_s, u"x y"_s};
    for (int round = 0; round < 300; ++round) {
        std::vector<Lead> leads(5);
        for (Lead& lead : leads)
            for (int column = 0; column < FieldCount; ++column)
                for (auto i = random() % 3; i > 0; --i)
                    lead.At(column) += pieces[static_cast<qsizetype>(random() % (round % 2 == 0 ? 3 : 7))];
        const LeadFile file = ReadLeadFile(Written(LeadFormat::Csv, leads));
        EXPECT_TRUE(file.Leads.size() >= leads.size() || !file.Problems.isEmpty()) << round;
    }
}

} // namespace
} // namespace Brindle
