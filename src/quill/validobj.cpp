// Safe reads for validObject: a word at an address known to be mapped (the
// program's static data, the main heap below the current break) is read
// directly; any other address is read through the kernel, which answers an
// error for unmapped memory instead of a fault.
#include "quill/validobj.h"

#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" char __data_start, _end;

namespace {

bool kernelReadWorks = true;
int probePipe[2] = {-1, -1};

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer poisons parts of the static data and the heap: every read goes through the kernel.
bool knownMapped(const void*) { return false; }
#else
uintptr_t heapStart = 0;
bool heapKnown = false;

void findHeap() {
    heapKnown = true;
    FILE* maps = fopen("/proc/self/maps", "r");
    if (!maps) return;
    char line[512];
    while (fgets(line, sizeof line, maps))
        if (strstr(line, "[heap]")) {
            heapStart = uintptr_t(strtoull(line, 0, 16));
            break;
        }
    fclose(maps);
}

bool inRange(uintptr_t a, uintptr_t low, uintptr_t high) { return a >= low && a + 4 <= high; }

bool knownMapped(const void* address) {
    uintptr_t a = uintptr_t(address);
    if (inRange(a, uintptr_t(&__data_start), uintptr_t(&_end))) return true;
    if (!heapKnown) findHeap();
    return heapStart && inRange(a, heapStart, uintptr_t(sbrk(0)));
}
#endif

bool readThroughKernel(const void* address, uint32_t* word) {
    iovec local = {word, 4};
    iovec remote = {const_cast<void*>(address), 4};
    ssize_t n = process_vm_readv(getpid(), &local, 1, &remote, 1, 0);
    if (n == 4) return true;
    if (n < 0 && (errno == ENOSYS || errno == EPERM)) kernelReadWorks = false;
    return false;
}

// Where the process may not read its own memory through the kernel, a write
// of the word into a pipe fails with EFAULT for unmapped memory.
bool readThroughPipe(const void* address, uint32_t* word) {
    if (probePipe[0] < 0 && pipe2(probePipe, O_CLOEXEC | O_NONBLOCK) != 0) return false;
    if (write(probePipe[1], address, 4) != 4) return false;
    return read(probePipe[0], word, 4) == 4;
}

}  // namespace

bool readWordSafely(const void* address, uint32_t* word) {
    if (knownMapped(address)) {
        memcpy(word, address, 4);
        return true;
    }
    if (kernelReadWorks && readThroughKernel(address, word)) return true;
    if (kernelReadWorks) return false;
    return readThroughPipe(address, word);
}
