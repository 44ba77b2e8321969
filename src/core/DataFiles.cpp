#include "core/DataFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

QString DataFile(const QString& name) {
    return DataFileFor(QCoreApplication::applicationDirPath(), name);
}

QString DataFileFor(const QString& programFolder, const QString& name) {
    const QString beside = programFolder + u'/' + name;
    if (QFileInfo::exists(beside))
        return beside;
    for (const QString& up : {u"/../share/brindle/"_s, u"/../../share/brindle/"_s})
        if (const QString installed = QDir::cleanPath(programFolder + up + name); QFileInfo::exists(installed))
            return installed;
    return beside;
}

} // namespace Brindle
