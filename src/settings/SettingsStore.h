#pragma once

#include "core/Settings.h"

#include <QString>

namespace Brindle {

/// The settings file of the user, "settings.dat" in the settings folder.
class SettingsStore {
public:
    /// `documentsFolder`: the default folder of automatic exports.
    SettingsStore(QString fileName, QString documentsFolder);

    /// The defaults, overridden by what the file holds. A missing file gives the defaults silently; throws `Failure`
    /// when there is something of that name that cannot be read or is no settings file.
    Settings LoadSettings() const;
    /// The same; `damage` is what is amiss with the file, one line, and empty when nothing is.
    Settings LoadSettings(QString& damage) const;
    /// Replaces the file as a whole, so that it is never seen half written; only its owner may read it, where the
    /// system knows that. Missing folders are made. Throws `SaveError`, and the old file stays as it was.
    void SaveSettings(const Settings& settings) const;

private:
    QString fileName_;
    QString documentsFolder_;
};

} // namespace Brindle
