#pragma once

#include <QStringList>
#include <QStringView>

namespace Brindle {

/// Every e-mail address of a text in the order of its occurrence, as it stands: the non-overlapping matches of
/// [_a-zA-Z0-9\-\.]+@[_a-zA-Z0-9\-]+(\.[_a-zA-Z0-9\-]+)+ from the start to the end. Each "@" is looked at once, so the
/// time is linear whatever the text holds.
QStringList FindEmails(QStringView text);

/// Whether a match can be somebody's address. Scripts and styles are full of others: files (logo@2x.png), versions
/// (bootstrap@5.3.0), keys of error reports. The parts have the form that mail needs (RFC 5321, section 4.1.2), and the
/// last one is a top-level domain by its shape and the suffix of no file.
bool MayBeEmail(QStringView address);

} // namespace Brindle
