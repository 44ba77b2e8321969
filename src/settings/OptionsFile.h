#pragma once

#include "core/MoreOptions.h"

#include <QString>
#include <QStringList>

namespace Brindle {

/// `options.toml` in the settings folder: the options beyond the settings file, as TOML 1.0.
class OptionsFile {
public:
    explicit OptionsFile(QString fileName);

    /// What the file holds, defaults for the rest. A missing file gives the defaults. `problems` gets a line that names
    /// the file, and the key or place in it, for everything that could not be taken; nothing of it stops the start.
    MoreOptions Load(QStringList& problems) const;
    /// Replaces the file as a whole; keys that this version does not know stay in it. A file that is no TOML is kept
    /// beside it as `options.toml.damaged`. Missing folders are made. Throws `SaveError`; the old file stays then.
    void Save(const MoreOptions& options) const;

    const QString& FileName() const { return fileName_; }

private:
    QString fileName_;
};

/// The keys of all options, as in the file: "store.keep".
QStringList MoreOptionKeys();

/// Whether a key is of this kind: it has a dot in it, which no key of the settings file has.
bool IsMoreOptionKey(const QString& key);

/// Overrides one option by its key; yes and no are true, false, -1, 1 or 0. False, with a reason, for an unknown key or
/// a value that is none.
bool SetMoreOption(MoreOptions& options, const QString& key, const QString& value, QString& reason);

} // namespace Brindle
