// The least H-infinity level an output-feedback compensator can reach, by linear matrix
// inequalities solved by CSDP.
#ifndef CONTROL_LMIOF_H
#define CONTROL_LMIOF_H

class DynOp;

// The least gamma of the plant partitioned as a design sees it (disturbances and controls,
// objectives and measures), continuous or discrete; "gap" and "gamma" are printed. Infinity,
// after "LMI failed, go back to iterations", when the solver fails.
double lmiOutputFeedbackGamma(const DynOp& plant);

#endif
