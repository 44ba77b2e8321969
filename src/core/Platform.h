#pragma once

#include <QString>

namespace Brindle {

/// Port: what differs per operating system.
class Platform {
public:
    virtual ~Platform() = default;

    /// The user's documents folder; empty when the system names none. Starting folder of exports.
    virtual QString GetDocumentsFolder() = 0;
    /// The folder of `settings.dat` and of the browser's profile; it need not exist yet. Where "\" parts folders, none
    /// is doubled.
    virtual QString SettingsFolder() = 0;
    /// Opens an address in the user's default browser; false when none is registered, or where it is no web address and
    /// the system would open something else with it.
    virtual bool OpenInDefaultBrowser(const QString& url) = 0;
    /// Empties the system's own URL cache, where it has one. Failures are ignored.
    virtual void ClearUrlCache() = 0;
    /// Version text of the system's browser engine, "0" when unknown.
    virtual QString BrowserEngineVersion() = 0;
    /// Writes a 32-bit value into the current user's registry, making the key; where there is no registry, or the key
    /// cannot be opened, nothing happens.
    virtual void WriteUserRegistry(const QString& key, const QString& name, quint32 value) = 0;
};

} // namespace Brindle
