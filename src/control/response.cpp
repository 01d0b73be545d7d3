// Simulator: time responses by the recursion of the discrete state equation.
#include "control/response.h"

#include "control/discdyn.h"
#include "quill/quillerr.h"
#include "quill/random.h"

using dynop::block;

Simulator::Simulator(const DynOp& s, double dt, int output)
    : discrete(s.isDiscreteTime()),
      h(discrete ? s.samplingTimeOf() : dt),
      Ad(s.stateA()),
      Bd(s.stateB()),
      B(Bd),
      C(s.stateC()),
      D(s.getD()) {
    unsigned p = s.outputNumber();
    if (p == 0 || output < allOutputs || output >= int(p))
        setError(INDEXRANGE, SEV_ERROR, "Simulator", "output", output);
    if (output != allOutputs) {
        C = block(C, unsigned(output), 0, 1, C.columnNumber());
        D = block(D, unsigned(output), 0, 1, D.columnNumber());
    }
    // As at the frequency points, a discrete sampling time that is not positive counts as 1.
    if (discrete && h <= 0.0) h = 1.0;
    if (discrete || s.order() == 0) return;
    QASSERT(dt > 0.0);
    discretize(s.stateA(), B, dt, Ad, Bd);
}

void Simulator::inputColumns(unsigned input, Matrix& b, Matrix& d) const {
    if (input >= D.columnNumber()) setError(INDEXRANGE, SEV_ERROR, "Simulator", "input", int(input));
    b = block(Bd, 0, input, Bd.rowNumber(), 1);
    d = block(D, 0, input, D.rowNumber(), 1);
}

Response Simulator::run(Matrix x, const Matrix& b, const Matrix& d, const Vector& u) const {
    unsigned count = u.size(), channels = C.rowNumber();
    Response r{Vector(count), Matrix(count, channels)};
    for (unsigned k = 0; k < count; ++k) {
        r.abscissa[k] = k * h;
        Matrix y = C * x + d * u[k];
        for (unsigned j = 0; j < channels; ++j) r.values(k, j) = y(j, 0);
        x = Ad * x + b * u[k];
    }
    return r;
}

Response Simulator::stepResponse(unsigned input, unsigned steps) const {
    Matrix b, d;
    inputColumns(input, b, d);
    return run(Matrix(Ad.rowNumber(), 1), b, d, Vector(steps + 1, 1.0));
}

// In continuous time the impulse sets the state to the input's column of B at once, after which
// the state moves freely: y(t) = C e^(A t) B.
Response Simulator::impulseResponse(unsigned input, unsigned steps) const {
    Matrix b, d;
    inputColumns(input, b, d);
    Vector pulse(steps + 1);
    if (discrete) {
        pulse[0u] = 1.0;
        return run(Matrix(Ad.rowNumber(), 1), b, d, pulse);
    }
    return run(block(B, 0, input, B.rowNumber(), 1), b, d, pulse);
}

Response Simulator::freeResponse(const Vector& x0, unsigned steps) const {
    unsigned n = Ad.rowNumber();
    if (x0.size() != n) Ad.dimensionError("freeResponse", x0.size(), 1);
    Matrix x(n, 1);
    for (unsigned i = 0; i < n; ++i) x(i, 0) = x0[i];
    return run(x, Matrix(n, 1), Matrix(C.rowNumber(), 1), Vector(steps + 1));
}

Response Simulator::noiseResponse(unsigned input, double sigma, unsigned long seed, unsigned steps) const {
    Matrix b, d;
    inputColumns(input, b, d);
    RandomGauss noise(0.0, sigma, seed);
    Vector u(steps + 1);
    for (unsigned k = 0; k <= steps; ++k) u[k] = noise.next();
    return run(Matrix(Ad.rowNumber(), 1), b, d, u);
}
