// OptimumGramian: the results stage of an optimisation, the step-by-step reports with the
// "Next Step" dialogue, and the factor of the gramian.
#include <cmath>
#include <iostream>

#include "control/askparam.h"
#include "control/optgram.h"
#include "control/workspc.h"

// The loops of the design go to the workspace, the Matlab script and their files; the answer
// is the H-infinity norm of the loop as it acts, with the feed-forward Hw when there is one.
double OptimumGramian::results(Run& r) {
    bool discrete = isDiscrete();
    std::unique_ptr<DynOp> withD11 = closeWithFeedForward(*r.working, H);
    store(*withD11, "ErrorWithD11", "ErrorWithD11");
    if (!r.useH2) storeInner(r);
    printFullGain(r);
    std::unique_ptr<DynOp> error = close(*r.working, H);
    store(*error, "Error", "Error");
    printPoles(discrete ? " system poles" : " system poles in exit from minimize", *error);
    printNamed(gamma, "gamma =");
    auto norms = [&](const DynOp& loop) {
        double w = r.minFreq > 0.0 ? r.minFreq : wMin, norm = loop.normHinfInFrequency(w);
        std::cout << kindText << " error H-infinite norm " << norm << std::endl;
        if (!discrete) std::cout << kindText << " error H-2 norm " << loop.normH2() << std::endl;
        return norm;
    };
    double norm = norms(*error);
    if (!isSmall(Hw, zeroTolerance)) {
        std::cout << "direct disturbance feed-forward gain present, Hw = " << Hw << "\n"
                  << (discrete ? "in the presence of disturbance feedforward gain the new norm is:"
                               : "in the presence of disturbance feedforward gain the norm is:")
                  << std::endl;
        norm = norms(*withD11);
    }
    if (gainAdapt < 1.0)
        std::cout
            << word("Warning, the weight of the control is too small,\nit has been increased of a factor of ",
                    "Warning, the measurement noise level is too small,\nit has been increased of a factor "
                    "of ")
            << 1.0 / gainAdapt << std::endl;
    return norm;
}

// The inner operator from v = gamma w to [z; T11^-1 w - L x]: completing the square with the
// Riccati solution Q gives |z|^2 + |T11^-1 w - L x|^2 = gamma^2 |w|^2 less the change of x'Q x,
// so that its H-infinity norm is 1. Without D11, in continuous time, T11 = I/gamma and the
// second output is v - L x.
void OptimumGramian::storeInner(Run& r) {
    Blocks b = blocksOf(*r.working);
    Matrix Acl = b.A - b.B2 * H, Bv = (b.B1 - b.B2 * Hw) / gamma;
    Matrix C = dynop::stack(b.C1 - b.D12 * H, -L);
    Matrix D = dynop::stack((b.D11 - b.D12 * Hw) / gamma, inv(T11) / gamma);
    std::unique_ptr<DynOp> inner = like(DynOp(Acl, Bv, C, D));
    double w = r.minFreq > 0.0 ? r.minFreq : wMin;
    std::cout << "H-infinite norm of the resulting inner operator " << inner->normHinfInFrequency(w)
              << " it should be equal 1" << std::endl;
    store(*inner, "Inner");
    std::cout << "L = " << L << std::endl;
    globalWorkspace().store((nameText + "L").asCharPointer(), L);
    Workspace::writeMatlab(L, (nameText + "L").asCharPointer());
}

// The loop under the worst-case disturbance as the feedback sees it: u = -(H + Hw T11 L) x.
void OptimumGramian::printFullGain(Run& r) {
    bool discrete = isDiscrete();
    Matrix full = r.useH2 ? H : H + Hw * T11 * L;
    std::cout << (discrete ? " closed loop poles of" : "closedLoop poles of") << word(" A-B2*H ", " A-K*C2 ")
              << (discrete ? "feedback\n" : "feedback ") << close(*r.working, full)->poles() << "\n"
              << (discrete ? "if some of the poles in one are not moved by the feedback"
                           : "if some of the poles at the origin are not moved by the feedback")
              << "\nrestart by adding a small input noise level\n"
              << (discrete ? "or increasing the threshold min freq. (assigning a value less than one)"
                           : "or increasing the threshold min freq. ")
              << std::endl;
}

// The loop of the system given to make closed by getH, stored with its gain, and the "Next
// Step" dialogue on its H2 norm; false for Cancel.
bool OptimumGramian::stepReport() {
    std::unique_ptr<DynOp> loop = close(*givenSystem(), getH());
    store(*loop, "Error");
    storeGain(getH());
    double h2 = loop->normH2();
    printNamed(h2, "H2 norm");
    return nextStep(h2);
}

void OptimumGramian::reportIteration(double norm) {
    trend.push_back(norm);
    reportIterationNorm(owner, norm);
}

Matrix OptimumGramian::closedLoopPoles() const { return polesOf(*close(*givenSystem(), getH())); }

bool OptimumGramian::nextStep(double h2) {
    ParamRequest request("Next Step", 1);
    request.add("H-2 norm", h2, true).add("Output adaptation gain", gainAdapt);
    if (!askParameters(owner, request)) return false;
    if (request.number(1) > 0.0) gainAdapt = request.number(1);
    printNamed(gainAdapt, "gainAdapt in next step");
    return true;
}

// The gramian Q = V diag(d) V' by the QR iteration; the factor V diag(sqrt d) has the principal
// directions of Q as columns, the largest first.
void OptimumGramian::factorGramian() {
    Matrix Q = gramian();
    Matrix V = qrIterationFull(Q);
    Qfactor = V;
    for (unsigned j = 0; j < Q.columnNumber(); ++j) {
        double d = Q(j, j) > 0.0 ? std::sqrt(Q(j, j)) : 0.0;
        for (unsigned i = 0; i < V.rowNumber(); ++i) Qfactor(i, j) *= d;
    }
    std::cout << "FACTORIZED GRAMIAN " << Qfactor << std::endl;
}
