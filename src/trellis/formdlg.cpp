// FormDialog and ParamDialog: rows attached one under the other, the three buttons under them.
#include "trellis/formdlg.h"

#include <initializer_list>

#include "quill/cback.h"
#include "quill/orderedc.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(FormDialog, CppDialog, 1, 0)
DEFINE_ABSTRACT_CLASS(ParamDialog, FormDialog, 1, 0)

Symbol OkButtonPressed("OkButtonPressed");
Symbol CancelButtonPressed("CancelButtonPressed");
Symbol HelpButtonPressed("HelpButtonPressed");

namespace {

const int GAP = 6;
const int LABEL_PERCENT = 35;

void raiseOk(Cback& cb) { CAST(ParamDialog, cb.userData)->cbackOn(OkButtonPressed); }
void raiseCancel(Cback& cb) { CAST(ParamDialog, cb.userData)->cbackOn(CancelButtonPressed); }
void raiseHelp(Cback& cb) { CAST(ParamDialog, cb.userData)->cbackOn(HelpButtonPressed); }
void endWithOk(Cback&) { exitLoop(1); }
void endWithCancel(Cback&) { exitLoop(0); }

}  // namespace

FormDialog::FormDialog(const char* name, CppWidget* parent, const char* title)
    : CppDialog(name, parent, title) {
    form_ = new CppForm("form", this);
}

// ParamDialog

ParamDialog::ParamDialog(const char* name, CppWidget* parent, const char* title, int width)
    : FormDialog(name, parent, title), fields(new OrderedCltn), lastRow(0) {
    CppForm& f = form();
    f.resize(width, 0);
    ok = new CppCommand("OkButton", &f, "Ok");
    cancel = new CppCommand("CancelButton", &f, "Cancel");
    help = new CppCommand("HelpButton", &f, "Help");
    CppCommand* buttons[] = {ok, cancel, help};
    for (int i = 0; i < 3; ++i) {
        f.attachLeftPercent(*buttons[i], 5 + 32 * i);
        f.attachRightPercent(*buttons[i], 31 + 32 * i);
        f.attachVertical(&f, buttons[i], GAP);
        f.attachVertical(buttons[i], &f, GAP);
    }
    ok->addCback(CppCommandPressed, raiseOk, this);
    cancel->addCback(CppCommandPressed, raiseCancel, this);
    help->addCback(CppCommandPressed, raiseHelp, this);
}

ParamDialog::~ParamDialog() noexcept(false) { delete fields; }

void ParamDialog::placeBelowRows(CppWidget& widget) {
    CppForm& f = form();
    f.attachVertical(lastRow ? lastRow : &f, &widget, GAP);
    for (CppCommand* button : {ok, cancel, help}) f.attachVertical(&widget, button, 2 * GAP);
    lastRow = &widget;
}

CppText& ParamDialog::addRow(const char* label, const char* value, const char* fieldName) {
    CppForm& f = form();
    CppLabel* l = new CppLabel(formatText("Label%u", fields->size()), &f, label);
    CppText* t = new CppText(fieldName ? fieldName : formatText("Text%u", fields->size()), &f);
    t->setText(value);
    t->setFocusFlag(true);
    f.attachHorizontal(&f, l, GAP);
    f.attachRightPercent(*l, LABEL_PERCENT);
    f.attachLeftPercent(*t, LABEL_PERCENT);
    f.attachHorizontal(t, &f, GAP);
    // The label stands beside its field, a little lower to meet the text's line.
    f.attachVertical(lastRow ? lastRow : &f, l, GAP + 4);
    placeBelowRows(*t);
    fields->add(*t);
    return *t;
}

ToggleButton& ParamDialog::addToggle(const char* name, const char* label) {
    ToggleButton* toggle = new ToggleButton(name, &form(), label);
    form().attachHorizontal(&form(), toggle, GAP);
    placeBelowRows(*toggle);
    return *toggle;
}

void ParamDialog::addUnderRows(CppWidget& widget) {
    form().attachHorizontal(&form(), &widget, GAP);
    form().attachHorizontal(&widget, &form(), GAP);
    placeBelowRows(widget);
}

int ParamDialog::rowCount() const { return fields->size(); }

CppText& ParamDialog::rowField(int row) const { return *CAST(CppText, fields->at(row)); }

String ParamDialog::rowText(int row) const { return rowField(row).getText(); }

void ParamDialog::setRowText(int row, const char* text) { rowField(row).setText(text); }

int ParamDialog::ask() {
    addCback(OkButtonPressed, endWithOk);
    addCback(CancelButtonPressed, endWithCancel);
    int answer = runModal();
    removeCback(OkButtonPressed, endWithOk);
    removeCback(CancelButtonPressed, endWithCancel);
    return answer;
}
