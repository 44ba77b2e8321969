#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/LeadOutput.h"
#include "cli/Session.h"
#include "export/LeadReader.h"
#include "export/MergeLeads.h"
#include "i18n/LanguageFile.h"
#include "platform/CreatePlatform.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Input {
    QString FileName;
    LeadFile File;
    QDateTime Written;
};

std::vector<QStringList> CaptionsOfAllLanguages() {
    std::vector<QStringList> captions;
    const QDir folder(LanguageFolder());
    for (const QString& name : folder.entryList({u"*.dat"_s}, QDir::Files, QDir::Name))
        captions.push_back(LanguageFile(ReadLanguageText(folder.filePath(name))).ColumnCaptions());
    return captions;
}

} // namespace

int RunMerge(const CommandLine& line, Console& console) {
    const std::unique_ptr<Platform> system = CreatePlatform();
    const Settings settings = LoadSettingsInForce(line, *system);
    const ExtraColumns extra = FurtherColumns(line, LoadOptionsInForce(line, *system, console));
    const std::vector<QStringList> captions = CaptionsOfAllLanguages();
    int status = ExitStatus::Done;
    std::vector<Input> inputs;
    for (const QString& fileName : line.Arguments) {
        try {
            inputs.push_back({fileName, ReadLeadFile(fileName, captions), QFileInfo(fileName).lastModified()});
        } catch (const Failure& failure) {
            console.Error(failure.Message());
            status = ExitStatus::Failed;
        }
    }
    // The newest lead of a business wins: that of the file written last, or of the one named last.
    std::stable_sort(inputs.begin(), inputs.end(),
                     [](const Input& one, const Input& other) { return one.Written < other.Written; });
    LeadMerger merger;
    qint64 read = 0;
    for (Input& input : inputs) {
        const QString shown = QDir::toNativeSeparators(input.FileName);
        for (const QString& problem : input.File.Problems)
            console.Error(u"%1: %2"_s.arg(shown, problem));
        const qint64 before = merger.Duplicates();
        for (Lead& lead : input.File.Leads)
            merger.Add(std::move(lead));
        read += static_cast<qint64>(input.File.Leads.size());
        console.Note(u"%1: %2 leads, %3 of them known already"_s.arg(shown)
                         .arg(input.File.Leads.size())
                         .arg(merger.Duplicates() - before));
    }
    LeadList leads;
    LeadOutput output(leads, line.OutFileName, line.Format, settings, extra);
    output.Begin();
    for (const Lead& lead : merger.Leads())
        output.Add(lead);
    if (const QString losses = output.Finish(); !losses.isEmpty())
        console.Note(losses);
    console.Note(u"%1 leads read, %2 duplicates, %3 leads written"_s.arg(read)
                     .arg(merger.Duplicates())
                     .arg(merger.Leads().size()));
    if (!output.Error().isEmpty()) {
        console.Error(output.Error());
        return ExitStatus::Failed;
    }
    return status;
}

} // namespace Brindle
