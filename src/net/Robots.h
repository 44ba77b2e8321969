#pragma once

#include "net/HttpClient.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>
#include <vector>

namespace Brindle {

/// What a robots.txt asks of one robot (RFC 9309).
class RobotsRules {
public:
    /// No rule: everything is allowed.
    RobotsRules() = default;
    /// Reads the groups of `product`, or where there are none, those of every robot. Anything that is no rule is passed
    /// over. Linear in the length; what lies beyond 500 KiB is not read.
    RobotsRules(QByteArrayView text, QByteArrayView product);

    /// Whether a path with its query may be asked for: the longest matching rule says so, of two equally long ones the
    /// one that allows. The path as a request names it (`NormalAddress`).
    bool Allows(QByteArrayView pathAndQuery) const;

private:
    struct Rule {
        QByteArray Path; ///< percent-encoding made alike; "*" stands for anything, "$" at the end for the end
        bool Allow = false;
    };
    std::vector<Rule> rules_;
};

/// The robots.txt of every server that is asked, kept for a day.
class RobotsCache {
public:
    using Fetch = std::function<HttpResponse(const QString& url)>;
    using Clock = std::function<qint64()>; ///< milliseconds

    /// `fetch` gets a robots.txt, with redirects followed; see `PageFetcher::FetchRobots`.
    explicit RobotsCache(Fetch fetch, Clock clock = {});

    /// Why an address may not be asked for, one line; empty when it may. A server without the file allows everything,
    /// one that fails or cannot be reached allows nothing (RFC 9309, section 2.3.1).
    QString WhyNot(const QString& address);

private:
    struct Entry {
        RobotsRules Rules;
        QString Unreachable; ///< why the file could not be had
        qint64 FetchedAt = 0;
    };
    Entry EntryOf(const QString& server);

    Fetch fetch_;
    Clock clock_;
    QHash<QString, Entry> entries_;
};

} // namespace Brindle
