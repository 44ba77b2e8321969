#include "cli/SavedPage.h"

#include "core/Errors.h"
#include "net/TextDecoder.h"

#include <QDir>
#include <QFile>

namespace Brindle {

using namespace Qt::StringLiterals;

QString TextOfFile(const QString& fileName) {
    QFile file(fileName);
    const bool opened = fileName == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    QString text = opened ? DecodePage(file) : QString();
    if (!opened || file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    return text;
}

PageTree TreeOfFile(const QString& fileName) {
    const QString text = TextOfFile(fileName);
    try {
        return PageTree(text);
    } catch (const Failure& failure) {
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), failure.Message()));
    }
}

} // namespace Brindle
