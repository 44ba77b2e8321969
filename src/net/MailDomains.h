#pragma once

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace Brindle {

/// Whether a mail domain takes mail, as far as name servers tell.
enum class MailDomain { TakesMail, TakesNone, Unknown };

/// Asks the name server whether domains take mail: by their MX records (RFC 5321, section 5.1; a null MX, RFC 7505,
/// takes none), else by their address. What was found out is remembered; no answer in time is `Unknown` and remembered
/// too.
class MailDomains {
public:
    /// `nameServers`: "address:port", several separated by commas; empty: those of the system. `idle` is called while
    /// an answer is waited for, some fifty times a second; it may be empty.
    explicit MailDomains(const QString& nameServers = {}, std::chrono::milliseconds timeLimit = std::chrono::seconds(5),
                         std::function<void()> idle = {});
    ~MailDomains();

    /// `domain`: lower case, ASCII. Waits for the time limit at most.
    MailDomain Check(const QString& domain);

    /// How many domains the name server was asked about.
    qint64 Asked() const { return asked_; }

private:
    class Resolver;

    std::unique_ptr<Resolver> resolver_;
    QHash<QString, MailDomain> known_;
    qint64 asked_ = 0;
};

} // namespace Brindle
