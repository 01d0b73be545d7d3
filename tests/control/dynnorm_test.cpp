// DynOp analysis: gramians, H2 and H-infinity norms, controllable and stabilizable parts, balanced
// truncation and the cleaning of poles, against closed forms and direct computations.
#include <gtest/gtest.h>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

// wn^2 / (s^2 + 2 zeta wn s + wn^2) in companion form.
DynOp secondOrder(double zeta, double wn) {
    return DynOp(mat(2, 2, {0, 1, -wn * wn, -2 * zeta * wn}), mat(2, 1, {0, 1}), mat(1, 2, {wn * wn, 0}),
                 Matrix(0, 0));
}

// The largest singular value over a dense logarithmic grid of frequencies.
double sweptPeak(const DynOp& s) {
    double best = 0.0;
    for (double e = -4; e <= 4; e += 0.0005) best = std::max(best, s.singularValueAt(std::pow(10.0, e)));
    return best;
}

double residual(const Matrix& M) { return Algebra().normF(M); }

TEST(DynOpNormTest, H2NormsOfClosedForms) {
    DynOp first(mat(1, 1, {-2}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0));
    EXPECT_NEAR(first.normH2(), 1.0 / std::sqrt(4.0), 1e-14);
    for (double zeta : {0.01, 0.5, 2.0})
        EXPECT_NEAR(secondOrder(zeta, 3.0).normH2(), std::sqrt(3.0 / (4 * zeta)),
                    1e-11 * std::sqrt(3.0 / zeta));
    // Two decoupled channels add their squares; widely spread poles converge as well.
    DynOp both = first.append(secondOrder(0.5, 3.0));
    EXPECT_NEAR(both.normH2(), std::sqrt(0.25 + 1.5), 1e-12);
    DynOp spread(mat(2, 2, {-1e-3, 0, 0, -1e3}), mat(2, 1, {1, 1}), mat(1, 2, {1, 0}), Matrix(0, 0));
    EXPECT_NEAR(spread.normH2(), std::sqrt(1 / 2e-3), 1e-9);
}

TEST(DynOpNormTest, GramiansSolveTheirLyapunovEquations) {
    DynOp s = randomStable(6, 2, 3);
    Matrix A = s.getA(), B = s.getB(), C = s.getC();
    Matrix P = s.contrGramian(), Q = s.obsGramian();
    EXPECT_LT(residual(A * P + P * A.transpose() + B * B.transpose()), 1e-13 * residual(B * B.transpose()));
    EXPECT_LT(residual(A.transpose() * Q + Q * A + C.transpose() * C), 1e-13 * residual(C.transpose() * C));
    Matrix factor(0, 0);
    Matrix again = s.gramianOf(&factor);
    EXPECT_LT(residual(factor.transpose() * factor - Q), 1e-12 * residual(Q));
    EXPECT_LT(residual(again - Q), 1e-12 * residual(Q));
}

TEST(DynOpNormTest, HinfBisectionBracketsTheTrueNorm) {
    // 1/(s+1): bounds 0.5 and 1, so the first midpoint is the answer, within 0.5 of the norm 1.
    DynOp lag(mat(1, 1, {-1}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0));
    EXPECT_DOUBLE_EQ(lag.normHinf(), 0.75);
    for (DynOp s : {secondOrder(0.05, 2.0), randomStable(5, 2, 2), secondOrder(0.3, 1.0) * 10.0}) {
        double peak = sweptPeak(s);
        EXPECT_NEAR(s.normHinf(), peak, 0.5);
        // The search samples the gain: never above the peak, and close below it.
        double w = 1e-4, found = s.normHinfInFrequency(w);
        EXPECT_LE(found, peak * (1 + 1e-9));
        EXPECT_GE(found, 0.98 * peak);
        EXPECT_DOUBLE_EQ(s.singularValueAt(w), found);
    }
    // Resonance of a lightly damped mode: 1 / (2 zeta sqrt(1 - zeta^2)) near wn sqrt(1 - 2 zeta^2).
    double w = 1e-4, zeta = 0.05;
    EXPECT_NEAR(secondOrder(zeta, 2.0).normHinfInFrequency(w), 1 / (2 * zeta * std::sqrt(1 - zeta * zeta)),
                0.2);
    EXPECT_NEAR(w, 2.0 * std::sqrt(1 - 2 * zeta * zeta), 0.02);
}

TEST(DynOpNormTest, HinfSpecialCases) {
    // No controllable state: 0, whatever D.
    DynOp blind(mat(2, 2, {-1, 0, 0, -2}), Matrix(2, 1), mat(1, 2, {0, 1}), mat(1, 1, {5}), 0, 0, 0, false);
    EXPECT_EQ(blind.normHinf(), 0.0);
    // Unstable, or a fast mode: the frequency search, announced.
    DynOp unstable(mat(1, 1, {1}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0));
    double value = 0.0;
    EXPECT_EQ(consoleOf([&] { value = unstable.normHinf(); }), "norm computed as max value in freq. \n");
    EXPECT_NEAR(value, 1.0, 1e-6);
    DynOp s = secondOrder(0.1, 1.0);
    fastMode = 3;
    std::string console = consoleOf([&] { value = s.normHinf(); });
    fastMode = 0;
    EXPECT_EQ(console, "norm computed as max value in freq. \n");
    EXPECT_NEAR(value, sweptPeak(s), 0.02 * value);
}

TEST(DynOpNormTest, GainAtAnUndampedPoleIsInfiniteNotFinite) {
    // 1 / (s^2 + 1): the solve at s = j is exactly singular.
    DynOp s(mat(2, 2, {0, 1, -1, 0}), mat(2, 1, {0, 1}), mat(1, 2, {1, 0}), Matrix(0, 0));
    EXPECT_EQ(s.singularValueAt(1.0), HUGE_VAL);
    EXPECT_NEAR(s.singularValueAt(2.0), 1.0 / 3.0, 1e-15);
}

TEST(DynOpNormTest, StabilityUsesThePoleTolerance) {
    auto pole = [](double p) { return DynOp(mat(1, 1, {p}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0)); };
    EXPECT_FALSE(pole(-1e-7).isStable());
    EXPECT_TRUE(pole(-1).isStable());
    EXPECT_TRUE(DynOp(2.0, 0, 0, 0).isStable());
    IntArray list(0);
    pole(0).selectUnstablePoles(mat(3, 2, {-1, 0, -1e-9, 0, 2, 1}), list, 1e-6);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1], 2);
}

// diag(-1, -2, -3) with the third state unreachable and the first unseen.
DynOp partlyBlind() {
    return DynOp(mat(3, 3, {-1, 0, 0, 0, -2, 0, 0, 0, -3}), mat(3, 1, {1, 1, 0}), mat(1, 3, {0, 1, 1}),
                 Matrix(0, 0));
}

TEST(DynOpNormTest, ControllableAndObservablePartsKeepTheTransfer) {
    DynOp s = partlyBlind();
    std::string console;
    unsigned order = 0;
    console = consoleOf([&] { order = s.controllableOrder(0, 1e-9, true); });
    EXPECT_EQ(order, 2u);
    EXPECT_EQ(console.substr(0, 48), "controllable subsystem order = 2, with tolerance");
    EXPECT_NE(console.find("uncontrollable poles"), std::string::npos);
    EXPECT_EQ(s.controllableOrder(0, 1e-9, false, false), 2u);
    EXPECT_EQ(consoleOf([&] { s.observableOrder(0, 1e-9, true); }), "observable subsystem order 2\n");

    Matrix T;
    DynOp c = s.contrSubSystem(0, T, 1e-9);
    EXPECT_EQ(c.order(), 2u);
    DynOp o = c.obsSubSystem(0, T, 1e-9);
    EXPECT_EQ(o.order(), 1u);
    EXPECT_EQ(s.subSystem(0, 0, 0, 0, true).order(), 1u);
    for (Cx p : {Cx(0, 1), Cx(2, 0)}) expectNear(transferAt(o, p), transferAt(s, p), 1e-10);
    EXPECT_EQ(s.contrSubSystem(0, T, 1e-9, false, 3).order(), 3u);
    EXPECT_NE(consoleOf([&] {
                  s.contrSubSystem(0, T, 1e-9, true);
              }).find("norm of the residuals in testing controllability indices\n"),
              std::string::npos);
    DynOp full = randomStable(3, 1, 1);
    full.contrSubSystem(0, T, 1e-9);
    EXPECT_TRUE(T.isEqual(Matrix::diagonal(3, 1.0)));
}

TEST(DynOpNormTest, StabilizablePartKeepsUnstableAndMarginalUncontrollablePoles) {
    Matrix T;
    // Uncontrollable poles 2 (unstable) and -5 (stable), coupled to the controllable -1.
    DynOp s(mat(3, 3, {-1, 1, 1, 0, 2, 1, 0, 0, -5}), mat(3, 1, {1, 0, 0}), mat(1, 3, {1, 1, 1}),
            Matrix(0, 0));
    DynOp kept = s.stabilizableSubSystem(0, T, 1e-9, 1e-6);
    ASSERT_EQ(kept.order(), 2u);
    std::vector<Cx> poles = eigenvalues(kept.getA());
    EXPECT_NEAR(poles[0].real(), -1.0, 1e-9);
    EXPECT_NEAR(poles[1].real(), 2.0, 1e-9);
    // A single stable uncontrollable state goes; a single unstable one keeps everything.
    EXPECT_EQ(partlyBlind().stabilizableSubSystem(0, T, 1e-9, 1e-6).order(), 2u);
    DynOp oneUnstable(mat(2, 2, {-1, 0, 0, 3}), mat(2, 1, {1, 0}), mat(1, 2, {1, 1}), Matrix(0, 0));
    EXPECT_EQ(oneUnstable.stabilizableSubSystem(0, T, 1e-9, 1e-6).order(), 2u);
    // Controllable -1; uncontrollable 0 (an integrator), +-2j (undamped), kept, and -5, dropped.
    DynOp marginal(mat(5, 5, {-1, 1, 1, 1, 1, 0, 0, 1, 0, 1, 0, 0, 0, 2, 1, 0, 0, -2, 0, 1, 0, 0, 0, 0, -5}),
                   mat(5, 1, {1, 0, 0, 0, 0}), mat(1, 5, {1, 1, 1, 1, 1}), Matrix(0, 0));
    DynOp keptMarginal = marginal.stabilizableSubSystem(0, T, 1e-9, 1e-6);
    ASSERT_EQ(keptMarginal.order(), 4u);
    EXPECT_NEAR(Algebra().trace(keptMarginal.getA()), -1.0, 1e-9);  // the poles -1, 0, 2j, -2j
}

TEST(DynOpNormTest, BalancedRealizationGivesTheHankelSingularValues) {
    DynOp s = randomStable(6, 2, 2, 11);
    Matrix lambda = Algebra().computeEigenvalues(s.contrGramian() * s.obsGramian());
    std::vector<double> hankel;
    for (unsigned i = 0; i < lambda.rowNumber(); ++i) hankel.push_back(std::sqrt(lambda(i, 0)));
    std::sort(hankel.rbegin(), hankel.rend());

    DynOp balanced(s);
    Matrix sigma = balanced.balancedRealization(0.0);
    for (unsigned i = 0; i < 6; ++i) EXPECT_NEAR(sigma(i, i), hankel[i], 1e-8 * hankel[0]);
    Matrix P = balanced.contrGramian(), Q = balanced.obsGramian();
    Matrix expected(6, 6);
    for (unsigned i = 0; i < 6; ++i) expected(i, i) = hankel[i];
    EXPECT_LT(residual(P - expected), 1e-8 * hankel[0]);
    EXPECT_LT(residual(Q - P), 1e-8 * hankel[0]);

    // Truncation: the error stays within twice the sum of the discarded values.
    DynOp reduced(s);
    reduced.balancedRealization(hankel[3] * 1.0001);
    EXPECT_EQ(reduced.order(), 3u);
    double bound = 2 * (hankel[3] + hankel[4] + hankel[5]);
    for (double w : {0.0, 0.3, 1.0, 3.0, 30.0}) {
        CxMatrix error = add(transferAt(s, Cx(0, w)), transferAt(reduced, Cx(0, w)), -1.0);
        for (auto& row : error)
            for (Cx x : row) EXPECT_LE(std::abs(x), bound);
    }
}

TEST(DynOpNormTest, CleanPolesInZeroMakesThemExact) {
    DynOp s(mat(3, 3, {1e-9, 1, 0, 0, -2, 1, 0, 0, -1e-10}), mat(3, 1, {0, 0, 1}), mat(1, 3, {1, 0, 0}),
            Matrix(0, 0));
    s.cleanPolesInZero(1e-6);
    std::vector<Cx> poles = eigenvalues(s.getA());
    EXPECT_EQ(poles[1], Cx(0, 0));
    EXPECT_EQ(poles[2], Cx(0, 0));
    EXPECT_NEAR(poles[0].real(), -2.0, 1e-12);
    // A 2x2 block with real roots near zero and -1 is split so that the small one is exactly 0.
    DynOp block(mat(2, 2, {-0.5, 0.5, 0.5, -0.5 + 1e-9}), mat(2, 1, {1, 0}), mat(1, 2, {1, 1}), Matrix(0, 0),
                0, 0, 0, false);
    Cx before = transferAt(block, Cx(0, 1))[0][0];
    block.cleanPolesInZero(1e-6);
    std::vector<Cx> split = eigenvalues(block.getA());
    EXPECT_EQ(split[1], Cx(0, 0));
    EXPECT_NEAR(std::abs(transferAt(block, Cx(0, 1))[0][0] - before), 0.0, 1e-6);
}

}  // namespace
