// Tests of the direct solvers: Lyapunov and Stein equations through the Schur form, the factor of
// a semidefinite matrix and the matrix exponential.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "algebra/algebra.h"

namespace {

Algebra& numeric() {
    static Algebra* algebra = new Algebra;
    return *algebra;
}

double frobenius(const Matrix& m) { return numeric().normF(m); }

// A random n x n matrix with its eigenvalues left of -0.2 (continuous) or inside radius 0.9.
Matrix randomStable(unsigned n, bool discrete, unsigned seed) {
    std::mt19937 engine(seed);
    std::normal_distribution<double> normal;
    Matrix A(n, n);
    for (unsigned k = 0; k < A.elementCount(); ++k) A.elements()[k] = normal(engine) / std::sqrt(n + 1.0);
    Matrix p = numeric().computeEigenvalues(A);
    double abscissa = -1e300, radius = 0.0;
    for (unsigned i = 0; i < n; ++i) {
        abscissa = std::max(abscissa, p(i, 0));
        radius = std::max(radius, std::hypot(p(i, 0), p(i, 1)));
    }
    if (n == 0) return A;
    return discrete ? A * (0.9 / radius) : A - Matrix::diagonal(n, abscissa + 0.2);
}

Matrix randomRows(unsigned rows, unsigned n, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Matrix L(rows, n);
    for (unsigned k = 0; k < L.elementCount(); ++k) L.elements()[k] = uniform(engine);
    return L;
}

// The equation's residual relative to the size of its terms.
double residual(const Matrix& a, const Matrix& L, const Matrix& P, bool discrete) {
    Matrix Q = L.transpose() * L;
    if (discrete) return frobenius(a.transpose() * P * a - P + Q) / (frobenius(P) + frobenius(Q));
    return frobenius(a.transpose() * P + P * a + Q) / (2.0 * frobenius(a) * frobenius(P) + frobenius(Q));
}

}  // namespace

TEST(DirectSolvers, LyapunovAndSteinResidualsAtEveryOrder) {
    for (bool discrete : {false, true})
        for (unsigned n : {0u, 1u, 2u, 10u, 60u}) {
            Matrix a = randomStable(n, discrete, 7 + n), L = randomRows(2, n, 11 + n);
            Matrix P = numeric().lyapSolution(a, L, discrete);
            ASSERT_EQ(n, P.rowNumber());
            ASSERT_EQ(n, P.columnNumber());
            if (n) {
                EXPECT_LT(residual(a, L, P, discrete), 1e-13) << "order " << n << " discrete " << discrete;
            }
            EXPECT_TRUE(frobenius(P - P.transpose()) == 0.0);
        }
}

TEST(DirectSolvers, GramianPairAgreesWithTheSingleSolutions) {
    for (bool discrete : {false, true})
        for (unsigned n : {0u, 1u, 2u, 10u, 60u}) {
            Matrix A = randomStable(n, discrete, 17 + n), B = randomRows(2, n, 19 + n).transpose(),
                   C = randomRows(3, n, 23 + n), P, O;
            numeric().gramianPair(A, B, C, discrete, P, O);
            Matrix singleP = numeric().lyapSolution(A.transpose(), B.transpose(), discrete),
                   singleO = numeric().lyapSolution(A, C, discrete);
            EXPECT_LE(frobenius(P - singleP), 1e-12 * frobenius(singleP)) << n << " " << discrete;
            EXPECT_LE(frobenius(O - singleO), 1e-12 * frobenius(singleO)) << n << " " << discrete;
        }
}

// For a = diag(d) and L a row of ones, P(i, j) is 1 / -(d_i + d_j), or 1 / (1 - d_i d_j) in
// discrete time; a pair of complex poles is taken through its real form.
TEST(DirectSolvers, DiagonalSystemsHaveTheirClosedForm) {
    for (bool discrete : {false, true}) {
        Matrix d = discrete ? Matrix("[0.5 -0.5 0.9 0]") : Matrix("[-1 -2 -0.5 -10]");
        unsigned n = d.columnNumber();
        Matrix a = Matrix::diagonal(d.row(0)), L(1, n);
        for (unsigned j = 0; j < n; ++j) L(0, j) = 1.0;
        Matrix P = numeric().lyapSolution(a, L, discrete);
        for (unsigned i = 0; i < n; ++i)
            for (unsigned j = 0; j < n; ++j) {
                double di = d(0, i), dj = d(0, j);
                EXPECT_NEAR(discrete ? 1.0 / (1.0 - di * dj) : -1.0 / (di + dj), P(i, j),
                            1e-14 * (1.0 + P(i, j)));
            }
    }
    // x' = [-s w; -w -s] x, L = I: P = I / (2 s), and in discrete time r^2 P + I = P.
    Matrix rotation("[-0.5 2;-2 -0.5]"), I = Matrix::diagonal(2, 1.0);
    EXPECT_LT(frobenius(numeric().lyapSolution(rotation, I, false) - I), 1e-14);
    Matrix P = numeric().lyapSolution(rotation * 0.2, I, true);  // radius r = 0.2 * sqrt(4.25)
    EXPECT_LT(frobenius(P - I / (1.0 - 0.04 * 4.25)), 1e-14);
}

TEST(DirectSolvers, SemidefiniteFactorOfFullAndDeficientRank) {
    for (unsigned n : {0u, 1u, 2u, 10u, 60u}) {
        for (unsigned rank : {n, n / 2}) {
            Matrix F = randomRows(rank, n, 3 + n), P = F.transpose() * F;
            Matrix R = numeric().semidefiniteFactor(P);
            EXPECT_LT(frobenius(R.transpose() * R - P), 1e-13 * (1.0 + frobenius(P))) << n << " " << rank;
            for (unsigned c = 0; c < n; ++c) {
                EXPECT_GE(R(c, c), 0.0);
                for (unsigned r = c + 1; r < n; ++r) EXPECT_EQ(0.0, R(r, c));
            }
        }
    }
}

// Upper triangular [a b; 0 d]: e^a, b (e^a - e^d) / (a - d), e^d; the norms reach every degree of
// the approximant and the scaling.
TEST(DirectSolvers, ExponentialOfTriangularAndRotationMatrices) {
    for (double scale : {0.001, 0.1, 0.5, 1.0, 4.0, 40.0, 1000.0}) {
        double a = -0.3 * scale, b = 0.7 * scale, d = -scale;
        Matrix M(2, 2);
        M(0, 0) = a, M(0, 1) = b, M(1, 1) = d;
        Matrix E = numeric().exponential(M);
        EXPECT_NEAR(std::exp(a), E(0, 0), 1e-14);
        EXPECT_NEAR(b * (std::exp(a) - std::exp(d)) / (a - d), E(0, 1), 1e-14);
        EXPECT_NEAR(std::exp(d), E(1, 1), 1e-14);
        EXPECT_EQ(0.0, E(1, 0));
        Matrix R = numeric().exponential(Matrix("[0 1;-1 0]") * scale);
        EXPECT_NEAR(std::cos(scale), R(0, 0), 1e-12 * (1.0 + scale));
        EXPECT_NEAR(std::sin(scale), R(0, 1), 1e-12 * (1.0 + scale));
    }
    EXPECT_EQ(0u, numeric().exponential(Matrix(0, 0)).rowNumber());
}

TEST(DirectSolvers, ExponentialOfMinusAIsItsInverse) {
    for (unsigned n : {1u, 2u, 10u, 60u}) {
        Matrix A = randomStable(n, false, 5 + n) * 3.0;
        Matrix product = numeric().exponential(A) * numeric().exponential(-A);
        EXPECT_LT(frobenius(product - Matrix::diagonal(n, 1.0)), 1e-12 * n) << n;
    }
}

// Random [F G; Q -F'] with G and Q symmetric: each eigenvalue of the full problem has one of the
// square-reduced method near it, to the half precision that squaring leaves.
TEST(DirectSolvers, HamiltonianEigenvaluesMatchTheFullProblem) {
    EXPECT_EQ(0u, numeric().hamiltonianEigenvalues(Matrix(0, 0)).rowNumber());
    for (unsigned n : {1u, 2u, 10u, 60u}) {
        Matrix F = randomRows(n, n, 29 + n), G = randomRows(n, n, 31 + n), Q = randomRows(n, n, 37 + n);
        G = G + G.transpose(), Q = Q + Q.transpose();
        Matrix H(2 * n, 2 * n);
        H.setSubMatrix(0, 0, F, n, n);
        H.setSubMatrix(0, n, G, n, n);
        H.setSubMatrix(n, 0, Q, n, n);
        H.setSubMatrix(n, n, -F.transpose(), n, n);
        Matrix fast = numeric().hamiltonianEigenvalues(H), full = numeric().computeEigenvalues(H);
        ASSERT_EQ(2 * n, fast.rowNumber());
        for (unsigned i = 0; i < 2 * n; ++i) {
            double nearest = 1e300;
            for (unsigned j = 0; j < 2 * n; ++j)
                nearest = std::min(nearest, std::hypot(fast(i, 0) - full(j, 0), fast(i, 1) - full(j, 1)));
            EXPECT_LT(nearest, 1e-6 * (1.0 + frobenius(H))) << n;
        }
    }
}
