#include "net/CharacterSets.h"

#include <algorithm>
#include <array>
#include <windows.h>

namespace Brindle {

namespace {

struct CodePage {
    const char* Name;
    UINT Number;
};

// Windows has no code pages of ISO 8859-10, -14 and -16.
constexpr std::array codePages{
    CodePage{"windows-874", 874},   CodePage{"shift_jis", 932},
    CodePage{"gbk", 936},           CodePage{"windows-949", 949},
    CodePage{"big5", 950},          CodePage{"windows-1250", 1250},
    CodePage{"cp1250", 1250},       CodePage{"x-cp1250", 1250},
    CodePage{"windows-1251", 1251}, CodePage{"cp1251", 1251},
    CodePage{"x-cp1251", 1251},     CodePage{"windows-1253", 1253},
    CodePage{"cp1253", 1253},       CodePage{"windows-1254", 1254},
    CodePage{"cp1254", 1254},       CodePage{"windows-1255", 1255},
    CodePage{"cp1255", 1255},       CodePage{"windows-1256", 1256},
    CodePage{"cp1256", 1256},       CodePage{"windows-1257", 1257},
    CodePage{"cp1257", 1257},       CodePage{"windows-1258", 1258},
    CodePage{"cp1258", 1258},       CodePage{"macintosh", 10000},
    CodePage{"x-mac-roman", 10000}, CodePage{"x-mac-cyrillic", 10007},
    CodePage{"ibm866", 866},        CodePage{"cp866", 866},
    CodePage{"koi8-r", 20866},      CodePage{"koi8-u", 21866},
    CodePage{"euc-jp", 20932},      CodePage{"iso-8859-2", 28592},
    CodePage{"latin2", 28592},      CodePage{"iso-8859-3", 28593},
    CodePage{"iso-8859-4", 28594},  CodePage{"iso-8859-5", 28595},
    CodePage{"iso-8859-6", 28596},  CodePage{"iso-8859-7", 28597},
    CodePage{"iso-8859-8", 28598},  CodePage{"iso-8859-13", 28603},
    CodePage{"iso-8859-15", 28605}, CodePage{"latin-9", 28605},
    CodePage{"iso-2022-jp", 50220}, CodePage{"gb18030", 54936},
};

} // namespace

std::optional<QString> DecodeCharacterSet(const QByteArray& name, const QByteArray& bytes) {
    const auto* const found =
        std::find_if(codePages.begin(), codePages.end(), [&name](const CodePage& page) { return name == page.Name; });
    if (found == codePages.end() || IsValidCodePage(found->Number) == 0)
        return std::nullopt;
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(found->Number, 0, bytes.constData(), size, nullptr, 0);
    if (length == 0 && size > 0)
        return std::nullopt;
    QString text(length, Qt::Uninitialized);
    MultiByteToWideChar(found->Number, 0, bytes.constData(), size, reinterpret_cast<wchar_t*>(text.data()), length);
    return text;
}

} // namespace Brindle
