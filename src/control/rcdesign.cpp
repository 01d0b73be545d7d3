// RobustControlDesign: the parameters of a phase, the first and second phases with the design
// kept in "RobustControl.rc", the output structuring and the dialogue helpers.
#include "control/rcdesign.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

#include "control/askparam.h"
#include "control/designck.h"
#include "control/robctrl.h"
#include "control/structck.h"
#include "control/workspc.h"
#include "quill/dictnary.h"
#include "quill/objio.h"

DEFINE_CLASS(RobustControlDesign, Algebra, 1, 0)

namespace {

const char* const designFile = "RobustControl.rc";

// The text under key, or the empty text when the dictionary has none.
String textOf(const Dictionary& d, const char* key) {
    String k(key);
    if (!d.includesKey(k)) return String();
    return String(d.atKey(k)->asCharPointer());
}

double numberOf(const Dictionary& d, const char* key, double fallback) {
    String text = textOf(d, key);
    return text.size() ? std::strtod(text.asCharPointer(), 0) : fallback;
}

}  // namespace

RobustControlDesign::RobustControlDesign()
    : robustControl(0), structuringMatrix(0, 0), modelFileName("Tot.dyn"), observerFirst(1), owner(0) {}

RobustControlDesign::~RobustControlDesign() noexcept(false) { delete robustControl; }

// Parameters

DesignParameters RobustControlDesign::convert(const Dictionary& d, String& modelFileName) {
    DesignParameters p;
    String minimum = textOf(d, "Minimum");
    p.lmiMode = minimum == "min H2" ? 1 : minimum == "bound Hinf" ? 2 : minimum == "min Hinf" ? 3 : 0;
    p.inOneStep = textOf(d, "inOneStep") == "YES";
    String gui = textOf(d, "GuiFileName");
    if (gui.size()) modelFileName = gui.index("Extended System") >= 0 ? String("Tot.dyn") : gui;
    p.choice = textOf(d, "ChoiceButton");
    p.gamma = numberOf(d, "gamma", p.gamma);
    p.iterations = unsigned(numberOf(d, "iter", p.iterations));
    p.start = textOf(d, "StartCont") == "start";
    p.stepByStep = textOf(d, "StepByStep") == "YES";
    p.useH2 = textOf(d, "Gramian") == "H2";
    p.approaching = textOf(d, "Algorithm") == "approaching";
    p.tolerance = numberOf(d, "toll", p.tolerance);
    p.minFreq = numberOf(d, "minFreq", p.minFreq);
    p.initialFeedback = textOf(d, "InitialFeedback") == "pole placement" ? 1 : 0;
    p.alfa = numberOf(d, "alfa", p.alfa);
    p.noiseLevel = numberOf(d, "noiseL", p.noiseLevel);
    p.conObs = textOf(d, "ConObs");
    return p;
}

double RobustControlDesign::design(const Dictionary& parameters) {
    return design(convert(parameters, modelFileName));
}

// The panel's switch names the design the phase makes; observerFirst tells what came first.
double RobustControlDesign::design(const DesignParameters& p) {
    bool second = p.choice == "Step 2";
    if (p.conObs == "Observer") observerFirst = second ? 0 : 1;
    if (p.conObs == "Control") observerFirst = second ? 1 : 0;
    if (p.choice == "Step 1") return firstPhase(p);
    if (second) return secondPhase(p);
    if (p.choice == "Final Results") return finalResults(p.tolerance, p.inOneStep);
    if (p.choice == "inNoise") return firstPhase(p);
    return 0.0;
}

// The phases

String RobustControlDesign::filePrefix() const {
    const char* name = modelFileName.asCharPointer();
    const char* slash = std::strrchr(name, '/');
    return slash ? String(std::string(name, slash + 1 - name).c_str()) : String();
}

DynOp* RobustControlDesign::readModel() {
    if (!std::ifstream(modelFileName.asCharPointer())) {
        std::cout << "Warning, model file " << modelFileName.asCharPointer() << " not found" << std::endl;
        return 0;
    }
    Object* read = Workspace::readModelFile(modelFileName.asCharPointer());
    if (read == nil || !read->isKindOf(class_DynOp)) {
        std::cout << "Warning, file name " << modelFileName.asCharPointer()
                  << " doesn't contain a proper object" << std::endl;
        if (read != nil) delete read;
        return 0;
    }
    std::unique_ptr<DynOp> model(static_cast<DynOp*>(read));
    unsigned nd = model->inputNumber() - model->controlNumber();
    unsigned np = model->outputNumber() - model->measureNumber();
    const Matrix& D = structuringMatrix;
    if (D.rowNumber() > 0 && D.rowNumber() == nd && D.columnNumber() == nd && nd == np) {
        std::cout << "structuring is being performed" << std::endl;
        Matrix left = Matrix::blockDiagonal(inv(D), Matrix::diagonal(model->measureNumber(), 1.0));
        Matrix right = Matrix::blockDiagonal(D, Matrix::diagonal(model->controlNumber(), 1.0));
        DynOp scaled = left * (*model * right);
        model->DynOp::operator=(DynOp(scaled, model->controlNumber(), model->measureNumber(), 0));
    }
    return model.release();
}

RobustControl* RobustControlDesign::readDesign() {
    std::ifstream is(designFile);
    String error;
    Object* read = is ? readFromChecked(error, is, "RobustControl") : nil;
    if (!read || read == nil) {
        std::cout << (error.size() ? error.asCharPointer() : "the design has not been started yet")
                  << std::endl;
        return 0;
    }
    RobustControl* design = static_cast<RobustControl*>(read);
    design->setOwner(owner);
    return design;
}

void RobustControlDesign::storeDesign() {
    if (robustControl && !storeToFile(*robustControl, designFile))
        std::cout << "the design could not be written to " << designFile << std::endl;
}

void RobustControlDesign::endPhase() {
    storeDesign();
    globalWorkspace().clear();
    Workspace::closeMatlab();
    delete robustControl;
    robustControl = 0;
}

double RobustControlDesign::firstPhase(const DesignParameters& p) {
    if (p.start) {
        globalWorkspace().clear();
        std::unique_ptr<DynOp> model(readModel());
        if (!model) return 0.0;
        std::unique_ptr<ExtendedSystem> system(
            model->isKindOf(class_ExtendedSystem)
                ? new ExtendedSystem(*static_cast<ExtendedSystem*>(model.get()))
                : new ExtendedSystem(*model));
        // The conditions that no iteration overcomes explain themselves first, once.
        bool solvable = designProblemCheck(*system);
        if (!structuralCheck(*system)) {
            std::cout << "Warning, this is not an extended system" << std::endl;
            return 0.0;
        }
        if (!solvable) return 0.0;
        robustControl = new RobustControl(*system, observerFirst != 0, p.noiseLevel);
        if (robustControl->firstStepSetup(p.tolerance, p.initialFeedback, owner) < 0) {
            delete robustControl;
            robustControl = 0;
            return -1.0;
        }
    } else if (!(robustControl = readDesign())) {
        return -1.0;
    }
    String prefix = filePrefix();
    double norm = robustControl->firstStep(p.gamma, p.iterations, p.useH2, p.approaching, p.alfa, !p.start,
                                           prefix.asCharPointer(), p.stepByStep, p.lmiMode, p.minFreq);
    endPhase();
    return norm;
}

double RobustControlDesign::secondPhase(const DesignParameters& p) {
    if (!(robustControl = readDesign())) return -1.0;
    globalWorkspace().clear();
    if (p.start && robustControl->secondStepSetup(p.tolerance, p.initialFeedback, owner) < 0) {
        delete robustControl;
        robustControl = 0;
        return -1.0;
    }
    String prefix = filePrefix();
    double norm = robustControl->secondStep(p.gamma, p.iterations, p.useH2, p.approaching, p.alfa, !p.start,
                                            prefix.asCharPointer(), p.stepByStep, p.lmiMode, p.minFreq);
    endPhase();
    return norm;
}

// Structuring: d balances the matrix N of squared channel norms, d_i^2 = sum_j d_j N(j, i) /
// sum_j N(i, j) / d_j, the last element held as the reference.
Matrix RobustControlDesign::structuring(const DynOp& system, bool useReal) {
    unsigned m = system.outputNumber(), n = system.inputNumber();
    if (m != n) {
        std::cout << "The closed loop extended system should be square" << std::endl;
        return Matrix(0, 0);
    }
    (void)useReal;  // the channels are taken in the system's own time domain
    Matrix N(m, m);
    for (unsigned i = 0; i < m; ++i)
        for (unsigned j = 0; j < m; ++j) {
            double w = wMin, norm = system.inTimeDomain(system.subSystem(i, j, 1, 1))->normHinfInFrequency(w);
            N(i, j) = norm * norm;
        }
    std::vector<double> d(m, 1.0), next(m, 1.0);
    for (int pass = 0; pass < 10; ++pass) {
        next = d;
        for (unsigned i = 0; i + 1 < m; ++i) {
            double s1 = 0.0, s2 = 0.0;
            for (unsigned j = 0; j < m; ++j) {
                if (j == i) continue;
                if (d[j] < 1e-10) d[j] = 1e-10;
                s1 += d[j] * N(j, i);
                s2 += N(i, j) / d[j];
            }
            if (s2 < 1e-6 || m == 0) s2 = 1e-6;
            next[i] = std::sqrt(s1 / s2);
        }
        d = next;
    }
    Matrix D(m, m);
    for (unsigned i = 0; i < m; ++i) {
        double x = std::sqrt(d[i]);
        D(i, i) = std::fabs(x) < 1e-9 ? 1e-3 : x;
    }
    return D;
}

// Dialogues

int RobustControlDesign::askTolerance(double& tolerance, int defaultAnswer) {
    ParamRequest r("Insert tolerance", defaultAnswer);
    r.add("tolerance", tolerance);
    int answer = askParameters(owner, r);
    if (answer) tolerance = r.number(0);
    return answer;
}

int RobustControlDesign::askToleranceAndOrder(double& tolerance, unsigned& order, int defaultAnswer) {
    ParamRequest r("Insert tolerance", defaultAnswer);
    r.add("tolerance", tolerance).add("compensator order", double(order));
    int answer = askParameters(owner, r);
    if (answer) {
        tolerance = r.number(0);
        order = unsigned(r.number(1));
    }
    return answer;
}

int RobustControlDesign::askSystem(String& name, int defaultAnswer) {
    ParamRequest r("Select the system", defaultAnswer);
    r.add("system", name.asCharPointer());
    int answer = askParameters(owner, r);
    if (answer) name = r.value(0);
    return answer;
}

int RobustControlDesign::askStructuring(String& name, String& choice, int defaultAnswer) {
    ParamRequest r("structuring the extended system", defaultAnswer);
    r.add("structuring matrix name", name.asCharPointer()).add("choice", choice.asCharPointer());
    int answer = askParameters(owner, r);
    if (answer) {
        name = r.value(0);
        choice = r.value(1);
    }
    return answer;
}
