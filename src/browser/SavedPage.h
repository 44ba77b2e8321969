#pragma once

#include "MarkupForm.h"

#include <QByteArray>
#include <QString>

namespace Brindle {

/// The body of a saved page, given as the bytes of its file, as the browser would deliver it. The character set is
/// found as for a page without headers. Throws `Failure` with one line, without the file's name, when the page is
/// beyond the bounds of what is parsed.
QString BodyOfSavedPage(const QByteArray& bytes, MarkupForm form);

} // namespace Brindle
