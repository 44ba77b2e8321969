#include "core/LeadListCommands.h"

#include "core/BusinessKey.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

// The one site whose details links do not tell its listings apart.
bool KeyNeedsName(QStringView siteCode) {
    return siteCode == u"YPSE006001";
}

} // namespace

QString DuplicateKeyOf(QStringView siteCode, const Lead& lead) {
    return UpperTrimmed(KeyNeedsName(siteCode) ? QString(lead.DetailsLink + lead.Name) : lead.DetailsLink);
}

void ShowListCount(const LeadList& leads, const MessageTexts& texts, StatusView& status) {
    status.SetPanel(StatusPanel::ListCount, texts.WithNumber(Message::ListCount, leads.Count()));
}

bool DeleteSelected(LeadList& leads, std::span<const qsizetype> rows, QStringView siteCode, const MessageTexts& texts,
                    Dialogs& dialogs, MessageLoop& loop, StatusView& status) {
    if (!dialogs.Confirm(texts.Text(Message::ConfirmDeleteSelected)))
        return false;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        Lead lead;
        if (KeyNeedsName(siteCode))
            lead.Name = leads.FieldAt(*row, Field::BusinessName);
        lead.DetailsLink = leads.FieldAt(*row, Field::DetailsLink);
        const QString key = DuplicateKeyOf(siteCode, lead);
        if (leads.DuplicatedItems.Contains(key)) {
            leads.DuplicatedItems.RemoveOne(key);
        } else { // a lead of a directory whose duplicates are told by the business
            leads.DuplicatedItems.RemoveOne(BusinessKey(leads.At(*row)));
        }
    }
    leads.Remove(rows);
    loop.ProcessMessages();
    ShowListCount(leads, texts, status);
    return true;
}

bool DeleteAll(LeadList& leads, const MessageTexts& texts, Dialogs& dialogs, MessageLoop& loop, StatusView& status) {
    if (!dialogs.Confirm(texts.Text(Message::ConfirmDeleteAll)))
        return false;
    leads.DuplicatedItems.Clear();
    leads.Clear();
    loop.ProcessMessages();
    ShowListCount(leads, texts, status);
    return true;
}

} // namespace Brindle
