// StateGraphSem: the palette, the links, the dialogues and the syntax reports of state transition graphs.
#include "model/stgsem.h"

#include <cstring>

#include "editor/graphedt.h"
#include "model/stateicn.h"
#include "model/stpar.h"
#include "model/trnslink.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "trellis/shell.h"

DEFINE_CLASS(StateGraphSem, BaseStateTransSem, 1, 0)

StateGraphSem::StateGraphSem() {
    setWidth(150);
    setHeight(110);
}

OrderedCltn& StateGraphSem::iconNames(OrderedCltn& cltn) {
    for (const char* name : {"State", "Process"}) cltn.add(*new String(name));
    return cltn;
}

OrderedCltn& StateGraphSem::linkNames(OrderedCltn& cltn) {
    cltn.add(*new String("Event"));
    return cltn;
}

IconNode* StateGraphSem::newIcon(const char* name, int, int) {
    if (strcmp(name, "State") == 0) return new StateIcon;
    if (strcmp(name, "Process") == 0) return new ProcessIcon;
    return 0;
}

const Class& StateGraphSem::linkClass(const char*) { return class_TransitionLink; }

int StateGraphSem::canPaste(const OrderedCltn& cltn) {
    for (unsigned i = 0; i < cltn.size(); ++i)
        if (!cltn.at(i)->isKindOf(class_StateTransIcon) && !cltn.at(i)->isKindOf(class_TransitionLink))
            return 0;
    return 1;
}

const char* StateGraphSem::fileExtension() { return ".stg"; }

ParamEditor* StateGraphSem::newSemanticParamEditor(IconNode& icon, const char* title, OrderedCltn& labels,
                                                   OrderedCltn& values) {
    CppWidget* parent = &graphEditor()->getShell();
    if (icon.isKindOf(class_ProcessIcon)) return new ProcessPar(parent, icon, labels, values, title);
    return new StateTransPar(parent, icon, labels, values, title);
}

String StateGraphSem::syntaxText(const char* process, const char* expected, const char* was,
                                 const char* rest) {
    return String("Syntax error in process ") + process + "\n\n Expected: " + expected + "\n\n Was: " + was +
           "\n\n Rest Of Line\n" + rest;
}

void StateGraphSem::reportSyntax(const char* process, const char* expected, const char* was,
                                 const char* rest) {
    reportError(SEV_ERROR, syntaxText(process, expected, was, rest).asCharPointer());
}
