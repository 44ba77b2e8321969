#include "export/SheetCsv.h"

#include "export/CsvFormat.h"
#include "toolkit/Ascii.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsPhoneColumn(int column) {
    return column == static_cast<int>(Field::Phone) || column == static_cast<int>(Field::Fax);
}

QString Harmless(const QString& text, bool isPhone) {
    return IsFormula(text) && !(isPhone && IsPlainPhone(text)) ? u'\'' + text : text;
}

} // namespace

bool IsFormula(QStringView text) {
    return !text.isEmpty() && QStringView(u"=+-@\t\r").contains(text.front());
}

bool IsPlainPhone(QStringView text) {
    constexpr QStringView marks = u" ()/.-";
    return text.size() > 1 && text.front() == u'+' &&
           std::all_of(text.begin() + 1, text.end(), [&](QChar c) { return Ascii::IsDigit(c) || marks.contains(c); }) &&
           std::any_of(text.begin() + 1, text.end(), Ascii::IsDigit<QChar>);
}

SheetCsv::SheetCsv(const ExportShape& shape) : shape_(shape), delimiter_(',') {
    if (shape.Options.eDelimiter == u";" || shape.Options.eDelimiter == u"\t")
        delimiter_ = shape.Options.eDelimiter.front().toLatin1();
    for (int column = 0; column < FieldCount; ++column)
        if (IsExported(column, shape.Options.eExportFields))
            columns_.push_back(column);
}

void SheetCsv::AppendHeader(QByteArray& to) {
    to += "\xef\xbb\xbf";
    QStringList fields;
    for (const int column : columns_)
        fields.append(Harmless(shape_.Captions.value(column), false));
    AppendLine(to, fields + shape_.Extra.Captions());
}

void SheetCsv::AppendLead(QByteArray& to, const Lead& lead) {
    QStringList fields;
    fields.reserve(FieldCount);
    for (const int column : columns_)
        fields.append(Harmless(lead.At(column), IsPhoneColumn(column)));
    if (!shape_.Extra.IsEmpty()) {
        const QStringList extra = shape_.Extra.Of(lead);
        for (qsizetype i = 0; i < extra.size(); ++i)
            fields.append(
                Harmless(extra[i], shape_.Extra.Columns()[static_cast<size_t>(i)] == ExtraColumn::InternationalPhone));
    }
    AppendLine(to, fields);
}

void SheetCsv::AppendLine(QByteArray& to, const QStringList& fields) {
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            to += delimiter_;
        QByteArray utf8 = fields[i].toUtf8();
        if (utf8.contains('"'))
            utf8.replace('"', "\"\"");
        to += '"';
        to += utf8;
        to += '"';
    }
    to += "\r\n";
}

} // namespace Brindle
