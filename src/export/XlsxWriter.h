#pragma once

#include "core/LoadedLibrary.h"

#include <xlsxwriter.h>

namespace Brindle {

#define XLSX_FUNCTIONS(FUNCTION)                                                                                       \
    FUNCTION(, format_set_bold)                                                                                        \
    FUNCTION(, format_set_bottom)                                                                                      \
    FUNCTION(, format_set_num_format)                                                                                  \
    FUNCTION(, lxw_strerror)                                                                                           \
    FUNCTION(, lxw_workbook_free)                                                                                      \
    FUNCTION(, workbook_add_format)                                                                                    \
    FUNCTION(, workbook_add_worksheet)                                                                                 \
    FUNCTION(, workbook_close)                                                                                         \
    FUNCTION(, workbook_new_opt)                                                                                       \
    FUNCTION(, worksheet_autofilter)                                                                                   \
    FUNCTION(, worksheet_freeze_panes)                                                                                 \
    FUNCTION(, worksheet_set_column)                                                                                   \
    FUNCTION(, worksheet_write_string)                                                                                 \
    FUNCTION(, worksheet_write_url_opt)

/// The functions of libxlsxwriter in use, under their own names.
BRINDLE_FUNCTION_TABLE(XlsxFunctions, XLSX_FUNCTIONS);

/// The library. Throws `Failure` when it cannot be loaded.
const XlsxFunctions& XlsxWriter();

} // namespace Brindle
