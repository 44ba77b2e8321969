#include "Input.h"
#include "core/Errors.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeReader.h"

using namespace Qt::StringLiterals;

// A recipe; behind a NUL, a page to read by it.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype end = input.indexOf('\0');
    const QString url = u"https://www.dir.example/list?page=2"_s;
    try {
        const Recipe recipe = ReadRecipe(end < 0 ? input : input.left(end), u"fuzz.toml"_s);
        Fuzz::Require(ReadRecipe(RecipeText(recipe), u"again"_s) == recipe, "a recipe comes back as it was");
        const RecipeReader reader(recipe);
        const PageTree page(end < 0 ? QString() : QString::fromUtf8(input.mid(end + 1)));
        const RecipeReading reading = reader.Read(page, url);
        for (const PageRecord& record : reading.Records)
            Fuzz::Require(!record.Fields.Name.isEmpty(), "a record has a name");
        for (const QString& line : DriftOf(recipe.Taught, reading.Counts))
            Fuzz::Require(!line.contains(u'\n'), "drift is told in lines");
        Lead lead;
        QStringList problems;
        reader.ReadDetails(page, url, lead, problems);
    } catch (const Failure& failure) {
        Fuzz::Require(!failure.Message().contains(u'\n'), "a mistake is one line");
    }
    return 0;
}
