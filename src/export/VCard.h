#pragma once

#include "export/LeadLines.h"

namespace Brindle {

/// Leads as cards for address books: vCard 4.0 (RFC 6350), one card a lead. A lead gets the same UID each time, so an
/// address book that takes it in again brings its card up to date.
class VCardLines : public LeadLines {
public:
    void AppendLead(QByteArray& to, const Lead& lead) override;

private:
    QString Held(const QString& text);
};

} // namespace Brindle
