#include "ui/LinkOpener.h"

#include "platform/OpenableAddress.h"

namespace Brindle {

void LinkOpener::Open(const QString& text) const {
    const QString address = OpenableAddress(text);
    if (address.isEmpty() || !system_.OpenInDefaultBrowser(address))
        notices_.Warn(texts_.With(WindowText::CannotOpen, {text}));
}

} // namespace Brindle
