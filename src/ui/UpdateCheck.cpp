#include "ui/UpdateCheck.h"

#include "toolkit/Text.h"

#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QVersionNumber>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestLine = 2000;
constexpr qint32 unaskedPatience = 5000;

} // namespace

std::optional<Release> ParseRelease(const QString& text) {
    QStringList lines;
    for (const QStringView line : QStringView(text).tokenize(u'\n')) {
        const QStringView trimmed = TrimmedView(line);
        if (!trimmed.isEmpty())
            lines.append(trimmed.left(longestLine).toString());
        if (lines.size() == 2)
            break;
    }
    static const QRegularExpression version(uR"(\A\d{1,6}(\.\d{1,6}){0,3}\z)"_s);
    const bool complete = lines.size() == 2 && version.match(lines[0]).hasMatch() &&
                          (StartsWithFolded(lines[1], u"http://") || StartsWithFolded(lines[1], u"https://"));
    if (!complete)
        return std::nullopt;
    return Release{lines[0], lines[1]};
}

bool IsNewerVersion(const QString& offered, const QString& own) {
    return QVersionNumber::fromString(offered).normalized() > QVersionNumber::fromString(own).normalized();
}

UpdateCheck::UpdateCheck(const Parts& parts, QString address, QString ownVersion)
    : parts_(parts), address_(std::move(address)), ownVersion_(std::move(ownVersion)) {}

void UpdateCheck::Run(bool userHasAsked) {
    if (running_ || address_.isEmpty())
        return;
    const QScopedValueRollback running(running_, true);
    parts_.Status.SetPanel(StatusPanel::Message, parts_.Texts.Text(Message::UpdateChecking));
    QString page;
    std::optional<Release> release;
    // Disconnecting makes the wait return.
    const auto limit = parts_.Loop.CreateTimer(unaskedPatience, [this] { parts_.Pages.Disconnect(); });
    limit->SetEnabled(!userHasAsked);
    if (parts_.Pages.DirectDownloadURL(address_, page, false))
        release = ParseRelease(page);
    parts_.Status.SetPanel(StatusPanel::Message, {});
    if (release && IsNewerVersion(release->Version, ownVersion_)) {
        QString question = parts_.Texts.Text(Message::UpdateAvailable);
        ReplaceAll(question, u"[VAR1]", release->Version);
        if (parts_.Notices.Confirm(question))
            parts_.System.OpenInDefaultBrowser(release->Address);
        return;
    }
    if (userHasAsked)
        parts_.Notices.Inform(parts_.Texts.Text(release ? Message::UpdateNone : Message::UpdateFailed));
}

} // namespace Brindle
