// GraphMainLib: what a press on each control of the design panel does, and the reset and step
// set-up of the panel.
#include <cstdlib>
#include <cstring>

#include "gui/dynwin.h"
#include "gui/rcpanel.h"
#include "trellis/ask.h"
#include "trellis/dispatch.h"

namespace {

const char* const notDone = "not done";

}  // namespace

void GraphMainLib::flip(const char* control, const char* a, const char* b) {
    setText(control, is(control, a) ? b : a);
}

void GraphMainLib::press(const char* control) {
    if (message.size() > 0) return;
    std::string name = control;
    if (name == "startButton") {
        if (!running && !timer) timer = addXTimeOut(0, *this);  // the phase runs from the event loop
    } else if (name == "stopButton") {
        stopRequested = true;
    } else if (name == "resetButton") {
        reset();
    } else if (name == "ChoiceButton") {
        pressChoice();
    } else if (name == "ConObs") {
        if (is("StartCont", "start") && is("ChoiceButton", "Step 1")) flip("ConObs", "Control", "Observer");
    } else if (name == "StartCont") {
        flip("StartCont", "start", "continue");
    } else if (name == "Algorithm") {
        flip("Algorithm", "approaching", "refining");
    } else if (name == "InitialFeedback") {
        pressInitialFeedback();
    } else if (name == "Gramian") {
        pressGramian();
    } else if (name == "Minimum") {
        pressMinimum();
    } else if (name == "StepByStep") {
        pressStepByStep();
    } else if (name == "StructuringMatrix") {
        setText("StructuringMatrix", "Not Pres.");
    } else if (name == "Configuration") {
        pressConfiguration();
    } else if (name == "openModel") {
        pressOpenModel();
    }
}

// The phases in turn; the way to "Step 2" readies the second design, the way back to "Step 1"
// the next first design.
void GraphMainLib::pressChoice() {
    if (is("ChoiceButton", "Step 1")) {
        if (is("gammaFirst", "") || is("gammaFirst", notDone)) setText("gammaFirst", notDone);
        if (is("inOneStep", "YES")) {
            setText("ChoiceButton", "Final Results");
            return;
        }
        setText("ChoiceButton", "Step 2");
        setText("Minimum", "min H2");
        flip("ConObs", "Control", "Observer");
        if (!is("StartCont", "start")) setText("StartCont", "start");
    } else if (is("ChoiceButton", "Step 2")) {
        setText("ChoiceButton", "Final Results");
    } else {
        setText("ChoiceButton", "Step 1");
        setText("Minimum", is("Gramian", "H-infinite") ? "bound Hinf" : "min H2");
        flip("ConObs", "Control", "Observer");
    }
}

// Once the first step has been done the initial feedback cannot go back to zero.
void GraphMainLib::pressInitialFeedback() {
    bool firstDone = !is("gammaFirst", notDone) && !is("gammaFirst", "");
    if (is("InitialFeedback", "pole placement") && firstDone) return;
    flip("InitialFeedback", "zero", "pole placement");
}

void GraphMainLib::pressGramian() {
    if (is("Gramian", "H2")) {
        double first = atof(text("gammaFirst").asCharPointer()), bound = atof(text("gamma").asCharPointer());
        bool known = !is("gammaFirst", notDone) && !is("gammaFirst", "");
        if (known && bound <= first) {
            show("set a value for the bound \"gamma\" greater than \nthe H-infinite norm achieved before");
            return;
        }
        setText("Gramian", "H-infinite");
        panel->setEnabled("gamma", true);
        setText("Minimum", "bound Hinf");
        return;
    }
    setText("Gramian", "H2");
    panel->setEnabled("gamma", false);
    setText("Minimum", "min H2");
}

void GraphMainLib::pressMinimum() {
    bool hinf = is("Gramian", "H-infinite");
    String now = text("Minimum");
    if (now == "min Hinf")
        setText("Minimum", "None");
    else if (now == "None")
        setText("Minimum", hinf ? "bound Hinf" : "min H2");
    else if (now == "min H2")
        setText("Minimum", hinf ? "bound Hinf" : "min Hinf");
    else
        setText("Minimum", "min Hinf");
}

// The toggle has taken its new value already.
void GraphMainLib::pressStepByStep() {
    bool starting = is("StartCont", "start");
    if (is("StepByStep", "YES")) {
        setText("Algorithm", "refining");
        if (starting) setText("InitialFeedback", "pole placement");
        return;
    }
    if (starting) setText("Algorithm", "approaching");
    setText("InitialFeedback", "zero");
}

void GraphMainLib::pressOpenModel() {
    String name = text("GuiFileName");
    if (name == "no model") name = "";
    ++openDialogs;
    bool chosen = askFileName(name, "Open", "Model file", ".dyn", false);
    --openDialogs;
    if (chosen) setText("GuiFileName", name.asCharPointer());
}

void GraphMainLib::reset() {
    setText("StartCont", "start");
    setText("Algorithm", "approaching");
    setText("Gramian", "H-infinite");
    setText("ChoiceButton", "Step 1");
    setText("ConObs", "Observer");
    setText("gamma", "100");
    setText("gammaFirst", notDone);
    panel->setEnabled("gamma", true);
}

void GraphMainLib::stepSetup(const char* phase) {
    setText("StartCont", "start");
    setText("Algorithm", is("StepByStep", "YES") ? "refining" : "approaching");
    setText("Gramian", "H-infinite");
    panel->setEnabled("gamma", true);
    setText("Minimum", "min H2");
    if (is("inOneStep", "NO")) flip("ConObs", "Control", "Observer");
    setText("ChoiceButton", phase);
}
