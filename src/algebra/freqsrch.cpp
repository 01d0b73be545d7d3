// The two-phase search for the peak of a frequency gain.
#include "algebra/freqsrch.h"

#include <cmath>

double walkToPeak(const std::function<double(double)>& gain, double peak, double& low,
                  const SearchSteps& steps) {
    double x = peak, c = steps.first, G = 0.0, B = 0.0, F = x;
    bool up = true;
    for (int evaluation = 0; evaluation < 30; ++evaluation) {
        double g = gain(x);
        if (evaluation == 0) {
            G = B = g;
            F = x;
            x = steps.forward(x, c);
            continue;
        }
        if (g > B) {
            B = g;
            F = x;
        }
        if (up && (g > G || F > x)) {
            x = steps.forward(x, c);
        } else if (!up && (g > G || F < x) && x >= low) {
            x = steps.back(x, c);
            if (x < low) {
                low = steps.forward(x, c);
                return g;
            }
        } else if (up) {
            c = steps.shrink(c);
            x = steps.back(x, c);
            if (x < low) {
                low = steps.forward(x, c);
                return g;
            }
            up = false;
        } else {
            c = steps.shrink(c);
            x = steps.forward(x, c);
            up = true;
        }
        G = g;
    }
    low = F;
    return B;
}

double peakGain(const std::function<double(double)>& gain, double& wStart) {
    double best = -1.0, peak = wStart;
    for (int k = 0; k < 8; ++k) {
        double w = wStart * std::pow(10.0, k);
        double g = gain(w);
        if (g > best) {
            best = g;
            peak = w;
        }
    }
    if (peak <= wStart) return best;
    SearchSteps tenfold = {1e8, [](double w, double c) { return w * c; },
                           [](double w, double c) { return w / c; }, [](double c) { return std::sqrt(c); }};
    return walkToPeak(gain, peak, wStart, tenfold);
}
