// The thread count set through OpenBLAS's own calls, looked up in the loaded libraries so that
// a single-threaded BLAS links as well. OpenBLAS starts its workers as it loads, and an idle
// worker spins for a while before it sleeps: the workers are stopped, one thread needs none.
#include "algebra/blasthreads.h"

#include <dlfcn.h>

namespace {

template <typename F>
F loaded(const char* name) {
    return reinterpret_cast<F>(dlsym(RTLD_DEFAULT, name));
}

}  // namespace

void useOneBlasThread() {
    typedef void (*SetThreads)(int);
    typedef int (*StopThreads)();
    SetThreads set = loaded<SetThreads>("openblas_set_num_threads");
    if (!set) return;
    set(1);
    if (StopThreads stop = loaded<StopThreads>("blas_thread_shutdown_")) stop();
}
