#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>

namespace Brindle {

/// By what a business is recognised when it is found again, on another page, by another search or in another directory:
/// its details link; where it has none, name and phone; else name and full address. Empty when nothing can identify it:
/// a name alone is no key. Keys are compared as they are; what they are made of is folded first:
/// - names and addresses: compatibility forms and accents dissolved, case folded, letters and digits kept, nothing
/// else;
/// - phones: the first number of the field, its last eight digits, so that a country's prefix makes no difference;
/// fewer
///   than five digits are no phone;
/// - links: without scheme, "www.", fragment and closing slashes, case folded.
QString BusinessKey(const Lead& lead);

/// Every key that the lead has, strongest first, each with its kind in front: a business that two directories list
/// shares a weaker one. `linkTellsApart`: false where a directory's details links are shared by its listings; the link
/// counts together with the name then.
QStringList BusinessKeys(const Lead& lead, bool linkTellsApart = true);

/// A text folded as the names in keys are.
QString FoldedForKey(QStringView text);

} // namespace Brindle
