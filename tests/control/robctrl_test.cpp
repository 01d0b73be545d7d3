// RobustControl and its driver: two-step designs on the two-mass plant, control first and
// observer first, continuous and sampled; the compensator's closed loop against the two designs;
// the design file between phases; the refusals of the driver; the output structuring.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "control/all.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

class DesignTest : public ScratchTest {
protected:
    void TearDown() override {
        globalWorkspace().clear();
        Workspace::closeMatlab();
        ScratchTest::TearDown();
    }
};

std::vector<Cx> sortedPoles(const DynOp& s) {
    if (s.order() == 0) return {};
    return eigenvalues(s.getA());
}

// The poles of the loop are those of A - B2 H and of A - K C2 together: the H2 separation. (The
// H-infinity compensator estimates for the worst-case disturbance, which couples the two.)
void expectSeparatedPoles(const RobustControl& rc) {
    RobustControl::System closed = rc.closedLoopExperimental();
    const DynOp& in = rc.getInput();
    DynOp est = rc.estimationSystem();
    unsigned n = in.order(), nu = in.controlNumber(), ny = in.measureNumber();
    Matrix B2 = dynop::block(in.getB(), 0, in.inputNumber() - nu, n, nu);
    Matrix C2e = dynop::block(est.getC(), est.outputNumber() - ny, 0, ny, n);
    Matrix both =
        Matrix::blockDiagonal(in.getA() - B2 * rc.feedbackGain(), est.getA() - rc.observerGain() * C2e);
    std::vector<Cx> expected = eigenvalues(both), got = sortedPoles(*closed);
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(std::abs(got[i] - expected[i]), 0.0, 1e-6) << i;
}

// Both steps of an H2 design, gamma 1 and 30 iterations, their console output dropped.
void twoH2Steps(RobustControl& rc) {
    consoleOf([&] {
        EXPECT_EQ(rc.firstStepSetup(1e-8, 1, 0), 0);
        rc.firstStep(stepOf(1.0, 30, true));
        EXPECT_EQ(rc.secondStepSetup(1e-8, 1, 0), 0);
        rc.secondStep(stepOf(1.0, 30, true));
    });
}

struct Case {
    const char* file;
    bool observerFirst;
    bool useH2;
};

class TwoStepDesign : public DesignTest, public ::testing::WithParamInterface<Case> {};

TEST_P(TwoStepDesign, CompensatorStabilisesThePlantWithBothDesignsPoles) {
    Case c = GetParam();
    std::unique_ptr<DynOp> plant = twoMassPlant(c.file, 0.1);
    ExtendedSystem extended(*plant);
    RobustControl rc(extended, c.observerFirst, 0.0);
    std::string console = consoleOf([&] {
        ASSERT_EQ(rc.firstStepSetup(1e-8, 1, 0), 0);
        double gamma = c.useH2 ? 1.0 : 5.0;
        double first = rc.firstStep(stepOf(gamma, 30, c.useH2));
        EXPECT_GT(first, 0.0);
        ASSERT_EQ(rc.secondStepSetup(1e-8, 1, 0), 0);
        double second = rc.secondStep(stepOf(gamma, 30, c.useH2));
        EXPECT_GT(second, 0.0);
    });
    EXPECT_NE(console.find("H-infinite norm of the "), std::string::npos);
    EXPECT_EQ(access("ExtendedSystemWithObserver.dyn", R_OK), 0);
    ASSERT_TRUE(rc.hasControl() && rc.hasObserver());
    RobustControl::System closed = rc.closedLoopExperimental();
    EXPECT_TRUE(closed->isStable()) << closed->poles();
    if (c.useH2) expectSeparatedPoles(rc);
    // The designs kept every state: the theoretical form is the same loop in other coordinates.
    RobustControl::System theoretical = rc.closedLoopTheoretical();
    for (double w : {0.1, 1.0, 1.4, 10.0})
        EXPECT_NEAR(theoretical->singularValueAt(w), closed->singularValueAt(w),
                    1e-8 * closed->singularValueAt(w));
    EXPECT_EQ(rc.compensator()->isDiscreteTime(), plant->isDiscreteTime());
    EXPECT_EQ(closed->isDiscreteTime(), plant->isDiscreteTime());
}

INSTANTIATE_TEST_SUITE_P(Plants, TwoStepDesign,
                         ::testing::Values(Case{"twomass.dyn", false, true}, Case{"twomass.dyn", true, true},
                                           Case{"twomass.dyn", false, false},
                                           Case{"twomassd.dyn", false, true},
                                           Case{"twomassd.dyn", true, false}));

// x1' = x1 + w1 + u, x2' = -2 x2 + w1: the first design drops x2, stable and out of reach of u.
// The theoretical loop leaves it out (it was the experimental one in other coordinates, whatever
// the designs dropped); the experimental loop keeps its response to w1.
TEST_F(DesignTest, TheoreticalLoopLeavesOutTheModesTheDesignsDropped) {
    DynOp plant(mat(2, 2, {1, 0, 0, -2}), mat(2, 3, {1, 0, 1, 1, 0, 0}), mat(3, 2, {1, 1, 0, 0, 1, 1}),
                mat(3, 3, {0, 0, 0, 0, 0, 1, 0, 1, 0}), 1, 1);
    RobustControl rc(ExtendedSystem(plant), false, 0.0);
    twoH2Steps(rc);
    ASSERT_EQ(rc.firstDesign()->stabilizableOrder(), 1u);
    RobustControl::System theoretical = rc.closedLoopTheoretical(), closed = rc.closedLoopExperimental();
    EXPECT_EQ(theoretical->order(), 1 + rc.secondDesign()->stabilizableOrder());
    EXPECT_TRUE(theoretical->isStable() && closed->isStable());
    EXPECT_GT(std::fabs(theoretical->singularValueAt(0.1) - closed->singularValueAt(0.1)), 1e-3);
}

// The design file keeps a design in its first step; both stream forms keep both steps (the
// binary form used to keep only the base class).
TEST_F(DesignTest, NoiseWidensTheInputsAndTheDesignFileKeepsTheDesign) {
    std::unique_ptr<DynOp> plant = twoMassPlant("twomass.dyn", 0.1);
    RobustControl rc(ExtendedSystem(*plant), false, 0.2);
    EXPECT_EQ(rc.getInput().inputNumber(), plant->inputNumber() + 1);
    EXPECT_EQ(rc.getInput().controlNumber(), 1u);
    consoleOf([&] {
        ASSERT_EQ(rc.firstStepSetup(1e-8, 1, 0), 0);
        rc.firstStep(stepOf(1.0, 20, true));
    });
    Algebra files;
    ASSERT_TRUE(files.storeToFile(rc, "RobustControl.rc"));
    EXPECT_NE(fileText("RobustControl.rc").find(":UnsArray"), std::string::npos);
    Object* read = 0;
    ASSERT_TRUE(files.readFromFile(read, "RobustControl", "RobustControl.rc"));
    RobustControl& back = *static_cast<RobustControl*>(read);
    EXPECT_TRUE(back.hasControl());
    EXPECT_FALSE(back.hasObserver());
    EXPECT_LT(files.normF(back.feedbackGain() - rc.feedbackGain()), 1e-9 * files.normF(rc.feedbackGain()));
    delete read;

    consoleOf([&] {
        ASSERT_EQ(rc.secondStepSetup(1e-8, 1, 0), 0);
        rc.secondStep(stepOf(1.0, 20, true));
    });
    double loop = plant->closedLoop(*rc.compensator()).normH2();
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary);
        std::string error;
        Object* again = binary ? readBinary(storedBinary(rc), &error) : readText(storedText(rc), &error);
        ASSERT_NE(again, nullptr) << error;
        const RobustControl& both = *static_cast<RobustControl*>(again);
        ASSERT_TRUE(both.hasObserver());
        EXPECT_EQ(both.observerGain().rowNumber(), rc.observerGain().rowNumber());
        EXPECT_NEAR(plant->closedLoop(*both.compensator()).normH2(), loop, 1e-9 * loop);
        delete again;
    }
}

// The driver: phases through their parameters, the design kept in "RobustControl.rc".
Dictionary& parameters(Dictionary& d, std::initializer_list<std::pair<const char*, const char*>> entries) {
    for (auto& e : entries) d.atPut(new String(e.first), new Parameter(e.first, e.second));
    return d;
}

void deleteEntries(Dictionary& d) {
    OrderedCltn keys;
    d.addKeysTo(keys);
    for (unsigned i = 0; i < keys.size(); ++i) {
        Object* pair = d.removeKey(*keys[int(i)]);
        delete static_cast<LookupKey*>(pair)->value();
        delete pair;
        delete keys[int(i)];
    }
}

TEST_F(DesignTest, ThreePhasesGiveAStabilisingCompensator) {
    std::unique_ptr<DynOp> plant = twoMassPlant("twomass.dyn", 0.1);
    ASSERT_TRUE(Algebra().storeToFile(*plant, "plant.dyn"));
    RobustControlDesign design;
    Dictionary d;
    parameters(d, {{"GuiFileName", "plant.dyn"},
                   {"ChoiceButton", "Step 1"},
                   {"ConObs", "Control"},
                   {"StartCont", "start"},
                   {"Gramian", "H2"},
                   {"Algorithm", "refining"},
                   {"gamma", "1"},
                   {"iter", "30"},
                   {"toll", "1e-8"},
                   {"InitialFeedback", "pole placement"}});
    double norm = 0.0;
    consoleOf([&] { norm = design.design(d); });
    EXPECT_GT(norm, 0.0);
    EXPECT_FALSE(design.isObserverFirst());
    EXPECT_EQ(access("RobustControl.rc", R_OK), 0);

    // A continuing phase goes on from the design file and never reads the model.
    std::rename("plant.dyn", "moved.dyn");
    delete d.atKey(String("StartCont"), *new Parameter("StartCont", "continue"));
    consoleOf([&] { norm = design.design(d); });
    EXPECT_GT(norm, 0.0);
    std::rename("moved.dyn", "plant.dyn");
    delete d.atKey(String("StartCont"), *new Parameter("StartCont", "start"));

    delete d.atKey(String("ChoiceButton"), *new Parameter("ChoiceButton", "Step 2"));
    delete d.atKey(String("ConObs"), *new Parameter("ConObs", "Observer"));
    consoleOf([&] { norm = design.design(d); });
    EXPECT_GT(norm, 0.0);
    EXPECT_FALSE(design.isObserverFirst());

    delete d.atKey(String("ChoiceButton"), *new Parameter("ChoiceButton", "Final Results"));
    std::string console = consoleOf([&] { norm = design.design(d); });
    EXPECT_GT(norm, 0.0);
    EXPECT_NE(console.find("experimental H-infinite norm of the output feedback w-z operator ="),
              std::string::npos);
    Object* compensator = Workspace::readModelFile("Control.dyn");
    ASSERT_NE(compensator, nil);
    EXPECT_TRUE(plant->closedLoop(*CAST(DynOp, compensator)).isStable());
    delete compensator;
    deleteEntries(d);
}

TEST_F(DesignTest, DriverRefusals) {
    RobustControlDesign design;
    DesignParameters p;
    p.phase = DesignPhase::Step1;
    design.setModelFileName("absent.dyn");
    EXPECT_EQ(consoleOf([&] { EXPECT_EQ(design.design(p), 0.0); }),
              "Warning, model file absent.dyn not found\n");
    ASSERT_TRUE(Algebra().storeToFile(mat(1, 1, {1}), "matrix.dyn"));
    design.setModelFileName("matrix.dyn");
    EXPECT_EQ(consoleOf([&] { EXPECT_EQ(design.design(p), 0.0); }),
              "[RDWRONGCLASS] Tried to read object of wrong class: expected DynOp, was Matrix\n"
              "Warning, file name matrix.dyn doesn't contain a proper object\n");
    // A plant without the partition of a design.
    ASSERT_TRUE(Algebra().storeToFile(DynOp(mat(1, 1, {-1}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0)),
                                      "plain.dyn"));
    design.setModelFileName("plain.dyn");
    EXPECT_EQ(consoleOf([&] { EXPECT_EQ(design.design(p), 0.0); }),
              "Warning, this is not an extended system\n");
    EXPECT_NE(access("RobustControl.rc", F_OK), 0);
    p.phase.reset();
    EXPECT_EQ(design.design(p), 0.0);
    // Step 2 with the observer named clears observerFirst: the observer is then the second design.
    p.phase = DesignPhase::Step2;
    p.made = GramianRole::Observer;
    consoleOf([&] { design.design(p); });
    EXPECT_FALSE(design.isObserverFirst());
    p.phase = DesignPhase::FinalResults;
    std::unique_ptr<DynOp> plant = twoMassPlant("twomass.dyn", 0.1);
    RobustControl half(ExtendedSystem(*plant), false, 0.0);
    ASSERT_TRUE(Algebra().storeToFile(half, "RobustControl.rc"));
    EXPECT_EQ(consoleOf([&] { EXPECT_EQ(design.design(p), 0.0); }),
              "the control has not been computed yet\n");
}

TEST_F(DesignTest, StructuringBalancesTheChannels) {
    RobustControlDesign design;
    // Channel norms 1, 100 / 0.01, 1: D = diag(0.01, 1) makes both off-diagonal norms 1.
    DynOp g(mat(1, 1, {-1}), mat(1, 2, {1, 100}), mat(2, 1, {1, 0.01}), Matrix(0, 0));
    Matrix D = design.structuring(g, false);
    ASSERT_EQ(D.rowNumber(), 2u);
    EXPECT_NEAR(D(0, 0), 0.01, 1e-4);
    EXPECT_EQ(D(1, 1), 1.0);
    EXPECT_EQ(design.structuring(DynOp(mat(1, 1, {2})), false)(0, 0), 1.0);
    Matrix none;
    EXPECT_EQ(consoleOf([&] {
                  none = design.structuring(DynOp(mat(1, 2, {1, 2})), false);
              }),
              "The closed loop extended system should be square\n");
    EXPECT_EQ(none.rowNumber(), 0u);
}

// The free parameter Q of the observer-based compensator leaves the poles of the loop as they
// were, adding those of Q: a stable Q keeps the loop stable.
TEST_P(TwoStepDesign, ParameterQKeepsThePolesOfTheTwoDesigns) {
    Case c = GetParam();
    std::unique_ptr<DynOp> plant = twoMassPlant(c.file, 0.1);
    RobustControl rc(ExtendedSystem(*plant), c.observerFirst, 0.0);
    twoH2Steps(rc);
    double pole = plant->isDiscreteTime() ? 0.3 : -5.0;
    DynOp Q(mat(1, 1, {pole}), mat(1, 1, {1}), mat(1, 1, {0.7}), mat(1, 1, {0.2}));
    std::vector<Cx> without = sortedPoles(*rc.closedLoopExperimental());
    without.push_back(Cx(pole, 0));
    std::sort(without.begin(), without.end(),
              [](Cx a, Cx b) { return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag(); });
    std::vector<Cx> with = sortedPoles(*rc.timed(rc.getExtended()->closedLoop(*rc.compensator(Q))));
    ASSERT_EQ(with.size(), without.size());
    for (size_t i = 0; i < with.size(); ++i) EXPECT_NEAR(std::abs(with[i] - without[i]), 0.0, 1e-6) << i;
}

// Answers the dialogues of the final results by their titles.
void answerDialogue(Cback& cb) {
    ParamRequest& r = *static_cast<ParamRequest*>(cb.callData->asObject());
    std::string title = r.title();
    if (title == "insert Q matrices") {
        r.setValue(0, "[-5]");
        r.setValue(1, "[1]");
        r.setValue(2, "[0.7]");
        r.setValue(3, "[0.2]");
        r.answer = 1;
    } else if (title == "structuring the extended system") {
        r.answer = 1;
    } else if (title == "insert uncertainty matrices") {
        r.setValue(0, "[0 0 0 0;0 0 0 0;-0.1 0 0 0;0 0 0 0]");
        r.answer = 1;
    }
}

// The two H2 steps on plant, kept in "RobustControl.rc" for the final results.
bool storedTwoSteps(const DynOp& plant) {
    RobustControl rc{ExtendedSystem(plant), false, 0.0};
    twoH2Steps(rc);
    return Algebra().storeToFile(rc, "RobustControl.rc");
}

// Asks for a compensator of one state in the dialogue of the high-frequency reduction.
void answerOneState(Cback& cb) {
    ParamRequest& r = *static_cast<ParamRequest*>(cb.callData->asObject());
    if (std::string(r.title()) == "Insert tolerance" && r.fieldCount() == 2) {
        r.setValue(1, "1");
        r.answer = 1;
    }
}

// The slow part of one state would not stabilise the two-mass loop: the compensator is kept
// whole and says so, rather than saved unstable.
TEST_F(DesignTest, ACutCompensatorThatWouldNotStabiliseIsKeptWhole) {
    std::unique_ptr<DynOp> plant = twoMassPlant("twomass.dyn", 0.1);
    ASSERT_TRUE(storedTwoSteps(*plant));
    Integer owner;
    owner.addCback(AskParameters, answerOneState);
    RobustControlDesign design;
    design.setOwner(&owner);
    std::string console = consoleOf([&] { design.finalResults(1e-8, false); });
    owner.removeCbacks(AskParameters);
    EXPECT_NE(console.find("does not stabilise the closed loop: its order"), std::string::npos);
    Object* control = Workspace::readModelFile("Control.dyn");
    ASSERT_NE(control, nil);
    const DynOp& k = *static_cast<DynOp*>(control);
    EXPECT_GT(k.order(), 1u);
    EXPECT_TRUE(plant->closedLoop(k).isStable());
    delete control;
}

TEST_F(DesignTest, FinalResultsTakeTheParameterAndThePerturbationFromTheDialogues) {
    std::unique_ptr<DynOp> plant = twoMassPlant("twomass.dyn", 0.1);
    ASSERT_TRUE(storedTwoSteps(*plant));
    Integer owner;
    owner.addCback(AskParameters, answerDialogue);
    RobustControlDesign design;
    design.setOwner(&owner);
    std::string console = consoleOf([&] { design.finalResults(1e-8, false); });
    owner.removeCbacks(AskParameters);
    EXPECT_NE(console.find("the number of input of Q are = 1"), std::string::npos);
    EXPECT_NE(console.find("closed loop poles of the Perturbed"), std::string::npos);
    // The loop from the disturbance to two objectives is not square: no structuring.
    EXPECT_NE(console.find("The closed loop extended system should be square\n"), std::string::npos);
    EXPECT_NE(console.find("\nWarning, The algorithm was unable to compute a matrix\n"), std::string::npos);
    Object* control = Workspace::readModelFile("Control.dyn");
    ASSERT_NE(control, nil);
    EXPECT_EQ(static_cast<DynOp*>(control)->order(), plant->order() + 1);  // the state of Q added
    delete control;

    DynOp s;
    EXPECT_EQ(consoleOf([&] { RobustControlDesign::systemFromTexts("[1 2]", "[1]", "[1]", "[0]", s); }),
              " A matrix not square\n");
    EXPECT_EQ(consoleOf([&] { RobustControlDesign::systemFromTexts("[1]", "[1]", "[1 2]", "[0]", s); }),
              " The C matrix has not the same number of columns of the A matrix\n");
    EXPECT_EQ(
        consoleOf([&] { RobustControlDesign::systemFromTexts("[1]", "[1 1]", "[1]", "[0]", s); }),
        " The D matrix has not the same number of rows and columns of the B or C matrices, respectively\n");
    EXPECT_TRUE(RobustControlDesign::systemFromTexts("[-1]", "[1 1]", "[1]", "[0 0]", s));
}

// A design problem with a reference has two degrees of freedom: the final results give the
// steady gain from the reference to the objectives.
TEST_F(DesignTest, TwoDegreesOfFreedomGiveTheSteadyGainOfTheReference) {
    ExtendedSystem e = extendedComponents();
    consoleOf([&] { ASSERT_TRUE(e.make()); });
    ASSERT_TRUE(Algebra().storeToFile(e, "Tot.dyn"));
    RobustControlDesign design;
    DesignParameters p;
    p.tolerance = 1e-8;
    p.iterations = 30;
    p.useH2 = true;
    p.phase = DesignPhase::Step1;
    p.made = GramianRole::Control;
    std::string console = consoleOf([&] {
        EXPECT_GT(design.design(p), 0.0);
        p.phase = DesignPhase::Step2;
        p.made = GramianRole::Observer;
        EXPECT_GT(design.design(p), 0.0);
        p.phase = DesignPhase::FinalResults;
        EXPECT_GT(design.design(p), 0.0);
    });
    EXPECT_NE(console.find("is two degree of freedom"), std::string::npos);
    EXPECT_NE(console.find("G = "), std::string::npos);
    EXPECT_EQ(console.find("is one degree of freedom"), std::string::npos);
}

// getModel answered the whole extended system, so "Model with controller", gainDes and the
// perturbation analysis acted on the weighted system. It is the plant: closed by the compensator,
// its loop holds the plant's and the compensator's states only.
TEST_F(DesignTest, GetModelGaveTheWeightedSystemInsteadOfThePlant) {
    ExtendedSystem e = extendedComponents();
    consoleOf([&] { ASSERT_TRUE(e.make()); });
    RobustControl rc(e, false, 0.0);
    twoH2Steps(rc);
    RobustControl::System model = rc.getModel(), k = rc.compensator();
    ASSERT_LT(e.getElement("Model").order(), e.order());
    ASSERT_EQ(model->order(), e.getElement("Model").order());
    // The measured reference stays an input of the loop.
    DynOp loop = model->closedLoop(DynOp(*k, k->inputNumber() - model->measureNumber(), 0, 0));
    EXPECT_EQ(loop.order(), model->order() + k->order());
    EXPECT_EQ(rc.getExtended()->order(), e.order());
}

// Structuring a square loop: the scaling, the norms before and after, and "reset" making it the
// structuring matrix of the next design.
void takeStructuring(Cback& cb) {
    ParamRequest& r = *static_cast<ParamRequest*>(cb.callData->asObject());
    if (std::string(r.title()) != "structuring the extended system") return;
    r.setValue(r.fieldCount() - 1, r.fieldCount() == 2 ? "Experimental" : "reset");
    r.answer = 1;
}

TEST_F(DesignTest, StructuringASquareLoopSetsTheNextStructuringMatrix) {
    std::ofstream("plant.dyn") << fileText(std::string(TARN_EXAMPLES) + "/twomassx.dyn");
    Integer owner;
    owner.addCback(AskParameters, takeStructuring);
    RobustControlDesign design;
    design.setOwner(&owner);
    design.setModelFileName("plant.dyn");
    DesignParameters p;
    p.tolerance = 1e-8;
    p.iterations = 30;
    p.useH2 = true;
    std::string console = consoleOf([&] {
        for (DesignPhase phase : {DesignPhase::Step1, DesignPhase::Step2, DesignPhase::FinalResults}) {
            p.phase = phase;
            p.made = phase == DesignPhase::Step2 ? GramianRole::Observer : GramianRole::Control;
            EXPECT_GT(design.design(p), 0.0) << textOf(phase);
        }
    });
    owner.removeCbacks(AskParameters);
    EXPECT_NE(console.find(", the norm after structuring becomes "), std::string::npos);
    EXPECT_NE(console.find("\nthe original norm was "), std::string::npos);
    const Matrix& S = design.getStructuringMatrix();
    ASSERT_EQ(S.rowNumber(), 2u);
    EXPECT_EQ(S(1, 1), 1.0);  // the last channel is the reference of the scaling
    EXPECT_GT(S(0, 0), 0.0);
    // The next design's model is inv(S) G S: with the same compensator its loop must have the
    // norm printed after structuring. The scaling was applied inverted.
    size_t at = console.find(", the norm after structuring becomes ") + 37;
    double printed = std::stod(console.substr(at));
    Object* read = Workspace::readModelFile("ExtendedSystemFeedback.dyn");
    ASSERT_NE(read, nil);
    const DynOp& loop = *static_cast<DynOp*>(read);
    double w = 0.0;
    double scaled = (Algebra().inv(S) * (loop * S)).normHinfInFrequency(w);
    EXPECT_NEAR(scaled, printed, 1e-4 * printed);
    delete read;
}

TEST(StructuringTest, DiscreteChannelsAreMeasuredOnTheUnitCircle) {
    // Channel (1, 0) is 1/(z - 0.9), peak 10, channel (0, 1) is 1/(z - 0.5), peak 2, both at z = 1:
    // the scaling balances them with D(0, 0)^2 = 10 / 2. At s = jw the first would peak at 1/0.9.
    DiscDynOp loop(mat(2, 2, {0.5, 0, 0, 0.9}), mat(2, 2, {0, 1, 1, 0}), Matrix::diagonal(2, 1.0),
                   Matrix(0, 0), 0.1);
    Matrix D = RobustControlDesign().structuring(loop, false);
    ASSERT_EQ(D.rowNumber(), 2u);
    EXPECT_NEAR(D(0, 0), std::sqrt(5.0), 1e-6);
    EXPECT_EQ(D(1, 1), 1.0);
}

}  // namespace
