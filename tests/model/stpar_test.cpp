// The dialogues of state transition graphs, offscreen: a read-only row keeps its value, and a
// process edits its variables in a text of several lines.
#include "model/stpar.h"

#include <gtest/gtest.h>

#include <QPalette>
#include <QWidget>
#include <string>
#include <vector>

#include "model/stateicn.h"
#include "quill/cback.h"
#include "texts.h"
#include "trellis/button.h"
#include "trellis/cppgc.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/label.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

void fill(OrderedCltn& list, const std::vector<std::string>& items) {
    for (const std::string& item : items) list.add(*new String(item.c_str()));
}

int confirmed = 0;
void countConfirm(Cback&) { ++confirmed; }

TEST(StateTransParTest, AReadOnlyRowShowsItsLabelWithoutTheMarkAndKeepsItsValue) {
    setColorResource("readOnlyBackground", "red");
    StateIcon icon;
    OrderedCltn labels, values;
    fill(labels, {"State  Name", std::string("Kind") + readOnlyRowMark});
    fill(values, {"Idle", "initial"});
    StateTransPar editor(topLevelWidget, icon, labels, values, "Modify Parameters of State Icon");
    editor.addCback(ParamConfirmPressed, countConfirm);
    ParamDialog& d = editor.dialog();
    ASSERT_EQ(d.rowCount(), 2);
    EXPECT_EQ(str(CAST(CppLabel, d.form().childNamed("Label1"))->text()), "Kind");
    EXPECT_EQ(str(CAST(CppLabel, d.form().childNamed("Label0"))->text()), "State  Name");
    EXPECT_FALSE(editor.isReadOnly(0));
    EXPECT_TRUE(editor.isReadOnly(1));
    EXPECT_FALSE(d.rowField(1).isSensitive());
    EXPECT_TRUE(d.rowField(0).isSensitive());
    EXPECT_EQ(d.rowField(1).handle()->palette().color(QPalette::Base), QColor(Qt::red));
    removeColorResource("readOnlyBackground");

    confirmed = 0;
    d.setRowText(0, "Busy");
    d.setRowText(1, "changed");
    d.okButton().press();
    EXPECT_EQ(confirmed, 1);
    EXPECT_EQ(texts(editor.values()), (std::vector<std::string>{"Busy", "initial"}));

    // Primed again for another icon of the class, it shows the new values.
    editor.release();
    StateIcon other;
    values.deleteContents();
    fill(values, {"Run", "later"});
    editor.setIcon(other, labels, values);
    EXPECT_EQ(str(d.rowText(0)), "Run");
    EXPECT_EQ(str(d.rowText(1)), "later");
    labels.deleteContents();
    values.deleteContents();
}

TEST(StateTransParTest, AProcessEditsItsVariablesInTheEventText) {
    ProcessIcon icon;
    OrderedCltn labels, values;
    int count = 0;
    icon.setVariables("speed\nlimit");
    icon.iconParameters(0, labels, values, count);
    ProcessPar editor(topLevelWidget, icon, labels, values, "Modify Parameters of Process Icon");
    ParamDialog& d = editor.dialog();
    EXPECT_EQ(d.rowCount(), 2);
    EXPECT_EQ(str(editor.eventText().name().name()), "EventText");
    EXPECT_EQ(str(editor.eventText().parent()->name().name()), "EventView");
    EXPECT_EQ(str(CAST(CppLabel, d.form().childNamed("EventLabel"))->text()), "Variables");
    EXPECT_EQ(str(editor.eventText().getText()), "speed\nlimit");
    editor.eventText().setText("x\ny\nz");
    d.setRowText(0, "Ctl");
    d.okButton().press();
    EXPECT_EQ(texts(editor.values()), (std::vector<std::string>{"Ctl", "", "x\ny\nz"}));
    labels.deleteContents();
    values.deleteContents();
}

}  // namespace
