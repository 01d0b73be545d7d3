// DynOp pole placement: the gain K that gives A - B K the desired poles.
#include <cmath>
#include <complex>
#include <cstdlib>
#include <iostream>

#include "control/dynop.h"
#include "quill/intarray.h"

using dynop::block;
using dynop::sideBySide;
using dynop::stack;

namespace {

// The real block-diagonal matrix with the desired poles: p for a real pole, [0 1; -re^2 - im^2,
// 2 re] for the pair re +- j im standing on two rows.
Matrix targetOf(const Matrix& poles, unsigned n, const Matrix& owner) {
    if (poles.rowNumber() != n || poles.columnNumber() < 2)
        owner.dimensionError("place", poles.rowNumber(), 2);
    Matrix P(n, n);
    for (unsigned i = 0; i < n; ++i) {
        double re = poles(i, 0), im = poles(i, 1);
        if (im == 0.0 || i + 1 == n) {
            P(i, i) = re;
            continue;
        }
        P(i, i + 1) = 1.0;
        P(i + 1, i) = -re * re - im * im;
        P(i + 1, i + 1) = 2.0 * re;
        ++i;
    }
    return P;
}

// m x n values of the C library's generator times 0.0001, each row scaled to unit norm.
Matrix randomRows(unsigned m, unsigned n) {
    Matrix G(m, n);
    for (unsigned i = 0; i < m; ++i) {
        double norm = 0.0;
        for (unsigned j = 0; j < n; ++j) {
            G(i, j) = std::rand() * 0.0001;
            norm += G(i, j) * G(i, j);
        }
        norm = std::sqrt(norm);
        for (unsigned j = 0; j < n && norm > 0.0; ++j) G(i, j) /= norm;
    }
    return G;
}

// Whether some eigenvalue of A lies on a desired pole: the Sylvester equation is then singular.
bool meetsTarget(Algebra& alg, const Matrix& A, const Matrix& P) {
    Matrix own = alg.computeEigenvalues(A), target = alg.computeEigenvalues(P);
    double scale = 1.0 + alg.normF(A);
    for (unsigned i = 0; i < own.rowNumber(); ++i)
        for (unsigned j = 0; j < target.rowNumber(); ++j)
            if (std::abs(std::complex<double>(own(i, 0) - target(j, 0), own(i, 1) - target(j, 1))) <
                1e-8 * scale)
                return true;
    return false;
}

// X with A X - X P = F for the block-diagonal P, block column by block column.
Matrix sylvester(Algebra& alg, const Matrix& A, const Matrix& P, const Matrix& F) {
    unsigned n = A.rowNumber();
    Matrix X(n, P.columnNumber());
    for (unsigned j = 0; j < P.columnNumber(); ++j) {
        bool pair = j + 1 < P.columnNumber() && P(j, j + 1) != 0.0;
        if (!pair) {
            X.setColumn(j, alg.solve(A - Matrix::diagonal(n, P(j, j)), block(F, 0, j, n, 1)).column(0));
            continue;
        }
        // A [x1 x2] - [x1 x2] Pb = [f1 f2] as one system of size 2n.
        Matrix I = Matrix::diagonal(n, 1.0);
        Matrix M = stack(sideBySide(A - I * P(j, j), -(I * P(j + 1, j))),
                         sideBySide(-(I * P(j, j + 1)), A - I * P(j + 1, j + 1)));
        Matrix x = alg.solve(M, stack(block(F, 0, j, n, 1), block(F, 0, j + 1, n, 1)));
        X.setColumn(j, x.column(0, 0, int(n)));
        X.setColumn(j + 1, x.column(0, int(n), int(n)));
        ++j;
    }
    return X;
}

}  // namespace

// The controllable order comes from the staircase form. The gain then follows from the Sylvester
// equation A X - X P = B G with a random G: A - B G X^-1 is similar to P. When an eigenvalue of A
// sits on a desired pole, a random preliminary feedback moves A's eigenvalues first.
Matrix DynOp::place(const Matrix& desiredPoles, const IntArray* columns, bool singleInput) const {
    Algebra& alg = numerics();
    unsigned n = order();
    Matrix b = dynop::columnsOf(stateB(), columns);
    Matrix q(b.columnNumber(), 1);
    for (unsigned i = 0; i < q.rowNumber(); ++i) q(i, 0) = 1.0 / q.rowNumber();
    if (singleInput) b = b * q;
    Matrix a(stateA()), bs(b);
    IntArray indices(0);
    alg.staircase(a, bs, indices, zeroTolerance);
    unsigned controllable = 0;
    for (unsigned i = 0; i < indices.size(); ++i) controllable += unsigned(indices[int(i)]);
    if (n == 0 || controllable < n) {
        std::cout << "system not completely controllable,"
                  << "\n"
                  << "controllable part has order = " << controllable << std::endl;
        return Matrix();
    }
    Matrix P = targetOf(desiredPoles, n, A);
    Matrix K0(b.columnNumber(), n);
    Matrix moved = A;
    if (meetsTarget(alg, A, P)) {
        K0 = randomRows(b.columnNumber(), n) * (alg.normF(A) + 1.0) / (alg.normF(b) + 1.0);
        moved = A - b * K0;
    }
    Matrix G = randomRows(b.columnNumber(), n);
    Matrix X = sylvester(alg, moved, P, b * G);
    Matrix K = K0 + alg.solve(X.transpose(), G.transpose()).transpose();
    return singleInput ? q * K : K;
}
