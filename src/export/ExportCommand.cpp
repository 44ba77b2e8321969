#include "export/ExportCommand.h"

#include "core/Errors.h"
#include "export/SaveLeads.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool Refused(const ExportCommand& command, std::span<const qsizetype> selectedRows) {
    const std::optional<Message> reason = ExportRefusal(command, selectedRows);
    if (reason)
        command.Notices.Inform(command.Texts.Text(*reason));
    return reason.has_value();
}

bool AskAndSave(const ExportCommand& command, const std::vector<OfferedFormat>& offered, const ExtraColumns& extra,
                std::span<const qsizetype> rows, const ExportProgress& progress) {
    QStringList types;
    for (const OfferedFormat& format : offered)
        types.append(format.Type);
    const ChosenFile file =
        command.Notices.AskSaveFile(command.Texts.Text(Message::SaveDialogTitle), command.DocumentsFolder, types);
    if (file.Name.isEmpty())
        return false;
    const auto show = [&command](const QString& text) {
        command.Status.SetPanel(StatusPanel::Message, text);
        command.Loop.ProcessMessages();
    };
    show(command.Texts.Text(Message::Saving));
    bool saved = false;
    ExportLosses losses;
    try {
        saved = SaveLeads(file.Name, offered.at(static_cast<size_t>(file.Type)).Format,
                          {command.Options, command.Leads.Captions, extra}, command.Leads, rows, losses, progress);
    } catch (const SaveError& error) {
        show({});
        command.Notices.Warn(error.Message());
        return false;
    }
    QString said = saved ? command.Texts.Text(Message::Saved) : QString();
    if (saved && !losses.IsEmpty())
        said += u' ' + command.LossesText(losses);
    show(said);
    return saved;
}

} // namespace

OfferedFormat ClassicCsv() {
    return {LeadFormat::Csv, u"CSV files (*.csv)"_s};
}

std::optional<Message> ExportRefusal(const ExportCommand& command, std::span<const qsizetype> selectedRows) {
    if (command.Leads.Count() == 0)
        return Message::ExportListEmpty;
    if (selectedRows.empty())
        return Message::ExportNothingSelected;
    if (TrimmedView(command.Options.eExportFields).isEmpty())
        return Message::ExportNoColumns;
    return std::nullopt;
}

bool ExportSelected(const ExportCommand& command, std::span<const qsizetype> selectedRows,
                    const ExportProgress& progress) {
    if (Refused(command, selectedRows))
        return false;
    std::vector<OfferedFormat> offered{ClassicCsv()};
    offered.insert(offered.end(), command.Further.begin(), command.Further.end());
    return AskAndSave(command, offered, {}, selectedRows, progress);
}

bool ExportAs(const ExportCommand& command, const OfferedFormat& chosen, const ExtraColumns& extra,
              std::span<const qsizetype> selectedRows, const ExportProgress& progress) {
    return !Refused(command, selectedRows) && AskAndSave(command, {chosen}, extra, selectedRows, progress);
}

} // namespace Brindle
