#pragma once

#include "core/Harvest.h"
#include "core/Services.h"

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
    void AutomaticSave(const QString& folder, const QString& name, const QString& line);

private:
    void AppendRecord(const QString& fileName, const QString& line) const;

    HarvestState& state_;
    const Settings& settings_;
    const LeadList& leads_;
    const MessageTexts& texts_;
    StatusView& status_;
    MessageLoop& loop_;
};

} // namespace Brindle
