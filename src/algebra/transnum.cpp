// Numerator of a transfer matrix entry: infinite zeros deflated by reflections, the finite ones
// through QZ on the system pencil, the gain from the deflation.
#include "algebra/transnum.h"

#include <cmath>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/househld.h"
#include "algebra/lapack.h"
#include "algebra/ratfun.h"

namespace {

// The system matrix S = [d c; b A] of one entry, of order n + 1; the zeros are the finite
// eigenvalues of the pencil S - s diag(0, I), whose determinant is (-1)^n times the numerator.
Matrix systemMatrix(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, unsigned i,
                    unsigned j) {
    unsigned n = A.rowNumber();
    Matrix S(n + 1, n + 1);
    S(0, 0) = D(i, j);
    for (unsigned r = 0; r < n; ++r) {
        S(0, r + 1) = C(i, r);
        S(r + 1, 0) = B(r, j);
        for (unsigned c = 0; c < n; ++c) S(r + 1, c + 1) = A(r, c);
    }
    return S;
}

// Rows 1..n of every column of S reflected by the reflection that takes column 0 onto the first
// state; false when that column is too small to define one.
bool reflectStates(Matrix& S, const Matrix& input) {
    Matrix M = householder::sideBySide(input, S);
    if (!householder::step(M, 0, 1)) return false;
    S = M.subMatrix(0, 1);
    return true;
}

// With d = 0, a reflection H takes b onto beta e1; S becomes [0 cH; beta e1 HAH], and the
// numerator is beta times that of the system with row 1 and column 0 taken out, whose d is
// (cH)(0). S shrinks by one; the answer is beta, 0 when b is negligible against aNorm.
double deflate(Matrix& S, double aNorm) {
    Matrix input = S.subMatrix(0, 0, 0, 1);
    if (!reflectStates(S, input)) return 0.0;
    S = S.transpose();
    reflectStates(S, input);
    S = S.transpose();
    double beta = S(1, 0);
    if (std::fabs(beta) <= zeroTolerance * aNorm) return 0.0;
    unsigned n = S.rowNumber() - 1;
    Matrix reduced(n, n);
    for (unsigned r = 0; r < n; ++r)
        for (unsigned c = 0; c < n; ++c) reduced(r, c) = S(r ? r + 1 : 0, c + 1);
    S = reduced;
    return beta;
}

// The real eigenvalue of least |beta| / |alpha|: the pencil of a system with d != 0 has exactly
// one infinite eigenvalue, and it is real.
unsigned infiniteIndex(const std::vector<double>& re, const std::vector<double>& im,
                       const std::vector<double>& beta) {
    unsigned best = unsigned(beta.size());
    for (unsigned k = 0; k < beta.size(); ++k)
        if (im[k] == 0.0 &&
            (best == beta.size() || std::fabs(beta[k] * re[best]) < std::fabs(beta[best] * re[k])))
            best = k;
    return best;
}

// The finite zeros of the system matrix S with d != 0, rows (re, im); a conjugate pair is written
// from its first member so that both rows match exactly.
Matrix finiteZeros(Matrix S) {
    int m = int(S.rowNumber());
    Matrix E = Matrix::diagonal(unsigned(m), 1.0);
    E(0, 0) = 0.0;
    std::vector<double> re(m), im(m), beta(m);
    lapackGeneralizedEigenvalues(m, S.elements(), E.elements(), re.data(), im.data(), beta.data());
    unsigned infinite = infiniteIndex(re, im, beta);
    Matrix zeros(unsigned(m - 1), 2);
    for (unsigned k = 0, row = 0; k < unsigned(m); ++k) {
        if (k == infinite) continue;
        zeros(row, 0) = re[k] / beta[k];
        zeros(row++, 1) = im[k] / beta[k];
        if (im[k] <= 0.0) continue;
        zeros(row, 0) = re[k] / beta[k];
        zeros(row++, 1) = -im[k] / beta[k];
        ++k;
    }
    return zeros;
}

}  // namespace

Vector transferNumerator(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, unsigned i,
                         unsigned j) {
    Algebra algebra;
    Matrix S = systemMatrix(A, B, C, D, i, j);
    double aNorm = algebra.normF(A);
    double dTolerance = zeroTolerance * algebra.normF(S.subMatrix(0, 0, 1, 0));  // against the output row
    double gain = 1.0;
    while (std::fabs(S(0, 0)) <= dTolerance) {
        double beta = S.rowNumber() > 1 ? deflate(S, aNorm) : 0.0;
        if (beta == 0.0) return Vector(1u, 0.0);
        gain *= beta;
    }
    return polynomialFromRoots(finiteZeros(S)) * (gain * S(0, 0));
}
