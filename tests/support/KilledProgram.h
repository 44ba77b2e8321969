#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace Brindle::Test {

/// Starts a program that works without end, lets it go on until it has written something to its standard output, kills
/// it `microseconds` later and returns all that it has written; null when it did not start or ended by itself.
QByteArray OutputUntilKilled(const QString& program, const QStringList& arguments, unsigned long microseconds);

} // namespace Brindle::Test
