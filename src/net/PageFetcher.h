#pragma once

#include "core/Harvest.h"
#include "core/Services.h"
#include "net/HttpClient.h"

#include <QRandomGenerator>

#include <functional>
#include <optional>

namespace Brindle {

/// The program's one HTTP client for pages: shared cookies, the proxy mode and the random delay of the settings,
/// progress in the status bar. Every failure is a plain `false`. The way of the current directory says how: the classic
/// one leaves https to a client of its own, the modern one takes it along, and goes only where the current page may
/// lead.
class PageFetcher : public PageSource {
public:
    /// A random whole number from 0 to `bound` - 1.
    using Random = std::function<qint32(qint32 bound)>;

    PageFetcher(HarvestState& state, const Settings& settings, const MessageTexts& texts, MessageLoop& loop,
                StatusView& status);

    bool DownloadURL(const QString& url, QString& page, bool utf8) override;
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override;
    void Disconnect() override;

    /// The whole response to a request for a robots.txt, cut where it is longer than such a file has to be read, in the
    /// modern way and under the program's own name.
    HttpResponse FetchRobots(const QString& url);

    /// Why the last request failed: address and reason in one line, without credentials; empty after a success.
    const QString& LastError() const { return lastError_; }

    /// The time for one address while the list of proxies rotates; without it the round goes on until an attempt
    /// succeeds or the user stops. At least one attempt is made, and it may take a second.
    void SetPatience(std::optional<qint64> ms) { patience_ = ms; }
    /// Told while the list rotates, in one line each: what an attempt failed with, unless the one before it failed with
    /// the same, and that an address was given up.
    std::function<void(const QString& line)> AttemptFailed;
    std::function<void(const QString& line)> GaveUp;

    /// Replaces the source of the random delay.
    void SetRandom(Random random) { random_ = std::move(random); }
    /// Certificate authorities instead of the system's.
    void SetCaFile(const QString& caFile) { caFile_ = caFile; }

protected:
    /// Sends a request; every one goes through here.
    virtual HttpResponse Send(HttpClient& client, const HttpRequest& request, const HttpEvents& events);

private:
    void IdHTTP1WorkBegin(qint64 expectedSize);
    void IdHTTP1Work(qint64 count);
    void IdHTTP1WorkEnd();
    void IdHTTP1Redirect(const QString& newLocation);

    // The attempts for one address, through one proxy of the list after the other.
    struct Rotation {
        quint32 Begun = 0;    // tick
        qsizetype Place = -1; // in the list
        bool Found = false;   // an entry of the list is in use
        bool Ended = false;   // no further attempt
        QString LastFailure;  // of an attempt that had its time; empty before the first one

        // What is shown with the next attempt.
        QString Remark() const { return LastFailure.isEmpty() ? QString() : u" (" + LastFailure + u')'; }
    };
    void EndFailedAttempt(const QString& url, const QString& reason, Rotation& rotation);
    std::optional<qint64> TimeLeft(const Rotation& rotation) const;
    qint64 TimeOfAttempt(const Rotation& rotation) const;

    bool ChooseProxy(Rotation& rotation);
    void ApplySingleProxy();
    bool ApplyNextProxy(Rotation& rotation);
    void WaitRandomDelay(const Rotation& rotation);
    void ShowRequest(const Rotation& rotation);
    HttpRequest NewRequest(const QString& url) const;
    HttpResponse Get(const QString& url, qint64 readTimeoutMs, qint64 totalTimeoutMs);
    HttpResponse GetByTls(const QString& url);
    QString TextOf(const HttpResponse& response, bool utf8) const;
    void Show(const QString& text);
    void KeepReason(const QString& url, const QString& reason);

    HarvestState& state_;
    const Settings& settings_;
    const MessageTexts& texts_;
    MessageLoop& loop_;
    StatusView& status_;
    HttpClient idHttp1_;
    Proxy proxy_; // stays from one call to the next
    Random random_;
    QString caFile_;
    std::optional<qint64> patience_;
    qint64 progressMaximum_ = 0;
    HttpClient* tlsClient_ = nullptr; // while a fallback is under way
    QString lastError_;
};

} // namespace Brindle
