// OptimumGramian, the state feedback of a design: the H2 or H-infinity gain of a system with
// disturbances and controls, found by repeated factored Lyapunov solutions on the closed loop.
//
//   static OptimumGramian* make(const DynOp& system, const GramianSetup& setup);
//   double optimize(const StepOptions& options);    and its continuous and discrete forms
//   const std::vector<double>& iterationNorms() const;
//   Matrix closedLoopPoles() const;
//   GramianRole role() const;
#ifndef CONTROL_OPTGRAM_H
#define CONTROL_OPTGRAM_H

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/matrix.h"
#include "control/designopt.h"
#include "control/dynop.h"
#include "quill/quillstr.h"
#include "quill/unsarray.h"

extern Class class_OptimumGramian;

// The first nd inputs of the system are disturbances w, the last nc controls u; the first np
// outputs objectives z, the last nm measures. After normalisation D12'D12 = I, and the design
// works in the coordinates x~ = T x of the stabilisable part. The feedback is
// u = -H x~ - Hw w; L is the worst-case disturbance gain, w = T11 L x~ at the optimum.
// The kind "Control" designs a state feedback; "Observer" the same on the dual system, and only
// the words of the messages and the transposition of what is stored differ.
class OptimumGramian : public Algebra {
    DECLARE_MEMBERS(OptimumGramian)
public:
    OptimumGramian();  // empty, for the stream readers
    // Normalises a copy of system (the caller keeps its own), chooses the subsystems in the
    // "Insert tolerance" dialogue, runs the B. D. Anderson test when stable states were dropped
    // and, with initialFeedback 1, the "Starting Poles" dialogue (startPoles is the fall-back; a
    // nil or wrongly sized one lets assignPoles choose). Answers null, after the warning, when
    // D12 has no full column rank.
    static OptimumGramian* make(const DynOp& system, const GramianSetup& setup);
    OptimumGramian(const OptimumGramian& g);  // deep
    // Stream form: the ten counts, tolerance and gamma, the four systems (nil when absent),
    // the two index arrays, the matrices from transform on, and the kind. gainAdapt reads as 1.
    OptimumGramian(std::istream& is, Object* where);
    OptimumGramian(BinIstream& is, Object* where);
    ~OptimumGramian() noexcept(false) override;

    // The H-infinity norm reached; 0.0 when gamma is below the bound set by D11, -1.0 when
    // gamma^2 I - D11'Pj D11 cannot be factored. Continues from H, L, R of an earlier call
    // (continueFlag false restarts the gramian factor). fileNamePrefix prefixes the files written;
    // minFreq starts the norm search. Each iteration's H2 norm of the loop is appended to
    // iterationNorms and raised as "ITERATION_NORM" on the owner.
    double optimize(const StepOptions& options);
    double optimizeContinuous(const StepOptions& options);
    double optimizeDiscrete(const StepOptions& options);
    const std::vector<double>& iterationNorms() const { return trend; }
    void clearIterationNorms() { trend.clear(); }
    // The poles, rows (re, im), of the system given to make closed by getH.
    Matrix closedLoopPoles() const;

    // Places the poles of the controllable subsystem: the given rows (re, im), or with a nil
    // (or wrongly sized) table its present closed-loop poles moved into the frequency window.
    // Hcon gets the gain; with store the loop and the gain go to the workspace.
    void assignPoles(const Matrix& poles, bool store = true);
    // When the closed-loop poles spread over wMaxRange or more, the fastest is slowed and the
    // poles placed again: H gets the new gain and the answer is true.
    bool recurse(const Matrix& poles, Matrix& gain);
    // The principal factor of the gramian, Qfactor, printed as "FACTORIZED GRAMIAN ".
    void factorGramian();
    // The interactive pole shifting by finite-difference gradients of the poles on H.
    void eigGradient();

    // --- Results ---
    // The feedback in the coordinates and controls of the system given to make: D12factor H T,
    // completed on the states dropped as stable and uncontrollable.
    Matrix getH() const;
    unsigned order() const { return n; }
    Matrix getL() const { return L; }
    // The worst-case disturbance w = F x of the H-infinity design in the coordinates of the system
    // given to make: T11 L T, zero on the states dropped as stable and uncontrollable; zero for H2.
    Matrix worstCase() const;
    // V with V'V = I + B2'Q B2 in discrete time (B2 normalised), I in continuous time: the weight
    // the design's game puts on the control error u~ + H x~ + Hw w.
    Matrix controlErrorWeight() const;
    Matrix getT() const { return transform; }
    Matrix getTinv() const;

    // --- What a two-step design reads ---
    const String& kind() const { return kindText; }
    GramianRole role() const;
    const String& name() const { return nameText; }
    unsigned disturbances() const { return nd; }
    unsigned controls() const { return nc; }
    unsigned objectives() const { return np; }
    unsigned measures() const { return nm; }
    unsigned fullOrder() const { return fulln; }
    unsigned stabilizableOrder() const { return subn; }
    unsigned controllableOrder() const { return conn; }
    const Matrix& gainH() const { return H; }  // nc x n, in the design's coordinates
    const Matrix& feedForward() const { return Hw; }
    const Matrix& getT11() const { return T11; }
    const Matrix& getD12factor() const { return D12factor; }
    const Matrix& getInputTransform() const { return inputTransform; }
    const Matrix& getOutputTransform() const { return outputTransform; }
    const Matrix& getQfactor() const { return Qfactor; }
    Matrix gramian() const { return R.transpose() * R; }  // Q = R'R
    double getGamma() const { return gamma; }
    double getGainAdapt() const { return gainAdapt; }
    // Whether the last refining iteration ended on its convergence test.
    bool hasConverged() const { return converged; }
    const DynOp& workingSystem() const { return *system; }
    const DynOp& getFullSystem() const { return *fullSystem; }
    Object* getOwner() const { return owner; }
    void setOwner(Object* o) { owner = o; }

    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    // The fields from the four systems on, alike in both stream forms.
    template <class Stream>
    void readMembers(Stream& is);
    template <class Stream>
    void storeMembers(Stream& os) const;
    // The arguments of one optimize call and its working systems.
    struct Run : StepOptions {
        explicit Run(const StepOptions& o) : StepOptions(o) {}
        std::unique_ptr<DynOp> unscaled;  // the system designed on, objectives at full weight
        std::unique_ptr<DynOp> working;   // the same with the objectives weighted by gainAdapt
        Matrix lastGood = Matrix(0, 0);   // the last H that gave a stable loop; 0x0 before one
        bool withoutDisturbance = false;  // L held at zero: the iteration is the H2 one
    };
    // The blocks of a partitioned system: 1 disturbances / objectives, 2 controls.
    struct Blocks {
        Matrix A, B1, B2, C1, D11, D12;
    };

    // construction (optgram.cpp)
    bool normalize(const DynOp& given);
    void build(double tolerance, int initialFeedback, const Matrix& startPoles);
    void chooseSubsystems(double tolerance);
    void rebuildSubsystems();
    void initialPoles(const Matrix& startPoles);
    void andersonTest();  // anderson.cpp
    // helpers shared by the stages (optgram.cpp)
    bool isDiscrete() const;
    std::unique_ptr<DynOp> like(const DynOp& s) const;
    std::unique_ptr<DynOp> close(const DynOp& s, const Matrix& gain) const;
    std::unique_ptr<DynOp> closeWithFeedForward(const DynOp& s, const Matrix& gain) const;
    Blocks blocksOf(const DynOp& s) const;
    Matrix polesOf(const DynOp& s) const;  // rows (re, im)
    void printPoles(const char* label, const DynOp& s) const;
    // The Algebra routines do not change the object; const stages reach them through this.
    Algebra& alg() const { return const_cast<OptimumGramian&>(*this); }
    const char* word(const char* control, const char* observer) const;
    String storedName(const char* what) const;
    void store(const DynOp& s, const char* what, const char* file = 0) const;
    void storeGain(const Matrix& gain) const;
    std::unique_ptr<DynOp> givenSystem() const;
    Matrix completion(const Matrix& gain) const;  // optgain.cpp
    // the iterations (optcont.cpp)
    double run(Run& r, bool continueFlag);
    bool prepare(Run& r, bool continueFlag, double& refusal);
    void stabilizeStart(Run& r);
    bool solveLmi(Run& r);
    bool factorT11(const Blocks& b);
    void approach(Run& r);
    void refine(Run& r);
    bool refineStep(Run& r, unsigned k, double& e0);
    void settleWithoutDisturbance(Run& r);
    void updateGain(Run& r);
    bool updateDisturbanceGain(Run& r);
    void weighObjectives(Run& r);
    bool adaptToPoles(Run& r, const Matrix& poles, unsigned k);
    // the poles' spread on continuous-time values (optpoles.cpp)
    Matrix continuousPoles(const Matrix& poles) const;
    void spread(const Matrix& s, double& lo, double& hi, unsigned& fastest) const;
    // the results (optres.cpp)
    double results(Run& r);
    void storeInner(Run& r);
    void printFullGain(Run& r);
    bool stepReport();
    bool nextStep(double h2);
    void reportIteration(double norm);

    std::uint32_t n = 0, fulln = 0, subn = 0, conn = 0;
    std::uint32_t inputs = 0, outputs = 0;
    std::uint32_t nc = 0, nd = 0, nm = 0, np = 0;
    String kindText;  // "Control" or "Observer"
    String nameText;  // prefix of the names stored
    double gainAdapt = 1.0;
    bool converged = false;  // of the last run, not stored
    DynOp* system = 0;  // owned: the stabilisable subsystem designed on
    Matrix transform;   // T, from the given state coordinates
    Matrix H;           // nc x n
    Matrix D12factor;   // R12^-1: normalised controls to given ones
    Matrix T11;         // nd x nd
    double tolerance = 0.0;
    Matrix L;               // nd x n
    Matrix Hw;              // nc x nd
    DynOp* fullSystem = 0;  // owned: the normalised system in T coordinates
    double gamma = 1.0;
    UnsArray controlIndices;
    DynOp* subSystem = 0;  // owned
    Matrix R, Rprev;       // factors of the gramian
    UnsArray disturbanceIndices;
    DynOp* conSubSystem = 0;  // owned: the controllable subsystem
    Matrix Qfactor;
    Matrix Hcon;  // nc x conn
    Matrix inputTransform, outputTransform;
    Object* owner = 0;          // answers "ASK_PARAMETERS" and "CHECK_STOP"
    String designName;          // prefix of the files of the running optimize
    std::vector<double> trend;  // the norms of the iterations since clearIterationNorms; not stored
};

#endif
