// DiscDynOp: zero-order-hold discretisation against closed forms, stability on the unit circle,
// the pole table, the norms and the stream form.
#include <gtest/gtest.h>

#include <sstream>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

Cx onCircle(double angle) { return std::polar(1.0, angle); }

double sweptCircle(const DiscDynOp& s) {
    double best = 0.0;
    for (double a = 0.0; a <= M_PI; a += M_PI / 20000)
        best = std::max(best, s.singularValueAt(a / s.getSamplingTime()));
    return best;
}

double residual(const Matrix& M) { return Algebra().normF(M); }

TEST(DiscDynOpTest, ZeroOrderHoldMatchesTheMatrixExponential) {
    // Double integrator: Ad = [1 T; 0 1], Bd = [T^2/2; T].
    double T = 0.1;
    DiscDynOp chain(DynOp(mat(2, 2, {0, 1, 0, 0}), mat(2, 1, {0, 1}), mat(1, 2, {1, 0}), Matrix(0, 0)), false,
                    T);
    EXPECT_LT(residual(chain.getA() - mat(2, 2, {1, T, 0, 1})), 1e-15);
    EXPECT_LT(residual(chain.getB() - mat(2, 1, {T * T / 2, T})), 1e-15);
    // Distinct eigenvalues -1 and -3 (A = V diag V^-1): Ad = V e^(diag T) V^-1, Bd = A^-1 (Ad - I) B.
    Matrix V = mat(2, 2, {1, 1, 1, -1}), L = mat(2, 2, {-1, 0, 0, -3});
    Algebra alg;
    Matrix A = V * L * alg.inv(V), B = mat(2, 1, {1, 2});
    double big = 2.5;
    Matrix Ad = V * mat(2, 2, {std::exp(-big), 0, 0, std::exp(-3 * big)}) * alg.inv(V);
    Matrix Bd = alg.inv(A) * (Ad - Matrix::diagonal(2, 1.0)) * B;
    DiscDynOp s(DynOp(A, B, mat(1, 2, {1, 1}), Matrix(0, 0)), false, big);
    EXPECT_LT(residual(s.getA() - Ad), 1e-14);
    EXPECT_LT(residual(s.getB() - Bd), 1e-14);
    EXPECT_TRUE(s.getC().isEqual(mat(1, 2, {1, 1})));

    // A sampling time of 0, a discrete wrapping and a static system are not discretised.
    DynOp c(A, B, mat(1, 2, {1, 1}), Matrix(0, 0));
    EXPECT_TRUE(DiscDynOp(c, false, 0.0).getA().isEqual(A));
    EXPECT_TRUE(DiscDynOp(c, true, 0.5).getA().isEqual(A));
    EXPECT_TRUE(DiscDynOp(DynOp(mat(1, 1, {2})), false, 0.5).isStaticGain());
    // A continuous rational function with a positive sampling time is discretised: 1/(s+1).
    DiscDynOp lag;
    consoleOf([&] { lag = DiscDynOp(RationalFunction(Vector(1u, 1.0), mat(1, 2, {1, 1}).row(0)), 0.2); });
    EXPECT_NEAR(lag.getA()(0, 0), std::exp(-0.2), 1e-15);
    EXPECT_EQ(lag.getSamplingTime(), 0.2);
}

// The shift by the mean diagonal reached the zero rows of [A B; 0 0]: e^500 squared overflowed.
TEST(DiscDynOpTest, AStiffPlantSampledSlowlyStaysFinite) {
    for (double T : {1.0, 10.0}) {
        DiscDynOp s(DynOp(mat(1, 1, {-1000}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0)), false, T);
        EXPECT_EQ(s.getA()(0, 0), 0.0);
        EXPECT_NEAR(s.getB()(0, 0), 1e-3, 1e-18);
    }
    DiscDynOp fast(DynOp(mat(2, 2, {-1000, 0, 0, 2}), mat(2, 1, {1, 1}), mat(1, 2, {1, 1}), Matrix(0, 0)),
                   false, 1);
    EXPECT_NEAR(fast.getA()(1, 1), std::exp(2.0), 1e-12 * std::exp(2.0));
    EXPECT_NEAR(fast.getB()(1, 0), (std::exp(2.0) - 1) / 2, 1e-12 * std::exp(2.0));
    EXPECT_NEAR(fast.getB()(0, 0), 1e-3, 1e-18);
}

TEST(DiscDynOpTest, StabilityIsInsideTheUnitCircle) {
    auto pole = [](double p) {
        return DiscDynOp(mat(1, 1, {p}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 0.1);
    };
    EXPECT_FALSE(pole(1.0).isStable());
    EXPECT_FALSE(pole(-1.0).isStable());
    EXPECT_TRUE(pole(0.999).isStable());
    EXPECT_TRUE(pole(0.5).isUnstablePole(-0.9999, 1e-3));
    EXPECT_FALSE(pole(0.5).isUnstablePole(0.99, 1e-3));
    IntArray list(0);
    std::string console = consoleOf([&] {
        pole(0.5).selectUnstablePoles(mat(2, 2, {0.6, 0.8, 0.1, 0}), list, 1e-3);
    });
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0], 0);
    EXPECT_EQ(console, "0.6 0.8  1 0\n0.1 0  0.1\n");
}

TEST(DiscDynOpTest, PoleTableGivesContinuousDecayAndFrequency) {
    double T = 0.1;
    DiscDynOp s(mat(3, 3, {0.5, -0.5, 0, 0.5, 0.5, 0, 0, 0, 0}), mat(3, 1, {1, 1, 1}), mat(1, 3, {1, 1, 1}),
                Matrix(0, 0), T);
    Matrix p = s.poles();
    ASSERT_EQ(p.columnNumber(), 5u);
    for (unsigned i = 0; i < 3; ++i) {
        if (p(i, 1) == 0.0) {
            EXPECT_EQ(p(i, 3), -100000.0);
            continue;
        }
        EXPECT_NEAR(p(i, 2), std::sqrt(0.5), 1e-15);
        EXPECT_NEAR(p(i, 3), std::log(std::sqrt(0.5)) / T, 1e-13);
        EXPECT_NEAR(p(i, 4), (p(i, 1) > 0 ? 1 : -1) * M_PI / 4 / T, 1e-13);
    }
    // A lone pole at z = 0 is s = log(z) / T = -infinity: the table's decay for it, no NaN, no frequency.
    DiscDynOp origin(mat(1, 1, {0}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 0.1);
    EXPECT_TRUE(origin.poles().isEqual(mat(1, 5, {0, 0, 0, -100000, 0})));
}

TEST(DiscDynOpTest, NormsAgreeWithTheUnitCircle) {
    // 1/(z - a): H2 norm 1/sqrt(1 - a^2), peak 1/(1 - |a|).
    for (double a : {0.5, -0.9, 0.99}) {
        DiscDynOp s(mat(1, 1, {a}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 1.0);
        EXPECT_NEAR(s.normH2(), 1 / std::sqrt(1 - a * a), 1e-10 / (1 - a * a));
        EXPECT_NEAR(s.normHinf(), 1 / (1 - std::fabs(a)), 0.5);
    }
    DiscDynOp s(randomStable(4, 2, 2, 5), false, 0.3);
    double peak = sweptCircle(s);
    EXPECT_NEAR(s.normHinf(), peak, 0.5);
    double w = wMin;
    double found = s.normHinfInFrequency(w);
    EXPECT_LE(found, peak * (1 + 1e-9));
    EXPECT_GE(found, 0.98 * peak);
    EXPECT_NEAR(s.singularValueAt(w), found, 1e-12);
    CxMatrix direct = transferAt(s, onCircle(0.7 * 0.3));
    EXPECT_NEAR(s.transferMatrix()(1, 0).value(std::cos(0.21), std::sin(0.21)).value().real(),
                direct[1][0].real(), 1e-9);

    // Unstable: the frequency search, announced.
    DiscDynOp unstable(mat(1, 1, {1.5}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 1.0);
    EXPECT_EQ(consoleOf([&] { unstable.normHinf(); }), "norm computed as max value in freq. \n");
    // The discrete gramian solves P = A'PA + C'C.
    Matrix Q = s.obsGramian(), A = s.getA(), C = s.getC();
    EXPECT_LT(residual(A.transpose() * Q * A + C.transpose() * C - Q), 1e-13 * residual(Q));
}

TEST(DiscDynOpTest, ControllabilityGramianAndBalancedRealization) {
    // 2/(z - a): P = a P a + 4 gives 4/(1 - a^2) on either side of the origin. For 1/(z - a) both
    // gramians are 1/(1 - a^2), and so is the Hankel singular value; the state stays discrete.
    for (double a : {0.5, -0.5}) {
        SCOPED_TRACE(a);
        Matrix P =
            DiscDynOp(mat(1, 1, {a}), mat(1, 1, {2}), mat(1, 1, {1}), Matrix(0, 0), 1.0).contrGramian();
        EXPECT_NEAR(P(0, 0), 4 / (1 - a * a), 1e-12);
        DiscDynOp s(mat(1, 1, {a}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 1.0);
        Matrix sigma = s.balancedRealization(0.1);
        EXPECT_NEAR(sigma(0, 0), 4.0 / 3, 1e-12);
        ASSERT_EQ(s.order(), 1u);
        EXPECT_NEAR(s.getA()(0, 0), a, 1e-12);
    }
    DiscDynOp s(randomStable(4, 2, 2, 5), false, 0.3);
    Matrix P = s.contrGramian(), A = s.getA(), B = s.getB();
    EXPECT_LT(residual(A * P * A.transpose() + B * B.transpose() - P), 1e-13 * residual(P));
}

TEST(DiscDynOpTest, CompositionsKeepTheSamplingTime) {
    DiscDynOp s(mat(1, 1, {0.5}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 0.25), loop(s, 1, 1, 0);
    Matrix one = Matrix::diagonal(1, 1.0), T;
    // getSamplingTime is DiscDynOp's: each result has the type as well as the time.
    auto timesOf = [](const auto&... r) { return std::vector<double>{r.getSamplingTime()...}; };
    for (double time :
         timesOf(s * s, s + s, s + one, s * one, s * 2.0, one * s, -s, s.append(s), s.appendGain(one),
                 s.sumOfOutputs(s), s.subSystem(0, 0, 1, 1, true), s.transpose(), s.changeBasis(one),
                 s.reduceOrder(1), s.scaleObjectives(2.0), s.stateFeedback(one), loop.closedLoop(DynOp(one)),
                 loop.outputFeedback(DynOp(one)), s.closeBlockLoop(one), s.contrSubSystem(0, T, 1e-9),
                 s.obsSubSystem(0, T, 1e-9), s.stabilizableSubSystem(0, T, 1e-9, 1e-9)))
        EXPECT_EQ(time, 0.25);
    // The dual's H2 norm is that of 1/(z - 0.5), 1/sqrt(1 - 0.25); a pole at s = 0.5 is unstable.
    EXPECT_NEAR(s.transpose().normH2(), 2 / std::sqrt(3.0), 1e-12);
}

TEST(DiscDynOpTest, CleaningForcesPolesOntoTheCircle) {
    DiscDynOp s(mat(3, 3, {1 + 1e-9, 1e-9, 0.5, 0, -1 + 1e-9, 0.3, 0, 0, 0.5}), mat(3, 1, {1, 1, 1}),
                mat(1, 3, {1, 1, 1}), Matrix(0, 0), 0.1);
    s.cleanPolesInZero(1e-6);
    std::vector<Cx> p = eigenvalues(s.getA());
    EXPECT_EQ(p[0], Cx(-1, 0));
    EXPECT_NEAR(p[1].real(), 0.5, 1e-12);
    EXPECT_EQ(p[2], Cx(1, 0));
}

TEST(DiscDynOpTest, PrintsAndStoresTheSamplingTime) {
    DiscDynOp s(mat(1, 1, {0.5}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 0.25, 0, 0, 0);
    std::ostringstream printed;
    printed << s;
    EXPECT_EQ(printed.str().substr(0, 20), "Discrete-time System");
    EXPECT_NE(printed.str().find("sampling time = 0.25\n"), std::string::npos);
    std::ostringstream os;
    storeObject(os, s);
    String error;
    Object* read = readFromString(error, os.str().c_str(), "DiscDynOp");
    ASSERT_TRUE(read != nil) << error.asCharPointer();
    EXPECT_TRUE(read->isEqual(s));
    EXPECT_EQ(static_cast<DiscDynOp*>(read)->getSamplingTime(), 0.25);
    delete read;
}

}  // namespace
