// VariablesDialog: the names on the left, the chosen one's value beside them, and Close.
#include "interpreter/panel/varlist.h"

#include "interpreter/executer.h"
#include "interpreter/variable.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/list.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(VariablesDialog, CppDialog, 1, 0)

namespace {

const int GAP = 4;

}  // namespace

VariablesDialog::VariablesDialog(CppWidget* parent, Executer& executer)
    : CppDialog("VariablesDialog", parent, "List of variables"), executer(executer) {
    CppForm* form = new CppForm("VariablesForm", this);
    list = new CppList("Variables", form, 12, 16);
    valuePane = new CppText("Value", form, true, 12, 40);
    valuePane->setReadOnly(true);
    close = new CppCommand("CloseButton", form, "Close");
    form->attachAt(*list, GAP, GAP);
    form->attachHorizontal(list, valuePane, GAP);
    form->attachVertical(form, valuePane, GAP);
    form->attachHorizontal(valuePane, form, GAP);
    form->attachVertical(list, close, GAP);
    form->attachHorizontal(form, close, GAP);
    form->attachVertical(close, form, GAP);
    form->attachBottomToSibling(*valuePane, *close, GAP);
    list->addCback(ListCback, cbackMethod<&VariablesDialog::nameChosen>, *this);
    close->addCback(CppCommandPressed, cbackMethod<&VariablesDialog::closePressed>, *this);
}

void VariablesDialog::fill() {
    list->removeAll();
    const OrderedCltn& globals = executer.getGlobals();
    for (unsigned i = 0; i < globals.size(); ++i)
        list->addItem(CAST(Variable, globals.at(int(i)))->getName().asCharPointer());
    valuePane->setText("");
}

void VariablesDialog::nameChosen(Cback&) {
    int index = list->selectedIndex();
    valuePane->setText(index < 0 ? "" : executer.printVariable(list->itemText(index)).asCharPointer());
}

void VariablesDialog::closePressed(Cback&) { popdown(); }
