// LMI, the state-feedback synthesis of the design as linear matrix inequalities solved by CSDP.
#ifndef CONTROL_LMI_H
#define CONTROL_LMI_H

#include <iosfwd>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/matrix.h"

class DynOp;

extern Class class_LMI;

// The system is partitioned as a design sees it: the first nd inputs are disturbances w, the last
// nc controls u; the first np outputs objectives z, the last nm measures. The feedback is
// u = -H x; L is the worst-case disturbance gain w = L x, (1/gamma) B1' Q with Q the gramian.
// A discrete system (isDiscreteTime) gives the discrete-time inequalities. Every solve answers
// 0 on success; a failure prints "LMI failed, go back to iterations" and answers the solver's
// code, or -1.
class LMI : public Algebra {
    DECLARE_MEMBERS(LMI)
public:
    LMI();
    explicit LMI(const DynOp& system);

    // H-infinity: a feedback that keeps the norm from w to z below gamma (bound, solved
    // boundAccuracy below it), or the one of least gamma (minimum). With useH2 the H2 problems:
    // the norm below gamma, or the least one.
    int solveBound(double gamma, bool useH2 = false);
    static const double boundAccuracy;
    int solveMinimum(bool useH2 = false);

    Matrix getH() const { return H; }
    Matrix getL() const { return L; }
    // The feed-forward of the disturbance, u = -H x - Hw w: that of a discrete H-infinity design,
    // zero otherwise.
    Matrix getHw() const { return Hw; }
    // n x n: X^-1, times gamma for H-infinity; zero on the states the objectives do not see, so
    // only semidefinite when there are such states.
    Matrix getGramian() const { return Q; }
    // The bound reached: gamma itself for the H-infinity bound, the least one found for the
    // H-infinity minimum, the bound on the H2 norm for the H2 problems.
    double getGamma() const { return gamma; }

    void printOn(std::ostream& os) const override;

private:
    enum Kind { hinfBound, hinfMinimum, h2Bound, h2Minimum };
    struct Unknowns;

    bool isH2() const { return kind == h2Bound || kind == h2Minimum; }
    // The order of the second symmetric unknown Z: np for H2, seen for the H-infinity bound.
    unsigned zOrder() const { return isH2() ? np : kind == hinfBound ? seen : 0; }
    bool isStable(const Matrix& closedLoopA);
    int solve();
    bool readBack(const std::vector<double>& y, double gap);
    int fail(int code) const;

    // The decision variables: X's upper triangle, Z's, Y by columns, W by columns, then gamma
    // (H-infinity minimum); unpack reads them from y (0-based) into the unknowns.
    unsigned variableCount() const;
    // A discrete H-infinity design is a full-information one: u = -H x - W w, W a further unknown.
    unsigned feedForwardCount() const;
    Unknowns unpack(const std::vector<double>& y) const;
    // The constraint blocks, each affine in the unknowns and required to be positive definite.
    std::vector<Matrix> constraints(const Unknowns& v) const;
    std::vector<double> objective() const;

    // The problem is solved on the states the objectives see: seen = basis x, an orthogonal part of
    // the staircase of (A, C1). The other states are left without feedback; they must be stable.
    unsigned n = 0, nm = 0, np = 0, nc = 0, nd = 0, seen = 0;
    bool discrete = false;
    bool hiddenStable = true;
    Matrix basis;
    Matrix A, B1, B2, C1, D11, D12;  // of the seen states
    double gamma = 0.0;
    int kind = 0;
    Matrix H, L, Q, Hw;
};

#endif
