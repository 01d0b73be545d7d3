// ExtendedSystemPanel: the components of an extended system read from the workspace or from
// model files, composed, and written as the model of the design.
#include "gui/extpanel.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include "control/discdyn.h"
#include "control/extsys.h"
#include "control/workspc.h"
#include "gui/dynwin.h"
#include "gui/rcpanel.h"
#include "quill/cback.h"
#include "trellis/ask.h"
#include "trellis/shell.h"

namespace {

const char* const modelFile = "Tot.dyn";

// A component by its text: a system of the workspace, else a model file; null when neither.
DynOp* component(const char* text) {
    if (globalWorkspace().holds(text)) {
        Object* object = globalWorkspace().get(text);
        if (object && object->isKindOf(class_DynOp)) return CAST(DynOp, object->deepCopy());
    }
    Object* read = Workspace::readModelFile(text);
    if (read == nil) return 0;
    if (read->isKindOf(class_DynOp)) return CAST(DynOp, read);
    delete read;
    return 0;
}

}  // namespace

ExtendedSystemPanel::ExtendedSystemPanel(const char* directory, GraphMainLib& o)
    : file(String(directory) + "/ExtendedSystem.mim"), owner(o) {}

ExtendedSystemPanel::~ExtendedSystemPanel() { delete panel; }

void ExtendedSystemPanel::show() {
    if (panel) {
        panel->raise();
        return;
    }
    String refusal;
    panel = DynamicPanelWindow::open(file.asCharPointer(), "Extended System", refusal);
    if (!panel) {
        showMessage("ExtendedSystem.mim file is not present in the command panel directory",
                    "Extended System", MESSAGE_ERROR);
        return;
    }
    panel->addCback(DynamicIconSelected, cbackMethod<&GraphMainLib::extendedPressed>, owner);
    panel->addCback(WindowManagerCloseRequest, cbackMethod<&GraphMainLib::extendedClosing>, owner);
    panel->setVisible("samplingTime", panel->text("discCon") == "Sampled data system");
}

void ExtendedSystemPanel::close() {
    delete panel;
    panel = 0;
}

void ExtendedSystemPanel::press(const char* control) {
    std::string name = control;
    if (name == "composeModel")
        composeModel();
    else if (name == "clearModel")
        clearModel();
    else if (name == "discCon")
        switchDomain();
    else if (name == "discretize")
        discretize();
}

// Each named component joins the extended system; the composition is checked and written.
bool ExtendedSystemPanel::composeModel() {
    ExtendedSystem system;
    for (const char* name : ExtendedSystem::componentNames) {
        String text = panel->text(name).stripBoth();
        if (text.size() == 0) continue;
        std::unique_ptr<DynOp> part(component(text.asCharPointer()));
        if (!part) {
            showMessage((String("The component ") + name + " \"" + text +
                         "\" is neither a system of the "
                         "workspace nor a model file")
                            .asCharPointer(),
                        "Extended System", MESSAGE_ERROR);
            return false;
        }
        system.setElement(name, *part);
    }
    if (!system.make()) {
        showMessage("The components do not make an extended system: see the console", "Extended System",
                    MESSAGE_ERROR);
        return false;
    }
    if (panel->text("discCon") == "Sampled data system")
        system = ExtendedSystem(DiscDynOp(system, false, atof(panel->text("samplingTime").asCharPointer())));
    if (!Algebra().storeToFile(system, modelFile)) return false;
    std::cout << "Extended System " << system << std::endl;
    panel->setText("ModelFileName", modelFile);
    owner.setText("GuiFileName", modelFile);
    return true;
}

void ExtendedSystemPanel::clearModel() {
    for (const char* name : ExtendedSystem::componentNames) panel->setText(name, "");
}

void ExtendedSystemPanel::switchDomain() {
    panel->cycleNext("discCon");
    panel->setVisible("samplingTime", panel->text("discCon") == "Sampled data system");
}

// The model of "ModelFileName", continuous, sampled at "c2dSamplingTime" into "<name>d.dyn".
void ExtendedSystemPanel::discretize() {
    String name = panel->text("ModelFileName").stripBoth();
    double period = atof(panel->text("c2dSamplingTime").asCharPointer());
    Object* file = Workspace::readModelFile(name.asCharPointer());
    std::unique_ptr<Object> read(file == nil ? 0 : file);
    if (!read || !read->isKindOf(class_DynOp) || period <= 0) {
        showMessage("Discretize needs a continuous model file and a positive sampling time",
                    "Extended System", MESSAGE_ERROR);
        return;
    }
    DynOp& model = *CAST(DynOp, read.get());
    if (model.isDiscreteTime()) {
        showMessage("The model is already discrete", "Extended System", MESSAGE_ERROR);
        return;
    }
    String target =
        name.size() > 4 ? String(name.asCharPointer(), name.size() - 4) + "d.dyn" : name + "d.dyn";
    if (read->isKindOf(class_ExtendedSystem))
        Algebra().storeToFile(ExtendedSystem(DiscDynOp(model, false, period)), target.asCharPointer());
    else
        Algebra().storeToFile(DiscDynOp(model, false, period), target.asCharPointer());
    panel->setText("ModelFileName", target.asCharPointer());
    std::cout << "discretize model, sampling time " << period << ": " << target.asCharPointer() << std::endl;
}
