// Tests of the factored solvers: Householder triangularisations, staircase, QR iterations,
// Lyapunov and Riccati iterations.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <sstream>
#include <string>

#include "algebra/algebra.h"
#include "quill/intarray.h"

namespace {

Matrix randomMatrix(unsigned rows, unsigned cols, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Matrix m(rows, cols);
    for (unsigned c = 0; c < cols; ++c)
        for (unsigned r = 0; r < rows; ++r) m(r, c) = uniform(engine);
    return m;
}

// One carrier of the routines for all tests; made after the library has started.
Algebra& numeric() {
    static Algebra* algebra = new Algebra;
    return *algebra;
}

double frobenius(const Matrix& m) { return numeric().normF(m); }

double belowDiagonal(const Matrix& m) {
    double s = 0.0;
    for (unsigned c = 0; c < m.columnNumber(); ++c)
        for (unsigned r = c + 1; r < m.rowNumber(); ++r) s += std::fabs(m(r, c));
    return s;
}

Matrix identity(unsigned n) { return Matrix::diagonal(n, 1.0); }

// A random orthogonal matrix: the Q of a random square matrix.
Matrix orthogonal(Algebra& algebra, unsigned n, unsigned seed) {
    Matrix M = randomMatrix(n, n, seed);
    Matrix U(n, n), VT(n, n);
    algebra.svd(M, U, VT, true);
    return U;
}

// S diag(values) S^-1 with a well conditioned S.
Matrix withEigenvalues(Algebra& algebra, const Vector& values, unsigned seed) {
    unsigned n = values.size();
    Matrix S = identity(n) + randomMatrix(n, n, seed) * (0.3 / std::sqrt(double(n)));
    return S * Matrix::diagonal(values) * algebra.inv(S);
}

Vector spread(unsigned n, double low, double high) {
    Vector v(n);
    for (unsigned i = 0; i < n; ++i) v[i] = n == 1 ? low : low + (high - low) * i / (n - 1);
    return v;
}

// The largest real part of the eigenvalues, or the spectral radius when modulus is set.
double spectralTop(Algebra& algebra, const Matrix& A, bool modulus) {
    Matrix values = algebra.computeEigenvalues(A);
    double top = -1e300;
    for (unsigned i = 0; i < values.rowNumber(); ++i)
        top = std::max(top, modulus ? std::hypot(values(i, 0), values(i, 1)) : values(i, 0));
    return top;
}

template <class T>
std::string text(const T& x) {
    std::ostringstream os;
    os << x;
    return os.str();
}

// --- triangularize ---

TEST(Solvers, TriangularizeGivesQRofTheMatrix) {
    Algebra& algebra = numeric();
    struct Case {
        unsigned rows, cols;
    } cases[] = {{1, 1}, {3, 3}, {6, 3}, {3, 5}, {8, 8}};
    for (const Case& c : cases) {
        SCOPED_TRACE(text(c.rows) + "x" + text(c.cols));
        Matrix A = randomMatrix(c.rows, c.cols, c.rows * 10 + c.cols);
        unsigned k = std::min(c.rows, c.cols);
        Matrix M = A;
        M.reSize(c.rows, c.cols + c.rows);
        M.setSubMatrix(0, c.cols, identity(c.rows));
        EXPECT_EQ(0.0, algebra.triangularize(M, k));
        Matrix R = M.subMatrix(0, 0, c.rows, c.cols);
        Matrix Q = M.subMatrix(0, c.cols, c.rows, c.rows).transpose();
        EXPECT_EQ(0.0, belowDiagonal(R));
        EXPECT_LT(frobenius(Q * R - A), 1e-13);
        EXPECT_LT(frobenius(Q.transpose() * Q - identity(c.rows)), 1e-13);
    }
}

TEST(Solvers, TriangularizeLeavesAZeroColumnAlone) {
    Algebra& algebra = numeric();
    Matrix M("[0 1;0 2;0 3]");
    algebra.triangularize(M);
    EXPECT_EQ(0.0, M(0, 0));
    EXPECT_NEAR(-std::sqrt(13.0), M(1, 1), 1e-14);  // column 1 from row 1 down: (2, 3)
}

TEST(Solvers, TriangularizeSolvesLeastSquares) {
    Algebra& algebra = numeric();
    Matrix M = randomMatrix(7, 4, 5), A = M.subMatrix(0, 0, 7, 3), b = M.subMatrix(0, 3, 7, 1);
    testing::internal::CaptureStdout();
    double deviation = algebra.triangularize(M, 3, true, true);
    std::string out = testing::internal::GetCapturedStdout();
    Matrix x = M.subMatrix(0, 3, 3, 1);
    Matrix expected = algebra.solve(A.transpose() * A, A.transpose() * b);
    EXPECT_LT(frobenius(x - expected), 1e-12);
    double residual = frobenius(A * x - b);
    EXPECT_NEAR(residual / 2.0, deviation, 1e-12);  // sqrt(|r|^2 / (1 column x 4 rows))
    EXPECT_EQ("standard deviation " + text(deviation) + "\n", out);
}

// --- triangle ---

TEST(Solvers, TriangleSolvesAFullRankSystem) {
    Algebra& algebra = numeric();
    Matrix A("[1e-3 2 0;4 1 1;0 3 100]"), b("[1;2;3]"), M("[1e-3 2 0 1;4 1 1 2;0 3 100 3]");
    testing::internal::CaptureStdout();
    EXPECT_EQ(3.0, algebra.triangle(M, 3, false, true, zeroSquaredTolerance, false));
    std::string out = testing::internal::GetCapturedStdout();
    ASSERT_EQ(3u, M.rowNumber());
    ASSERT_EQ(7u, M.columnNumber());
    EXPECT_LT(frobenius(A * M.subMatrix(0, 3, 3, 1) - b), 1e-12);
    EXPECT_LT(frobenius(A * M.subMatrix(0, 4, 3, 3) - identity(3)), 1e-12);
    // Pivoting puts the column of largest norm first: diagonal magnitudes do not grow.
    EXPECT_GE(std::fabs(M(0, 0)), std::fabs(M(1, 1)));
    EXPECT_GE(std::fabs(M(1, 1)), std::fabs(M(2, 2)));
    EXPECT_NEAR(std::sqrt(10001.0), std::fabs(M(0, 0)), 1e-12);
    EXPECT_EQ("conditioning of the solution = " + text(M(0, 0) / M(2, 2)) +
                  "\ndeviazione standard nella triangolarizzazione: 0\n",
              out);
}

// The fault-hunting variant computes the same and only adds its trace lines.
TEST(Solvers, TriangleFTracesTheSameSolution) {
    Algebra& algebra = numeric();
    Matrix A("[2 1;1 3]"), M = A, MF = A;
    testing::internal::CaptureStdout();
    double rank = algebra.triangle(M, 2, true, false, zeroSquaredTolerance, false);
    std::string plain = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    double rankF = algebra.triangleF(MF, 2, true, false, zeroSquaredTolerance, false);
    std::string traced = testing::internal::GetCapturedStdout();
    EXPECT_EQ(rank, rankF);
    EXPECT_EQ(frobenius(M - MF), 0.0);
    EXPECT_EQ(plain, "");
    for (const char* line :
         {"Ab inside triangleF,after cleaning\n", "j h 1 2\n", "Ab(j,i) ", "USCITI\n", "USCITI 2\n"})
        EXPECT_NE(traced.find(line), std::string::npos) << line;
}

TEST(Solvers, TriangleFindsTheRequestedRank) {
    Algebra& algebra = numeric();
    for (unsigned rank = 1; rank <= 5; ++rank) {
        SCOPED_TRACE(rank);
        Matrix A = randomMatrix(6, rank, rank) * randomMatrix(rank, 5, 100 + rank);
        double found = algebra.triangle(A, 5, true, false, 1e-20, true);
        EXPECT_EQ(double(rank), found);
    }
}

TEST(Solvers, TriangleOnEqualColumnsReportsTheLostRank) {
    Algebra& algebra = numeric();
    Matrix A("[1 1 0;2 2 1;0 0 3;1 1 1]"), b("[2;5;3;3]"), M("[1 1 0 2;2 2 1 5;0 0 3 3;1 1 1 3]");
    testing::internal::CaptureStdout();
    EXPECT_EQ(2.0, algebra.triangle(M, 3, false, true, 1e-20, true));
    std::string out = testing::internal::GetCapturedStdout();
    Matrix x = M.subMatrix(0, 3, 3, 1);
    EXPECT_LT(frobenius(A * x - b), 1e-12);
    EXPECT_EQ(0.0, x(0, 0) * x(1, 0));  // the free unknown of the pair is zero
    std::ostringstream expected;
    expected << " max, basisNumberNew " << 0.0 << ",  " << 2 << "\n"
             << "basis singular - actual conditioning = " << M(0, 0) / M(1, 1) << "\n"
             << " elementi della diagonale nulli = "
             << " " << M(0, 0) << " " << M(1, 1) << " " << M(2, 2) << "\n";
    // The squared norm left over is rounding noise: compare the lines around it.
    EXPECT_EQ(0u, out.find(" max, basisNumberNew "));
    EXPECT_NE(std::string::npos, out.find(",  2\nbasis singular - actual conditioning = "));
    EXPECT_EQ(expected.str().substr(expected.str().find("basis singular")),
              out.substr(out.find("basis singular")));
}

TEST(Solvers, TriangleRandomCompletionDiffersFromCallToCall) {
    Algebra& algebra = numeric();
    Matrix M1("[1 1 2;2 2 4;3 3 6]"), M2 = M1;
    EXPECT_EQ(1.0, algebra.triangle(M1, 2, true, false, 1e-20, false));
    EXPECT_EQ(1.0, algebra.triangle(M2, 2, true, false, 1e-20, false));
    Matrix x1 = M1.subMatrix(0, 2, 2, 1), x2 = M2.subMatrix(0, 2, 2, 1);
    EXPECT_NEAR(2.0, x1(0, 0) + x1(1, 0), 1e-12);
    EXPECT_NEAR(2.0, x2(0, 0) + x2(1, 0), 1e-12);
    EXPECT_NE(x1(0, 0), x2(0, 0));
}

TEST(Solvers, TriangleGrowsAWideBasis) {
    Algebra& algebra = numeric();
    Matrix M = randomMatrix(2, 5, 77);
    Matrix A = M.subMatrix(0, 0, 2, 4), b = M.subMatrix(0, 4, 2, 1);
    EXPECT_EQ(2.0, algebra.triangle(M, 4, true, false, 1e-20, true));
    ASSERT_EQ(4u, M.rowNumber());
    EXPECT_LT(frobenius(A * M.subMatrix(0, 4, 4, 1) - b), 1e-12);
}

// --- staircase ---

TEST(Solvers, StaircaseFindsTheControllableOrder) {
    Algebra& algebra = numeric();
    struct Case {
        unsigned controllable, uncontrollable, inputs;
    } cases[] = {{3, 0, 1}, {2, 2, 1}, {4, 1, 2}, {1, 3, 1}, {5, 3, 3}};
    for (const Case& c : cases) {
        SCOPED_TRACE(text(c.controllable) + " " + text(c.uncontrollable) + " " + text(c.inputs));
        unsigned n = c.controllable + c.uncontrollable;
        Matrix block = Matrix::blockDiagonal(randomMatrix(c.controllable, c.controllable, n),
                                             randomMatrix(c.uncontrollable, c.uncontrollable, n + 1));
        if (c.uncontrollable > 0)
            block.setSubMatrix(0, c.controllable, randomMatrix(c.controllable, c.uncontrollable, n + 2),
                               c.controllable, c.uncontrollable);
        Matrix Bc(n, c.inputs);
        Bc.setSubMatrix(0, 0, randomMatrix(c.controllable, c.inputs, n + 3), c.controllable, c.inputs);
        Matrix S = orthogonal(algebra, n, n + 4);
        Matrix A0 = S * block * S.transpose(), B0 = S * Bc;
        Matrix A = A0, B = B0;
        IntArray indices;
        Matrix T = algebra.staircase(A, B, indices, 1e-10);
        int sum = 0;
        for (unsigned i = 0; i < indices.size(); ++i) sum += indices[i];
        EXPECT_EQ(int(c.controllable), sum);
        EXPECT_LT(frobenius(T * T.transpose() - identity(n)), 1e-12);
        EXPECT_LT(frobenius(T * A0 * T.transpose() - A), 1e-12);
        EXPECT_LT(frobenius(T * B0 - B), 1e-12);
        EXPECT_LT(frobenius(B.subMatrix(indices[0], 0, n - indices[0], c.inputs)), 1e-12);
        if (c.uncontrollable > 0) {
            EXPECT_LT(frobenius(A.subMatrix(c.controllable, 0, c.uncontrollable, c.controllable)), 1e-10);
        }
    }
}

TEST(Solvers, StaircaseReportOfAChain) {
    Algebra& algebra = numeric();
    Matrix A(6, 6);
    for (unsigned i = 0; i + 1 < 6; ++i) A(i + 1, i) = 1.0;
    Matrix B(6, 1);
    B(0, 0) = 1.0;
    IntArray indices;
    algebra.staircase(A, B, indices, 1e-10, true);
    ASSERT_EQ(6u, indices.size());
    for (unsigned i = 0; i < 6; ++i) EXPECT_EQ(1, indices[i]);
    std::string entry = "order: 1, norm:      0";
    EXPECT_EQ(entry + entry + entry + entry + "\n" + entry,
              std::string(Algebra::staircaseReport.asCharPointer()));
}

// --- qrIteration ---

TEST(Solvers, QrIterationDiagonalisesASymmetricMatrix) {
    Algebra& algebra = numeric();
    for (int mode = 0; mode < 3; ++mode) {
        SCOPED_TRACE(mode);
        unsigned n = 5;
        Matrix S = orthogonal(algebra, n, 31);
        Matrix A0 = S * Matrix::diagonal(Vector(spread(n, 6.0, 1.0))) * S.transpose();
        Vector expected = spread(n, 6.0, 1.0);
        if (mode == 1) {  // already tridiagonal: the Hessenberg reduction is skipped
            A0 = Matrix("[4 1 0 0 0;1 3 1 0 0;0 1 2 1 0;0 0 1 1 1;0 0 0 1 0]");
            Matrix E = A0;
            Matrix values = algebra.computeEigenvalues(E);
            for (unsigned i = 0; i < n; ++i) expected[i] = values(i, 0);
            std::sort(expected.elements(), expected.elements() + n, std::greater<double>());
        }
        Matrix A = A0;
        Matrix V = mode == 2 ? algebra.qrIterationFull(A) : algebra.qrIteration(A, mode);
        EXPECT_LT(frobenius(V * V.transpose() - identity(n)), 1e-12);
        EXPECT_LT(frobenius(V * A * V.transpose() - A0), 1e-11);
        for (unsigned i = 0; i < n; ++i) {
            EXPECT_NEAR(expected[i], A(i, i), 1e-9);
            for (unsigned j = 0; j < n; ++j)
                if (i != j) {
                    EXPECT_NEAR(0.0, A(i, j), 1e-9);
                }
        }
    }
}

TEST(Solvers, QrIterationOfATwoByTwoIsTheIdentity) {
    Algebra& algebra = numeric();
    Matrix A("[2 1;1 3]");
    Matrix V = algebra.qrIteration(A);
    EXPECT_TRUE(V.isEqual(identity(2)));
    EXPECT_TRUE(A.isEqual(Matrix("[2 1;1 3]")));
}

// --- Lyapunov ---

// Continuous A'P + PA + Q = 0 and discrete P - A'PA = Q, both from P = L'L, Q = L0'L0.
TEST(Solvers, LyapAndLyapdSolveTheirEquations) {
    Algebra& algebra = numeric();
    for (bool discrete : {false, true})
        for (unsigned n : {1u, 2u, 5u, 20u}) {
            SCOPED_TRACE(text(discrete) + " " + text(n));
            Matrix A = discrete ? withEigenvalues(algebra, spread(n, 0.6, -0.5), n + 1)
                                : withEigenvalues(algebra, spread(n, -0.4, -3.0), n);
            Matrix L0 = randomMatrix(n, n, (discrete ? 70 : 50) + n), L = L0;
            EXPECT_LT(discrete ? algebra.lyapd(A, L) : algebra.lyap(A, L), 1000);
            EXPECT_EQ(0.0, belowDiagonal(L));
            Matrix P = L.transpose() * L;
            Matrix Q = L0.transpose() * L0;
            Matrix residual = discrete ? P - A.transpose() * P * A - Q : A.transpose() * P + P * A + Q;
            EXPECT_LT(frobenius(residual) / frobenius(Q), 1e-4);
        }
}

TEST(Solvers, LyapFromTheSolutionStopsAtOnce) {
    Algebra& algebra = numeric();
    Matrix A = withEigenvalues(algebra, spread(4, -0.5, -2.0), 9);
    Matrix L0 = randomMatrix(4, 4, 8), R = L0, L = L0;
    algebra.lyap(A, R);
    EXPECT_LE(algebra.lyap(A, L, R), 3);
    EXPECT_LT(frobenius(L.transpose() * L - R.transpose() * R), 1e-4 * frobenius(R));

    Matrix D("[-1 0.5;0 -2]"), Lp("[1 1;0 1]");
    Matrix Q = Lp.transpose() * Lp;
    algebra.lyapPlain(D, Lp);
    Matrix P = Lp.transpose() * Lp;
    EXPECT_LT(frobenius(D.transpose() * P + P * D + Q), 1e-12);
}

TEST(Solvers, LyapOfAnUnsettledMatrixRunsToTheLimit) {
    Algebra& algebra = numeric();
    for (const char* a : {"[0 1;-1 0]", "[0.5 0;0 -1]"}) {  // eigenvalues on the axis, unstable
        Matrix L("[1 0;0 1]");
        EXPECT_EQ(1000, algebra.lyap(Matrix(a), L)) << a;
    }
    Matrix L("[1]");
    EXPECT_EQ(1000, algebra.lyapd(Matrix("[1.5]"), L));
}

// --- Riccati ---

// C = [Q^1/2; 0], D = [0; I]: D'D = I, D'C = 0, C'C = Q.
struct Plant {
    Matrix A, B, C, D;
};

Plant regulator(const Matrix& A, const Matrix& B, const Matrix& Qhalf) {
    unsigned n = A.rowNumber(), m = B.columnNumber();
    Plant p{A, B, Matrix(n + m, n), Matrix(n + m, m)};
    p.C.setSubMatrix(0, 0, Qhalf, n, n);
    p.D.setSubMatrix(n, 0, identity(m), m, m);
    return p;
}

TEST(Solvers, RiccatiOfAScalarPlant) {
    Algebra& algebra = numeric();
    // a = 1, b = 1, q = 1: P = 1 + sqrt(2).
    Plant p = regulator(Matrix("[1]"), Matrix("[1]"), Matrix("[1]"));
    Matrix K("[2]"), R(0, 0);
    testing::internal::CaptureStdout();
    EXPECT_LT(algebra.riccati(p.A, p.B, p.C, p.D, K, R, 0.0), 500);
    testing::internal::GetCapturedStdout();
    EXPECT_NEAR(1.0 + std::sqrt(2.0), R(0, 0) * R(0, 0), 0.03);
}

TEST(Solvers, RiccatiStabilisesAndSolvesTheEquation) {
    Algebra& algebra = numeric();
    for (double relaxation : {0.0, 0.5}) {
        SCOPED_TRACE(relaxation);
        Matrix A("[0 1 0;0 0 1;-1 -2 -2]");
        Matrix B("[0 0;1 0;0 1]");
        Plant p = regulator(A, B, identity(3));
        Matrix K(2, 3), R(0, 0);
        testing::internal::CaptureStdout();
        int iterations = algebra.riccati(p.A, p.B, p.C, p.D, K, R, relaxation);
        std::string out = testing::internal::GetCapturedStdout();
        Matrix P = R.transpose() * R;
        Matrix G = B.transpose() * P;
        Matrix residual = A.transpose() * P + P * A + p.C.transpose() * p.C - G.transpose() * G;
        // The stop at a relative change of 0.01 leaves a rough solution.
        EXPECT_LT(frobenius(residual) / frobenius(p.C.transpose() * p.C), 0.1);
        EXPECT_LT(spectralTop(algebra, A - B * G, false), 0.0);
        // "abs conv ..." every tenth iteration, then "iter n".
        std::istringstream lines(out);
        std::string line, last;
        int progress = 0;
        while (std::getline(lines, line)) {
            last = line;
            if (line.rfind("abs conv ", 0) == 0) {
                ++progress;
                EXPECT_NE(std::string::npos, line.find(", rel conv "));
                EXPECT_NE(std::string::npos, line.find(", value "));
            }
        }
        EXPECT_EQ(iterations / 10, progress);
        EXPECT_EQ("iter " + text(iterations), last);
    }
}

TEST(Solvers, RiccatiRepeatedByAnOuterLoopConverges) {
    Algebra& algebra = numeric();
    Matrix A("[0 1 0;0 0 1;-1 -2 -2]");
    Matrix B("[0 0;1 0;0 1]");
    Plant p = regulator(A, B, identity(3));
    Matrix K(2, 3), R(0, 0);
    testing::internal::CaptureStdout();
    for (int outer = 0; outer < 20; ++outer) {
        algebra.riccati(p.A, p.B, p.C, p.D, K, R, 0.0);
        K = B.transpose() * R.transpose() * R;
    }
    testing::internal::GetCapturedStdout();
    Matrix P = R.transpose() * R;
    Matrix residual = A.transpose() * P + P * A + identity(3) - K.transpose() * K;
    EXPECT_LT(frobenius(residual), 1e-4);
}

TEST(Solvers, RiccatidSolvesTheDiscreteEquation) {
    Algebra& algebra = numeric();
    Matrix A("[1.1 0.3 0;0 0.9 0.2;0.1 0 0.5]");
    Matrix B("[1 0;0 0;0 1]");
    Plant p = regulator(A, B, Matrix("[1 0 0;0 2 0;0 0 1]"));
    Matrix K("[0.8 0 0;0 0 0]"), R(0, 0);
    ASSERT_LT(spectralTop(algebra, A - B * K, true), 1.0);
    testing::internal::CaptureStdout();
    int iterations = algebra.riccatid(p.A, p.B, p.C, p.D, K, R);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_LT(iterations, 500);
    Matrix P = R.transpose() * R;
    Matrix G = B.transpose() * P * A;  // D'C = 0
    Matrix H = identity(2) + B.transpose() * P * B;
    Matrix Q = p.C.transpose() * p.C;
    Matrix residual = A.transpose() * P * A + Q - G.transpose() * algebra.inv(H) * G - P;
    EXPECT_LT(frobenius(residual) / frobenius(Q), 1e-3);
    EXPECT_LT(spectralTop(algebra, A - B * algebra.inv(H) * G, true), 1.0);
    EXPECT_EQ(out.substr(out.rfind("iter ")), "iter " + text(iterations) + "\n");
}

}  // namespace
