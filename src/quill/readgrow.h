// readGrowing: an array of numbers read from a stream whose count can't be trusted.
#ifndef QUILL_READGROW_H
#define QUILL_READGROW_H

#include <cstddef>

#include "quill/collectn.h"
#include "quill/objalloc.h"
#include "quill/objio.h"

// Reads n numbers of either stream form into a new zeroed buffer of the
// object allocator (at least one slot). The buffer grows as the values
// arrive, so that a damaged count ends at the end of the stream rather than
// in a huge allocation; a read that raises frees it.
template <class T, class Stream>
T* readGrowing(Stream& is, size_t n) {
    size_t room = n < size_t(Collection::READ_RESERVE) ? n : size_t(Collection::READ_RESERVE);
    T* values = static_cast<T*>(objectCalloc(room > 0 ? room : 1, sizeof(T)));
    try {
        for (size_t k = 0; k < n; ++k) {
            if (k == room) {
                room = n / 2 > k ? 2 * k : n;
                values = static_cast<T*>(objectRealloc(values, room * sizeof(T)));
            }
            values[k] = readNumber<T>(is);
        }
    } catch (...) {
        objectFree(values);
        throw;
    }
    return values;
}

#endif
