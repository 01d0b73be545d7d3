// OptimumGramian: normalisation, the choice of the subsystems, the initial poles dialogue, the
// helpers of the later stages, and the feedback in the given coordinates.
#include "control/optgram.h"

#include <iostream>

#include "control/askparam.h"
#include "control/discdyn.h"
#include "control/workspc.h"

DEFINE_CLASS(OptimumGramian, Algebra, 1, 0)

using dynop::block;

OptimumGramian::OptimumGramian() {}

OptimumGramian* OptimumGramian::make(const DynOp& system, const GramianSetup& setup) {
    std::unique_ptr<OptimumGramian> g(new OptimumGramian);
    g->kindText = textOf(setup.role);
    g->nameText = setup.name;
    g->owner = setup.owner;
    g->tolerance = setup.tolerance;
    if (!g->normalize(system)) return 0;
    g->build(setup.tolerance, setup.initialFeedback, setup.startPoles);
    return g.release();
}

GramianRole OptimumGramian::role() const {
    GramianRole r = GramianRole::Control;
    valueOf(kindText.asCharPointer(), r);
    return r;
}

OptimumGramian::~OptimumGramian() noexcept(false) {
    delete system;
    delete fullSystem;
    delete subSystem;
    delete conSubSystem;
}

// The orthogonal Q' of [D12 | I] triangularised on the controls rotates the objectives and
// R12^-1 scales the controls, so that the normalised D12 is [I; 0]. The normalised system is
// kept as fullSystem until the subsystems are chosen.
bool OptimumGramian::normalize(const DynOp& given) {
    inputs = given.inputNumber();
    outputs = given.outputNumber();
    nc = given.controlNumber();
    nm = given.measureNumber();
    nd = inputs - nc;
    np = outputs - nm;
    Matrix D12 = block(given.getD(), 0, nd, np, nc);
    if (nc == 0 || np < nc || minSingularValue(D12) < zeroTolerance) {
        std::cout
            << "Warning, "
            << word(
                   "No controls are present on the objectives,\nrebuild the extended system adding control "
                   "signals on the objectives",
                   "No noise is present on the measures,\nrebuild the extended system adding noise signal "
                   "on the measures")
            << std::endl;
        return false;
    }
    Matrix W = dynop::sideBySide(D12, Matrix::diagonal(np, 1.0));
    triangularize(W, nc);
    D12factor = inv(block(W, 0, 0, nc, nc));
    outputTransform = Matrix::blockDiagonal(block(W, 0, nc, np, np), Matrix::diagonal(nm, 1.0));
    inputTransform = Matrix::blockDiagonal(Matrix::diagonal(nd, 1.0), D12factor);
    DynOp normalised(given.stateA(), given.stateB() * inputTransform, outputTransform * given.stateC(),
                     outputTransform * given.getD() * inputTransform, nc, nm);
    fullSystem = given.inTimeDomain(normalised).release();
    printPoles("system poles", *fullSystem);
    return true;
}

void OptimumGramian::build(double tolerance, int initialFeedback, const Matrix& startPoles) {
    disturbanceIndices.reSize(nd);
    controlIndices.reSize(nc);
    for (unsigned i = 0; i < nd; ++i) disturbanceIndices[int(i)] = int(i);
    for (unsigned i = 0; i < nc; ++i) controlIndices[int(i)] = int(nd + i);
    chooseSubsystems(tolerance);
    if (fulln > subn) andersonTest();
    Hcon = Matrix(nc, conn);
    if (initialFeedback == 1) initialPoles(startPoles);
    Hw = Matrix(nc, nd);
    H = Matrix(nc, n);
    L = Matrix(nd, n);
    R = Rprev = Matrix(n, n);
    T11 = Matrix::diagonal(nd, 1.0);
}

// The stabilisable part and the controllable order, repeated with new tolerances while the
// "Insert tolerance" dialogue answers Ok. The normalised system then goes to the coordinates
// with the controllable states first and the dropped stable ones last.
void OptimumGramian::chooseSubsystems(double controllability) {
    const char* first = word("controllable", "observable");
    const char* second = word("stabilizable", "detectable");
    double unstable = tollPoles;
    unsigned forced = 0;
    Matrix T = Matrix::diagonal(fullSystem->order(), 1.0), Tc = T;  // a static system keeps them
    for (;;) {
        DynOp stabilizable =
            fullSystem->stabilizableSubSystem(&controlIndices, T, controllability, unstable, false, forced);
        DynOp controllable = fullSystem->contrSubSystem(&controlIndices, Tc, controllability, false, forced);
        fulln = fullSystem->order();
        n = subn = stabilizable.order();
        conn = forced ? forced : fullSystem->controllableOrder(&controlIndices, controllability);
        if (conn > subn) conn = subn;
        printPoles((String(second) + " subsystem poles").asCharPointer(), *like(stabilizable));
        printPoles((String(first) + " subsystem poles").asCharPointer(), *like(controllable));
        std::cout << "system order = " << fulln << "\n"
                  << second << " subsystem order = " << n << ", " << first << " subsystem order = " << conn
                  << "\n"
                  << "press Ok to change the tolerances and repeat, Cancel to go on" << std::endl;
        ParamRequest request("Insert tolerance", 0);
        request.add("tolerance for controllability", controllability)
            .add("tolerance for selecting unstable poles", unstable)
            .add("forced order", double(forced));
        if (!askParameters(owner, request)) break;
        controllability = request.number(0);
        unstable = request.number(1);
        forced = request.number(2) > 0.0 ? unsigned(request.number(2)) : 0;
    }
    // Kept whole for an unstable uncontrollable remainder: the staircase still puts the
    // controllable states first.
    transform = subn == fulln && conn < fulln ? Tc : T;
    fullSystem->similarity(transform, true);
    rebuildSubsystems();
}

void OptimumGramian::rebuildSubsystems() {
    delete subSystem;
    delete conSubSystem;
    delete system;
    subSystem = like(fullSystem->reduceOrder(subn)).release();
    conSubSystem = like(fullSystem->reduceOrder(conn)).release();
    system = like(*subSystem).release();
}

// Ok with a table of conn rows (re, im) places those poles; Cancel or an empty text falls back
// to startPoles.
void OptimumGramian::initialPoles(const Matrix& startPoles) {
    Matrix poles = startPoles;
    for (;;) {
        std::cout << "If you want to select initial poles\nassign number " << conn
                  << (isDiscrete() ? "\n" : "")
                  << "\npoles as (real imag; ...) and press Ok, otherwise press Cancel" << std::endl;
        ParamRequest request("Starting Poles", 0);
        request.add("poles", "").add("Output adaptation gain", gainAdapt);
        if (!askParameters(owner, request) || !*request.value(0)) break;
        if (request.number(1) > 0.0) gainAdapt = request.number(1);
        Matrix given = parseMatrix(request.value(0));
        if (given.rowNumber() == conn && given.columnNumber() <= 2) {
            poles = Matrix(conn, 2);
            poles.setSubMatrix(0, 0, given, conn, given.columnNumber());
            break;
        }
        std::cout << "The number of poles assigned is not correct!\nreassign them" << std::endl;
    }
    assignPoles(poles);
}

// Shared helpers

bool OptimumGramian::isDiscrete() const { return fullSystem && fullSystem->isDiscreteTime(); }

std::unique_ptr<DynOp> OptimumGramian::like(const DynOp& s) const {
    return fullSystem ? fullSystem->inTimeDomain(s) : DynOp().inTimeDomain(s);
}

std::unique_ptr<DynOp> OptimumGramian::close(const DynOp& s, const Matrix& gain) const {
    return like(s.stateFeedback(gain, &controlIndices).subSystem(0, 0, np, nd));
}

// The loop closed by u = -gain x - Hw w.
std::unique_ptr<DynOp> OptimumGramian::closeWithFeedForward(const DynOp& s, const Matrix& gain) const {
    Matrix W = Matrix::diagonal(inputs, 1.0);
    W.setSubMatrix(nd, 0, -Hw, nc, nd);
    DynOp fed(s.stateA(), s.stateB() * W, s.stateC(), s.getD() * W, nc, nm);
    return close(*like(fed), gain);
}

OptimumGramian::Blocks OptimumGramian::blocksOf(const DynOp& s) const {
    unsigned order = s.order();
    Matrix B = s.stateB(), C = s.stateC(), D = s.getD();
    return Blocks{s.stateA(),
                  block(B, 0, 0, order, nd),
                  block(B, 0, nd, order, nc),
                  block(C, 0, 0, np, order),
                  block(D, 0, 0, np, nd),
                  block(D, 0, nd, np, nc)};
}

Matrix OptimumGramian::polesOf(const DynOp& s) const {
    if (s.order() == 0) return Matrix(0, 2);
    return alg().computeEigenvalues(s.stateA());
}

void OptimumGramian::printPoles(const char* label, const DynOp& s) const {
    std::cout << label << (isDiscrete() ? "\n" : " ") << s.poles() << std::endl;
}

const char* OptimumGramian::word(const char* control, const char* observer) const {
    return role() == GramianRole::Observer ? observer : control;
}

String OptimumGramian::storedName(const char* what) const { return nameText + kindText + what; }

// In the workspace and the Matlab script under the prefixed name, and with file in a model file
// under the design's prefix; an observer's system is stored as the dual of the one designed.
void OptimumGramian::store(const DynOp& s, const char* what, const char* file) const {
    std::unique_ptr<DynOp> stored = role() == GramianRole::Observer ? like(s.transpose()) : like(s);
    String key = storedName(what);
    globalWorkspace().store(key.asCharPointer(), *stored);
    Workspace::writeMatlab(*stored, key.asCharPointer());
    if (!file) return;
    String path = designName + file + ".dyn";
    if (!alg().storeToFile(*stored, path.asCharPointer()))
        std::cout << "Warning, cannot write " << path << std::endl;
}

void OptimumGramian::storeGain(const Matrix& gain) const {
    bool observer = role() == GramianRole::Observer;
    String key = nameText + (observer ? "K" : "H");
    Matrix stored = observer ? gain.transpose() : gain;
    globalWorkspace().store(key.asCharPointer(), stored);
    Workspace::writeMatlab(stored, key.asCharPointer());
    std::cout << word("Control feedback ", "Observer feedback ") << stored << std::endl;
}

// The system of make, rebuilt from the normalised one in T coordinates.
std::unique_ptr<DynOp> OptimumGramian::givenSystem() const {
    DynOp s(*fullSystem);
    s.similarity(getTinv());
    Matrix inputBack = alg().inv(inputTransform);
    Matrix outputBack = outputTransform.transpose();
    return like(DynOp(s.stateA(), s.stateB() * inputBack, outputBack * s.stateC(),
                      outputBack * s.getD() * inputBack, nc, nm));
}

// Results

Matrix OptimumGramian::getTinv() const { return alg().inv(transform); }

Matrix OptimumGramian::worstCase() const {
    Matrix F = T11 * L;
    if (!fullSystem) return F;
    F.reSize(nd, fulln);
    return F * transform;
}

Matrix OptimumGramian::controlErrorWeight() const {
    Matrix V = Matrix::diagonal(nc, 1.0);
    if (!system || !isDiscrete()) return V;
    Matrix B2 = blocksOf(*system).B2, Q = gramian();
    if (Q.rowNumber() != B2.rowNumber()) return V;  // an H2 design on the controllable part
    V = V + B2.transpose() * Q * B2;
    alg().chol(V);
    return V;
}

Matrix OptimumGramian::getH() const {
    if (!fullSystem) return H;
    return D12factor * completion(H) * transform;
}
