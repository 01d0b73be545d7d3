// Unshifted QR iterations that bring a gramian-like symmetric matrix to diagonal form.
#include <cmath>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/househld.h"

namespace {

// The reflection I - 2 v v'/v'v applied from the left to rows first.. of M.
void reflectRows(Matrix& M, const std::vector<double>& v, double vtv, unsigned first) {
    for (unsigned c = 0; c < M.columnNumber(); ++c) {
        double d = 0.0;
        for (unsigned i = 0; i < v.size(); ++i) d += v[i] * M(first + i, c);
        double f = 2.0 * d / vtv;
        for (unsigned i = 0; i < v.size(); ++i) M(first + i, c) -= f * v[i];
    }
}

// The same reflection applied from the right to columns first.. of M.
void reflectColumns(Matrix& M, const std::vector<double>& v, double vtv, unsigned first) {
    for (unsigned r = 0; r < M.rowNumber(); ++r) {
        double d = 0.0;
        for (unsigned i = 0; i < v.size(); ++i) d += M(r, first + i) * v[i];
        double f = 2.0 * d / vtv;
        for (unsigned i = 0; i < v.size(); ++i) M(r, first + i) -= f * v[i];
    }
}

// The Householder vector that maps column col of M from row first down onto its first
// element; its square goes to vtv.
std::vector<double> reflector(const Matrix& M, unsigned col, unsigned first, unsigned length, double& vtv) {
    std::vector<double> v(length);
    double norm = 0.0;
    for (unsigned i = 0; i < length; ++i) {
        v[i] = M(first + i, col);
        norm += v[i] * v[i];
    }
    v[0] += (v[0] < 0.0 ? -1.0 : 1.0) * std::sqrt(norm);
    vtv = 0.0;
    for (double e : v) vtv += e * e;
    return v;
}

void toHessenberg(Matrix& A, Matrix& V) {
    unsigned n = A.rowNumber();
    for (unsigned j = 0; j + 2 < n; ++j) {
        double vtv;
        std::vector<double> v = reflector(A, j, j + 1, n - j - 1, vtv);
        if (vtv < zeroSquaredTolerance) continue;
        reflectRows(A, v, vtv, j + 1);
        reflectColumns(A, v, vtv, j + 1);
        reflectColumns(V, v, vtv, j + 1);
    }
}

}  // namespace

Matrix Algebra::qrIteration(Matrix& A, int mode) {
    unsigned n = A.rowNumber();
    Matrix V = Matrix::diagonal(n, 1.0);
    if (n == 2) return V;
    if (mode != 1) toHessenberg(A, V);
    std::vector<std::vector<double>> vectors(n > 1 ? n - 1 : 0);
    std::vector<double> squares(vectors.size());
    for (int iteration = 0; iteration < 5000; ++iteration) {
        for (unsigned k = 0; k + 1 < n; ++k) {
            vectors[k] = reflector(A, k, k, 2, squares[k]);
            if (squares[k] >= zeroTolerance) reflectRows(A, vectors[k], squares[k], k);
        }
        for (unsigned k = 0; k + 1 < n; ++k) {
            if (squares[k] < zeroTolerance) continue;
            reflectColumns(A, vectors[k], squares[k], k);
            reflectColumns(V, vectors[k], squares[k], k);
        }
    }
    return V;
}

Matrix Algebra::qrIterationFull(Matrix& A) {
    unsigned n = A.rowNumber();
    Matrix V = Matrix::diagonal(n, 1.0);
    for (int iteration = 0; iteration < 500; ++iteration) {
        Matrix W = householder::sideBySide(A, Matrix::diagonal(n, 1.0));
        for (unsigned j = 0; j < n; ++j) householder::step(W, j, j);
        Matrix R = W.subMatrix(0, 0, n, n);
        for (unsigned c = 0; c < n; ++c)
            for (unsigned r = c + 1; r < n; ++r) R(r, c) = 0.0;
        Matrix Q = W.subMatrix(0, n, n, n).transpose();
        A = R * Q;
        V = V * Q;
    }
    return V;
}
