// The number of threads of a threaded BLAS, for the modes whose matrices are small.
#ifndef ALGEBRA_BLASTHREADS_H
#define ALGEBRA_BLASTHREADS_H

// One thread for the BLAS calls when the loaded BLAS is a threaded OpenBLAS; nothing otherwise.
// Its idle workers would spin beside the only thread that has work.
void useOneBlasThread();

#endif
