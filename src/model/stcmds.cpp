// StateTransSem: the commands of the block diagram's menu, each inside the guard that reports a
// failure of the numerical code and ends the command.
#include <cstring>
#include <iostream>

#include "algebra/algebra.h"
#include "algebra/rfmatrix.h"
#include "algebra/shortnum.h"
#include "control/discdyn.h"
#include "control/workspc.h"
#include "editor/graphedt.h"
#include "model/blockicon.h"
#include "model/stsem.h"
#include "model/titleicon.h"
#include "quill/quillerr.h"
#include "trellis/formdlg.h"

const StateTransSem::CommandRow StateTransSem::commands[] = {
    {"Set Tolerances", "T", "Alt+B", &StateTransSem::setTolerances},
    {"Set Output Weighting Matrix", "W", "Alt+E", &StateTransSem::setOutputWeighting},
    {"Set Discrete", "D", "Alt+H", &StateTransSem::setDiscrete},
    {"Set Continuous", "n", "Alt+J", &StateTransSem::setContinuous},
    {"Check Model Consistency", "C", "Alt+C", &StateTransSem::checkCommand},
    {"Generate State Variable Model", "G", "Alt+G", &StateTransSem::generateModel},
    {"Generate Transfer Function", "F", "Alt+F", &StateTransSem::generateTransferFunction},
    {"Save Model", "S", "Alt+U", &StateTransSem::saveModel},
    {"Save as a Discretized Model", "a", "Alt+A", &StateTransSem::saveDiscretized},
    {"Matlab Format", "M", "Alt+Y", &StateTransSem::matlabFormat},
    {"System Poles", "y", "Alt+T", &StateTransSem::systemPoles},
    {"Plot Results", "P", "Alt+P", &StateTransSem::plotResults},
    {"Pole Placement (no ident. poles)", "l", "Alt+O", &StateTransSem::poleAssignment},
    {"State Observer (no ident. poles)", "O", "Alt+I", &StateTransSem::stateObserver},
    {"Structure closed loop Ext. Sys.", "u", "Alt+L", &StateTransSem::structureClosedLoop},
    {"Create Document (.doc)", "e", "Alt+D", &StateTransSem::nothing},
    {"View   Document (.doc)", "V", "Alt+W", &StateTransSem::nothing},
    {"Class Editor Version", "r", "Alt+V", &StateTransSem::showVersion},
};

void StateTransSem::commandNames(OrderedCltn& cltn) {
    for (const CommandRow& c : commands) addCommand(cltn, c.text, c.mnemonic, c.accelerator);
}

const char* StateTransSem::executeCommand(const char* name) {
    for (const CommandRow& c : commands)
        if (strcmp(name, c.text) == 0) {
            runCommand(c.action);
            return 0;
        }
    return BaseStateTransSem::executeCommand(name);
}

void StateTransSem::runCommand(Command command) {
    try {
        (this->*command)();
    } catch (TarnException* e) {
        std::cerr << "TarnException : " << e->message().asCharPointer() << std::endl;
        delete e;
        errorInProgress = 0;
    }
}

bool StateTransSem::askValues(const char* title, std::vector<std::pair<const char*, String>>& rows,
                              const char* name) {
    if (!graphEditor()) return false;
    ParamDialog dialog(name ? name : title, &graphEditor()->getShell(), title);
    for (auto& row : rows) dialog.addRow(row.first, row.second.asCharPointer());
    if (!dialog.ask()) return false;
    for (size_t i = 0; i < rows.size(); ++i) rows[i].second = dialog.rowText(int(i));
    return true;
}

bool StateTransSem::askValue(const char* title, const char* label, String& value, const char* name) {
    std::vector<std::pair<const char*, String>> rows = {{label, value}};
    if (!askValues(title, rows, name)) return false;
    value = rows[0].second.stripBoth();
    return true;
}

// ---------------------------------------------------------------- settings

namespace {

String scientific(double x) {
    char text[32];
    snprintf(text, sizeof text, "%.2e", x);
    return text;
}

}  // namespace

void StateTransSem::setTolerances() {
    std::vector<std::pair<const char*, String>> rows = {{"tolerance for Zeros", scientific(tollZeros)},
                                                        {"tolerance for Poles", scientific(tollPoles)}};
    if (!askValues("Select tolerances", rows)) return;
    tollZeros = atof(rows[0].second.asCharPointer());
    tollPoles = atof(rows[1].second.asCharPointer());
}

void StateTransSem::setOutputWeighting() {
    String diagonal;
    if (weightMatrix.rowNumber() < 2) {
        diagonal = "The system has not been assigned or is not square";
    } else {
        for (unsigned i = 0; i < weightMatrix.rowNumber(); ++i)
            diagonal += String(i ? " " : "") + shortNumber(weightMatrix(i, i), 16).c_str();
    }
    if (!askValue("Assign diagonal values", "Diagonal weighting values", diagonal)) return;
    std::string message;
    Matrix values = parseDiagonal(diagonal.asCharPointer(), message);
    if (!message.empty()) {
        showError(message.c_str());
        return;
    }
    weightMatrix = Matrix::diagonal(values.toVector());
    setModified(true);
}

// The entries of a weighting diagonal, separated by blanks or ";": one row of numbers.
Matrix StateTransSem::parseDiagonal(const char* text, std::string& message) {
    std::vector<double> entries;
    std::string t(text);
    for (char& c : t)
        if (c == ';' || c == ',' || c == '\t') c = ' ';
    const char* p = t.c_str();
    while (*p) {
        char* end = 0;
        double x = strtod(p, &end);
        if (end == p) {
            if (*p != ' ') {
                message = "different matrix row lengths";
                return Matrix(0, 0);
            }
            ++p;
            continue;
        }
        entries.push_back(x);
        p = end;
    }
    Matrix m(1, static_cast<unsigned>(entries.size()));
    for (size_t i = 0; i < entries.size(); ++i) m(0, unsigned(i)) = entries[i];
    return m;
}

void StateTransSem::setDiscrete() {
    String value = shortNumber(samplingTime > 0 ? samplingTime : 0.1).c_str();
    if (!askValue("Set Discrete", "samplingTime (sec)", value)) return;
    double period = atof(value.asCharPointer());
    if (period <= 0) {
        showError("The sampling time must be positive");
        return;
    }
    samplingTime = period;
    continuous = 0;
    if (title) title->setSystemLabel(systemLabel(period).asCharPointer());
    setModified(true);
}

void StateTransSem::setContinuous() {
    continuous = 1;
    samplingTime = 0.0;
    if (title) title->setSystemLabel("Continuous System");
    if (graphEditor()) setModified(true);
}

// ---------------------------------------------------------------- the model

std::unique_ptr<DynOp> StateTransSem::checkedModel() {
    checkConsistency(false);
    return buildSystem(false, false);
}

void StateTransSem::checkCommand() { checkConsistency(true); }

void StateTransSem::generateModel() {
    std::unique_ptr<DynOp> model = checkedModel();
    std::cout << "Model " << *model << std::endl;
    storeInWorkspace(*model);
}

void StateTransSem::storeInWorkspace(const DynOp& model) {
    globalWorkspace().store(title ? title->titleName().asCharPointer() : "TITLE", model);
}

void StateTransSem::generateTransferFunction() {
    std::unique_ptr<DynOp> model = checkedModel();
    std::cout << "Transfer Function " << model->transferMatrix() << std::endl;
}

void StateTransSem::saveModel() {
    checkConsistency(false);
    buildSystem(true, false);
}

void StateTransSem::saveDiscretized() {
    if (!continuous) {
        showError("The model is already discrete");
        return;
    }
    String value = "0.1";
    if (!askValue("Discretize Model", "samplingTime (sec)", value)) return;
    double period = atof(value.asCharPointer());
    if (period <= 0) {
        showError("The sampling time must be positive");
        return;
    }
    std::cout << "discretize model, sampling time " << period << std::endl;
    checkConsistency(false);
    buildSystem(true, false, period);
}

void StateTransSem::matlabFormat() {
    checkConsistency(false);
    buildSystem(false, true);
}

void StateTransSem::systemPoles() {
    std::unique_ptr<DynOp> model = checkedModel();
    std::cout << "system poles ";
    if (model->isDiscreteTime()) std::cout << "\n  real  imaginary  magnitude  log(magnitude)/T  frequency";
    std::cout << "\n" << model->poles() << std::endl;
}

void StateTransSem::plotResults() {
    std::unique_ptr<DynOp> model = checkedModel();
    plot.setSystem(*model, names.inputs, names.outputs, names.states);
    // The blocks' initial states start the free response, unless the window holds one of its own.
    Vector& x0 = plot.initialState();
    bool untouched = true;
    for (unsigned i = 0; i < x0.size(); ++i) untouched = untouched && x0[i] == 0.0;
    if (untouched && x0.size() == names.initialState.size())
        for (unsigned i = 0; i < x0.size(); ++i) x0[i] = names.initialState[i];
    plot.open(title ? title->titleName().asCharPointer() : "TITLE");
}

void StateTransSem::plotUpdate(Cback&) { runCommand(&StateTransSem::replot); }

void StateTransSem::replot() {
    std::unique_ptr<DynOp> model = checkedModel();
    plot.setSystem(*model, names.inputs, names.outputs, names.states);
}

void StateTransSem::showVersion() {
    showMessage((String("Class editor version ") + version()).asCharPointer());
}

// The two document entries of the menu have no action in a block diagram.
void StateTransSem::nothing() {}
