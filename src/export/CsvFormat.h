#pragma once

#include "core/LeadList.h"
#include "core/Settings.h"

#include <QByteArray>
#include <QString>
#include <QStringEncoder>

#include <array>
#include <vector>

namespace Brindle {

/// "0,1,...,n-1": every column of a list with `columns` columns.
QString CountColumns(qsizetype columns);

/// Whether a column is exported: its decimal number occurs somewhere in the text of the chosen columns. No list is
/// looked up: with column 10, columns 1 and 0 are chosen too.
bool IsExported(int column, const QString& exportFields);

/// Writes the lines of an export as bytes of the system's 8-bit code page, each ended by CR LF. One buffer and one
/// encoder serve all lines. Fields stand in double quotes, nothing is escaped.
class CsvFormat {
public:
    /// The chosen columns and the delimiter are those of the settings.
    explicit CsvFormat(const Settings& settings);

    /// Appends the header of the chosen columns.
    void AppendHeader(QByteArray& to, const QStringList& captions);
    /// Appends the line of one lead.
    void AppendLead(QByteArray& to, const Lead& lead);
    /// The same for a lead as the results list stores it.
    void AppendLead(QByteArray& to, const std::array<StoredText, FieldCount>& lead);

private:
    template <typename Fields>
    void AppendLine(QByteArray& to, const Fields& fields);
    template <typename Fields>
    void AppendRecord(QByteArray& to, const Fields& fields);
    char* Write(char* to, QStringView text);
    char* Write(char* to, const StoredText& text);

    std::vector<size_t> columns_; // those that are exported
    QStringEncoder encode_;
    bool utf8_ = false;    // whether the code page is UTF-8
    QByteArray separator_; // what stands between two fields: quote, delimiter, quote
    QByteArray lineEnd_;   // what stands behind the last one
};

/// The header line of an automatic export: every caption, without a line end.
QString AutomaticHeader(const QStringList& captions, const QString& delimiter);
/// The line of one lead behind it: every field in double quotes, joined by commas, nothing escaped, without a line end.
QString AutomaticLine(const Lead& lead);

} // namespace Brindle
