// Lyapunov equations in factored form: the triangular factor R of P = R'R is iterated by
// stacking blocks and triangularising.
#include <cmath>

#include "algebra/algebra.h"
#include "algebra/factored.h"
#include "algebra/househld.h"

namespace {

// The top n x n block of a triangularised matrix, with the zeros below the diagonal.
Matrix upperBlock(const Matrix& M, unsigned n) {
    Matrix R = M.subMatrix(0, 0, n, n);
    for (unsigned c = 0; c < n; ++c)
        for (unsigned r = c + 1; r < n; ++r) R(r, c) = 0.0;
    return R;
}

}  // namespace

namespace factored {

Matrix start(const Matrix& X0, unsigned n) {
    if (X0.rowNumber() == n && X0.columnNumber() == n) return X0;
    return Matrix(n, n);
}

Matrix step(Algebra& algebra, const Matrix& R, const Matrix& M, const Matrix& L, const Matrix* Ninv) {
    unsigned n = R.columnNumber();
    Matrix S = householder::stack(R * M, L);
    algebra.triangularize(S, n, false, false);
    Matrix next = upperBlock(S, n);
    if (Ninv) next = next * *Ninv;
    algebra.triangularize(next, n, false, false);
    return upperBlock(next, n);
}

bool converged(Algebra& algebra, Matrix& R, Matrix& Rprev, double limit, double& e, double& value) {
    householder::repairSigns(R, Rprev);
    e = algebra.normTriangular(R - Rprev, true);
    value = algebra.normTriangular(R, true);
    if (e / value < limit) return true;
    Rprev = R;
    return false;
}

}  // namespace factored

int Algebra::lyap(const Matrix& A, Matrix& L, const Matrix& X0) {
    unsigned n = A.rowNumber();
    Matrix I = Matrix::diagonal(n, 1.0);
    double half = std::sqrt(0.5);
    Matrix M = (A + I) * half;
    Matrix Ninv = inv((I - A) * half);
    Matrix R = factored::start(X0, n);
    Matrix Rprev = R;
    int iteration = 0;
    double e, value;
    while (iteration < 1000) {
        ++iteration;
        R = factored::step(*this, R, M, L, &Ninv);
        if (factored::converged(*this, R, Rprev, 1e-5, e, value)) break;
    }
    L = R;
    return iteration;
}

void Algebra::lyapPlain(const Matrix& A, Matrix& L, const Matrix& X0) {
    unsigned n = A.rowNumber();
    Matrix I = Matrix::diagonal(n, 1.0);
    double half = std::sqrt(0.5);
    Matrix M = (A + I) * half;
    Matrix Ninv = inv((I - A) * half);
    Matrix R = factored::start(X0, n);
    for (int iteration = 0; iteration < 200; ++iteration) R = factored::step(*this, R, M, L, &Ninv);
    L = R;
}

int Algebra::lyapd(const Matrix& A, Matrix& L, const Matrix& X0) {
    unsigned n = A.rowNumber();
    Matrix R = factored::start(X0, n);
    Matrix Rprev = R;
    int iteration = 0;
    double e, value;
    while (iteration < 1000) {
        ++iteration;
        R = factored::step(*this, R, A, L, 0);
        if (factored::converged(*this, R, Rprev, 1e-5, e, value)) break;
    }
    L = R;
    return iteration;
}
