#pragma once

#include "cli/CommandLine.h"
#include "core/LeadList.h"
#include "export/LeadLines.h"
#include "export/Workbook.h"

#include <QFile>

namespace Brindle {

class QtMessageLoop;

/// Writes the leads of a list as they are found, in list order: each is in the file before the next one is looked for,
/// or, where they are gathered, before anything is waited for, so whatever ends the program keeps what was found. A
/// workbook cannot grow like that: it is put in place by
/// `Finish`, whole.
class LeadOutput : public LeadListObserver {
public:
    /// `fileName`: empty for standard output. Throws `Failure` when the file cannot be made.
    LeadOutput(LeadList& leads, const QString& fileName, LeadFormat format, const Settings& settings,
               const ExtraColumns& extra = {});
    ~LeadOutput() override;
    LeadOutput(const LeadOutput&) = delete;
    LeadOutput& operator=(const LeadOutput&) = delete;

    /// The header of a CSV file. Nothing when leads are saved automatically: the file then stays empty unless one
    /// cannot be saved there.
    void Begin();
    void LeadAppended(qsizetype row) override;
    /// Writes a lead that is in no list, where all leads are there already: in large pieces.
    void Add(const Lead& lead);
    /// From now on leads are gathered into large pieces, which are written at the latest before the loop's next turn or
    /// wait, by `Flush` and at the end. The loop must outlive this.
    void GatherBetweenTurns(QtMessageLoop& loop);
    /// Writes what is gathered.
    void Flush();
    /// To be called when no further lead comes. What the format could not hold, as one line; empty when it held all.
    QString Finish();

    /// Why writing failed: file and reason; empty when all is well. Nothing is written after a failure.
    const QString& Error() const { return error_; }

private:
    LeadList& leads_;
    QFile file_;
    QString shownName_;
    LeadFormat format_;
    bool automatic_;
    bool begun_ = false;
    qint64 added_ = 0;
    std::unique_ptr<LeadLines> lines_;   // of a text format
    std::unique_ptr<Workbook> workbook_; // of the other one
    QByteArray buffer_;
    QtMessageLoop* loop_ = nullptr; // whose turns end the gathering
    QString error_;
};

} // namespace Brindle
