// RationalFunction and RFMatrix: roots, printed forms, frequency points, the two norms, operators, errors,
// streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "quill/all.h"

namespace {

typedef std::complex<double> Cx;

Vector vectorOf(std::vector<double> values) { return Vector(values.data(), unsigned(values.size())); }

void expectCoefficients(std::vector<double> expected, const Vector& actual, double tolerance = 1e-12) {
    ASSERT_EQ(expected.size(), actual.size());
    for (unsigned i = 0; i < actual.size(); ++i) EXPECT_NEAR(expected[i], actual[i], tolerance) << "at " << i;
}

// Roots as (re, im) pairs sorted, for comparison regardless of the solver's order.
std::vector<std::pair<double, double>> sortedRoots(const Matrix& m) {
    std::vector<std::pair<double, double>> r;
    for (unsigned i = 0; i < m.rowNumber(); ++i) r.push_back({m(i, 0), m(i, 1)});
    std::sort(r.begin(), r.end());
    return r;
}

void expectRoots(std::vector<std::pair<double, double>> expected, const Matrix& actual) {
    ASSERT_EQ(2u, actual.columnNumber());
    auto got = sortedRoots(actual);
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(expected.size(), got.size());
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_NEAR(expected[i].first, got[i].first, 1e-9) << "root " << i;
        EXPECT_NEAR(expected[i].second, got[i].second, 1e-9) << "root " << i;
    }
}

void expectComplex(Cx expected, const Complex& actual, double tolerance = 1e-12) {
    EXPECT_NEAR(expected.real(), actual.re(), tolerance);
    EXPECT_NEAR(expected.imag(), actual.im(), tolerance);
}

std::string printed(const Object& ob) {
    std::ostringstream os;
    ob.printOn(os);
    return os.str();
}

// wn^2 / (s^2 + 2 zeta wn s + wn^2)
RationalFunction secondOrder(double zeta, double wn) {
    return RationalFunction(vectorOf({wn * wn}), vectorOf({1, 2 * zeta * wn, wn * wn}));
}

TEST(RationalFunctionTest, ZerosPolesAndGain) {
    struct Case {
        const char* name;
        std::vector<double> num, den;
        double gain;
        std::vector<std::pair<double, double>> zeros, poles;
    };
    std::vector<Case> cases = {
        {"first over second order", {1, 1}, {1, 5, 6}, 1, {{-1, 0}}, {{-2, 0}, {-3, 0}}},
        {"complex zeros, pole at 0", {2, 4, 10}, {1, 4, 0}, 2, {{-1, 2}, {-1, -2}}, {{0, 0}, {-4, 0}}},
        {"denominator normalised", {4, 8}, {2, 2}, 2, {{-2, 0}}, {{-1, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RationalFunction f(vectorOf(c.num), vectorOf(c.den));
        EXPECT_FALSE(f.isZpkValid());
        expectRoots(c.zeros, f.zeros());
        expectRoots(c.poles, f.poles());
        EXPECT_TRUE(f.isZpkValid());
        EXPECT_NEAR(c.gain, f.gainOf(), 1e-12);
        EXPECT_EQ(c.den.size() - 1, f.order());
    }

    // A constant has no roots: the 1x1 zero matrix, and order 0.
    RationalFunction constant(3.0, 0.0);
    EXPECT_EQ(0u, constant.order());
    EXPECT_TRUE(constant.poles().isEqual(Matrix(1, 1)));
    EXPECT_EQ(3.0, constant.gainOf());
    EXPECT_EQ(0u, RationalFunction().order());
    // A leading zero of the denominator gives order 0 and no root step.
    RationalFunction degenerate(vectorOf({1}), vectorOf({0, 1}));
    EXPECT_EQ(0u, degenerate.order());
    degenerate.zpk();
    EXPECT_FALSE(degenerate.isZpkValid());
}

TEST(RationalFunctionTest, FromZerosAndPolesMultipliesOutConjugatePairs) {
    RationalFunction f(Matrix("[-1 0]"), Matrix("[-1 2;-1 -2]"), 3.0, 0.0);
    EXPECT_TRUE(f.isZpkValid());
    expectCoefficients({3, 3}, f.numeratorCoefficients());
    expectCoefficients({1, 2, 5}, f.denominatorCoefficients());
    // zpk() rebuilds the coefficients from the roots: the function stays the same.
    RationalFunction g(vectorOf({2, 6, 4}), vectorOf({1, 7, 12}));
    g.zpk();
    expectCoefficients({2, 6, 4}, g.numeratorCoefficients(), 1e-9);
    expectCoefficients({1, 7, 12}, g.denominatorCoefficients(), 1e-9);
}

TEST(RationalFunctionTest, PrintedForms) {
    EXPECT_EQ("tf(  [          0] ,  [          1] );", printed(RationalFunction()));
    RationalFunction f(vectorOf({1, 1}), vectorOf({1, 3, 2}));
    EXPECT_EQ("tf(  [          1           1] ,  [          1           3           2] );", printed(f));

    struct Case {
        const char* name;
        Matrix zeros, poles;
        double gain, samplingTime;
        const char* text;
    };
    std::vector<Case> cases = {
        {"real and complex poles", Matrix("[-1 0]"), Matrix("[-2 0;-0.1 1;-0.1 -1]"), 2, 0,
         "2 (s + 1) / ((s + 2) (s^2 + 0.2 s + 1.01))"},
        {"one pole, no zeros", Matrix(), Matrix("[-4 0]"), 0.5, 0, "0.5 / (s + 4)"},
        {"discrete, root at zero", Matrix("[0 0]"), Matrix("[0.5 0]"), -1, 0.1, "-1 (z) / (z - 0.5)"},
        {"unstable pair", Matrix(), Matrix("[1 1;1 -1]"), 1, 0, "1 / (s^2 - 2 s + 2)"},
        {"constant", Matrix(), Matrix(), 4, 0, "4"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RationalFunction g(c.zeros, c.poles, c.gain, c.samplingTime);
        EXPECT_EQ(c.text, printed(g));
        EXPECT_EQ(c.text, std::string(g.zpkText().asCharPointer()));
    }
    // The tf form stays available when the factored one is valid.
    RationalFunction h(Matrix(), Matrix("[-4 0]"), 0.5, 0);
    EXPECT_EQ("tf(  [        0.5] ,  [          1           4] );", std::string(h.tfText().asCharPointer()));
}

TEST(RationalFunctionTest, EvaluationInContinuousAndDiscreteTime) {
    RationalFunction f(vectorOf({1}), vectorOf({1, 1}));  // 1/(s+1)
    expectComplex({0.5, -0.5}, f.value(f.frequencyPoint(1.0)));
    expectComplex({1.0 / 1.01, -0.1 / 1.01}, f.value(0.0, 0.1));
    expectComplex({0.0, 2.0}, f.frequencyPoint(2.0));

    RationalFunction d(vectorOf({1}), vectorOf({1, -0.5}), 0.1);  // 1/(z - 0.5), T = 0.1
    expectComplex({std::cos(0.5), std::sin(0.5)}, d.frequencyPoint(5.0));
    Cx expected = 1.0 / (Cx(std::cos(0.5), std::sin(0.5)) - 0.5);
    expectComplex(expected, d.value(d.frequencyPoint(5.0)));
    // A sampling time that is not positive counts as 1.
    RationalFunction unknown(vectorOf({1}), vectorOf({1, -0.5}), -1.0);
    expectComplex({std::cos(2.0), std::sin(2.0)}, unknown.frequencyPoint(2.0));
    // At a pole the doubles give infinities, not an error.
    EXPECT_TRUE(std::isinf(f.value(-1.0, 0.0).re()) || std::isnan(f.value(-1.0, 0.0).re()));
}

TEST(RationalFunctionTest, Norm2AgainstClosedForms) {
    for (double a : {0.5, 1.0, 4.0}) {
        SCOPED_TRACE(a);
        RationalFunction f(vectorOf({1}), vectorOf({1, a}));
        EXPECT_NEAR(1.0 / std::sqrt(2.0 * a), f.norm2(1e-7, 1e9), 1e-5);
    }
    // wn^2/(s^2 + 2 zeta wn s + wn^2) has H2 norm sqrt(wn / (4 zeta)), resonance included.
    EXPECT_NEAR(std::sqrt(2.0 / (4 * 0.02)), secondOrder(0.02, 2.0).norm2(1e-7, 1e9), 1e-4);
    // Discrete 1/(z - a): sqrt(1 / (1 - a^2)) over the whole band.
    RationalFunction d(vectorOf({1}), vectorOf({1, -0.5}), 0.1);
    EXPECT_NEAR(std::sqrt(1.0 / 0.75), d.norm2(1e-9, 1e9), 1e-6);
    RationalFunction f(vectorOf({1}), vectorOf({1, 1}));
    EXPECT_EQ(0.0, f.norm2(1.0, 1.0));
}

TEST(RationalFunctionTest, OperatorsCombineByConvolution) {
    RationalFunction a(vectorOf({1}), vectorOf({1, 1}));  // 1/(s+1)
    RationalFunction b(vectorOf({1}), vectorOf({1, 2}));  // 1/(s+2)
    struct Case {
        const char* name;
        RationalFunction result;
        std::vector<double> num, den;
    };
    std::vector<Case> cases = {
        {"sum", a + b, {2, 3}, {1, 3, 2}},
        {"difference", a - b, {1}, {1, 3, 2}},
        {"product", a * b, {1}, {1, 3, 2}},
        {"quotient", a / b, {1, 2}, {1, 1}},
        {"plus double", a + 2.0, {2, 3}, {1, 1}},
        {"minus double, leading zero trimmed",
         RationalFunction(vectorOf({1, 1}), vectorOf({1, 2})) - 1.0,
         {-1},
         {1, 2}},
        {"times double", a * 3.0, {3}, {1, 1}},
        {"double over", 2.0 / a, {2, 2}, {1}},
        {"negation", -a, {-1}, {1, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        expectCoefficients(c.num, c.result.numeratorCoefficients());
        expectCoefficients(c.den, c.result.denominatorCoefficients());
    }
    // Operands are left as they were; the result keeps the left sampling time.
    expectCoefficients({1, 1}, a.denominatorCoefficients());
    RationalFunction d(vectorOf({1}), vectorOf({1, -0.5}), 0.2);
    EXPECT_EQ(0.2, (d * 2.0).samplingTimeOf());
}

TEST(RationalFunctionTest, TextRoundTripDropsTheFactoredForm) {
    RationalFunction f(vectorOf({1, 2}), vectorOf({1, 3, 2}), 0.25);
    f.zpk();
    std::string text = storedText(f);
    std::unique_ptr<Object> back(readText(text));
    RationalFunction* g = CAST(RationalFunction, back.get());
    ASSERT_TRUE(g && g->isEqual(f));
    EXPECT_FALSE(g->isZpkValid());
    EXPECT_EQ(0.25, g->samplingTimeOf());
    EXPECT_EQ(text, storedText(*g));
    // The base's word, the two coefficient Vectors (size, elements, orientation), the sampling time.
    EXPECT_EQ(":RationalFunction." + sig(class_RationalFunction) + "{0 :Vector." + sig(class_Vector) +
                  "{2 1 2 1 }\n#2{3 1 3 2 1 }\n0.25 }\n",
              text);
}

// --- RFMatrix ---

RFMatrix rowOfFirstOrders(std::vector<double> as) {
    RFMatrix m(1, unsigned(as.size()));
    for (unsigned j = 0; j < as.size(); ++j) m(0, j) = RationalFunction(vectorOf({1}), vectorOf({1, as[j]}));
    return m;
}

TEST(RFMatrixTest, HinfOfLightlyDampedSecondOrder) {
    // Thirty evaluations leave the step factor near 1.02, which bounds the accuracy of the
    // peak: within 0.5% of 1/(2 zeta sqrt(1 - zeta^2)), and the frequency within 4%.
    struct Case {
        double zeta, found, at;
    };
    for (const Case& c : {Case{0.1, 5.010327792101904, 0.982171889188038}, Case{0.05, 10.0, 1.0},
                          Case{0.3, 1.741534769777239, 0.9305720409296993}}) {
        SCOPED_TRACE(c.zeta);
        RFMatrix m(1, 1);
        m(0, 0) = secondOrder(c.zeta, 1.0);
        double w = 1e-4;
        double peak = 1.0 / (2 * c.zeta * std::sqrt(1 - c.zeta * c.zeta));
        double found = m.normHinf(w);
        EXPECT_NEAR(peak, found, 5e-3 * peak);
        EXPECT_NEAR(std::sqrt(1 - 2 * c.zeta * c.zeta), w, 0.04);
        // The walk itself, step for step.
        EXPECT_NEAR(c.found, found, 1e-9);
        EXPECT_NEAR(c.at, w, 1e-9);
    }
    // A peak at the lowest sample answers that sample, the frequency unchanged.
    RFMatrix low = rowOfFirstOrders({1});
    double w = 1e-4;
    EXPECT_NEAR(1.0, low.normHinf(w), 1e-6);
    EXPECT_EQ(1e-4, w);
}

TEST(RFMatrixTest, EvaluateIsTheLargestSingularValue) {
    RFMatrix m(2, 2);
    m(0, 0) = RationalFunction(3.0, 0.0);
    m(1, 1) = RationalFunction(vectorOf({1}), vectorOf({1, 1}));
    EXPECT_NEAR(3.0, m.evaluate(Complex(0.0, 1.0)), 1e-12);
    EXPECT_EQ(Complex(0.0, 1.0), m.lastEvaluationPoint());
    m(0, 0) = RationalFunction(0.1, 0.0);
    EXPECT_NEAR(1.0 / std::sqrt(2.0), m.evaluate(m.frequencyPoint(1.0)), 1e-12);
}

TEST(RFMatrixTest, Norm2OnlyForOneRowOrColumn) {
    EXPECT_NEAR(1.0 / std::sqrt(2.0), rowOfFirstOrders({1}).norm2(1e-7, 1e9), 1e-5);
    EXPECT_NEAR(1.0 / std::sqrt(2.0) + 1.0 / std::sqrt(8.0), rowOfFirstOrders({1, 4}).norm2(1e-7, 1e9), 1e-5);
    RFMatrix square(2, 2);
    double result = -1.0;
    std::string console = consoleOf([&] { result = square.norm2(1e-3, 1e3); });
    EXPECT_EQ(0.0, result);
    EXPECT_EQ(
        "the method \"norm2\" applies only to rational function matrices \nwith only one input or one "
        "output\n",
        console);
}

TEST(RFMatrixTest, FromStateMatricesAgreesWithTheResolvent) {
    Matrix A = Matrix("[0 1 0;0 0 1;-6 -11 -6]");
    Matrix B = Matrix("[0 1;0 0;1 2]");
    Matrix C = Matrix("[1 0 0;0 1 1]");
    Matrix D = Matrix("[0 0.5;0 0]");
    RFMatrix G(A, B, C, D);
    ASSERT_EQ(2u, G.rowNumber());
    ASSERT_EQ(2u, G.columnNumber());
    expectCoefficients({1, 6, 11, 6}, G(0, 0).denominatorCoefficients(), 1e-9);
    expectCoefficients({1}, G(0, 0).numeratorCoefficients(), 1e-9);
    // X = (sI - A)^-1 B at s = 0.3 + 0.7i, from the real form [sr - A, -si; si, sr - A] [Xr; Xi] = [B; 0].
    Matrix shifted = Matrix::diagonal(3, 0.3) - A, M = Matrix::blockDiagonal(shifted, shifted), rhs(6, 2);
    M.setSubMatrix(0, 3, Matrix::diagonal(3, -0.7), 3, 3);
    M.setSubMatrix(3, 0, Matrix::diagonal(3, 0.7), 3, 3);
    rhs.setSubMatrix(0, 0, B, 3, 2);
    Matrix X = Algebra().solve(M, rhs);
    for (unsigned i = 0; i < 2; ++i)
        for (unsigned j = 0; j < 2; ++j) {
            SCOPED_TRACE(std::to_string(i) + "," + std::to_string(j));
            Cx expected = D(i, j);
            for (unsigned r = 0; r < 3; ++r) expected += C(i, r) * Cx(X(r, j), X(r + 3, j));
            expectComplex(expected, G(i, j).value(0.3, 0.7), 1e-9);
        }
}

TEST(RFMatrixTest, EntriesFromStateMatricesHaveTheirZerosAndGains) {
    Matrix A = Matrix("[-1 0 0;0 -2 0;0 0 -3]");
    Matrix B = Matrix("[1 1;1 0;1 1]");
    Matrix C = Matrix("[1 -2 1;0 1 0]");
    Matrix D = Matrix("[0 0;0.5 0]");
    RFMatrix G(A, B, C, D);
    for (unsigned k = 0; k < 4; ++k)
        expectCoefficients({1, 6, 11, 6}, G(k / 2, k % 2).denominatorCoefficients());
    // 1/(s+1) - 2/(s+2) + 1/(s+3) = 2 / ((s+1)(s+2)(s+3))
    expectCoefficients({2}, G(0, 0).numeratorCoefficients());
    // 1/(s+1) + 1/(s+3) = 2 (s+2)^2 / ((s+1)(s+2)(s+3))
    expectCoefficients({2, 8, 8}, G(0, 1).numeratorCoefficients());
    // 1/(s+2) + 0.5 = 0.5 (s+1)(s+3)(s+4) / ((s+1)(s+2)(s+3))
    expectCoefficients({0.5, 4, 9.5, 6}, G(1, 0).numeratorCoefficients());
    expectRoots({{-1, 0}, {-3, 0}, {-4, 0}}, G(1, 0).zeros());
    EXPECT_NEAR(0.5, G(1, 0).gainOf(), 1e-12);
    // The second input does not reach the second state.
    expectCoefficients({0}, G(1, 1).numeratorCoefficients(), 0.0);
}

TEST(RFMatrixTest, OrderThirtyNumeratorsKeepTheirDigits) {
    // A cascade of the lags k / (s + k), k = 1 .. 30. (sI - cascade)^-1 is lower triangular with
    // diagonal 1 / (s + k) and corner 30! / ((s + 1) ... (s + 30)), below 1e-9 at w = 20.
    const unsigned n = 30;
    Matrix cascade(n, n), B(n, 2), C(2, n), D(2, 2);
    for (unsigned k = 0; k < n; ++k) cascade(k, k) = -(k + 1.0);
    for (unsigned k = 1; k < n; ++k) cascade(k, k - 1) = k + 1.0;
    B(0, 0) = B(n - 1, 1) = C(0, n - 1) = C(1, 0) = 1.0;
    D(0, 1) = 0.5;
    RFMatrix G(cascade, B, C, D);
    double factorial = std::tgamma(n + 1.0);
    expectCoefficients({1.0}, G(0, 0).numeratorCoefficients() * (1.0 / factorial));
    for (double w : {0.5, 3.0, 20.0}) {
        Cx s(0.0, w), corner = 1.0;
        for (unsigned k = 1; k <= n; ++k) corner *= double(k) / (s + double(k));
        const Cx expected[2][2] = {{corner, 1.0 / (s + double(n)) + 0.5}, {1.0 / (s + 1.0), 0.0}};
        for (unsigned i = 0; i < 2; ++i)
            for (unsigned j = 0; j < 2; ++j) {
                SCOPED_TRACE(std::to_string(w) + " at " + std::to_string(i) + "," + std::to_string(j));
                Cx got = G(i, j).value(0.0, w).value();
                if (expected[i][j] == 0.0)
                    EXPECT_LT(std::abs(got), 1e-12);
                else
                    EXPECT_LT(std::abs(got - expected[i][j]) / std::abs(expected[i][j]), 1e-8);
            }
    }
}

TEST(RFMatrixTest, ProductsAndSizeErrors) {
    RFMatrix a = rowOfFirstOrders({1, 2});  // 1x2
    RFMatrix col(2, 1);
    col(0, 0) = col(1, 0) = RationalFunction(1.0, 0.0);
    RFMatrix p = a * col;
    ASSERT_EQ(1u, p.rowNumber());
    expectCoefficients({2, 3}, p(0, 0).numeratorCoefficients());
    expectCoefficients({1, 3, 2}, p(0, 0).denominatorCoefficients());

    RFMatrix q = a * Matrix("[1 0 2;0 1 0]");
    ASSERT_EQ(3u, q.columnNumber());
    expectCoefficients({1}, q(0, 1).numeratorCoefficients());
    expectCoefficients({1, 2}, q(0, 1).denominatorCoefficients());
    expectCoefficients({2}, q(0, 2).numeratorCoefficients());
    expectCoefficients({3}, (2.0 * (a * 1.5))(0, 0).numeratorCoefficients());

    const std::string DIM = "[DIFFMTRXDIM] Different matrix dimension in RFMatrix::operator*, ";
    const std::string RANGE = "[INDEXRANGE] Index out of range: RFMatrix::";
    RFMatrix m23(2, 3);
    struct Case {
        const char* name;
        std::function<void()> action;
        std::string message;
    };
    std::vector<Case> cases = {
        {"RFMatrix product", [&] { m23* RFMatrix(2, 2); }, DIM + "2 3, 2 2"},
        {"Matrix product", [&] { m23* Matrix(4, 1); }, DIM + "2 3, 4 1"},
        {"row index", [&] { m23(2, 0); }, RANGE + "operator()(2)"},
        {"column index", [&] { m23(0, 3); }, RANGE + "operator()(3)"},
        {"block past the end", [&] { m23.subMatrix(1, 1, 2, 1); }, RANGE + "subMatrix(2)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.message, raisedText(c.action));
    }
    RFMatrix block = q.subMatrix(0, 1, 1, 2);
    expectCoefficients({2}, block(0, 1).numeratorCoefficients());
}

TEST(RFMatrixTest, CopiesShareNoElements) {
    RFMatrix a = rowOfFirstOrders({1, 2});
    RFMatrix b(a), c;
    c = a;
    b(0, 0) = c(0, 1) = RationalFunction(7.0, 0.0);
    EXPECT_TRUE(a.isEqual(rowOfFirstOrders({1, 2})));
}

TEST(RFMatrixTest, TextRoundTrip) {
    RFMatrix a(2, 1, 0.5);
    a(0, 0) = RationalFunction(vectorOf({1}), vectorOf({1, -0.5}), 0.5);
    a(1, 0) = RationalFunction(2.0, 0.5);
    std::string text = storedText(a);
    std::unique_ptr<Object> back(readText(text));
    RFMatrix* b = CAST(RFMatrix, back.get());
    ASSERT_TRUE(b && b->isEqual(a));
    EXPECT_EQ(0.5, b->samplingTimeOf());
    EXPECT_EQ(text, storedText(*b));
    // A damaged element count is refused, not allocated.
    std::string damaged = text;
    size_t at = damaged.find("2 1 0.5");
    ASSERT_NE(std::string::npos, at);
    damaged.replace(at, 7, "99999 99999 0.5");
    std::string error;
    EXPECT_EQ(nullptr, readText(damaged, &error));
    EXPECT_NE(std::string::npos, error.find("[RDSYNERR]"));
}

}  // namespace
