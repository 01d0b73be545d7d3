// The stack guard: how much room the thread's stack has left, so that deep
// recursion (interpreted calls, nested streams, nested expressions) can stop
// with an error before the stack overflows.
#ifndef QUILL_STACKGRD_H
#define QUILL_STACKGRD_H

#include <cstddef>
#include <cstdint>

// The room the deepest user of the stack may take at once beyond a check:
// the numeric routines and the error path run within it.
const size_t STACK_RESERVE = 1024 * 1024;

// Bytes of stack left below the caller's frame on the calling thread. The
// first call on the main thread raises the soft stack limit to 64 MiB when
// the hard limit allows, so that deep programs find room.
size_t stackRemaining();

// The address below which less than STACK_RESERVE is left on the calling thread, 1 when the system cannot
// tell; 0 until the thread's first check, which finds it (stackFloorFound).
extern thread_local std::uintptr_t stackFloor;
std::uintptr_t stackFloorFound();

// True when less than STACK_RESERVE is left: after the first, a check is one comparison, so that every
// interpreted call can make it.
inline bool stackNearlyFull() {
    std::uintptr_t floor = stackFloor ? stackFloor : stackFloorFound();
    return std::uintptr_t(__builtin_frame_address(0)) < floor;
}

#endif
