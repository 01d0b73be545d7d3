// Polynomial and PMatrix: products, sums, evaluation, roots, printing and streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "quill/all.h"

namespace {

using ObjectPtr = std::unique_ptr<Object>;

Polynomial poly(std::vector<double> c, double samplingTime = 0.0) {
    return Polynomial(Vector(c.data(), unsigned(c.size())), samplingTime);
}

void expectCoefficients(std::vector<double> expected, const Polynomial& p, double tol = 1e-12) {
    ASSERT_EQ(expected.size(), p.coefficients().size());
    for (unsigned i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(expected[i], p.coefficients()[i], tol) << "at " << i;
}

template <class T>
std::string printed(const T& x) {
    std::ostringstream os;
    os << x;
    return os.str();
}

// Rows (re, im) sorted, so that root sets compare whatever order the solver gives.
std::vector<std::pair<double, double>> sortedRoots(const Matrix& r) {
    std::vector<std::pair<double, double>> v;
    for (unsigned i = 0; i < r.rowNumber(); ++i) v.push_back({r(i, 0), r(i, 1)});
    std::sort(v.begin(), v.end());
    return v;
}

TEST(Polynomial, ProductsAndSums) {
    Polynomial a = poly({1, 1}), b = poly({1, -2, 3});
    struct Case {
        const char* what;
        Polynomial result;
        std::vector<double> expected;
    } cases[] = {
        {"(s+1)(s^2-2s+3)", a * b, {1, -1, 1, 3}},
        {"(s+1)+(s^2-2s+3)", a + b, {1, -1, 4}},
        {"(s+1)-(s^2-2s+3)", a - b, {-1, 3, -2}},
        {"leading terms cancel", b - poly({1, 0, 0}), {-2, 3}},
        {"everything cancels", a - a, {0}},
        {"2*(s+1)", 2.0 * a, {2, 2}},
        {"1-(s+1)", 1.0 - a, {-1, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        expectCoefficients(c.expected, c.result);
    }
}

TEST(Polynomial, Evaluation) {
    Polynomial p = poly({1, -2, 3});  // s^2 - 2s + 3
    EXPECT_DOUBLE_EQ(3.0, p.value(0.0));
    EXPECT_DOUBLE_EQ(11.0, p.value(-2.0));
    // at s = 2i: -4 - 4i + 3
    Complex v = p.value(Complex(0, 2));
    EXPECT_NEAR(-1.0, v.re(), 1e-14);
    EXPECT_NEAR(-4.0, v.im(), 1e-14);
    EXPECT_DOUBLE_EQ(0.0, p.coefficient(1) + 2.0);
    EXPECT_DOUBLE_EQ(0.0, p.coefficient(7));
}

TEST(Polynomial, RootsAgainstKnownRoots) {
    struct Case {
        const char* what;
        std::vector<double> coefficients;
        std::vector<std::pair<double, double>> roots;
    } cases[] = {
        {"first order", {2, 6}, {{-3, 0}}},
        {"(s+1)(s+2)(s-3)", {1, 0, -7, -6}, {{-2, 0}, {-1, 0}, {3, 0}}},
        {"s^2+2s+5", {1, 2, 5}, {{-1, -2}, {-1, 2}}},
        {"s^2 (two zero roots)", {1, 0, 0}, {{0, 0}, {0, 0}}},
        {"leading zero dropped", {0, 1, 4}, {{-4, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        auto roots = sortedRoots(poly(c.coefficients).roots());
        ASSERT_EQ(c.roots.size(), roots.size());
        for (unsigned i = 0; i < roots.size(); ++i) {
            EXPECT_NEAR(c.roots[i].first, roots[i].first, 1e-10);
            EXPECT_NEAR(c.roots[i].second, roots[i].second, 1e-10);
        }
    }
    EXPECT_TRUE(poly({5}).roots().isEqual(Matrix(1, 1)));  // a constant: the 1x1 zero matrix
}

TEST(Polynomial, FromRootsAndCharacteristic) {
    // A conjugate pair gives one quadratic factor; a lone complex row stands for its pair.
    expectCoefficients({2, 6, 14, 10}, Polynomial::fromRoots(Matrix("[-1 0;-1 2;-1 -2]"), 2.0));
    expectCoefficients({1, 2, 5}, Polynomial::fromRoots(Matrix("[-1 2]")));
    expectCoefficients({3}, Polynomial::fromRoots(Matrix(0, 2), 3.0));
    // Roots and back.
    Polynomial p = poly({1, 0, -7, -6});
    expectCoefficients({1, 0, -7, -6}, Polynomial::fromRoots(p.roots()), 1e-10);
    // det(sI - A) of a companion-like matrix: s^2 + 3s + 2.
    expectCoefficients({1, 3, 2}, Polynomial::characteristic(Matrix("[0 1;-2 -3]")), 1e-12);
}

TEST(Polynomial, OrderAndResize) {
    Polynomial p = poly({1, 2, 3});
    EXPECT_EQ(2, p.order());
    EXPECT_EQ(0, poly({0, 2, 3}).order());
    EXPECT_EQ(0, p.reSize(3));  // a new highest power is 0
    expectCoefficients({0, 1, 2, 3}, p);
    p.reSize(1);
    expectCoefficients({2, 3}, p);
    expectCoefficients({2, 3}, poly({0, 0, 2, 3}).trim());
}

TEST(Polynomial, Printing) {
    struct Case {
        std::vector<double> coefficients;
        double samplingTime;
        const char* expected;
    } cases[] = {
        {{1, -3, 2}, 0, "s^2 - 3 s + 2"},
        {{-1, 0, 0.5}, 0, "-s^2 + 0.5"},
        {{2, 1}, 0.1, "2 z + 1"},
        {{0, 0}, 0, "0"},
        {{-4}, 0, "-4"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        EXPECT_EQ(c.expected, printed(poly(c.coefficients, c.samplingTime)));
    }
}

TEST(Polynomial, StreamRoundTrip) {
    Polynomial p = poly({1, 0.1 + 0.2, -1.0 / 3}, -1.0);
    ObjectPtr back(readText(storedText(p)));
    ASSERT_NE(nullptr, back.get());
    EXPECT_TRUE(back->isEqual(p));
    EXPECT_FALSE(p.isEqual(poly({1, 0.1 + 0.2, -1.0 / 3})));  // the sampling time counts
}

TEST(PMatrix, ArithmeticAndEvaluation) {
    PMatrix sI_A = PMatrix::characteristic(Matrix("[0 1;-2 -3]"));
    EXPECT_EQ("[ s , -1 ;\n  2 , s + 3 ]", printed(sI_A));
    EXPECT_EQ(1, sI_A.order());
    // The adjugate times the matrix is det(sI - A) I.
    PMatrix adj(2, 2);
    adj(0, 0) = poly({1, 3});
    adj(0, 1) = poly({1});
    adj(1, 0) = poly({-2});
    adj(1, 1) = poly({1, 0});
    PMatrix prod = sI_A * adj;
    for (unsigned i = 0; i < 4; ++i)
        expectCoefficients(i % 3 ? std::vector<double>{0} : std::vector<double>{1, 3, 2}, prod(i / 2, i % 2));
    // Evaluation at s = i.
    EXPECT_EQ(Complex(0, 1), sI_A.value(Complex(0, 1)).get(0, 0));
    EXPECT_EQ(Complex(3, 1), sI_A.value(Complex(0, 1)).get(1, 1));
    EXPECT_EQ(5.0, sI_A.value(2.0)(1, 1));
    // Constant factors on either side and a polynomial factor.
    PMatrix c = Matrix("[1 0]") * sI_A;
    expectCoefficients({1, 0}, c(0, 0));
    PMatrix t = (sI_A * poly({1, 1})).transpose();
    expectCoefficients({-1, -1}, t(1, 0));
    expectCoefficients({0}, (sI_A - sI_A)(1, 1));
    expectCoefficients({2, 6}, (sI_A + sI_A)(1, 1));
}

TEST(PMatrix, FaultsAndStream) {
    PMatrix a(2, 3);
    EXPECT_EQ("[INDEXRANGE] Index out of range: PMatrix::operator()(3)", raisedText([&] { a(0, 3); }));
    EXPECT_EQ("[DIFFMTRXDIM] Different matrix dimension in PMatrix::operator*, 2 3, 2 3",
              raisedText([&] { a* a; }));
    a(1, 2) = poly({1, -0.25, 7});
    ObjectPtr back(readText(storedText(a)));
    ASSERT_NE(nullptr, back.get());
    EXPECT_TRUE(back->isEqual(a));
}

}  // namespace
