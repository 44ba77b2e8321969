#include "net/CurlLoop.h"

#include <QSocketNotifier>

#include <algorithm>

namespace Brindle {

namespace {

// A notifier may be dropped while it delivers its own signal.
void Drop(std::unique_ptr<QSocketNotifier>& notifier) {
    if (!notifier)
        return;
    notifier->setEnabled(false);
    notifier->disconnect();
    notifier.release()->deleteLater();
}

} // namespace

CurlLoop::CurlLoop() {
    static const CURLcode initialised = LibCurl().global_init(CURL_GLOBAL_DEFAULT);
    (void)initialised;
    multi_.reset(LibCurl().multi_init());
    LibCurl().multi_setopt(multi_.get(), CURLMOPT_SOCKETFUNCTION, &CurlLoop::OnSocket);
    LibCurl().multi_setopt(multi_.get(), CURLMOPT_SOCKETDATA, this);
    LibCurl().multi_setopt(multi_.get(), CURLMOPT_TIMERFUNCTION, &CurlLoop::OnTimer);
    LibCurl().multi_setopt(multi_.get(), CURLMOPT_TIMERDATA, this);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { Act(CURL_SOCKET_TIMEOUT, 0); });
}

CurlLoop::~CurlLoop() {
    for (const auto& [easy, transfer] : running_)
        LibCurl().multi_remove_handle(multi_.get(), easy);
    multi_.reset();
    for (auto& [socket, watch] : watches_) {
        Drop(watch.Read);
        Drop(watch.Write);
    }
}

void CurlLoop::Add(CURL* easy, std::function<void(CURLcode)> onDone, std::function<void()> onReceived) {
    running_[easy] = {std::move(onDone), std::move(onReceived)};
    LibCurl().multi_add_handle(multi_.get(), easy);
}

void CurlLoop::Remove(CURL* easy) {
    if (running_.erase(easy) > 0)
        LibCurl().multi_remove_handle(multi_.get(), easy);
}

int CurlLoop::OnSocket(CURL* easy, curl_socket_t socket, int what, void* self, void* /*socketData*/) {
    auto* const loop = static_cast<CurlLoop*>(self);
    if (what == CURL_POLL_REMOVE) {
        const auto found = loop->watches_.find(socket);
        if (found != loop->watches_.end()) {
            Drop(found->second.Read);
            Drop(found->second.Write);
            loop->watches_.erase(found);
        }
        return 0;
    }
    Watch& watch = loop->watches_[socket];
    watch.Easy = easy;
    const auto set = [&](std::unique_ptr<QSocketNotifier>& notifier, QSocketNotifier::Type type, int event,
                         bool wanted) {
        if (wanted && !notifier) {
            notifier = std::make_unique<QSocketNotifier>(static_cast<qintptr>(socket), type);
            QObject::connect(notifier.get(), &QSocketNotifier::activated, loop,
                             [loop, socket, event] { loop->Act(socket, event); });
        } else if (notifier) {
            notifier->setEnabled(wanted);
        }
    };
    set(watch.Read, QSocketNotifier::Read, CURL_CSELECT_IN, (what & CURL_POLL_IN) != 0);
    set(watch.Write, QSocketNotifier::Write, CURL_CSELECT_OUT, (what & CURL_POLL_OUT) != 0);
    return 0;
}

int CurlLoop::OnTimer(CURLM* /*multi*/, long timeoutMs, void* self) {
    auto* const loop = static_cast<CurlLoop*>(self);
    if (timeoutMs < 0)
        loop->timer_.stop();
    else
        loop->timer_.start(static_cast<int>(std::min(timeoutMs, 60'000L)));
    return 0;
}

void CurlLoop::Act(curl_socket_t socket, int events) {
    if ((events & CURL_CSELECT_IN) != 0) {
        const auto watch = watches_.find(socket);
        const auto transfer = watch == watches_.end() ? running_.end() : running_.find(watch->second.Easy);
        if (transfer != running_.end())
            transfer->second.OnReceived();
    }
    int stillRunning = 0;
    LibCurl().multi_socket_action(multi_.get(), socket, events, &stillRunning);
    DeliverResults();
}

void CurlLoop::DeliverResults() {
    int left = 0;
    while (const CURLMsg* const message = LibCurl().multi_info_read(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        CURL* const easy = message->easy_handle;
        const CURLcode result = message->data.result;
        const auto found = running_.find(easy);
        if (found == running_.end())
            continue;
        const std::function<void(CURLcode)> onDone = std::move(found->second.OnDone);
        running_.erase(found);
        LibCurl().multi_remove_handle(multi_.get(), easy);
        onDone(result);
    }
}

} // namespace Brindle
