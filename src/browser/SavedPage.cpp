#include "SavedPage.h"

#include "HtmlDocument.h"
#include "TextDecoder.h"

namespace Brindle {

QString BodyOfSavedPage(const QByteArray& bytes, MarkupForm form) {
    return BodyOfPage(DecodePage(bytes), form);
}

} // namespace Brindle
