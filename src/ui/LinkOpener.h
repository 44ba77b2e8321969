#pragma once

#include "core/Dialogs.h"
#include "core/Platform.h"
#include "i18n/WindowTexts.h"

namespace Brindle {

/// Opens the links of leads, of the publisher and of the program itself in the user's default browser, and says so when
/// that cannot be done.
class LinkOpener {
public:
    LinkOpener(Platform& system, Dialogs& notices, const WindowTexts& texts)
        : system_(system), notices_(notices), texts_(texts) {}

    /// http and https only; a bare host name becomes an address.
    void Open(const QString& text) const;

private:
    Platform& system_;
    Dialogs& notices_;
    const WindowTexts& texts_;
};

} // namespace Brindle
