#include "export/LeadReader.h"

#include "core/Errors.h"
#include "export/CsvReader.h"
#include "export/SheetCsv.h"
#include "export/VCardReader.h"
#include "export/WorkbookReader.h"
#include "toolkit/Text.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostBytes = qint64{1} << 30;

QString Decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringConverter::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? FromWindows1252(bytes) : text;
}

// The text of a JSON string that begins at `at`, where its quote stands; `at` is behind it then. False for what has to
// be looked at closely: a string that is none, or a rare escape.
bool ReadString(QByteArrayView line, qsizetype& at, QString& text) {
    if (at >= line.size() || line[at] != '"')
        return false;
    const qsizetype from = ++at;
    bool escaped = false;
    for (; at < line.size() && line[at] != '"'; ++at) {
        if (static_cast<unsigned char>(line[at]) < 0x20)
            return false;
        if (line[at] == '\\') {
            escaped = true;
            ++at;
        }
    }
    if (at >= line.size())
        return false;
    const QByteArrayView bytes = line.sliced(from, at++ - from);
    if (!bytes.isValidUtf8())
        return false;
    text = QString::fromUtf8(bytes);
    if (!escaped)
        return true;
    QString plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\') {
            plain += text[i];
            continue;
        }
        switch (text[++i].unicode()) {
        case u'n':
            plain += u'\n';
            break;
        case u'r':
            plain += u'\r';
            break;
        case u't':
            plain += u'\t';
            break;
        case u'"':
        case u'\\':
        case u'/':
            plain += text[i];
            break;
        default:
            return false;
        }
    }
    text = std::move(plain);
    return true;
}

// Reads an object of strings alone, as this program writes them, several times as fast as a reader of all JSON does.
// False for any other line, which is left to that one.
bool ReadFlatObject(QByteArrayView line, Lead& lead) {
    static const QHash<QString, int> columns = [] {
        QHash<QString, int> named;
        for (int column = 0; column < FieldCount; ++column)
            named.insert(EnglishCaptions()[column], column);
        return named;
    }();
    qsizetype at = 0;
    const auto skip = [&](char c) {
        while (at < line.size() && line[at] == ' ')
            ++at;
        const bool there = at < line.size() && line[at] == c;
        at += there ? 1 : 0;
        return there;
    };
    if (!skip('{'))
        return false;
    QString key;
    QString text;
    do {
        skip(' ');
        if (!ReadString(line, at, key) || !skip(':'))
            return false;
        skip(' ');
        if (!ReadString(line, at, text))
            return false;
        if (const auto column = columns.constFind(key); column != columns.cend())
            lead.At(*column) = std::move(text);
    } while (skip(','));
    return skip('}') && at == line.size();
}

LeadFile JsonLeads(const QByteArray& bytes) {
    LeadFile file;
    qint64 number = 0;
    for (qsizetype from = 0; from < bytes.size();) {
        qsizetype end = bytes.indexOf('\n', from);
        end = end < 0 ? bytes.size() : end;
        const QByteArray line = bytes.sliced(from, end - from).trimmed();
        from = end + 1;
        ++number;
        if (line.isEmpty())
            continue;
        Lead lead;
        if (ReadFlatObject(line, lead)) {
            file.Leads.push_back(std::move(lead));
            continue;
        }
        lead = {};
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        if (!document.isObject()) {
            file.Problems.append(u"line %1: %2"_s.arg(number).arg(
                error.error == QJsonParseError::NoError ? u"no JSON object"_s : error.errorString()));
            continue;
        }
        for (int column = 0; column < FieldCount; ++column)
            lead.At(column) = document[EnglishCaptions()[column]].toString();
        file.Leads.push_back(std::move(lead));
    }
    return file;
}

LeadFile TableLeads(const CsvTable& table, std::span<const QStringList> captions) {
    LeadFile file;
    file.Problems = table.Problems;
    const std::vector<int> fields = FieldsOfColumns(table.Header, captions);
    if (std::all_of(fields.begin(), fields.end(), [](int field) { return field < 0; }))
        throw Failure(u"its first line has none of the captions of a list of leads"_s);
    for (const QStringList& row : table.Rows)
        file.Leads.push_back(LeadOfRow(row, fields, table.ForSpreadsheets));
    return file;
}

LeadFile Read(const QByteArray& bytes, std::span<const QStringList> captions) {
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff")) { // what spreadsheets call Unicode text
        QStringDecoder utf16(QStringConverter::Utf16);
        return Read(QString(utf16(bytes)).toUtf8(), captions);
    }
    if (bytes.startsWith("PK\x03\x04"))
        return TableLeads(ReadWorkbook(bytes), captions);
    const QByteArray begin = bytes.first(std::min<qsizetype>(bytes.size(), 256)).trimmed();
    if (begin.toUpper().startsWith("BEGIN:VCARD"))
        return ReadVCards(Decoded(bytes));
    if (begin.startsWith('{'))
        return JsonLeads(bytes);
    if (begin.isEmpty())
        return {};
    return TableLeads(ReadCsv(Decoded(bytes), bytes.startsWith("\xef\xbb\xbf")), captions);
}

} // namespace

std::vector<int> FieldsOfColumns(const QStringList& header, std::span<const QStringList> captions) {
    const auto fieldOf = [&](const QString& caption) {
        const auto among = [&](const QStringList& names) {
            for (qsizetype i = 0; i < names.size() && i < FieldCount; ++i)
                if (names[i].compare(caption, Qt::CaseInsensitive) == 0)
                    return static_cast<int>(i);
            return -1;
        };
        int field = among(EnglishCaptions());
        for (size_t i = 0; field < 0 && i < captions.size(); ++i)
            field = among(captions[i]);
        return field;
    };
    std::vector<int> fields;
    for (const QString& caption : header)
        fields.push_back(fieldOf(caption.trimmed()));
    if (header.size() == FieldCount && std::all_of(fields.begin(), fields.end(), [](int field) { return field < 0; }))
        for (size_t i = 0; i < fields.size(); ++i)
            fields[i] = static_cast<int>(i);
    return fields;
}

Lead LeadOfRow(const QStringList& row, const std::vector<int>& fields, bool harmless) {
    Lead lead;
    for (qsizetype i = 0; i < row.size() && i < static_cast<qsizetype>(fields.size()); ++i) {
        const int field = fields[static_cast<size_t>(i)];
        if (field < 0)
            continue;
        QString text = row[i];
        if (harmless && text.startsWith(u'\'') && IsFormula(QStringView(text).sliced(1)))
            text.remove(0, 1);
        lead.At(field) = std::move(text);
    }
    return lead;
}

LeadFile ReadLeadFile(const QString& fileName, std::span<const QStringList> captions) {
    QFile file(fileName);
    const auto failed = [&](const QString& reason) {
        return Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), reason));
    };
    if (!file.open(QIODevice::ReadOnly))
        throw failed(file.errorString());
    if (file.size() > mostBytes)
        throw failed(u"larger than 1 GiB"_s);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw failed(file.errorString());
    try {
        return Read(bytes, captions);
    } catch (const Failure& failure) {
        throw failed(failure.Message());
    }
}

} // namespace Brindle
