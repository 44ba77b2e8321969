#pragma once

#include <QString>
#include <QStringList>

namespace Brindle {

/// The answer to a save dialog.
struct ChosenFile {
    QString Name; ///< empty: cancelled
    int Type = 0; ///< the chosen one of those that were offered
};

/// Port: questions and notices to the user.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    /// A warning with OK and Cancel; true for OK.
    virtual bool Confirm(const QString& text) = 0;
    virtual void Inform(const QString& text) = 0;
    virtual void Warn(const QString& text) = 0;
    /// A save dialog that opens in `folder` with an empty name. `types`: at least one, each as "Name (*.suffix)"; the
    /// first one is chosen at the start.
    virtual ChosenFile AskSaveFile(const QString& title, const QString& folder, const QStringList& types) = 0;
    /// A folder picker that opens in `folder`; empty when cancelled.
    virtual QString AskFolder(const QString& title, const QString& folder) = 0;
};

} // namespace Brindle
