#include "net/MailDomains.h"

#include "core/LoadedLibrary.h"

#include <QElapsedTimer>

#include <algorithm>
#include <ares.h>
#include <cstring>
#include <optional>

namespace Brindle {

namespace {

// Classes and types of records (RFC 1035, section 3.2).
constexpr int internetClass = 1;
constexpr int addressRecord = 1;
constexpr int mailExchangeRecord = 15;
constexpr int longAddressRecord = 28;

constexpr std::chrono::milliseconds idleEvery{20};

#define ARES_FUNCTIONS(FUNCTION)                                                                                       \
    FUNCTION(ares_, cancel)                                                                                            \
    FUNCTION(ares_, destroy)                                                                                           \
    FUNCTION(ares_, fds)                                                                                               \
    FUNCTION(ares_, free_data)                                                                                         \
    FUNCTION(ares_, init_options)                                                                                      \
    FUNCTION(ares_, library_init)                                                                                      \
    FUNCTION(ares_, parse_mx_reply)                                                                                    \
    FUNCTION(ares_, process)                                                                                           \
    FUNCTION(ares_, query)                                                                                             \
    FUNCTION(ares_, set_servers_ports_csv)
BRINDLE_FUNCTION_TABLE(AresFunctions, ARES_FUNCTIONS);
#ifdef BRINDLE_CARES_LIBRARY
BRINDLE_LOADED_LIBRARY(AresFunctions, Ares, ARES_FUNCTIONS, BRINDLE_CARES_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(AresFunctions, Ares, ARES_FUNCTIONS)
#endif

} // namespace

// One channel to the name servers; its questions are answered while it is waited for.
class MailDomains::Resolver {
public:
    Resolver(const QString& nameServers, std::chrono::milliseconds timeLimit, std::function<void()> idle)
        : timeLimit_(timeLimit), idle_(std::move(idle)) {
        static const int library = Ares().library_init(ARES_LIB_INIT_ALL);
        ares_options options{};
        options.timeout = static_cast<int>(std::max<qint64>(timeLimit.count() / 3, 1));
        options.tries = 2;
        ready_ = library == ARES_SUCCESS &&
                 Ares().init_options(&channel_, &options, ARES_OPT_TIMEOUTMS | ARES_OPT_TRIES) == ARES_SUCCESS;
        if (ready_ && !nameServers.isEmpty())
            ready_ = Ares().set_servers_ports_csv(channel_, nameServers.toLatin1().constData()) == ARES_SUCCESS;
    }
    ~Resolver() {
        if (channel_)
            Ares().destroy(channel_);
    }
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;

    MailDomain Ask(const QByteArray& domain) {
        if (!ready_)
            return MailDomain::Unknown;
        sinceStart_.start();
        const Answer exchange = Query(domain, mailExchangeRecord);
        if (exchange.Verdict != MailDomain::TakesNone || exchange.IsFinal)
            return exchange.Verdict;
        for (const int type : {addressRecord, longAddressRecord})
            if (const Answer address = Query(domain, type); address.Verdict != MailDomain::TakesNone)
                return address.Verdict;
        return MailDomain::TakesNone;
    }

private:
    struct Answer {
        MailDomain Verdict = MailDomain::Unknown;
        bool IsFinal = false; // there is no such domain, or it says itself that it takes no mail
        bool Come = false;
    };
    struct Question {
        Answer Result;
        int Type = 0;
    };

    static void Answered(void* to, int status, int, unsigned char* message, int length) {
        auto* const question = static_cast<Question*>(to);
        question->Result.Come = true;
        if (status == ARES_ENOTFOUND) {
            question->Result = {MailDomain::TakesNone, true, true};
        } else if (status == ARES_ENODATA) {
            question->Result.Verdict = MailDomain::TakesNone;
        } else if (status == ARES_SUCCESS && question->Type != mailExchangeRecord) {
            question->Result.Verdict = MailDomain::TakesMail;
        } else if (status == ARES_SUCCESS) {
            question->Result = ReadExchanges(message, length);
        }
    }

    static Answer ReadExchanges(const unsigned char* message, int length) {
        ares_mx_reply* replies = nullptr;
        const int status = Ares().parse_mx_reply(message, length, &replies);
        Answer answer{MailDomain::TakesNone, false, true};
        for (const ares_mx_reply* reply = replies; status == ARES_SUCCESS && reply; reply = reply->next) {
            if (std::strlen(reply->host) > 0 && std::strcmp(reply->host, ".") != 0)
                answer.Verdict = MailDomain::TakesMail;
            else
                answer.IsFinal = true;
        }
        if (replies)
            Ares().free_data(replies);
        return status == ARES_SUCCESS ? answer : Answer{MailDomain::Unknown, false, true};
    }

    Answer Query(const QByteArray& domain, int type) {
        Question question;
        question.Type = type;
        Ares().query(channel_, domain.constData(), internetClass, type, &Answered, &question);
        while (!question.Result.Come && sinceStart_.elapsed() < timeLimit_.count())
            Wait();
        if (!question.Result.Come)
            Ares().cancel(channel_); // answers the question, so nothing points to it any more
        return question.Result;
    }

    void Wait() {
        fd_set toRead;
        fd_set toWrite;
        FD_ZERO(&toRead);
        FD_ZERO(&toWrite);
        const int count = Ares().fds(channel_, &toRead, &toWrite);
        timeval time{0, static_cast<decltype(timeval::tv_usec)>(idleEvery.count() * 1000)};
        if (count > 0)
            select(count, &toRead, &toWrite, nullptr, &time);
        Ares().process(channel_, &toRead, &toWrite);
        if (idle_)
            idle_();
    }

    std::chrono::milliseconds timeLimit_;
    std::function<void()> idle_;
    ares_channel channel_ = nullptr;
    bool ready_ = false;
    QElapsedTimer sinceStart_;
};

MailDomains::MailDomains(const QString& nameServers, std::chrono::milliseconds timeLimit, std::function<void()> idle)
    : resolver_(std::make_unique<Resolver>(nameServers, timeLimit, std::move(idle))) {}

MailDomains::~MailDomains() = default;

MailDomain MailDomains::Check(const QString& domain) {
    if (const auto known = known_.constFind(domain); known != known_.cend())
        return *known;
    ++asked_;
    return *known_.insert(domain, resolver_->Ask(domain.toLatin1()));
}

} // namespace Brindle
