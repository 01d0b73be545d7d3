// The two-phase search for the peak of a frequency gain.
#include "algebra/freqsrch.h"

#include <cmath>

// Phase one keeps the strict maximum of eight ten-fold samples. Phase two walks from it with a
// step factor that starts at 1e8 and is square-rooted at each turn, 30 evaluations at most,
// keeping the best gain B at F; going below wStart ends the search with the last gain.
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
    double w = peak, c = 1e8, G = 0.0, B = 0.0, F = w;
    bool up = true;
    for (int evaluation = 0; evaluation < 30; ++evaluation) {
        double g = gain(w);
        if (evaluation == 0) {
            G = B = g;
            F = w;
            w *= c;
            continue;
        }
        if (g > B) {
            B = g;
            F = w;
        }
        if (up && (g > G || F > w)) {
            w *= c;
        } else if (!up && (g > G || F < w) && w >= wStart) {
            w /= c;
            if (w < wStart) {
                wStart = w * c;
                return g;
            }
        } else if (up) {
            c = std::sqrt(c);
            w /= c;
            if (w < wStart) {
                wStart = w * c;
                return g;
            }
            up = false;
        } else {
            c = std::sqrt(c);
            w *= c;
            up = true;
        }
        G = g;
    }
    wStart = F;
    return B;
}
