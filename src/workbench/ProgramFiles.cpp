#include "workbench/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

QString ProgramFiles::Settings(Platform& system, const QString& named) {
    return named.isEmpty() ? QDir(system.SettingsFolder()).filePath(u"settings.dat"_s) : named;
}

QString ProgramFiles::Options(Platform& system, const QString& namedSettings) {
    return QFileInfo(Settings(system, namedSettings)).dir().filePath(u"options.toml"_s);
}

QString ProgramFiles::Sites(const QString& named) {
    return named.isEmpty() ? QCoreApplication::applicationDirPath() + u"/sites.ini"_s : named;
}

} // namespace Brindle
