#include "core/OutputFile.h"

#include <QFileInfo>
#include <QSaveFile>

namespace Brindle {

OutputFile::OutputFile(const QString& fileName) {
    const QFileInfo there(fileName);
    beside_ = !there.exists() || there.isFile() || there.isDir();
    if (beside_)
        file_ = std::make_unique<QSaveFile>(fileName);
    else
        file_ = std::make_unique<QFile>(fileName);
}

bool OutputFile::Open() {
    return file_->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool OutputFile::Write(const QByteArray& bytes) {
    return file_->write(bytes) == bytes.size();
}

bool OutputFile::Commit() {
    if (beside_)
        return static_cast<QSaveFile*>(file_.get())->commit();
    file_->close();
    return file_->error() == QFileDevice::NoError;
}

} // namespace Brindle
