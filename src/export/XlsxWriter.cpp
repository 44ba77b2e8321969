#include "export/XlsxWriter.h"

#include "core/Errors.h"

#ifdef BRINDLE_XLSX_LIBRARY
#include <QLibrary>
#include <QString>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

#ifdef BRINDLE_XLSX_LIBRARY
template <typename Function>
void Resolve(QLibrary& library, Function& function, const char* name) {
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function)
        throw Failure(u"%1: %2"_s.arg(library.fileName(), library.errorString()));
}

XlsxFunctions Load() {
    QLibrary library(QStringLiteral(BRINDLE_XLSX_LIBRARY)); // stays loaded to the end of the program
    if (!library.load())
        throw Failure(library.errorString());
    XlsxFunctions functions{};
    Resolve(library, functions.format_set_bold, "format_set_bold");
    Resolve(library, functions.format_set_bottom, "format_set_bottom");
    Resolve(library, functions.format_set_num_format, "format_set_num_format");
    Resolve(library, functions.lxw_strerror, "lxw_strerror");
    Resolve(library, functions.lxw_workbook_free, "lxw_workbook_free");
    Resolve(library, functions.workbook_add_format, "workbook_add_format");
    Resolve(library, functions.workbook_add_worksheet, "workbook_add_worksheet");
    Resolve(library, functions.workbook_close, "workbook_close");
    Resolve(library, functions.workbook_new_opt, "workbook_new_opt");
    Resolve(library, functions.worksheet_autofilter, "worksheet_autofilter");
    Resolve(library, functions.worksheet_freeze_panes, "worksheet_freeze_panes");
    Resolve(library, functions.worksheet_set_column, "worksheet_set_column");
    Resolve(library, functions.worksheet_write_string, "worksheet_write_string");
    Resolve(library, functions.worksheet_write_url_opt, "worksheet_write_url_opt");
    return functions;
}
#else
XlsxFunctions Load() {
    return {
        .format_set_bold = &::format_set_bold,
        .format_set_bottom = &::format_set_bottom,
        .format_set_num_format = &::format_set_num_format,
        .lxw_strerror = &::lxw_strerror,
        .lxw_workbook_free = &::lxw_workbook_free,
        .workbook_add_format = &::workbook_add_format,
        .workbook_add_worksheet = &::workbook_add_worksheet,
        .workbook_close = &::workbook_close,
        .workbook_new_opt = &::workbook_new_opt,
        .worksheet_autofilter = &::worksheet_autofilter,
        .worksheet_freeze_panes = &::worksheet_freeze_panes,
        .worksheet_set_column = &::worksheet_set_column,
        .worksheet_write_string = &::worksheet_write_string,
        .worksheet_write_url_opt = &::worksheet_write_url_opt,
    };
}
#endif

} // namespace

const XlsxFunctions& XlsxWriter() {
    static const XlsxFunctions functions = Load();
    return functions;
}

} // namespace Brindle
