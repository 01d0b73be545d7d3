// The two-step H-infinity design against its bound: on seeded plants, at 1.1 and 1.5 times the
// optimal level of the Riccati route, the compensator's closed loop is stable and its certified norm is
// at most gamma, control first and observer first.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "randplant.h"

namespace {

struct TwoStepCase {
    Case plant;
    bool observerFirst;
};

// The two steps as the command line takes them: pole placement start, refining iteration. The
// norms each step reports go to first and second. The placement of several inputs starts from
// std::rand, seeded here so that each case is the same whatever ran before it.
// With an LMI mode the steps take the LMI route; console gets what they printed.
RobustControl twoSteps(const DynOp& plant, bool observerFirst, double gamma, double& first, double& second,
                       LmiMode mode = LmiMode::None, std::string* console = nullptr, int initialFeedback = 1,
                       unsigned iterations = 200) {
    std::srand(1);
    RobustControl rc(ExtendedSystem(plant), observerFirst, 0.0);
    auto lmi = [mode](StepOptions& o) { o.lmiMode = mode; };
    std::string printed = consoleOf([&] {
        ASSERT_EQ(rc.firstStepSetup(1e-8, initialFeedback, 0), 0);
        first = rc.firstStep(stepOf(gamma, iterations, false, "", lmi));
        ASSERT_EQ(rc.secondStepSetup(1e-8, initialFeedback, 0), 0);
        second = rc.secondStep(stepOf(gamma, iterations, false, "", lmi));
    });
    if (console) *console = printed;
    return rc;
}

class TwoStepHinf : public ScratchTest, public ::testing::WithParamInterface<TwoStepCase> {
protected:
    void TearDown() override {
        globalWorkspace().clear();
        Workspace::closeMatlab();
        ScratchTest::TearDown();
    }
};

TEST_P(TwoStepHinf, ClosedLoopMeetsGamma) {
    const TwoStepCase& c = GetParam();
    std::unique_ptr<DynOp> plant = plantOf(c.plant, 10 + c.plant.n);
    double optimum = HinfRiccati(*plant).optimalGamma();
    for (double factor : {1.1, 1.5}) {
        double gamma = factor * optimum, first = 0.0, second = 0.0;
        RobustControl rc = twoSteps(*plant, c.observerFirst, gamma, first, second);
        ASSERT_TRUE(rc.hasObserver());
        HinfNorm h = loopNorm(*plant, *rc.compensator());
        EXPECT_LE(first, gamma);
        EXPECT_LE(second, gamma);
        EXPECT_LE(h.lower, gamma * (1.0 + 1e-6)) << "gamma " << gamma << ", loop " << h;
    }
}

// The LMI route: "min Hinf" designs both steps at a level within 1% of the optimum, and the loop
// stays within 1.5% of it; "bound Hinf" meets a feasible gamma; below the optimum the design says
// so and takes the least level, and its loop is stable.
TEST_P(TwoStepHinf, LmiRouteMeetsItsLevel) {
    const TwoStepCase& c = GetParam();
    std::unique_ptr<DynOp> plant = plantOf(c.plant, 10 + c.plant.n);
    double optimum = HinfRiccati(*plant).optimalGamma(), first = 0.0, second = 0.0;
    RobustControl least = twoSteps(*plant, c.observerFirst, 1.0, first, second, LmiMode::MinHinf);
    double level = least.firstDesign()->getGamma();
    EXPECT_GE(level, optimum * (1.0 - 1e-4));
    EXPECT_LE(level, optimum * 1.01);
    EXPECT_LE(loopNorm(*plant, *least.compensator()).lower, optimum * 1.015);

    RobustControl bound = twoSteps(*plant, c.observerFirst, 1.1 * optimum, first, second, LmiMode::BoundHinf);
    EXPECT_LE(loopNorm(*plant, *bound.compensator()).lower, 1.1 * optimum * (1.0 + 1e-6));

    std::string console;
    RobustControl below =
        twoSteps(*plant, c.observerFirst, 0.9 * optimum, first, second, LmiMode::BoundHinf, &console);
    EXPECT_NE(console.find("is below the least level"), std::string::npos);
    EXPECT_LE(loopNorm(*plant, *below.compensator()).lower, optimum * 1.015);
}

// Continuous, D11 = 0: stable, unstable and lightly damped plants of orders 2 to 6, each with the
// first design to come.
const Case order2 = {2, 2, 1, 2, 1, 0.0, -1.0, false, false, false};
const Case order3 = {3, 2, 1, 2, 1, 0.0, -0.3, false, false, false};
const Case order4 = {4, 2, 1, 2, 1, 0.0, 0.0, true, false, false};
const Case order5 = {5, 3, 2, 3, 2, 0.0, -1.0, false, false, false};
const Case order6 = {6, 2, 1, 3, 1, 0.0, -0.3, false, false, true};

std::string caseName(const ::testing::TestParamInfo<TwoStepCase>& info) {
    const TwoStepCase& c = info.param;
    return std::string(c.plant.d11 ? "d11" : "") + (c.plant.T > 0.0 ? "sampledOrder" : "order") +
           std::to_string(c.plant.n) + (c.observerFirst ? "ObserverFirst" : "ControlFirst");
}

INSTANTIATE_TEST_SUITE_P(Continuous, TwoStepHinf,
                         ::testing::Values(TwoStepCase{order2, false}, TwoStepCase{order3, false},
                                           TwoStepCase{order4, false}, TwoStepCase{order5, false},
                                           TwoStepCase{order6, false}, TwoStepCase{order2, true},
                                           TwoStepCase{order3, true}, TwoStepCase{order4, true},
                                           TwoStepCase{order5, true}, TwoStepCase{order6, true}),
                         caseName);

// The same plants sampled at 0.1 s.
Case sampled(Case c) {
    c.T = 0.1;
    return c;
}

INSTANTIATE_TEST_SUITE_P(
    Discrete, TwoStepHinf,
    ::testing::Values(TwoStepCase{sampled(order2), false}, TwoStepCase{sampled(order3), false},
                      TwoStepCase{sampled(order4), false}, TwoStepCase{sampled(order5), false},
                      TwoStepCase{sampled(order6), false}, TwoStepCase{sampled(order2), true},
                      TwoStepCase{sampled(order3), true}, TwoStepCase{sampled(order4), true},
                      TwoStepCase{sampled(order5), true}, TwoStepCase{sampled(order6), true}),
    caseName);

// D11 not zero, continuous and sampled.
const Case d11order3 = {3, 2, 1, 2, 1, 0.0, -1.0, false, true, false};
const Case d11order4 = {4, 3, 1, 2, 1, 0.0, -0.3, false, true, false};
const Case d11order5 = {5, 3, 2, 3, 2, 0.0, -1.0, false, true, false};

INSTANTIATE_TEST_SUITE_P(
    WithD11, TwoStepHinf,
    ::testing::Values(TwoStepCase{d11order3, false}, TwoStepCase{d11order4, false},
                      TwoStepCase{d11order5, false}, TwoStepCase{d11order3, true},
                      TwoStepCase{d11order4, true}, TwoStepCase{d11order5, true},
                      TwoStepCase{sampled(d11order3), false}, TwoStepCase{sampled(d11order4), false},
                      TwoStepCase{sampled(d11order5), false}, TwoStepCase{sampled(d11order3), true},
                      TwoStepCase{sampled(d11order4), true}, TwoStepCase{sampled(d11order5), true}),
    caseName);

// A zero initial feedback on the unstable plants gets a stabilising start all the same.
class ZeroStart : public ScratchTest {
protected:
    void TearDown() override {
        globalWorkspace().clear();
        Workspace::closeMatlab();
        ScratchTest::TearDown();
    }
};

TEST_F(ZeroStart, ZeroInitialFeedbackOnAnUnstablePlantMeetsGamma) {
    for (const Case& c : {order3, order6, sampled(order3), sampled(order6)})
        for (bool observerFirst : {false, true}) {
            std::unique_ptr<DynOp> plant = plantOf(c, 10 + c.n);
            ASSERT_FALSE(plant->isStable());
            double gamma = 1.5 * HinfRiccati(*plant).optimalGamma(), first = 0.0, second = 0.0;
            RobustControl rc =
                twoSteps(*plant, observerFirst, gamma, first, second, LmiMode::None, nullptr, 0);
            EXPECT_LE(loopNorm(*plant, *rc.compensator()).lower, gamma * (1.0 + 1e-6))
                << c.n << observerFirst;
        }
}

// Larger plants at the command line's 20 iterations. The placed start of the order-10 plant has
// a gramian so large that the first step diverged at every level, and the LMI finds no least
// level for it; the second step of the others stopped above gamma near the optimum, or, at order
// 12, within gamma but unconverged, and the loop missed gamma.
class DefaultIterations : public ZeroStart {};

TEST_F(DefaultIterations, LargerPlantsMeetGammaAndTheLeastLevel) {
    struct Row {
        unsigned n, seed;
    };
    for (Row row : {Row{10, 2}, Row{8, 2}, Row{6, 1}, Row{12, 1}}) {
        SCOPED_TRACE(::testing::Message() << "order " << row.n << ", seed " << row.seed);
        std::unique_ptr<DynOp> plant = plantOf({row.n, 2, 1, 2, 1, 0.0, -0.3, false, false, false}, row.seed);
        double optimum = HinfRiccati(*plant).optimalGamma(), gamma = 1.1 * optimum, first = 0.0, second = 0.0;
        RobustControl rc = twoSteps(*plant, false, gamma, first, second, LmiMode::None, nullptr, 1, 20);
        EXPECT_LE(first, gamma);
        EXPECT_LE(second, gamma);
        EXPECT_LE(loopNorm(*plant, *rc.compensator()).lower, gamma);
        RobustControl least = twoSteps(*plant, false, gamma, first, second, LmiMode::MinHinf, nullptr, 1, 20);
        EXPECT_LE(least.firstDesign()->getGamma(), optimum * 1.01);
        EXPECT_LE(loopNorm(*plant, *least.compensator()).lower, optimum * 1.015);
    }
}

}  // namespace
