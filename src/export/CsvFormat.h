#pragma once

#include "LeadList.h"
#include "Settings.h"

#include <QByteArray>
#include <QString>
#include <QStringEncoder>

#include <array>

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
    /// Appends a text as one line.
    void AppendLine(QByteArray& to, QStringView line);

private:
    void AppendText(QByteArray& to, QStringView text);

    std::array<bool, FieldCount> exported_{};
    QString delimiter_;
    QString line_;
    QStringEncoder encode_;
};

/// The header line of an automatic export: every caption, without a line end.
QString AutomaticHeader(const QStringList& captions, const QString& delimiter);

} // namespace Brindle
