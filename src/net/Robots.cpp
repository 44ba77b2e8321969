#include "net/Robots.h"

#include "net/UserAgent.h"
#include "toolkit/Ascii.h"
#include "toolkit/PageAddress.h"

#include <QDateTime>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype textLimit = 500 * 1024;
constexpr qint64 keptForMs = 24LL * 3600 * 1000;
constexpr qint64 unreachableForMs = 60LL * 1000; // a server that was away for a moment is asked again

// The next line, cut off from the text; line ends of every kind.
QByteArrayView TakeLine(QByteArrayView& text) {
    const auto end = std::find_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
    const QByteArrayView line = text.first(end - text.begin());
    text = text.sliced(line.size() + (end == text.end() ? 0 : 1));
    return line;
}

bool EqualFolded(QByteArrayView a, QByteArrayView b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Ascii::Lower(x) == Ascii::Lower(y); });
}

// The token at the beginning of a User-agent line's value; a version behind it is of no matter.
QByteArrayView ProductOf(QByteArrayView value) {
    const auto end =
        std::find_if_not(value.begin(), value.end(), [](char c) { return Ascii::IsLetter(c) || c == '_' || c == '-'; });
    return value.first(end - value.begin());
}

bool IsUnreserved(char c) {
    return Ascii::IsLetterOrDigit(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

// One form of percent-encoding for paths and rules: what needs none has none, what is beyond ASCII has it (RFC 9309,
// section 2.2.2).
QByteArray EncodedAlike(QByteArrayView path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    QByteArray out;
    out.reserve(path.size());
    for (qsizetype i = 0; i < path.size(); ++i) {
        auto byte = static_cast<unsigned char>(path[i]);
        bool encode = byte >= 0x7F || byte <= ' ';
        if (path[i] == '%' && i + 2 < path.size() && Ascii::HexValue(path[i + 1]) >= 0 &&
            Ascii::HexValue(path[i + 2]) >= 0) {
            byte = static_cast<unsigned char>(Ascii::HexValue(path[i + 1]) * 16 + Ascii::HexValue(path[i + 2]));
            encode = !IsUnreserved(static_cast<char>(byte));
            i += 2;
        }
        if (encode)
            out.append('%').append(digits[byte >> 4]).append(digits[byte & 15]);
        else
            out.append(static_cast<char>(byte));
    }
    return out;
}

// Whether a rule's path matches the beginning of a path. Each piece between two "*" is taken where it first fits, so
// nothing is tried twice.
bool Matches(QByteArrayView rule, QByteArrayView path) {
    const bool toTheEnd = rule.endsWith('$');
    if (toTheEnd)
        rule.chop(1);
    qsizetype at = 0;
    bool first = true;
    for (;;) {
        const qsizetype star = rule.indexOf('*');
        const QByteArrayView piece = star < 0 ? rule : rule.first(star);
        const bool last = star < 0;
        if (first) {
            if (!path.startsWith(piece))
                return false;
            at = piece.size();
        } else if (last && toTheEnd) {
            return path.size() - at >= piece.size() && path.endsWith(piece);
        } else {
            const qsizetype found = path.indexOf(piece, at);
            if (found < 0)
                return false;
            at = found + piece.size();
        }
        if (last)
            return !toTheEnd || at == path.size();
        rule = rule.sliced(star + 1);
        first = false;
    }
}

QByteArray PathOf(const QString& address) {
    const QByteArray normal = WithoutFragment(NormalAddress(address)).toUtf8();
    const qsizetype path = normal.indexOf('/', normal.indexOf("://") + 3);
    return path < 0 ? QByteArray("/") : normal.sliced(path);
}

} // namespace

RobotsRules::RobotsRules(QByteArrayView text, QByteArrayView product) {
    if (text.size() >= textLimit) {
        // Half a line would be another rule.
        text = text.first(textLimit);
        text = text.first(std::max(text.lastIndexOf('\n'), text.lastIndexOf('\r')) + 1);
    }
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    std::vector<Rule> forAll;
    bool isNamed = false;  // the current group names the robot
    bool isForAll = false; // ... or every robot
    bool anyNamed = false;
    bool inRules = true; // the next User-agent line begins another group
    while (!text.isEmpty()) {
        QByteArrayView line = TakeLine(text);
        if (const qsizetype comment = line.indexOf('#'); comment >= 0)
            line = line.first(comment);
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArrayView key = line.first(colon).trimmed();
        const QByteArrayView value = line.sliced(colon + 1).trimmed();
        const bool allow = EqualFolded(key, "allow");
        if (EqualFolded(key, "user-agent")) {
            if (inRules)
                isNamed = isForAll = false;
            inRules = false;
            isForAll = isForAll || value == "*";
            isNamed = isNamed || EqualFolded(ProductOf(value), product);
            anyNamed = anyNamed || isNamed;
        } else if (allow || EqualFolded(key, "disallow")) {
            inRules = true;
            if (value.isEmpty() || (!isNamed && !isForAll))
                continue;
            const Rule rule{EncodedAlike(value), allow};
            if (isNamed)
                rules_.push_back(rule);
            if (isForAll)
                forAll.push_back(rule);
        }
    }
    if (!anyNamed)
        rules_ = std::move(forAll);
}

bool RobotsRules::Allows(QByteArrayView pathAndQuery) const {
    const QByteArray path = EncodedAlike(pathAndQuery);
    if (path == "/robots.txt")
        return true;
    qsizetype longest = -1;
    bool allowed = true;
    for (const Rule& rule : rules_) {
        const qsizetype length = rule.Path.size();
        if (length < longest || (length == longest && allowed) || !Matches(rule.Path, path))
            continue;
        allowed = length == longest ? allowed || rule.Allow : rule.Allow;
        longest = length;
    }
    return allowed;
}

RobotsCache::RobotsCache(Fetch fetch, Clock clock)
    : fetch_(std::move(fetch)), clock_(clock ? std::move(clock) : Clock(&QDateTime::currentMSecsSinceEpoch)) {}

QString RobotsCache::WhyNot(const QString& address) {
    const QString server = ServerOf(address);
    const Entry entry = EntryOf(server);
    if (!entry.Unreachable.isEmpty())
        return u"%1/robots.txt cannot be had, so nothing is asked there: %2"_s.arg(server, entry.Unreachable);
    return entry.Rules.Allows(PathOf(address))
               ? QString()
               : u"%1/robots.txt does not allow %2"_s.arg(server, ShownAddress(address));
}

RobotsCache::Entry RobotsCache::EntryOf(const QString& server) {
    const qint64 now = clock_();
    if (const auto found = entries_.constFind(server); found != entries_.constEnd()) {
        const qint64 kept = found->Unreachable.isEmpty() ? keptForMs : unreachableForMs;
        if (now - found->FetchedAt < kept)
            return *found;
    }
    const HttpResponse response = fetch_(server + u"/robots.txt");
    Entry fresh;
    fresh.FetchedAt = now;
    if (response.Succeeded())
        fresh.Rules = RobotsRules(response.Body, QString::fromUtf16(productToken).toUtf8());
    else if (!response.Complete())
        fresh.Unreachable = response.Error;
    else if (response.Status >= 500)
        fresh.Unreachable = u"HTTP status %1"_s.arg(response.Status);
    // What is left, 4xx above all, is a server without the file.
    entries_.insert(server, fresh);
    return fresh;
}

} // namespace Brindle
