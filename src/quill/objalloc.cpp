// The guarded object allocator: every block carries its size, xored with
// 0x55555555, in a guard word before and after the data, so that a freed,
// overrun or foreign block is recognised when it is freed again.
#include "quill/objalloc.h"

#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>

#include "quill/quillerr.h"

namespace {

// The head guard sits in the last word of a 32-byte header: the data keeps
// malloc's 16-byte alignment, and the word lies beyond the 16 bytes that the
// C library writes into a small block when it is freed, so that a second free
// still finds the poison.
const size_t HEADER = 32;
const size_t TRAILER = 4;
const size_t OVERHEAD = HEADER + TRAILER;
const uint32_t GUARD_XOR = 0x55555555u;
const uint32_t FREED = 0xAAAAAAAAu;
const int MAX_TRACKED = 20000;
// The guard words hold the block's size in 32 bits.
const size_t MAX_BLOCK = size_t(UINT32_MAX) - OVERHEAD;

unsigned long inUse = 0;
unsigned long failureCountdown = 0;  // the allocation-failure mode: 0 when off
bool trackPointers = false;
bool bufferOverflowed = false;
void* pointerBuffer[MAX_TRACKED];
int pointerCount = 0;

uint32_t headWord(const void* p) {
    uint32_t w;
    memcpy(&w, static_cast<const char*>(p) - 4, 4);
    return w;
}

// Volatile, so that the poison written just before a free is not dropped.
void setHeadWord(void* p, uint32_t w) {
    volatile unsigned char* head = static_cast<unsigned char*>(p) - 4;
    for (int i = 0; i < 4; ++i) head[i] = static_cast<unsigned char>(w >> (8 * i));
}

uint32_t tailWord(const void* p, size_t n) {
    uint32_t w;
    memcpy(&w, static_cast<const char*>(p) + n, 4);
    return w;
}

void writeGuards(void* p, size_t n) {
    uint32_t w = uint32_t(n + OVERHEAD) ^ GUARD_XOR;
    setHeadWord(p, w);
    memcpy(static_cast<char*>(p) + n, &w, 4);
}

size_t sizeOf(const void* p) { return size_t(headWord(p) ^ GUARD_XOR) - OVERHEAD; }

void* blockOf(void* p) { return static_cast<char*>(p) - HEADER; }

void lock() {
    if (allocLock) allocLock();
}
void unlock() {
    if (allocUnlock) allocUnlock();
}

void track(void* p) {
    if (!trackPointers) return;
    if (pointerCount >= MAX_TRACKED) {
        bufferOverflowed = true;
        trackPointers = false;
        std::cerr << "Allocated Pointer Buffer overflow" << std::endl;
        return;
    }
    pointerBuffer[pointerCount++] = p;
}

void untrack(void* p) {
    for (int i = pointerCount - 1; i >= 0; --i)
        if (pointerBuffer[i] == p) {
            pointerBuffer[i] = pointerBuffer[--pointerCount];
            return;
        }
}

void recordBlock(void* p, size_t n) {
    lock();
    inUse += n + OVERHEAD;
    track(p);
    unlock();
}

void forgetBlock(void* p, size_t n) {
    lock();
    inUse -= n + OVERHEAD;
    untrack(p);
    unlock();
}

// The default limit of one block: a quarter of the physical memory.
size_t defaultLimit() {
    long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) return size_t(1) << 30;
    return size_t(pages) / 4 * size_t(pageSize);
}

size_t blockLimit = 0;  // 0 until set or first asked

// Counts an allocation down in the allocation-failure mode; true for the one that fails.
bool injectedFailure() {
    lock();
    bool fails = failureCountdown > 0 && --failureCountdown == 0;
    unlock();
    return fails;
}

[[noreturn]] void outOfMemory(size_t n) {
    char available[100], request[100];
    snprintf(available, sizeof available, "out of memory: available %lu bytes\n", inUse);
    snprintf(request, sizeof request, "last request size = %lu\n", (unsigned long)n);
    setError(BADPTR, SEV_ERROR, "myalloc", available, request);
}

}  // namespace

AllocLockHook allocLock = 0, allocUnlock = 0;

namespace {

void newFailed() { setError(BADPTR, SEV_ERROR, "operator new", "out of memory", ""); }

}  // namespace

void installNewHandler() { std::set_new_handler(newFailed); }

void removeNewHandler() { std::set_new_handler(nullptr); }

size_t allocationLimit() {
    if (!blockLimit) blockLimit = defaultLimit();
    return blockLimit;
}

void setAllocationLimit(size_t bytes) { blockLimit = bytes; }

void checkAllocation(size_t count, size_t size) {
    size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes)) bytes = SIZE_MAX;
    if (bytes > allocationLimit() || bytes > MAX_BLOCK)
        setError(ALLOCFAIL, SEV_ERROR, (long)(bytes > LONG_MAX ? LONG_MAX : bytes));
}

size_t checkedElements(size_t rows, size_t cols, size_t elementSize) {
    size_t count = 0;
    if (__builtin_mul_overflow(rows, cols, &count)) count = SIZE_MAX;
    checkAllocation(count, elementSize);
    return count;
}

void* objectAlloc(size_t n) {
    checkAllocation(n, 1);
    void* block = injectedFailure() ? 0 : malloc(n + OVERHEAD);
    if (!block) outOfMemory(n);
    void* p = static_cast<char*>(block) + HEADER;
    writeGuards(p, n);
    recordBlock(p, n);
    return p;
}

void* objectCalloc(size_t count, size_t size) {
    checkAllocation(count, size);
    void* p = objectAlloc(count * size);
    memset(p, 0, count * size);
    return p;
}

void checkPointer(const void* p, const char* name, size_t n) {
    if (!p) setError(BADPTR, SEV_ERROR, name, "failed: NULL pointer", "");
    auto address = [p] { return formatText("%#8.08lx", (unsigned long)(uintptr_t)p); };
    uint32_t head = headWord(p);
    if (head == FREED) setError(BADPTR, SEV_ERROR, name, address(), "failed: deallocated pointer");
    size_t size = size_t(head ^ GUARD_XOR);
    // A size beyond all live bytes is garbage: the tail is not read then.
    if (size < OVERHEAD || size > inUse || tailWord(p, size - OVERHEAD) != head)
        setError(BADPTR, SEV_ERROR, name, address(), "failed: corrupted memory");
    if (n > 0 && n > size - OVERHEAD)
        setError(BADPTR, SEV_ERROR, name, address(),
                 formatText("failed: pointer has size %lu, requested %lu bytes.",
                            (unsigned long)(size - OVERHEAD), (unsigned long)n));
}

void objectFree(void* p) {
    checkPointer(p, "myfree", 0);
    forgetBlock(p, sizeOf(p));
    setHeadWord(p, FREED);
    free(blockOf(p));
}

void* objectRealloc(void* p, size_t n) {
    checkPointer(p, "myrealloc", 0);
    checkAllocation(n, 1);
    size_t old = sizeOf(p);
    setHeadWord(p, FREED);
    void* block = injectedFailure() ? 0 : realloc(blockOf(p), n + OVERHEAD);
    if (!block) {  // the old block stays the caller's, as it was
        writeGuards(p, old);
        setError(BADPTR, SEV_ERROR, "realloc", "", "");
    }
    forgetBlock(p, old);
    void* q = static_cast<char*>(block) + HEADER;
    writeGuards(q, n);
    recordBlock(q, n);
    return q;
}

size_t objectSize(const void* p) {
    checkPointer(p, "objectSize", 0);
    return sizeOf(p);
}

unsigned long bytesInUse() { return inUse; }

void setAllocationFailure(unsigned long k) {
    lock();
    failureCountdown = k;
    unlock();
}

bool allocationFailurePending() { return failureCountdown > 0; }

void setTrackPointers(bool on) {
    trackPointers = on;
    if (on) bufferOverflowed = false;
}

bool pointerOverflow() { return bufferOverflowed; }

void listTrackedPointers() {
    int shown = pointerCount < 300 ? pointerCount : 300;
    for (int i = 0; i < shown; ++i) {
        const Object* ob = static_cast<const Object*>(pointerBuffer[i]);
        const char* text = validObject(ob) ? ob->className() : formatText("%p", pointerBuffer[i]);
        std::cout << "Object " << i << " " << text << std::endl;
    }
}
