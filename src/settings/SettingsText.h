#pragma once

#include "core/Settings.h"

#include <QByteArray>
#include <QString>

namespace Brindle {

/// The bytes of a settings file: one tagged element per option in the file's order, lines ended by CR LF, in the
/// system's 8-bit code page. Values are written raw.
QByteArray SettingsText(const Settings& settings);

/// Reads the text of a settings file. What it does not give has its default; a malformed boolean among the first twelve
/// options keeps its default too. `documentsFolder` is the default of the export folder.
Settings ParseSettings(const QString& text, const QString& documentsFolder);

/// What is amiss with the text of a settings file, one line; empty when nothing is. The rest of it is read all the
/// same.
QString SettingsDamage(const QString& text);

/// The options' defaults.
Settings DefaultSettings(const QString& documentsFolder);

/// Overrides one option by its key in the settings file; the value is read as the file's would be. The lines of
/// `eRandomProxies` are separated by line ends. False, with a reason, for an unknown key or a malformed boolean.
bool SetOption(Settings& settings, const QString& key, const QString& value, const QString& documentsFolder,
               QString& reason);

} // namespace Brindle
