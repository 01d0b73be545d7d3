// LMI, the state-feedback synthesis of the design as linear matrix inequalities solved by CSDP.
#ifndef CONTROL_LMI_H
#define CONTROL_LMI_H

#include <iosfwd>

#include "algebra/algebra.h"
#include "algebra/matrix.h"

class DynOp;

extern Class class_LMI;

// The system is partitioned as a design sees it: the first nd inputs are disturbances w, the last
// nc controls u; the first np outputs objectives z, the last nm measures. The feedback is
// u = -H x; L is the worst-case disturbance gain w = L x, (1/gamma) B1' Q with Q the gramian.
// A DiscDynOp gives the discrete-time inequalities. Every solve answers 0 on success.
class LMI : public Algebra {
    DECLARE_MEMBERS(LMI)
public:
    LMI();
    explicit LMI(const DynOp& system);

    // H-infinity: a feedback that keeps the norm from w to z below gamma (bound), or the one of
    // least gamma (minimum). With useH2 the H2 problems: the norm below gamma, or the least one.
    int solveBound(double gamma, bool useH2 = false);
    int solveMinimum(bool useH2 = false);

    Matrix getH() const { return H; }
    Matrix getL() const { return L; }
    Matrix getGramian() const { return Q; }  // n x n, Q = X^-1
    double getGamma() const { return gamma; }

    void printOn(std::ostream& os) const override;

private:
    // (The implementation adds what it needs here.)
    unsigned n = 0, nm = 0, np = 0, nc = 0, nd = 0;
    bool discrete = false;
    Matrix A, B1, B2, C1, D11, D12;
    double gamma = 0.0;
    int kind = 0;
    Matrix H, L, Q;
};

#endif
