// The guarded object allocator: guard words, poisoning, accounting, pointer tracking.
#ifndef QUILL_OBJALLOC_H
#define QUILL_OBJALLOC_H

#include <cstddef>

void* objectAlloc(size_t n);
void* objectCalloc(size_t count, size_t size);
void* objectRealloc(void* p, size_t n);
void objectFree(void* p);
size_t objectSize(const void* p);
// Checks the guard words of a block; n > 0 also checks that the block holds n bytes.
void checkPointer(const void* p, const char* name, size_t n);

// Bytes of all live blocks, overhead included.
unsigned long bytesInUse();
// The allocation-failure mode: the k-th objectAlloc or objectRealloc from now
// fails as if malloc had answered null; 0 turns it off. Pending while that
// allocation has not come yet.
void setAllocationFailure(unsigned long k);
bool allocationFailurePending();
void setTrackPointers(bool on);
bool pointerOverflow();
// Prints at most 300 records "Object <n> <text>" of the tracked pointers.
void listTrackedPointers();

typedef void (*AllocLockHook)();
extern AllocLockHook allocLock, allocUnlock;

#endif
