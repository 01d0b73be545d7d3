// RobustControlDesign, the driver of a design's phases: the panel's parameters turned into the
// steps of a RobustControl kept between phases in "RobustControl.rc".
//
//   double design(const Dictionary& parameters);      keys are Strings, values Parameters
//   double design(const ParametersCltn& parameters);  the same parameters by their names
//   double design(const DesignParameters& p);         the norm; -1.0 set-up failed, 0.0 refused
//   const PhaseResult& lastResult() const;            the data of the last phase run
//   static DesignParameters convert(const Dictionary&, String& modelFileName);
//   static DesignParameters convert(const ParametersCltn&, String& modelFileName);
//   static void parametersOf(const DesignParameters&, const String& modelFileName, ParametersCltn&);
//   static void printPhaseResult(std::ostream&, const PhaseResult&);
// The iterations raise "ITERATION_NORM" on the owner, the dialogues "ASK_PARAMETERS" and the
// stop checks "CHECK_STOP" (askparam.h).
#ifndef CONTROL_RCDESIGN_H
#define CONTROL_RCDESIGN_H

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <vector>

#include "algebra/algebra.h"
#include "control/designopt.h"
#include "control/hinfnorm.h"
#include "control/robctrl.h"
#include "quill/quillstr.h"

class Dictionary;
class Parameter;
class ParametersCltn;

extern Class class_RobustControlDesign;

// The parameters of one phase, converted from the panel's parameters.
struct DesignParameters {
    LmiMode lmiMode = LmiMode::None;  // "Minimum"
    bool inOneStep = false;
    std::optional<DesignPhase> phase;  // "ChoiceButton"; none for a text that names no phase
    double gamma = 1.0;
    unsigned iterations = 20;
    bool start = true;  // "StartCont" is "start"
    bool stepByStep = false;
    bool useH2 = false;        // "Gramian" is "H2"
    bool approaching = false;  // "Algorithm" is "approaching"
    double tolerance = 1e-6;
    double minFreq = 1e-4;
    int initialFeedback = 1;  // "InitialFeedback" is "pole placement"
    double alfa = 0.5;
    double noiseLevel = 0.0;
    std::optional<GramianRole> made;  // "ConObs": the design this phase makes; none keeps the order

    StepOptions stepOptions(const String& fileNamePrefix) const;
};

// What a phase reached, for the console and the panel.
struct PhaseResult {
    DesignPhase phase = DesignPhase::Step1;
    double norm = 0.0;   // as design answers it
    double gamma = 0.0;  // the H-infinity level the steps were designed for; 0 when none was
    bool success = false;
    String failure;                      // why the phase did not succeed; empty on success
    std::vector<double> iterationNorms;  // the H2 norm of the loop at each iteration of a step
    Matrix poles = Matrix(0, 0);         // rows (re, im): the step's closed loop, or the final one
    Matrix feedbackGain = Matrix(0, 0);  // the state feedback, when the phase made or used it
    Matrix observerGain = Matrix(0, 0);  // the observer gain, likewise
    std::vector<String> systems;         // the names the phase kept in the workspace
};

class RobustControlDesign : public Algebra {
    DECLARE_MEMBERS(RobustControlDesign)
public:
    RobustControlDesign();
    ~RobustControlDesign() noexcept(false) override;

    // The panel's fields: a dictionary of String keys to Parameters, or the Parameters themselves.
    // Answers the norm reached, -1.0 when the set-up failed, 0.0 for a refused model or an unknown
    // phase; lastResult holds the rest.
    double design(const Dictionary& parameters);
    double design(const ParametersCltn& parameters);
    double design(const DesignParameters& p);
    const PhaseResult& lastResult() const { return result; }
    // Parameters missing or of another kind keep their defaults.
    static DesignParameters convert(const Dictionary& parameters, String& modelFileName);
    static DesignParameters convert(const ParametersCltn& parameters, String& modelFileName);
    // The parameters that convert reads back as p, typed as the panel's fields are.
    static void parametersOf(const DesignParameters& p, const String& modelFileName, ParametersCltn& result);
    // The console's line at the end of a phase: the phase, ": " and the norm.
    static void printPhaseResult(std::ostream& os, const PhaseResult& r);

    double firstPhase(const DesignParameters& p);
    double secondPhase(const DesignParameters& p);
    double finalResults(double tolerance, bool inOneStep);
    // The diagonal output scaling D that balances D Geq D^-1; empty when the loop is not square.
    Matrix structuring(const DynOp& system, bool useReal);

    void setOwner(Object* o) { owner = o; }
    Object* getOwner() const { return owner; }
    void setModelFileName(const char* name) { modelFileName = name; }
    void setStructuringMatrix(const Matrix& D) { structuringMatrix = D; }
    const Matrix& getStructuringMatrix() const { return structuringMatrix; }
    bool isObserverFirst() const { return observerFirst != 0; }
    // The certified H-infinity norm of the last final results' closed loop, w to z: infinite
    // when the loop is unstable, 0 before any final results.
    const HinfNorm& closedLoopNorm() const { return loopNorm; }

    // The dialogues, each answering 1 for Ok and 0 for Cancel.
    int askTolerance(double& tolerance, int defaultAnswer = 0);
    int askToleranceAndOrder(double& tolerance, unsigned& order, int defaultAnswer = 0);
    int askSystem(String& name, int defaultAnswer = 0);
    int askStructuring(String& name, String& choice, int defaultAnswer = 0);
    // A system from the four matrix texts of a dialogue; false, after the console line of the
    // first fault, when the sizes do not make one.
    static bool systemFromTexts(const char* a, const char* b, const char* c, const char* d, DynOp& result);

private:
    // The conversion from the parameter of each name, null when there is none.
    using Lookup = std::function<const Parameter*(const char* name)>;
    static DesignParameters convert(const Lookup& find, String& modelFileName);
    // The model file read into an extended system, or null after the console line.
    DynOp* readModel();
    RobustControl* readDesign();
    void storeDesign();
    void endPhase();
    // The result's norm is the answer; a failure also gives its reason.
    double failed(double norm, const char* reason);
    // The step's norms, poles and gain into the result.
    void recordStep(const OptimumGramian* step);
    String filePrefix() const;
    // The stages of the final results (rcfinal.cpp).
    void reportErrors();
    DynOp reduceCompensator(DynOp compensator, double& tolerance);
    RobustControl::System withoutFastModes(const DynOp& compensator, unsigned order);
    // The closed loop of the model (or of a perturbed one) with a compensator: its poles, the
    // steady gain from the reference when the design has two degrees of freedom ("gainDes"), and
    // the loop kept under name.
    void analyseClosedLoop(const DynOp& compensator, const char* title, const char* name,
                           const DynOp* model = 0);
    // The inputs of the design problem that carry the reference: none with one degree of freedom.
    void referenceInputs(unsigned& first, unsigned& count) const;
    double printNorm(const char* label, const DynOp& s);
    // The optional stages of the final results: the Q parameter and the perturbation analysis.
    void addQParameter(RobustControl::System& compensator);
    void perturbationAnalysis(const DynOp& compensator);
    void applyStructuring(const DynOp& loop, const String& name);

    RobustControl* robustControl;
    Matrix structuringMatrix;
    String modelFileName;
    std::int32_t observerFirst;
    Object* owner;
    HinfNorm loopNorm;
    PhaseResult result;
};

#endif
