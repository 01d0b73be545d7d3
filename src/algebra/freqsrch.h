// The search for the peak of a frequency gain, shared by transfer matrices and state-space systems.
#ifndef ALGEBRA_FREQSRCH_H
#define ALGEBRA_FREQSRCH_H

#include <functional>

// The peak of gain(w) from wStart: 8 samples at ten-fold steps, keeping the strict maximum (which
// is the answer when it lies at wStart); then a two-way walk from it with a step factor that
// starts at 1e8 and is square-rooted at each turn, 30 evaluations at most, keeping the best gain
// and its frequency, which goes to wStart. Going below wStart ends the walk with the last gain,
// wStart then getting the point where it went below.
double peakGain(const std::function<double(double)>& gain, double& wStart);

#endif
