// HinfRiccati: normalisation of the plant, the two Riccati equations through the ordered Schur form
// of their Hamiltonians, the feasibility test and the bisection on the level.
#include "control/hinfric.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "control/bilinear.h"

using dynop::block;
using dynop::sideBySide;
using dynop::stack;

namespace {

const double infinity = std::numeric_limits<double>::infinity();
// Relative size of the smallest singular value that still counts as full rank.
const double rankTolerance = 1e-10;
// An eigenvalue of a Hamiltonian whose real part is below this fraction of the largest modulus
// lies on the imaginary axis: the equation has no stabilising solution.
const double axisTolerance = 1e-9;
// The negative eigenvalue of a solution, relative to its norm, still counted as zero.
const double definiteTolerance = 1e-9;
// The smallest singular value of the orthonormal basis block X1 that still counts as invertible.
const double singularTolerance = 1e-14;
const double highestLevel = 1e12;
const int bisectionLimit = 200;

double largestSingularValue(Algebra& alg, const Matrix& M) {
    return M.rowNumber() && M.columnNumber() ? alg.norm2(M) : 0.0;
}

// Whether the singular values s (descending) give full rank count.
bool fullRank(const Vector& s, unsigned count) {
    return count == 0 || (s[0] > 0.0 && s[count - 1] > rankTolerance * s[0]);
}

Matrix inverseDiagonal(const Vector& s, unsigned count) {
    Matrix M(count, count);
    for (unsigned i = 0; i < count; ++i) M(i, i) = 1.0 / s[i];
    return M;
}

Matrix zeroThenIdentity(unsigned rows, unsigned identity, bool stacked) {
    Matrix I = Matrix::diagonal(identity, 1.0);
    return stacked ? stack(Matrix(rows - identity, identity), I)
                   : sideBySide(Matrix(identity, rows - identity), I);
}

bool finite(const Matrix& M) {
    for (unsigned i = 0; i < M.elementCount(); ++i)
        if (!std::isfinite(M.elements()[i])) return false;
    return true;
}

double spectralRadius(Algebra& alg, const Matrix& M) {
    Matrix values = alg.computeEigenvalues(M);
    double r = 0.0;
    for (unsigned i = 0; i < values.rowNumber(); ++i) r = std::max(r, std::hypot(values(i, 0), values(i, 1)));
    return r;
}

// Symmetric X with no eigenvalue below -definiteTolerance ||X||.
bool semidefinite(Algebra& alg, const Matrix& X) {
    Matrix values = alg.computeEigenvalues(X);
    double norm = 0.0, least = 0.0;
    for (unsigned i = 0; i < values.rowNumber(); ++i) {
        norm = std::max(norm, std::fabs(values(i, 0)));
        least = std::min(least, values(i, 0));
    }
    return least >= -definiteTolerance * norm;
}

// The stabilising solution X >= 0 of the Riccati equation whose Hamiltonian is
//   [A 0; -C'C -A'] - [B; -C'D] R^-1 [D'C  B'],  R = D'D - diag(gamma^2 I (first m1), 0),
// from the stable invariant subspace [X1; X2] of the ordered real Schur form, X = X2 X1^-1, and
// the gain F = -R^-1 (D'C + B'X). False when R is singular, an eigenvalue lies on the imaginary
// axis, X1 is singular or X is not semidefinite.
bool stabilisingSolution(Algebra& alg, const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D,
                         unsigned m1, double gamma, Matrix& X, Matrix& F) {
    unsigned n = A.rowNumber();
    Matrix R = D.transpose() * D;
    for (unsigned i = 0; i < m1; ++i) R(i, i) -= gamma * gamma;
    Matrix Rinv = alg.inv(R);
    Matrix Abar = A - B * Rinv * D.transpose() * C;
    Matrix H = stack(sideBySide(Abar, -(B * Rinv * B.transpose())),
                     sideBySide(C.transpose() * (D * Rinv * D.transpose() * C - C), -Abar.transpose()));
    Matrix Q(0, 0), values(0, 0);
    if (alg.schurDecomposition(Q, H, values, true, true) != int(n)) return false;
    double largest = 0.0, nearest = infinity;
    for (unsigned i = 0; i < 2 * n; ++i) {
        largest = std::max(largest, std::hypot(values(i, 0), values(i, 1)));
        nearest = std::min(nearest, std::fabs(values(i, 0)));
    }
    Matrix X1 = block(Q, 0, 0, n, n), X2 = block(Q, n, 0, n, n);
    if (!(nearest > axisTolerance * largest) || !(alg.minSingularValue(X1) > singularTolerance)) return false;
    X = alg.solve(X1.transpose(), X2.transpose());
    X = (X + X.transpose()) * 0.5;
    F = -(Rinv * (D.transpose() * C + B.transpose() * X));
    return finite(X) && semidefinite(alg, X);
}

}  // namespace

HinfRiccati::HinfRiccati(const DynOp& plant) : discrete(plant.isDiscreteTime()) {
    admissible = normalise(discrete ? continuousImage(plant) : plant);
}

// D12 = U [S; 0] V' turns into [0; I] with z -> [U2 U1]' z and u -> V S^-1 u; D21 = U [S 0] V'
// into [0 I] with w -> [V2 V1] w and y -> S^-1 U' y.
bool HinfRiccati::normalise(const DynOp& plant) {
    Algebra alg;
    p.n = plant.order();
    p.m2 = plant.controlNumber();
    p.m1 = plant.inputNumber() - p.m2;
    p.p2 = plant.measureNumber();
    p.p1 = plant.outputNumber() - p.p2;
    if (!p.n || !p.m1 || !p.m2 || !p.p1 || !p.p2) {
        std::cout << "Riccati route: the plant needs states, disturbances, controls, objectives and measures"
                  << std::endl;
        return false;
    }
    dynop::Partition given(plant);
    Matrix D12 = given.D12, D21 = given.D21;
    Matrix U12(0, 0), V12t(0, 0), U21(0, 0), V21t(0, 0);
    Vector s12 = alg.svd(D12, U12, V12t, true), s21 = alg.svd(D21, U21, V21t, true);
    if (p.p1 < p.m2 || !fullRank(s12, p.m2)) {
        std::cout << "Riccati route: D12 has no full column rank, not every control reaches the objectives"
                  << std::endl;
        return false;
    }
    if (p.m1 < p.p2 || !fullRank(s21, p.p2)) {
        std::cout << "Riccati route: D21 has no full row rank, not every measure sees the disturbances"
                  << std::endl;
        return false;
    }
    Matrix Uz = sideBySide(block(U12, 0, p.m2, p.p1, p.p1 - p.m2), block(U12, 0, 0, p.p1, p.m2));
    Matrix V21 = V21t.transpose();
    Matrix Uw = sideBySide(block(V21, 0, p.p2, p.m1, p.m1 - p.p2), block(V21, 0, 0, p.m1, p.p2));
    p.Tu = V12t.transpose() * inverseDiagonal(s12, p.m2);
    p.Ty = inverseDiagonal(s21, p.p2) * U21.transpose();
    p.A = given.A;
    p.B1 = given.B1 * Uw;
    p.B2 = given.B2 * p.Tu;
    p.C1 = Uz.transpose() * given.C1;
    p.C2 = p.Ty * given.C2;
    p.D11 = Uz.transpose() * given.D11 * Uw;
    p.D12 = zeroThenIdentity(p.p1, p.m2, true);
    p.D21 = zeroThenIdentity(p.m1, p.p2, false);
    p.D22 = p.Ty * given.D22 * p.Tu;
    return true;
}

// Parrott: no compensator brings the norm of D11 + D12 Dk D21 below the larger of the norms of
// D11's rows that the controls cannot reach and of its columns that the measures do not see.
double HinfRiccati::parrottBound(bool stateFeedbackOnly) const {
    Algebra alg;
    double rows = largestSingularValue(alg, block(p.D11, 0, 0, p.p1 - p.m2, p.m1));
    if (stateFeedbackOnly) return rows;
    return std::max(rows, largestSingularValue(alg, block(p.D11, 0, 0, p.p1, p.m1 - p.p2)));
}

// The filter equation is the control equation of the dual problem (A', [C1' C2'], B1', [D11' D21']).
bool HinfRiccati::solve(double gamma, bool stateFeedbackOnly, Solution& s) const {
    if (!admissible || !(gamma > parrottBound(stateFeedbackOnly))) return false;
    Algebra alg;
    if (!stabilisingSolution(alg, p.A, sideBySide(p.B1, p.B2), p.C1, sideBySide(p.D11, p.D12), p.m1, gamma,
                             s.X, s.F))
        return false;
    if (stateFeedbackOnly) return true;
    Matrix Ft(0, 0);
    if (!stabilisingSolution(alg, p.A.transpose(), sideBySide(p.C1.transpose(), p.C2.transpose()),
                             p.B1.transpose(), sideBySide(p.D11.transpose(), p.D21.transpose()), p.p1, gamma,
                             s.Y, Ft))
        return false;
    s.L = Ft.transpose();
    return spectralRadius(alg, s.X * s.Y) < gamma * gamma;
}

bool HinfRiccati::isFeasible(double gamma) const {
    Solution s;
    return solve(gamma, false, s);
}

// A feasible level first, by steps of 4 from the larger of 1 and twice the bound of D11, then
// bisection, geometric once the lower end is positive.
double HinfRiccati::bisect(bool stateFeedbackOnly, double tolerance) const {
    if (!admissible) return infinity;
    Solution s;
    double low = parrottBound(stateFeedbackOnly), high = std::max(1.0, 2.0 * low);
    while (!solve(high, stateFeedbackOnly, s)) {
        low = high;
        high *= 4.0;
        if (high > highestLevel) {
            std::cout << "Riccati route: no level up to " << highestLevel << " is feasible" << std::endl;
            return infinity;
        }
    }
    for (int i = 0; i < bisectionLimit && high - low > tolerance * high; ++i) {
        double middle = low > 0.0 ? std::sqrt(low * high) : 0.5 * high;
        (solve(middle, stateFeedbackOnly, s) ? high : low) = middle;
    }
    return high;
}

double HinfRiccati::optimalGamma(double tolerance) const { return bisect(false, tolerance); }

double HinfRiccati::stateFeedbackGamma(double tolerance) const { return bisect(true, tolerance); }
