// DebugPanes: the "Variables" pane and the "Call Stack" list that a paused program shows beside its source.
#ifndef INTERPRETER_PANEL_VARPANE_H
#define INTERPRETER_PANEL_VARPANE_H

#include <vector>

#include "quill/quillstr.h"

class CppForm;
class CppLabel;
class CppList;
class CppText;
class CppWidget;
class Executer;

class DebugPanes {
public:
    // The panes in form, right of source, between top and bottom.
    DebugPanes(CppForm& form, CppWidget& source, CppWidget& top, CppWidget& bottom);

    // The locals of the innermost call and the globals of the program, and the
    // calls under way, innermost first; frameLines holds the line each call
    // has reached, outermost first.
    void refresh(Executer& executer, const std::vector<int>& frameLines);
    void clear();

    String variablesText() const;
    CppList& callStack() const { return *stack; }

    // A value's printed form, cut to its first lines when it has more.
    static String collapsed(const String& value);
    enum { MAX_VALUE_LINES = 20 };

private:
    CppText* variables;
    CppList* stack;
};

#endif
