// The thread count set through OpenBLAS's own calls, looked up in the opened libraries so that a
// single-threaded BLAS serves as well. OpenBLAS starts its workers as it loads, and an idle worker
// spins for a while before it sleeps: the workers are stopped, one thread needs none.
#include "algebra/blasthreads.h"

#include <dlfcn.h>

#include "algebra/lazylib.h"

namespace {

bool oneThread = false;

template <typename F>
F loaded(void* handle, const char* name) {
    return reinterpret_cast<F>(dlsym(handle, name));
}

void stopWorkers(void* handle) {
    typedef void (*SetThreads)(int);
    typedef int (*StopThreads)();
    SetThreads set = loaded<SetThreads>(handle, "openblas_set_num_threads");
    if (!set) return;
    set(1);
    if (StopThreads stop = loaded<StopThreads>(handle, "blas_thread_shutdown_")) stop();
}

}  // namespace

void useOneBlasThread() {
    oneThread = true;
    if (void* handle = lazylib::openedHandle(LAPACK_LIBRARY)) stopWorkers(handle);
}

void blasOpened(void* handle) {
    if (oneThread) stopWorkers(handle);
}
