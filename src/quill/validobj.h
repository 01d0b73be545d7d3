// A read of one word at any address that answers false instead of faulting.
#ifndef QUILL_VALIDOBJ_H
#define QUILL_VALIDOBJ_H

#include <cstdint>

bool readWordSafely(const void* address, uint32_t* word);

#endif
