// The conditions of a design problem that no iteration can overcome, checked before the first step.
#ifndef CONTROL_DESIGNCK_H
#define CONTROL_DESIGNCK_H

class ExtendedSystem;

// On the partition of the system, inputs [w | u] and outputs [z | y]: (A, B2) stabilizable,
// (C2, A) detectable, D12 of full column rank, D21 of full row rank, and no invariant zero of
// (A, B2, C1, D12) or (A, B1, C2, D21) on the imaginary axis (the unit circle in discrete time).
// Prints a line for each condition that fails, with the components involved; true when all hold.
// A partition without controls, measures or disturbances is left to structuralCheck.
bool designProblemCheck(const ExtendedSystem& system);

#endif
