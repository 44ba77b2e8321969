#pragma once

#include <QString>

#include <array>

namespace Brindle {

/// The message slots; each number is that of the slot's element in a language file.
enum class Message {
    OfferNumber = 3,
    LoadingWebsites = 44,
    ListCount = 45,
    ExportedCount = 46,
    AutomaticSavePrefix = 47,
    ExportListEmpty = 48,
    ExportNothingSelected = 49,
    ExportNoColumns = 50,
    SaveDialogTitle = 51,
    Saving = 52,
    Saved = 53,
    ConfirmDeleteAll = 54,
    ConfirmDeleteSelected = 55,
    DirectDownload = 56,
    DirectDownloadStopped = 57,
    UpdateNone = 58,
    UpdateAvailable = 59,
    UpdateFailed = 60,
    UpdateChecking = 61,
    RandomDelay = 62,
    ProxyRequest = 63,
    Request = 64,
    RequestStopped = 65,
    NextProxy = 66,
    AdapterQuestion = 67,
    ProductText = 68,
    HarvestFinished = 69,
};

/// The texts that the program shows while it works. Every slot is empty until a language file fills it.
class MessageTexts {
public:
    const QString& Text(Message slot) const;
    void Set(Message slot, const QString& text);
    /// The slot's text with every "[VAR1]" replaced by the number in decimal.
    QString WithNumber(Message slot, qint64 number) const;

private:
    std::array<QString, 70> slots_;
};

} // namespace Brindle
