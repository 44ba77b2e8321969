#include "cli/AnyPageCommands.h"

#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/LeadOutput.h"
#include "cli/Session.h"
#include "cli/StoreLink.h"
#include "core/BusinessKey.h"
#include "discovery/AnyPage.h"
#include "discovery/Explain.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeFolders.h"
#include "recipes/RecipeReader.h"
#include "toolkit/PageAddress.h"

#include <QDir>
#include <QSet>

#include <optional>

namespace Brindle {

using namespace Qt::StringLiterals;

QString PageUrlOf(const CommandLine& line) {
    const QString url = TypedAddress(line.PageUrl);
    if (SiteOf(url).isEmpty())
        throw UsageError(u"--url: \u201C%1\u201D is no address of a web page"_s.arg(line.PageUrl));
    return url;
}

namespace {

// Reads saved pages as those of any directory or as a recipe says, and remembers what of the recipe did not hold.
class SavedPageReader {
public:
    explicit SavedPageReader(const QString& recipeFileName) {
        if (!recipeFileName.isEmpty())
            recipe_.emplace(LoadRecipe(recipeFileName));
    }

    std::vector<PageRecord> Read(const PageTree& page, const QString& url) {
        if (!recipe_)
            return ReadAnyPage(page, url).Records;
        RecipeReading reading = recipe_->Read(page, url);
        AddCounts(counts_, reading.Counts);
        for (const QString& problem : reading.Problems)
            if (!problems_.contains(problem))
                problems_.append(problem);
        return std::move(reading.Records);
    }

    /// What the user should know of the recipe, line by line.
    QStringList Remarks() const {
        return recipe_ ? QStringList(problems_ + DriftOf(recipe_->What().Taught, counts_)) : QStringList();
    }

private:
    std::optional<RecipeReader> recipe_;
    RecipeCounts counts_;
    QStringList problems_;
};

// Lists or saves the leads that are new to the harvest.
class NewLeads {
public:
    explicit NewLeads(Session& session) : session_(session) {}

    void Keep(const Lead& lead) {
        const QString key = BusinessKey(lead);
        if (!key.isEmpty()) {
            if (seen_.contains(key))
                return;
            seen_.insert(key);
        }
        if (session_.Job.Store)
            session_.Job.Store->Keep(lead);
        if (session_.Job.LeadKept)
            session_.Job.LeadKept(lead);
        if (!session_.Options.cExportAutomatic) {
            session_.Leads.Append(lead);
            return;
        }
        try {
            session_.Saver.SaveLead(session_.Options.eExportFolder, u"Results"_s, lead);
        } catch (const SaveError& error) {
            session_.Leads.Append(lead);
            session_.Job.Fail(error.Message());
        }
    }

private:
    Session& session_;
    QSet<QString> seen_;
};

} // namespace

int RunParseAnyPage(const CommandLine& line, Console& console) {
    const QString url = PageUrlOf(line);
    SavedPageReader reader(line.RecipeFileName);
    Session session(line, console, LoadSites(line));
    session.State.CurrID = line.RecipeFileName.isEmpty() ? anyPageSite.toString() : RecipeCodeOf(line.RecipeFileName);
    LeadOutput output(session.Leads, line.OutFileName, line.Format, session.Options,
                      FurtherColumns(line, session.More));
    output.Begin();
    StoreLink store(line, session, url.isEmpty() ? line.Arguments.first() : url);
    session.Job.Begin();
    NewLeads leads(session);
    qint64 pages = 0;
    int status = ExitStatus::Done;
    for (const QString& fileName : line.Arguments) {
        if (session.State.ShouldStop || !output.Error().isEmpty())
            break;
        try {
            const PageTree page = TreeOfFile(fileName);
            for (const PageRecord& record : reader.Read(page, url)) {
                if (session.State.ShouldStop)
                    break;
                leads.Keep(record.Fields);
            }
            ++pages;
            console.Note(u"%1: %2 leads so far"_s.arg(QDir::toNativeSeparators(fileName)).arg(session.Report.Count()));
        } catch (const Failure& failure) {
            console.Error(failure.Message());
            status = ExitStatus::Failed;
        }
    }
    if (!session.EndCopies())
        status = ExitStatus::Failed;
    if (const QString losses = output.Finish(); !losses.isEmpty())
        console.Note(losses);
    console.Report(session.Report.Text());
    for (const QString& remark : reader.Remarks())
        console.Report(QString(QDir::toNativeSeparators(line.RecipeFileName) + u": " + remark));
    if (!output.Error().isEmpty())
        console.Error(output.Error());
    if (!output.Error().isEmpty() || !session.State.FailureMessage.isEmpty())
        status = ExitStatus::Failed;
    store.End(session.CtrlC.Happened()       ? HarvestEnding::Stopped
              : status == ExitStatus::Failed ? HarvestEnding::Failed
                                             : HarvestEnding::Done,
              pages);
    return session.StatusOrInterrupted(status);
}

int RunNext(const CommandLine& line, Console&) {
    const QString url = PageUrlOf(line);
    const PageTree page = TreeOfFile(line.Arguments.first());
    const QString address = FindNextPage(page, PageLines(page), url).Address;
    if (!address.isEmpty())
        WriteToStandardOutput(address.toUtf8() + '\n');
    return ExitStatus::Done;
}

int RunExplain(const CommandLine& line, Console&) {
    const QString url = PageUrlOf(line);
    const PageTree page = TreeOfFile(line.Arguments.first());
    WriteToStandardOutput(ExplainReading(ReadAnyPage(page, url, Selectors::Made)));
    return ExitStatus::Done;
}

} // namespace Brindle
