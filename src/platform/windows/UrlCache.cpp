#include "platform/windows/UrlCache.h"

#include "platform/UrlCacheWalk.h"

// After windows.h, which it does not include.
#include <windows.h>
#include <wininet.h>

namespace Brindle {

namespace {

class WinInetCache : public UrlCacheCalls {
public:
    Search FindFirst(void* entry, quint32& size) override {
        DWORD bytes = size;
        const HANDLE search = FindFirstUrlCacheEntryW(nullptr, static_cast<INTERNET_CACHE_ENTRY_INFOW*>(entry), &bytes);
        size = bytes;
        return search;
    }

    bool FindNext(Search search, void* entry, quint32& size) override {
        DWORD bytes = size;
        const BOOL found = FindNextUrlCacheEntryW(search, static_cast<INTERNET_CACHE_ENTRY_INFOW*>(entry), &bytes);
        size = bytes;
        return found != FALSE;
    }

    void Delete(const void* entry) override {
        DeleteUrlCacheEntryW(static_cast<const INTERNET_CACHE_ENTRY_INFOW*>(entry)->lpszSourceUrlName);
    }

    void Close(Search search) override { FindCloseUrlCache(search); }
};

} // namespace

void ClearWinInetCache() {
    WinInetCache cache;
    EmptyUrlCache(cache);
}

} // namespace Brindle
