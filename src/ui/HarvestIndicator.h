#pragma once

#include "core/HarvestDriver.h"
#include "i18n/WindowTexts.h"
#include "ui/StatusBarView.h"

#include <memory>

namespace Brindle {

/// Shows at the end of the status bar that a harvest runs: time, pages, leads and what it is waiting for; nothing when
/// none does.
class HarvestIndicator : public HarvestObserver {
public:
    HarvestIndicator(Harvest& harvest, StatusBarView& bar, const WindowTexts& texts);

    /// To be called behind whatever may have begun or ended a harvest. `running`: one is in progress.
    void Follow(bool running);

    /// A request through one proxy of the list has failed, and the next one is tried: address and reason.
    void AttemptFailed(const QString& failure);
    void PageIncomplete(const QString& page) override;
    void PageRead() override;
    void PageGivenUp(const QString& address, const QString& reason) override;

private:
    void Show();
    QString Waiting() const;

    Harvest& harvest_;
    StatusBarView& bar_;
    const WindowTexts& texts_;
    QString missing_;        // what the page that is shown lacks of a results page
    QString failure_;        // of the last request; holds until something is found
    qint32 leadsBefore_ = 0; // before the page in hand
    qint32 leadsAtFailure_ = 0;
    qint64 pages_ = 0;
    qint64 pagesGivenUp_ = 0;
    quint32 begin_ = 0;
    bool running_ = false;
    bool nextPage_ = false;
};

} // namespace Brindle
