#pragma once

#include "core/Harvest.h"
#include "core/Services.h"

#include <functional>

namespace Brindle {

/// Appends each lead to the harvest's automatic file as soon as it is found. The file is opened and closed for every
/// lead, and a lead is one write before it is counted, so whatever happens to the program, every lead that counts as
/// exported has its whole line.
class AutomaticSaver : public LeadSaver {
public:
    AutomaticSaver(HarvestState& state, const Settings& settings, const LeadList& leads, const MessageTexts& texts,
                   StatusView& status, MessageLoop& loop);

    /// `AutomaticSave` of the lead's line.
    void SaveLead(const QString& folder, const QString& name, const Lead& lead) override;

    /// Appends a finished line to `folder` + separator + `name` + blank + time stamp of the harvest + ".csv". The
    /// header is written when the file does not exist. Throws `SaveError` with file and reason; the lead then does not
    /// count as exported.
    ///
    /// A file that another program holds is followed by one with the next number, "... (2).csv", to which the harvest
    /// then keeps.
    void AutomaticSave(const QString& folder, const QString& name, const QString& line);

    /// Whether another program keeps a file from being written to; unset: none ever does.
    std::function<bool(const QString& fileName)> IsHeld;
    /// Told when a held file is followed by another one.
    std::function<void(const QString& held, const QString& next)> MovedOn;
    /// Told of each lead that was saved, and of the first file of the harvest, also when another one follows it.
    std::function<void(const QString& firstFile, const Lead& lead)> LeadSaved;

private:
    void ShowFile() const;
    void AppendRecord(const QString& fileName, const QString& line) const;

    HarvestState& state_;
    const Settings& settings_;
    const LeadList& leads_;
    const MessageTexts& texts_;
    StatusView& status_;
    MessageLoop& loop_;
    QString base_;     // of the current files, without number and suffix
    int number_ = 1;   // of the current one
    QString fileName_; // the current one
};

} // namespace Brindle
