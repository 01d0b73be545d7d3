// Seeded random plants in the partition of a design, shared by the tests of the H-infinity routes.
#ifndef TESTS_CONTROL_RANDPLANT_H
#define TESTS_CONTROL_RANDPLANT_H

#include <cmath>
#include <memory>
#include <random>

#include "control/all.h"

// A generated plant: n states, m1 disturbances, m2 controls, p1 objectives, p2 measures; sampled
// with a zero-order hold when T > 0. A is random, its eigenvalues in a disc of radius about 0.6,
// moved by shift on its diagonal (-0.3 leaves a few unstable, -1 none), or, when damped, pairs of
// poles with 2% damping. D11 and D22 are zero unless asked for.
struct Case {
    unsigned n, m1, m2, p1, p2;
    double T, shift;
    bool damped, d11, d22;
};

inline Matrix randomMatrix(std::mt19937& g, unsigned rows, unsigned cols, double scale = 1.0) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Matrix M(rows, cols);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < cols; ++j) M(i, j) = scale * u(g);
    return M;
}

inline Matrix stateMatrix(std::mt19937& g, const Case& c) {
    if (!c.damped) {
        Matrix A = randomMatrix(g, c.n, c.n, 1.0 / std::sqrt(double(c.n)));
        for (unsigned i = 0; i < c.n; ++i) A(i, i) += c.shift;
        return A;
    }
    Matrix A = Matrix::diagonal(c.n, -1.0);
    for (unsigned k = 0; k + 1 < c.n; k += 2) {
        double w = 1.0 + k;
        A(k, k) = A(k + 1, k + 1) = -0.02 * w;
        A(k, k + 1) = w, A(k + 1, k) = -w;
    }
    return A;
}

inline std::unique_ptr<DynOp> plantOf(const Case& c, unsigned seed) {
    std::mt19937 g(seed);
    Matrix A = stateMatrix(g, c);
    Matrix B = randomMatrix(g, c.n, c.m1 + c.m2), C = randomMatrix(g, c.p1 + c.p2, c.n);
    Matrix D = randomMatrix(g, c.p1 + c.p2, c.m1 + c.m2);
    for (unsigned i = 0; i < c.p1 + c.p2; ++i)
        for (unsigned j = 0; j < c.m1 + c.m2; ++j)
            if ((i < c.p1 && j < c.m1 && !c.d11) || (i >= c.p1 && j >= c.m1 && !c.d22)) D(i, j) = 0.0;
    DynOp s(A, B, C, D, c.m2, c.p2, 0, false);
    if (c.T > 0.0) return std::unique_ptr<DynOp>(new DiscDynOp(s, false, c.T));
    return std::unique_ptr<DynOp>(new DynOp(s));
}

// The closed loop with the plant's time domain, its certified norm.
inline HinfNorm loopNorm(const DynOp& plant, const DynOp& compensator) {
    DynOp loop = plant.closedLoop(compensator);
    if (plant.isDiscreteTime()) return DiscDynOp(loop, true, plant.samplingTimeOf()).certifiedNormHinf();
    return loop.certifiedNormHinf();
}

#endif
