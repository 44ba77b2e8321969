#include "cli/AnyPageCommands.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "core/OutputFile.h"
#include "recipes/LearnRecipe.h"
#include "recipes/RecipeFile.h"

#include <QDir>
#include <QRegularExpression>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// CAPTION=TEXT each; a caption that comes again begins the next business.
std::vector<RecipeExample> ExamplesOf(const QStringList& texts) {
    std::vector<RecipeExample> examples;
    std::array<int, FieldCount> said{};
    for (const QString& text : texts) {
        const qsizetype end = text.indexOf(u'=');
        const QString caption = text.left(qMax(qsizetype{0}, end)).trimmed();
        const qsizetype column = EnglishCaptions().indexOf(
            QRegularExpression(QRegularExpression::anchoredPattern(QRegularExpression::escape(caption)),
                               QRegularExpression::CaseInsensitiveOption));
        if (end < 0 || column < 0)
            throw UsageError(u"--example: \u201C%1\u201D is no CAPTION=TEXT; there are %2"_s.arg(
                text, EnglishCaptions().join(u", ")));
        RecipeExample example{.Column = static_cast<Field>(column), .Text = text.sliced(end + 1).trimmed()};
        if (example.Text.isEmpty())
            throw UsageError(u"--example: \u201C%1\u201D has no text"_s.arg(text));
        example.Business = said[static_cast<size_t>(column)]++;
        examples.push_back(std::move(example));
    }
    return examples;
}

// The rows that could be added stand in the recipe as comments.
QStringList RemarksOf(const LearnedRecipe& learned) {
    QStringList remarks;
    if (!learned.Proposals.empty())
        remarks.append(u"These may hold too; take one into [fields] by hand, and try it:"_s);
    for (const RecipeProposal& proposal : learned.Proposals)
        remarks.append(u"  \"%1\" = '%2'   (%3 of %4: %5)"_s
                           .arg(EnglishCaptions()[int(proposal.Row.Column)], proposal.Row.Selector)
                           .arg(proposal.Filled)
                           .arg(learned.What.Taught.Records)
                           .arg(proposal.Sample.left(60)));
    return remarks;
}

} // namespace

int RunTeach(const CommandLine& line, Console& console) {
    const QString url = PageUrlOf(line);
    const std::vector<RecipeExample> examples = ExamplesOf(line.Examples);
    const PageTree page = TreeOfFile(line.Arguments.first());
    const LearnedRecipe learned = LearnRecipe(page, url, examples);
    const QByteArray text = RecipeText(learned.What, RemarksOf(learned));
    if (line.OutFileName.isEmpty()) {
        WriteToStandardOutput(text);
    } else {
        OutputFile file(line.OutFileName);
        if (!file.Open() || !file.Write(text) || !file.Commit())
            throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(line.OutFileName), file.ErrorString()));
    }
    QStringList counts;
    for (const RecipeField& field : learned.What.Fields)
        counts.append(u"%1 %2"_s.arg(EnglishCaptions()[int(field.Column)])
                          .arg(learned.What.Taught.Filled[static_cast<size_t>(field.Column)]));
    console.Note(u"%1 records: %2"_s.arg(learned.What.Taught.Records).arg(counts.join(u", ")));
    if (learned.Beside > 0)
        console.Note(
            u"the page seems to list %1 more that are made otherwise; examples of one of them too would tell how"_s.arg(
                learned.Beside));
    return ExitStatus::Done;
}

} // namespace Brindle
