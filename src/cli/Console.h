#pragma once

#include "core/Dialogs.h"
#include "core/StatusView.h"

#include <QElapsedTimer>
#include <QString>

namespace Brindle {

/// What the live line shows: one line that fits a terminal and cannot steer it, whatever an address holds.
QString LiveLine(qint64 seconds, qint64 pages, qint64 leads, const QString& address);

/// The standard error of the command line: errors, one line each, and the progress of a harvest: a live line on a
/// terminal, plain lines otherwise. Nothing but errors when quiet.
class Console {
public:
    explicit Console(bool quiet);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// "brindle-cli: " and the message, on a line of its own.
    void Error(const QString& message);
    /// A line of plain progress.
    void Note(const QString& message);
    /// A text of several lines; nothing when quiet.
    void Report(const QString& text);

    /// What the live line shows.
    void ShowProgress(qint64 pages, qint64 leads, const QString& address);

private:
    void ClearLiveLine();

    bool quiet_;
    bool terminal_;
    bool liveLineShown_ = false;
    QElapsedTimer sinceStart_;
    QElapsedTimer sinceDrawn_;
};

/// A status bar for programs without a window: the texts are those of a window and would only repeat the progress.
class SilentStatus : public StatusView {
public:
    void SetPanel(int, const QString&) override {}
    void SetProgressMaximum(qint64) override {}
    void SetProgressPosition(qint64) override {}
};

/// Notices become lines of standard error; nobody is there to confirm anything.
class ConsoleDialogs : public Dialogs {
public:
    explicit ConsoleDialogs(Console& console) : console_(console) {}
    bool Confirm(const QString&) override { return false; }
    void Inform(const QString& text) override { console_.Note(text); }
    void Warn(const QString& text) override { console_.Error(text); }
    ChosenFile AskSaveFile(const QString&, const QString&, const QStringList&) override { return {}; }
    QString AskFolder(const QString&, const QString&) override { return {}; }

private:
    Console& console_;
};

} // namespace Brindle
