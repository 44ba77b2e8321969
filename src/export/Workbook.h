#pragma once

#include "export/LeadLines.h"

#include <QStringEncoder>
#include <QTemporaryDir>

#include <memory>

struct lxw_workbook;
struct lxw_worksheet;
struct lxw_format;

namespace Brindle {

/// An Excel workbook (Office Open XML) of leads: the header row frozen and filterable, phones and postal codes as text,
/// links as links. Rows beyond what a sheet holds go on in the next sheet. Memory does not grow with the rows; the
/// links of a sheet, 65,530 at most, are what is kept. The workbook is made beside and put in place when it is whole.
class Workbook {
public:
    static constexpr qint64 MostRows = 1'048'576; ///< of a sheet, with its header
    static constexpr qint64 MostLinks = 65'530;   ///< of a sheet

    /// `rowsPerSheet`: smaller than the format's own limit in tests only. Throws `SaveError` with file and reason.
    Workbook(const QString& fileName, const ExportShape& shape, qint64 rowsPerSheet = MostRows);
    ~Workbook();
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    void Add(const Lead& lead);
    /// Writes the workbook to its place; without this nothing is there. Throws `SaveError` with file and reason.
    void Finish();
    const ExportLosses& Losses() const { return losses_; }

private:
    struct Column {
        QString Caption;
        int Field; // 0 to 13; -1: a further column
        double Width;
        bool IsLink;
    };
    void BeginSheet();
    void EndSheet();
    void WriteCell(quint16 column, const QString& text, bool isLink);
    const char* Held(const QString& text);
    const char* InUtf8(QStringView text);
    [[noreturn]] void Fail(const QString& reason) const;

    QString fileName_;
    ExportShape shape_;
    qint64 rowsPerSheet_;
    QTemporaryDir work_;
    std::vector<Column> columns_;
    lxw_workbook* workbook_ = nullptr;
    lxw_worksheet* sheet_ = nullptr;
    lxw_format* header_ = nullptr;
    lxw_format* text_ = nullptr;
    int sheets_ = 0;
    qint64 row_ = 0; // of the next lead in the sheet
    qint64 links_ = 0;
    QByteArray workFile_;
    QByteArray workFolder_;
    QStringEncoder encode_{QStringConverter::Utf8, QStringConverter::Flag::Stateless};
    QByteArray cell_; // its memory is used again
    ExportLosses losses_;
};

} // namespace Brindle
