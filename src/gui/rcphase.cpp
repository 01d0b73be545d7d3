// GraphMainLib: a phase of the design run from the panel, and what its end does to the panel.
#include <cstdio>
#include <iostream>
#include <sstream>

#include "control/designopt.h"
#include "control/workspc.h"
#include "gui/consoletee.h"
#include "gui/dynwin.h"
#include "gui/rcpanel.h"
#include "quill/quillerr.h"
#include "trellis/ask.h"

namespace {

// A text control of the panel as a parameter of the design, typed as the design reads it.
struct Field {
    const char* name;
    const char* type;
    const char* fallback;  // when the panel has no such control
};

const Field fields[] = {
    {"Minimum", 0, "None"},          {"inOneStep", "bool", "NO"},  {"GuiFileName", "string", ""},
    {"ChoiceButton", 0, "Step 1"},   {"gamma", "float", "100"},    {"iter", "int<1:1000>", "20"},
    {"StartCont", 0, "start"},       {"StepByStep", "bool", "NO"}, {"Gramian", 0, "H-infinite"},
    {"Algorithm", 0, "approaching"}, {"toll", "float", "1e-6"},    {"minFreq", "float", "1e-4"},
    {"InitialFeedback", 0, "zero"},  {"alfa", "float", "0.5"},     {"noiseL", "float", "0"},
    {"ConObs", 0, "Observer"},
};

// The enumeration of a choice control, as the design registered it.
const char* choiceType(const char* name) {
    std::string n = name;
    if (n == "Minimum") return lmiModeType;
    if (n == "ChoiceButton") return designPhaseType;
    if (n == "ConObs") return gramianRoleType;
    if (n == "StartCont") return startChoice.type;
    if (n == "Gramian") return gramianChoice.type;
    if (n == "Algorithm") return algorithmChoice.type;
    return feedbackChoice.type;
}

std::string number(double x) {
    std::ostringstream os;
    os << x;
    return os.str();
}

}  // namespace

void GraphMainLib::collectParameters(ParametersCltn& parameters) const {
    for (const Field& f : fields) {
        String value = panel && panel->has(f.name) ? text(f.name) : String(f.fallback);
        parameters.add(Parameter(f.name, value.asCharPointer(), f.type ? f.type : choiceType(f.name)));
    }
}

// The structuring matrix named in the panel, a Matrix of the workspace; "Not Pres." or any other
// name runs without one.
// A name the workspace does not hold keeps the matrix the final results chose.
void GraphMainLib::takeStructuring() {
    String name = text("StructuringMatrix");
    if (name == "Not Pres." || name.size() == 0) {
        designer.setStructuringMatrix(Matrix(0, 0));
        return;
    }
    Object* named =
        globalWorkspace().holds(name.asCharPointer()) ? globalWorkspace().get(name.asCharPointer()) : 0;
    if (named && named->isKindOf(class_Matrix)) designer.setStructuringMatrix(*CAST(Matrix, named));
}

double GraphMainLib::runPhase() {
    if (message.size() > 0 || running) return 0.0;
    running = true;
    stopRequested = false;
    if (panel->has("normTrend")) panel->clearTrend("normTrend");
    ParametersCltn parameters;
    collectParameters(parameters);
    takeStructuring();
    double norm = 0.0;
    String failure;
    {
        ConsoleTee tee(panel, "console", consoleFile().asCharPointer());
        failure = errorTextOf([&] { norm = designer.design(parameters); });
        running = false;
        if (failure.size() > 0)
            std::cout << "TarnException : " << failure.asCharPointer() << std::endl;
        else
            endPhase(norm);
    }
    if (failure.size() > 0) {
        showMessage((String("TarnException : ") + failure).asCharPointer(), "Robust Control Design",
                    MESSAGE_ERROR);
        reset();
    }
    return norm;
}

void GraphMainLib::endPhase(double norm) {
    if (norm == -1.0) {
        reset();
        return;
    }
    const PhaseResult& result = designer.lastResult();
    if (!result.success) {
        std::cout << "the phase ended without a result: " << result.failure.asCharPointer() << std::endl;
        return;
    }
    switch (result.phase) {
        case DesignPhase::Step1:
            setText("gammaFirst", number(norm).c_str());
            stepSetup(is("inOneStep", "YES") ? "Final Results" : "Step 2");
            break;
        case DesignPhase::Step2:
            endSecondStep(norm);
            break;
        default:
            // The final results end the design: the panel is ready for a new first step, with the
            // structuring they chose, if any.
            if (designer.getStructuringMatrix().rowNumber() > 0 && is("StructuringMatrix", "Not Pres."))
                setText("StructuringMatrix", "D (final results)");
            pressChoice();
            break;
    }
}

// The second norm against the bound of the first step; within it the results come next.
void GraphMainLib::endSecondStep(double norm) {
    setText("StartCont", "start");
    if (!is("Gramian", "H-infinite")) {
        setText("ChoiceButton", "Final Results");
        return;
    }
    std::string bound = text("gamma").asCharPointer(), first = text("gammaFirst").asCharPointer();
    std::string made = is("ConObs", "Control") ? "control" : "observer";
    std::string other = made == "control" ? "observer" : "control";
    std::cout << "the upper bound on the H-infinite norm:\n\"gamma\" = " << number(norm)
              << " achieved now in the " << made << " design phase\n\"gamma\" = " << first
              << " set in the previous " << other << " design phase" << std::endl;
    if (norm > atof(bound.c_str())) {
        std::cout << "\tmust become smaller than the bound \n\"gamma\" = " << bound << std::endl;
        std::cout << "reduce the bound now, or if is not possible\nrepeate the \"Step 1\" setting a larger "
                     "norm bound"
                  << std::endl;
        return;
    }
    setText("ChoiceButton", "Final Results");
}
