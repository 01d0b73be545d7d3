// Lyapunov and Stein equations solved directly through the real Schur form of the system matrix
// (Bartels-Stewart), and the triangular factor of a semidefinite solution.
#include <vector>

#include "algebra/algebra.h"
#include "algebra/lapack.h"

namespace {

// The starts of the diagonal blocks (1x1 or 2x2) of a quasi-triangular T, then n.
std::vector<unsigned> blockStarts(const Matrix& T) {
    unsigned n = T.rowNumber();
    std::vector<unsigned> starts;
    for (unsigned k = 0; k < n; k += (k + 1 < n && T(k + 1, k) != 0.0) ? 2 : 1) starts.push_back(k);
    starts.push_back(n);
    return starts;
}

// X(I, J) from X - T(I, I) X S' = R for blocks of at most 2x2: the Kronecker form
// (I - S (x) T(I, I)) vec X = vec R, of size at most 4.
void solveSmallStein(const Matrix& T, unsigned i, unsigned p, const Matrix& S, unsigned q, const double* r,
                     double* x) {
    if (p == 1 && q == 1) {
        x[0] = r[0] / (1.0 - S(0, 0) * T(i, i));
        return;
    }
    int size = int(p * q);
    double M[16], rhs[4];
    for (unsigned b = 0; b < q; ++b)
        for (unsigned a = 0; a < p; ++a) {
            unsigned row = b * p + a;
            rhs[row] = r[row];
            for (unsigned d = 0; d < q; ++d)
                for (unsigned c = 0; c < p; ++c)
                    M[(d * p + c) * size + row] = (row == d * p + c ? 1.0 : 0.0) - S(b, d) * T(i + a, i + c);
        }
    lapackSolve(size, 1, M, rhs, x);
}

// Columns J of X with X(:, J) - T X(:, J) S' = R (n x q, overwritten), S = T(J, J): block rows from
// the bottom, each solved row block feeding the right-hand sides above it.
void solveSteinColumns(const Matrix& T, const std::vector<unsigned>& starts, const Matrix& S, Matrix& R,
                       Matrix& X, unsigned j) {
    unsigned q = S.rowNumber();
    for (size_t b = starts.size() - 1; b-- > 0;) {
        unsigned i = starts[b], p = starts[b + 1] - i;
        double r[4], x[4];
        for (unsigned c = 0; c < q; ++c)
            for (unsigned a = 0; a < p; ++a) r[c * p + a] = R(i + a, c);
        solveSmallStein(T, i, p, S, q, r, x);
        double y[4] = {0.0, 0.0, 0.0, 0.0};  // X(I, J) S'
        for (unsigned c = 0; c < q; ++c)
            for (unsigned a = 0; a < p; ++a) {
                X(i + a, j + c) = x[c * p + a];
                for (unsigned d = 0; d < q; ++d) y[d * p + a] += x[c * p + a] * S(d, c);
            }
        unsigned n = T.rowNumber();
        for (unsigned d = 0; d < q; ++d)
            for (unsigned a = 0; a < p; ++a) {
                const double* t = T.elements() + size_t(i + a) * n;
                double* rd = R.elements() + size_t(d) * n;
                for (unsigned k = 0; k < i; ++k) rd[k] += t[k] * y[d * p + a];
            }
    }
}

// X with X - T X T' = C for quasi-triangular T, block column by block column from the last: the
// columns already known enter the right-hand side through one product with T.
Matrix triangularStein(const Matrix& T, const Matrix& C) {
    unsigned n = T.rowNumber();
    std::vector<unsigned> starts = blockStarts(T);
    Matrix X(n, n);
    for (size_t b = starts.size() - 1; b-- > 0;) {
        unsigned j = starts[b], q = starts[b + 1] - j, rest = n - j - q;
        Matrix R = C.subMatrix(0, j, n, q);
        if (rest) {
            Matrix W(n, q);
            blasProduct(int(n), int(q), int(rest), X.elements() + size_t(j + q) * n, false,
                        T.subMatrix(j, j + q, q, rest).elements(), true, W.elements());
            R += T * W;
        }
        solveSteinColumns(T, starts, T.subMatrix(j, j, q, q), R, X, j);
    }
    return X;
}

// The matrix with rows and columns in reverse order: it takes a lower quasi-triangular matrix to an
// upper one.
Matrix reversed(const Matrix& M) {
    unsigned n = M.rowNumber();
    Matrix R(n, n);
    for (unsigned c = 0; c < n; ++c)
        for (unsigned r = 0; r < n; ++r) R(r, c) = M(n - 1 - r, n - 1 - c);
    return R;
}

// X in the Schur basis, with C = (LQ)'(LQ): T X + X T' = -C, or X - T X T' = C when discrete; with
// transposed, T' in place of T.
Matrix schurBasisSolution(const Matrix& T, const Matrix& Q, const Matrix& L, bool discrete, bool transposed) {
    unsigned n = T.rowNumber();
    Matrix LQ = L * Q, C(n, n);
    blasProduct(int(n), int(n), int(LQ.rowNumber()), LQ.elements(), true, LQ.elements(), false, C.elements());
    if (discrete)
        return transposed ? reversed(triangularStein(reversed(T.transpose()), reversed(C)))
                          : triangularStein(T, C);
    Matrix X = -C;
    lapackTriangularSylvester(transposed, !transposed, 1, int(n), int(n), T.elements(), T.elements(),
                              X.elements());
    return X;
}

// Q X Q', symmetric.
Matrix fromSchurBasis(const Matrix& Q, const Matrix& X) {
    unsigned n = Q.rowNumber();
    Matrix QX = Q * X, P(n, n);
    blasProduct(int(n), int(n), int(n), QX.elements(), false, Q.elements(), true, P.elements());
    for (unsigned c = 0; c < n; ++c)
        for (unsigned r = c + 1; r < n; ++r) P(r, c) = P(c, r) = 0.5 * (P(r, c) + P(c, r));
    return P;
}

}  // namespace

// With a' = Q T Q' and X = Q'PQ the equation becomes one in the Schur basis.
Matrix Algebra::lyapSolution(const Matrix& a, const Matrix& L, bool discrete) {
    Matrix T = a.transpose();
    Matrix Q = schur(T);
    return fromSchurBasis(Q, schurBasisSolution(T, Q, L, discrete, false));
}

// With A = Q T Q', P takes the equation in T and the observability gramian the one in T'.
void Algebra::gramianPair(const Matrix& A, const Matrix& B, const Matrix& C, bool discrete, Matrix& P,
                          Matrix& O) {
    Matrix T(A);
    Matrix Q = schur(T);
    P = fromSchurBasis(Q, schurBasisSolution(T, Q, B.transpose(), discrete, false));
    O = fromSchurBasis(Q, schurBasisSolution(T, Q, C, discrete, true));
}

Matrix Algebra::semidefiniteFactor(const Matrix& P) {
    Matrix R(P);
    lapackSemidefiniteFactor(int(P.rowNumber()), R.elements());
    return R;
}
