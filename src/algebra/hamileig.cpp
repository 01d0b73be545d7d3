// Eigenvalues of a Hamiltonian matrix by the square-reduced method: H^2 is skew-Hamiltonian, and
// symplectic orthogonal reflections and rotations reduce it to [A N; 0 A'] with A upper Hessenberg,
// whose n eigenvalues are the squares of H's. A third of the work of the 2n x 2n eigenvalue
// problem, at the price of half the digits of eigenvalues much smaller than the norm.
#include <cmath>
#include <complex>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/lapack.h"

namespace {

// The reflection I - beta v v' that takes x (len elements) onto a multiple of e1; false when x
// already is one.
bool reflectionOf(const double* x, unsigned len, std::vector<double>& v, double& beta) {
    double tail = 0.0;
    for (unsigned i = 1; i < len; ++i) tail += x[i] * x[i];
    if (tail == 0.0) return false;
    double norm = std::sqrt(x[0] * x[0] + tail), alpha = x[0] < 0.0 ? norm : -norm;
    v.assign(x, x + len);
    v[0] -= alpha;
    beta = 2.0 / (v[0] * v[0] + tail);
    return true;
}

// W := P W P with P = diag(R, R) and R the reflection on coordinates k.. of each half.
void reflectBothHalves(Matrix& W, unsigned n, unsigned k, const std::vector<double>& v, double beta) {
    int size = int(2 * n), len = int(n - k);
    double* w = W.elements();
    for (unsigned half : {0u, n}) blasReflect(len, size, v.data(), beta, w + half + k, size);
    for (unsigned half : {0u, n})
        blasReflectRight(size, len, v.data(), beta, w + size_t(half + k) * size, size);
}

// W := G W G' with G the rotation [c s; -s c] in the plane of coordinates k and n + k.
void rotate(Matrix& W, unsigned n, unsigned k, double c, double s) {
    unsigned size = 2 * n;
    double* w = W.elements();
    for (unsigned col = 0; col < size; ++col) {
        double& a = w[size_t(col) * size + k];
        double& b = w[size_t(col) * size + n + k];
        double x = a, y = b;
        a = c * x + s * y, b = -s * x + c * y;
    }
    double* p = w + size_t(k) * size;
    double* q = w + size_t(n + k) * size;
    for (unsigned row = 0; row < size; ++row) {
        double x = p[row], y = q[row];
        p[row] = c * x + s * y, q[row] = -s * x + c * y;
    }
}

}  // namespace

Matrix Algebra::hamiltonianEigenvalues(const Matrix& H) {
    unsigned n = H.rowNumber() / 2, size = 2 * n;
    if (n == 0) return Matrix(0, 2);
    Matrix W = H * H, values(size, 2);
    std::vector<double> v;
    double beta;
    for (unsigned j = 0; j + 1 < n; ++j) {
        const double* column = W.elements() + size_t(j) * size;
        if (reflectionOf(column + n + j + 1, n - j - 1, v, beta)) reflectBothHalves(W, n, j + 1, v, beta);
        double a = column[j + 1], b = column[n + j + 1], r = std::hypot(a, b);
        if (b != 0.0) rotate(W, n, j + 1, a / r, b / r);
        if (reflectionOf(column + j + 1, n - j - 1, v, beta)) reflectBothHalves(W, n, j + 1, v, beta);
    }
    Matrix A = W.subMatrix(0, 0, n, n);
    for (unsigned c = 0; c < n; ++c)
        for (unsigned r = c + 2; r < n; ++r) A(r, c) = 0.0;
    Matrix squares(n, 2);
    lapackHessenbergEigenvalues(int(n), A.elements(), squares.elements(), squares.elements() + n);
    for (unsigned k = 0; k < n; ++k) {
        std::complex<double> lambda = std::sqrt(std::complex<double>(squares(k, 0), squares(k, 1)));
        values(2 * k, 0) = lambda.real(), values(2 * k, 1) = lambda.imag();
        values(2 * k + 1, 0) = -lambda.real(), values(2 * k + 1, 1) = -lambda.imag();
    }
    return values;
}
