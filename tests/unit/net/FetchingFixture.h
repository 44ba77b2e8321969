#pragma once

#include "HarvestBench.h"
#include "LoopbackServer.h"
#include "PrintTo.h"
#include "net/PageFetcher.h"

#include <gtest/gtest.h>
#include <vector>

namespace Brindle::Test {

/// A fetcher that keeps what it asks its clients for, and can be made less patient.
class WatchedFetcher : public PageFetcher {
public:
    using PageFetcher::PageFetcher;

    std::vector<HttpRequest> Sent;
    qint64 ReadTimeoutMs = 0; ///< replaces that of every request; 0: it stays
    bool Offline = false;     ///< nothing is sent, and every request fails
    std::function<void()> OnSend;

protected:
    HttpResponse Send(HttpClient& client, const HttpRequest& request, const HttpEvents& events) override {
        Sent.push_back(request);
        if (OnSend)
            OnSend();
        HttpRequest sent = request;
        if (ReadTimeoutMs > 0)
            sent.ReadTimeoutMs = ReadTimeoutMs;
        return Offline ? HttpResponse{.Failure = HttpFailure::Other, .Error = QStringLiteral("offline")}
                       : PageFetcher::Send(client, sent, events);
    }
};

/// A page fetcher on stand-ins without a random delay, whose status texts are the tags of the language file.
class Fetching : public testing::Test {
protected:
    Fetching() {
        bench.Options.eRandom = QStringLiteral("0");
        for (const Message slot :
             {Message::DirectDownload, Message::DirectDownloadStopped, Message::RandomDelay, Message::ProxyRequest,
              Message::Request, Message::RequestStopped, Message::NextProxy})
            bench.Texts.Set(slot, QStringLiteral("main%1").arg(static_cast<int>(slot)));
    }
    QStringList Statuses() {
        QStringList texts = bench.Status.TextsOf(0);
        bench.Status.Panels.clear();
        return texts;
    }
    HarvestBench bench{SiteCode::UsYellowPages};
    WatchedFetcher fetcher{bench.State, bench.Options, bench.Texts, bench.Loop, bench.Status};
    QString page = QStringLiteral("before");
};

/// The value of a request's header; empty when it has none.
inline QByteArray Header(const QByteArray& request, const QByteArray& name) {
    for (const QByteArray& line : request.split('\n'))
        if (line.toLower().startsWith(QByteArray(name.toLower() + ":")))
            return line.sliced(name.size() + 1).trimmed();
    return {};
}

} // namespace Brindle::Test
