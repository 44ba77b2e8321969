#pragma once

#include "core/LeadList.h"
#include "core/MoreOptions.h"
#include "core/Settings.h"
#include "export/Workbook.h"

#include <QSaveFile>
#include <QStringList>

#include <memory>

namespace Brindle {

/// Saves the leads of an automatic file once more when the harvest ends, as a workbook and as CSV for spreadsheets,
/// where the options want it: beside the automatic file, named like it, with all its columns. They are put in place
/// whole; a harvest that saved no lead leaves none.
class EndCopies {
public:
    EndCopies(const MoreOptions& more, const Settings& settings, const LeadList& leads)
        : more_(more), settings_(settings), leads_(leads) {}

    /// What became of the copies of a harvest.
    struct Ending {
        QStringList Saved;    ///< the files
        QStringList Problems; ///< of those that could not be made: file and reason
        ExportLosses Losses;  ///< what the formats could not hold
    };

    /// Takes a lead that was saved in an automatic file, which is named as it was at first. The copies of another one
    /// end before. Never throws: a copy must not stand in the way of a harvest.
    void Add(const QString& automaticFile, const Lead& lead);
    /// To be called when the harvest has ended: what became of all copies since the last call.
    Ending Finish();

private:
    void Begin(const QString& automaticFile);
    void End();
    void WriteSheet(bool all);
    template <typename Work>
    void Try(bool& going, const Work& work);

    const MoreOptions& more_;
    const Settings& settings_;
    const LeadList& leads_;
    QString automaticFile_; // empty: nothing is begun
    bool workbookGoing_ = false;
    bool sheetGoing_ = false;
    QString workbookName_;
    QString sheetName_;
    std::unique_ptr<Workbook> workbook_;
    std::unique_ptr<LeadLines> lines_;
    std::unique_ptr<QSaveFile> sheet_;
    QByteArray buffer_;
    Ending ending_;
    ExportLosses losses_;
};

} // namespace Brindle
