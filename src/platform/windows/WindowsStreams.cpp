#include "platform/StandardStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace Brindle {

namespace {

HANDLE HandleOf(StandardStream stream) {
    return GetStdHandle(stream == StandardStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool IsOpen(HANDLE handle) {
    return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return IsOpen(handle) && GetConsoleMode(handle, &mode) != 0;
}

} // namespace

void WriteTo(StandardStream stream, const QString& text) {
    const HANDLE handle = HandleOf(stream);
    if (!IsOpen(handle))
        return;
    DWORD written = 0;
    if (IsConsole(handle)) {
        WriteConsoleW(handle, text.utf16(), static_cast<DWORD>(text.size()), &written, nullptr);
        return;
    }
    const QByteArray bytes = text.toLocal8Bit();
    WriteFile(handle, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

int StandardOutputDescriptor() {
    const int descriptor = _fileno(stdout);
    _setmode(descriptor, _O_BINARY);
    return descriptor;
}

bool ErrorIsTerminal() {
    const HANDLE handle = HandleOf(StandardStream::Error);
    DWORD mode = 0;
    return IsOpen(handle) && GetConsoleMode(handle, &mode) != 0 &&
           SetConsoleMode(handle, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

void TakeParentConsole() {
    if (IsOpen(HandleOf(StandardStream::Output)) || IsOpen(HandleOf(StandardStream::Error)))
        return; // redirected
    if (AttachConsole(ATTACH_PARENT_PROCESS) == 0)
        return;
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        SetStdHandle(stream, CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         nullptr, OPEN_EXISTING, 0, nullptr));
}

bool HasStandardError() {
    return IsOpen(HandleOf(StandardStream::Error));
}

} // namespace Brindle
