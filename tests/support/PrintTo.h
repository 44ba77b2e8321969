#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>

#include <ostream>

// How GoogleTest shows the project's values when an expectation fails; found by argument-dependent look-up.
QT_BEGIN_NAMESPACE
void PrintTo(const QString& text, std::ostream* out);
QT_BEGIN_NAMESPACE
void PrintTo(const QStringList& texts, std::ostream* out);
QT_END_NAMESPACE
namespace Brindle {
void PrintTo(const Lead& lead, std::ostream* out);
}
