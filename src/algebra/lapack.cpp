// Calls of the LAPACK drivers: work-size query first, then the call with a work vector of that size.
#include "algebra/lapack.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "algebra/lazylib.h"

// Declared here only: other libraries' headers declare some of these without prototypes.
extern "C" {
void dtrsyl_(const char* trana, const char* tranb, const int* isgn, const int* m, const int* n,
             const double* a, const int* lda, const double* b, const int* ldb, double* c, const int* ldc,
             double* scale, int* info, std::size_t tranaLength, std::size_t tranbLength);
void dpstrf_(const char* uplo, const int* n, double* a, const int* lda, int* piv, int* rank,
             const double* tol, double* work, int* info, std::size_t uploLength);
void dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
             const int* lwork, int* info);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc, std::size_t transaLength,
            std::size_t transbLength);
void dgemv_(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
            const int* lda, const double* x, const int* incx, const double* beta, double* y, const int* incy,
            std::size_t transLength);
void dhseqr_(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, double* h,
             const int* ldh, double* wr, double* wi, double* z, const int* ldz, double* work,
             const int* lwork, int* info, std::size_t jobLength, std::size_t compzLength);
void dger_(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
           const int* incy, double* a, const int* lda);
}

namespace {

// The size a work-size query reports in WORK(1), never below one element.
int reportedSize(double value) { return std::max(1, static_cast<int>(value)); }

int atLeastOne(int n) { return std::max(1, n); }

// The drivers return at once on an empty matrix and leave U and Vᵀ as they are; the
// decomposition of an m×0 or 0×n matrix has identity factors.
template <class T>
void setIdentity(int n, T* q) {
    std::fill(q, q + static_cast<std::size_t>(n) * n, T(0.0));
    for (int i = 0; i < n; ++i) q[static_cast<std::size_t>(i) * n + i] = T(1.0);
}

template <class T>
void emptyFactors(int m, int n, T* u, T* vt) {
    setIdentity(m, u);
    setIdentity(n, vt);
}

}  // namespace

extern "C" void xerbla_(const char* srname, const int* info, std::size_t srnameLength) {
    std::string name(srname, strnlen(srname, srnameLength));
    name.erase(name.find_last_not_of(' ') + 1);
    char line[128];
    std::snprintf(line, sizeof line, "** On entry to %6s, parameter number %2i had an illegal value\n",
                  name.c_str(), *info);
    std::cout << line << std::flush;
}

int selectStable(const double* re, const double*) { return *re < 0.0 ? 1 : 0; }

int lapackSchur(int n, double* a, double* q, double* values, bool wantVectors, SchurSelect select,
                int* selected) {
    const char jobvs = wantVectors ? 'V' : 'N';
    const char sort = select ? 'S' : 'N';
    SchurSelect callback = select ? select : selectStable;  // not referenced when unsorted
    const int lda = atLeastOne(n);
    std::vector<double> noVectors(1);
    double* vs = wantVectors ? q : noVectors.data();
    const int ldvs = wantVectors ? atLeastOne(n) : 1;
    std::vector<int> bwork(atLeastOne(n));
    int sdim = 0;
    int info = 0;

    std::vector<double> query(100);
    int lwork = -1;
    LAPACK(dgees_)
    (&jobvs, &sort, callback, &n, a, &lda, &sdim, values, values + n, vs, &ldvs, query.data(), &lwork,
     bwork.data(), &info, 1, 1);
    if (info < 0) return info;
    lwork = reportedSize(query[0]);
    std::vector<double> work(lwork);
    LAPACK(dgees_)
    (&jobvs, &sort, callback, &n, a, &lda, &sdim, values, values + n, vs, &ldvs, work.data(), &lwork,
     bwork.data(), &info, 1, 1);
    if (selected) *selected = sdim;
    return info;
}

int lapackSvd(int m, int n, double* a, double* s, double* u, double* vt, bool wantVectors) {
    const char jobz = wantVectors ? 'A' : 'N';
    const int lda = atLeastOne(m);
    std::vector<double> noVectors(1);
    double* uData = wantVectors ? u : noVectors.data();
    double* vtData = wantVectors ? vt : noVectors.data();
    const int ldu = wantVectors ? atLeastOne(m) : 1;
    const int ldvt = wantVectors ? atLeastOne(n) : 1;
    std::vector<int> iwork(atLeastOne(8 * std::min(m, n)));
    int info = 0;

    if (wantVectors && m >= 0 && n >= 0 && std::min(m, n) == 0) {
        emptyFactors(m, n, u, vt);
        return 0;
    }
    double query[1];
    int lwork = -1;
    LAPACK(dgesdd_)
    (&jobz, &m, &n, a, &lda, s, uData, &ldu, vtData, &ldvt, query, &lwork, iwork.data(), &info, 1);
    if (info < 0) return info;
    lwork = reportedSize(query[0]);
    std::vector<double> work(lwork);
    LAPACK(dgesdd_)
    (&jobz, &m, &n, a, &lda, s, uData, &ldu, vtData, &ldvt, work.data(), &lwork, iwork.data(), &info, 1);
    return info;
}

// ZGESDD does not check the length of its real work vector: 5·(k² + k + 20) doubles cover it
// for nearly square matrices, LAPACK's own bound k·(2·max(m, n) + 2k + 1) for tall or wide ones.
static int complexSvdRealWork(int m, int n) {
    const int k = std::min(m, n);
    const int usual = 5 * (k * k + k + 20);
    const int required = k * (2 * std::max(m, n) + 2 * k + 1);
    return std::max(usual, required);
}

int lapackSvd(int m, int n, std::complex<double>* a, double* s, std::complex<double>* u,
              std::complex<double>* vt, bool wantVectors) {
    const char jobz = wantVectors ? 'A' : 'N';
    const int lda = atLeastOne(m);
    // OpenBLAS's AVX-512 zgemv reads a few elements past the end of the matrix it reflects: the
    // decomposition works on a copy with room behind it, so no read leaves the allocation.
    std::vector<std::complex<double>> padded(a, a + std::size_t(std::max(m, 0)) * std::max(n, 0));
    padded.resize(padded.size() + std::size_t(std::max(m, 0)) + 16);
    a = padded.data();
    std::vector<std::complex<double>> noVectors(1);
    std::complex<double>* uData = wantVectors ? u : noVectors.data();
    std::complex<double>* vtData = wantVectors ? vt : noVectors.data();
    const int ldu = wantVectors ? atLeastOne(m) : 1;
    const int ldvt = wantVectors ? atLeastOne(n) : 1;
    std::vector<double> rwork(complexSvdRealWork(m, n));
    std::vector<int> iwork(atLeastOne(8 * std::min(m, n)));
    int info = 0;

    if (wantVectors && m >= 0 && n >= 0 && std::min(m, n) == 0) {
        emptyFactors(m, n, u, vt);
        return 0;
    }
    std::complex<double> query[1];
    int lwork = -1;
    LAPACK(zgesdd_)
    (&jobz, &m, &n, a, &lda, s, uData, &ldu, vtData, &ldvt, query, &lwork, rwork.data(), iwork.data(), &info,
     1);
    if (info < 0) return info;
    lwork = reportedSize(query[0].real());
    std::vector<std::complex<double>> work(lwork);
    LAPACK(zgesdd_)
    (&jobz, &m, &n, a, &lda, s, uData, &ldu, vtData, &ldvt, work.data(), &lwork, rwork.data(), iwork.data(),
     &info, 1);
    return info;
}

int lapackSolve(int n, int nrhs, const double* a, const double* b, double* x) {
    std::vector<double> lu(a, a + static_cast<std::size_t>(n) * n);
    std::copy(b, b + static_cast<std::size_t>(n) * nrhs, x);
    std::vector<int> pivots(atLeastOne(n));
    const int lda = atLeastOne(n);
    int info = 0;
    LAPACK(dgesv_)(&n, &nrhs, lu.data(), &lda, pivots.data(), x, &lda, &info);
    return info;
}

int lapackGeneralizedEigenvalues(int n, double* a, double* b, double* alphaR, double* alphaI, double* beta) {
    const char jobv = 'N';
    const int lda = atLeastOne(n);
    double noVectors[1];
    const int ldv = 1;
    int info = 0;

    double query[1];
    int lwork = -1;
    LAPACK(dggev_)
    (&jobv, &jobv, &n, a, &lda, b, &lda, alphaR, alphaI, beta, noVectors, &ldv, noVectors, &ldv, query,
     &lwork, &info, 1, 1);
    if (info < 0) return info;
    lwork = reportedSize(query[0]);
    std::vector<double> work(lwork);
    LAPACK(dggev_)
    (&jobv, &jobv, &n, a, &lda, b, &lda, alphaR, alphaI, beta, noVectors, &ldv, noVectors, &ldv, work.data(),
     &lwork, &info, 1, 1);
    return info;
}

void blasProduct(int m, int n, int k, const double* a, bool transposeA, const double* b, bool transposeB,
                 double* c) {
    if (m == 0 || n == 0) return;
    if (k == 0) {
        std::fill(c, c + static_cast<std::size_t>(m) * n, 0.0);
        return;
    }
    const char ta = transposeA ? 'T' : 'N', tb = transposeB ? 'T' : 'N';
    const double one = 1.0, zero = 0.0;
    const int lda = transposeA ? k : m, ldb = transposeB ? n : k;
    LAPACK(dgemm_)(&ta, &tb, &m, &n, &k, &one, a, &lda, b, &ldb, &zero, c, &m, 1, 1);
}

int lapackTriangularSylvester(bool transposeT, bool transposeU, int sign, int m, int n, const double* t,
                              const double* u, double* c) {
    if (m == 0 || n == 0) return 0;
    const char ta = transposeT ? 'T' : 'N', tb = transposeU ? 'T' : 'N';
    double scale = 1.0;
    int info = 0;
    LAPACK(dtrsyl_)(&ta, &tb, &sign, &m, &n, t, &m, u, &n, c, &m, &scale, &info, 1, 1);
    if (scale != 1.0)
        for (std::size_t k = 0, size = static_cast<std::size_t>(m) * n; k < size; ++k) c[k] /= scale;
    return info;
}

int lapackSemidefiniteFactor(int n, double* a) {
    if (n == 0) return 0;
    const char uplo = 'U';
    const double tolerance = -1.0;  // LAPACK's default, n ulp times the largest diagonal element
    std::vector<int> pivots(n);
    std::vector<double> work(2 * static_cast<std::size_t>(n));
    int rank = 0, info = 0;
    LAPACK(dpstrf_)(&uplo, &n, a, &n, pivots.data(), &rank, &tolerance, work.data(), &info, 1);
    // U with U'U = P' A P, rows beyond the rank zero, then F = U P' column by column.
    std::vector<double> f(static_cast<std::size_t>(n) * n, 0.0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= j && i < rank; ++i)
            f[static_cast<std::size_t>(pivots[j] - 1) * n + i] = a[static_cast<std::size_t>(j) * n + i];
    std::vector<double> tau(n), query(1);
    int lwork = -1;
    LAPACK(dgeqrf_)(&n, &n, f.data(), &n, tau.data(), query.data(), &lwork, &info);
    lwork = reportedSize(query[0]);
    work.assign(lwork, 0.0);
    LAPACK(dgeqrf_)(&n, &n, f.data(), &n, tau.data(), work.data(), &lwork, &info);
    // R with a non-negative diagonal: a row's sign does not change R'R.
    for (int i = 0; i < n; ++i) {
        double sign = f[static_cast<std::size_t>(i) * n + i] < 0.0 ? -1.0 : 1.0;
        for (int j = 0; j < n; ++j)
            a[static_cast<std::size_t>(j) * n + i] =
                j < i ? 0.0 : sign * f[static_cast<std::size_t>(j) * n + i];
    }
    return rank;
}

namespace {

// A := (I - factor v v') A from the left (v of rows), or A (I - factor v v') from the right (v of
// cols): w = A'v or A v by DGEMV, then the rank-one update by DGER.
void reflect(bool fromLeft, int rows, int cols, const double* v, double factor, double* a, int lda) {
    if (rows == 0 || cols == 0) return;
    const char trans = fromLeft ? 'T' : 'N';
    const double one = 1.0, zero = 0.0, minusFactor = -factor;
    const int step = 1;
    std::vector<double> w(fromLeft ? cols : rows);
    LAPACK(dgemv_)(&trans, &rows, &cols, &one, a, &lda, v, &step, &zero, w.data(), &step, 1);
    const double* x = fromLeft ? v : w.data();
    const double* y = fromLeft ? w.data() : v;
    LAPACK(dger_)(&rows, &cols, &minusFactor, x, &step, y, &step, a, &lda);
}

}  // namespace

void blasReflect(int rows, int cols, const double* v, double factor, double* a, int lda) {
    reflect(true, rows, cols, v, factor, a, lda);
}

void blasReflectRight(int rows, int cols, const double* v, double factor, double* a, int lda) {
    reflect(false, rows, cols, v, factor, a, lda);
}

int lapackHessenbergEigenvalues(int n, double* h, double* re, double* im) {
    if (n == 0) return 0;
    const char job = 'E', compz = 'N';
    const int one = 1, ldz = 1;
    double z = 0.0, query = 0.0;
    int lwork = -1, info = 0;
    LAPACK(dhseqr_)(&job, &compz, &n, &one, &n, h, &n, re, im, &z, &ldz, &query, &lwork, &info, 1, 1);
    lwork = std::max(reportedSize(query), n);
    std::vector<double> work(lwork);
    LAPACK(dhseqr_)(&job, &compz, &n, &one, &n, h, &n, re, im, &z, &ldz, work.data(), &lwork, &info, 1, 1);
    return info;
}
