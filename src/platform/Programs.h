#pragma once

#include <QString>
#include <QStringList>

namespace Brindle {

/// The file of a program that came with this one, by its plain name: beside it, or in `libexec/brindle` of an
/// installation.
QString ProgramBeside(const QString& name);

/// Goes on as another program, with the same standard streams and the same Ctrl-C. Returns its exit status where the
/// system cannot replace a running program. Throws `Failure` when it cannot be started.
int BecomeProgram(const QString& program, const QStringList& arguments);

/// Why the system cannot hold the browser engine in its sandbox; empty where it can.
QString WhyNoSandbox();

/// Whether a window can be shown. A platform that is named in the environment or by the arguments may need no display.
bool HasDisplay();

} // namespace Brindle
