#include "export/CsvFormat.h"

#include <algorithm>
#include <cstring>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// What stands behind the last field is cut off again: two characters, which fits a delimiter of one.
void CutTwo(QString& line) {
    line.chop(2);
}

// Copies a text of one byte a character; false when it is not ASCII throughout, what was written counts for nothing
// then. Words at a time and in one pass: nearly every byte of an export comes through here.
bool CopyAscii(char* to, const std::byte* from, size_t length) {
    using Word = uint64_t;
    constexpr Word high = 0x8080808080808080;
    const auto copyWord = [&](size_t at) {
        Word word = 0;
        std::memcpy(&word, from + at, sizeof word);
        std::memcpy(to + at, &word, sizeof word);
        return word;
    };
    Word seen = 0;
    if (length < sizeof(Word)) {
        for (size_t i = 0; i < length; ++i) {
            to[i] = static_cast<char>(from[i]);
            seen |= std::to_integer<Word>(from[i]);
        }
        return (seen & high) == 0;
    }
    const size_t last = length - sizeof(Word);
    for (size_t at = 0; at < last; at += sizeof(Word))
        seen |= copyWord(at);
    seen |= copyWord(last); // may overlap the one before
    return (seen & high) == 0;
}

char* WriteAsUtf8(char* to, const std::byte* latin1, size_t length) {
    for (size_t i = 0; i < length; ++i) {
        const auto c = std::to_integer<unsigned>(latin1[i]);
        if (c < 0x80) {
            *to++ = static_cast<char>(c);
        } else {
            *to++ = static_cast<char>(0xC0 | (c >> 6));
            *to++ = static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return to;
}

qsizetype LengthOf(QStringView text) {
    return text.size();
}

qsizetype LengthOf(const StoredText& text) {
    return static_cast<qsizetype>(text.Characters);
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

CsvFormat::CsvFormat(const Settings& settings) : encode_(QStringConverter::System, QStringConverter::Flag::Stateless) {
    for (int column = 0; column < FieldCount; ++column)
        if (IsExported(column, settings.eExportFields))
            columns_.push_back(static_cast<size_t>(column));
    utf8_ = QByteArray(encode_(u"\u00E9"_s)) == "\xC3\xA9";
    QString separator = u'"' + settings.eDelimiter + u'"';
    separator_ = encode_(separator);
    CutTwo(separator);
    lineEnd_ = encode_(separator);
    lineEnd_ += "\r\n";
}

char* CsvFormat::Write(char* to, QStringView text) {
    return encode_.appendToBuffer(to, text);
}

char* CsvFormat::Write(char* to, const StoredText& text) {
    if (!text.Wide) {
        // ASCII is the same in every 8-bit code page.
        if (CopyAscii(to, text.Data, text.Characters))
            return to + text.Characters;
        if (utf8_)
            return WriteAsUtf8(to, text.Data, text.Characters);
    }
    return Write(to, text.Text());
}

template <typename Fields>
void CsvFormat::AppendLine(QByteArray& to, const Fields& fields) {
    qsizetype characters = 0;
    for (const size_t column : columns_)
        characters += LengthOf(fields[column]);
    const qsizetype size = to.size();
    // Room for the line at its longest; making it line by line and not field by field is what keeps this fast.
    const auto separators = static_cast<qsizetype>(columns_.size()) * separator_.size();
    to.resize(size + 1 + encode_.requiredSpace(characters) + separators + lineEnd_.size());
    char* at = to.data() + size;
    *at++ = '"';
    for (const size_t column : columns_) {
        if (column != columns_.front())
            at = std::copy(separator_.begin(), separator_.end(), at);
        at = Write(at, fields[column]);
    }
    at = std::copy(lineEnd_.begin(), lineEnd_.end(), at);
    to.resize(at - to.constData());
}

template <typename Fields>
void CsvFormat::AppendRecord(QByteArray& to, const Fields& fields) {
    if (columns_.empty())
        to += "\"\r\n"; // the cut leaves nothing, and a record begins with a quote in any case
    else
        AppendLine(to, fields);
}

void CsvFormat::AppendHeader(QByteArray& to, const QStringList& captions) {
    if (columns_.empty()) {
        to += "\r\n"; // the cut takes the only quote too
        return;
    }
    std::array<QString, FieldCount> fields;
    std::copy_n(captions.begin(), std::min<qsizetype>(captions.size(), FieldCount), fields.begin());
    AppendLine(to, fields);
}

void CsvFormat::AppendLead(QByteArray& to, const Lead& lead) {
    std::array<QStringView, FieldCount> fields;
    for (int column = 0; column < FieldCount; ++column)
        fields.at(static_cast<size_t>(column)) = lead.At(column);
    AppendRecord(to, fields);
}

void CsvFormat::AppendLead(QByteArray& to, const std::array<StoredText, FieldCount>& lead) {
    AppendRecord(to, lead);
}

QString AutomaticHeader(const QStringList& captions, const QString& delimiter) {
    QString line = u"\""_s;
    for (const QString& caption : captions)
        line += caption + u'"' + delimiter + u'"';
    CutTwo(line);
    return line;
}

QString AutomaticLine(const Lead& lead) {
    QString line = u"\""_s;
    for (int column = 0; column < FieldCount; ++column) {
        if (column > 0)
            line += u"\",\""_s;
        line += lead.At(column);
    }
    line += u'"';
    return line;
}

} // namespace Brindle
