#pragma once

#include "core/Lead.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle::Test {

/// What a run of the program came to.
struct Outcome {
    int Status = -1; ///< exit status; -1 when it crashed, did not start or had to be killed
    QByteArray Out;
    QByteArray Err;
    qint64 Milliseconds = 0;

    QString ErrText() const { return QString::fromUtf8(Err); }
};

/// Path of the program under test.
QString CliProgram();

/// Runs the program to its end, at most `limitMs`. The user's own settings are out of its reach.
Outcome RunCli(const QStringList& arguments, int limitMs = 100'000);

/// The environment in which `RunCli` runs it.
QProcessEnvironment CliEnvironment();

/// Leads of a jsonl output. Throws std::runtime_error when a line is not one object of the fourteen captions, in the
/// order of the columns.
std::vector<Lead> LeadsOfJsonl(const QByteArray& text);

/// The bytes of an exported file of all columns.
QByteArray CsvOf(const std::vector<Lead>& leads, char delimiter = ',');

/// Whole content of a file. Throws std::runtime_error when it cannot be read.
QByteArray FileContent(const QString& fileName);

} // namespace Brindle::Test
