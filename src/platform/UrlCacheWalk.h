#pragma once

#include <QtGlobal>

namespace Brindle {

/// The calls of a system's URL cache that emptying it takes. An entry is copied into a buffer of the caller's: when the
/// buffer is null or too small for it, the call fails and `size` becomes the number of bytes that the entry needs.
class UrlCacheCalls {
public:
    using Search = void*;

    virtual ~UrlCacheCalls() = default;
    /// Begins a search with its first entry; null when there is none.
    virtual Search FindFirst(void* entry, quint32& size) = 0;
    /// The next entry of a search; false when there is none.
    virtual bool FindNext(Search search, void* entry, quint32& size) = 0;
    /// Deletes what is cached under the address of an entry.
    virtual void Delete(const void* entry) = 0;
    virtual void Close(Search search) = 0;
};

/// Deletes every entry of a cache. Failures are ignored.
void EmptyUrlCache(UrlCacheCalls& cache);

} // namespace Brindle
