// The certified H-infinity norm: the two-sided iteration on the imaginary-axis eigenvalues of the
// Hamiltonian for continuous systems, through the bilinear map for discrete ones.
#include "control/hinfnorm.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <vector>

#include "algebra/cmatrix.h"
#include "control/bilinear.h"
#include "control/discdyn.h"
#include "control/extsys.h"
#include "control/schurgain.h"

namespace {

const double infinity = std::numeric_limits<double>::infinity();
// The final level over the gain attained: the bounds end closer than this.
const double relativeGap = 2e-7;
// An eigenvalue of the Hamiltonian is on the imaginary axis when its real part is below this
// fraction of the largest eigenvalue modulus.
const double axisTolerance = 1e-8;
const int iterationLimit = 50;

// Golden-section search for a maximum of gain on [lo, hi], down to a relative width of 1e-5: near
// a peak the gain is flat, so its value is then within about 1e-10 of the local maximum.
template <class Gain>
void climb(Gain& gain, double lo, double hi) {
    const double ratio = 0.5 * (std::sqrt(5.0) - 1.0);
    double a = hi - ratio * (hi - lo), b = lo + ratio * (hi - lo), ga = gain(a), gb = gain(b);
    for (int k = 0; k < 60 && hi - lo > 1e-5 * (hi + lo) / 2.0; ++k) {
        if (ga >= gb) {
            hi = b, b = a, gb = ga;
            a = hi - ratio * (hi - lo), ga = gain(a);
        } else {
            lo = a, a = b, ga = gb;
            b = lo + ratio * (hi - lo), gb = gain(b);
        }
    }
}

HinfNorm infiniteNorm(const char* domain) {
    std::cout << "certified H-infinite norm: the " << domain
              << " system is not stable, its H-infinite norm is infinite" << std::endl;
    return {infinity, 0.0, infinity, infinity};
}

// The distinct non-negative frequencies of the eigenvalues on the imaginary axis, ascending,
// with 0 first: the gain crosses the level only there.
std::vector<double> axisFrequencies(const Matrix& values) {
    double largest = 0.0;
    for (unsigned i = 0; i < values.rowNumber(); ++i)
        largest = std::max(largest, std::hypot(values(i, 0), values(i, 1)));
    std::vector<double> w(1, 0.0);
    for (unsigned i = 0; i < values.rowNumber(); ++i)
        if (std::fabs(values(i, 0)) <= axisTolerance * largest) w.push_back(std::fabs(values(i, 1)));
    std::sort(w.begin(), w.end());
    w.erase(std::unique(w.begin(), w.end()), w.end());
    return w;
}

// A peak that the local search found just off 0, where the gain is flat, is reported at 0 when
// the gain there is within the bounds' gap: the attained gain stays a lower bound.
template <class Gain>
HinfNorm atRestWhenFlat(const Gain& gain, HinfNorm h) {
    if (h.omega == 0.0 || !std::isfinite(h.omega)) return h;
    double atRest = gain.at({0.0, 0.0});
    if (!(atRest >= h.lower * (1.0 - relativeGap))) return h;
    return {atRest, 0.0, atRest, h.upper};
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const HinfNorm& h) {
    return os << h.norm << ", at omega = " << h.omega << " (between " << h.lower << " and " << h.upper << ")";
}

bool DynOp::feedThroughNorm(HinfNorm& result) const {
    if (!isStatic && inputNumber_ > 0 && outputNumber_ > 0) return false;
    double d = D.rowNumber() && D.columnNumber() ? CMatrix(D).maxSingularValue() : 0.0;
    result = {d, 0.0, d, d};
    return true;
}

HinfNorm DynOp::certifiedNormHinf() const {
    HinfNorm result;
    if (feedThroughNorm(result)) return result;
    SchurGain gain(A, B, C, D);  // its eigenvalues decide stability as isStable does
    for (std::complex<double> p : gain.eigenvalues())
        if (p.real() > -tollPoles) return infiniteNorm("continuous");
    return hamiltonianNorm(gain);
}

HinfNorm DynOp::hamiltonianNorm() const { return hamiltonianNorm(SchurGain(A, B, C, D)); }

// The lower bound is the largest gain seen, started at infinity (D), 0 and the pole
// frequencies, then raised by a local search between the probes next to the best one. At the
// level just above it, the imaginary-axis eigenvalues of the Hamiltonian cut the frequency axis
// into intervals; the gain at their midpoints raises the lower bound, a local search in the
// interval of the highest midpoint raises it further, and when no midpoint exceeds the level the
// level is an upper bound. The searches are cheap next to the Hamiltonian's eigenvalues, and save
// most of its solutions.
HinfNorm DynOp::hamiltonianNorm(const SchurGain& gain) const {
    double best = CMatrix(D).maxSingularValue(), peak = infinity;
    auto probe = [&](double w) {
        double g = gain.at({0.0, w});
        if (g > best) best = g, peak = w;
        return g;
    };
    std::vector<double> probed(1, 0.0);
    for (std::complex<double> p : gain.eigenvalues()) {
        probed.push_back(std::fabs(p.imag()));
        probed.push_back(std::abs(p));
    }
    std::sort(probed.begin(), probed.end());
    probed.erase(std::unique(probed.begin(), probed.end()), probed.end());  // a pair's two poles
    for (double w : probed) probe(w);
    if (peak < infinity) {
        auto next = std::upper_bound(probed.begin(), probed.end(), peak);
        auto previous = std::lower_bound(probed.begin(), probed.end(), peak);
        double lo = previous == probed.begin() ? 0.0 : *(previous - 1);
        climb(probe, lo, next == probed.end() ? 2.0 * peak + 1.0 : *next);
    }
    for (int iteration = 0; iteration < iterationLimit; ++iteration) {
        double level = std::max((1.0 + relativeGap) * best, 1e-150);
        std::vector<double> w = axisFrequencies(numerics().hamiltonianEigenvalues(hamiltonianAt(level)));
        size_t highest = w.size();
        double highestGain = level;
        for (size_t k = 0; k + 1 < w.size(); ++k) {
            double g = probe((w[k] + w[k + 1]) / 2.0);
            if (g > highestGain) highestGain = g, highest = k;
        }
        if (highest == w.size()) return atRestWhenFlat(gain, {best, peak, best, level});
        climb(probe, w[highest], w[highest + 1]);
    }
    std::cout << "certified H-infinite norm: the bounds did not meet in " << iterationLimit << " iterations"
              << std::endl;
    return {best, peak, best, infinity};
}

// The continuous image under the bilinear map has the same norm, its peak at the angle theta of
// s = j tan(theta / 2). The only matrix inverted is I + A, whose eigenvalues lie in the disc of
// radius 1 about 1 for a stable A: rounding grows with its condition, which only a pole close to
// -1 makes large.
HinfNorm DiscDynOp::certifiedNormHinf() const {
    HinfNorm result;
    if (feedThroughNorm(result)) return result;
    if (!isStable()) return infiniteNorm("discrete");
    result = continuousImage(DynOp(A, B, C, D, 0, 0, 0, false)).hamiltonianNorm();
    result.omega = 2.0 * std::atan(result.omega) / period();
    return result;
}

HinfNorm ExtendedSystem::certifiedNormHinf() const {
    return isDiscrete() ? DiscDynOp::certifiedNormHinf() : DynOp::certifiedNormHinf();
}
