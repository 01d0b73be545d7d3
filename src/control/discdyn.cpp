// DiscDynOp: construction and zero-order-hold discretisation, stability on the unit circle, the
// pole table, the norms, printing and the stream form.
#include "control/discdyn.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "algebra/freqsrch.h"
#include "algebra/ratfun.h"
#include "quill/binstrm.h"
#include "quill/intarray.h"
#include "quill/objio.h"

DEFINE_CLASS(DiscDynOp, DynOp, 1, 0)

// The exponential of [A B; 0 0] T. Its zero rows stay out of any shift, so that a stiff plant
// sampled slowly gives e^(A T) close to zero, not an overflow.
void discretize(const Matrix& A, const Matrix& B, double samplingTime, Matrix& Ad, Matrix& Bd) {
    unsigned n = A.rowNumber(), m = B.columnNumber(), size = n + m;
    Matrix M(size, size);
    M.setSubMatrix(0, 0, A * samplingTime, n, n);
    if (m) M.setSubMatrix(0, n, B * samplingTime, n, m);
    Matrix E = Algebra().exponential(M);
    Ad = E.subMatrix(0, 0, n, n);
    Bd = m ? E.subMatrix(0, n, n, m) : Matrix(n, 0);
}

namespace {

int selectInsideCircle(const double* re, const double* im) { return std::hypot(*re, *im) < 1.0 ? 1 : 0; }

}  // namespace

// Construction

DiscDynOp::DiscDynOp() {}

DiscDynOp::DiscDynOp(const Matrix& a, const Matrix& b, const Matrix& c, const Matrix& d, double T,
                     unsigned controls, unsigned measures, unsigned feedForward)
    : DynOp(a, b, c, d, controls, measures, feedForward, true), samplingTime(T) {}

DiscDynOp::DiscDynOp(const Vector& numerator, const Vector& denominator, double T)
    : DynOp(numerator, denominator), samplingTime(T) {}

DiscDynOp::DiscDynOp(const RationalFunction& f, double T)
    : DiscDynOp(DynOp(f), T <= 0.0 || f.isDiscrete(), T <= 0.0 ? f.samplingTimeOf() : T) {}

DiscDynOp::DiscDynOp(const DynOp& s, bool alreadyDiscrete, double T) : DynOp(s), samplingTime(T) {
    if (alreadyDiscrete || isStatic || isZeroGain || T <= 0.0) return;
    Matrix Ad, Bd;
    discretize(A, B, T, Ad, Bd);
    *this = DiscDynOp(Ad, Bd, C, D, T, controlNumber_, measureNumber_, feedForwardNumber_);
}

DiscDynOp::DiscDynOp(const Matrix& d, double T) : DynOp(d), samplingTime(T) {}

DiscDynOp::DiscDynOp(const DiscDynOp& s) : DynOp(s), samplingTime(s.samplingTime) {}

DiscDynOp::DiscDynOp(const DiscDynOp& s, unsigned controls, unsigned measures, unsigned feedForward)
    : DynOp(s, controls, measures, feedForward), samplingTime(s.samplingTime) {}

DiscDynOp& DiscDynOp::operator=(const DiscDynOp& s) {
    DynOp::operator=(s);
    samplingTime = s.samplingTime;
    return *this;
}

std::unique_ptr<DynOp> DiscDynOp::inTimeDomain(const DynOp& s) const {
    return std::make_unique<DiscDynOp>(timed(s));
}

// Stability

const char* DiscDynOp::typeName() const { return "Discrete-time System"; }

SchurSelect DiscDynOp::selectFunction() const { return selectInsideCircle; }

double DiscDynOp::stabilityValue(double re, double im) const { return std::hypot(re, im) - 1.0; }

bool DiscDynOp::isUnstablePole(double value, double tolerance) const {
    return std::fabs(value) > 1.0 - tolerance;
}

bool DiscDynOp::isStable() const {
    Matrix p = DynOp::poles();
    for (unsigned i = 0; i < p.rowNumber(); ++i)
        if (std::hypot(p(i, 0), p(i, 1)) >= 1.0) return false;
    return true;
}

void DiscDynOp::selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const {
    for (unsigned i = 0; i < poles.rowNumber(); ++i) {
        double magnitude = std::hypot(poles(i, 0), poles(i, 1));
        std::cout << poles(i, 0) << " " << poles(i, 1) << "  " << magnitude;
        if (magnitude > 1.0 - tolerance) {
            std::cout << " " << i;
            list.reSize(list.size() + 1);
            list[int(list.size() - 1)] = int(i);
        }
        std::cout << "\n";
    }
    std::cout << std::flush;
}

Matrix DiscDynOp::poles() const {
    Matrix p = DynOp::poles();
    if (p.rowNumber() == 0) return p;
    double T = period();
    Matrix table(p.rowNumber(), 5);
    for (unsigned i = 0; i < p.rowNumber(); ++i) {
        double re = p(i, 0), im = p(i, 1), magnitude = std::hypot(re, im);
        bool pair = std::fabs(im) >= tollPoles;
        table(i, 0) = re;
        table(i, 1) = im;
        table(i, 2) = magnitude;
        table(i, 3) = !pair && magnitude < tollPoles ? -100000.0 : std::log(magnitude) / T;
        // A real pole has no frequency, also at z = 0 where im / re is 0 / 0.
        double frequency = im == 0.0 ? 0.0 : std::atan(std::fabs(im / re)) / T;
        table(i, 4) = pair && im < 0.0 ? -frequency : frequency;
    }
    return table;
}

Matrix DiscDynOp::splitBlock(const Matrix& block, double tolerance) const {
    Matrix roots(block);
    numerics().rootsOf2by2(roots);
    std::cout << "splitBlock " << block << "\nroots 2by2 " << roots << std::endl;
    return DynOp::splitBlock(block, tolerance);
}

// Cleaning poles at 1

void DiscDynOp::cleanPolesInZero(double tolerance) {
    if (isStatic) return;
    if (!isSchur) schurForm();
    unsigned n = order_;
    for (unsigned k = 0; k < n; ++k) {
        double a = A(k, k);
        if (std::fabs(std::fabs(a) - 1.0) >= tolerance) continue;
        A(k, k) = a < 0.0 ? -1.0 : 1.0;
        if (k > 0 && std::fabs(A(k, k - 1)) < tolerance) A(k, k - 1) = 0.0;
        if (k + 1 < n && std::fabs(A(k + 1, k)) < tolerance) A(k + 1, k) = 0.0;
    }
}

// Norms and frequency gains

// Through the bilinear map of the unit circle onto the imaginary axis, where the bisection of
// the continuous case applies.
double DiscDynOp::normHinf() const {
    if (!isStable() || (fastMode >= 2 && fastMode <= 4)) {
        std::cout << "norm computed as max value in freq. " << std::endl;
        double w = wMin;
        return normHinfInFrequency(w);
    }
    if (isStatic) return numerics().norm2(D);
    Algebra& alg = numerics();
    double T = period();
    Matrix Ainv = alg.inv(A + Matrix::diagonal(order_, 1.0));
    Matrix Ac = (A - Matrix::diagonal(order_, 1.0)) * Ainv / T, Bc = Ainv * B * 2.0, Cc = C * Ainv / T;
    return DynOp(Ac, Bc, Cc, D - C * Ainv * B).normHinf();
}

// The search of the continuous case on the upper half of the unit circle: 8 evenly spaced angles
// from w T up to 3.14, then a two-way walk whose step starts at 1.57 and is halved at each turn.
double DiscDynOp::normHinfInFrequency(double& wStart) const {
    if (isStatic) return numerics().norm2(D);
    const double top = 3.14;
    double T = period(), start = wStart * T;
    auto gain = [this](double angle) { return gainAt(std::cos(angle), std::sin(angle)); };
    double best = -1.0, peak = start, increment = (top - start) / 7.0;
    for (int k = 0; k < 8; ++k) {
        double angle = start + k * increment, g = gain(angle);
        if (g > best) {
            best = g;
            peak = angle;
        }
    }
    if (peak <= start) return best;
    SearchSteps halving = {1.57, [top](double x, double c) { return std::min(x + c, top); },
                           [](double x, double c) { return x - c; }, [](double c) { return c / 2.0; }};
    double found = walkToPeak(gain, peak, start, halving);
    wStart = start / T;
    return found;
}

// Printing and streams

bool DiscDynOp::isEqual(const Object& ob) const {
    return DynOp::isEqual(ob) && static_cast<const DiscDynOp&>(ob).samplingTime == samplingTime;
}

void DiscDynOp::printOn(std::ostream& os) const {
    DynOp::printOn(os);
    os << "sampling time = " << samplingTime << "\n";
}

DiscDynOp::DiscDynOp(std::istream& is, Object* where) : DynOp(is, where) {
    samplingTime = readNumber<double>(is);
}

DiscDynOp::DiscDynOp(BinIstream& is, Object* where) : DynOp(is, where) { is >> samplingTime; }

void DiscDynOp::storer(std::ostream& os) const {
    DynOp::storer(os);
    os << samplingTime << ' ';
}

void DiscDynOp::storer(BinOstream& os) const {
    DynOp::storer(os);
    os << samplingTime;
}
