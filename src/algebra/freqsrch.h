// The search for the peak of a frequency gain, shared by transfer matrices and state-space systems.
#ifndef ALGEBRA_FREQSRCH_H
#define ALGEBRA_FREQSRCH_H

#include <functional>

// How the walk towards the peak moves: its first step, a move forward and back by a step, and
// the smaller step taken at each turn.
struct SearchSteps {
    double first;
    std::function<double(double x, double step)> forward;
    std::function<double(double x, double step)> back;
    std::function<double(double step)> shrink;
};

// The second phase of the search, from the best sample at peak: a two-way walk of 30 evaluations
// at most that keeps the best gain and its point, which goes to low. Going below low ends the
// walk with the last gain, low then getting the point one step forward of where it went below.
double walkToPeak(const std::function<double(double)>& gain, double peak, double& low,
                  const SearchSteps& steps);

// The peak of gain(w) from wStart: 8 samples at ten-fold steps, keeping the strict maximum (which
// is the answer when it lies at wStart); then the walk from it with a step factor that starts at
// 1e8 and is square-rooted at each turn. wStart gets the frequency found.
double peakGain(const std::function<double(double)>& gain, double& wStart);

#endif
