// HinfNorm, the certified H-infinity norm of a system: the value, its peak frequency and the two
// bounds that enclose the true norm.
#ifndef CONTROL_HINFNORM_H
#define CONTROL_HINFNORM_H

#include <iosfwd>

// lower is a gain attained at omega (the value reported as norm), upper a level that the gain
// never reaches; an unstable system has all three infinite. omega is infinite when the peak is
// the direct feed-through D, and in rad/s.
struct HinfNorm {
    double norm = 0.0;
    double omega = 0.0;
    double lower = 0.0;
    double upper = 0.0;
};

// "norm, at omega = w (between lower and upper)"
std::ostream& operator<<(std::ostream& os, const HinfNorm& h);

#endif
