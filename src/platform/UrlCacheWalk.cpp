#include "platform/UrlCacheWalk.h"

#include <cstddef>
#include <vector>

namespace Brindle {

void EmptyUrlCache(UrlCacheCalls& cache) {
    // Every entry is asked for twice: without a buffer for its size, then for itself.
    quint32 size = 0;
    cache.FindFirst(nullptr, size);
    std::vector<std::byte> entry(size); // allocated for any type
    const UrlCacheCalls::Search search = cache.FindFirst(entry.data(), size);
    if (search == nullptr)
        return;
    bool found = true;
    while (found) {
        cache.Delete(entry.data());
        size = 0;
        cache.FindNext(search, nullptr, size);
        entry.resize(size);
        found = size > 0 && cache.FindNext(search, entry.data(), size);
    }
    cache.Close(search);
}

} // namespace Brindle
