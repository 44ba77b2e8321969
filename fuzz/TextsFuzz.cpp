#include "Input.h"
#include "i18n/LanguageFile.h"
#include "net/EmailSearch.h"
#include "net/TextDecoder.h"
#include "settings/SettingsText.h"

using namespace Qt::StringLiterals;

// The bytes of a response, of a settings file and of a language file. The first line of an input is the response's
// content type.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype line = qMax(input.indexOf('\n'), qsizetype(0));
    const QByteArray bytes = input.mid(line);

    const QString page = DecodePage(bytes, input.left(line));
    Fuzz::Require(page.size() <= bytes.size(), "no character set makes more characters than bytes");
    for (const QString& email : FindEmails(page))
        Fuzz::Require(page.contains(email) && email.count(u'@') == 1, "an address stands in the text");

    const QString text = DecodeLanguageText(bytes);
    const LanguageFile language(text);
    Fuzz::Require(language.Missing().size() <= LanguageFile::LastMain + LanguageFile::LastSettings,
                  "tags are missed once");
    const Settings settings = ParseSettings(text, u"/documents"_s);
    Fuzz::Require(!settings.eDelimiter.isEmpty() && !settings.eExportFolder.isEmpty(), "defaults stand in");
    SettingsText(settings);
    return 0;
}
