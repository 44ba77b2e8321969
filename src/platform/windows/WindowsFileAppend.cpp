#include "platform/FileAppend.h"
#include "platform/windows/WideText.h"

#include <QDir>

#include <windows.h>

namespace Brindle {

namespace {

using Kind = AppendResult::Kind;

AppendResult Failure(DWORD error) {
    wchar_t text[512];
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageW(flags, nullptr, error, 0, text, DWORD{sizeof text / sizeof *text}, nullptr);
    const QString reason = QString::fromWCharArray(text, static_cast<qsizetype>(length)).simplified();
    return {Kind::Failed, reason.isEmpty() ? QStringLiteral("error %1").arg(error) : reason};
}

HANDLE Open(const QString& fileName, DWORD access, DWORD disposition, DWORD sharing) {
    const QString name = QDir::toNativeSeparators(fileName);
    for (int attempt = 0;; ++attempt) {
        // Without the right to write elsewhere, every write goes to the end.
        const HANDLE file = CreateFileW(Wide(name), FILE_APPEND_DATA | access, sharing, nullptr, disposition,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        // Whoever has just made the file holds it until its first bytes are written.
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION || attempt == 5)
            return file;
        Sleep(10);
    }
}

// Keeps other appends out until the file is closed: this system appends in one step, but servers of shared folders and
// wine look for the end first and write there then. The byte that is held lies far beyond all files. Where a file
// system knows no such locks, nothing is held.
void KeepOthersOut(HANDLE file) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x4000'0000;
    LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place);
}

// 0, or the system's error.
DWORD Fill(HANDLE file, const QByteArray& bytes) {
    DWORD written = 0;
    if (WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0)
        return GetLastError();
    return written == static_cast<DWORD>(bytes.size()) ? 0 : ERROR_DISK_FULL;
}

} // namespace

AppendResult AppendToFile(const QString& fileName, const QByteArray& bytes) {
    const HANDLE file =
        Open(fileName, FILE_READ_DATA, OPEN_EXISTING, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND
                   ? AppendResult{Kind::Missing, {}}
                   : Failure(GetLastError());
    KeepOthersOut(file);
    const DWORD error = Fill(file, bytes); // a write that does not fit writes nothing here
    CloseHandle(file);
    return error == 0 ? AppendResult{} : Failure(error);
}

AppendResult MakeFile(const QString& fileName, const QByteArray& bytes) {
    const HANDLE file = Open(fileName, DELETE, CREATE_NEW, FILE_SHARE_READ);
    if (file == INVALID_HANDLE_VALUE)
        return {GetLastError() == ERROR_FILE_EXISTS ? Kind::Exists : Kind::Failed, Failure(GetLastError()).Reason};
    const DWORD error = Fill(file, bytes);
    FILE_DISPOSITION_INFO gone{TRUE};
    if (error != 0)
        SetFileInformationByHandle(file, FileDispositionInfo, &gone, sizeof gone);
    CloseHandle(file);
    return error == 0 ? AppendResult{} : Failure(error);
}

} // namespace Brindle
