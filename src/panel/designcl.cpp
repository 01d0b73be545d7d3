// The command-line design: options into the parameters of the design's phases.
#include "panel/designcl.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "control/hinfric.h"
#include "control/lmiof.h"
#include "control/paramcl.h"
#include "control/rcdesign.h"
#include "control/workspc.h"
#include "panel/cloption.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

const Range positive = {0.0, false, HUGE_VAL, false};
const Range notNegative = {0.0, true, HUGE_VAL, false};
const Range unitStep = {0.0, false, 1.0, false};
const Range count = {1.0, true, 1e6, true};

// The route of -route: gramian (the design's iteration), lmi or riccati; empty after the line that
// names the option when the value is none of them.
std::string routeOption() {
    std::string route;
    return choiceOption("-route", route, {"gramian", "lmi", "riccati"}, "gramian") ? route : "";
}

// The option's choice between the two texts of choice: true for the first; false in ok, after the
// line that says why, for another text.
bool firstChoice(const char* name, const ChoiceTexts& choice, const char* fallback, bool& ok) {
    std::string text;
    ok = choiceOption(name, text, {choice.texts[0], choice.texts[1]}, fallback) && ok;
    return text == choice.texts[0];
}

// The panel's parameters from the options; false when one of them is refused. The lmi route takes
// the LMI minimum of the gramian's norm unless -minimum names the LMI problem.
bool parametersFromOptions(DesignParameters& p, double& gamma2, const std::string& route) {
    std::string mode;
    bool ok = choiceOption(
        "-minimum", mode,
        {textOf(LmiMode::None), textOf(LmiMode::MinH2), textOf(LmiMode::BoundHinf), textOf(LmiMode::MinHinf)},
        textOf(LmiMode::None));
    valueOf(mode.c_str(), p.lmiMode);
    double iterations = p.iterations;
    ok = ok && numberOption("-gamma", p.gamma, positive) && numberOption("-iter", iterations, count) &&
         numberOption("-toll", p.tolerance, positive) && numberOption("-minFreq", p.minFreq, positive) &&
         numberOption("-alfa", p.alfa, unitStep) && numberOption("-noiseL", p.noiseLevel, notNegative);
    gamma2 = p.gamma;
    ok = ok && numberOption("-gamma2", gamma2, positive);
    p.iterations = unsigned(iterations);
    p.start = !findFlag("-continue");
    std::string gramian;
    ok = choiceOption("-gramian", gramian, {"H2", "Hinf", gramianChoice.texts[0]}, "H2") && ok;
    p.useH2 = gramian == "H2";
    p.approaching = firstChoice("-algorithm", algorithmChoice, algorithmChoice.texts[1], ok);
    p.initialFeedback = firstChoice("-initialFeedback", feedbackChoice, feedbackChoice.texts[1], ok) ? 0 : 1;
    if (route == "lmi" && p.lmiMode == LmiMode::None) p.lmiMode = p.useH2 ? LmiMode::MinH2 : LmiMode::MinHinf;
    return ok;
}

// The phase run through the parameters a panel gives; its norm, printed after its name. Success
// is a positive one.
double runPhase(RobustControlDesign& design, const String& modelFile, DesignParameters p, DesignPhase phase,
                std::optional<GramianRole> made) {
    p.phase = phase;
    p.made = made;
    std::cout << "--- " << textOf(phase) << " ---" << std::endl;
    ParametersCltn parameters;
    RobustControlDesign::parametersOf(p, modelFile, parameters);
    design.design(parameters);
    RobustControlDesign::printPhaseResult(std::cout, design.lastResult());
    return design.lastResult().norm;
}

// The bound an H-infinity phase must meet: the gamma asked, or for "min Hinf" the level the
// design found, within 1% (the solver's accuracy near the optimum).
double levelOf(const RobustControlDesign& design, const DesignParameters& p) {
    double level = design.lastResult().gamma;
    return p.lmiMode == LmiMode::MinHinf && level > 0.0 ? level * 1.01 : p.gamma;
}

// An H-infinity step must stay within its bound; a norm above it fails the step.
bool withinBound(const RobustControlDesign& design, const DesignParameters& p, const char* phase,
                 double norm) {
    if (norm <= 0.0) return false;
    double bound = levelOf(design, p);
    if (p.useH2 || norm <= bound) return true;
    std::cerr << "tarn: " << phase << " reached the H-infinite norm " << norm << ", above its bound " << bound
              << std::endl;
    return false;
}

// The closed loop of the final results must be stable and, for an H-infinity design, within
// the first bound by its certified norm.
bool closedLoopHolds(const RobustControlDesign& design, const DesignParameters& p) {
    const HinfNorm& loop = design.closedLoopNorm();
    if (!std::isfinite(loop.lower)) {
        std::cerr << "tarn: the closed loop is unstable" << std::endl;
        return false;
    }
    // Certified: the upper bound of the norm must be within the bound.
    double bound = levelOf(design, p);
    if (p.useH2 || loop.upper <= bound) return true;
    std::cerr << "tarn: the closed loop's H-infinite norm " << loop.norm << " is above the bound " << bound
              << std::endl;
    return false;
}

// The model file's system, or null after the line that says why.
std::unique_ptr<DynOp> readPlant(const String& modelFile) {
    if (!std::ifstream(modelFile.asCharPointer())) {
        std::cerr << "tarn: model file " << modelFile.asCharPointer() << " not found" << std::endl;
        return nullptr;
    }
    Object* read = Workspace::readModelFile(modelFile.asCharPointer());
    if (read && read->isKindOf(class_DynOp)) return std::unique_ptr<DynOp>(static_cast<DynOp*>(read));
    std::cerr << "tarn: model file " << modelFile.asCharPointer() << " holds no system" << std::endl;
    delete read;
    return nullptr;
}

// The Riccati route's design: the optimal level, then the central compensator at gamma and the
// certified norm of its closed loop. Success when gamma is feasible and the loop meets it.
bool riccatiDesign(const DynOp& plant, double gamma) {
    std::cout << "--- Riccati route ---" << std::endl;
    HinfRiccati route(plant);
    double optimum = route.optimalGamma();
    std::cout << "optimal gamma (Riccati) = " << optimum << std::endl;
    if (!(gamma >= optimum)) {
        std::cout << "gamma " << gamma << " is below the optimal gamma: no compensator meets it" << std::endl;
        return false;
    }
    DynOp loop = plant.closedLoop(route.compensator(gamma));
    HinfNorm h = plant.inTimeDomain(loop)->certifiedNormHinf();
    std::cout << "certified H-infinite norm of the output feedback w-z operator = " << h << std::endl;
    return h.upper <= gamma;
}

// The routes side by side: the norm the gramian or LMI design reached (left out when no design
// reached one), the optimal output-feedback level by the Riccati route and by the LMI, and the
// state-feedback level of the Riccati route's first equation, which bounds them from below.
void compareRoutes(const DynOp& plant, double reached) {
    // Each route prints its own lines first: the comparison stays one line.
    HinfRiccati route(plant);
    double riccati = route.optimalGamma(), stateFeedback = route.stateFeedbackGamma();
    double lmi = lmiOutputFeedbackGamma(plant);
    std::cout << "gamma by route: ";
    if (reached > 0.0) std::cout << "design reached " << reached << ", ";
    std::cout << "riccati optimal " << riccati << ", lmi optimal " << lmi << "; state feedback: riccati "
              << stateFeedback << std::endl;
}

// The design by the Riccati route alone, compared with the others under -compare.
int riccatiRoute(const String& modelFile, double gamma) {
    std::unique_ptr<DynOp> plant = readPlant(modelFile);
    if (!plant) return 1;
    bool ok = riccatiDesign(*plant, gamma);
    if (findFlag("-compare")) compareRoutes(*plant, 0.0);
    return ok ? 0 : 1;
}

}  // namespace

int runDesign(const String& modelFile) {
    String phase = textOption("-phase", "all");
    std::string firstRole;
    if (!choiceOption("-first", firstRole, {textOf(GramianRole::Control), textOf(GramianRole::Observer)},
                      textOf(GramianRole::Control)))
        return 1;
    GramianRole role = GramianRole::Control;
    valueOf(firstRole.c_str(), role);
    std::optional<GramianRole> first = role;
    Workspace::setMatlabDirectory(textOption("-matlab", ".").asCharPointer());
    DesignParameters p;
    double gamma2 = 0.0;
    std::string route = routeOption();
    if (route.empty() || !parametersFromOptions(p, gamma2, route)) return 1;
    if (route == "riccati") return riccatiRoute(modelFile, p.gamma);
    DesignParameters second = p;
    second.gamma = gamma2;
    bool all = phase == "all";
    DesignPhase only = DesignPhase::Step1;
    if (!all && (!valueOf(phase.asCharPointer(), only) || only == DesignPhase::InNoise)) {
        std::cerr << "tarn: unknown design phase \"" << phase.asCharPointer() << "\"" << std::endl;
        return 1;
    }
    auto runs = [&](DesignPhase ph) { return all || only == ph; };
    GramianRole other = first == GramianRole::Observer ? GramianRole::Control : GramianRole::Observer;
    RobustControlDesign design;
    design.setModelFileName(modelFile.asCharPointer());
    bool ok = true;
    if (runs(DesignPhase::Step1))
        ok = withinBound(design, p, "Step 1", runPhase(design, modelFile, p, DesignPhase::Step1, first));
    if (ok && runs(DesignPhase::Step2))
        ok = withinBound(design, second, "Step 2",
                         runPhase(design, modelFile, second, DesignPhase::Step2, other));
    double reached = 0.0;
    if (ok && runs(DesignPhase::FinalResults))
        ok = (reached = runPhase(design, modelFile, p, DesignPhase::FinalResults, std::nullopt)) > 0.0 &&
             closedLoopHolds(design, p);
    if (findFlag("-compare") && runs(DesignPhase::FinalResults)) {
        std::unique_ptr<DynOp> plant = readPlant(modelFile);
        if (plant) compareRoutes(*plant, reached);
    }
    return ok ? 0 : 1;
}
