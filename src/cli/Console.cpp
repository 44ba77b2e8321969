#include "cli/Console.h"

#include "platform/StandardStreams.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

void Write(const QString& text) {
    WriteTo(StandardStream::Error, text);
}

// A message is one line whatever a server or a page put into it, and cannot steer the terminal.
QString OneLine(QString message) {
    for (QChar& c : message)
        if (c.unicode() < 0x20 || (c.unicode() >= 0x7F && c.unicode() < 0xA0))
            c = u' ';
    return message;
}

constexpr int redrawInterval = 100;

} // namespace

QString LiveLine(qint64 seconds, qint64 pages, qint64 leads, const QString& address) {
    constexpr int narrowestTerminal = 80;
    const QString line = u"%1:%2  %3 pages  %4 leads  %5"_s.arg(seconds / 60)
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'))
                             .arg(pages)
                             .arg(leads)
                             .arg(OneLine(address));
    return line.left(narrowestTerminal - 2);
}

Console::Console(bool quiet) : quiet_(quiet), terminal_(ErrorIsTerminal()) {
    sinceStart_.start();
}

Console::~Console() {
    ClearLiveLine();
}

void Console::Error(const QString& message) {
    ClearLiveLine();
    Write(u"brindle-cli: "_s + OneLine(message) + u'\n');
}

void Console::Note(const QString& message) {
    if (quiet_)
        return;
    ClearLiveLine();
    Write(OneLine(message) + u'\n');
}

void Console::Report(const QString& text) {
    if (quiet_)
        return;
    ClearLiveLine();
    Write(text);
}

void Console::ShowProgress(qint64 pages, qint64 leads, const QString& address) {
    if (quiet_ || !terminal_ || (sinceDrawn_.isValid() && sinceDrawn_.elapsed() < redrawInterval))
        return;
    sinceDrawn_.start();
    Write(u'\r' + LiveLine(sinceStart_.elapsed() / 1000, pages, leads, address) + u"\x1B[K"_s);
    liveLineShown_ = true;
}

void Console::ClearLiveLine() {
    if (!liveLineShown_)
        return;
    Write(u"\r\x1B[K"_s);
    liveLineShown_ = false;
}

} // namespace Brindle
