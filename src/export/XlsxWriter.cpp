#include "export/XlsxWriter.h"

#if defined(BRINDLE_XLSX_LIBRARY) && defined(BRINDLE_MINIZIP_LIBRARY)
#include <minizip/zip.h>
#endif

namespace Brindle {

#ifdef BRINDLE_XLSX_LIBRARY
BRINDLE_LOADED_LIBRARY(XlsxFunctions, XlsxWriter, XLSX_FUNCTIONS, BRINDLE_XLSX_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(XlsxFunctions, XlsxWriter, XLSX_FUNCTIONS)
#endif

#if defined(BRINDLE_XLSX_LIBRARY) && defined(BRINDLE_MINIZIP_LIBRARY)
namespace {

#define ZIP_FUNCTIONS(FUNCTION) FUNCTION(zip, OpenNewFileInZip4_64)
BRINDLE_FUNCTION_TABLE(ZipFunctions, ZIP_FUNCTIONS);
BRINDLE_LOADED_LIBRARY(ZipFunctions, Zip, ZIP_FUNCTIONS, BRINDLE_MINIZIP_LIBRARY)

} // namespace
#endif

} // namespace Brindle

#if defined(BRINDLE_XLSX_LIBRARY) && defined(BRINDLE_MINIZIP_LIBRARY)
// libxlsxwriter compresses at zlib's default level and has no setting for it. At level 3 a workbook takes a third less
// processor time and 6 % more room. The program's own function of this name, which it exports, is the one that a
// library loaded later finds; it passes everything but the level on to minizip. Where it is not found, a workbook is
// made as the library makes it.
extern "C" __attribute__((visibility("default"))) int
zipOpenNewFileInZip4_64(zipFile file, const char* filename, const zip_fileinfo* zipfi, const void* extrafield_local,
                        uInt size_extrafield_local, const void* extrafield_global, uInt size_extrafield_global,
                        const char* comment, int method, int level, int raw, int windowBits, int memLevel, int strategy,
                        const char* password, uLong crcForCrypting, uLong versionMadeBy, uLong flagBase, int zip64) {
    constexpr int quick = 3;
    try {
        return Brindle::Zip().OpenNewFileInZip4_64(
            file, filename, zipfi, extrafield_local, size_extrafield_local, extrafield_global, size_extrafield_global,
            comment, method, level == Z_DEFAULT_COMPRESSION ? quick : level, raw, windowBits, memLevel, strategy,
            password, crcForCrypting, versionMadeBy, flagBase, zip64);
    } catch (const std::exception&) { // the library is C
        return ZIP_INTERNALERROR;
    }
}
#endif
