#pragma once

#include "core/Lead.h"
#include "core/Settings.h"
#include "export/ExtraColumns.h"
#include "export/LeadFormat.h"

#include <QByteArray>

#include <memory>

namespace Brindle {

/// What is written of each lead, and under which names.
struct ExportShape {
    Settings Options;                         ///< columns and delimiter
    QStringList Captions = EnglishCaptions(); ///< of the fourteen columns
    ExtraColumns Extra;
};

/// How often something could not be written as it is.
struct ExportLosses {
    qint64 Characters = 0; ///< texts without the characters that the format cannot hold
    qint64 Shortened = 0;  ///< texts cut to the length that the format can hold
    qint64 PlainLinks = 0; ///< links beyond what a sheet can hold, written as text

    bool IsEmpty() const { return Characters + Shortened + PlainLinks == 0; }
    /// One line, in English; empty when nothing was lost.
    QString Text() const;
};

/// Writes leads one after the other as bytes of a text format. Nothing is kept of a lead that is written.
class LeadLines {
public:
    virtual ~LeadLines() = default;
    /// What stands before the first lead.
    virtual void AppendHeader(QByteArray& to) { Q_UNUSED(to) }
    virtual void AppendLead(QByteArray& to, const Lead& lead) = 0;
    const ExportLosses& Losses() const { return losses_; }

protected:
    ExportLosses losses_;
};

/// The writer of a text format, which is each one but the workbook.
std::unique_ptr<LeadLines> MakeLeadLines(LeadFormat format, const ExportShape& shape);

} // namespace Brindle
