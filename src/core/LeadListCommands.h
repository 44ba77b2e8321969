#pragma once

#include "core/Dialogs.h"
#include "core/LeadList.h"
#include "core/MessageLoop.h"
#include "core/MessageTexts.h"
#include "core/StatusView.h"

#include <span>

namespace Brindle {

/// The duplicate key of a lead: its details link, for one site joined with its name, upper-cased and trimmed.
QString DuplicateKeyOf(QStringView siteCode, const Lead& lead);

/// Writes the list count into its status panel.
void ShowListCount(const LeadList& leads, const MessageTexts& texts, StatusView& status);

/// Deletes the rows (ascending) after the user has confirmed, each with one entry of its duplicate key. True when it
/// was done.
bool DeleteSelected(LeadList& leads, std::span<const qsizetype> rows, QStringView siteCode, const MessageTexts& texts,
                    Dialogs& dialogs, MessageLoop& loop, StatusView& status);

/// Deletes every row and every duplicate key after the user has confirmed. True when it was done.
bool DeleteAll(LeadList& leads, const MessageTexts& texts, Dialogs& dialogs, MessageLoop& loop, StatusView& status);

} // namespace Brindle
