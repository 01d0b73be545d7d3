// The bilinear map between discrete and continuous time: the two directions on (A, B, C, D).
#include "control/bilinear.h"

#include <cmath>

namespace {

// (M (A + sign I), sqrt 2 M B, sqrt 2 C M, D - sign C M B) with M = (I - sign A)^-1: sign -1 maps
// discrete to continuous, +1 back.
DynOp mapped(const DynOp& s, double sign) {
    Algebra algebra;
    unsigned n = s.order();
    Matrix I = Matrix::diagonal(n, 1.0), A = s.stateA(), B = s.stateB(), C = s.stateC();
    Matrix M = algebra.inv(I - A * sign);
    double root2 = std::sqrt(2.0);
    return DynOp(M * (A + I * sign), M * B * root2, C * M * root2, s.getD() + C * M * B * sign,
                 s.controlNumber(), s.measureNumber(), 0, false);
}

}  // namespace

DynOp continuousImage(const DynOp& discrete) { return mapped(discrete, -1.0); }

DynOp discreteImage(const DynOp& continuous) { return mapped(continuous, 1.0); }
