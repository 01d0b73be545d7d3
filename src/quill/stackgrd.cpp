// The stack guard: the lowest address of the thread's stack, found once per
// thread, against the address of the caller's frame.
#include "quill/stackgrd.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>

namespace {

const rlim_t WANTED_STACK = 64ul * 1024 * 1024;

// The main thread's stack grows on demand up to the soft limit in force at
// the moment of the fault, so raising the limit at run time gives it room.
void raiseStackLimit() {
    struct rlimit limit;
    if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return;
    rlim_t wanted = limit.rlim_max < WANTED_STACK ? limit.rlim_max : WANTED_STACK;
    if (wanted <= limit.rlim_cur) return;
    limit.rlim_cur = wanted;
    setrlimit(RLIMIT_STACK, &limit);
}

// The lowest usable address of the calling thread's stack, or 0 when the
// system cannot tell. For the main thread the size follows the soft limit;
// an unlimited one counts as the wanted size.
uintptr_t findStackBottom() {
    if (getpid() == gettid()) raiseStackLimit();
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
    void* address = 0;
    size_t size = 0;
    int failed = pthread_attr_getstack(&attributes, &address, &size);
    pthread_attr_destroy(&attributes);
    if (failed || !address) return 0;
    uintptr_t bottom = uintptr_t(address);
    if (size > WANTED_STACK && getpid() == gettid()) bottom += size - WANTED_STACK;
    return bottom;
}

uintptr_t threadStackBottom() {
    static thread_local uintptr_t bottom = findStackBottom();
    return bottom;
}

}  // namespace

thread_local std::uintptr_t stackFloor = 0;

size_t stackRemaining() {
    uintptr_t bottom = threadStackBottom();
    uintptr_t here = uintptr_t(__builtin_frame_address(0));
    if (!bottom) return SIZE_MAX;
    return here > bottom ? size_t(here - bottom) : 0;
}

std::uintptr_t stackFloorFound() {
    uintptr_t bottom = threadStackBottom();
    stackFloor = bottom ? bottom + STACK_RESERVE : 1;
    return stackFloor;
}
