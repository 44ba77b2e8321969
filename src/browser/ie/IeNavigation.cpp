#include "browser/ie/IeNavigation.h"

#include "toolkit/PageAddress.h"

#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

bool IeNavigation::BringsPage(const QString& address) {
    const QString scheme = SchemeOf(address);
    return scheme == u"http" || scheme == u"https" || scheme == u"about" || scheme == u"file";
}

void IeNavigation::Begin(const QString& address) {
    if (!BringsPage(address))
        return;
    leaving_ = true;
    failed_.clear();
    lastError_.clear();
}

void IeNavigation::Fail(const QString& address, const QString& reason) {
    failed_ = address;
    lastError_ = address + u": "_s + reason;
}

void IeNavigation::Show() {
    leaving_ = false;
    shownInPlaceOf_ = std::exchange(failed_, {});
}

} // namespace Brindle
