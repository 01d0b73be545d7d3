// Dialogues driven through their buttons inside their nested loops: ParamDialog, the print and zoom
// dialogues.
#include <gtest/gtest.h>

#include <functional>

#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/orderedc.h"
#include "trellis/button.h"
#include "trellis/console.h"
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/graphic.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/printdlg.h"
#include "trellis/scrollb.h"
#include "trellis/text.h"
#include "trellis/zoommenu.h"
#include "trltest.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

// Runs an action from the dispatch loop after a while, as a person would.
std::vector<std::function<void()>> pending;
Integer* trigger = 0;

void runPending(Cback&) {
    std::function<void()> action = pending.front();
    pending.erase(pending.begin());
    action();
}

void later(int milliseconds, std::function<void()> action) {
    if (!trigger) {
        trigger = new Integer;
        trigger->addCback(XTimeOut, runPending);
    }
    pending.push_back(action);
    addXTimeOut(milliseconds, *trigger);
}

int helpPresses = 0;
void countHelp(Cback&) { ++helpPresses; }

TEST(ParamDialogTest, okCancelAndHelpInTheModalLoop) {
    ParamDialog dialog("ParamDialog", 0, "Parameters");
    CppText& gain = dialog.addRow("Gain", "1.5");
    dialog.addRow("Poles", "-1 -2");
    ToggleButton& label = dialog.addToggle("UseAsLabel", "Use entry as label");
    dialog.addCback(HelpButtonPressed, countHelp);
    EXPECT_EQ(2, dialog.rowCount());
    later(5, [&] { dialog.helpButton().press(); });
    later(10, [&] {
        EXPECT_TRUE(dialog.isUp());
        gain.setText("2.5");
        label.setState(true);
        dialog.okButton().press();
    });
    EXPECT_EQ(1, dialog.ask());
    EXPECT_EQ(1, helpPresses);
    EXPECT_FALSE(dialog.isUp());
    EXPECT_EQ("2.5", str(dialog.rowText(0)));
    EXPECT_EQ("-1 -2", str(dialog.rowText(1)));
    EXPECT_TRUE(label.state());
    later(5, [&] { dialog.cancelButton().press(); });
    EXPECT_EQ(0, dialog.ask());
    EXPECT_EQ(0, loopLevel());
}

TEST(ParamDialogTest, rowsStandOneUnderTheOtherAboveTheButtons) {
    ParamDialog dialog("Rows", 0, "Rows", 400);
    CppText& first = dialog.addRow("First", "");
    CppText& second = dialog.addRow("Second", "");
    dialog.realize();
    int x1, y1, w1, h1, x2, y2, w2, h2, bx, by, bw, bh;
    first.getGeometry(x1, y1, w1, h1);
    second.getGeometry(x2, y2, w2, h2);
    dialog.okButton().getGeometry(bx, by, bw, bh);
    EXPECT_EQ(x1, x2);
    EXPECT_GT(y2, y1 + h1);
    EXPECT_GT(by, y2 + h2);
    EXPECT_EQ(400 - 6 - x1, w1);
    dialog.popdown();
}

TEST(PrintDialogTest, settingsComeFromTheWidgets) {
    PrintOptions options;
    PrintDialog dialog(0, options);
    EXPECT_EQ("18.0", str(dialog.widthField().getText()).substr(0, 4));
    CppLabel* widthLabel = static_cast<CppLabel*>(dialog.form().childNamed("WidthLabel"));
    EXPECT_EQ("Page width  (cm.)", str(widthLabel->text()));
    dialog.gifToggle().setState(true);
    EXPECT_EQ("Gif width  (10 pixel)", str(widthLabel->text()));
    dialog.landscapeToggle().setState(true);
    dialog.widthField().setText("64");
    dialog.fileField().setText("drawing");
    PrintOptions read;
    ASSERT_TRUE(dialog.readSettings(read));
    EXPECT_EQ(PrintOptions::GIF, read.kind);
    EXPECT_EQ("drawing.gif", str(read.fileName));
    EXPECT_EQ(64.0, read.width);
    EXPECT_TRUE(read.landscape);
    EXPECT_FALSE(read.blackAndWhite);
    Answers answers;
    dialog.fileField().setText("  ");
    EXPECT_FALSE(dialog.readSettings(read));
    EXPECT_EQ(std::vector<std::string>{"Error: File for print on, not specified"}, answers.messages);
}

TEST(PrintDialogTest, printTheFileEndsTheDialogue) {
    PrintOptions options;
    options.fileName = "page.ps";
    PrintDialog dialog(0, options);
    later(5, [&] { dialog.blackAndWhiteToggle().setState(true); });
    later(10, [&] { dialog.fileButton().press(); });
    EXPECT_TRUE(dialog.ask(options));
    EXPECT_TRUE(options.blackAndWhite);
    EXPECT_FALSE(options.onPrinter);
    EXPECT_EQ("page.ps", str(options.fileName));
    later(5, [&] { dialog.cancelButton().press(); });
    EXPECT_FALSE(dialog.ask(options));
}

std::vector<double> zooms;
void noteZoom(Cback& cb) { zooms.push_back(cb.callData->asDouble()); }

TEST(ZoomMenuTest, entriesAndTheZoomDialogue) {
    CppShell shell("ZoomShell", 0);
    MenuBar* bar = new MenuBar("Bar", &shell);
    PulldownMenu* view = new PulldownMenu("ShowMenu", bar, "View");
    Integer* owner = new Integer;
    owner->addCback(Zoomed, noteZoom);
    ZoomMenu zoom(*owner, *view, &shell);
    EXPECT_EQ(13, view->choiceCount());
    EXPECT_EQ("Alt+0", str(view->keysOf("Zoom 10:10")));
    zooms.clear();
    view->choose("Zoom In");
    view->choose("Zoom 10:5");
    view->choose("Zoom Out");
    later(10, [] {
        ParamDialog* dialog = 0;
        for (unsigned i = 0; i < CppShell::shells().size(); ++i)
            if (CAST(CppShell, CppShell::shells().at(i))->name().isEqual("Zoom Dialog"))
                dialog = CAST(ParamDialog, CppShell::shells().at(i));
        ASSERT_TRUE(dialog);
        EXPECT_EQ("Zoom At", str(dialog->title()));
        CppScrollbar* scroll = static_cast<CppScrollbar*>(dialog->form().childNamed("ZoomScroll"));
        scroll->setValue(250);
        EXPECT_EQ("250", str(static_cast<CppText*>(dialog->form().childNamed("ZoomText"))->getText()));
        dialog->okButton().press();
    });
    view->choose("Zoom at...");
    EXPECT_EQ((std::vector<double>{2.0, 0.5, 0.25, 2.5}), zooms);
    delete owner;
}

TEST(GraphicTest, scrollBarsMoveTheVisibleWorld) {
    CppShell shell("GraphicShell", 0);
    CppGraphic* graphic = new CppGraphic("DrawPanel", &shell);
    shell.resize(436, 336);
    graphic->setExtent(FloatRect(0, 0, 2000, 1000));
    DrawArea& area = graphic->drawArea();
    int x, y, w, h;
    area.getGeometry(x, y, w, h);
    EXPECT_EQ(20, x);
    EXPECT_EQ(20, y);
    EXPECT_EQ(400, w);
    EXPECT_EQ(300, h);
    CppScrollbar* horizontal = static_cast<CppScrollbar*>(graphic->childNamed("HScroll"));
    EXPECT_EQ(1600, horizontal->maximum());
    horizontal->setValue(300);
    EXPECT_EQ(300, area.origin().x());
    graphic->setZoom(2);
    EXPECT_EQ(1800, horizontal->maximum());
}

TEST(ConsoleTest, collectsWhatIsWrittenAndPassesItOn) {
    WinOstream window("Console", "cout/cerr test");
    testing::internal::CaptureStdout();
    window.attach();
    std::cout << "first line" << std::endl << "second";
    window.detach();
    EXPECT_EQ("first line\nsecond", testing::internal::GetCapturedStdout());
    EXPECT_EQ("first line\nsecond", str(window.text()));
    EXPECT_TRUE(window.holdsOutput());
}

}  // namespace
