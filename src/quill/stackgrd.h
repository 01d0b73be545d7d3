// The stack guard: how much room the thread's stack has left, so that deep
// recursion (interpreted calls, nested streams, nested expressions) can stop
// with an error before the stack overflows.
#ifndef QUILL_STACKGRD_H
#define QUILL_STACKGRD_H

#include <cstddef>

// The room the deepest user of the stack may take at once beyond a check:
// the numeric routines and the error path run within it.
const size_t STACK_RESERVE = 1024 * 1024;

// Bytes of stack left below the caller's frame on the calling thread. The
// first call on the main thread raises the soft stack limit to 64 MiB when
// the hard limit allows, so that deep programs find room.
size_t stackRemaining();

// True when less than STACK_RESERVE is left.
inline bool stackNearlyFull() { return stackRemaining() < STACK_RESERVE; }

#endif
