// VariablesDialog: the list of the interpreter's globals by name; choosing one shows its value.
#ifndef INTERPRETER_PANEL_VARLIST_H
#define INTERPRETER_PANEL_VARLIST_H

#include "trellis/shell.h"

class Cback;
class CppCommand;
class CppList;
class CppText;
class Executer;

extern Class class_VariablesDialog;

class VariablesDialog : public CppDialog {
    DECLARE_MEMBERS(VariablesDialog)
public:
    VariablesDialog(CppWidget* parent, Executer& executer);

    // The names of the globals as they stand now; the value pane empties.
    void fill();
    CppList& names() const { return *list; }
    CppText& value() const { return *valuePane; }
    CppCommand& closeButton() const { return *close; }

private:
    void nameChosen(Cback& cb);
    void closePressed(Cback& cb);

    Executer& executer;
    CppList* list;
    CppText* valuePane;
    CppCommand* close;
};

#endif
