// RobustControl: construction, the two steps, the compensator and the closed loops, streams.
#include "control/robctrl.h"

#include <cmath>
#include <iostream>
#include <memory>

#include "control/hinfric.h"
#include "control/lmiof.h"
#include "control/optgram.h"
#include "control/workspc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(RobustControl, Algebra, 1, 0)

namespace {

void fillLast(IntArray& indices, unsigned count, unsigned total) {
    indices.reSize(count);
    for (unsigned i = 0; i < count; ++i) indices[int(i)] = int(total - count + i);
}

}  // namespace

// Construction

RobustControl::RobustControl() {}

RobustControl::RobustControl(const ExtendedSystem& system, bool first, double noise)
    : observerFirst(first), noiseLevel(noise), input(withNoise(system, noise)) {
    if (observerFirst) input = input.dual();
    fillLast(controlIndices, input.controlNumber(), input.inputNumber());
    fillLast(measureIndices, input.measureNumber(), input.outputNumber());
}

ExtendedSystem RobustControl::withNoise(const ExtendedSystem& system, double noiseLevel) {
    if (!(noiseLevel > 0.0)) return system;
    // Each control gets a noise input of the given level in front of it.
    unsigned m = system.inputNumber(), c = system.controlNumber();
    Matrix M(m, m + c);
    for (unsigned i = 0; i < m - c; ++i) M(i, i) = 1.0;
    for (unsigned i = 0; i < c; ++i) {
        M(m - c + i, m - c + i) = noiseLevel;
        M(m - c + i, m + i) = 1.0;
    }
    return system * M;
}

RobustControl::RobustControl(const RobustControl& r)
    : Algebra(r),
      observerFirst(r.observerFirst),
      noiseLevel(r.noiseLevel),
      input(r.input),
      control(r.control ? new OptimumGramian(*r.control) : 0),
      observer(r.observer ? new OptimumGramian(*r.observer) : 0),
      measureIndices(r.measureIndices),
      controlIndices(r.controlIndices),
      owner(r.owner) {}

RobustControl::~RobustControl() noexcept(false) {
    delete control;
    delete observer;
}

void RobustControl::setOwner(Object* o) {
    owner = o;
    if (control) control->setOwner(o);
    if (observer) observer->setOwner(o);
}

RobustControl::System RobustControl::timed(const DynOp& s) const { return input.inTimeDomain(s); }

RobustControl::System RobustControl::designCopy(const DynOp& s) const {
    return timed(
        DynOp(s.stateA(), s.stateB(), s.stateC(), s.getD(), s.controlNumber(), s.measureNumber(), 0, false));
}

RobustControl::System RobustControl::getModel() const {
    if (!input.hasElement("Model")) return getExtended();
    const DynOp& m = input.getElement("Model");
    return timed(DynOp(m.stateA(), m.stateB(), dynop::stack(m.stateC(), m.stateC()),
                       dynop::stack(m.getD(), m.getD()), m.inputNumber(), m.outputNumber(), 0, false));
}

RobustControl::System RobustControl::getExtended() const {
    return timed(observerFirst ? input.transpose() : DynOp(input));
}

// The two steps

GramianSetup RobustControl::setup(GramianRole role, double tolerance, int initialFeedback) const {
    GramianSetup s;
    s.role = role;
    s.tolerance = tolerance;
    s.initialFeedback = initialFeedback;
    s.owner = owner;
    return s;
}

int RobustControl::firstStepSetup(double tolerance, int initialFeedback, Object* o) {
    owner = o;
    System system = designCopy(input);
    delete control;
    delete observer;
    observer = 0;
    control = OptimumGramian::make(
        *system,
        setup(observerFirst ? GramianRole::Observer : GramianRole::Control, tolerance, initialFeedback));
    return control ? 0 : -1;
}

int RobustControl::secondStepSetup(double tolerance, int initialFeedback, Object* o) {
    owner = o;
    if (!control) return -1;
    System system = designCopy(estimationSystem().transpose());
    delete observer;
    observer = OptimumGramian::make(
        *system,
        setup(observerFirst ? GramianRole::Control : GramianRole::Observer, tolerance, initialFeedback));
    return observer ? 0 : -1;
}

double RobustControl::firstStep(const StepOptions& options) {
    return control ? step(*control, options) : -1.0;
}

double RobustControl::secondStep(const StepOptions& options) {
    return observer ? step(*observer, options) : -1.0;
}

double RobustControl::step(OptimumGramian& design, StepOptions o) {
    design.setOwner(owner);
    design.clearIterationNorms();
    o = atFeasibleLevel(design, o);
    double norm = optimize(design, o);
    // An H-infinity LMI that failed left the iteration a start of its own; the fresh gramian
    // iteration, from above the level, is the fall-back that reaches it.
    if (!o.useH2 && o.lmiMode != LmiMode::None && !(norm > 0.0 && norm <= o.gamma)) {
        std::cout << "the LMI step did not reach gamma " << o.gamma << ": the gramian iteration follows"
                  << std::endl;
        o.lmiMode = LmiMode::None;
        o.continueFlag = false;
        norm = optimize(design, o);
    }
    storeStep(design, o.fileNamePrefix.asCharPointer());
    return norm;
}

double RobustControl::optimize(OptimumGramian& design, StepOptions o) {
    if (approachesFromAbove(o)) {
        std::cout << "approaching gamma from above, at";
        for (double level : levelsAbove) std::cout << ' ' << level * o.gamma;
        std::cout << std::endl;
        StepOptions above = o;
        for (double level : levelsAbove) {
            above.gamma = level * o.gamma;
            above.continueFlag = level != levelsAbove[0];
            design.optimize(above);
        }
        o.continueFlag = true;
        return continuedToGamma(design, o);
    }
    return design.optimize(o);
}

// Near the optimal level the iteration converges slowly, and a step that has not converged may
// meet gamma while the loop it makes with the other step does not. A step that ends above gamma,
// or unconverged, continues as the panel's "continue" would, up to continueRounds; one above
// gamma stops when a round no longer lowers its norm.
double RobustControl::continuedToGamma(OptimumGramian& design, const StepOptions& o) {
    double norm = design.optimize(o);
    for (unsigned round = 1; round < continueRounds && norm > 0.0 && (norm > o.gamma || !design.hasConverged());
         ++round) {
        std::cout << (norm > o.gamma ? "gamma not reached" : "no convergence") << " in " << o.maxIterations
                  << " iterations: the design continues" << std::endl;
        double next = design.optimize(o);
        if (!(next > 0.0) || (norm > o.gamma && !(next < norm))) break;
        norm = next;
    }
    return norm;
}

const unsigned RobustControl::continueRounds = 10;

// The gramian iteration of an H-infinity design converges from a start whose loop is well within
// the level and may diverge from the placed start at a level near the optimum; from a converged
// design at a higher level it starts close to the solution. So a fresh refining H-infinity step
// goes down these multiples of gamma, each continuing from the last, before gamma itself.
const double RobustControl::levelsAbove[5] = {8.0, 4.0, 2.0, 1.4, 1.2};

bool RobustControl::approachesFromAbove(const StepOptions& o) {
    return !o.useH2 && !o.approaching && !o.continueFlag && !o.stepByStep && o.lmiMode == LmiMode::None;
}

// The least H-infinity level is a property of the output-feedback problem, not of either step
// alone: the state-feedback minimum of the first step lies below it, and the second step's system
// is only defined at the first step's level. So the first step of an LMI H-infinity design asks
// the LMI for the plant's least level: "min Hinf" designs at it, raised by leastLevelMargin so
// that both bound problems keep an interior; "bound Hinf" at a gamma below it says so and takes
// that level instead, so that the loop is stable and the phase reports the bound missed. The
// second step solves the bound problem at the level of the first. When the LMI finds no least
// level the Riccati route's is taken; when neither exists the step is the gramian iteration at the
// gamma asked.
StepOptions RobustControl::atFeasibleLevel(const OptimumGramian& design, StepOptions o) const {
    if (o.useH2 || (o.lmiMode != LmiMode::MinHinf && o.lmiMode != LmiMode::BoundHinf)) return o;
    bool minimum = o.lmiMode == LmiMode::MinHinf;
    o.lmiMode = LmiMode::BoundHinf;
    if (&design != control) {
        if (minimum || control->getGamma() > o.gamma) o.gamma = control->getGamma();
        return o;
    }
    double least = lmiOutputFeedbackGamma(input);
    if (!std::isfinite(least)) {
        least = HinfRiccati(*timed(input)).optimalGamma();
        std::cout << "the LMI found no least level: the design takes the Riccati route's, " << least
                  << std::endl;
    }
    if (!std::isfinite(least)) {
        o.lmiMode = LmiMode::None;
    } else if (minimum) {
        o.gamma = least * leastLevelMargin;
    } else if (o.gamma < least) {
        std::cout << "gamma " << o.gamma << " is below the least level " << least
                  << " of the plant: the design takes " << least * leastLevelMargin << std::endl;
        o.gamma = least * leastLevelMargin;
    }
    return o;
}

const double RobustControl::leastLevelMargin = 1.008;

// The gain of the step in the workspace and the Matlab script, then the norm of its error
// operator over frequency.
void RobustControl::keep(const char* name, const Object& object, const char* prefix, const char* file) {
    keepResult(name, object, file ? (std::string(prefix) + file).c_str() : 0);
}

// The gain of the step with its gramian, the systems that go with it, then the norm of the step's
// error operator over frequency.
void RobustControl::storeStep(const OptimumGramian& design, const char* prefix) {
    bool isObserver = design.role() == GramianRole::Observer;
    bool first = &design == control;
    Matrix gain = isObserver ? design.getH().transpose() : design.getH();
    std::cout << (isObserver ? "K = " : "H = ") << gain << std::endl;
    keep(isObserver ? "K" : "H", gain, prefix);
    keep(isObserver ? "gainK" : "gainH", *timed(DynOp(gain)), prefix, isObserver ? 0 : "H.dyn");
    std::cout << (isObserver ? "QO = " : "QC = ") << design.gramian() << std::endl;
    keep(isObserver ? "QO" : "QC", design.gramian(), prefix);
    if (isObserver) {
        keep("L", design.getL(), prefix);
        keep("BlackBoxModel", *getExtended(), prefix, "BlackBoxModel.dyn");
        if (!first) keep("Observer", *observerSystem(), prefix, "Observer.dyn");
    } else if (first) {
        keep("FullControlError", *timed(input.stateFeedback(feedbackGain(), &controlIndices)), prefix);
    }

    System error = first ? controlError() : observerError();
    keep(isObserver ? "ObserverError" : "ControlError", *error, prefix,
         isObserver ? "ObserverError.dyn" : "ControlError.dyn");
    double w0 = wMin;
    double norm = error->normHinfInFrequency(w0);
    std::cout << (isObserver ? "Detectable" : "Stabilizable") << " subsystem"
              << "\n"
              << "H-infinite norm of the " << (isObserver ? "Observer" : "State Feedback")
              << " operator = " << norm << ",\nat w = " << w0 << std::endl;
    if (first) storeEstimationSystem(prefix);
}

// The observer of the estimation system: x^' = (Ae - K C2e) x^ + (B2 - K D22) u + K y, the estimate
// as output.
RobustControl::System RobustControl::observerSystem() const {
    dynop::Partition q(estimationSystem());
    Matrix K = observerGain();
    return timed(DynOp(q.A - K * q.C2, dynop::sideBySide(q.B2 - K * q.D22, K),
                       Matrix::diagonal(input.order(), 1.0), Matrix(0, 0), 0, 0, 0, false));
}

// The system the second step starts from, in the workspace, the Matlab script and its file.
void RobustControl::storeEstimationSystem(const char* prefix) {
    keep("ExtendedSystemWithObserver", *timed(estimationSystem()), prefix, "ExtendedSystemWithObserver.dyn");
}

OptimumGramian RobustControl::getObserver() const {
    if (observer) return *observer;
    std::cout << "observer has not been built yet" << std::endl;
    return OptimumGramian();
}

// The designs' gains on input

Matrix RobustControl::feedbackGain() const {
    if (!control) return Matrix(0, 0);
    return control->getH();
}

Matrix RobustControl::observerGain() const {
    if (!observer) return Matrix(0, 0);
    return observer->getH().transpose();
}

// The estimation system of the second step: input driven by the first design's worst-case
// disturbance, w = F x + gamma T11 r, with the control error in the first design's weighted,
// normalised controls, e = W (u + G x) + V Hw gamma T11 r, as objective (G the estimated control
// gain below, W = V D12factor^-1, V its controlErrorWeight, Hw its feed-forward):
//   x' = (A + B1 F) x + B1 gamma T11 r + B2 u,  y = (C2 + D21 F) x + D21 gamma T11 r + D22 u.
// Along it |z|^2 - gamma^2 |w|^2 of input equals |e|^2 - gamma^2 |r|^2 up to the difference of
// the first design's x'Xx, so an observer meeting gamma here makes a compensator meeting gamma on
// input. For H2, F = 0 and T11 = I.
DynOp RobustControl::estimationSystem() const {
    dynop::Partition p(input);
    Matrix F = control ? control->worstCase() : Matrix(0, input.order());
    Matrix R = control ? control->getGamma() * control->getT11() : Matrix(0, 0);
    Matrix Hw = control ? control->controlErrorWeight() * control->feedForward() : Matrix(0, 0);
    Matrix W = errorWeight();
    Matrix D = dynop::stack(dynop::sideBySide(Hw * R, W), dynop::sideBySide(p.D21 * R, p.D22));
    Matrix C = dynop::stack(W * estimatedControlGain(), p.C2 + p.D21 * F);
    Matrix B = dynop::sideBySide(p.B1 * R, p.B2);
    return DynOp(p.A + p.B1 * F, B, C, D, input.controlNumber(), input.measureNumber(), 0, false);
}

// G = H + D12factor Hw F: the control of the first design under the worst-case disturbance.
Matrix RobustControl::estimatedControlGain() const {
    if (!control) return Matrix(0, 0);
    return feedbackGain() + control->getD12factor() * control->feedForward() * control->worstCase();
}

// W = V D12factor^-1, which takes the controls of input to the weighted ones of the control error.
Matrix RobustControl::errorWeight() const {
    if (!control) return Matrix(0, 0);
    return control->controlErrorWeight() * Algebra().inv(control->getD12factor());
}

// Dk = W^-1 Hwo': the second design's feed-forward (Hwo, from e to the measures' gain of the
// dual) as the direct correction of the control by the innovation, u = -G x^ - Dk r.
Matrix RobustControl::innovationGain() const {
    if (!observer) return Matrix(0, 0);
    Matrix Hwo = observer->getD12factor() * observer->feedForward();
    return Algebra().inv(errorWeight()) * Hwo.transpose();
}

RobustControl::System RobustControl::controlError() const {
    DynOp closed = input.stateFeedback(feedbackGain(), &controlIndices);
    return timed(closed.subSystem(0, 0, input.outputNumber() - input.measureNumber(), 0));
}

// The error of the control estimate: (Ae - K C2e, Br - K D21r, C1e - W Dk C2e, D11e - W Dk D21r).
RobustControl::System RobustControl::observerError() const {
    dynop::Partition q(estimationSystem());
    Matrix K = observerGain(), WDk = errorWeight() * innovationGain();
    return timed(
        DynOp(q.A - K * q.C2, q.B1 - K * q.D21, q.C1 - WDk * q.C2, q.D11 - WDk * q.D21, 0, 0, 0, false));
}

// The compensator of input: the observer of the estimation system,
// x^' = Ae x^ + B2 u + K r, r = y - C2e x^ - D22 u, u = -G x^ - Dk r.
DynOp RobustControl::compensatorOfInput() const {
    unsigned nu = input.controlNumber(), ny = input.measureNumber();
    return compensatorOfInput(
        DynOp(Matrix(0, 0), Matrix(0, ny), Matrix(nu, 0), Matrix(nu, ny), 0, 0, 0, false));
}

// The same with v = Q r added to u, from y to u, in the sign convention of closedLoop, which
// negates the compensator's B and D. With M = (I - Dk D22)^-1, Gk = M (G - Dk C2e), Dy = M Dk and
// Bu = B2 - K D22 the system from [y; v] to [u; r] is
//   x^' = (Ae - K C2e - Bu Gk) x^ + (K - Bu Dy) y + Bu M v,
//   u = -Gk x^ - Dy y + M v,  r = (D22 Gk - C2e) x^ + (I + D22 Dy) y - D22 M v.
DynOp RobustControl::compensatorOfInput(const DynOp& Q) const {
    dynop::Partition q(estimationSystem());
    Matrix G = estimatedControlGain(), K = observerGain(), Dk = innovationGain();
    unsigned nu = G.rowNumber(), ny = K.columnNumber();
    Matrix Iu = Matrix::diagonal(nu, 1.0), Iy = Matrix::diagonal(ny, 1.0);
    Matrix M = Algebra().inv(Iu - Dk * q.D22), Gk = M * (G - Dk * q.C2), Dy = M * Dk, Bu = q.B2 - K * q.D22;
    Matrix A = q.A - K * q.C2 - Bu * Gk;
    Matrix B = dynop::sideBySide(K - Bu * Dy, Bu * M);
    Matrix C = dynop::stack(-Gk, q.D22 * Gk - q.C2);
    Matrix D = dynop::stack(dynop::sideBySide(-Dy, M), dynop::sideBySide(Iy + q.D22 * Dy, -q.D22 * M));
    DynOp J(A, B, C, D, nu, ny, 0, false);
    DynOp positive(Q.stateA(), -Q.stateB(), Q.stateC(), -Q.getD(), 0, 0, 0, false);
    DynOp yu = J.closedLoop(positive);
    return DynOp(yu.stateA(), -yu.stateB(), yu.stateC(), -yu.getD(), 0, 0, 0, false);
}

RobustControl::System RobustControl::compensator(const DynOp& Q) const {
    DynOp ofInput = compensatorOfInput(observerFirst ? Q.transpose() : Q);
    return timed(observerFirst ? ofInput.transpose() : ofInput);
}

RobustControl::System RobustControl::compensator() const {
    DynOp ofInput = compensatorOfInput();
    return timed(observerFirst ? ofInput.transpose() : ofInput);
}

RobustControl::System RobustControl::closedLoopExperimental() const {
    return timed(getExtended()->closedLoop(*compensator()));
}

// The part of a design's state space it designed on: the first `kept` states after `T`, from the
// state coordinates of input (a design on the dual gives T for the dual's states: the primal
// coordinates are then T^-T). The whole space when the design kept every state.
namespace {

struct DesignPart {
    Matrix T;
    unsigned kept;
};

DesignPart partOf(const OptimumGramian* design, unsigned n, bool dual) {
    if (!design || design->getT().rowNumber() != n || design->stabilizableOrder() >= n)
        return {Matrix::diagonal(n, 1.0), n};
    Matrix T = design->getT();
    return {dual ? Algebra().inv(T).transpose() : T, design->stabilizableOrder()};
}

}  // namespace

// The loop in the separated coordinates, the plant's state x and the estimation error e = x - x^,
// restricted to what the designs saw: the first design's stabilizable states of x and the second
// design's detectable states of e. The modes they left out as stable and uncontrollable (or
// undetectable) are dropped, which the experimental loop keeps.
RobustControl::System RobustControl::closedLoopTheoretical() const {
    DynOp ofInput = input.closedLoop(compensatorOfInput());
    unsigned n = input.order();
    DesignPart x = partOf(control, n, false), e = partOf(observer, n, true);
    Matrix separate = Matrix::diagonal(2 * n, 1.0);
    for (unsigned i = 0; i < n; ++i) {
        separate(n + i, i) = 1.0;
        separate(n + i, n + i) = -1.0;
    }
    // The kept states of x and of e first, in order, then the dropped ones.
    Matrix order(2 * n, 2 * n);
    unsigned row = 0;
    for (unsigned i = 0; i < x.kept; ++i) order(row++, i) = 1.0;
    for (unsigned i = 0; i < e.kept; ++i) order(row++, n + i) = 1.0;
    for (unsigned i = x.kept; i < n; ++i) order(row++, i) = 1.0;
    for (unsigned i = e.kept; i < n; ++i) order(row++, n + i) = 1.0;
    ofInput.similarity(order * Matrix::blockDiagonal(x.T, e.T) * separate);
    DynOp part = ofInput.reduceOrder(x.kept + e.kept);
    return timed(observerFirst ? part.transpose() : part);
}

void RobustControl::orders() const {
    if (control) std::cout << "control order = " << control->order() << std::endl;
    if (observer) std::cout << "observer order = " << observer->order() << std::endl;
}

// Printing and streams

void RobustControl::printOn(std::ostream& os) const {
    os << "input = " << input << "\n";
    if (control)
        os << "control = " << *control << "\n";
    else
        os << "control = NULL\n";
    if (observer)
        os << "observer = " << *observer << "\n";
    else
        os << "observer = NULL\n";
}

void RobustControl::storer(std::ostream& os) const {
    Algebra::storer(os);
    input.storeOn(os);
    os << observerFirst << ' ' << noiseLevel << ' ';
    storeMembers(os);
}

void RobustControl::storer(BinOstream& os) const {
    Algebra::storer(os);
    input.storeOn(os);
    os << observerFirst << noiseLevel;
    storeMembers(os);
}

template <class Stream>
void RobustControl::storeMembers(Stream& os) const {
    controlIndices.storeOn(os);
    measureIndices.storeOn(os);
    storeOptional(os, control);
    storeOptional(os, observer);
}

namespace {

template <class Stream>
OptimumGramian* readDesign(Stream& is) {
    Object* read = readOptional(is);
    return read ? CAST(OptimumGramian, read) : 0;
}

}  // namespace

RobustControl::RobustControl(std::istream& is, Object* where) : Algebra(is, where) { readFields(is); }

RobustControl::RobustControl(BinIstream& is, Object* where) : Algebra(is, where) { readFields(is); }

template <class Stream>
void RobustControl::readFields(Stream& is) {
    readFrom(is, "ExtendedSystem", &input);
    observerFirst = readNumber<std::int32_t>(is);
    noiseLevel = readNumber<double>(is);
    readFrom(is, "UnsArray", &controlIndices);
    readFrom(is, "UnsArray", &measureIndices);
    control = readDesign(is);
    observer = readDesign(is);
    if (observer && observer == control) {  // each design is owned apart
        observer = 0;
        setError(RDSYNERR, SEV_ERROR, "a design of its own", "a shared one");
    }
}
