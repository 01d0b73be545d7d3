// RobustControlDesign: the parameters of a phase, the first and second phases with the design
// kept in "RobustControl.rc", the output structuring and the dialogue helpers.
#include "control/rcdesign.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

#include "control/askparam.h"
#include "control/designck.h"
#include "control/optgram.h"
#include "control/param.h"
#include "control/paramcl.h"
#include "control/robctrl.h"
#include "control/structck.h"
#include "control/workspc.h"
#include "quill/dictnary.h"
#include "quill/objio.h"

DEFINE_CLASS(RobustControlDesign, Algebra, 1, 0)

namespace {

const char* const designFile = "RobustControl.rc";

// The value of a parameter, or the empty text when there is none.
String textOf(const Parameter* p) { return p ? p->value() : String(); }

double numberOf(const Parameter* p, double fallback) {
    String text = textOf(p);
    return text.size() ? std::strtod(text.asCharPointer(), 0) : fallback;
}

bool isChoice(const Parameter* p, const ChoiceTexts& choice, int index) {
    return textOf(p) == choice.texts[index];
}

// A number as a text that reads back exactly.
String exactText(double x) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", x);
    return String(text);
}

Parameter choiceParameter(const char* name, const ChoiceTexts& choice, bool first) {
    return Parameter(name, choice.texts[first ? 0 : 1], choice.type);
}

}  // namespace

// The enumerations of the parameters are registered for the panel that edits them.
RobustControlDesign::RobustControlDesign()
    : robustControl(0), structuringMatrix(0, 0), modelFileName("Tot.dyn"), observerFirst(1), owner(0) {
    registerDesignEnums();
}

RobustControlDesign::~RobustControlDesign() noexcept(false) { delete robustControl; }

// Parameters

StepOptions DesignParameters::stepOptions(const String& fileNamePrefix) const {
    StepOptions o;
    o.gamma = gamma;
    o.maxIterations = iterations;
    o.useH2 = useH2;
    o.approaching = approaching;
    o.alfa = alfa;
    o.continueFlag = !start;
    o.fileNamePrefix = fileNamePrefix;
    o.stepByStep = stepByStep;
    o.lmiMode = lmiMode;
    o.minFreq = minFreq;
    return o;
}

DesignParameters RobustControlDesign::convert(const Lookup& find, String& modelFileName) {
    DesignParameters p;
    LmiMode mode;
    if (valueOf(textOf(find("Minimum")).asCharPointer(), mode)) p.lmiMode = mode;
    const Parameter* inOneStep = find("inOneStep");
    p.inOneStep = inOneStep && inOneStep->boolValue();
    String gui = textOf(find("GuiFileName"));
    if (gui.size()) modelFileName = gui.index("Extended System") >= 0 ? String("Tot.dyn") : gui;
    DesignPhase phase;
    if (valueOf(textOf(find("ChoiceButton")).asCharPointer(), phase)) p.phase = phase;
    p.gamma = numberOf(find("gamma"), p.gamma);
    p.iterations = unsigned(numberOf(find("iter"), p.iterations));
    p.start = isChoice(find("StartCont"), startChoice, 0);
    const Parameter* stepByStep = find("StepByStep");
    p.stepByStep = stepByStep && stepByStep->boolValue();
    p.useH2 = isChoice(find("Gramian"), gramianChoice, 1);
    p.approaching = isChoice(find("Algorithm"), algorithmChoice, 0);
    p.tolerance = numberOf(find("toll"), p.tolerance);
    p.minFreq = numberOf(find("minFreq"), p.minFreq);
    p.initialFeedback = isChoice(find("InitialFeedback"), feedbackChoice, 1) ? 1 : 0;
    p.alfa = numberOf(find("alfa"), p.alfa);
    p.noiseLevel = numberOf(find("noiseL"), p.noiseLevel);
    GramianRole role;
    if (valueOf(textOf(find("ConObs")).asCharPointer(), role)) p.made = role;
    return p;
}

DesignParameters RobustControlDesign::convert(const Dictionary& d, String& modelFileName) {
    return convert(
        [&d](const char* name) -> const Parameter* {
            String key(name);
            Object* value = d.includesKey(key) ? d.atKey(key) : 0;
            return value && value->isKindOf(class_Parameter) ? static_cast<const Parameter*>(value) : 0;
        },
        modelFileName);
}

DesignParameters RobustControlDesign::convert(const ParametersCltn& c, String& modelFileName) {
    return convert(
        [&c](const char* name) -> const Parameter* {
            for (unsigned i = 0; i < c.size(); ++i)
                if (c.at(int(i)).name() == name) return &c.at(int(i));
            return 0;
        },
        modelFileName);
}

void RobustControlDesign::parametersOf(const DesignParameters& p, const String& modelFileName,
                                       ParametersCltn& c) {
    c.add(Parameter("Minimum", textOf(p.lmiMode), lmiModeType));
    c.add(Parameter("inOneStep", p.inOneStep));
    c.add(Parameter("GuiFileName", modelFileName));
    if (p.phase) c.add(Parameter("ChoiceButton", textOf(*p.phase), designPhaseType));
    c.add(Parameter("gamma", exactText(p.gamma).asCharPointer(), "float"));
    c.add(Parameter("iter", std::to_string(p.iterations).c_str(), "int<1:1000>"));
    c.add(choiceParameter("StartCont", startChoice, p.start));
    c.add(Parameter("StepByStep", p.stepByStep));
    c.add(choiceParameter("Gramian", gramianChoice, !p.useH2));
    c.add(choiceParameter("Algorithm", algorithmChoice, p.approaching));
    c.add(Parameter("toll", exactText(p.tolerance).asCharPointer(), "float"));
    c.add(Parameter("minFreq", exactText(p.minFreq).asCharPointer(), "float"));
    c.add(choiceParameter("InitialFeedback", feedbackChoice, p.initialFeedback == 0));
    c.add(Parameter("alfa", exactText(p.alfa).asCharPointer(), "float"));
    c.add(Parameter("noiseL", exactText(p.noiseLevel).asCharPointer(), "float"));
    if (p.made) c.add(Parameter("ConObs", textOf(*p.made), gramianRoleType));
}

double RobustControlDesign::design(const Dictionary& parameters) {
    return design(convert(parameters, modelFileName));
}

double RobustControlDesign::design(const ParametersCltn& parameters) {
    return design(convert(parameters, modelFileName));
}

// The panel's switch names the design the phase makes; observerFirst tells what came first.
double RobustControlDesign::design(const DesignParameters& p) {
    result = PhaseResult();
    if (!p.phase) return failed(0.0, "unknown phase");
    result.phase = *p.phase;
    bool second = result.phase == DesignPhase::Step2;
    if (p.made) observerFirst = (*p.made == GramianRole::Observer) != second ? 1 : 0;
    switch (result.phase) {
        case DesignPhase::Step1:
        case DesignPhase::InNoise:
            result.norm = firstPhase(p);
            break;
        case DesignPhase::Step2:
            result.norm = secondPhase(p);
            break;
        case DesignPhase::FinalResults:
            result.norm = finalResults(p.tolerance, p.inOneStep);
            break;
    }
    result.success = result.failure.size() == 0 && result.norm > 0.0;
    if (!result.success && result.failure.size() == 0) result.failure = "no norm was reached";
    return result.norm;
}

double RobustControlDesign::failed(double norm, const char* reason) {
    result.failure = reason;
    return norm;
}

void RobustControlDesign::printPhaseResult(std::ostream& os, const PhaseResult& r) {
    os << textOf(r.phase) << ": " << r.norm << std::endl;
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

void RobustControlDesign::recordStep(const OptimumGramian* step) {
    if (!step) return;
    result.iterationNorms = step->iterationNorms();
    result.poles = step->closedLoopPoles();
    result.gamma = step->getGamma();
    bool observer = step->role() == GramianRole::Observer;
    (observer ? result.observerGain : result.feedbackGain) = step->getH();
}

void RobustControlDesign::endPhase() {
    for (const OrderedCltn* names : {&globalWorkspace().extendedSystems(), &globalWorkspace().others()})
        for (unsigned i = 0; i < names->size(); ++i)
            result.systems.push_back(String(names->at(int(i))->asCharPointer()));
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
        if (!model) return failed(0.0, "the model was refused");
        std::unique_ptr<ExtendedSystem> system(
            model->isKindOf(class_ExtendedSystem)
                ? new ExtendedSystem(*static_cast<ExtendedSystem*>(model.get()))
                : new ExtendedSystem(*model));
        // The conditions that no iteration overcomes explain themselves first, once, on the
        // system with its noise inputs, which may lift a zero of the disturbances' channel.
        bool solvable = designProblemCheck(RobustControl::withNoise(*system, p.noiseLevel));
        if (!structuralCheck(*system)) {
            std::cout << "Warning, this is not an extended system" << std::endl;
            return failed(0.0, "this is not an extended system");
        }
        if (!solvable) return failed(0.0, "the design problem has no solution");
        robustControl = new RobustControl(*system, observerFirst != 0, p.noiseLevel);
        if (robustControl->firstStepSetup(p.tolerance, p.initialFeedback, owner) < 0) {
            delete robustControl;
            robustControl = 0;
            return failed(-1.0, "the set-up failed");
        }
    } else if (!(robustControl = readDesign())) {
        return failed(-1.0, "the design could not be read");
    }
    double norm = robustControl->firstStep(p.stepOptions(filePrefix()));
    recordStep(robustControl->firstDesign());
    endPhase();
    return norm;
}

double RobustControlDesign::secondPhase(const DesignParameters& p) {
    if (!(robustControl = readDesign())) return failed(-1.0, "the design could not be read");
    globalWorkspace().clear();
    if (p.start && robustControl->secondStepSetup(p.tolerance, p.initialFeedback, owner) < 0) {
        delete robustControl;
        robustControl = 0;
        return failed(-1.0, "the set-up failed");
    }
    double norm = robustControl->secondStep(p.stepOptions(filePrefix()));
    recordStep(robustControl->secondDesign());
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
