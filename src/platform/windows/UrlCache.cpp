#include "UrlCache.h"

#include <cstddef>
#include <vector>

// After windows.h, which it does not include.
#include <windows.h>
#include <wininet.h>

namespace Brindle {

namespace {

// Walks the cache. Each entry is asked for twice: without a buffer for its size, then for itself.
class CacheEntries {
public:
    ~CacheEntries() {
        if (search_ != nullptr)
            FindCloseUrlCache(search_);
    }
    CacheEntries() = default;
    CacheEntries(const CacheEntries&) = delete;
    CacheEntries& operator=(const CacheEntries&) = delete;

    bool First() {
        DWORD size = 0;
        if (FindFirstUrlCacheEntryW(nullptr, nullptr, &size) != nullptr || GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            return false;
        search_ = FindFirstUrlCacheEntryW(nullptr, Room(size), &size);
        return search_ != nullptr;
    }

    bool Next() {
        DWORD size = 0;
        if (FindNextUrlCacheEntryW(search_, nullptr, &size) != 0 || GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            return false;
        return FindNextUrlCacheEntryW(search_, Room(size), &size) != 0;
    }

    const wchar_t* Address() const {
        return reinterpret_cast<const INTERNET_CACHE_ENTRY_INFOW*>(buffer_.data())->lpszSourceUrlName;
    }

private:
    INTERNET_CACHE_ENTRY_INFOW* Room(DWORD size) {
        buffer_.resize(size);
        return reinterpret_cast<INTERNET_CACHE_ENTRY_INFOW*>(buffer_.data());
    }

    HANDLE search_ = nullptr;
    std::vector<std::byte> buffer_; // allocated for any type
};

} // namespace

void ClearWinInetCache() {
    CacheEntries entries;
    for (bool found = entries.First(); found; found = entries.Next())
        DeleteUrlCacheEntryW(entries.Address());
}

} // namespace Brindle
