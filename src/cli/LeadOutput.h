#pragma once

#include "cli/CommandLine.h"
#include "core/LeadList.h"
#include "export/CsvFormat.h"

#include <QFile>

namespace Brindle {

/// Writes the leads of a list as they are found, in list order: each is in the file before the next one is looked for,
/// so whatever ends the program keeps all that was found.
class LeadOutput : public LeadListObserver {
public:
    /// `fileName`: empty for standard output. Throws `Failure` when the file cannot be made.
    LeadOutput(LeadList& leads, const QString& fileName, LeadFormat format, const Settings& settings);
    ~LeadOutput() override;
    LeadOutput(const LeadOutput&) = delete;
    LeadOutput& operator=(const LeadOutput&) = delete;

    /// The header of a CSV file. Nothing when leads are saved automatically: the file then stays empty unless one
    /// cannot be saved there.
    void Begin();
    void LeadAppended(qsizetype row) override;

    /// Why writing failed: file and reason; empty when all is well. Nothing is written after a failure.
    const QString& Error() const { return error_; }

private:
    void Write(const QByteArray& bytes);

    LeadList& leads_;
    QFile file_;
    QString shownName_;
    LeadFormat format_;
    bool automatic_;
    bool begun_ = false;
    CsvFormat csv_;
    QByteArray buffer_;
    QString error_;
};

} // namespace Brindle
