#include "export/CsvReader.h"

#include <algorithm>
#include <optional>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QStringView FirstLine(QStringView text) {
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] == u'\n' || text[i] == u'\r')
            return text.first(i);
    return text;
}

QChar SniffedDelimiter(QStringView header) {
    QChar best = u',';
    qsizetype most = 0;
    for (const QChar candidate : {u',', u';', u'\t', u'|'})
        if (const qsizetype count = header.count(candidate); count > most) {
            most = count;
            best = candidate;
        }
    return best;
}

// Reads by RFC 4180. A strict reading ends with nothing at the first thing that the RFC has no room for.
std::optional<CsvTable> ByRule(QStringView text, bool strict) {
    const QChar delimiter = SniffedDelimiter(FirstLine(text));
    CsvTable table;
    QStringList record;
    QString field;
    qint64 line = 1;
    qint64 firstLine = 1;
    qsizetype i = 0;
    const auto endRecord = [&] {
        record.append(field);
        field.clear();
        if (record.size() == 1 && record.front().isEmpty()) {
            // A blank line is no record.
        } else if (table.Header.isEmpty()) {
            table.Header = record;
        } else if (record.size() != table.Header.size()) {
            if (strict)
                return false;
            table.Problems.append(
                u"line %1: %2 fields instead of %3"_s.arg(firstLine).arg(record.size()).arg(table.Header.size()));
        } else {
            table.Rows.push_back(record);
        }
        record.clear();
        return true;
    };
    while (i < text.size()) {
        if (field.isEmpty() && text[i] == u'"') {
            ++i;
            while (true) {
                const qsizetype quote = text.indexOf(u'"', i);
                if (quote < 0 && strict)
                    return std::nullopt;
                const qsizetype end = quote < 0 ? text.size() : quote;
                const QStringView piece = text.sliced(i, end - i);
                field += piece;
                line += piece.count(u'\n');
                i = std::min(end + 1, text.size());
                if (quote < 0 || i >= text.size() || text[i] != u'"')
                    break;
                field += u'"';
                ++i;
            }
            if (strict && i < text.size() && text[i] != delimiter && text[i] != u'\r' && text[i] != u'\n')
                return std::nullopt;
        }
        qsizetype end = i;
        while (end < text.size() && text[end] != delimiter && text[end] != u'\r' && text[end] != u'\n') {
            if (strict && text[end] == u'"')
                return std::nullopt;
            ++end;
        }
        field += text.sliced(i, end - i);
        i = end;
        if (i < text.size() && text[i] == delimiter) {
            record.append(field);
            field.clear();
            if (++i < text.size())
                continue;
        }
        if (i < text.size() && text[i] == u'\r')
            ++i;
        if (i < text.size() && text[i] == u'\n')
            ++i;
        ++line;
        if (!endRecord())
            return std::nullopt;
        firstLine = line;
    }
    if (!record.isEmpty() && !endRecord())
        return std::nullopt;
    return table;
}

// A field may have line breaks, but not this many: then a quote is missing somewhere.
constexpr size_t mostLines = 500;

// The classic form: what stands between two fields, and what the cut of two characters leaves at a line's end.
struct ClassicForm {
    QString Between;
    QString LineEnd;
};

ClassicForm FormOfDelimiter(const QString& delimiter) {
    const QString between = u'"' + delimiter + u'"';
    return {between, between.chopped(2)};
}

// The delimiter of a header: what stands between its first caption and its second.
QString DelimiterOf(QStringView header) {
    const qsizetype firstEnd = header.indexOf(u'"', 1);
    const qsizetype second = firstEnd < 0 ? -1 : header.indexOf(u'"', firstEnd + 1);
    return second < 0 ? u","_s : header.sliced(firstEnd + 1, second - firstEnd - 1).toString();
}

QStringList SplitRecord(QStringView record, const ClassicForm& form) {
    QStringList fields;
    const QStringView inner = record.sliced(1).chopped(std::min(form.LineEnd.size(), record.size() - 1));
    qsizetype from = 0;
    for (qsizetype at = inner.indexOf(form.Between); at >= 0; at = inner.indexOf(form.Between, from)) {
        fields.append(inner.sliced(from, at - from).toString());
        from = at + form.Between.size();
    }
    fields.append(inner.sliced(from).toString());
    return fields;
}

CsvTable Classic(QStringView text) {
    CsvTable table;
    std::vector<QStringView> lines;
    for (qsizetype from = 0; from < text.size();) {
        qsizetype end = text.indexOf(u'\n', from);
        end = end < 0 ? text.size() : end;
        lines.push_back(text.sliced(from, end - from));
        from = end + 1;
    }
    const auto withoutReturn = [](QStringView line) { return line.endsWith(u'\r') ? line.chopped(1) : line; };
    if (lines.empty())
        return table;
    const QStringView header = withoutReturn(lines.front());
    const ClassicForm ownForm = FormOfDelimiter(DelimiterOf(header));
    table.Header = SplitRecord(header, ownForm);
    // The automatic file's records have commas, whatever stands in its header.
    const ClassicForm commas = FormOfDelimiter(u","_s);
    const auto columns = table.Header.size();
    for (size_t i = 1; i < lines.size();) {
        const size_t first = i;
        std::optional<QStringList> record;
        qsizetype seen[2] = {0, 0};
        bool tooMany = false;
        const QChar* const begin = lines[first].data();
        for (; i < lines.size() && !record; ++i) {
            const bool nextBegins = i + 1 == lines.size() || lines[i + 1].startsWith(u'"') || lines[i + 1].isEmpty();
            const QStringView line = withoutReturn(lines[i]);
            const QStringView whole(begin, line.data() + line.size());
            const ClassicForm* const forms[2] = {&ownForm, &commas};
            for (int f = 0; f < 2 && !record; ++f) {
                seen[f] += line.count(forms[f]->Between);
                if (!nextBegins || !line.endsWith(forms[f]->LineEnd) || !whole.startsWith(u'"') ||
                    whole.size() <= forms[f]->LineEnd.size())
                    continue;
                // Separators can also stand across a line end, so the count by lines only says when to look.
                if (seen[f] + static_cast<qsizetype>(i - first) + 1 < columns)
                    continue;
                QStringList fields = SplitRecord(whole, *forms[f]);
                if (fields.size() == columns)
                    record = std::move(fields);
                else
                    tooMany = tooMany || fields.size() > columns;
            }
            if (!record && (tooMany || i - first >= mostLines)) {
                ++i;
                break;
            }
        }
        if (record)
            table.Rows.push_back(*std::move(record));
        else if (first + 1 < lines.size() || !withoutReturn(lines[first]).isEmpty())
            table.Problems.append(u"line %1: its fields cannot be told apart"_s.arg(first + 1));
    }
    return table;
}

} // namespace

CsvTable ReadCsv(const QString& text, bool byRule) {
    if (byRule) {
        CsvTable table = *ByRule(text, false);
        table.ForSpreadsheets = true;
        return table;
    }
    if (std::optional<CsvTable> table = ByRule(text, true))
        return *std::move(table);
    return text.startsWith(u'"') ? Classic(text) : *ByRule(text, false);
}

} // namespace Brindle
