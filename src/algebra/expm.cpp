// The matrix exponential by the diagonal Padé approximant of degree 8 with scaling and squaring:
// the matrix is divided by a power of two that brings its infinity norm below 1/2, the approximant
// D^-1 N is built from the powers of the scaled matrix, then squared back. Building N and D from
// successive products keeps small blocks (the input columns of [A B; 0 0]) accurate to their own
// size.
#include <cmath>

#include "algebra/algebra.h"

namespace {

const int padeDegree = 8;

// Adds c X to S.
void addScaled(Matrix& S, double c, const Matrix& X) {
    double* s = S.elements();
    const double* x = X.elements();
    for (unsigned k = 0, n = S.elementCount(); k < n; ++k) s[k] += c * x[k];
}

}  // namespace

Matrix Algebra::exponential(const Matrix& A) {
    unsigned n = A.rowNumber();
    if (n == 0) return Matrix(0, 0);
    int exponent = 0;
    std::frexp(normInf(A), &exponent);
    int s = exponent + 1 > 0 ? exponent + 1 : 0;
    Matrix X = A * std::ldexp(1.0, -s), scaled = X;
    Matrix N = Matrix::diagonal(n, 1.0), D = N;
    double c = 0.5;
    addScaled(N, c, X);
    addScaled(D, -c, X);
    for (int k = 2; k <= padeDegree; ++k) {
        c *= double(padeDegree - k + 1) / double(k * (2 * padeDegree - k + 1));
        X = scaled * X;
        addScaled(N, c, X);
        addScaled(D, k % 2 ? -c : c, X);
    }
    Matrix E = solve(D, N);
    for (int k = 0; k < s; ++k) E = E * E;
    return E;
}
