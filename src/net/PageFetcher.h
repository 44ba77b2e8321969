#pragma once

#include "core/Harvest.h"
#include "core/Services.h"
#include "net/HttpClient.h"

#include <QRandomGenerator>

#include <functional>

namespace Brindle {

/// The program's one HTTP client for pages: shared cookies, the proxy mode and the random delay of the settings,
/// progress in the status bar. Every failure is a plain `false`.
class PageFetcher : public PageSource {
public:
    /// A random whole number from 0 to `bound` - 1.
    using Random = std::function<qint32(qint32 bound)>;

    PageFetcher(HarvestState& state, const Settings& settings, const MessageTexts& texts, MessageLoop& loop,
                StatusView& status);

    bool DownloadURL(const QString& url, QString& page, bool utf8) override;
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override;
    void Disconnect() override;

    /// Why the last request failed: address and reason in one line, without credentials; empty after a success.
    const QString& LastError() const { return lastError_; }

    /// Replaces the source of the random delay.
    void SetRandom(Random random) { random_ = std::move(random); }
    /// Certificate authorities of the TLS fallback instead of the system's.
    void SetCaFile(const QString& caFile) { caFile_ = caFile; }
    /// Replaces the read time-outs of both operations, in milliseconds.
    void SetReadTimeout(qint64 ms) { readTimeout_ = ms; }

private:
    void IdHTTP1WorkBegin(qint64 expectedSize);
    void IdHTTP1Work(qint64 count);
    void IdHTTP1WorkEnd();
    void IdHTTP1Redirect(const QString& newLocation);

    void ApplySingleProxy();
    void ApplyNextProxy(qsizetype& index);
    void WaitRandomDelay();
    void ShowRequest();
    HttpResponse Get(const QString& url, qint64 readTimeoutMs);
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
    HttpProxy proxy_; // stays from one call to the next
    Random random_;
    QString caFile_;
    qint64 readTimeout_ = 0; // 0: those of the operations
    qint64 progressMaximum_ = 0;
    HttpClient* tlsClient_ = nullptr; // while a fallback is under way
    QString lastError_;
};

} // namespace Brindle
