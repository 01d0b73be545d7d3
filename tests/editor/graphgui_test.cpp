// The graph editor's window: its widgets, busy refusals, popups, menus from the drawing's names, the file
// cycle.
#include "editor/graphgui.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <string>
#include <vector>

#include "../trellis/trltest.h"
#include "editor/resizdlg.h"
#include "quill/arrayob.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/integer.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/filemenu.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/scrollb.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

const Symbol* const guiEvents[] = {
    &GraphEdtGuiNew,        &GraphEdtGuiLoad,       &GraphEdtGuiSave,      &GraphEdtGuiQuit,
    &GraphEdtGuiPrint,      &GraphEdtGuiEdit,       &GraphEdtGuiOpti,      &GraphEdtGuiCmnd,
    &GraphEdtGuiIcon,       &GraphEdtGuiLink,       &GraphEdtGuiMenu,      &GraphEdtGuiReset,
    &GraphEdtGuiStatusMenu, &GraphEdtGuiTransfMenu, &GraphEdtGuiLinksMenu, &GraphEdtGuiResize};

// Each event as "Name" or "Name:text", nil as "Name:nil".
std::vector<std::string> journal;
void note(Cback& cb) {
    std::string entry = cb.event.name().asCharPointer();
    CallData* data = cb.callData;
    if (data && data->isObject() && data->asObject() == nil)
        entry += ":nil";
    else if (data && data->kind() == CallData::OBJECT && data->asObject()->isKindOf(class_String))
        entry += std::string(":") + data->asCharPointer();
    journal.push_back(entry);
}

String* text(const char* s) { return new String(s); }

ArrayOb* row(Object* a, Object* b, Object* c = 0) {
    ArrayOb* r = new ArrayOb(c ? 3 : 2);
    (*r)[0] = a;
    (*r)[1] = b;
    if (c) (*r)[2] = c;
    return r;
}

class GraphGuiTest : public ::testing::Test {
protected:
    void SetUp() override {
        journal.clear();
        shell = new CppShell("GraphEditor", topLevelWidget);
        CppForm* form = new CppForm("EditorForm", shell);
        shell->resize(760, 540);
        gui = new GraphEdtGui(*shell, *form, "Graph Editor", ".edt", false, false, 0);
        for (const Symbol* event : guiEvents) gui->addCback(*event, note);
        shell->realize();
    }
    void TearDown() override {
        delete gui;
        delete shell;
        for (OrderedCltn* c : {icons, links, commands}) deepDelete(c);
    }
    // Icons "Block" and the submenu "Signals" of "In" and "Out"; links "Wire";
    // commands a row with mnemonic and accelerator, one with a key alone, and a plain one.
    void buildMenus() {
        icons->add(*text("Block"));
        icons->add(*row(text("Signals"), text("In"), text("Out")));
        links->add(*text("Wire"));
        commands->add(*row(text("Create Document (ASCII)"), text("A"), text("Alt+A")));
        commands->add(*row(text("Check"), nil, text("CTRL+K")));
        commands->add(*row(text("View"), text("W"), text("F5")));
        commands->add(*text("Plain"));
        gui->buildMenus(*icons, *links, *commands);
    }

    CppShell* shell = 0;
    GraphEdtGui* gui = 0;
    OrderedCltn* icons = new OrderedCltn;
    OrderedCltn* links = new OrderedCltn;
    OrderedCltn* commands = new OrderedCltn;
    Answers answers;
};

TEST_F(GraphGuiTest, windowAsAPersonSeesIt) {
    CppForm& form = *CAST(CppForm, shell->childNamed("EditorForm"));
    EXPECT_TRUE(form.childNamed("MenuBar"));
    EXPECT_TRUE(CAST(CppForm, form.childNamed("EdtBox"))->childNamed("DrawPanel"));
    CppForm& bottom = *CAST(CppForm, form.childNamed("BottomBox"));
    EXPECT_EQ("DblClk", str(CAST(CppLabel, bottom.childNamed("DblClk"))->text()));
    EXPECT_TRUE(CAST(CppForm, bottom.childNamed("FrameBox"))->childNamed("CmndMenu"));
    EXPECT_EQ("Graph Editor - (No name)", str(shell->title()));
    EXPECT_EQ("no-file", str(gui->fileName()));
    EXPECT_EQ("Icon To Insert", str(gui->iconMenu().label()));
    EXPECT_EQ("Ctrl+X", str(gui->editMenu().keysOf("Cut")));
    EXPECT_EQ("Ctrl+Shift+Z", str(gui->editMenu().keysOf("Redo")));
    EXPECT_EQ("Ctrl+R", str(gui->editMenu().keysOf("Resize Icon...")));
    // The bottom box sits under the drawing across the window.
    int x, y, w, h, bx, by, bw, bh;
    form.childNamed("EdtBox")->getGeometry(x, y, w, h);
    bottom.getGeometry(bx, by, bw, bh);
    EXPECT_EQ(y + h, by);
    EXPECT_EQ(760, bw);
    gui->setModified(true);
    EXPECT_EQ("(changed)  Graph Editor - (No name)", str(shell->title()));
}

TEST_F(GraphGuiTest, busyMenusRefuseAndTheFileMenuOffersAReset) {
    buildMenus();
    gui->editMenu().choose("Cut");
    ASSERT_EQ(std::vector<std::string>{"GraphEdtGuiEdit:Cut"}, journal);
    journal.clear();
    gui->setBusy(true);
    gui->editMenu().choose("Paste");
    gui->commandMenu().choose("Plain");
    gui->iconMenu().menu().choose("Block");
    EXPECT_TRUE(journal.empty());
    const std::string refusal =
        "Error: The editor have some critical action started\n\n  Conclude it before.";
    EXPECT_EQ(std::vector<std::string>(3, refusal), answers.messages);
    // The window's close is refused while busy.
    shell->closeRequested();
    EXPECT_EQ("Error: The editor is in a critical action\n\n  Conclude it.", answers.messages.back());
    // "No" keeps the mark; "yes" clears it and the entry ends there.
    answers.replies = {false, true};
    gui->fileMenu().menu().choose("New");
    EXPECT_TRUE(gui->isBusy());
    gui->fileMenu().menu().choose("New");
    EXPECT_FALSE(gui->isBusy());
    EXPECT_EQ(std::vector<std::string>(2, "The editor is in a critical action\n\n  Want reset this status ?"),
              answers.questions);
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiReset"}, journal);
}

TEST_F(GraphGuiTest, closingWithChildEditorsAsksFirst) {
    gui->setShowerChildren(true);
    answers.replies = {false, true};
    shell->closeRequested();
    EXPECT_TRUE(journal.empty());
    shell->closeRequested();
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiQuit"}, journal);
    EXPECT_EQ("Some child editor opened\n\nContinue ?", answers.questions.front());
}

TEST_F(GraphGuiTest, eachPopupEndsInOneEvent) {
    OrderedCltn& linkNames = *links;
    OrderedCltn& transforms = *commands;
    OrderedCltn& none = *icons;
    linkNames.add(*text("Wire"));
    transforms.add(*text("ClassArc"));
    // A choice in a submenu of the icon popup, then the popup closing.
    gui->popupIcon("Block", linkNames, none, false, true, true);
    PopupMenu& iconPopup = *gui->openPopup();
    EXPECT_FALSE(iconPopup.isEnabled("Cut"));
    EXPECT_FALSE(iconPopup.isEnabled("Transform"));
    EXPECT_TRUE(iconPopup.isEnabled("Resize..."));
    CAST(MotifMenu, iconPopup.childNamed("Link"))->choose("Wire");
    iconPopup.unmanage();
    dispatchPending();
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiLinksMenu:Wire"}, journal);
    // A canvas popup chosen from.
    journal.clear();
    gui->popupCanvas();
    gui->openPopup()->choose("Copy");
    gui->openPopup()->unmanage();
    dispatchPending();
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiMenu:Copy"}, journal);
    // A transform popup dismissed.
    journal.clear();
    gui->popupTransform(transforms);
    gui->openPopup()->unmanage();
    dispatchPending();
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiTransfMenu:nil"}, journal);
}

TEST_F(GraphGuiTest, menusFromTheDrawingsNames) {
    buildMenus();
    PulldownMenu& commandMenu = gui->commandMenu();
    EXPECT_EQ("Alt+A", str(commandMenu.keysOf("Create Document (ASCII)")));
    EXPECT_EQ("Ctrl+K", str(commandMenu.keysOf("Check")));
    EXPECT_EQ("F5", str(commandMenu.keysOf("View")));
    EXPECT_EQ("", str(commandMenu.keysOf("Plain")));
    commandMenu.choose("Create Document (ASCII)");
    // A submenu entry is current by its menu and place; the palette chooses the same way.
    CAST(MotifMenu, gui->iconMenu().menu().childNamed("IconSubMenu"))->choose("Out");
    EXPECT_EQ("Out", str(gui->currentIcon()));
    EXPECT_EQ(1, gui->menuIndex());
    EXPECT_EQ(1, gui->iconIndex());
    CppForm& palette = *CAST(CppForm, gui->palette()->form().childNamed("IconBox"));
    CAST(CppCommand, palette.childNamed("button0"))->press();
    EXPECT_EQ(-1, gui->menuIndex());
    EXPECT_EQ(0, gui->iconIndex());
    gui->iconMenu().menu().choose("Paste");
    EXPECT_EQ("Block", str(gui->currentIcon()));
    EXPECT_EQ("Wire", str(gui->currentLink()));
    EXPECT_EQ((std::vector<std::string>{"GraphEdtGuiOpti:Create Document (ASCII)", "GraphEdtGuiIcon:Out",
                                        "GraphEdtGuiIcon:Block", "GraphEdtGuiIcon:Paste"}),
              journal);
}

TEST_F(GraphGuiTest, theViewFollowsTheWheelAndADragNearTheEdge) {
    gui->setWorld(FloatRect(0, 0, 100, 100));
    DrawArea& area = gui->drawArea();
    area.raisePointer(WheelGraphic, FloatPoint(10, 10), 0, 0, 1);
    EXPECT_DOUBLE_EQ(1, gui->zoom());
    // With Control the zoom grows and the point under the pointer stays there.
    area.raisePointer(WheelGraphic, FloatPoint(10, 10), 0, PointerState::CONTROL_MASK, 1);
    EXPECT_DOUBLE_EQ(1.25, gui->zoom());
    EXPECT_EQ(FloatPoint(2, 2), area.origin());
    const FloatRect& seen = area.transl().world();
    FloatPoint beyond(seen.x() + seen.width() + 3, 5);
    gui->ensureVisible(beyond);
    EXPECT_LT(beyond.x(), area.transl().world().x() + area.transl().world().width());
    EXPECT_EQ(2, area.origin().y());
}

TEST_F(GraphGuiTest, resizeDialogOffsetsTheValuesAndAppliesIncrements) {
    gui->openResizeDialog(true, false, true, 3, 2, 1.0);
    ResizeDialog& dialog = *gui->resizeDialog();
    EXPECT_EQ("Resize Icon Dialog", str(dialog.title()));
    EXPECT_FALSE(dialog.field(ResizeDialog::HEIGHT).isSensitive());
    // The width can't go below one cell.
    EXPECT_EQ(-2, dialog.scrollbar(ResizeDialog::WIDTH).minimum());
    dialog.scrollbar(ResizeDialog::WIDTH).setValue(-1);
    dialog.field(ResizeDialog::FONT).setText("1.5");
    double dw, dh, dfont;
    gui->resizeValues(dw, dh, dfont);
    EXPECT_EQ("2", str(dialog.field(ResizeDialog::WIDTH).getText()));
    EXPECT_DOUBLE_EQ(-1, dw);
    EXPECT_DOUBLE_EQ(0, dh);
    EXPECT_DOUBLE_EQ(0.5, dfont);
    // Apply reports, and the values shown become the present ones; Reset goes back to the opening ones.
    dialog.applyButton().press();
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiResize"}, journal);
    gui->resizeValues(dw, dh, dfont);
    EXPECT_DOUBLE_EQ(0, dw);
    dialog.resetButton().press();
    EXPECT_EQ("3", str(dialog.field(ResizeDialog::WIDTH).getText()));
    gui->resizeValues(dw, dh, dfont);
    EXPECT_DOUBLE_EQ(1, dw);
}

// The editor's side of the file cycle: it stores its drawing and keeps what is read.
GraphEdtGui* window = 0;
ArrayOb* drawing = 0;
ArrayOb* read = 0;
bool refuse = false;

void saving(Cback& cb) {
    if (!window->store(*drawing) || refuse) CAST(Integer, cb.callData->asObject())->value(0);
}

void loading(Cback& cb) { read = CAST(ArrayOb, CAST(Assoc, cb.callData->asObject())->key()); }

class FileCycleTest : public GraphGuiTest {
protected:
    void SetUp() override {
        GraphGuiTest::SetUp();
        directory = "/tmp/tarn_graphgui_XXXXXX";
        directory = mkdtemp(&directory[0]);
        window = gui;
        drawing = new ArrayOb(2);
        (*drawing)[0] = text("icons");
        (*drawing)[1] = new Integer(6);
        refuse = false;
        gui->addCback(GraphEdtGuiSave, saving);
        gui->addCback(GraphEdtGuiLoad, loading);
    }
    void TearDown() override {
        deepDelete(drawing);
        if (read) deepDelete(read);
        read = 0;
        std::system(("rm -rf " + directory).c_str());
        GraphGuiTest::TearDown();
    }

    std::string directory;
};

TEST_F(FileCycleTest, aDrawingSavedIsReadBack) {
    std::string name = directory + "/plant.edt";
    ASSERT_TRUE(gui->fileMenu().saveAs(name.c_str()));
    EXPECT_EQ(name, str(gui->fileName()));
    EXPECT_TRUE(gui->openFile(name.c_str()));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isEqual(*drawing));
    EXPECT_EQ(std::vector<std::string>({"GraphEdtGuiSave", "GraphEdtGuiLoad"}), journal);
    // A save that the editor refuses leaves the file as it was.
    refuse = true;
    gui->setModified(true);
    EXPECT_FALSE(gui->fileMenu().save());
    deepDelete(read);
    read = 0;
    EXPECT_TRUE(gui->openFile(name.c_str(), true));
}

TEST_F(FileCycleTest, aFileThatIsNoDrawingGivesANewOneAndTheReadersMessage) {
    std::string name = directory + "/notes.edt";
    FILE* f = std::fopen(name.c_str(), "w");
    std::fputs("not an object stream", f);
    std::fclose(f);
    EXPECT_FALSE(gui->openFile(name.c_str(), true));
    EXPECT_EQ(std::vector<std::string>{"GraphEdtGuiNew"}, journal);
    EXPECT_EQ("no-file", str(gui->fileName()));
    ASSERT_EQ(1u, answers.messages.size());
    EXPECT_EQ("Error: " + name, answers.messages[0].substr(0, 7 + name.size()));
}

}  // namespace
