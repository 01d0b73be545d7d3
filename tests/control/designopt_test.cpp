// The design's options as types, its parameters as a panel gives them, and the results of a phase
// as data.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"
#include "randplant.h"

namespace {

// Each value's text reads back as the value, the texts differ, the registered enumeration lists
// them in the values' order, and a text of no value is refused.
template <class E>
void expectRoundTrip(const char* type, std::initializer_list<E> values) {
    registerDesignEnums();
    std::set<std::string> texts;
    for (E v : values) {
        SCOPED_TRACE(textOf(v));
        E back = E(-1);
        ASSERT_TRUE(valueOf(textOf(v), back));
        EXPECT_EQ(back, v);
        EXPECT_TRUE(texts.insert(textOf(v)).second);
        EXPECT_EQ(Parameter("p", textOf(v), type).enumIndex(), int(v));
    }
    E untouched = *values.begin();
    EXPECT_FALSE(valueOf("step 1", untouched));
    EXPECT_FALSE(valueOf(nullptr, untouched));
    EXPECT_EQ(untouched, *values.begin());
}

TEST(DesignOptions, TextTablesRoundTrip) {
    expectRoundTrip(designPhaseType, {DesignPhase::Step1, DesignPhase::Step2, DesignPhase::FinalResults,
                                      DesignPhase::InNoise});
    expectRoundTrip(lmiModeType, {LmiMode::None, LmiMode::MinH2, LmiMode::BoundHinf, LmiMode::MinHinf});
    expectRoundTrip(gramianRoleType, {GramianRole::Control, GramianRole::Observer});
}

// Every field survives the panel's parameters, choices at both of their texts.
TEST(DesignOptions, ParametersConvertBack) {
    for (bool flip : {false, true}) {
        SCOPED_TRACE(flip);
        DesignParameters p;
        p.lmiMode = flip ? LmiMode::BoundHinf : LmiMode::None;
        p.inOneStep = p.start = p.stepByStep = p.useH2 = p.approaching = flip;
        p.phase = flip ? DesignPhase::FinalResults : DesignPhase::Step2;
        p.gamma = 1.0 / 3.0;
        p.iterations = 77;
        p.tolerance = 3e-9;
        p.minFreq = 0.1;
        p.initialFeedback = flip ? 1 : 0;
        p.alfa = 0.7;
        p.noiseLevel = 1e-3;
        if (flip) p.made = GramianRole::Observer;
        ParametersCltn c;
        RobustControlDesign::parametersOf(p, "plant.dyn", c);
        String file;
        DesignParameters q = RobustControlDesign::convert(c, file);
        EXPECT_EQ(file, "plant.dyn");
        EXPECT_EQ(q.lmiMode, p.lmiMode);
        EXPECT_EQ(q.phase, p.phase);
        EXPECT_EQ(q.made, p.made);
        EXPECT_EQ(std::vector<bool>({q.inOneStep, q.start, q.stepByStep, q.useH2, q.approaching}),
                  std::vector<bool>(5, flip));
        EXPECT_EQ(std::vector<double>({q.gamma, double(q.iterations), q.tolerance, q.minFreq,
                                       double(q.initialFeedback), q.alfa, q.noiseLevel}),
                  std::vector<double>({p.gamma, 77.0, p.tolerance, p.minFreq, double(p.initialFeedback),
                                       p.alfa, p.noiseLevel}));
    }
}

std::vector<double> reported;

void onIteration(Cback& cb) { reported.push_back(cb.callData->asDouble()); }

class PhaseResultTest : public ScratchTest {
protected:
    void TearDown() override {
        globalWorkspace().clear();
        Workspace::closeMatlab();
        ScratchTest::TearDown();
    }
};

// A first step on a small plant: its norm, one report per iteration, the poles and gain of the
// loop it made; then the final results refused for the missing second design.
TEST_F(PhaseResultTest, CarriesNormsAndFailures) {
    const Case small = {3, 2, 1, 2, 1, 0.0, -0.3, false, false, false};
    ASSERT_TRUE(Algebra().storeToFile(*plantOf(small, 13), "plant.dyn"));
    std::srand(1);
    Integer owner;
    owner.addCback(IterationNorm, onIteration);
    reported.clear();
    RobustControlDesign design;
    design.setOwner(&owner);
    design.setModelFileName("plant.dyn");
    DesignParameters p;
    p.phase = DesignPhase::Step1;
    p.made = GramianRole::Control;
    p.useH2 = true;
    p.iterations = 30;
    p.tolerance = 1e-8;
    consoleOf([&] { design.design(p); });
    owner.removeCbacks(IterationNorm);
    const PhaseResult& r = design.lastResult();
    EXPECT_TRUE(r.success) << r.failure.asCharPointer();
    EXPECT_GT(r.norm, 0.0);
    EXPECT_FALSE(r.iterationNorms.empty());
    EXPECT_EQ(reported, r.iterationNorms);
    EXPECT_EQ(r.poles.rowNumber(), small.n);
    EXPECT_EQ(r.feedbackGain.rowNumber(), small.m2);
    EXPECT_FALSE(r.systems.empty());

    p.phase = DesignPhase::FinalResults;
    consoleOf([&] { design.design(p); });
    EXPECT_FALSE(design.lastResult().success);
    EXPECT_EQ(design.lastResult().failure, "the observer has not been computed yet");
    p.phase.reset();
    EXPECT_EQ(design.design(p), 0.0);
    EXPECT_FALSE(design.lastResult().failure.size() == 0);
}

}  // namespace
