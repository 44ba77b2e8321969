#include "export/WorkbookReader.h"

#include "core/Errors.h"
#include "core/LoadedLibrary.h"

#include <QHash>
#include <QTemporaryFile>
#include <QXmlStreamReader>

#include <minizip/unzip.h>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

#define UNZIP_FUNCTIONS(FUNCTION)                                                                                      \
    FUNCTION(unz, Close)                                                                                               \
    FUNCTION(unz, CloseCurrentFile)                                                                                    \
    FUNCTION(unz, LocateFile)                                                                                          \
    FUNCTION(unz, Open64)                                                                                              \
    FUNCTION(unz, OpenCurrentFile)                                                                                     \
    FUNCTION(unz, ReadCurrentFile)
BRINDLE_FUNCTION_TABLE(UnzipFunctions, UNZIP_FUNCTIONS);
#ifdef BRINDLE_MINIZIP_LIBRARY
BRINDLE_LOADED_LIBRARY(UnzipFunctions, Unzip, UNZIP_FUNCTIONS, BRINDLE_MINIZIP_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(UnzipFunctions, Unzip, UNZIP_FUNCTIONS)
#endif

constexpr qint64 mostBytes = qint64{4} << 30; // of one part, unpacked

// One part of the package, unpacked as it is read.
class Part : public QIODevice {
public:
    explicit Part(unzFile zip) : zip_(zip) { open(ReadOnly); }
    ~Part() override { Unzip().CloseCurrentFile(zip_); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 most) override {
        if (read_ > mostBytes)
            return -1;
        const int got = Unzip().ReadCurrentFile(zip_, data, static_cast<unsigned>(std::min<qint64>(most, 1 << 20)));
        read_ += std::max(got, 0);
        return got > 0 ? got : -1;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    unzFile zip_;
    qint64 read_ = 0;
};

// A text within <si> or <is>: its runs one after the other; pronunciation is left out.
QString RichText(QXmlStreamReader& xml) {
    QString text;
    int depth = 1;
    while (depth > 0 && !xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            if (xml.name() == u"t")
                text += xml.readElementText(QXmlStreamReader::IncludeChildElements);
            else if (xml.name() == u"rPh")
                xml.skipCurrentElement();
            else
                ++depth;
        } else if (xml.isEndElement()) {
            --depth;
        }
    }
    return text;
}

// "_x000D_" stands for a character that XML cannot hold (ECMA-376, part 1, section 22.9.2.19).
QString Unescaped(QString text) {
    for (qsizetype at = text.indexOf(u"_x"); at >= 0 && at + 6 < text.size(); at = text.indexOf(u"_x", at + 1)) {
        bool isHex = false;
        const ushort code = QStringView(text).sliced(at + 2, 4).toUShort(&isHex, 16);
        if (isHex && text[at + 6] == u'_')
            text.replace(at, 7, QChar(code));
    }
    return text;
}

int ColumnOf(QStringView reference) {
    int column = 0;
    for (const QChar c : reference) {
        if (c < u'A' || c > u'Z')
            break;
        column = std::min(column * 26 + (c.unicode() - u'A' + 1), 20'000);
    }
    return column - 1;
}

class Reader {
public:
    explicit Reader(const QByteArray& bytes) {
        if (!file_.open() || file_.write(bytes) != bytes.size() || !file_.flush())
            throw Failure(file_.errorString());
        zip_ = Unzip().Open64(QFile::encodeName(file_.fileName()).constData());
        if (!zip_)
            throw Failure(u"no workbook: its package cannot be opened"_s);
    }
    ~Reader() { Unzip().Close(zip_); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    CsvTable Read() {
        ReadSharedTexts();
        int sheets = 0;
        while (Find(u"xl/worksheets/sheet%1.xml"_s.arg(sheets + 1))) {
            ReadSheet();
            ++sheets;
        }
        if (sheets == 0)
            throw Failure(u"no workbook: it has no sheet"_s);
        return std::move(table_);
    }

private:
    bool Find(const QString& name) {
        return Unzip().LocateFile(zip_, name.toUtf8().constData(), 2) == UNZ_OK &&
               Unzip().OpenCurrentFile(zip_) == UNZ_OK;
    }

    void ReadSharedTexts() {
        if (!Find(u"xl/sharedStrings.xml"_s))
            return;
        Part part(zip_);
        QXmlStreamReader xml(&part);
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == u"si")
                shared_.append(Unescaped(RichText(xml)));
        }
    }

    void ReadSheet() {
        Part part(zip_);
        QXmlStreamReader xml(&part);
        bool first = true;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement() || xml.name() != u"row")
                continue;
            const QStringList row = ReadRow(xml);
            if (table_.Header.isEmpty())
                table_.Header = row;
            else if (!first || row != table_.Header)
                table_.Rows.push_back(row);
            first = false;
        }
        if (xml.hasError())
            table_.Problems.append(u"line %1: %2"_s.arg(table_.Rows.size() + 1).arg(xml.errorString()));
    }

    QStringList ReadRow(QXmlStreamReader& xml) {
        QStringList row;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isEndElement() && xml.name() == u"row")
                break;
            if (!xml.isStartElement() || xml.name() != u"c")
                continue;
            const int column = ColumnOf(xml.attributes().value(u"r"_s));
            const QString type = xml.attributes().value(u"t"_s).toString();
            const QString text = ReadCell(xml, type);
            while (column >= 0 && row.size() <= column)
                row.append(QString());
            if (column >= 0)
                row[column] = text;
        }
        return row;
    }

    QString ReadCell(QXmlStreamReader& xml, const QString& type) {
        QString text;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isEndElement() && xml.name() == u"c")
                break;
            if (!xml.isStartElement())
                continue;
            if (xml.name() == u"is")
                text = Unescaped(RichText(xml));
            else if (xml.name() == u"v")
                text = xml.readElementText();
            else
                xml.skipCurrentElement();
        }
        return type == u"s" ? shared_.value(text.toLongLong()) : text;
    }

    QTemporaryFile file_;
    unzFile zip_ = nullptr;
    QStringList shared_;
    CsvTable table_;
};

} // namespace

CsvTable ReadWorkbook(const QByteArray& bytes) {
    return Reader(bytes).Read();
}

} // namespace Brindle
