// Thin layers on LAPACK (DGEES, DGESDD, ZGESDD, DGESV, DGGEV, DTRSYL, DPSTRF, DGEQRF) and BLAS (DGEMM)
// over column-major arrays.
#ifndef ALGEBRA_LAPACK_H
#define ALGEBRA_LAPACK_H

#include <complex>
#include <cstddef>

// Fortran entry points of the reference LAPACK (gfortran calling convention: every argument
// by address, the lengths of character arguments appended as size_t).
extern "C" {
typedef int (*SchurSelect)(const double* re, const double* im);  // LOGICAL FUNCTION SELECT(WR, WI)

void dgees_(const char* jobvs, const char* sort, SchurSelect select, const int* n, double* a, const int* lda,
            int* sdim, double* wr, double* wi, double* vs, const int* ldvs, double* work, const int* lwork,
            int* bwork, int* info, std::size_t jobvsLength, std::size_t sortLength);
void dgesdd_(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s, double* u,
             const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* iwork,
             int* info, std::size_t jobzLength);
void zgesdd_(const char* jobz, const int* m, const int* n, std::complex<double>* a, const int* lda, double* s,
             std::complex<double>* u, const int* ldu, std::complex<double>* vt, const int* ldvt,
             std::complex<double>* work, const int* lwork, double* rwork, int* iwork, int* info,
             std::size_t jobzLength);
void dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b, const int* ldb,
            int* info);
void dggev_(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda, double* b,
            const int* ldb, double* alphar, double* alphai, double* beta, double* vl, const int* ldvl,
            double* vr, const int* ldvr, double* work, const int* lwork, int* info, std::size_t jobvlLength,
            std::size_t jobvrLength);

// LAPACK's error handler for illegal arguments. Ours prints the message on the console and
// returns to the driver, which then returns with INFO < 0, instead of stopping the program.
void xerbla_(const char* srname, const int* info, std::size_t srnameLength);
}

// The selection of a sorted Schur form: true (1) when the eigenvalue's real part is below zero,
// so the stable block comes first.
int selectStable(const double* re, const double* im);

// Real Schur form A = Q T Qᵀ of the n×n matrix a, overwritten with T. q (n×n) receives Q when
// wantVectors is set and may be null otherwise. values (n×2) gets the real parts of the
// eigenvalues in its first column, the imaginary parts in the second. A non-null select sorts
// the form, the selected eigenvalues first; their count goes to *selected when that is given.
// Returns LAPACK's INFO; n = 0 does nothing.
int lapackSchur(int n, double* a, double* q, double* values, bool wantVectors, SchurSelect select,
                int* selected = 0);

// Singular values of the m×n matrix a (the real one overwrites it) into s, min(m, n) of them, descending.
// With wantVectors, u (m×m) and vt (n×n) receive U and Vᵀ with A = U S Vᵀ; otherwise both may
// be null; an empty matrix gets identity factors. Returns LAPACK's INFO.
int lapackSvd(int m, int n, double* a, double* s, double* u, double* vt, bool wantVectors);
int lapackSvd(int m, int n, std::complex<double>* a, double* s, std::complex<double>* u,
              std::complex<double>* vt, bool wantVectors);

// Solution x (n×nrhs) of A X = B through LU with partial pivoting; a and b are left as they
// are. For a singular A (INFO > 0) x holds B unchanged. Returns LAPACK's INFO.
int lapackSolve(int n, int nrhs, const double* a, const double* b, double* x);

// Generalised eigenvalues (alphaR[k] + i alphaI[k]) / beta[k] of the n×n pencil a - s b through
// QZ, both matrices overwritten; beta[k] = 0 is an infinite eigenvalue. A complex pair stands at
// k, k + 1 with alphaI[k] > 0. Returns LAPACK's INFO.
int lapackGeneralizedEigenvalues(int n, double* a, double* b, double* alphaR, double* alphaI, double* beta);

// C = op(A) op(B), op transposing when its flag is set; C is m×n, the inner size k. A and B are
// stored column-major with their own row counts (m or k for A, k or n for B).
void blasProduct(int m, int n, int k, const double* a, bool transposeA, const double* b, bool transposeB,
                 double* c);

// A := A - factor v (v' A) for the rows x cols matrix A stored with leading dimension lda: a
// reflection when factor is 2 / v'v.
void blasReflect(int rows, int cols, const double* v, double factor, double* a, int lda);

// A := A - factor (A v) v', the same from the right.
void blasReflectRight(int rows, int cols, const double* v, double factor, double* a, int lda);

// The eigenvalues re + j im of the n x n upper Hessenberg h (overwritten). Returns LAPACK's INFO.
int lapackHessenbergEigenvalues(int n, double* h, double* re, double* im);

// X with op(T) X + sign X op(U) = C for quasi-triangular T (m×m) and U (n×n) in Schur form; c
// (m×n) is overwritten with X. Returns LAPACK's INFO, 1 when the equation is close to singular.
int lapackTriangularSylvester(bool transposeT, bool transposeU, int sign, int m, int n, const double* t,
                              const double* u, double* c);

// The upper triangular R with RᵀR = A for a symmetric positive semidefinite n×n matrix a, which
// it overwrites: Cholesky with pivoting, rows beyond the numerical rank zero, the columns put back
// in order and the result triangularised again. Returns the rank.
int lapackSemidefiniteFactor(int n, double* a);

#endif
