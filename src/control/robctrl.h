// RobustControl, one two-step design: an extended system, the state feedback and the observer
// that together make its output-feedback compensator.
//
//   double firstStep(const StepOptions& options);  secondStep likewise
//   const OptimumGramian* firstDesign() const;     secondDesign likewise
#ifndef CONTROL_ROBCTRL_H
#define CONTROL_ROBCTRL_H

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "algebra/algebra.h"
#include "control/designopt.h"
#include "control/extsys.h"
#include "quill/unsarray.h"

class OptimumGramian;

extern Class class_RobustControl;

// The design works on `input`: the plant, widened by a noise input in front of each control when
// noiseLevel is above 0, and its dual when the observer comes first. The first step designs the
// state feedback H of `input` (the observer, on the dual, when observerFirst); the second step
// designs the other gain on the estimation system of the first: `input` driven by the first
// design's worst-case disturbance, with the first design's control error as objective and the
// measures as measures. An H-infinity compensator so made meets the level both steps met; an H2
// one has the poles of both designs.
class RobustControl : public Algebra {
    DECLARE_MEMBERS(RobustControl)
public:
    RobustControl();
    RobustControl(const ExtendedSystem& system, bool observerFirst, double noiseLevel);
    // The system with a noise input of noiseLevel in front of each control (itself at 0).
    static ExtendedSystem withNoise(const ExtendedSystem& system, double noiseLevel);
    RobustControl(const RobustControl& r);
    // Stream form: input, observerFirst, noiseLevel, the two index arrays, control and observer
    // (nil when absent).
    RobustControl(std::istream& is, Object* where);
    RobustControl(BinIstream& is, Object* where);
    ~RobustControl() noexcept(false) override;

    // Answer 0, or -1 when the design object could not be made.
    int firstStepSetup(double tolerance, int initialFeedback, Object* owner);
    int secondStepSetup(double tolerance, int initialFeedback, Object* owner);
    // The H-infinity norm reached by the step's design; -1.0 before its set-up.
    double firstStep(const StepOptions& options);
    double secondStep(const StepOptions& options);
    // The designs of the two steps, null before their set-up.
    const OptimumGramian* firstDesign() const { return control; }
    const OptimumGramian* secondDesign() const { return observer; }

    // A copy of the second design; an empty one, after "observer has not been built yet", before it.
    OptimumGramian getObserver() const;
    bool hasControl() const { return control != 0; }
    bool hasObserver() const { return observer != 0; }
    bool isNoisy() const { return noiseLevel != 0.0; }
    bool isObserverFirst() const { return observerFirst != 0; }
    const ExtendedSystem& getInput() const { return input; }
    // Systems come in the time domain of the input (DynOp or DiscDynOp).
    typedef std::unique_ptr<DynOp> System;
    // The element "Model" of input, its inputs the controls and its outputs both the objectives and
    // the measures, so that closedLoop with the compensator gives the plant's outputs. A system
    // taken as extended without a Model is its own model: then this is getExtended().
    System getModel() const;
    // The extended system as given: the dual of input again when the observer came first.
    System getExtended() const;
    // Where the dialogues and the stop checks of the two designs go.
    void setOwner(Object* owner);
    void orders() const;

    // The state feedback H (controls x states) and the observer gain K (states x measures) of
    // input, from the two designs in the order they were made.
    Matrix feedbackGain() const;
    Matrix observerGain() const;
    // The errors of the two designs: input closed by the state feedback from w to z, and the
    // observer's error dynamics on the estimation system, from its disturbance to the control error.
    System controlError() const;
    System observerError() const;
    // The observer of input: from [u; y] to the estimate of the state.
    System observerSystem() const;
    // The estimation system on which the second design works.
    DynOp estimationSystem() const;
    // The compensator of the plant as given: the observer of the estimation system and the
    // first design's control. For H2, closedLoop of the plant with it has the poles of
    // A - B2 H and of A - K C2 together.
    System compensator() const;
    // The same with the free parameter Q (measures' innovation to controls, v = Q r) added:
    // u = -G x^ - Dk r + v, r = y - C2e x^ - D22 u.
    System compensator(const DynOp& Q) const;
    // The plant closed by the compensator: as assembled, and in the state coordinates (x, x - x^)
    // of the separation, where it is block triangular.
    System closedLoopExperimental() const;
    System closedLoopTheoretical() const;
    // s in the time domain of input.
    System timed(const DynOp& s) const;

    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    template <class Stream>
    void readFields(Stream& is);
    // The fields from the index arrays on, alike in both stream forms.
    template <class Stream>
    void storeMembers(Stream& os) const;
    // The system a design object is made from: a plain DynOp or DiscDynOp copy of s.
    System designCopy(const DynOp& s) const;
    // The set-up of a step's design, its dialogues and stop checks going to owner.
    GramianSetup setup(GramianRole role, double tolerance, int initialFeedback) const;
    double step(OptimumGramian& design, StepOptions options);
    // One run of the step's design, down levelsAbove first when approachesFromAbove.
    double optimize(OptimumGramian& design, StepOptions options);
    // Whether a step goes down levelsAbove first (see robctrl.cpp).
    static bool approachesFromAbove(const StepOptions& options);
    // The last level, continued while it stays above gamma and lowers its norm, or has not converged.
    static double continuedToGamma(OptimumGramian& design, const StepOptions& options);
    static const unsigned continueRounds;
    static const double levelsAbove[5];
    // The LMI H-infinity steps as bound problems at a level the plant admits (see robctrl.cpp).
    StepOptions atFeasibleLevel(const OptimumGramian& design, StepOptions options) const;
    static const double leastLevelMargin;
    void storeStep(const OptimumGramian& design, const char* prefix);
    void storeEstimationSystem(const char* prefix);
    // object under name in the workspace and the Matlab script, and in prefix + file when given.
    void keep(const char* name, const Object& object, const char* prefix, const char* file = 0);
    // The compensator of input, in the continuous form of its matrices.
    DynOp compensatorOfInput() const;
    DynOp compensatorOfInput(const DynOp& Q) const;
    // The control gain the compensator applies to the estimate, the weight of the control error
    // and the gain of the innovation on the control (see robctrl.cpp).
    Matrix estimatedControlGain() const;
    Matrix errorWeight() const;
    Matrix innovationGain() const;

    std::int32_t observerFirst = 0;
    double noiseLevel = 0.0;
    ExtendedSystem input;
    OptimumGramian* control = 0;   // the first design, owned
    OptimumGramian* observer = 0;  // the second design, owned
    UnsArray measureIndices{0};
    UnsArray controlIndices{0};
    Object* owner = 0;
};

#endif
