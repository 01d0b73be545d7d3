// singularValuePlot: the frequency grid, the half-sampling check and the gains in dB.
#include "control/freqresp.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>

#include "quill/quillerr.h"

namespace {

Vector logGrid(double w0, double w1, unsigned points) {
    Vector w(points);
    double first = std::log(w0), last = std::log(w1);
    for (unsigned k = 0; k < points; ++k)
        w[k] = points == 1 ? w0 : std::exp(first + (last - first) * k / (points - 1));
    return w;
}

double decibels(double gain) { return 20.0 * std::log10(gain); }

}  // namespace

std::string halfSamplingWarning(const DynOp& s, double w1) {
    if (!s.isDiscreteTime() || s.samplingTimeOf() <= 0.0) return std::string();
    double half = M_PI / s.samplingTimeOf();
    if (w1 <= half) return std::string();
    std::ostringstream line;
    line << "Warning: the final frequency range exceeds the half sampling period of " << half
         << " change eventually the range";
    return line.str();
}

Response singularValuePlot(const DynOp& s, double w0, double w1, unsigned points, bool all) {
    unsigned channels = std::min(s.outputNumber(), s.inputNumber());
    if (channels == 0) setError(INDEXRANGE, SEV_ERROR, s.className(), "singularValuePlot", 0);
    QASSERT(0.0 < w0 && w0 <= w1 && points > 0);
    std::string warning = halfSamplingWarning(s, w1);
    if (!warning.empty()) std::cout << warning << std::endl;
    unsigned columns = all ? channels : 1;
    Response r{logGrid(w0, w1, points), Matrix(points, columns)};
    for (unsigned k = 0; k < points; ++k) {
        Vector sigma = s.singularValuesAt(r.abscissa[k]);
        for (unsigned j = 0; j < columns; ++j) r.values(k, j) = decibels(sigma[j]);
    }
    return r;
}
