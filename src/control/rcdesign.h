// RobustControlDesign, the driver of a design's phases: the panel's parameters turned into the
// steps of a RobustControl kept between phases in "RobustControl.rc".
#ifndef CONTROL_RCDESIGN_H
#define CONTROL_RCDESIGN_H

#include <cstdint>
#include <memory>

#include "algebra/algebra.h"
#include "control/hinfnorm.h"
#include "control/robctrl.h"
#include "quill/quillstr.h"

class Dictionary;

extern Class class_RobustControlDesign;

// The parameters of one phase, converted from the panel's texts.
struct DesignParameters {
    int lmiMode = 0;  // "Minimum": "min H2" 1, "bound Hinf" 2, "min Hinf" 3
    bool inOneStep = false;
    String choice;  // "ChoiceButton": "Step 1", "Step 2", "Final Results", "inNoise"
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
    String conObs;  // "Observer" or "Control": the design this phase makes
};

class RobustControlDesign : public Algebra {
    DECLARE_MEMBERS(RobustControlDesign)
public:
    RobustControlDesign();
    ~RobustControlDesign() noexcept(false) override;

    // A dictionary of String keys to String texts, the panel's fields. Answers the norm reached,
    // -1.0 when the set-up failed, 0.0 for a refused model or an unknown phase.
    double design(const Dictionary& parameters);
    double design(const DesignParameters& p);
    static DesignParameters convert(const Dictionary& parameters, String& modelFileName);

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
    // The model file read into an extended system, or null after the console line.
    DynOp* readModel();
    RobustControl* readDesign();
    void storeDesign();
    void endPhase();
    String filePrefix() const;
    // The stages of the final results (rcfinal.cpp).
    void reportErrors();
    DynOp reduceCompensator(DynOp compensator, double& tolerance);
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
};

#endif
