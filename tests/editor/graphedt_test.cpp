// The graph editor as a person uses it: placing, linking, moving, cut and paste, undo, files and locks.
#include <sys/stat.h>
#include <unistd.h>

#include <QPlainTextEdit>
#include <QPointer>
#include <fstream>
#include <iterator>

#include "graphtest.h"
#include "quill/arrayob.h"
#include "trellis/drawprim.h"
#include "trellis/filemenu.h"

namespace {

std::string scratch(const char* name) {
    std::string dir = ::testing::TempDir() + "graphedt";
    mkdir(dir.c_str(), 0777);
    unlink((dir + "/editfile.tarn").c_str());
    std::string path = dir + "/" + name;
    unlink(path.c_str());
    return path;
}

FloatPoint first(IconArc* link) { return link->firstPoint(); }

}  // namespace

TEST_F(GraphEditorTest, placesLinksMovesAndUndoesEachGesture) {
    IconNode* a = place(3.5, 3.5);
    IconNode* b = place(12.5, 3.5);
    ASSERT_TRUE(a && b);
    EXPECT_EQ(count(), 2u);
    IconArc* arrow = link(3.5, 3.5, 12.5, 3.5);
    ASSERT_TRUE(arrow);
    EXPECT_EQ(arrow->from(), a);
    EXPECT_EQ(arrow->to(), b);
    EXPECT_NEAR(first(arrow).x(), 4.01, 1e-6);  // leaves the right side, toward b

    // A press and release inside the drag delay moves nothing, however far.
    pointer(DownGraphic, 3.5, 3.5);
    pointer(MoveDownGraphic, 3.5, 9.5);
    pointer(UpGraphic, 3.5, 9.5);
    EXPECT_EQ(a->posY(), 3);
    drag(3.5, 3.5, 3.5, 9.5);
    EXPECT_EQ(a->posY(), 9);
    arrow = CAST(IconArc, editor->editorIcons().assocAt(arrow->name()));
    EXPECT_NEAR(first(arrow).y(), 9.5, 0.6);  // the link followed its start

    edit("Undo");
    a = iconAt(3.5, 3.5);
    ASSERT_TRUE(a);
    EXPECT_EQ(links(), 1u);
    edit("Redo");
    EXPECT_TRUE(iconAt(3.5, 9.5));
    edit("Undo");
    edit("Undo");  // the link
    EXPECT_EQ(links(), 0u);
    edit("Undo");  // the second rectangle
    EXPECT_EQ(count(), 1u);
    edit("Redo");
    edit("Redo");
    EXPECT_EQ(count(), 3u);
    EXPECT_EQ(links(), 1u);
}

TEST_F(GraphEditorTest, cutAndPasteCarryLinksAndDropThoseWhoseEndIsGone) {
    IconNode* a = place(3.5, 3.5);
    ASSERT_TRUE(place(12.5, 3.5));
    ASSERT_TRUE(link(3.5, 3.5, 12.5, 3.5));
    // Cut b through its popup: the link goes with it, a keeps no link.
    click(12.5, 3.5, 3);
    editor->gui().openPopup()->choose("Cut");
    EXPECT_EQ(count(), 1u);
    OrderedCltn out;
    EXPECT_TRUE(a->toLinks(out).isEmpty());
    edit("Paste");
    EXPECT_EQ(count(), 3u);
    out.removeAll();
    ASSERT_EQ(a->toLinks(out).size(), 1u);
    EXPECT_EQ(CAST(IconArc, out.at(0))->to()->name(), iconAt(12.5, 3.5)->name());
    edit("Undo");  // the paste
    EXPECT_EQ(count(), 1u);
    edit("Undo");  // the cut: b and its link are back, joined to a
    EXPECT_EQ(count(), 3u);
    out.removeAll();
    EXPECT_EQ(a->toLinks(out).size(), 1u);

    // With a gone, the pasted link has no start: it is dropped, b stays.
    click(12.5, 3.5, 3);
    editor->gui().openPopup()->choose("Cut");
    editor->deleteIconAndLinks(*a);
    CerrCapture errors;
    edit("Paste");
    EXPECT_EQ(count(), 1u);
    EXPECT_EQ(links(), 0u);
    EXPECT_FALSE(errors.str().empty());
}

TEST_F(GraphEditorTest, aClipboardTextOverTheLimitKeepsTheCutIconsForPaste) {
    IconNode* a = place(5.5, 5.5);
    ASSERT_TRUE(a);
    a->comment() = std::string(70000, 'x').c_str();
    CerrCapture errors;
    click(5.5, 5.5, 3);
    editor->gui().openPopup()->choose("Cut");
    EXPECT_NE(errors.str().find("Object too big"), std::string::npos);
    EXPECT_EQ(count(), 0u);
    edit("Paste");
    ASSERT_EQ(count(), 1u);
    EXPECT_EQ(iconAt(5.5, 5.5)->comment().size(), 70000u);
}

TEST_F(GraphEditorTest, theExampleDrawingOpensWithItsCommentsAndLinks) {
    ASSERT_TRUE(editor->load(TARN_EXAMPLES "/feedback.edt"));
    EXPECT_EQ(count(), 5u);
    EXPECT_EQ(links(), 2u);
    IconNode* plant = iconAt(5.5, 5.5);
    ASSERT_TRUE(plant);
    EXPECT_NE(std::string(plant->comment().asCharPointer()).find("DC motor"), std::string::npos);
    OrderedCltn out;
    EXPECT_EQ(plant->toLinks(out).size(), 1u);
}

TEST_F(GraphEditorTest, aDrawingSavedIsReadBackWholeAndADamagedOneIsRefused) {
    std::string file = scratch("round.edt");
    place(3.5, 3.5, "first");
    place(12.5, 8.5, "second");
    ASSERT_TRUE(link(3.5, 3.5, 12.5, 8.5));
    ASSERT_TRUE(editor->gui().fileMenu().saveAs(file.c_str()));
    delete editor;
    editor = new GraphEditor(topLevelWidget, "Semantic", "Graphic Editor - ");
    ASSERT_TRUE(editor->load(file.c_str()));
    EXPECT_EQ(count(), 3u);
    ASSERT_TRUE(iconAt(12.5, 8.5));
    OrderedCltn in;
    EXPECT_EQ(iconAt(12.5, 8.5)->fromLinks(in).size(), 1u);

    std::string damaged = scratch("damaged.edt");
    std::ofstream(damaged) << "ArrayOb 1 { 6 garbage";
    answers.messages.clear();
    editor->load(damaged.c_str());
    EXPECT_FALSE(answers.messages.empty());
    EXPECT_TRUE(place(20.5, 20.5));  // the editor goes on
}

TEST_F(GraphEditorTest, theLockRefusesASecondEditorAndMovesOnSaveAs) {
    std::string file = scratch("locked.edt"), moved = scratch("moved.edt");
    std::string lock = file.substr(0, file.rfind('/')) + "/editfile.tarn";
    ASSERT_TRUE(editor->gui().fileMenu().saveAs(file.c_str()));
    EXPECT_EQ(access(lock.c_str(), F_OK), 0);
    EXPECT_EQ(std::string(GraphEditor::takeLock(file.c_str()).asCharPointer()),
              "\n\nThe file is already edited");
    ASSERT_TRUE(editor->gui().fileMenu().saveAs(moved.c_str()));
    EXPECT_EQ(GraphEditor::takeLock(file.c_str()).size(), 0u);  // free again: taken now by the test
    GraphEditor::dropLock(file.c_str());
    EXPECT_EQ(std::string(GraphEditor::takeLock(moved.c_str()).asCharPointer()),
              "\n\nThe file is already edited");
}

TEST_F(GraphEditorTest, modifyAndTransformChangeTheIconAndAreUndone) {
    IconNode* a = place(3.5, 3.5, "before");
    place(12.5, 3.5);
    IconArc* arrow = link(3.5, 3.5, 12.5, 3.5);
    ASSERT_TRUE(a && arrow);
    editor->gui().choiceMenu().menu().choose("Modify");
    doubleClick(3.5, 3.5);
    ParamDialog* dialog = openDialog();
    ASSERT_TRUE(dialog);
    dialog->setRowText(0, "after");
    answerDialog();
    EXPECT_STREQ(iconAt(3.5, 3.5)->iconLabel()->text.asCharPointer(), "after");

    String name = arrow->name();
    click(8.5, 3.5, 3);
    CAST(MotifMenu, editor->gui().openPopup()->childNamed("Transform"))->choose("ClassArc");
    EXPECT_TRUE(editor->editorIcons().assocAt(name)->isA() == &class_ClassArc);
    edit("Undo");
    EXPECT_TRUE(editor->editorIcons().assocAt(name)->isA() == &class_IconArc);
    edit("Undo");
    EXPECT_STREQ(iconAt(3.5, 3.5)->iconLabel()->text.asCharPointer(), "before");
}

TEST_F(GraphEditorTest, anAreaSelectionMovesTogetherAndTheLinkBetweenKeepsItsSides) {
    IconNode* a = place(3.5, 3.5);
    IconNode* b = place(9.5, 3.5);
    IconNode* c = place(3.5, 12.5);
    IconArc* ab = link(3.5, 3.5, 9.5, 3.5);
    ASSERT_TRUE(a && b && c && ab);
    drag(1.2, 1.2, 11.8, 5.8);                      // over a and b, not c
    EXPECT_EQ(editor->selectedIcons().size(), 3u);  // the link between joins them
    drag(3.5, 3.5, 3.5, 8.5);
    EXPECT_EQ(a->posY(), 8);
    EXPECT_EQ(b->posY(), 8);
    EXPECT_EQ(c->posY(), 12);
    ab = CAST(IconArc, editor->editorIcons().assocAt(ab->name()));
    EXPECT_NEAR(ab->firstPoint().x(), 4.01, 1e-6);
    EXPECT_NEAR(ab->lastPoint().x(), 8.99, 1e-6);
    EXPECT_NEAR(ab->lastPoint().y(), 8.5, 1e-6);
}

TEST_F(GraphEditorTest, leavingACriticalActionDropsTheIconBeingPlaced) {
    editor->gui().iconMenu().menu().choose("Rectangle");
    answerDialog();
    ASSERT_EQ(editor->status(), GraphEditor::PlacingFirst);
    editor->gui().cbackOn(GraphEdtGuiReset);
    EXPECT_LT(editor->status(), int(GraphEditor::CriticalStatus));
    EXPECT_EQ(count(), 0u);
    EXPECT_EQ(editor->gui().drawArea().list().size(), 0u);
    EXPECT_TRUE(place(4.5, 4.5));
}

TEST(SemanticTest, placingRulesKeepIconsOnTheBoardAndNamesUnique) {
    Semantic semantic;
    IconNode icon;
    icon.iconWidth(2.0f);
    Point p(40, -3);
    semantic.clampPosition(icon, p);
    EXPECT_EQ(p.x(), 27);
    EXPECT_EQ(p.y(), 0);

    // A name taken and not a number becomes "1", then counts on while taken.
    Dictionary icons;
    IconNode gain, one;
    gain.setName("gain");
    one.setName("1");
    icons.add(gain);
    icons.add(one);
    icon.setName("gain");
    semantic.uniqueName(icon, icons);
    EXPECT_STREQ(icon.name().asCharPointer(), "2");
    icons.removeAll();

    EXPECT_EQ(&semantic.linkClass("Unlabel"), &class_IconArc);
    EXPECT_EQ(&semantic.linkClass("anything"), &class_ClassArc);
    IconArc arrow;
    IconNode from, to;
    to.setPosition(Point(31, 5));
    delete semantic.placeLink(arrow, from, to, FloatPoint(0, 0.5), FloatPoint(31, 5.5));
    EXPECT_FLOAT_EQ(arrow.lastPoint().x(), 29.99f);  // clamped inside the board
    EXPECT_STREQ(semantic.canLinkFrom(arrow, arrow, FloatPoint(1, 1)),
                 "Link icon cannot be the from icon for another link");
}

// The comment window of an icon: what is typed is the icon's comment, and the
// window goes with the icon.
TEST_F(GraphEditorTest, aCommentWindowWritesTheCommentAndClosesWithItsIcon) {
    IconNode* a = place(5.5, 5.5);
    ASSERT_TRUE(a);
    editor->gui().choiceMenu().menu().choose("Comment");
    doubleClick(5.5, 5.5);
    QPlainTextEdit* text = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle().contains("Comment of IconNode"))
            text = window->findChild<QPlainTextEdit*>();
    ASSERT_TRUE(text);
    text->setPlainText("the plant");
    EXPECT_STREQ(a->comment().asCharPointer(), "the plant");
    QPointer<QWidget> window = text->window();
    click(5.5, 5.5, 3);
    editor->gui().openPopup()->choose("Cut");
    EXPECT_TRUE(window.isNull() || !window->isVisible());
}

// Every cut of the example drawing is refused with a message or read whole;
// the editor survives each and still places icons.
TEST_F(GraphEditorTest, aDrawingCutAnywhereIsRefusedWithoutHarm) {
    std::ifstream in(TARN_EXAMPLES "/feedback.edt");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ASSERT_GT(text.size(), 500u);
    std::string file = scratch("cut.edt");
    CerrCapture errors;
    for (size_t length = 0; length < text.size(); length += 37) {
        std::ofstream(file, std::ios::trunc) << text.substr(0, length);
        editor->load(file.c_str());
        EXPECT_LE(count(), 5u);
    }
    editor->gui().fileMenu().newFile();
    EXPECT_TRUE(place(20.5, 20.5));
}

TEST(GraphShowerTest, aShownDrawingCannotBeChangedByThePointer) {
    GraphShower shower(topLevelWidget, "Semantic", "Drawing - ");
    ASSERT_TRUE(shower.load(TARN_EXAMPLES "/feedback.edt"));
    IconNode* plant = shower.board().iconAt(5, 5);
    ASSERT_TRUE(plant);
    DrawArea& area = shower.gui().drawArea();
    area.raisePointer(DownGraphic, FloatPoint(5.5, 5.5), 1, 0);
    toolkitSleep(350);
    area.raisePointer(MoveDownGraphic, FloatPoint(5.5, 9.5), 1, 0);
    area.raisePointer(UpGraphic, FloatPoint(5.5, 9.5), 1, 0);
    EXPECT_EQ(plant->posY(), 5);
    EXPECT_TRUE(shower.isReadOnly());
    EXPECT_EQ(shower.editorIcons().size(), 5u);
}
