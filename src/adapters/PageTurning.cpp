#include "adapters/PageTurning.h"

#include "core/Delay.h"

namespace Brindle {

namespace {

constexpr qint32 waitAfterClick = 3000;

} // namespace

bool ClickFirstLink(PageTurn& turn, const std::function<bool(const QString& text)>& wanted) {
    Harvest& harvest = turn.Job;
    const int count = turn.Browser.LinkCount();
    for (int index = 0; index < count; ++index) {
        harvest.PumpMessages();
        if (harvest.ShouldStop())
            return false;
        if (!wanted(turn.Browser.LinkInnerText(index)))
            continue;
        turn.Browser.ClickLink(index);
        Delay(harvest.Loop, waitAfterClick);
        return true;
    }
    return false;
}

} // namespace Brindle
