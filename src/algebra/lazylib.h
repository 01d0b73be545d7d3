// Shared libraries opened at their first call rather than at the program's start: a program that
// never decomposes a matrix or solves a semidefinite program starts without LAPACK, BLAS or CSDP.
#ifndef ALGEBRA_LAZYLIB_H
#define ALGEBRA_LAZYLIB_H

namespace lazylib {

// The address of the entry point name in the library of that file name, the library opened on
// the first call. A library or an entry that cannot be found ends the program, after a fatal
// report that names it: the numerics cannot go on without it.
void* entry(const char* library, const char* name);

// The library's handle when it is open, else null.
void* openedHandle(const char* library);

}  // namespace lazylib

// The entry point of a function declared with its prototype, looked up once per call site.
#define LAZY_ENTRY(library, name)                                                                   \
    ([] {                                                                                           \
        static const auto call = reinterpret_cast<decltype(&name)>(lazylib::entry(library, #name)); \
        return call;                                                                                \
    }())

// LAPACK with the BLAS it is built on, by its run-time name.
#define LAPACK_LIBRARY "liblapack.so.3"
#define LAPACK(name) LAZY_ENTRY(LAPACK_LIBRARY, name)

#endif
