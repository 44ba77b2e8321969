#pragma once

#include <QString>

namespace Brindle {

/// Port: questions and notices to the user.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    /// A warning with OK and Cancel; true for OK.
    virtual bool Confirm(const QString& text) = 0;
    virtual void Inform(const QString& text) = 0;
    virtual void Warn(const QString& text) = 0;
    /// A save dialog for CSV files that opens in `folder` with an empty name; empty when cancelled.
    virtual QString AskSaveFile(const QString& title, const QString& folder) = 0;
    /// A folder picker that opens in `folder`; empty when cancelled.
    virtual QString AskFolder(const QString& title, const QString& folder) = 0;
};

} // namespace Brindle
