#include "export/AutomaticSaver.h"

#include "core/Errors.h"
#include "export/CsvFormat.h"
#include "platform/FileAppend.h"
#include "toolkit/Markup.h"

#include <QDir>
#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

AutomaticSaver::AutomaticSaver(HarvestState& state, const Settings& settings, const LeadList& leads,
                               const MessageTexts& texts, StatusView& status, MessageLoop& loop)
    : state_(state), settings_(settings), leads_(leads), texts_(texts), status_(status), loop_(loop) {}

void AutomaticSaver::SaveLead(const QString& folder, const QString& name, const Lead& lead) {
    AutomaticSave(folder, name, AutomaticLine(lead));
    if (LeadSaved)
        LeadSaved(base_ + u".csv", lead);
}

void AutomaticSaver::AutomaticSave(const QString& folder, const QString& name, const QString& line) {
    const QString base = folder + QDir::separator() + SanitizeFileName(name) + u' ' + state_.DateTimeVal;
    if (base != base_) {
        base_ = base;
        number_ = 1;
        fileName_ = base + u".csv";
    }
    ShowFile();
    for (;;) {
        try {
            AppendRecord(fileName_, line);
            break;
        } catch (const SaveError&) {
            if (!IsHeld || !IsHeld(fileName_))
                throw;
        }
        const QString held = fileName_;
        fileName_ = base_ + u" (%1).csv"_s.arg(++number_);
        if (MovedOn)
            MovedOn(held, fileName_);
        ShowFile();
    }
    ++state_.ExportedNum;
    status_.SetPanel(StatusPanel::ExportedCount, texts_.WithNumber(Message::ExportedCount, state_.ExportedNum));
    loop_.ProcessMessages();
}

void AutomaticSaver::ShowFile() const {
    status_.SetPanel(StatusPanel::Message, QString(texts_.Text(Message::AutomaticSavePrefix) + fileName_));
    loop_.ProcessMessages();
}

void AutomaticSaver::AppendRecord(const QString& fileName, const QString& line) const {
    using enum AppendResult::Kind;
    const QByteArray record = line.toLocal8Bit() + "\r\n";
    // All but the first lead find the file there. Another program may make it in between, or somebody remove it.
    AppendResult result{Missing, {}};
    for (int attempt = 0; attempt < 3 && (result.Outcome == Missing || result.Outcome == Exists); ++attempt) {
        result = AppendToFile(fileName, record);
        if (result.Outcome != Missing)
            continue;
        QDir().mkpath(QFileInfo(fileName).path()); // a folder that cannot be made shows when the file is
        const QByteArray header = AutomaticHeader(leads_.Captions, settings_.eDelimiter).toLocal8Bit() + "\r\n";
        result = MakeFile(fileName, header + record);
    }
    if (result.Outcome != Done)
        throw SaveError(u"%1: %2"_s.arg(fileName, result.Reason));
}

} // namespace Brindle
