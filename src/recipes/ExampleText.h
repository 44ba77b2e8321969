#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringView>

namespace Brindle {

bool IsPhoneColumn(Field column);

/// The digits of a text alone.
QString DigitsOf(QStringView text);

/// A text in the form in which an example is compared with what a page shows: letters and digits alone, their case
/// levelled.
QString FoldedExample(QStringView text);
/// The part of a text that has this folded form, as it is written there; empty when there is none.
QString PartOfFold(const QString& text, const QString& folded);

/// An address of the web without what differs between ways of writing it: scheme, "www.", a slash at its end, what only
/// counts where a visitor came from.
QString FoldedAddress(QStringView address);

/// Whether two numbers are one: the same digits, or one of them has the country's code before it.
bool IsSameNumber(QStringView one, QStringView other);

/// Whether a value that was read is the example.
bool IsExample(Field column, QStringView value, QStringView example);

} // namespace Brindle
