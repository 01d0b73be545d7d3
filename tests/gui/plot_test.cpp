// The plot window: the drawn responses, the channel refusals, the initial state, the export and the
// update request.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <memory>

#include "../trellis/trltest.h"
#include "control/discdyn.h"
#include "gui/all.h"
#include "gui/qcplot.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/text.h"

namespace {

// dx/dt = -x + u, y = x: the step response is 1 - exp(-t).
DynOp firstOrder() { return DynOp(Matrix("[-1]"), Matrix("[1]"), Matrix("[1]"), Matrix("[0]")); }

// Two independent first-order channels of two inputs and two outputs.
DynOp twoChannels() {
    return DynOp(Matrix("[-1 0;0 -2]"), Matrix("[1 0;0 1]"), Matrix("[1 0;0 1]"), Matrix("[0 0;0 0]"));
}

class PlotTest : public ::testing::Test {
protected:
    // Plot's destructor may throw, as every object's of the library: the fixture holds it apart.
    PlotTest() : held(new Plot), plot(*held) {}
    PlotWindow& window() { return *plot.window(); }
    void set(PlotWindow::Field f, const char* text) { window().field(f).setText(text); }
    QCPGraph& graph() { return *window().view().plot().graph(0); }

    std::unique_ptr<Plot> held;
    Plot& plot;
};

TEST_F(PlotTest, StepOfFirstOrderSystemEndsAtItsFinalValue) {
    plot.setSystem(firstOrder(), {"force"}, {"speed"}, {});
    plot.open("Motor");
    set(PlotWindow::FINAL_TIME, "5");
    EXPECT_EQ(plot.replot(), "");
    ASSERT_EQ(graph().dataCount(), 501);
    EXPECT_NEAR(graph().data()->at(500)->value, 1.0 - std::exp(-5.0), 1e-6);
    EXPECT_DOUBLE_EQ(graph().data()->at(500)->key, 5.0);
    EXPECT_EQ(graph().name().toStdString(), "Motor.speed from force");
    EXPECT_EQ(window().view().plot().xAxis->label().toStdString(), "time (s)");
}

// A discrete system steps at its own sampling time: 0.5 s up to 5 s is ten steps.
TEST_F(PlotTest, DiscreteSystemPlotsAtItsSamplingTime) {
    plot.setSystem(DiscDynOp(Matrix("[0.5]"), Matrix("[1]"), Matrix("[1]"), Matrix("[0]"), 0.5), {}, {}, {});
    plot.open("D");
    set(PlotWindow::FINAL_TIME, "5");
    EXPECT_EQ(plot.replot(), "");
    ASSERT_EQ(graph().dataCount(), 11);
    EXPECT_NEAR(graph().data()->at(10)->value, 2.0, 2e-3);  // 1 / (1 - 0.5)
    EXPECT_EQ(graph().name().toStdString(), "D.y1 from u1");
}

TEST_F(PlotTest, ChannelSelectionRefusalsShowTheirMessage) {
    struct Case {
        PlotKind kind;
        const char* channels;
        const char* message;
    } cases[] = {
        {STEP_PLOT, "1:2,1", "simulator accepts only one output"},
        {NOISE_PLOT, "1,1:2", "simulator accepts only one input"},
        {STEP_PLOT, "3,1", "3 must not be greater than the number of outputs 2"},
        {STEP_PLOT, "1,3", "3 must not be greater than the number of inputs 2"},
        {STEP_PLOT, "1", "inconsistent format to choose variables"},
        {STEP_PLOT, "1:2", "Unconsistent format, a terminal input index must be assigned"},
        {FREQUENCY_PLOT, "x,1", "inconsistent format to choose variables"},
        {FREE_PLOT, "2", ""},
        {FREQUENCY_PLOT, "1:2,1:2", ""},
    };
    plot.setSystem(twoChannels(), {}, {}, {});
    plot.open("S");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.channels);
        window().choose(c.kind);
        set(PlotWindow::CHANNELS, c.channels);
        EXPECT_EQ(plot.replot(), c.message);
        EXPECT_EQ(window().message().asCharPointer(), std::string(c.message));
    }
}

TEST_F(PlotTest, FrequencyPastHalfSamplingShowsTheWarning) {
    plot.setSystem(DiscDynOp(Matrix("[0.5]"), Matrix("[1]"), Matrix("[1]"), Matrix("[0]"), 0.1), {}, {}, {});
    plot.open("D");
    window().choose(FREQUENCY_PLOT);
    set(PlotWindow::LAST_FREQUENCY, "100");
    EXPECT_EQ(plot.replot(), "");
    EXPECT_EQ(
        std::string(window().message().asCharPointer()),
        "Warning: the final frequency range exceeds the half sampling period of 31.4159 change eventually "
        "the range");
    EXPECT_EQ(window().view().plot().yAxis->label().toStdString(), "Max singular value (dB)");
}

TEST_F(PlotTest, InitialStateSurvivesTheSameOrderAndFollowsAnother) {
    plot.setSystem(twoChannels(), {}, {}, {"p", "v"});
    plot.open("S");
    window().choose(FREE_PLOT);
    set(PlotWindow::INITIAL_STATE, "1 2");
    EXPECT_EQ(plot.replot(), "");
    plot.setSystem(twoChannels(), {}, {}, {});
    ASSERT_EQ(plot.initialState().size(), 2u);
    EXPECT_EQ(plot.initialState()[1], 2.0);
    EXPECT_EQ(std::string(window().field(PlotWindow::INITIAL_STATE).getText().asCharPointer()), "1 2");
    set(PlotWindow::INITIAL_STATE, "1");
    EXPECT_EQ(plot.replot(), "The initial state needs 2 numbers");
    plot.setSystem(firstOrder(), {}, {}, {});
    EXPECT_EQ(plot.initialState().size(), 1u);
}

// The export button asks for the name; PDF goes by the name's extension.
TEST_F(PlotTest, ExportWritesPngAndPdfFiles) {
    plot.setSystem(firstOrder(), {}, {}, {});
    plot.open("Motor");
    Answers answers;
    for (const char* name : {"plot_export.png", "plot_export.PDF"}) {
        SCOPED_TRACE(name);
        answers.file = testing::TempDir() + name;
        unlink(answers.file.c_str());
        window().button(PlotWindow::EXPORT).press();
        struct stat written;
        ASSERT_EQ(stat(answers.file.c_str(), &written), 0);
        EXPECT_GT(written.st_size, 0);
        unlink(answers.file.c_str());
    }
    EXPECT_TRUE(answers.messages.empty());
}

bool updateRequested = false;

TEST_F(PlotTest, UpdateButtonRaisesTheRequest) {
    plot.setSystem(firstOrder(), {}, {}, {});
    plot.open("Motor");
    updateRequested = false;
    plot.addCback(PlotUpdateRequest, [](Cback&) { updateRequested = true; });
    window().button(PlotWindow::UPDATE).press();
    EXPECT_TRUE(updateRequested);
}

}  // namespace
