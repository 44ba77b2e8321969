#include "platform/UrlCacheWalk.h"

#include "PrintTo.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// A cache that keeps a list of what was asked of it. An entry is its address, ended by a NUL.
class ScriptedCache : public UrlCacheCalls {
public:
    explicit ScriptedCache(std::vector<QByteArray> addresses) : addresses_(std::move(addresses)) {}

    Search FindFirst(void* entry, quint32& size) override {
        Calls.append(entry == nullptr ? u"first size"_s : u"first"_s);
        return Copy(entry, size) ? this : nullptr;
    }
    bool FindNext(Search search, void* entry, quint32& size) override {
        EXPECT_EQ(search, this);
        Calls.append(entry == nullptr ? u"next size"_s : u"next"_s);
        return Copy(entry, size);
    }
    void Delete(const void* entry) override {
        Calls.append(u"delete "_s + QString::fromLatin1(static_cast<const char*>(entry)));
    }
    void Close(Search search) override {
        EXPECT_EQ(search, this);
        Calls.append(u"close"_s);
    }

    QStringList Calls;
    size_t TakenAway = SIZE_MAX; ///< this entry vanishes between the question for its size and the one for itself

private:
    bool Copy(void* entry, quint32& size) {
        if (at_ >= addresses_.size() || (entry != nullptr && at_ == TakenAway))
            return false;
        const QByteArray& address = addresses_[at_];
        const auto needed = static_cast<quint32>(address.size() + 1);
        if (entry == nullptr || size < needed) {
            size = needed;
            return false;
        }
        std::memcpy(entry, address.constData(), needed);
        ++at_;
        return true;
    }

    std::vector<QByteArray> addresses_;
    size_t at_ = 0;
};

TEST(EmptyUrlCache, AsksForEachEntrysSizeFetchesItAndDeletesIt) {
    ScriptedCache cache({"http://a.test/", "http://a.test/a/much/longer/address", "b"});
    EmptyUrlCache(cache);
    const QStringList calls{u"first size"_s, u"first"_s, u"delete http://a.test/"_s,
                            u"next size"_s,  u"next"_s,  u"delete http://a.test/a/much/longer/address"_s,
                            u"next size"_s,  u"next"_s,  u"delete b"_s,
                            u"next size"_s,  u"close"_s};
    EXPECT_EQ(cache.Calls, calls);
}

TEST(EmptyUrlCache, EndsWhereAnEntryCannotBeHad) {
    ScriptedCache empty({});
    EmptyUrlCache(empty);
    EXPECT_FALSE(empty.Calls.contains(u"close"_s)) << "there is no search to close";
    ScriptedCache cache({"a", "b", "c"});
    cache.TakenAway = 1; // by another program, for the cache is shared
    EmptyUrlCache(cache);
    EXPECT_EQ(cache.Calls.mid(2), (QStringList{u"delete a"_s, u"next size"_s, u"next"_s, u"close"_s}));
}

} // namespace
} // namespace Brindle
