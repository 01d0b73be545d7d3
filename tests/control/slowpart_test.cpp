// The compensator's high-frequency reduction: the slow poles kept exactly, whatever the order of
// the states, the gain at rest kept, a complex pair at the cut kept whole, in both time domains.
#include "ctltest.h"

namespace {

// The gain at rest: D - C A^-1 B, or D + C (I - A)^-1 B in discrete time.
double steadyGain(const DynOp& s, bool discrete) {
    Algebra alg;
    Matrix M = discrete ? Matrix::diagonal(s.order(), 1.0) - s.getA() : s.getA() * -1.0;
    return (s.getD() + s.getC() * alg.solve(M, s.getB()))(0, 0);
}

// diag(fast, slow...) seen through a fixed similarity, so that the fast mode comes first and
// couples to the others.
DynOp coupled(const Matrix& diagonal, const Matrix& b, const Matrix& c) {
    unsigned n = diagonal.rowNumber();
    Matrix T = Matrix::diagonal(n, 1.0);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) T(i, j) += 0.3 * (i + 1) + 0.1 * j * j;
    Algebra alg;
    Matrix Ti = alg.inv(T);
    return DynOp(T * diagonal * Ti, T * b, c * Ti, Matrix(1, 1));
}

TEST(SlowPartTest, KeepsTheSlowPolesAndTheGainAtRest) {
    // Poles -100 (first) and -1.
    DynOp full = coupled(mat(2, 2, {-100, 0, 0, -1}), mat(2, 1, {1, 1}), mat(1, 2, {1, -0.5}));
    for (bool discrete : {false, true}) {
        SCOPED_TRACE(discrete);
        std::unique_ptr<DynOp> s(discrete ? new DiscDynOp(full, false, 0.01) : new DynOp(full));
        DynOp slow = s->slowPart(1);
        ASSERT_EQ(slow.order(), 1u);
        double pole = slow.getA()(0, 0), expected = discrete ? std::exp(-0.01) : -1.0;
        EXPECT_NEAR(pole, expected, 1e-10);
        EXPECT_NEAR(steadyGain(slow, discrete), steadyGain(*s, discrete), 1e-10);
    }
    // Poles -1 +- j and -50: a cut at one state keeps the pair.
    Matrix pair = mat(3, 3, {-50, 0, 0, 0, -1, 1, 0, -1, -1});
    DynOp third = coupled(pair, mat(3, 1, {1, 2, 3}), mat(1, 3, {1, 0, 1}));
    DynOp kept = third.slowPart(1);
    ASSERT_EQ(kept.order(), 2u);
    Matrix p = kept.poles();
    for (unsigned i = 0; i < 2; ++i) EXPECT_NEAR(std::hypot(p(i, 0) + 1, std::fabs(p(i, 1)) - 1), 0.0, 1e-9);
    EXPECT_NEAR(steadyGain(kept, false), steadyGain(third, false), 1e-10);
    EXPECT_EQ(third.slowPart(3).order(), 3u);
    EXPECT_EQ(third.slowPart(0).order(), 0u);
}

}  // namespace
