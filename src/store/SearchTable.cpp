#include "store/SearchTable.h"

#include <QCryptographicHash>
#include <QStringConverter>
#include <QUrl>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Record {
    int Line = 0;
    QStringList Fields;
    bool Open = false; // a quote that is never closed
};

std::vector<Record> Records(const QString& text, QChar delimiter) {
    std::vector<Record> records;
    Record record{1, {}, false};
    QString field;
    bool quoted = false;
    int line = 1;
    const auto endField = [&] {
        record.Fields += field.trimmed();
        field.clear();
    };
    const auto endRecord = [&] {
        endField();
        if (record.Fields != QStringList(QString()))
            records.push_back(record);
        record = {line, {}, false};
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\n')
            ++line;
        if (quoted) {
            if (c != u'"') {
                field += c;
            } else if (i + 1 < text.size() && text[i + 1] == u'"') {
                field += c;
                ++i;
            } else {
                quoted = false;
            }
        } else if (c == u'"' && field.trimmed().isEmpty()) {
            field.clear();
            quoted = true;
        } else if (c == delimiter) {
            endField();
        } else if (c == u'\n') {
            endRecord();
        } else if (c != u'\r') {
            field += c;
        }
    }
    record.Open = quoted;
    endRecord();
    return records;
}

bool IsWebAddress(const QString& start) {
    const QUrl url(start, QUrl::TolerantMode);
    const bool web = url.scheme() == u"http" || url.scheme() == u"https";
    return web && url.isValid() && !url.host().isEmpty();
}

// What a row of the table's columns asks for.
SearchFault ReadRow(const Record& record, const QStringList& columns, bool starts,
                    const std::function<SearchFault(SearchRow&)>& whyNot, SearchRow& row) {
    using Why = SearchFault::Why;
    if (record.Open)
        return {Why::OpenQuote, {}};
    if (record.Fields.size() != columns.size())
        return {Why::Columns, {QString::number(record.Fields.size()), QString::number(columns.size())}};
    row.Site = record.Fields[0];
    (starts ? row.Start : row.What) = record.Fields[1];
    if (!starts)
        row.Place = record.Fields[2];
    if (starts && !IsWebAddress(row.Start))
        return {Why::NoAddress, {row.Start}};
    if (!starts && row.What.isEmpty() && row.Place.isEmpty())
        return {Why::NothingAsked, {}};
    return whyNot(row);
}

// No site code has one of them, so the first one that is seen is it.
QChar DelimiterOf(const QString& text) {
    for (const QChar c : text)
        if (c == u'\t' || c == u';' || c == u',')
            return c;
    return u',';
}

} // namespace

QString SearchFault::Text() const {
    const QString first = Values.value(0);
    switch (Kind) {
    case Why::Header:
        return u"the header is neither site,start nor site,what,where"_s;
    case Why::OpenQuote:
        return u"a quote is not closed"_s;
    case Why::Columns:
        return u"%1 columns instead of %2"_s.arg(first, Values.value(1));
    case Why::NoAddress:
        return u"\u201C%1\u201D is no http or https address"_s.arg(first);
    case Why::NothingAsked:
        return u"nothing is looked for"_s;
    case Why::UnknownDirectory:
        return u"\u201C%1\u201D is no site code"_s.arg(first);
    case Why::NoSearchAddress:
        return u"%1: no search address is known of this directory; give a start address"_s.arg(first);
    case Why::Directory:
        return first;
    case Why::None:
        break;
    }
    return {};
}

QString SearchProblem::Text() const {
    return u"line %1: %2"_s.arg(Line).arg(Fault.Text());
}

QString SearchTable::Digest() const {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    int usual = 1;
    for (const SearchRow& row : Rows) {
        // The store knows a search by its line; blank lines and a missing header make another list.
        const QString line = row.Line == ++usual ? QString() : QString::number(row.Line) + u'\x1f';
        hash.addData(
            QString(line + QStringList{row.Site, row.Start, row.What, row.Place}.join(u'\x1f') + u'\n').toUtf8());
    }
    return QString::fromLatin1(hash.result().toHex().first(16));
}

QString TableText(const QByteArray& bytes) {
    const QStringConverter::Encoding encoding =
        QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
    QStringDecoder decoder(encoding);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

SearchTable ReadSearchTable(const QString& text, const std::function<SearchFault(SearchRow&)>& whyNot,
                            TableHeader header) {
    SearchTable table;
    QString all = text;
    if (all.startsWith(u'\uFEFF'))
        all.remove(0, 1);
    const std::vector<Record> records = Records(all, DelimiterOf(all));
    QStringList columns = records.empty() ? QStringList() : records.front().Fields;
    for (QString& column : columns)
        column = column.toLower();
    const QStringList startColumns{u"site"_s, u"start"_s};
    const QStringList searchColumns{u"site"_s, u"what"_s, u"where"_s};
    const bool headed = columns == startColumns || columns == searchColumns;
    if (!headed && header == TableHeader::Optional)
        columns = columns.size() == startColumns.size() ? startColumns : searchColumns;
    const bool starts = columns == startColumns;
    if (!starts && columns != searchColumns) {
        table.Problems.push_back({1, {SearchFault::Why::Header, {}}});
        return table;
    }
    for (size_t i = headed ? 1 : 0; i < records.size(); ++i) {
        SearchRow row;
        row.Line = records[i].Line;
        const SearchFault fault = ReadRow(records[i], columns, starts, whyNot, row);
        if (fault.Kind == SearchFault::Why::None)
            table.Rows.push_back(row);
        else
            table.Problems.push_back({row.Line, fault});
    }
    return table;
}

} // namespace Brindle
