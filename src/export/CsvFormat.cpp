#include "CsvFormat.h"

namespace Brindle {

namespace {

// What stands behind the last field is cut off again: two characters, which fits a delimiter of one.
void CutTwo(QString& line) {
    line.chop(2);
}

} // namespace

QString CountColumns(qsizetype columns) {
    QString text;
    for (qsizetype column = 0; column < columns; ++column)
        text += (column > 0 ? u"," : u"") + QString::number(column);
    return text;
}

bool IsExported(int column, const QString& exportFields) {
    return exportFields.contains(QString::number(column));
}

CsvFormat::CsvFormat(const Settings& settings)
    : delimiter_(settings.eDelimiter), encode_(QStringConverter::System, QStringConverter::Flag::Stateless) {
    for (int column = 0; column < FieldCount; ++column)
        exported_.at(static_cast<size_t>(column)) = IsExported(column, settings.eExportFields);
}

void CsvFormat::AppendText(QByteArray& to, QStringView text) {
    const qsizetype size = to.size();
    to.resize(size + encode_.requiredSpace(text.size()));
    const char* const end = encode_.appendToBuffer(to.data() + size, text);
    to.resize(end - to.constData());
}

void CsvFormat::AppendLine(QByteArray& to, QStringView line) {
    AppendText(to, line);
    to.append("\r\n");
}

void CsvFormat::AppendHeader(QByteArray& to, const QStringList& captions) {
    line_ = QStringLiteral("\"");
    for (int column = 0; column < captions.size() && column < FieldCount; ++column)
        if (exported_.at(static_cast<size_t>(column)))
            line_ += captions[column] + u'"' + delimiter_ + u'"';
    CutTwo(line_);
    AppendLine(to, line_);
}

void CsvFormat::AppendLead(QByteArray& to, const Lead& lead) {
    line_.resize(0); // keeps its memory
    line_ += u'"';
    if (exported_[0])
        line_ += lead.Category + u'"' + delimiter_ + u'"';
    for (int column = 1; column < FieldCount; ++column)
        if (exported_.at(static_cast<size_t>(column)))
            line_ += lead.At(column) + u'"' + delimiter_ + u'"';
    CutTwo(line_);
    if (!line_.startsWith(u'"'))
        line_.prepend(u'"');
    AppendLine(to, line_);
}

QString AutomaticHeader(const QStringList& captions, const QString& delimiter) {
    QString line = QStringLiteral("\"");
    for (const QString& caption : captions)
        line += caption + u'"' + delimiter + u'"';
    CutTwo(line);
    return line;
}

} // namespace Brindle
