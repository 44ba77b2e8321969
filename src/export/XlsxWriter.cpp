#include "export/XlsxWriter.h"

namespace Brindle {

#ifdef BRINDLE_XLSX_LIBRARY
BRINDLE_LOADED_LIBRARY(XlsxFunctions, XlsxWriter, XLSX_FUNCTIONS, BRINDLE_XLSX_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(XlsxFunctions, XlsxWriter, XLSX_FUNCTIONS)
#endif

} // namespace Brindle
