// The state-graph editor driven as a person drives it: states and a process from the palette
// with their dialogues, transitions between them and back to a state, saved and read back.
#include <sys/stat.h>
#include <unistd.h>

#include "../editor/graphtest.h"
#include "model/stateicn.h"
#include "model/trnslink.h"
#include "texts.h"
#include "trellis/filemenu.h"

namespace {

class StateGraphEditorTest : public GraphEditorTest {
protected:
    void SetUp() override {
        editor = new GraphEditor(topLevelWidget, "StateGraphSem", "State Graph Editor - ");
    }

    // A node of the palette's kind, named in its dialogue, placed by a click at (x, y).
    StateIcon* placeNode(const char* kind, double x, double y, const char* name) {
        editor->gui().iconMenu().menu().choose(kind);
        ParamDialog* dialog = openDialog();
        if (dialog) {
            dialog->setRowText(0, name);
            answerDialog();
        }
        pointer(MoveGraphic, x, y);
        click(x, y);
        if (editor->status() == GraphEditor::PlacingComment) click(x, y - 1);
        IconNode* icon = iconAt(x, y);
        return icon && icon->isKindOf(class_StateIcon) ? static_cast<StateIcon*>(icon) : nullptr;
    }
};

TEST_F(StateGraphEditorTest, nodesAndTransitionsArePlacedSavedAndReadBack) {
    StateIcon* idle = placeNode("State", 10.5, 10.5, "Idle");
    StateIcon* running = placeNode("State", 40.5, 10.5, "Running");
    StateIcon* motor = placeNode("Process", 25.5, 30.5, "Motor");
    ASSERT_TRUE(idle && running && motor);
    EXPECT_TRUE(motor->isKindOf(class_ProcessIcon));
    EXPECT_EQ(str(idle->stateName()), "Idle");
    EXPECT_EQ(str(motor->stateName()), "Motor");

    IconArc* start = link(10.5, 10.5, 40.5, 10.5);
    ASSERT_TRUE(start);
    EXPECT_TRUE(start->isKindOf(class_TransitionLink));
    EXPECT_EQ(start->from(), idle);
    EXPECT_EQ(start->to(), running);
    ASSERT_TRUE(link(40.5, 10.5, 25.5, 30.5));
    EXPECT_EQ(links(), 2u);

    std::string dir = ::testing::TempDir() + "stgedit", file = dir + "/machine.stg";
    mkdir(dir.c_str(), 0777);
    unlink((dir + "/editfile.tarn").c_str());
    unlink(file.c_str());
    ASSERT_TRUE(editor->gui().fileMenu().saveAs(file.c_str()));
    delete editor;
    editor = new GraphEditor(topLevelWidget, "StateGraphSem", "State Graph Editor - ");
    ASSERT_TRUE(editor->load(file.c_str()));
    EXPECT_EQ(links(), 2u);
    IconNode* back = iconAt(40.5, 10.5);
    ASSERT_TRUE(back && back->isKindOf(class_StateIcon));
    EXPECT_EQ(str(static_cast<StateIcon*>(back)->stateName()), "Running");
    OrderedCltn in, out;
    EXPECT_EQ(back->fromLinks(in).size(), 1u);
    EXPECT_EQ(back->toLinks(out).size(), 1u);
}

}  // namespace
