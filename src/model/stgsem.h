// StateGraphSem, the state transition graph as a kind of drawing: states, processes and the
// transitions between them, each with its parameter dialogue.
#ifndef MODEL_STGSEM_H
#define MODEL_STGSEM_H

#include "model/bstsem.h"

extern Class class_StateGraphSem;

class StateGraphSem : public BaseStateTransSem {
    DECLARE_MEMBERS(StateGraphSem)
public:
    // A board of 150 by 110 cells.
    StateGraphSem();
    // Stream form: the base's.
    StateGraphSem(std::istream& is, Object* where) : BaseStateTransSem(is, where) {}
    StateGraphSem(BinIstream& is, Object* where) : BaseStateTransSem(is, where) {}

    // "State" and "Process"; the link between them is "Event", a transition.
    OrderedCltn& iconNames(OrderedCltn& cltn) override;
    OrderedCltn& linkNames(OrderedCltn& cltn) override;
    IconNode* newIcon(const char* name, int menu, int entry) override;
    const Class& linkClass(const char* name) override;
    // Only states, processes and transitions are pasted.
    int canPaste(const OrderedCltn& cltn) override;
    const char* fileExtension() override;
    // A process edits its variables in ProcessPar, the others have a StateTransPar.
    ParamEditor* newSemanticParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                        OrderedCltn& values) override;

    // The text of a syntax error in the text of a process: what was expected, what was found
    // instead and the rest of the line.
    static String syntaxText(const char* process, const char* expected, const char* was, const char* rest);
    // Reports syntaxText as an error through the error reports of the library.
    void reportSyntax(const char* process, const char* expected, const char* was, const char* rest);
};

#endif
