// The robust design panel driven through its controls by name, offscreen, its dialogues answered
// through their buttons.
#include "gui/rcpanel.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "control/askparam.h"
#include "control/extsys.h"
#include "control/workspc.h"
#include "gui/dynwin.h"
#include "gui/extpanel.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/formdlg.h"
#include "trellis/shell.h"

namespace {

// Presses Cancel on every parameter dialogue that comes up, as a person who takes the defaults.
class DialogCanceller : public Object {
public:
    DialogCanceller() { arm(); }
    ~DialogCanceller() noexcept(false) override { removeXTimeOut(timer); }
    unsigned answered = 0;

private:
    void arm() {
        timer = addXTimeOut(5, *this);
        addCback(XTimeOut, cbackMethod<&DialogCanceller::look>, *this);
    }
    void look(Cback&) {
        removeCback(XTimeOut, cbackMethod<&DialogCanceller::look>, *this);
        const OrderedCltn& shells = CppShell::shells();
        for (unsigned i = 0; i < shells.size(); ++i) {
            Object* s = shells.at(int(i));
            if (!s->isKindOf(class_ParamDialog) || !static_cast<ParamDialog*>(s)->isUp()) continue;
            static_cast<ParamDialog*>(s)->cancelButton().press();
            ++answered;
            break;
        }
        arm();
    }
    int timer = 0;
};

// A scratch working directory holding the example plant, left again at the end.
class PanelTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_panel_XXXXXX";
        dir = mkdtemp(pattern);
        old = getcwd(0, 0);
        ASSERT_EQ(chdir(dir.c_str()), 0);
        std::ifstream in(std::string(TARN_EXAMPLES) + "/twomassx.dyn");
        std::ofstream("twomassx.dyn") << in.rdbuf();
    }
    void TearDown() override {
        ASSERT_EQ(chdir(old), 0);
        free(old);
        std::string command = "rm -rf " + dir;
        ASSERT_EQ(system(command.c_str()), 0);
    }
    static void run(GraphMainLib& lib, const char* phase) {
        ASSERT_EQ(lib.window()->text("ChoiceButton"), phase);
        lib.press("startButton");
        while (lib.isBusy()) dispatchPending();
    }
    std::string dir;
    char* old = 0;
};

}  // namespace

TEST_F(PanelTest, AWholeDesignFromThePanelEndsWithAStabilisingController) {
    GraphMainLib lib(TARN_DATA);
    DynamicPanelWindow& w = *lib.window();
    w.setText("GuiFileName", "twomassx.dyn");
    while (w.text("Minimum") != "None") lib.press("Minimum");  // the gramian iteration
    while (w.text("InitialFeedback") != "pole placement") lib.press("InitialFeedback");
    DialogCanceller canceller;
    run(lib, "Step 1");
    EXPECT_TRUE(lib.design().lastResult().success) << lib.design().lastResult().failure.asCharPointer();
    EXPECT_GT(lib.design().lastResult().iterationNorms.size(), 1u);
    EXPECT_NE(w.text("gammaFirst"), "not done");
    EXPECT_EQ(w.text("ConObs"), "Control");
    run(lib, "Step 2");
    EXPECT_TRUE(lib.design().lastResult().success) << lib.design().lastResult().failure.asCharPointer();
    run(lib, "Final Results");
    EXPECT_EQ(w.text("ChoiceButton"), "Step 1");
    EXPECT_GT(canceller.answered, 3u);

    Object* plant = Workspace::readModelFile("twomassx.dyn");
    Object* controller = Workspace::readModelFile("Control.dyn");
    ASSERT_TRUE(plant && controller);
    EXPECT_TRUE(CAST(DynOp, plant)->closedLoop(*CAST(DynOp, controller)).isStable());
    delete plant;
    delete controller;
}

TEST_F(PanelTest, ControlsFollowTheirRules) {
    GraphMainLib lib(TARN_DATA);
    DynamicPanelWindow& w = *lib.window();
    lib.reset();
    struct Row {
        const char* press;
        const char* control;
        const char* expected;
    };
    const Row rows[] = {
        {"Algorithm", "Algorithm", "refining"},
        {"StartCont", "StartCont", "continue"},
        {"ConObs", "ConObs", "Observer"},  // only while "start"
        {"StartCont", "StartCont", "start"},
        {"ConObs", "ConObs", "Control"},
        {"Gramian", "Minimum", "min H2"},
        {"Minimum", "Minimum", "min Hinf"},
        {"Minimum", "Minimum", "None"},
        {"Minimum", "Minimum", "min H2"},
        {"Gramian", "Minimum", "bound Hinf"},
        {"Minimum", "Minimum", "min Hinf"},
        {"StructuringMatrix", "StructuringMatrix", "Not Pres."},
        {"ChoiceButton", "ChoiceButton", "Step 2"},
        {"ConObs", "ConObs", "Observer"},  // flipped on the way to "Step 2", then refused
        {"ChoiceButton", "ChoiceButton", "Final Results"},
        {"ChoiceButton", "Minimum", "bound Hinf"},
        {"StepByStep", "Algorithm", "refining"},
        {"StepByStep", "InitialFeedback", "zero"},
        {"InitialFeedback", "InitialFeedback", "pole placement"},
    };
    for (const Row& r : rows) {
        w.press(r.press);
        EXPECT_EQ(w.text(r.control), r.expected) << "after a press on " << r.press;
    }
    EXPECT_EQ(w.text("ChoiceButton"), "Step 1");
    EXPECT_EQ(w.text("ConObs"), "Control");

    // With the first norm known the initial feedback stays, and the bound must stay above the
    // norm for H-infinity; a reset forgets the norm.
    w.setText("gammaFirst", "5");
    lib.press("InitialFeedback");
    EXPECT_EQ(w.text("InitialFeedback"), "pole placement");
    w.setText("gamma", "3");
    lib.press("Gramian");
    lib.press("Gramian");
    EXPECT_EQ(w.text("Gramian"), "H2");
    lib.press("resetButton");
    EXPECT_EQ(w.text("gammaFirst"), "not done");
    EXPECT_EQ(w.text("gamma"), "100");
}

TEST_F(PanelTest, TheExtendedSystemPanelComposesTheModelOfTheDesign) {
    GraphMainLib lib(TARN_DATA);
    ExtendedSystemPanel& panel = lib.extendedPanel();
    panel.show();
    ASSERT_NE(panel.window(), nullptr);
    // A plant with a disturbance, weighted noise on its two measures and a weighted objective.
    Matrix a(2, 2), b(2, 1);
    a(0, 1) = 1.0;
    a(1, 0) = -2.0;
    a(1, 1) = -0.3;
    b(1, 0) = 1.0;
    auto gain = [](unsigned rows, unsigned columns, double value) {
        Matrix g(rows, columns);
        for (unsigned i = 0; i < rows; ++i)
            for (unsigned j = 0; j < columns; ++j) g(i, j) = value;
        return DynOp(g);
    };
    const std::pair<const char*, DynOp> parts[] = {
        {"Model", DynOp(a, b, Matrix::diagonal(2, 1.0), Matrix(2, 1))},
        {"Wu2", gain(1, 1, 0.1)},
        {"W11", gain(2, 1, 1.0)},
        {"W21", gain(2, 1, 0.7)},
        {"W12", gain(1, 2, 0.4)},
        {"Wd", gain(2, 2, 0.01)},
    };
    for (const auto& part : parts) {
        std::string name = std::string("my") + part.first;
        globalWorkspace().store(name.c_str(), part.second);
        panel.window()->setText(part.first, name.c_str());
    }
    EXPECT_TRUE(panel.composeModel());
    EXPECT_EQ(lib.window()->text("GuiFileName"), "Tot.dyn");
    Object* composed = Workspace::readModelFile("Tot.dyn");
    ASSERT_NE(composed, nullptr);
    EXPECT_TRUE(composed->isKindOf(class_ExtendedSystem));
    delete composed;
    panel.window()->setText("Model", "nothing.dyn");
    EXPECT_FALSE(panel.composeModel());
    panel.press("discCon");
    EXPECT_EQ(panel.window()->text("discCon"), "Sampled data system");
}

TEST_F(PanelTest, StopEndsTheRunBetweenIterations) {
    GraphMainLib lib(TARN_DATA);
    lib.window()->setText("GuiFileName", "twomassx.dyn");
    while (lib.window()->text("Minimum") != "None") lib.press("Minimum");
    lib.addCback(
        IterationNorm,
        [](Object& consumer, Cback&) { static_cast<GraphMainLib&>(consumer).press("stopButton"); }, lib);
    DialogCanceller canceller;
    run(lib, "Step 1");
    size_t iterations = lib.design().lastResult().iterationNorms.size();
    EXPECT_GE(iterations, 1u);
    EXPECT_LE(iterations, 2u);
}

TEST_F(PanelTest, ThePanelComesBackAsItWasLeft) {
    {
        GraphMainLib lib(TARN_DATA);
        lib.press("ChoiceButton");
        lib.window()->setText("gamma", "7.5");
        lib.window()->setText("GuiFileName", "twomassx.dyn");
        EXPECT_TRUE(lib.close());
    }
    GraphMainLib again(TARN_DATA);
    EXPECT_EQ(again.window()->text("ChoiceButton"), "Step 2");
    EXPECT_EQ(again.window()->text("gamma"), "7.5");
    EXPECT_EQ(again.window()->text("GuiFileName"), "twomassx.dyn");
}

TEST_F(PanelTest, AMissingPanelFileIsToldAndLeavesAnEmptyWindow) {
    GraphMainLib lib(dir.c_str());
    EXPECT_EQ(lib.startMessage(), "RobustControl.mim file is not present in the command panel directory");
    ASSERT_NE(lib.window(), nullptr);
    EXPECT_FALSE(lib.window()->has("startButton"));
    lib.press("startButton");
    EXPECT_FALSE(lib.isBusy());
}
