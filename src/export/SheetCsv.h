#pragma once

#include "export/LeadLines.h"

namespace Brindle {

/// CSV for spreadsheets: UTF-8 with byte-order mark, every field in quotes, quotes doubled, lines ended by CR LF
/// (RFC 4180). A cell that a spreadsheet would run as a formula gets an apostrophe in front. The delimiter is that of
/// the settings where spreadsheets know it (comma, semicolon, tab), else a comma.
class SheetCsv : public LeadLines {
public:
    explicit SheetCsv(const ExportShape& shape);
    void AppendHeader(QByteArray& to) override;
    void AppendLead(QByteArray& to, const Lead& lead) override;

private:
    void AppendLine(QByteArray& to, const QStringList& fields);

    ExportShape shape_;
    char delimiter_;
    std::vector<int> columns_;
};

/// Whether a spreadsheet would take a text for a formula: it begins with "=", "+", "-", "@", a tab or a carriage
/// return.
bool IsFormula(QStringView text);
/// Whether a text is a phone number that may stand as it is: a leading "+", then digits, blanks and "()/.-" alone.
bool IsPlainPhone(QStringView text);

} // namespace Brindle
