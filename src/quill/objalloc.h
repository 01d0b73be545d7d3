// The guarded object allocator: guard words, poisoning, accounting, pointer tracking.
#ifndef QUILL_OBJALLOC_H
#define QUILL_OBJALLOC_H

#include <cstddef>

// The largest object: a quarter of the physical memory unless set. A block
// is also refused above 4 GiB, which its guard words cannot hold. Larger
// requests, and counts whose product overflows, raise ALLOCFAIL before
// anything is allocated.
size_t allocationLimit();
// 0 restores the default.
void setAllocationLimit(size_t bytes);
// Raises ALLOCFAIL when count elements of size bytes exceed the limit.
void checkAllocation(size_t count, size_t size);
// rows * cols, after the check of that many elements of elementSize bytes.
size_t checkedElements(size_t rows, size_t cols, size_t elementSize);

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

// Makes a failed operator new raise the allocator's own error, so that
// containers running out of memory unwind like everything else.
void installNewHandler();
void removeNewHandler();

typedef void (*AllocLockHook)();
extern AllocLockHook allocLock, allocUnlock;

#endif
