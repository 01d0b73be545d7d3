// The parameter dialogs: rows back into the values at "Ok", the toggle's two events, Help, and the link's
// labels.
#include "editor/paramedt.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../quill/testutil.h"
#include "editor/iconarc.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/formdlg.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

std::vector<std::string> journal;
void note(Cback& cb) { journal.push_back(cb.event.name().asCharPointer()); }

std::vector<std::string> texts(const OrderedCltn& list) {
    std::vector<std::string> result;
    for (unsigned i = 0; i < list.size(); ++i) result.push_back(str(*CAST(String, list.at(i))));
    return result;
}

void listen(ParamEditor& editor) {
    journal.clear();
    for (const Symbol* event :
         {&ParamConfirmPressed, &ParamCancelPressed, &ParamCommentPressed, &ParamHelpPressed})
        editor.addCback(*event, note);
}

TEST(ParamEditorTest, okCopiesTheRowsAndTheToggleChoosesTheEvent) {
    IconNode node;
    OrderedCltn labels, values;
    node.getParameters(labels, values);
    ParamEditor editor(topLevelWidget, node, labels, values, "Modify Parameters of IconNode");
    labels.deleteContents();
    values.deleteContents();
    listen(editor);
    EXPECT_EQ("Modify Parameters of IconNode", str(editor.dialog().title()));
    // An empty comment: the entry is offered as the label.
    ASSERT_TRUE(editor.useAsLabel());
    EXPECT_EQ("UseAsLabel", str(editor.useAsLabel()->name().name()));
    EXPECT_TRUE(editor.useAsLabel()->state());
    editor.show();
    editor.show();
    editor.dialog().setRowText(0, "gain");
    editor.dialog().helpButton().press();
    EXPECT_TRUE(editor.dialog().isUp());
    editor.dialog().okButton().press();
    EXPECT_EQ(std::vector<std::string>{"gain"}, texts(editor.values()));
    editor.useAsLabel()->setState(false);
    editor.dialog().okButton().press();
    editor.dialog().cancelButton().press();
    EXPECT_EQ((std::vector<std::string>{"ParamHelpPressed", "ParamCommentPressed", "ParamConfirmPressed",
                                        "ParamCancelPressed"}),
              journal);
    // Stopped, it answers nothing; primed again it must have been released, and fit its rows.
    editor.stop();
    editor.dialog().okButton().press();
    EXPECT_EQ(4u, journal.size());
    values.add(*new String("icon"));
    labels.add(*new String("Icon label"));
    EXPECT_NE(std::string::npos, raisedText([&] {
                                     editor.setIcon(node, labels, values);
                                 }).find("labels.isEmpty() && values.isEmpty()"));
    editor.release();
    labels.add(*new String("Second"));
    EXPECT_NE(std::string::npos,
              raisedText([&] { editor.setIcon(node, labels, values); }).find("labels.size() == labSz"));
    labels.deleteContents();
    values.deleteContents();
}

TEST(ParamEditorTest, aLinkWithoutNameShowsGenericAndTakesOneLabelALine) {
    ClassArc arc;
    arc.addLabel("u");
    arc.addLabel("y");
    OrderedCltn labels, values;
    arc.getParameters(labels, values);
    LinkParamEdt editor(topLevelWidget, arc, labels, values, "Modify Parameters of Generic Link");
    labels.deleteContents();
    values.deleteContents();
    listen(editor);
    EXPECT_EQ("generic", str(editor.dialog().rowText(0)));
    EXPECT_EQ("u\ny", str(editor.labelsText().getText()));
    editor.labelsText().setText(" w \n\nz");
    editor.useAsLabel()->setState(false);
    editor.show();
    editor.dialog().okButton().press();
    EXPECT_EQ((std::vector<std::string>{"", "w", "", "z"}), texts(editor.values()));
    EXPECT_EQ(std::vector<std::string>{"ParamConfirmPressed"}, journal);
    // The icon takes the values: "generic" kept stores no name, empty lines no label.
    arc.setParameters(editor.labels(), editor.values());
    EXPECT_EQ((std::vector<std::string>{"w", "z"}), texts(arc.labels()));
    IconNode node;
    EXPECT_NE(std::string::npos, raisedText([&] {
                                     LinkParamEdt wrong(topLevelWidget, node, labels, values, "");
                                 }).find("ic->isKindOf(class_ClassArc)"));
}

}  // namespace
