// HinfRiccati: the optimal level against closed forms, against the certified norm of its own
// central compensator's loop and against the LMI state-feedback minimum, on seeded random plants.
#include "control/hinfric.h"

#include <gtest/gtest.h>

#include <random>

#include "../quill/testutil.h"
#include "ctltest.h"

namespace {

// A generated plant: n states, m1 disturbances, m2 controls, p1 objectives, p2 measures; sampled
// with a zero-order hold when T > 0. A is random, its eigenvalues in a disc of radius about 0.6,
// moved by shift on its diagonal (-0.3 leaves a few unstable, -1 none), or, when damped, pairs of
// poles with 2% damping. D11 and D22 are zero unless asked for.
struct Case {
    unsigned n, m1, m2, p1, p2;
    double T, shift;
    bool damped, d11, d22;
};

Matrix randomMatrix(std::mt19937& g, unsigned rows, unsigned cols, double scale = 1.0) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Matrix M(rows, cols);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < cols; ++j) M(i, j) = scale * u(g);
    return M;
}

Matrix stateMatrix(std::mt19937& g, const Case& c) {
    if (!c.damped) {
        Matrix A = randomMatrix(g, c.n, c.n, 1.0 / std::sqrt(double(c.n)));
        for (unsigned i = 0; i < c.n; ++i) A(i, i) += c.shift;
        return A;
    }
    Matrix A = Matrix::diagonal(c.n, -1.0);
    for (unsigned k = 0; k + 1 < c.n; k += 2) {
        double w = 1.0 + k;
        A(k, k) = A(k + 1, k + 1) = -0.02 * w;
        A(k, k + 1) = w, A(k + 1, k) = -w;
    }
    return A;
}

std::unique_ptr<DynOp> plantOf(const Case& c, unsigned seed) {
    std::mt19937 g(seed);
    Matrix A = stateMatrix(g, c);
    Matrix B = randomMatrix(g, c.n, c.m1 + c.m2), C = randomMatrix(g, c.p1 + c.p2, c.n);
    Matrix D = randomMatrix(g, c.p1 + c.p2, c.m1 + c.m2);
    for (unsigned i = 0; i < c.p1 + c.p2; ++i)
        for (unsigned j = 0; j < c.m1 + c.m2; ++j)
            if ((i < c.p1 && j < c.m1 && !c.d11) || (i >= c.p1 && j >= c.m1 && !c.d22)) D(i, j) = 0.0;
    DynOp s(A, B, C, D, c.m2, c.p2, 0, false);
    if (c.T > 0.0) return std::unique_ptr<DynOp>(new DiscDynOp(s, false, c.T));
    return std::unique_ptr<DynOp>(new DynOp(s));
}

// The closed loop with the plant's time domain, its certified norm.
HinfNorm loopNorm(const DynOp& plant, const DynOp& compensator) {
    DynOp loop = plant.closedLoop(compensator);
    if (plant.isDiscreteTime()) return DiscDynOp(loop, true, plant.samplingTimeOf()).certifiedNormHinf();
    return loop.certifiedNormHinf();
}

// x' = a x + w1 + u, z = [x; u], y = x + w2: X = Y = (a + sqrt(a^2 + b)) / b with b = 1 - gamma^-2,
// and the coupling X < gamma gives gamma^2 - 2 a gamma - 2 = 0; the first equation alone needs
// b > -a^2 and, for a > 0, b > 0.
TEST(HinfRiccati, ScalarPlantsMeetTheirClosedForms) {
    for (double a : {-2.0, -0.5, 0.0, 1.0, 3.0}) {
        SCOPED_TRACE(a);
        DynOp plant(mat(1, 1, {a}), mat(1, 3, {1, 0, 1}), mat(3, 1, {1, 0, 1}),
                    mat(3, 3, {0, 0, 0, 0, 0, 1, 0, 1, 0}), 1, 1, 0, false);
        HinfRiccati r(plant);
        EXPECT_NEAR(r.optimalGamma(), a + std::sqrt(a * a + 2.0), 1e-5);
        EXPECT_NEAR(r.stateFeedbackGamma(), a > 0.0 ? 1.0 : 1.0 / std::sqrt(1.0 + a * a), 1e-5);
    }
}

const Case cases[] = {
    {2, 2, 1, 2, 1, 0.0, -1.0, false, false, false},  {3, 2, 1, 2, 1, 0.0, -0.3, false, false, false},
    {4, 2, 1, 2, 1, 0.0, 0.0, true, false, false},    {5, 3, 2, 3, 1, 0.0, -1.0, false, true, false},
    {6, 2, 2, 3, 2, 0.0, -0.3, false, true, true},    {8, 3, 1, 2, 2, 0.0, 0.0, true, true, false},
    {10, 2, 1, 2, 1, 0.0, -0.2, false, false, true},  {12, 3, 2, 3, 2, 0.0, -0.3, false, false, false},
    {15, 4, 2, 3, 2, 0.0, -1.0, false, false, false}, {20, 2, 1, 2, 1, 0.0, 0.0, true, false, false},
    {25, 3, 1, 2, 1, 0.0, -1.0, false, true, false},  {30, 2, 2, 3, 1, 0.0, -1.0, false, false, false},
    {2, 2, 1, 2, 1, 0.1, -1.0, false, false, false},  {3, 2, 1, 2, 1, 0.1, -0.3, false, false, false},
    {4, 2, 1, 2, 1, 0.1, 0.0, true, false, false},    {6, 3, 2, 3, 1, 0.1, -1.0, false, true, false},
    {8, 2, 1, 3, 1, 0.1, -0.3, false, false, true},   {12, 3, 1, 2, 2, 0.1, -0.3, false, false, false},
    {16, 2, 1, 2, 1, 0.1, 0.0, true, false, false},   {20, 3, 2, 3, 2, 0.1, -0.2, false, false, false},
    {30, 2, 1, 2, 1, 0.1, -0.3, false, true, true},
};

// The central compensator just above the optimum meets its level, and just below none exists.
TEST(HinfRiccati, CentralCompensatorMeetsTheOptimum) {
    unsigned seed = 1;
    for (const Case& c : cases) {
        std::unique_ptr<DynOp> plant = plantOf(c, seed++);
        SCOPED_TRACE(::testing::Message() << "order " << c.n << ", T " << c.T << ", seed " << seed - 1);
        HinfRiccati r(*plant);
        double gamma = r.optimalGamma();
        ASSERT_TRUE(std::isfinite(gamma));
        EXPECT_FALSE(r.isFeasible(0.99 * gamma));
        EXPECT_LE(r.stateFeedbackGamma(), gamma * (1.0 + 1e-6));
        HinfNorm h = loopNorm(*plant, r.compensator(1.01 * gamma));
        EXPECT_LT(h.upper, 1.01 * gamma);
        EXPECT_GT(h.norm, 0.99 * gamma);
    }
}

class HinfRiccatiLMI : public ScratchTest {};

// With D11 = 0 the continuous state-feedback optimum of the first equation is the LMI route's
// "min Hinf"; in discrete time the first equation gives the full-information optimum, where u also
// sees w, so the LMI's static state feedback is no better.
TEST_F(HinfRiccatiLMI, StateFeedbackOptimumIsTheLMIMinimum) {
    unsigned seed = 1;
    for (const Case& c : cases) {
        std::unique_ptr<DynOp> plant = plantOf(c, seed++);
        if (c.d11 || c.n > 12) continue;
        SCOPED_TRACE(::testing::Message() << "order " << c.n << ", T " << c.T << ", seed " << seed - 1);
        DynOp stateFeedback = plant->subSystem(0, 0, c.p1, 0);
        DynOp objectives(stateFeedback, c.m2, 0, 0);
        LMI lmi = c.T > 0.0 ? LMI(DiscDynOp(objectives, true, c.T)) : LMI(objectives);
        int code = -1;
        consoleOf([&] { code = lmi.solveMinimum(); });
        if (code != 0) continue;
        double ratio = lmi.getGamma() / HinfRiccati(*plant).stateFeedbackGamma();
        EXPECT_GT(ratio, 0.99);
        if (c.T == 0.0) {
            EXPECT_LT(ratio, 1.01);
        }
    }
}

TEST(HinfRiccati, PlantsOutsideTheProblemAreRefused) {
    // D12 = 0: no control reaches the objectives.
    DynOp plant(mat(1, 1, {-1}), mat(1, 2, {1, 1}), mat(2, 1, {1, 1}), mat(2, 2, {0, 0, 1, 0}), 1, 1, 0,
                false);
    std::string console = consoleOf([&] {
        HinfRiccati r(plant);
        EXPECT_FALSE(r.isAdmissible());
        EXPECT_EQ(r.optimalGamma(), HUGE_VAL);
    });
    EXPECT_NE(console.find("D12 has no full column rank"), std::string::npos);
}

}  // namespace
