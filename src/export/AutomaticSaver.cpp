#include "AutomaticSaver.h"

#include "CsvFormat.h"
#include "Errors.h"
#include "Markup.h"

#include <QDir>
#include <QFile>

namespace Brindle {

AutomaticSaver::AutomaticSaver(HarvestState& state, const Settings& settings, const LeadList& leads,
                               const MessageTexts& texts, StatusView& status, MessageLoop& loop)
    : state_(state), settings_(settings), leads_(leads), texts_(texts), status_(status), loop_(loop) {}

void AutomaticSaver::AutomaticSave(const QString& folder, const QString& name, const QString& line) {
    const QString fileName = folder + QDir::separator() + SanitizeFileName(name) + u' ' + state_.DateTimeVal + u".csv";
    status_.SetPanel(0, QString(texts_.Text(Message::AutomaticSavePrefix) + fileName));
    loop_.ProcessMessages();

    QFile file(fileName);
    // Appending makes the file when it does not exist; at its very beginning the header is due.
    bool saved = file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
    if (saved) {
        QByteArray bytes;
        if (file.size() == 0)
            bytes += AutomaticHeader(leads_.Captions, settings_.eDelimiter).toLocal8Bit() + "\r\n";
        bytes += line.toLocal8Bit() + "\r\n";
        const qint64 before = file.size();
        saved = file.write(bytes) == bytes.size();
        if (!saved)
            file.resize(before); // half a line would spoil the next one
    }
    if (!saved)
        throw SaveError(QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    ++state_.ExportedNum;
    status_.SetPanel(2, texts_.WithNumber(Message::ExportedCount, state_.ExportedNum));
    loop_.ProcessMessages();
}

} // namespace Brindle
