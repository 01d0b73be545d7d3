// Time responses of a system, ready to plot: step, impulse, free and random-noise responses.
#ifndef CONTROL_RESPONSE_H
#define CONTROL_RESPONSE_H

#include "algebra/matrix.h"
#include "algebra/vector.h"
#include "control/dynop.h"

// A response as plain data: the abscissa (times in s or frequencies in rad/s) and one row of
// values per abscissa point, one column per channel.
struct Response {
    Vector abscissa;
    Matrix values;
};

// Simulates a system at a fixed step: a discrete system at its sampling time (1 when that is not
// positive), a continuous one through its exact zero-order-hold discretisation at dt. Every
// response holds steps + 1 instants 0, h, ..., steps h, h the step, and one column per output, or
// only the selected one. An input or output past the system's raises INDEXRANGE, so does a
// system without outputs; a continuous system with dt not positive raises ASSERTFLD.
class Simulator {
public:
    static const int allOutputs = -1;

    Simulator(const DynOp& s, double dt, int output = allOutputs);

    double step() const { return h; }
    Response stepResponse(unsigned input, unsigned steps) const;
    // A continuous system leaves out the Dirac pulse of its direct gain; a discrete one answers
    // to the unit pulse at instant 0.
    Response impulseResponse(unsigned input, unsigned steps) const;
    // From the initial state x0, of the system's order (else DIFFMTRXDIM), with no input.
    Response freeResponse(const Vector& x0, unsigned steps) const;
    // White Gaussian noise of standard deviation sigma on the input, held over each step; the
    // same seed gives the same response.
    Response noiseResponse(unsigned input, double sigma, unsigned long seed, unsigned steps) const;

private:
    // The input's columns of the discrete B and of D.
    void inputColumns(unsigned input, Matrix& b, Matrix& d) const;
    // x(k+1) = Ad x(k) + b u(k), y(k) = C x(k) + d u(k) from x(0) = x for each u(k).
    Response run(Matrix x, const Matrix& b, const Matrix& d, const Vector& u) const;

    bool discrete;
    double h;
    Matrix Ad, Bd;   // the discrete state matrices
    Matrix B, C, D;  // the system's own
};

#endif
