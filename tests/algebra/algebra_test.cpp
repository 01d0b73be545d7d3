// Tests of the numeric routines of Algebra against independently known results.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "algebra/all.h"

namespace {

typedef std::vector<std::pair<double, double>> Roots;

Vector vectorOf(std::vector<double> values) { return Vector(values.data(), unsigned(values.size())); }

// The (re, im) rows sorted, so that they compare with a known spectrum.
Roots sortedRows(const Matrix& values) {
    Roots r;
    for (unsigned i = 0; i < values.rowNumber(); ++i) r.push_back({values(i, 0), values(i, 1)});
    std::sort(r.begin(), r.end());
    return r;
}

void expectRoots(const Matrix& values, Roots expected, double tolerance) {
    std::sort(expected.begin(), expected.end());
    Roots got = sortedRows(values);
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_NEAR(got[i].first, expected[i].first, tolerance) << "root " << i;
        EXPECT_NEAR(got[i].second, expected[i].second, tolerance) << "root " << i;
    }
}

Matrix identity(unsigned n) { return Matrix::diagonal(n, 1.0); }

double maxAbs(const Matrix& m) {
    double x = 0.0;
    for (unsigned k = 0; k < m.elementCount(); ++k) x = std::max(x, std::fabs(m.elements()[k]));
    return x;
}

// A reproducible well-conditioned test matrix: diagonal dominance over uniform noise.
Matrix testMatrix(unsigned n, unsigned seed) {
    Matrix m(n, n);
    srand(seed);
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) m(i, j) = double(rand()) / RAND_MAX - 0.5;
    for (unsigned i = 0; i < n; ++i) m(i, i) += n;
    return m;
}

class AlgebraTest : public ::testing::Test {
protected:
    Algebra* alg = new Algebra;
    void TearDown() override { delete alg; }
};

TEST_F(AlgebraTest, FastModeRefusal) {
    for (int bad : {-1, 5}) {
        SCOPED_TRACE(bad);
        testing::internal::CaptureStdout();
        EXPECT_FALSE(setFastMode(bad));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "admissible values between 0 and 4 \n");
        EXPECT_EQ(fastMode, 0);
    }
    EXPECT_TRUE(setFastMode(4));
    EXPECT_EQ(fastMode, 4);
    EXPECT_TRUE(setFastMode(0));
}

TEST_F(AlgebraTest, EigenvaluesOfKnownSpectra) {
    struct Case {
        const char* name;
        Matrix A;
        Roots expected;
        double tolerance;
    };
    std::vector<Case> cases = {
        // companion of (s+1)(s+2)(s+3) = s^3 + 6s^2 + 11s + 6
        {"companion", Matrix("[0 1 0;0 0 1;-6 -11 -6]"), {{-1, 0}, {-2, 0}, {-3, 0}}, 1e-10},
        // rotation block scaled, plus a real eigenvalue
        {"rotation", Matrix("[-1 2 0;-2 -1 0;0 0 4]"), {{-1, 2}, {-1, -2}, {4, 0}}, 1e-12},
        // defective: a double eigenvalue 3 with one eigenvector
        {"defective", Matrix("[3 1;0 3]"), {{3, 0}, {3, 0}}, 1e-7},
        {"scalar", Matrix("[-7]"), {{-7, 0}}, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix before(c.A);
        expectRoots(alg->computeEigenvalues(c.A), c.expected, c.tolerance);
        EXPECT_TRUE(c.A.isEqual(before)) << "the argument is left as it is";
    }
}

TEST_F(AlgebraTest, SchurResidualAndSortedOrder) {
    Matrix A = Matrix("[1 2 0 3;-4 0.5 1 0;0 1 -2 1;2 0 1 -3]");
    Matrix T(A);
    Matrix Q = alg->schur(T, false);
    double scale = alg->normF(A);
    EXPECT_LT(alg->normF(Q * T * Q.transpose() - A) / scale, 1e-13);
    EXPECT_LT(alg->normF(Q.transpose() * Q - identity(4)), 1e-13);
    EXPECT_TRUE(alg->isQuasiTriangular(T));

    // Sorted: the stable eigenvalues first.
    Matrix S = Matrix("[2 0 0;0 -1 0;0 0 3]");
    Matrix U = alg->schur(S, true);
    EXPECT_DOUBLE_EQ(S(0, 0), -1.0);
    EXPECT_GT(S(1, 1), 0.0);
    EXPECT_GT(S(2, 2), 0.0);
    EXPECT_LT(maxAbs(U * S * U.transpose() - Matrix("[2 0 0;0 -1 0;0 0 3]")), 1e-14);
}

TEST_F(AlgebraTest, InverseResidualForEachPath) {
    for (unsigned n : {1u, 2u, 3u, 6u}) {
        SCOPED_TRACE(n);
        Matrix A = testMatrix(n, 7 + n);
        Matrix X = alg->inv(A);
        EXPECT_LT(maxAbs(A * X - identity(n)), 1e-13);
    }
}

TEST_F(AlgebraTest, InverseOfSingularMatricesIsNotFinite) {
    struct Case {
        const char* name;
        Matrix A;
    };
    const Case cases[] = {
        {"1x1", Matrix("[0]")},
        {"2x2", Matrix("[1 2;2 4]")},
        {"3x3", Matrix("[1 0 0;0 1 0;0 0 0]")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        testing::internal::CaptureStdout();
        Matrix X = alg->inv(c.A);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "no error, no message";
        bool anyInfinite = false;
        for (unsigned k = 0; k < X.elementCount(); ++k)
            anyInfinite = anyInfinite || !std::isfinite(X.elements()[k]);
        EXPECT_TRUE(anyInfinite);
    }
}

TEST_F(AlgebraTest, CholeskyFactorsAndRefusals) {
    Matrix R0 = Matrix("[2 -1 0.5;0 3 1;0 0 1.5]");
    Matrix A = R0.transpose() * R0;
    Matrix R(A);
    ASSERT_TRUE(alg->chol(R));
    EXPECT_LT(maxAbs(R - R0), 1e-14);
    EXPECT_LT(maxAbs(R.transpose() * R - A), 1e-13);

    // A negative or zero pivot, or a non-square matrix, is refused.
    for (Matrix M : {Matrix("[1 2;2 1]"), Matrix("[-1 0;0 -1]"), Matrix(3, 3), Matrix(2, 3)})
        EXPECT_FALSE(alg->chol(M)) << M;
}

TEST_F(AlgebraTest, Determinants) {
    struct Case {
        const char* name;
        Matrix A;
        double det;
    };
    std::vector<Case> cases = {
        {"2x2", Matrix("[3 1;4 2]"), 2.0},
        {"triangular", Matrix("[2 5 7;0 -3 1;0 0 4]"), -24.0},
        {"complex pair", Matrix("[0 -2 0;2 0 0;0 0 5]"), 20.0},
        {"singular", Matrix("[1 2 3;4 5 6;7 8 9]"), 0.0},
        {"general", Matrix("[2 -1 0;-1 2 -1;0 -1 2]"), 4.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_NEAR(alg->determinant(c.A), c.det, 1e-12);
    }
    // A quasi-triangular matrix taken as it stands: the 2x2 block and the last diagonal.
    Matrix T = Matrix("[1 -2 9;3 1 9;0 0 2]");
    EXPECT_DOUBLE_EQ(alg->determinant(T, true), (1 + 6) * 2.0);
}

TEST_F(AlgebraTest, NormsAgainstHandValues) {
    Matrix A = Matrix("[1 -2 3;0 4 -5]");
    EXPECT_DOUBLE_EQ(alg->normF(A), std::sqrt(55.0));
    EXPECT_DOUBLE_EQ(alg->normTriangular(A), 15.0);
    EXPECT_DOUBLE_EQ(alg->normTriangular(A, true), 1 + 2 + 3 + 4 + 5);
    Matrix S = Matrix("[1 -2 3;100 4 -5;100 100 6]");
    EXPECT_DOUBLE_EQ(alg->normTriangular(S, true), 1 + 2 + 3 + 4 + 5 + 6);
    EXPECT_DOUBLE_EQ(alg->normTriangular(S, false, true), 11 + 2 * 10.0);
    EXPECT_DOUBLE_EQ(alg->normTriangular(S), 321.0);
    EXPECT_TRUE(alg->isSmall(A, 15.5));
    EXPECT_FALSE(alg->isSmall(A, 15.0));
    EXPECT_DOUBLE_EQ(alg->vectorNorm1(vectorOf({1, -2, 3.5})), 6.5);
    EXPECT_DOUBLE_EQ(alg->trace(S), 11.0);
    EXPECT_DOUBLE_EQ(alg->rms(A, 5), std::sqrt(55.0 / 15.0));

    // diag(3, -4) rotated: singular values 4 and 3
    double c = std::cos(0.3), s = std::sin(0.3);
    Matrix G(2, 2);
    G << c, -s, s, c;
    Matrix B = G * Matrix("[3 0;0 -4]") * G.transpose();
    EXPECT_NEAR(alg->norm2(B), 4.0, 1e-14);
    EXPECT_NEAR(alg->minSingularValue(B), 3.0, 1e-12);
    // An eigenvalue of A'A above 1e10 never counts as the smallest.
    EXPECT_NEAR(alg->minSingularValue(Matrix("[1e6]")), 1e5, 1e-6);
}

TEST_F(AlgebraTest, ShapeTests) {
    struct Case {
        const char* name;
        Matrix A;
        bool hessenberg;
        bool quasi;
    };
    std::vector<Case> cases = {
        {"1x1", Matrix("[5]"), true, true},
        {"upper", Matrix("[1 2 3;0 4 5;0 0 6]"), true, true},
        {"one block", Matrix("[1 2 3;7 4 5;0 0 6]"), true, true},
        {"two subdiagonals in a row", Matrix("[1 2 3;7 4 5;0 8 6]"), true, false},
        {"below the subdiagonal", Matrix("[1 2 3;0 4 5;1e-12 0 6]"), false, false},
        {"tiny is zero", Matrix("[1 2 3;1e-14 4 5;1e-14 1e-14 6]"), true, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(alg->isHessenberg(c.A), c.hessenberg);
        EXPECT_EQ(alg->isQuasiTriangular(c.A), c.quasi);
    }
}

TEST_F(AlgebraTest, BalanceKeepsEigenvaluesAndEvensTheScales) {
    Matrix A = Matrix("[1 1e4 0;1e-4 2 1e3;0 1e-3 3]");
    Matrix before = alg->computeEigenvalues(A);
    Matrix B(A);
    Matrix D = alg->balance(B);
    ASSERT_EQ(D.rowNumber(), 3u);
    EXPECT_LT(maxAbs(D * A * alg->inv(D) - B), 1e-9 * maxAbs(A));
    Roots expected = sortedRows(before);
    expectRoots(alg->computeEigenvalues(B), expected, 1e-9);
    EXPECT_LT(maxAbs(B), maxAbs(A) / 10) << "the large couplings are evened out";
    EXPECT_DOUBLE_EQ(D(2, 2), 1.0) << "the last index keeps its scale";

    Matrix R(2, 3);
    R(0, 1) = 7;
    Matrix kept(R);
    testing::internal::CaptureStdout();
    Matrix none = alg->balance(R);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "The matrix should be square\n");
    EXPECT_TRUE(R.isEqual(kept));
    EXPECT_EQ(none.elementCount(), 0u);
}

TEST_F(AlgebraTest, SvdAndSolve) {
    Matrix A = Matrix("[3 0;0 -4;0 0]");
    Matrix W(A), U(0, 0), VT(0, 0);
    Vector s = alg->svd(W, U, VT, true);
    ASSERT_EQ(s.size(), 2u);
    EXPECT_NEAR(s[0u], 4.0, 1e-14);
    EXPECT_NEAR(s[1u], 3.0, 1e-14);
    EXPECT_LT(maxAbs(U * Matrix::blockDiagonal(Matrix::diagonal(s), Matrix(1, 0)) * VT - A), 1e-14);

    Matrix M = testMatrix(5, 3);
    Matrix X0 = Matrix("[1 2;3 4;5 6;7 8;9 10]");
    Matrix B = M * X0;
    Matrix X = alg->solve(M, B);
    EXPECT_LT(maxAbs(X - X0), 1e-13);
    EXPECT_TRUE(B.isEqual(M * X0)) << "the right-hand side is not overwritten";
}

TEST_F(AlgebraTest, PolynomialRoots) {
    struct Case {
        const char* name;
        std::vector<double> coefficients;
        Roots expected;
        double tolerance;
    };
    std::vector<Case> cases = {
        {"linear", {2, -6}, {{3, 0}}, 0.0},
        {"two at zero", {1, 0, 0}, {{0, 0}, {0, 0}}, 0.0},
        {"real, not monic", {2, -2, -4}, {{2, 0}, {-1, 0}}, 1e-14},
        {"complex pair", {1, 2, 5}, {{-1, 2}, {-1, -2}}, 1e-14},
        {"zero root and cubic", {1, 6, 11, 6, 0}, {{0, 0}, {-1, 0}, {-2, 0}, {-3, 0}}, 1e-12},
        // (s-1)^3: the triple root spreads by about the cube root of the round-off
        {"triple", {1, -3, 3, -1}, {{1, 0}, {1, 0}, {1, 0}}, 1e-4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        expectRoots(alg->polyRoots(vectorOf(c.coefficients)), c.expected, c.tolerance);
    }
    Matrix zerosFirst = alg->polyRoots(vectorOf({1, 1, 0}));
    EXPECT_EQ(zerosFirst(0, 0), 0.0);
    EXPECT_EQ(zerosFirst(1, 0), -1.0);
    EXPECT_EQ(alg->polyRoots(vectorOf({4})).elementCount(), 0u);
}

TEST_F(AlgebraTest, PolynomialProducts) {
    struct Case {
        const char* name;
        std::vector<double> a, b, product;
    };
    std::vector<Case> cases = {
        {"(s+1)(s+2)", {1, 1}, {1, 2}, {1, 3, 2}},
        {"s times", {2, 3, 4}, {1, 0}, {2, 3, 4, 0}},
        {"constant", {3}, {1, -1, 2}, {3, -3, 6}},
        {"(s^2-1)(s^2+1)", {1, 0, -1}, {1, 0, 1}, {1, 0, 0, 0, -1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(alg->polyMul(vectorOf(c.a), vectorOf(c.b)).isEqual(vectorOf(c.product)));
    }
    // p(s) = s + 2 gives p(-s) = -s + 2; times q(s) = s + 3: -s^2 - s + 6
    EXPECT_TRUE(alg->polyMulAlternating(vectorOf({1, 2}), vectorOf({1, 3})).isEqual(vectorOf({-1, -1, 6})));
    // p(s) = s^2 + s + 1 gives p(-s) = s^2 - s + 1
    EXPECT_TRUE(alg->polyMulAlternating(vectorOf({1, 1, 1}), vectorOf({1})).isEqual(vectorOf({1, -1, 1})));
}

TEST_F(AlgebraTest, RootsOf2by2Blocks) {
    struct Case {
        const char* name;
        Matrix block;
        Matrix roots;
    };
    std::vector<Case> cases = {
        {"complex", Matrix("[-1 2;-2 -1]"), Matrix("[-1 2;-1 -2]")},
        {"real", Matrix("[1 1;0 3]"), Matrix("[1 0;3 0]")},
        {"double", Matrix("[2 0;0 2]"), Matrix("[2 0;2 0]")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix B(c.block);
        alg->rootsOf2by2(B);
        EXPECT_LT(maxAbs(B - c.roots), 1e-15);
    }
}

TEST_F(AlgebraTest, ParseMatrixText) {
    struct Case {
        const char* text;
        unsigned rows;
        std::vector<double> columnMajor;
        const char* console;
    };
    std::vector<Case> cases = {
        {"[1 2;3 4]", 2, {1, 3, 2, 4}, ""},
        {"[ 1, 2 ; 3,4 ]", 2, {1, 3, 2, 4}, ""},
        {"[1.5e1  -2]", 1, {15, -2}, ""},
        {"[1 2;3]", 2, {1, 3, 2, 0}, "different matrix row lengths\n"},
        {"[1 2;3 4 5]", 2, {1, 3, 2, 4}, "different matrix row lengths\n"},
        {"A", 1, {0}, "Warning, the workspace is empty\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        testing::internal::CaptureStdout();
        Matrix m = alg->parseMatrix(c.text);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.console);
        Matrix expected(c.rows, unsigned(c.columnMajor.size()) / c.rows);
        std::copy(c.columnMajor.begin(), c.columnMajor.end(), expected.elements());
        EXPECT_TRUE(m.isEqual(expected)) << m;
    }
}

int lookupOnlyK(const char* name, Matrix& result) {
    if (std::string(name) != "K") return 0;
    result = Matrix(2, 1);
    result(1, 0) = 9;
    return 1;
}

TEST_F(AlgebraTest, ParseMatrixNamesTheWorkspace) {
    WorkspaceLookup saved = workspaceMatrixLookup;
    workspaceMatrixLookup = lookupOnlyK;
    EXPECT_EQ(alg->parseMatrix(" K ")(1, 0), 9.0);
    testing::internal::CaptureStdout();
    alg->parseMatrix("L");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Warning, the name L is not in the workspace\n");
    workspaceMatrixLookup = saved;
}

TEST_F(AlgebraTest, PrintNamed) {
    testing::internal::CaptureStdout();
    alg->printNamed(2.5, "gain");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "gain 2.5\n");
}

class AlgebraFileTest : public AlgebraTest {
protected:
    std::string dir;
    void SetUp() override {
        char pattern[] = "/tmp/algebraXXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
    }
    void TearDown() override {
        std::remove((dir + "/m.mat").c_str());
        std::remove(dir.c_str());
        AlgebraTest::TearDown();
    }
};

TEST_F(AlgebraFileTest, StoreAndReadBack) {
    std::string file = dir + "/m.mat";
    Matrix m = Matrix("[1 -2.5 1e-300;4 0.1 6]");
    ASSERT_TRUE(alg->storeToFile(m, file.c_str()));
    Object* read = nil;
    ASSERT_TRUE(alg->readFromFile(read, "Matrix", file.c_str()));
    ASSERT_NE(read, nil);
    EXPECT_TRUE(read->isEqual(m));
    delete read;

    // A file holding another class is refused, with the reader's message on the console.
    ASSERT_TRUE(alg->storeToFile(vectorOf({1, 2}), file.c_str()));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(alg->readFromFile(read, "Matrix", file.c_str()));
    std::string console = testing::internal::GetCapturedStdout();
    EXPECT_NE(console.find("Vector"), std::string::npos) << console;
    EXPECT_EQ(read, nil);

    EXPECT_FALSE(alg->readFromFile(read, "Matrix", (dir + "/none.mat").c_str()));
    ASSERT_TRUE(alg->storeToFile(*alg, file.c_str()));  // Algebra itself round trips
    ASSERT_TRUE(alg->readFromFile(read, "Algebra", file.c_str()));
    EXPECT_EQ(read->isA(), &class_Algebra);
    delete read;
    EXPECT_FALSE(alg->storeToFile(m, (dir + "/no/such/dir.mat").c_str()));
}

}  // namespace
