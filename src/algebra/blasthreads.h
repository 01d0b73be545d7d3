// The number of threads of a threaded BLAS, for the modes whose matrices are small.
#ifndef ALGEBRA_BLASTHREADS_H
#define ALGEBRA_BLASTHREADS_H

// One thread for the BLAS calls when the BLAS is a threaded OpenBLAS; nothing otherwise. Its idle
// workers would spin beside the only thread that has work. Holds for a BLAS opened later too.
void useOneBlasThread();

// Called with each library as it is opened: the choice above reaches the BLAS it brings.
void blasOpened(void* handle);

#endif
