#include "PrintTo.h"
#include "export/LeadLines.h"
#include "export/LeadReader.h"
#include "export/Workbook.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// What is exported, as the programs read it for which it is made. A test whose program is not installed skips itself.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QStringList texts{u"Caffè \"Da Gino\"; S.r.l., 2"_s,
                        u"two\nlines"_s,
                        u"return\r\nand line"_s,
                        u"=1+1"_s,
                        u"+39 06 555 0100"_s,
                        u"-2"_s,
                        u"00123"_s,
                        u"1/2/2026"_s,
                        u"שלום"_s,
                        u"\U0001F355 pizza"_s,
                        u"_x0041_ & <b>"_s,
                        u"C:\\a,b;c\\n"_s,
                        u"a^b"_s,
                        QString(32'767, u'x'),
                        u"1e5"_s};

std::vector<Lead> HardLeads() {
    std::vector<Lead> leads;
    for (const QString& text : texts) {
        Lead lead;
        lead.Name = text;
        lead.FullAddress = text;
        lead.Street = text;
        lead.PostalCode = u"00123"_s;
        lead.Phone = u"+39 (06) 555/0100"_s;
        lead.Website = u"https://a.example/?q=%C3%A8&x=1"_s;
        leads.push_back(lead);
    }
    return leads;
}

// Cells of spreadsheets and cards know one line break.
QString OneBreak(QString text) {
    return text.replace(u"\r\n"_s, u"\n"_s);
}

class OtherPrograms : public testing::Test {
protected:
    QTemporaryDir folder_;
    const QString python_ = QStandardPaths::findExecutable(u"python3"_s, {u"/usr/bin"_s});

    QString Write(LeadFormat format, const std::vector<Lead>& leads) {
        const QString fileName = folder_.filePath(u"leads."_s + (format == LeadFormat::VCard ? u"vcf" : u"csv"));
        const auto lines = MakeLeadLines(format, {});
        QByteArray bytes;
        lines->AppendHeader(bytes);
        for (const Lead& lead : leads)
            lines->AppendLead(bytes, lead);
        QFile file(fileName);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return fileName;
    }

    QByteArray Run(const QString& program, const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, folder_.path());
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(100'000)) << program.toStdString();
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return process.readAllStandardOutput();
    }

    // Runs a script that prints a list of lists of texts.
    std::vector<QStringList> Table(const QString& script, const QString& fileName) {
        std::vector<QStringList> rows;
        const QJsonArray table = QJsonDocument::fromJson(Run(python_, {u"-c"_s, script, fileName})).array();
        for (const auto& row : table) {
            QStringList fields;
            for (const auto& field : row.toArray())
                fields.append(field.toString());
            rows.push_back(fields);
        }
        return rows;
    }
};

TEST_F(OtherPrograms, LibreOfficeReadsTheCellsOfAWorkbook) {
    const QString office = QStandardPaths::findExecutable(u"soffice"_s);
    if (office.isEmpty())
        GTEST_SKIP() << "LibreOffice is not installed";
    const std::vector<Lead> leads = HardLeads();
    Workbook workbook(folder_.filePath(u"leads.xlsx"_s), {});
    for (const Lead& lead : leads)
        workbook.Add(lead);
    workbook.Finish();
    // Comma, quotes, UTF-8, every cell as it is stored.
    Run(office, {u"--headless"_s, u"--norestore"_s, u"--convert-to"_s,
                 u"csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,false,false"_s, u"--outdir"_s, folder_.path(),
                 folder_.filePath(u"leads.xlsx"_s)});
    const LeadFile back = ReadLeadFile(folder_.filePath(u"leads.csv"_s));
    ASSERT_EQ(back.Leads.size(), leads.size()) << back.Problems.join(u'\n').toStdString();
    for (size_t i = 0; i < leads.size(); ++i) {
        Lead lead = leads[i];
        for (int field = 0; field < FieldCount; ++field)
            lead.At(field) = OneBreak(lead.At(field));
        EXPECT_EQ(back.Leads[i], lead) << i;
    }
}

TEST_F(OtherPrograms, PythonReadsCsvForSpreadsheets) {
    if (python_.isEmpty())
        GTEST_SKIP() << "Python is not installed";
    const std::vector<Lead> leads = HardLeads();
    const auto rows = Table(u"import csv, json, sys\n"
                            "with open(sys.argv[1], encoding='utf-8-sig', newline='') as f:\n"
                            "    print(json.dumps(list(csv.reader(f, strict=True))))"_s,
                            Write(LeadFormat::CsvSheet, leads));
    ASSERT_EQ(rows.size(), leads.size() + 1);
    EXPECT_EQ(rows[0], EnglishCaptions());
    for (size_t i = 0; i < leads.size(); ++i) {
        const QString& name = rows[i + 1].value(1);
        EXPECT_FALSE(QStringView(u"=+-@\t\r").contains(name.at(0))) << name.toStdString();
        EXPECT_EQ(name.startsWith(u'\'') ? name.sliced(1) : name, leads[i].Name);
        EXPECT_EQ(rows[i + 1].value(8), leads[i].Phone);
    }
}

TEST_F(OtherPrograms, AReaderOfCardsReadsThem) {
    if (python_.isEmpty() || QProcess::execute(python_, {u"-c"_s, u"import vobject"_s}) != 0)
        GTEST_SKIP() << "python3-vobject is not installed";
    const std::vector<Lead> leads = HardLeads();
    const auto rows = Table(u"import json, sys, vobject\n"
                            "with open(sys.argv[1], encoding='utf-8', newline='') as f:\n"
                            "    cards = list(vobject.readComponents(f.read()))\n"
                            "print(json.dumps([[c.fn.value, c.tel.value, c.adr.value.street, c.url.value]\n"
                            "                  for c in cards]))"_s,
                            Write(LeadFormat::VCard, leads));
    ASSERT_EQ(rows.size(), leads.size());
    for (size_t i = 0; i < leads.size(); ++i)
        EXPECT_EQ(rows[i],
                  (QStringList{OneBreak(leads[i].Name), leads[i].Phone, OneBreak(leads[i].Street), leads[i].Website}))
            << i;
}

} // namespace
} // namespace Brindle
