// OptimumGramian: the optimisation, continuous and discrete. The approaching branch runs the
// factored Riccati iteration; the refining branch iterates the gramian of the closed loop whose
// outputs are the objectives and the worst-case disturbance L x.
//
// With D12'D12 = I, u = -H x - Hw w, Acl = A - B2 H, Bw = B1 - B2 Hw, Cz = C1 - D12 H and
// Dw = D11 - D12 Hw, the gramian Q of (Acl, [Cz; L]) with L = T11' N has the H-infinity Riccati
// solution as fixed point when
//   continuous: H = B2'Q + D12'C1, Hw = D12'D11, N = Bw'Q + Dw'Cz,
//               T11 T11' = (gamma^2 I - Dw'Dw)^-1;
//   discrete:   H = S (B2'Q A + D12'C1), Hw = S (B2'Q B1 + D12'D11), S = (I + B2'Q B2)^-1,
//               N = Bw'Q Acl + Dw'Cz, T11 T11' = (gamma^2 I - Dw'Dw - Bw'Q Bw)^-1,
// since then Q = Acl'Q Acl + Cz'Cz + N'(T11 T11')N is the value of the game with the worst w.
// Without L (H2) the same gain update is the Newton (Kleinman, Hewer) step of the H2 Riccati.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "algebra/househld.h"
#include "control/askparam.h"
#include "control/lmi.h"
#include "control/optgram.h"
#include "quill/quillerr.h"

namespace {

const char* const divergenceContinuous =
    "NO CONVERGENCE REACHED!\nrepeate increasing the gamma value or going back to the H2 norm";
const char* const divergenceDiscrete =
    "NO CONVERGENCE REACHED!\nrepeate increasing the value of gamma or go back to the H2 norm";

}  // namespace

double OptimumGramian::optimize(const StepOptions& o) {
    return isDiscrete() ? optimizeDiscrete(o) : optimizeContinuous(o);
}

double OptimumGramian::optimizeContinuous(const StepOptions& o) {
    std::cout << "start optimizeContinuous" << std::endl;
    Run r(o);
    return run(r, o.continueFlag);
}

double OptimumGramian::optimizeDiscrete(const StepOptions& o) {
    std::cout << "start optimizeDiscrete" << std::endl;
    Run r(o);
    return run(r, o.continueFlag);
}

double OptimumGramian::run(Run& r, bool continueFlag) {
    designName = r.fileNamePrefix;
    double refusal = 0.0;
    if (!prepare(r, continueFlag, refusal)) return refusal;
    if (r.approaching)
        approach(r);
    else
        refine(r);
    return results(r);
}

// The working system, gamma, T11 and Hw, and a stabilising start. H2 works on the controllable
// subsystem from the placed gain; H-infinity on the stabilisable one from H, or from the placed
// gain while H is zero.
bool OptimumGramian::prepare(Run& r, bool continueFlag, double& refusal) {
    if (r.useH2) {
        r.unscaled = like(*conSubSystem);
        H = Hcon;
        gamma = 1.0;
    } else {
        r.unscaled = like(*system);
        gamma = r.gamma;
        if (isSmall(H, zeroTolerance)) H = Hcon;
        H.reSize(nc, n);
    }
    unsigned order = r.unscaled->order();
    if (!continueFlag || R.rowNumber() != order) R = Matrix(order, order);
    Rprev = Matrix(order, order);
    if (r.useH2 || L.columnNumber() != order) L = Matrix(nd, order);
    weighObjectives(r);
    Blocks b = blocksOf(*r.working);
    bool hasD11 = !b.D11.allAbsNotAbove(zeroTolerance);
    Hw = hasD11 ? b.D12.transpose() * b.D11 : Matrix(nc, nd);
    T11 = Matrix::diagonal(nd, 1.0 / gamma);
    if (hasD11 && !r.useH2) {
        Matrix Dw = b.D11 - b.D12 * Hw;  // Pj D11
        Matrix values = computeEigenvalues(Dw.transpose() * Dw);
        double largest = 0.0;
        for (unsigned i = 0; i < values.rowNumber(); ++i) largest = std::max(largest, values(i, 0));
        if (gamma < std::sqrt(largest)) {
            std::cout << "gamma (" << gamma << ") must be greater than " << std::sqrt(largest) << std::endl;
            refusal = 0.0;
            return false;
        }
        if (!factorT11(b)) {
            std::cout << "gamma is too small " << std::endl;
            refusal = -1.0;
            return false;
        }
    }
    std::cout << "initial feedback, H = " << H << std::endl;
    stabilizeStart(r);
    return true;
}

// A start whose loop is unstable (a zero initial feedback on an unstable plant) has its poles
// reflected into the stable region, at least minFreq away from its border, and placed.
void OptimumGramian::stabilizeStart(Run& r) {
    std::unique_ptr<DynOp> loop = close(*r.working, H);
    printPoles("closedLoop poles at the beginning", *loop);
    if (loop->isStable() || loop->order() == 0) return;
    Matrix p = polesOf(*loop);
    double margin = std::max(r.minFreq, tollPoles);
    // The iteration needs a start well inside the stable region: poles at rest (rigid bodies,
    // integrators) go a tenth of the loop's fastest pole away from the border. Nearer, the
    // H-infinity iteration diverges and the H2 one sees a spread of poles it keeps weighing down.
    if (!isDiscrete())
        for (unsigned i = 0; i < p.rowNumber(); ++i)
            margin = std::max(margin, 0.1 * std::hypot(p(i, 0), p(i, 1)));
    for (unsigned i = 0; i < p.rowNumber(); ++i) {
        if (!isDiscrete()) {
            p(i, 0) = -std::max(std::fabs(p(i, 0)), margin);
            continue;
        }
        double m = std::hypot(p(i, 0), p(i, 1)), target = std::min(m < 1.0 ? m : 1.0 / m, 1.0 - margin);
        if (m > 0.0)
            for (unsigned c = 0; c < 2; ++c) p(i, c) *= target / m;
    }
    Matrix K = r.working->place(p, &controlIndices);
    if (K.rowNumber() == nc && K.columnNumber() == H.columnNumber()) H = K;
    printPoles("closedLoop poles at the beginning after", *close(*r.working, H));
}

// Code 1 is the least H2 norm, 2 the H-infinity bound gamma, 3 the least H-infinity norm.
bool OptimumGramian::solveLmi(Run& r) {
    if (r.lmiMode == LmiMode::None) return false;
    LMI lmi(*r.working);
    bool h2 = r.useH2 || r.lmiMode == LmiMode::MinH2, minimum = r.lmiMode != LmiMode::BoundHinf;
    if ((minimum ? lmi.solveMinimum(h2) : lmi.solveBound(gamma, h2)) != 0) return false;
    Matrix factor = lmi.getGramian();
    if (!chol(factor)) {
        std::cout << "cannot factorize the gramian resulting from LMI\nincrease the value of gamma and repeat"
                  << std::endl;
        return false;
    }
    H = lmi.getH();
    L = lmi.getL();
    R = factor;
    // The H-infinity gain is the central one of the storage found, with its feed-forward in
    // discrete time: the second step's estimation system is built on it, not on the solver's gain.
    if (!h2) updateGain(r);
    if (minimum && !h2) {
        gamma = lmi.getGamma();
        factorT11(blocksOf(*r.working));
    }
    return true;
}

// T11 with T11 T11' = (gamma^2 I - Dw'Dw)^-1, Dw = D11 - D12 Hw; false when it cannot be factored.
bool OptimumGramian::factorT11(const Blocks& b) {
    Matrix Dw = b.D11 - b.D12 * Hw;
    Matrix T = Matrix::diagonal(nd, gamma * gamma) - Dw.transpose() * Dw;
    if (!chol(T)) return false;
    T11 = inv(T);
    return true;
}

void OptimumGramian::approach(Run& r) {
    if (solveLmi(r)) return;
    for (int i = 0; i < 20; ++i) {
        Blocks b = blocksOf(*r.working);
        if (isDiscrete()) {
            riccatid(b.A, b.B2, b.C1, b.D12, H, R);
        } else {
            riccati(b.A, b.B2, b.C1, b.D12, H, R, r.alfa);
            H = b.B2.transpose() * gramian() + b.D12.transpose() * b.C1;
        }
        std::unique_ptr<DynOp> loop = close(*r.working, H);
        printPoles("closed loop poles", *loop);
        if (!loop->isStable()) {
            std::cout << "Warning closed loop poles are not stable" << std::endl;
            if (r.lastGood.rowNumber() > 0) H = r.lastGood;
            break;
        }
        r.lastGood = H;
        reportIteration(loop->normH2());
        recurse(polesOf(*loop), H);
        if (checkStop(owner)) break;
    }
}

void OptimumGramian::refine(Run& r) {
    if (solveLmi(r)) {
        if (!r.stepByStep) {
            if (!r.useH2) updateDisturbanceGain(r);
            return;
        }
    }
    if (r.stepByStep) {
        factorGramian();
        if (!stepReport()) return;
    } else if (!r.useH2 && !r.continueFlag) {
        settleWithoutDisturbance(r);
    }
    double e0 = 0.0;
    converged = false;
    for (unsigned k = 0; (r.useH2 && gainAdapt < 1.0) || k < r.maxIterations; ++k)
        if (refineStep(r, k, e0)) break;
    // The last update is not yet checked: the results always hold a stabilising H.
    if (r.lastGood.rowNumber() > 0 && !close(*r.working, H)->isStable()) H = r.lastGood;
}

// A fresh H-infinity iteration starts from the gain the same iteration reaches with the
// worst-case disturbance held at zero, the H2 optimum of the system: from a placed start whose
// gramian is large, the disturbance term would make the first iterations diverge.
void OptimumGramian::settleWithoutDisturbance(Run& r) {
    std::cout << "the disturbance held at zero until the gain settles" << std::endl;
    r.withoutDisturbance = true;
    L = Matrix(nd, L.columnNumber());
    double e0 = 0.0;
    for (unsigned k = 0; k < r.maxIterations; ++k)
        if (refineStep(r, k, e0)) break;
    r.withoutDisturbance = false;
    updateDisturbanceGain(r);
}

// One iteration; the answer is whether the iteration ends.
bool OptimumGramian::refineStep(Run& r, unsigned k, double& e0) {
    if (r.useH2) weighObjectives(r);  // gainAdapt may come from the "Next Step" dialogue
    std::unique_ptr<DynOp> loop = close(*r.working, H);
    printPoles("closed loop poles", *loop);
    if (r.stepByStep && k > 1) {
        factorGramian();
        if (!stepReport()) return true;
    }
    if (!loop->isStable()) {
        std::cout << "Warning closed loop poles are not stable" << std::endl;
        if (r.lastGood.rowNumber() > 0) H = r.lastGood;
        return true;
    }
    r.lastGood = H;
    Matrix poles = polesOf(*loop);
    double h2 = loop->normH2();
    reportIteration(h2);
    if (!r.useH2) loop->addOutputs(L, Matrix(0, 0));
    loop->gramianOf(&R);
    householder::repairSigns(R, Rprev);
    double e = normTriangular(R - Rprev, true), rel = 0.0;
    if (k == 0) e0 = e;
    if (k > 0) {
        double value = normTriangular(R, true);
        rel = value == 0.0 ? e : e / value;
        std::cout << "iter. = " << k << ",\ngramian norm value  " << value << ", rel. conv. = " << rel
                  << " abs. conv. " << e << std::endl;
        printNamed(h2, "H2 norm");
    }
    Rprev = R;
    if (k % 2 == 1 && 100.0 * e0 < e - e0) {
        reportError(SEV_WARNING, isDiscrete() ? divergenceDiscrete : divergenceContinuous);
        return true;
    }
    updateGain(r);
    if (adaptToPoles(r, poles, k)) L = Matrix(nd, L.columnNumber());
    if (!r.useH2 && !r.withoutDisturbance && !updateDisturbanceGain(r)) {
        reportError(SEV_WARNING, isDiscrete() ? divergenceDiscrete : divergenceContinuous);
        return true;
    }
    if (k != 0 && rel < 1e-5) {
        std::cout << "Convergence reached" << std::endl;
        converged = !r.withoutDisturbance;
        return true;
    }
    if (checkStop(owner)) return true;
    if (gainAdapt < 1.0 && r.useH2) {
        gainAdapt = std::min(gainAdapt * 2.5, 1.0);
        weighObjectives(r);
    }
    return false;
}

void OptimumGramian::updateGain(Run& r) {
    Blocks b = blocksOf(*r.working);
    Matrix Q = gramian(), B2t = b.B2.transpose(), D12t = b.D12.transpose();
    if (!isDiscrete()) {
        H = B2t * Q + D12t * b.C1;
        return;
    }
    Matrix S = inv(Matrix::diagonal(nc, 1.0) + B2t * Q * b.B2);
    H = S * (B2t * Q * b.A + D12t * b.C1);
    if (!r.useH2) Hw = S * (B2t * Q * b.B1 + D12t * b.D11);
}

// L = T11'N; false when the discrete T11 cannot be factored, gamma being too small for Q.
bool OptimumGramian::updateDisturbanceGain(Run& r) {
    Blocks b = blocksOf(*r.working);
    Matrix Q = gramian();
    Matrix Bw = b.B1 - b.B2 * Hw, Dw = b.D11 - b.D12 * Hw, Cz = b.C1 - b.D12 * H;
    Matrix N = Bw.transpose() * Q + Dw.transpose() * Cz;
    if (isDiscrete()) {
        Matrix M = Matrix::diagonal(nd, gamma * gamma) - Dw.transpose() * Dw - Bw.transpose() * Q * Bw;
        if (!chol(M)) return false;
        T11 = inv(M);
        N = Bw.transpose() * Q * (b.A - b.B2 * H) + Dw.transpose() * Cz;
    }
    L = T11.transpose() * N;
    return true;
}

// The objectives of an H2 design weighted by gainAdapt, D12 kept: in effect the weight of the
// controls grows by 1/gainAdapt. An H-infinity design keeps its objectives.
void OptimumGramian::weighObjectives(Run& r) {
    double weight = r.useH2 ? gainAdapt : 1.0;
    Matrix C = r.unscaled->stateC(), D = r.unscaled->getD();
    for (unsigned i = 0; i < np; ++i) {
        for (unsigned j = 0; j < C.columnNumber(); ++j) C(i, j) *= weight;
        for (unsigned j = 0; j < nd; ++j) D(i, j) *= weight;
    }
    r.working = like(DynOp(r.unscaled->stateA(), r.unscaled->stateB(), C, D, nc, nm));
}

// The automatic adaptation of the H2 design: a closed loop whose poles spread over wMaxRange or
// more has the objectives weighed down by 0.25. Past the iteration limit the weight only recovers.
bool OptimumGramian::adaptToPoles(Run& r, const Matrix& poles, unsigned k) {
    if (!r.useH2 || k >= r.maxIterations || poles.rowNumber() == 0) return false;
    double lo, hi;
    unsigned fastest;
    spread(continuousPoles(poles), lo, hi, fastest);
    if (lo > 0.0 && hi / lo < wMaxRange) return false;
    gainAdapt *= 0.25;
    std::cout << "aut. adapt input gain " << gainAdapt << std::endl;
    weighObjectives(r);
    return true;
}
