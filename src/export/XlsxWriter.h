#pragma once

#include <xlsxwriter.h>

namespace Brindle {

/// The functions of libxlsxwriter in use, under their own names.
struct XlsxFunctions {
    decltype(&::format_set_bold) format_set_bold;
    decltype(&::format_set_bottom) format_set_bottom;
    decltype(&::format_set_num_format) format_set_num_format;
    decltype(&::lxw_strerror) lxw_strerror;
    decltype(&::lxw_workbook_free) lxw_workbook_free;
    decltype(&::workbook_add_format) workbook_add_format;
    decltype(&::workbook_add_worksheet) workbook_add_worksheet;
    decltype(&::workbook_close) workbook_close;
    decltype(&::workbook_new_opt) workbook_new_opt;
    decltype(&::worksheet_autofilter) worksheet_autofilter;
    decltype(&::worksheet_freeze_panes) worksheet_freeze_panes;
    decltype(&::worksheet_set_column) worksheet_set_column;
    decltype(&::worksheet_write_string) worksheet_write_string;
    decltype(&::worksheet_write_url_opt) worksheet_write_url_opt;
};

/// The library. Where it is a shared one it is loaded by the first call: with the cryptography that it brings along it
/// takes longer to load than many a command takes to run. Throws `Failure` when it cannot be loaded.
const XlsxFunctions& XlsxWriter();

} // namespace Brindle
