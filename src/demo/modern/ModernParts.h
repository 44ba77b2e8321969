#pragma once

#include <QString>
#include <QStringView>

namespace Brindle::Demo {

// Markup that several looks have in common.

/// "tel:" and the number's digits.
QString TelLink(const QString& phone);

/// Links to all pages, the current one without, and one with `nextWord` where there is a next page; `attributes` are
/// that link's own.
QString Pager(int number, int last, QStringView nextWord, QStringView attributes = {});

/// A text as the value of a JSON string in a script, without its quotes.
QString JsonValue(const QString& text);

} // namespace Brindle::Demo
