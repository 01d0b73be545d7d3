// The bilinear map between discrete and continuous time, z = (1 + s) / (1 - s), on state-space systems.
#ifndef CONTROL_BILINEAR_H
#define CONTROL_BILINEAR_H

#include "control/dynop.h"

// The map takes the unit circle onto the imaginary axis, z = exp(j theta) to s = j tan(theta / 2),
// and the unit disc onto the left half-plane, so it keeps H-infinity norms and stability, and it
// commutes with closing loops. Both keep the partition (controls, measures) of the system.

// The continuous image of the discrete (A, B, C, D): needs I + A invertible (no pole at -1); the
// only matrix inverted is I + A.
DynOp continuousImage(const DynOp& discrete);

// The discrete system whose continuous image is the given one: needs I - A invertible (no pole at 1).
DynOp discreteImage(const DynOp& continuous);

#endif
