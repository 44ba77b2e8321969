#include "net/HttpClient.h"

#include "net/CurlTransfer.h"

#include <optional>
#include <set>

namespace Brindle {

class HttpClient::Impl {
public:
    /// Made for the first request, as many a command makes none.
    CurlSession& Session() {
        if (!session_)
            session_.emplace();
        return *session_;
    }

    std::set<CurlTransfer*> Fetches; // those that `Disconnect` ends

private:
    std::optional<CurlSession> session_;
};

HttpClient::HttpClient() : impl_(std::make_unique<Impl>()) {}

HttpClient::~HttpClient() = default;

std::unique_ptr<HttpTransfer> HttpClient::Start(const HttpRequest& request, std::function<void()> onDone) {
    return std::make_unique<CurlTransfer>(impl_->Session(), request, std::move(onDone));
}

HttpResponse HttpClient::Fetch(const HttpRequest& request, MessageLoop& loop, const HttpEvents& events) {
    CurlTransfer transfer(impl_->Session(), request, {});
    impl_->Fetches.insert(&transfer);
    while (!transfer.Done()) {
        if (loop.Quitting()) {
            transfer.Abort();
            break;
        }
        loop.WaitForMessage(std::nullopt);
        transfer.Report(events);
    }
    transfer.Report(events);
    impl_->Fetches.erase(&transfer);
    return transfer.Response();
}

void HttpClient::Disconnect() {
    for (CurlTransfer* transfer : impl_->Fetches)
        transfer->Abort();
}

} // namespace Brindle
