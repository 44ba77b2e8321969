#include "export/Workbook.h"

#include "core/Errors.h"
#include "core/OutputFile.h"
#include "export/CsvFormat.h"
#include "export/XlsxWriter.h"
#include "toolkit/Ascii.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// In characters of the standard font, by what the fields usually hold.
constexpr std::array<double, FieldCount> widths{22, 34, 46, 30, 20, 12, 12, 14, 18, 18, 34, 34, 30, 40};
constexpr double extraWidth = 26;
constexpr qsizetype mostCharacters = 32'767; // UTF-16 units of a cell
constexpr qsizetype mostOfLink = 2'079;
constexpr qsizetype pieceSize = 1 << 20;

bool IsLinkField(int field) {
    return field == static_cast<int>(Field::Website) || field == static_cast<int>(Field::MapLink) ||
           field == static_cast<int>(Field::DetailsLink);
}

bool IsWebAddress(const QString& text) {
    return (text.startsWith(u"http://", Qt::CaseInsensitive) || text.startsWith(u"https://", Qt::CaseInsensitive)) &&
           text.size() <= mostOfLink &&
           std::none_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= 0x20; });
}

// What XML 1.0 has no character for, other than the control characters that the format can escape.
bool CannotHold(QChar c) {
    return c.unicode() == 0 || c.unicode() == 0xfffe || c.unicode() == 0xffff;
}

// A text with what the format would take for an escaped character: its underscore is escaped itself (ECMA-376, part 1,
// section 22.9.2.19).
QString Escaped(QString text) {
    const auto isHex = [](QChar c) { return Ascii::HexValue(c) >= 0; };
    for (qsizetype at = text.indexOf(u"_x"); at >= 0 && at + 6 < text.size(); at = text.indexOf(u"_x", at + 1)) {
        const QStringView code = QStringView(text).sliced(at + 2, 4);
        if (text[at + 6] == u'_' && std::all_of(code.begin(), code.end(), isHex)) {
            text.insert(at, u"_x005F");
            at += 6;
        }
    }
    return text;
}

} // namespace

Workbook::Workbook(const QString& fileName, const ExportShape& shape, qint64 rowsPerSheet)
    : fileName_(fileName), shape_(shape), rowsPerSheet_(rowsPerSheet) {
    for (int field = 0; field < FieldCount; ++field)
        if (IsExported(field, shape.Options.eExportFields))
            columns_.push_back(
                {shape.Captions.value(field), field, widths.at(static_cast<size_t>(field)), IsLinkField(field)});
    for (const QString& caption : shape.Extra.Captions())
        columns_.push_back({caption, -1, extraWidth, false});
    if (!work_.isValid())
        Fail(work_.errorString());
    workFile_ = QFile::encodeName(work_.filePath(u"leads.xlsx"_s));
    workFolder_ = QFile::encodeName(work_.path());
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = workFolder_.data();
    options.use_zip64 = LXW_TRUE;
    workbook_ = XlsxWriter().workbook_new_opt(workFile_.constData(), &options);
    if (!workbook_)
        Fail(u"no memory for a workbook"_s);
    header_ = XlsxWriter().workbook_add_format(workbook_);
    XlsxWriter().format_set_bold(header_);
    XlsxWriter().format_set_bottom(header_, LXW_BORDER_THIN);
    text_ = XlsxWriter().workbook_add_format(workbook_);
    XlsxWriter().format_set_num_format(text_, "@");
    BeginSheet();
}

Workbook::~Workbook() {
    if (workbook_)
        XlsxWriter().lxw_workbook_free(workbook_);
}

void Workbook::BeginSheet() {
    ++sheets_;
    const QByteArray name = sheets_ == 1 ? QByteArray("Leads") : "Leads " + QByteArray::number(sheets_);
    sheet_ = XlsxWriter().workbook_add_worksheet(workbook_, name.constData());
    if (!sheet_)
        Fail(u"the workbook takes no further sheet"_s);
    row_ = 0;
    links_ = 0;
    for (size_t i = 0; i < columns_.size(); ++i)
        XlsxWriter().worksheet_set_column(sheet_, static_cast<lxw_col_t>(i), static_cast<lxw_col_t>(i),
                                          columns_[i].Width, nullptr);
    XlsxWriter().worksheet_freeze_panes(sheet_, 1, 0);
    for (size_t i = 0; i < columns_.size(); ++i)
        XlsxWriter().worksheet_write_string(sheet_, 0, static_cast<lxw_col_t>(i), Held(columns_[i].Caption), header_);
    row_ = 1;
}

void Workbook::EndSheet() {
    if (!columns_.empty())
        XlsxWriter().worksheet_autofilter(sheet_, 0, 0, static_cast<lxw_row_t>(row_ - 1),
                                          static_cast<lxw_col_t>(columns_.size() - 1));
}

// The text as a cell can hold it; good until the next one.
const char* Workbook::Held(const QString& text) {
    const bool hasOthers = std::any_of(text.begin(), text.end(), CannotHold);
    if (!hasOthers && text.size() <= mostCharacters && !text.contains(u"_x"))
        return InUtf8(text);
    QString held = text;
    if (hasOthers) {
        ++losses_.Characters;
        held.removeIf(CannotHold);
    }
    if (held.size() > mostCharacters) {
        ++losses_.Shortened;
        held.truncate(held[mostCharacters - 1].isHighSurrogate() ? mostCharacters - 1 : mostCharacters);
    }
    return InUtf8(Escaped(held));
}

const char* Workbook::InUtf8(QStringView text) {
    const qsizetype most = encode_.requiredSpace(text.size()) + 1;
    if (cell_.size() < most)
        cell_.resize(most);
    *encode_.appendToBuffer(cell_.data(), text) = '\0';
    return cell_.constData();
}

void Workbook::WriteCell(quint16 column, const QString& text, bool isLink) {
    if (text.isEmpty())
        return;
    const auto row = static_cast<lxw_row_t>(row_);
    const char* const held = Held(text);
    if (isLink && IsWebAddress(text)) {
        if (links_ < MostLinks && XlsxWriter().worksheet_write_url_opt(sheet_, row, column, text.toUtf8().constData(),
                                                                       nullptr, held, nullptr) == LXW_NO_ERROR) {
            ++links_;
            return;
        }
        ++losses_.PlainLinks;
    }
    XlsxWriter().worksheet_write_string(sheet_, row, column, held, text_);
}

void Workbook::Add(const Lead& lead) {
    if (row_ >= rowsPerSheet_) {
        EndSheet();
        BeginSheet();
    }
    const QStringList extra = shape_.Extra.IsEmpty() ? QStringList() : shape_.Extra.Of(lead);
    qsizetype nextExtra = 0;
    for (size_t i = 0; i < columns_.size(); ++i) {
        const Column& column = columns_[i];
        WriteCell(static_cast<quint16>(i), column.Field >= 0 ? lead.At(column.Field) : extra[nextExtra++],
                  column.IsLink);
    }
    ++row_;
}

void Workbook::Finish() {
    EndSheet();
    const lxw_error error = XlsxWriter().workbook_close(workbook_);
    workbook_ = nullptr;
    if (error != LXW_NO_ERROR)
        Fail(QString::fromLocal8Bit(XlsxWriter().lxw_strerror(error)));
    QFile made(work_.filePath(u"leads.xlsx"_s));
    OutputFile file(fileName_);
    if (!made.open(QIODevice::ReadOnly))
        Fail(made.errorString());
    if (!file.Open())
        Fail(file.ErrorString());
    for (QByteArray piece = made.read(pieceSize); !piece.isEmpty(); piece = made.read(pieceSize))
        if (!file.Write(piece))
            Fail(file.ErrorString());
    if (made.error() != QFileDevice::NoError)
        Fail(made.errorString());
    if (!file.Commit())
        Fail(file.ErrorString());
}

void Workbook::Fail(const QString& reason) const {
    throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName_), reason));
}

} // namespace Brindle
