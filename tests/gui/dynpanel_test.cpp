// Dynamic panels: the stream form, the shipped design panels, the file faults and the events of a
// press.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QSlider>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/testutil.h"
#include "../trellis/trltest.h"
#include "gui/all.h"
#include "gui/dsgnmim.h"
#include "gui/qcplot.h"
#include "quill/cback.h"
#include "quill/objio.h"

namespace {

typedef DynamicControl C;

std::string str(const String& s) { return s.asCharPointer(); }

std::string storedText(const Object& ob) {
    std::ostringstream out;
    EXPECT_TRUE(storeObject(out, ob));
    return out.str();
}

// A panel of every kind, with the characters that the stream escapes in its texts.
DynamicPanel* everyKind() {
    DynamicPanel* p = new DynamicPanel("All \"kinds\" {here}", 60, 60);
    for (int k = 0; k < C::KINDS; ++k)
        p->add(C(formatText("c%d", k), C::Kind(k), 1, 4 * k, 20, 3, "label\n2", "1 2 3"))
            .setCycle({"a", "b}"})
            .setCaption(k % 3)
            .setRange(-1.5, 2.5)
            .setColours("red", "#ffeedd");
    return p;
}

TEST(DynamicPanelTest, PanelsComeBackEqualFromTheirStream) {
    std::unique_ptr<DynamicPanel> panels[] = {std::unique_ptr<DynamicPanel>(everyKind()),
                                              std::unique_ptr<DynamicPanel>(makeRobustControlPanel()),
                                              std::unique_ptr<DynamicPanel>(makeExtendedSystemPanel())};
    for (auto& panel : panels) {
        SCOPED_TRACE(str(panel->title()));
        std::string text = storedText(*panel);
        String error;
        std::unique_ptr<Object> read(readFromString(error, text.c_str(), class_DynamicPanel));
        ASSERT_TRUE(read) << error.asCharPointer();
        EXPECT_TRUE(read->isEqual(*panel));
        EXPECT_EQ(storedText(*read), text);
    }
}

// Every cut of a panel's stream is refused with a reason; none faults or leaves a panel behind.
TEST(DynamicPanelTest, TruncatedStreamsAreRefused) {
    std::string text = storedText(*std::unique_ptr<DynamicPanel>(everyKind()));
    for (size_t cut = 1; cut < text.size() - 1; ++cut) {
        String error;
        Object* read = readFromString(error, text.c_str(), cut, "DynamicPanel");
        EXPECT_TRUE(!read || read == nil) << cut;
        EXPECT_NE(str(error), "") << cut;
    }
}

TEST(DynamicPanelTest, CycleGoesRoundAndRestartsFromAStrangeValue) {
    C c("c", C::CYCLE, 0, 0, 1, 1);
    c.setCycle({"x", "y", "z"});
    std::string seen;
    for (int i = 0; i < 4; ++i) {
        seen += str(c.value());
        c.setValue(c.nextInCycle().asCharPointer());
    }
    EXPECT_EQ(seen, "xyzx");
    c.setValue("w");
    EXPECT_EQ(str(c.nextInCycle()), "x");
}

// The shipped files are what the layout code makes; TARN_WRITE_PANELS=1 writes them again.
TEST(DynamicPanelTest, ShippedPanelsAreInStepWithTheirLayout) {
    struct Case {
        const char* file;
        DynamicPanel* (*make)();
    } cases[] = {{"RobustControl.mim", makeRobustControlPanel},
                 {"ExtendedSystem.mim", makeExtendedSystemPanel}};
    for (const Case& c : cases) {
        std::unique_ptr<DynamicPanel> panel(c.make());
        std::string file = std::string(TARN_DATA) + "/" + c.file;
        if (std::getenv("TARN_WRITE_PANELS")) {
            EXPECT_EQ(str(writePanel(*panel, file.c_str())), "");
        }
        EXPECT_EQ(fileText(file), storedText(*panel)) << c.file;
    }
}

TEST(DynamicPanelTest, BadPanelFilesAreRefusedWithTheirReason) {
    std::string dir = "/tmp/dynpanel_test_" + std::to_string(getpid());
    std::string clash = storedText(*std::unique_ptr<DynamicPanel>(everyKind()));
    clash.replace(clash.find("\"c2\""), 4, "\"c1\"");
    std::string unknown = storedText(*std::unique_ptr<DynamicPanel>(everyKind()));
    unknown.replace(unknown.find("\"slider\""), 8, "\"sliderx\"");
    std::unique_ptr<DynamicPanel> outside(new DynamicPanel("Out", 10, 10));
    outside->add(C("wide", C::LABEL, 5, 0, 6, 1));
    std::string wide = storedText(*outside);
    struct Case {
        const char* content;  // null: no file
        const char* reason;
    } cases[] = {
        {0, "The file does not exist"},
        {"", "Bad panel file: it holds no panel"},
        {"not a stream", "[RDSYNERR]"},
        {":String.0{3 4\"abc\"}", "Bad panel file: "},
        {clash.c_str(), "two controls are named c1"},
        {unknown.c_str(), "unknown kind of control sliderx for c7"},
        {wide.c_str(), "control wide lies outside the panel's 10 x 10 grid"},
    };
    mkdir(dir.c_str(), 0755);
    int n = 0;
    for (const Case& c : cases) {
        std::string file = dir + "/p" + std::to_string(n++) + ".mim";
        if (c.content) std::ofstream(file) << c.content;
        String message;
        EXPECT_EQ(DynamicPanelWindow::open(file.c_str(), "T", message), nullptr);
        EXPECT_NE(str(message).find(c.reason), std::string::npos) << message.asCharPointer();
        EXPECT_EQ(str(message).find(file), 0u);
        std::remove(file.c_str());
    }
    rmdir(dir.c_str());
}

std::vector<std::string> selected;
void noteSelected(Cback& cb) { selected.push_back(cb.callData->asCharPointer()); }

class PanelWindowTest : public ::testing::Test {
protected:
    PanelWindowTest() : held(new DynamicPanelWindow(makeRobustControlPanel(), 0)), win(*held) {
        win.addCback(DynamicIconSelected, noteSelected);
        selected.clear();
    }
    std::unique_ptr<DynamicPanelWindow> held;
    DynamicPanelWindow& win;
};

// A cycling button waits for its owner to move it on; a toggle flips itself; the program's own
// changes raise nothing.
TEST_F(PanelWindowTest, PressesRaiseTheControlsNameAndLeaveTheValueToTheOwner) {
    struct Case {
        const char* control;
        const char* textAfter;
    } cases[] = {
        {"startButton", "Start"}, {"ChoiceButton", "Step 1"}, {"StepByStep", "YES"},
        {"gamma", "100"},         {"StepByStep", "NO"},
    };
    std::vector<std::string> expected;
    for (const Case& c : cases) {
        win.press(c.control);
        expected.push_back(c.control);
        EXPECT_EQ(str(win.text(c.control)), c.textAfter) << c.control;
    }
    EXPECT_EQ(selected, expected);
    win.cycleNext("ChoiceButton");
    win.setText("StepByStep", "YES");
    win.setText("gamma", "250");
    EXPECT_EQ(str(win.text("ChoiceButton")), "Step 2");
    EXPECT_EQ(str(win.text("StepByStep")), "YES");
    EXPECT_EQ(str(win.panel().find("gamma")->value()), "250");
    EXPECT_EQ(selected.size(), expected.size());
}

TEST_F(PanelWindowTest, TrendConsoleAndUnknownNames) {
    QCPGraph& trend = *static_cast<QCustomPlot*>(win.icon("normTrend")->widget().handle())->graph(0);
    for (int step = 1; step <= 250; ++step) win.addTrendPoint("normTrend", 1.0 + 1.0 / step);
    EXPECT_EQ(str(win.text("normTrend")), "1.004");
    ASSERT_EQ(trend.dataCount(), 200);  // the oldest roll out
    EXPECT_EQ(trend.data()->at(0)->key, 51);
    win.clearTrend("normTrend");
    win.addTrendPoint("normTrend", 7.0);
    EXPECT_EQ(trend.dataCount(), 1);
    EXPECT_EQ(trend.data()->at(0)->key, 1);
    win.appendConsole("console", "gamma = 2\n");
    win.appendConsole("console", "done\n");
    EXPECT_EQ(str(win.text("console")), "gamma = 2\ndone\n");
    CerrCapture cerr;
    EXPECT_FALSE(win.has("noSuchControl"));
    EXPECT_EQ(str(win.text("noSuchControl")), "");
    win.addTrendPoint("console", 1.0);
    win.cycleNext("startButton");
    EXPECT_NE(cerr.str().find("text of noSuchControl"), std::string::npos);
    EXPECT_NE(cerr.str().find("addTrendPoint of console"), std::string::npos);
    EXPECT_NE(cerr.str().find("cycleNext of startButton"), std::string::npos);
}

// The extended system's panel hides its sampling time for a continuous system; a bound that does not
// apply is greyed.
TEST_F(PanelWindowTest, HiddenAndDisabledControlsTakeTheirCaptionAlong) {
    CppWidget& field = win.icon("gamma")->widget();
    CppComposite& outer = *CAST(CppComposite, win.childNamed("PanelWindowForm"));
    CppWidget& caption = *CAST(CppComposite, outer.childNamed("PanelForm"))->childNamed("gammaCaption");
    win.setEnabled("gamma", false);
    win.setVisible("gamma", false);
    EXPECT_FALSE(field.isSensitive() || caption.isSensitive() || field.isManaged() || caption.isManaged());
    win.setVisible("gamma", true);
    win.setEnabled("gamma", true);
    EXPECT_TRUE(field.isSensitive() && caption.isSensitive() && field.isManaged() && caption.isManaged());
}

// A slider sets its value within its range and raises the event when moved by the user.
TEST(DynamicSliderTest, MovedSliderRaisesWithItsValue) {
    DynamicPanel* panel = new DynamicPanel("S", 30, 5);
    panel->add(C("speed", C::SLIDER, 0, 0, 30, 3, "", "2")).setRange(0, 10);
    DynamicPanelWindow win(panel, 0);
    win.addCback(DynamicIconSelected, noteSelected);
    selected.clear();
    QSlider& slider = static_cast<QSlider&>(*win.icon("speed")->widget().handle());
    EXPECT_EQ(slider.value(), slider.maximum() / 5);
    win.setText("speed", "20");
    EXPECT_EQ(slider.value(), slider.maximum());
    EXPECT_TRUE(selected.empty());
    slider.triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_EQ(str(win.text("speed")), "0");
    EXPECT_EQ(selected, std::vector<std::string>{"speed"});
}

}  // namespace
