#pragma once

#include <QStringList>
#include <QStringView>

namespace Brindle {

/// Every e-mail address of a text in the order of its occurrence, as it stands: the non-overlapping matches of
/// [_a-zA-Z0-9\-\.]+@[_a-zA-Z0-9\-]+(\.[_a-zA-Z0-9\-]+)+ from the start to the end. Each "@" is looked at once, so the
/// time is linear whatever the text holds.
QStringList FindEmails(QStringView text);

} // namespace Brindle
