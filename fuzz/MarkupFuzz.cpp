#include "Input.h"
#include "core/Errors.h"
#include "page/HtmlDocument.h"
#include "page/MarkupFormText.h"

// Any text as a page: parsing ends, the serialisation is one that parsing leaves alone, and the legacy form of a legacy
// form is itself.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    const QString text = Fuzz::TextOf(data, size);
    const QString legacy = ToLegacyForm(text);
    Fuzz::Require(ToLegacyForm(legacy) == legacy, "the legacy form passes unchanged, as text");
    try {
        const HtmlDocument document(text);
        const QString body = document.BodyOuterHtml(MarkupForm::Standard);
        PageBounds pieces;
        pieces.PieceSize = 1 + static_cast<int>(size % 60);
        Fuzz::Require(HtmlDocument(text, pieces).DocumentHtml() == document.DocumentHtml(),
                      "however it is cut in pieces");
        const QString old = document.BodyOuterHtml(MarkupForm::Legacy);
        Fuzz::Require(ToLegacyForm(body) == old, "both forms are of the same page");
        Fuzz::Require(ToLegacyForm(old) == old, "the legacy form passes unchanged");
    } catch (const Failure&) {
        // Beyond the bounds of what is parsed.
    }
    return 0;
}
