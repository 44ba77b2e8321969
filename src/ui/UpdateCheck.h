#pragma once

#include "core/Dialogs.h"
#include "core/MessageLoop.h"
#include "core/MessageTexts.h"
#include "core/Platform.h"
#include "core/Services.h"
#include "core/StatusView.h"

#include <optional>

namespace Brindle {

/// A release that the publisher announces.
struct Release {
    QString Version; ///< numbers joined by dots
    QString Address; ///< where it can be had
};

/// Reads the publisher's announcement: the first line that is not empty is the version, the next one the address.
/// Nothing when the text is no announcement.
std::optional<Release> ParseRelease(const QString& text);

/// Whether version `offered` is newer than `own`, number by number; a missing number counts as 0.
bool IsNewerVersion(const QString& offered, const QString& own);

/// Asks the publisher's server whether there is a newer release of the program.
class UpdateCheck {
public:
    struct Parts {
        PageSource& Pages;
        const MessageTexts& Texts;
        Dialogs& Notices;
        StatusView& Status;
        Platform& System;
        MessageLoop& Loop;
    };
    /// `address`: of the announcement; `ownVersion`: of the running program.
    UpdateCheck(const Parts& parts, QString address, QString ownVersion);

    /// Fetches the announcement and offers a newer release, which is opened in the default browser when the user wants
    /// it. That there is none, or that the server did not answer, is only said when the user has asked. A call while
    /// another one waits does nothing. Unasked, it gives up after some seconds.
    void Run(bool userHasAsked);

private:
    Parts parts_;
    QString address_;
    QString ownVersion_;
    bool running_ = false;
};

} // namespace Brindle
