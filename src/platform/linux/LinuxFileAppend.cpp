#include "platform/FileAppend.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace Brindle {

namespace {

using Kind = AppendResult::Kind;

AppendResult Failure(int error) {
    return {Kind::Failed, QString::fromLocal8Bit(std::strerror(error))};
}

// 0, or the system's error.
int WriteAll(int file, const QByteArray& bytes) {
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t now = write(file, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (now < 0 && errno != EINTR) {
            const int error = errno;
            if (written > 0) { // half a line would spoil the next one
                const off_t end = lseek(file, 0, SEEK_CUR);
                if (end >= written && ftruncate(file, end - written) != 0)
                    return errno;
            }
            return error;
        }
        written += now > 0 ? now : 0;
    }
    return 0;
}

// Writes and closes a file that was opened; 0, or the system's error.
int Fill(int file, const QByteArray& bytes) {
    const int error = WriteAll(file, bytes);
    const int atClosing = close(file) == 0 ? 0 : errno;
    return error != 0 ? error : atClosing;
}

} // namespace

AppendResult AppendToFile(const QString& fileName, const QByteArray& bytes) {
    const int file = open(QFile::encodeName(fileName).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0)
        return errno == ENOENT ? AppendResult{Kind::Missing, {}} : Failure(errno);
    const int error = Fill(file, bytes);
    return error == 0 ? AppendResult{} : Failure(error);
}

// The file gets its name when it is filled, and nothing is left of it when the program is killed before.
AppendResult MakeFile(const QString& fileName, const QByteArray& bytes) {
    constexpr int append = O_WRONLY | O_APPEND | O_CLOEXEC;
    const QByteArray name = QFile::encodeName(fileName);
    const QByteArray folder = QFile::encodeName(QFileInfo(fileName).path());
    int error = 0;
    if (const int file = open(folder.constData(), append | O_TMPFILE, 0666); file >= 0) {
        const QByteArray nameless = "/proc/self/fd/" + QByteArray::number(file);
        error = WriteAll(file, bytes);
        if (error == 0 && linkat(AT_FDCWD, nameless.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0)
            error = errno == EEXIST ? EEXIST : ENOTSUP;
        close(file);
    } else {
        error = errno;
    }
    if (error == EOPNOTSUPP || error == EISDIR || error == ENOENT) {
        // A file system that knows no nameless files, such as that of a memory stick.
        const int file = open(name.constData(), append | O_CREAT | O_EXCL, 0666);
        error = file < 0 ? errno : Fill(file, bytes);
        if (file >= 0 && error != 0)
            unlink(name.constData());
    }
    if (error == EEXIST)
        return {Kind::Exists, Failure(EEXIST).Reason};
    return error == 0 ? AppendResult{} : Failure(error);
}

} // namespace Brindle
