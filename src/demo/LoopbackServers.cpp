#include "demo/LoopbackServers.h"

#include "demo/DemoAuthority.h"
#include "demo/DemoPage.h"

#include <condition_variable>
#include <deque>
#include <httplib.h>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

// The threads that answer, shared by all servers. A browser holds connections open on which it says nothing, so there
// must be more than a few; a harvest needs one.
class Workers {
public:
    ~Workers() { Join(); }

    void Add(std::function<void()> task) {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        if (idle_ < tasks_.size() && threads_.size() < limit)
            threads_.emplace_back([this] { Work(); });
        wake_.notify_one();
    }

    void Join() {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        wake_.notify_all();
        for (std::thread& thread : threads_)
            thread.join();
        threads_.clear();
    }

private:
    static constexpr std::size_t limit = 16;

    void Work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            ++idle_;
            wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
            --idle_;
            if (tasks_.empty())
                return;
            const std::function<void()> task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool ending_ = false;
};

// What a server hands its connections to.
class SharedQueue : public httplib::TaskQueue {
public:
    explicit SharedQueue(Workers& workers) : workers_(workers) {}
    void enqueue(std::function<void()> task) override { workers_.Add(std::move(task)); }
    void shutdown() override {}

private:
    Workers& workers_;
};

struct OneServer {
    QString Base;
    std::unique_ptr<httplib::Server> Http;
    std::thread Acceptor;
};

} // namespace

struct LoopbackServers::Running {
    std::vector<std::unique_ptr<OneServer>> Servers;
    Workers Answering; // joined before the servers go: its tasks use them
};

LoopbackServers::LoopbackServers() : running_(std::make_unique<Running>()) {}

LoopbackServers::~LoopbackServers() {
    Stop();
}

QString LoopbackServers::Add() {
    return Take(std::make_unique<httplib::Server>(), u"http");
}

QString LoopbackServers::AddSecure(const DemoAuthority& authority) {
#ifdef BRINDLE_DEMO_TLS
    return Take(std::make_unique<httplib::SSLServer>(authority.ServerCertificate(), authority.ServerKey()), u"https");
#else
    Q_UNUSED(authority);
    throw std::runtime_error("built without https");
#endif
}

QString LoopbackServers::Take(std::unique_ptr<httplib::Server> http_, QStringView scheme) {
    auto server = std::make_unique<OneServer>();
    server->Http = std::move(http_);
    httplib::Server& http = *server->Http;
    http.new_task_queue = [this] { return new SharedQueue(running_->Answering); };
    http.set_socket_options([](auto) {}); // by default another program could take the same port
    // Header and body go out in two writes, the second of which would otherwise wait for the client's delayed answer.
    http.set_tcp_nodelay(true);
    // One request per connection: a worker never waits for what an idle client might still ask.
    http.set_keep_alive_max_count(1);
    http.set_keep_alive_timeout(1);
    http.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        SendPage(response, u"<!DOCTYPE html><title>Not here</title><h1>There is nothing here</h1>"_s, response.status);
    });
    const int port = http.bind_to_any_port("127.0.0.1");
    if (port <= 0)
        throw std::runtime_error("no free port on 127.0.0.1");
    server->Base = scheme + u"://127.0.0.1:" + QString::number(port);
    running_->Servers.push_back(std::move(server));
    return running_->Servers.back()->Base;
}

httplib::Server& LoopbackServers::At(const QString& base) {
    for (const auto& server : running_->Servers)
        if (server->Base == base)
            return *server->Http;
    throw std::logic_error("no server at " + base.toStdString());
}

void LoopbackServers::Run() {
    for (const auto& server : running_->Servers)
        server->Acceptor = std::thread([&http = *server->Http] { http.listen_after_bind(); });
    // A server that is told to stop before it runs would not hear it.
    for (const auto& server : running_->Servers)
        while (!server->Http->is_running())
            std::this_thread::yield();
}

void LoopbackServers::Stop() {
    for (const auto& server : running_->Servers)
        server->Http->stop();
    for (const auto& server : running_->Servers)
        if (server->Acceptor.joinable())
            server->Acceptor.join();
    running_ = std::make_unique<Running>();
}

} // namespace Brindle::Demo
