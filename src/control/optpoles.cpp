// OptimumGramian: pole placement on the controllable subsystem, the frequency window of the
// poles, and the recursion that narrows a too wide spread of the closed-loop poles.
#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>

#include "control/discdyn.h"
#include "control/optgram.h"

namespace {

typedef std::complex<double> Cx;

// The poles (rows re, im) as continuous-time values s, or back: in discrete time s = ln(z)/T.
// A real z keeps its sign through the magnitude, so that it stays real.
Matrix toS(const Matrix& poles, double T) {
    Matrix s(poles);
    if (T == 0.0) return s;
    for (unsigned i = 0; i < poles.rowNumber(); ++i) {
        Cx z(poles(i, 0), poles(i, 1));
        Cx v = poles(i, 1) == 0.0 ? Cx(std::log(std::abs(z)), 0.0) : std::log(z);
        s(i, 0) = v.real() / T;
        s(i, 1) = v.imag() / T;
    }
    return s;
}

Matrix fromS(const Matrix& s, const Matrix& poles, double T) {
    Matrix z(s);
    if (T == 0.0) return z;
    for (unsigned i = 0; i < s.rowNumber(); ++i) {
        Cx v = std::exp(Cx(s(i, 0), s(i, 1)) * T);
        double sign = poles(i, 1) == 0.0 && s(i, 1) == 0.0 && poles(i, 0) < 0.0 ? -1.0 : 1.0;
        z(i, 0) = sign * v.real();
        z(i, 1) = s(i, 1) == 0.0 ? 0.0 : v.imag();
    }
    return z;
}

// Continuous-time poles moved into the window [lo, hi] of magnitudes, pole i (from 0) by i
// tenths, so that the moved ones spread: a real pole slower than lo goes to -(1 + 0.1 i) lo and
// one faster than hi to -(1 - 0.1 i) hi; a pair under lo becomes the real poles -(i + 1) lo and
// -(i + 2) lo, a pair over hi is scaled to the magnitude (1 - 0.1 i) hi. Unstable real parts
// are reflected, and the real part of a pair is at least lo in size.
Matrix intoWindow(Matrix s, double lo, double hi) {
    for (unsigned i = 0; i < s.rowNumber(); ++i) {
        double re = -std::fabs(s(i, 0)), im = s(i, 1), shrink = std::max(1.0 - 0.1 * i, 0.1);
        bool pair = im != 0.0 && i + 1 < s.rowNumber();
        if (!pair) {
            s(i, 0) = re > -lo ? -(1.0 + 0.1 * i) * lo : re < -hi ? -shrink * hi : re;
            s(i, 1) = 0.0;
            continue;
        }
        double magnitude = std::hypot(re, im);
        if (magnitude < lo) {
            s(i, 0) = -(i + 1.0) * lo;
            s(i + 1, 0) = -(i + 2.0) * lo;
            s(i, 1) = s(i + 1, 1) = 0.0;
        } else {
            double scale = magnitude > hi ? shrink * hi / magnitude : 1.0;
            s(i, 0) = s(i + 1, 0) = std::min(re, -lo) * scale;
            s(i, 1) = im * scale;
            s(i + 1, 1) = -im * scale;
        }
        ++i;
    }
    return s;
}

double samplingTimeOf(const DynOp& s) {
    if (!s.isDiscreteTime()) return 0.0;
    double T = s.samplingTimeOf();
    return T > 0.0 ? T : 1.0;
}

}  // namespace

// Without a table the window reaches from the fastest pole, or from wMin wMaxRange when that is
// faster (in discrete time no further than 3/T), down to a tenth of it: a start whose slowest
// poles are not far below its fastest keeps the first gramians of the iteration well scaled.
void OptimumGramian::assignPoles(const Matrix& poles, bool store) {
    if (conn == 0) return;
    double T = samplingTimeOf(*fullSystem);
    Matrix desired(conn, 2);
    if (poles.rowNumber() == conn && poles.columnNumber() >= 2) {
        desired.setSubMatrix(0, 0, dynop::block(poles, 0, 0, conn, 2), conn, 2);
    } else {
        Matrix current = polesOf(conSubSystem->stateFeedback(Hcon, &controlIndices));
        Matrix s = toS(current, T);
        double lo, hi;
        unsigned fastest;
        spread(s, lo, hi, fastest);
        hi = std::max(hi, wMin * wMaxRange);
        if (T > 0.0) hi = std::min(hi, 3.0 / T);
        desired = fromS(intoWindow(s, std::max(wMin, 0.1 * hi), hi), current, T);
    }
    Matrix K = conSubSystem->place(desired, &controlIndices);
    Hcon = K.rowNumber() == nc && K.columnNumber() == conn ? K : Matrix(nc, conn);
    std::unique_ptr<DynOp> loop = close(*conSubSystem, Hcon);
    std::cout << "desired poles " << desired << "\nachieved poles " << polesOf(*loop) << std::endl;
    printNamed(loop->normH2(), "closed loop H2 norm");
    if (!store) return;
    this->store(*loop, "Error");
    storeGain(Hcon);
}

Matrix OptimumGramian::continuousPoles(const Matrix& poles) const {
    return toS(poles, samplingTimeOf(*fullSystem));
}

// The smallest and largest |re| + |im| of the poles, and the row of the largest.
void OptimumGramian::spread(const Matrix& s, double& lo, double& hi, unsigned& fastest) const {
    lo = HUGE_VAL;
    hi = 0.0;
    fastest = 0;
    for (unsigned i = 0; i < s.rowNumber(); ++i) {
        double m = std::fabs(s(i, 0)) + std::fabs(s(i, 1));
        if (!std::isfinite(m)) continue;  // a discrete pole at the origin
        lo = std::min(lo, m);
        if (m > hi) {
            hi = m;
            fastest = i;
        }
    }
}

// The spread is judged on continuous-time values: hi/lo, or hi alone when lo is not above 1.
bool OptimumGramian::recurse(const Matrix& poles, Matrix& gain) {
    if (poles.rowNumber() != conn || conn == 0) return false;
    double T = samplingTimeOf(*fullSystem);
    Matrix s = toS(poles, T);
    for (unsigned i = 0; i < s.rowNumber(); ++i) s(i, 0) = -std::fabs(s(i, 0));
    double lo, hi;
    unsigned fastest;
    spread(s, lo, hi, fastest);
    double ratio = lo > 1.0 ? hi / lo : hi;
    if (ratio < wMaxRange) return false;
    std::cout << "poles in recurse before" << (T > 0.0 ? "\n" : " ") << poles << std::endl;
    for (unsigned row = 0; row < conn; ++row) {
        bool partner = row != fastest && s(fastest, 1) != 0.0 && s(row, 0) == s(fastest, 0) &&
                       s(row, 1) == -s(fastest, 1);
        if (row != fastest && !partner) continue;
        for (unsigned c = 0; c < 2; ++c) s(row, c) = s(row, c) / ratio * 10.0;
    }
    assignPoles(fromS(s, poles, T));
    gain = Hcon;
    return true;
}
