#include "export/AutomaticSaver.h"

#include "core/Errors.h"
#include "export/CsvFormat.h"
#include "toolkit/Markup.h"

#include <QDir>
#include <QFile>
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
    QFile file(fileName);
    const auto failed = [&] { return SaveError(u"%1: %2"_s.arg(fileName, file.errorString())); };
    constexpr QIODevice::OpenMode append = QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
    // All but the first lead find the file there, so that is tried first.
    const bool exists = file.open(append | QIODevice::ExistingOnly);
    if (!exists) // a folder that cannot be made shows when the file is
        QDir().mkpath(QFileInfo(fileName).path());
    if (!exists && (QFileInfo::exists(fileName) || !file.open(append | QIODevice::NewOnly)))
        throw failed();
    QByteArray bytes;
    if (!exists)
        bytes = AutomaticHeader(leads_.Captions, settings_.eDelimiter).toLocal8Bit() + "\r\n";
    bytes += line.toLocal8Bit() + "\r\n";
    const qint64 before = file.size();
    if (file.write(bytes) != bytes.size()) {
        const SaveError error = failed();
        // Half a line would spoil the next one, and a file without its header would never get one.
        if (exists)
            file.resize(before);
        else
            file.remove();
        throw error;
    }
    file.close();
    if (file.error() != QFileDevice::NoError)
        throw failed();
}

} // namespace Brindle
