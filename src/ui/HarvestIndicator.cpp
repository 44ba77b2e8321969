#include "ui/HarvestIndicator.h"

namespace Brindle {

using namespace Qt::StringLiterals;

HarvestIndicator::HarvestIndicator(Harvest& harvest, StatusBarView& bar, const WindowTexts& texts)
    : harvest_(harvest), bar_(bar), texts_(texts) {}

void HarvestIndicator::Follow(bool running) {
    if (running && !running_) {
        begin_ = harvest_.Loop.TickCount();
        pages_ = 0;
        pagesGivenUp_ = 0;
        leadsBefore_ = 0;
        missing_.clear();
        failure_.clear();
        nextPage_ = false;
    }
    running_ = running;
    Show();
}

void HarvestIndicator::AttemptFailed(const QString& failure) {
    failure_ = failure;
    leadsAtFailure_ = harvest_.State.ExtractedNum;
    Show();
}

void HarvestIndicator::PageIncomplete(const QString& page) {
    const std::shared_ptr<const SiteAdapter> site = harvest_.Adapter();
    missing_ = site ? MissingListMarkers(page, *site) : QString();
    leadsBefore_ = harvest_.State.ExtractedNum;
    Show();
}

void HarvestIndicator::PageRead() {
    ++pages_;
    missing_.clear();
    failure_.clear();
    leadsBefore_ = harvest_.State.ExtractedNum;
    nextPage_ = true;
    Show();
}

void HarvestIndicator::PageGivenUp(const QString& /*address*/, const QString& /*reason*/) {
    ++pagesGivenUp_;
    Show();
}

QString HarvestIndicator::Waiting() const {
    if (!failure_.isEmpty() && harvest_.State.ExtractedNum == leadsAtFailure_)
        return failure_;
    // The first lead of a page is the first sign that it is being read.
    if (harvest_.State.ExtractedNum != leadsBefore_)
        return texts_.Text(WindowText::HarvestReadsPage);
    if (!missing_.isEmpty())
        return texts_.With(WindowText::HarvestWaitsForResults, {missing_});
    return nextPage_ ? texts_.Text(WindowText::HarvestLoadsNextPage) : QString();
}

void HarvestIndicator::Show() {
    if (!running_)
        return bar_.ShowActivity({});
    const quint32 seconds = (harvest_.Loop.TickCount() - begin_) / 1000;
    const QString time = u"%1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    QStringList parts{texts_.With(WindowText::HarvestCounts,
                                  {time, QString::number(pages_), QString::number(harvest_.State.ExtractedNum)})};
    if (pagesGivenUp_ > 0)
        parts.append(texts_.With(WindowText::HarvestGivenUpCount, {QString::number(pagesGivenUp_)}));
    parts.append(Waiting());
    parts.removeAll(QString());
    bar_.ShowActivity(parts.join(u"   "_s));
}

} // namespace Brindle
