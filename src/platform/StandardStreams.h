#pragma once

#include <QString>

namespace Brindle {

/// The program's standard output and standard error as texts, in the 8-bit code page where they are files or pipes and
/// in Unicode where they are a console of Windows.
enum class StandardStream { Output, Error };

void WriteTo(StandardStream stream, const QString& text);

/// The descriptor of standard output, which takes bytes as they are; there is no other way to write data there.
int StandardOutputDescriptor();

/// Whether standard error is a terminal that can clear and overwrite its current line. On Windows this also tells the
/// console to take the escape sequences for it.
bool ErrorIsTerminal();

/// For programs with a window, which Windows starts without a console: takes the one of the shell that started this
/// program, for output that goes nowhere else. Does nothing on other systems.
void TakeParentConsole();

/// Whether what is written to standard error can be seen or read by somebody.
bool HasStandardError();

} // namespace Brindle
