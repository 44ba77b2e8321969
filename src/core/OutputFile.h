#pragma once

#include <QFileDevice>
#include <QString>

#include <memory>

namespace Brindle {

/// A file that is written whole or not at all: beside its place and renamed at the end; nobody finds half of it. What
/// is there already and no regular file (a device, a pipe) is written where it is: a renamed file would take its place.
class OutputFile {
public:
    explicit OutputFile(const QString& fileName);

    /// Unbuffered: callers write in large pieces. False: `ErrorString` says why.
    bool Open();
    bool Write(const QByteArray& bytes);
    /// Puts the file in its place. Without it, a regular file stays as it was.
    bool Commit();
    QString ErrorString() const { return file_->errorString(); }

private:
    std::unique_ptr<QFileDevice> file_;
    bool beside_ = true;
};

} // namespace Brindle
