#include "discovery/AnyPage.h"

namespace Brindle {

AnyPageReading ReadAnyPage(const PageTree& page, const QString& url) {
    AnyPageReading reading;
    const PageLines lines(page);
    reading.Next = FindNextPage(page, lines, url);
    return reading;
}

} // namespace Brindle
