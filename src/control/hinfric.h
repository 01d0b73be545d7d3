// HinfRiccati, the optimal H-infinity level of the output-feedback problem and its central
// compensator by the two Riccati equations of the state-feedback and filter problems.
#ifndef CONTROL_HINFRIC_H
#define CONTROL_HINFRIC_H

#include "control/dynop.h"

// The plant's partition is a design's: the last controlNumber inputs are the controls u, the
// others the disturbances w; the last measureNumber outputs are the measures y, the others the
// objectives z. Required: states, D12 of full column rank and D21 of full row rank; D11 and D22
// may be anything. A discrete plant (isDiscreteTime) is solved on its image under the bilinear
// map, which keeps the norm of every closed loop and maps the stabilising compensators onto each
// other; it must have no pole at -1. Levels are feasible when a stabilising compensator keeps the
// closed-loop norm from w to z below them.
class HinfRiccati {
public:
    explicit HinfRiccati(const DynOp& plant);

    // False, after the console line of the failing condition, when the plant is not one of the above.
    bool isAdmissible() const { return admissible; }
    // The feasibility test at gamma: the bound of D11, the two stabilising solutions X >= 0 and
    // Y >= 0, and the coupling: spectral radius of X Y below gamma^2.
    bool isFeasible(double gamma) const;
    // The least feasible level by bisection to a relative tolerance, the value returned being
    // feasible; infinity, after a console line, when the plant is not admissible or no level up to
    // 1e12 is feasible.
    double optimalGamma(double tolerance = 1e-6) const;
    // The same for the state-feedback (full-information) problem: the bound of D11 on the
    // objectives the controls do not reach and the first equation alone. A lower bound of the above.
    double stateFeedbackGamma(double tolerance = 1e-6) const;
    // The central compensator at a feasible gamma, in the plant's time domain (a discrete plant's
    // compensator is discrete: wrap it with the sampling time), measures in, controls out, for
    // DynOp::closedLoop (u = -K y). An infeasible gamma gives a zero gain after a console line.
    DynOp compensator(double gamma) const;

private:
    // The problem in normalised coordinates: z and w turned orthogonally, u and y scaled so that
    // D12 = [0; I] and D21 = [0 I]; continuous time. Tu and Ty take the normalised u and y back.
    struct Normalised {
        unsigned n = 0, m1 = 0, m2 = 0, p1 = 0, p2 = 0;
        Matrix A, B1, B2, C1, C2, D11, D12, D21, D22, Tu, Ty;
    };
    // The stabilising solutions at a level and their gains: F = -R^-1 (D1.' C1 + B' X) of the
    // control equation, L = -(B1 D.1' + Y C') R~^-1 of the filter equation, B = [B1 B2], C = [C1; C2].
    struct Solution {
        Matrix X, Y, F, L;
    };
    bool normalise(const DynOp& plant);
    bool solve(double gamma, bool stateFeedbackOnly, Solution& s) const;
    double bisect(bool stateFeedbackOnly, double tolerance) const;
    double parrottBound(bool stateFeedbackOnly) const;
    DynOp centralCompensator(const Solution& s, double gamma) const;

    Normalised p;
    bool admissible = false;
    bool discrete = false;
};

#endif
