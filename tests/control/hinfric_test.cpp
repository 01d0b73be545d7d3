// HinfRiccati: the optimal level against closed forms, against the certified norm of its own
// central compensator's loop and against the LMI state-feedback minimum, on seeded random plants.
#include "control/hinfric.h"

#include <gtest/gtest.h>

#include <random>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "randplant.h"

namespace {

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
