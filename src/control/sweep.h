// The sweep of an uncertain plant's parameters over their ranges: the closed loop with a fixed
// compensator at every sample, and its worst case.
#ifndef CONTROL_SWEEP_H
#define CONTROL_SWEEP_H

#include <iosfwd>
#include <string>
#include <vector>

#include "control/hinfnorm.h"
#include "control/uncert.h"

struct SweepOptions {
    unsigned grid = 5;       // points per parameter, bounds included (1: the nominal value)
    unsigned samples = 100;  // seeded random samples within the bounds
};

struct SweepSample {
    std::vector<double> values;  // one per parameter
    HinfNorm norm;               // certified norm of the closed loop, infinite when unstable
};

struct SweepReport {
    std::vector<std::string> names;
    unsigned gridCount = 0, randomCount = 0, unstable = 0;
    SweepSample worst;          // the largest norm (an unstable sample first)
    SweepSample firstUnstable;  // meaningful when unstable > 0
};

// The most grid samples a sweep takes.
const unsigned maxGridSamples = 100000;

// False, with the message, when the grid would be larger than maxGridSamples or when the compensator's
// loop channels do not fit the plant's measures and controls.
bool sweepModel(const UncertainModel& model, const DynOp& compensator, const SweepOptions& options,
                SweepReport& report, std::string& error);

// The lines of the report: what was swept, the worst case with the sample, the unstable count.
void printSweep(std::ostream& os, const SweepReport& report);

#endif
