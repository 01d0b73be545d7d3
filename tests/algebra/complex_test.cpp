// Complex and CMatrix: arithmetic against hand values, the complex SVD, printing and streams.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <sstream>
#include <string>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "quill/all.h"

namespace {

using ObjectPtr = std::unique_ptr<Object>;

template <class T>
std::string printed(const T& x) {
    std::ostringstream os;
    os << x;
    return os.str();
}

void expectNear(const Complex& expected, const Complex& actual, double tol = 1e-12) {
    EXPECT_NEAR(expected.re(), actual.re(), tol);
    EXPECT_NEAR(expected.im(), actual.im(), tol);
}

TEST(Complex, ArithmeticAgainstHandValues) {
    Complex a(1, 2), b(3, -4);
    struct Case {
        const char* what;
        Complex result, expected;
    } cases[] = {
        {"a+b", a + b, Complex(4, -2)},
        {"a-b", a - b, Complex(-2, 6)},
        {"a*b", a * b, Complex(11, 2)},
        {"a/b", a / b, Complex(-0.2, 0.4)},
        {"b/a (imaginary part larger)", b / a, Complex(-1, -2)},
        {"2-a", 2.0 - a, Complex(1, -2)},
        {"1/i", 1.0 / Complex(0, 1), Complex(0, -1)},
        {"conjugate", a.conjugate(), Complex(1, -2)},
        {"exp(i pi)", Complex(0, M_PI).exp(), Complex(-1, 0)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        expectNear(c.expected, c.result);
    }
    EXPECT_DOUBLE_EQ(5.0, b.abs());
    EXPECT_DOUBLE_EQ(25.0, b.norm());
    EXPECT_DOUBLE_EQ(M_PI / 2, Complex(0, 3).arg());
    Complex c(a);
    c *= b;
    c /= b;
    expectNear(a, c);
}

TEST(Complex, DivisionByZeroAndHugeValues) {
    Complex q = Complex(1, 1) / Complex(0, 0);
    EXPECT_TRUE(std::isinf(q.re()) || std::isnan(q.re()));
    // Smith's division keeps the squares of 1e200 out of the way.
    expectNear(Complex(1, 0), Complex(1e200, 1e200) / Complex(1e200, 1e200));
    EXPECT_DOUBLE_EQ(std::sqrt(2.0) * 1e200, Complex(1e200, 1e200).abs());
}

TEST(Complex, PrintingEqualityAndStream) {
    EXPECT_EQ("(1.5,-2)", printed(Complex(1.5, -2)));
    EXPECT_TRUE(Complex(1, 2).isEqual(Complex(1, 2)));
    EXPECT_FALSE(Complex(1, 2).isEqual(Complex(1, -2)));
    EXPECT_EQ(Complex(0.0, 1).hash(), Complex(-0.0, 1).hash());
    Complex z(0.1 + 0.2, -1e-300);
    ObjectPtr back(readText(storedText(z))), bin(readBinary(storedBinary(z)));
    ASSERT_TRUE(back && bin);
    EXPECT_TRUE(back->isEqual(z));
    EXPECT_TRUE(bin->isEqual(z));
}

// [1+i 2; -i 3+4i]
CMatrix sample() { return CMatrix(Matrix("[1 2;0 3]"), Matrix("[1 0;-1 4]")); }

TEST(CMatrix, ArithmeticAndShape) {
    CMatrix a = sample();
    CMatrix p = a * CMatrix::identity(2);
    EXPECT_TRUE(p.isEqual(a));
    CMatrix sq = a * a;
    // (1+i)(1+i) + 2(-i) = 0 ; (1+i)2 + 2(3+4i) = 8+10i
    expectNear(Complex(0, 0), sq.get(0, 0));
    expectNear(Complex(8, 10), sq.get(0, 1));
    // (-i)(1+i) + (3+4i)(-i) = 1-i + 4-3i
    expectNear(Complex(5, -4), sq.get(1, 0));
    CMatrix h = a.conjugateTranspose();
    expectNear(Complex(0, 1), h.get(0, 1));
    expectNear(Complex(2, 0), h.get(1, 0));
    CMatrix d = a - a;
    EXPECT_TRUE(d.realPart().allAbsNotAbove(0.0) && d.imagPart().allAbsNotAbove(0.0));
    expectNear(Complex(1, 1), (a * Complex(1, 1)).get(1, 0) + Complex(0, 2));
}

TEST(CMatrix, IndexAndDimensionFaults) {
    CMatrix a = sample();
    EXPECT_EQ("[INDEXRANGE] Index out of range: CMatrix::operator()(2)", raisedText([&] { a(2, 0); }));
    EXPECT_EQ("[DIFFMTRXDIM] Different matrix dimension in CMatrix::operator+, 2 2, 1 2",
              raisedText([&] { a + CMatrix(1, 2); }));
    EXPECT_EQ("[DIFFMTRXDIM] Different matrix dimension in CMatrix::operator*, 2 2, 3 1",
              raisedText([&] { a* CMatrix(3, 1); }));
}

TEST(CMatrix, SingularValuesAndFactorsAgainstKnownValues) {
    struct Case {
        const char* what;
        CMatrix m;
        std::vector<double> sigma;
    };
    CMatrix diag(2, 3);
    diag.set(0, 0, Complex(0, 3));   // |3i| = 3
    diag.set(1, 1, Complex(-4, 0));  // 4
    Case cases[] = {
        {"diagonal 2x3", diag, {4, 3}},
        // (1/sqrt2)[1 i; i 1] times 5: both values 5
        {"scaled unitary", CMatrix(Matrix("[1 0;0 1]"), Matrix("[0 1;1 0]")) * (5 / std::sqrt(2.0)), {5, 5}},
        // [1 i; i -1] = [1; i][1 i]: one value 2
        {"rank one", CMatrix(Matrix("[1 0;0 -1]"), Matrix("[0 1;1 0]")), {2, 0}},
        {"real part only", CMatrix(Matrix("[3 0;0 -2]")), {3, 2}}};
    for (Case& c : cases) {
        SCOPED_TRACE(c.what);
        Vector s = c.m.singularValues();
        ASSERT_EQ(c.sigma.size(), s.size());
        for (unsigned i = 0; i < s.size(); ++i) EXPECT_NEAR(c.sigma[i], s[i], 1e-12);
        EXPECT_NEAR(c.sigma[0], c.m.maxSingularValue(), 1e-12);
    }
    // The factors rebuild the matrix; an empty one has no gain.
    CMatrix a = sample(), work(a), U(0, 0), VT(0, 0);
    Vector s = a.svd(work, U, VT, true);
    CMatrix back = U * CMatrix(Matrix::diagonal(s)) * VT;
    for (unsigned i = 0; i < 2; ++i)
        for (unsigned j = 0; j < 2; ++j) expectNear(a.get(i, j), back.get(i, j), 1e-12);
    EXPECT_EQ(0.0, CMatrix(0, 3).maxSingularValue());
}

TEST(CMatrix, PrintingAndStreams) {
    EXPECT_EQ(" [ (1,1) (2,0); (0,-1) (3,4)]", printed(sample()));
    CMatrix a = sample();
    a.set(1, 1, Complex(0.1 + 0.2, -1.0 / 3));
    ObjectPtr back(readText(storedText(a))), bin(readBinary(storedBinary(a)));
    ASSERT_TRUE(back && bin);
    EXPECT_TRUE(back->isEqual(a));
    EXPECT_TRUE(bin->isEqual(a));
}

}  // namespace
