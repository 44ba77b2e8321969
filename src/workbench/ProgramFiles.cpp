#include "workbench/ProgramFiles.h"

#include "core/DataFiles.h"

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
    return named.isEmpty() ? DataFile(u"sites.ini"_s) : named;
}

QString ProgramFiles::OwnSites(Platform& system) {
    return QDir(system.SettingsFolder()).filePath(u"sites.ini"_s);
}

SitesFile ProgramFiles::LoadSites(Platform& system, const QString& named, std::span<const SiteAdapter> directories) {
    return named.isEmpty() ? SitesFile::Load(Sites(), OwnSites(system), directories)
                           : SitesFile::Load(named, directories);
}

QString ProgramFiles::Recipes() {
    return DataFile(u"directories"_s);
}

} // namespace Brindle
