// RationalFunction: construction, zeros and poles, evaluation, the H2 norm, operators, printing, streams.
#include "algebra/ratfun.h"

#include <cmath>
#include <complex>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include "quill/objio.h"

DEFINE_CLASS(RationalFunction, Algebra, 1, 0)

namespace {

typedef std::complex<double> Cx;

Vector constantVector(double x) { return Vector(1u, x); }

bool hasRoots(const Matrix& roots) { return roots.columnNumber() >= 2 && roots.rowNumber() > 0; }

// The roots of a coefficient vector: none (the 1x1 zero matrix) for a constant, the single root
// directly for a first-order one, otherwise the general root routine.
Matrix rootsOf(Algebra& algebra, const Vector& v) {
    if (v.size() <= 1) return Matrix();
    if (v.size() == 2) {
        Matrix r(1, 2);
        r(0, 0) = -v[1u] / v[0u];
        return r;
    }
    return algebra.polyRoots(v);
}

Cx horner(const Vector& v, Cx x) {
    Cx r(0.0, 0.0);
    for (unsigned i = 0; i < v.size(); ++i) r = r * x + v[i];
    return r;
}

// Sum of two coefficient vectors aligned on the constant term.
Vector polyAdd(const Vector& a, const Vector& b, double sign) {
    unsigned n = a.size() > b.size() ? a.size() : b.size();
    Vector r(n);
    for (unsigned i = 0; i < a.size(); ++i) r[n - a.size() + i] += a[i];
    for (unsigned i = 0; i < b.size(); ++i) r[n - b.size() + i] += sign * b[i];
    return r;
}

std::string plainNumber(double x) {
    char text[48];
    snprintf(text, sizeof text, "%g", x);
    return text;
}

// A coefficient c printed as the tail of " + c", its sign joining the operator.
std::string signedTerm(double c, NumberText number) { return (c < 0 ? " - " : " + ") + number(std::fabs(c)); }

// "(s + a)" and "(s^2 + b s + c)" factors of a root table, joined by a blank.
std::string factors(const Matrix& roots, char var, unsigned* count, NumberText number) {
    std::string text;
    *count = 0;
    if (!hasRoots(roots)) return text;
    for (unsigned i = 0; i < roots.rowNumber(); ++i) {
        double re = roots(i, 0), im = roots(i, 1);
        std::string factor = "(";
        if (im == 0.0) {
            factor += var;
            if (re != 0.0) factor += signedTerm(-re, number);
        } else {
            factor += var;
            factor +=
                "^2" + signedTerm(-2.0 * re, number) + " " + var + signedTerm(re * re + im * im, number);
            if (i + 1 < roots.rowNumber() && roots(i + 1, 0) == re && roots(i + 1, 1) == -im) ++i;
        }
        text += (*count ? " " : "") + factor + ")";
        ++*count;
    }
    return text;
}

// Adaptive Simpson on [a, b] of f(w) = |g(point(w))|^2 in the variable u = ln w.
struct NormIntegrand {
    const RationalFunction* f;
    double operator()(double u) const {
        double w = std::exp(u);
        Complex p = f->frequencyPoint(w);
        return f->value(p).norm() * w;
    }
};

double simpson(const NormIntegrand& g, double a, double b, double fa, double fm, double fb, double whole,
               double tolerance, int depth) {
    double m = 0.5 * (a + b), lm = 0.5 * (a + m), rm = 0.5 * (m + b);
    double flm = g(lm), frm = g(rm);
    double left = (m - a) / 6.0 * (fa + 4.0 * flm + fm);
    double right = (b - m) / 6.0 * (fm + 4.0 * frm + fb);
    double diff = left + right - whole;
    if (depth <= 0 || std::fabs(diff) <= 15.0 * tolerance) return left + right + diff / 15.0;
    return simpson(g, a, m, fa, flm, fm, left, tolerance / 2.0, depth - 1) +
           simpson(g, m, b, fm, frm, fb, right, tolerance / 2.0, depth - 1);
}

// One decade at a time, so that a narrow resonance is not stepped over by the first samples.
double integrate(const NormIntegrand& g, double from, double to) {
    double total = 0.0;
    const double step = std::log(10.0) / 8.0;
    for (double a = std::log(from), end = std::log(to); a < end; a += step) {
        double b = a + step < end ? a + step : end;
        double fa = g(a), fm = g(0.5 * (a + b)), fb = g(b);
        double whole = (b - a) / 6.0 * (fa + 4.0 * fm + fb);
        total += simpson(g, a, b, fa, fm, fb, whole, 1e-12 + 1e-10 * std::fabs(whole), 40);
    }
    return total;
}

}  // namespace

Vector polynomialFromRoots(const Matrix& roots) {
    Vector p = constantVector(1.0);
    if (!hasRoots(roots)) return p;
    Algebra algebra;
    for (unsigned i = 0; i < roots.rowNumber(); ++i) {
        double re = roots(i, 0), im = roots(i, 1);
        if (im == 0.0) {
            Vector factor(2u, 1.0);
            factor[1u] = -re;
            p = algebra.polyMul(p, factor);
            continue;
        }
        p = algebra.polyMul(p, Vector(1.0, -2.0 * re, re * re + im * im));
        if (i + 1 < roots.rowNumber() && roots(i + 1, 0) == re && roots(i + 1, 1) == -im) ++i;
    }
    return p;
}

// Construction

RationalFunction::RationalFunction()
    : samplingTime(0.0),
      zpkValid(0),
      gain(0.0),
      numerator(constantVector(0.0)),
      denominator(constantVector(1.0)),
      zeros_(0, 0),
      poles_(0, 0) {}

RationalFunction::RationalFunction(double constant, double T)
    : samplingTime(T),
      zpkValid(0),
      gain(0.0),
      numerator(constantVector(constant)),
      denominator(constantVector(1.0)),
      zeros_(0, 0),
      poles_(0, 0) {}

RationalFunction::RationalFunction(const Vector& num, const Vector& den, double T)
    : samplingTime(T), zpkValid(0), gain(0.0), numerator(num), denominator(den), zeros_(0, 0), poles_(0, 0) {
    normalize();
}

RationalFunction::RationalFunction(const Polynomial& num, const Polynomial& den, double T)
    : samplingTime(T),
      zpkValid(0),
      gain(0.0),
      numerator(num.coefficients()),
      denominator(den.coefficients()),
      zeros_(0, 0),
      poles_(0, 0) {
    normalize();
}

RationalFunction::RationalFunction(double constant, const Vector& den, double T)
    : samplingTime(T),
      zpkValid(0),
      gain(0.0),
      numerator(constantVector(constant)),
      denominator(den),
      zeros_(0, 0),
      poles_(0, 0) {
    normalize();
}

RationalFunction::RationalFunction(const Matrix& zeros, const Matrix& poles, double k, double T)
    : samplingTime(T),
      zpkValid(1),
      gain(k),
      numerator(polynomialFromRoots(zeros) * k),
      denominator(polynomialFromRoots(poles)),
      zeros_(hasRoots(zeros) ? zeros : Matrix()),
      poles_(hasRoots(poles) ? poles : Matrix()) {}

RationalFunction::RationalFunction(const RationalFunction& f)
    : Algebra(f),
      samplingTime(f.samplingTime),
      zpkValid(f.zpkValid),
      gain(f.gain),
      numerator(f.numerator),
      denominator(f.denominator),
      zeros_(f.zeros_),
      poles_(f.poles_) {}

RationalFunction& RationalFunction::operator=(const RationalFunction& f) {
    samplingTime = f.samplingTime;
    zpkValid = f.zpkValid;
    gain = f.gain;
    numerator = f.numerator;
    denominator = f.denominator;
    zeros_ = f.zeros_;
    poles_ = f.poles_;
    return *this;
}

void RationalFunction::normalize() {
    numerator.setAsColumn();
    denominator.setAsColumn();
    if (denominator.size() == 0) denominator = constantVector(1.0);
    if (numerator.size() == 0) numerator = constantVector(0.0);
    trimNumerator();
    double lead = denominator[0u];
    if (lead == 0.0 || lead == 1.0) return;
    numerator *= 1.0 / lead;
    denominator *= 1.0 / lead;
}

// Leading exact zeros of the numerator (left by a sum) go, one coefficient at least stays.
void RationalFunction::trimNumerator() {
    unsigned lead = 0;
    while (lead + 1 < numerator.size() && std::fabs(numerator[lead]) < zeroTolerance) ++lead;
    if (lead > 0) numerator = numerator.subVector(int(lead));
}

unsigned RationalFunction::order() const {
    if (denominator.size() == 0 || denominator[0u] == 0.0) return 0;
    return denominator.size() - 1;
}

void RationalFunction::reSize(unsigned n) {
    numerator.reSize(n + 1);
    denominator.reSize(n + 1);
    zpkValid = 0;
}

// Zeros and poles

void RationalFunction::zpk() {
    if (denominator.size() == 0 || denominator[0u] == 0.0) return;
    trimNumerator();
    gain = numerator[0u] / denominator[0u];
    zeros_ = gain == 0.0 ? Matrix() : rootsOf(*this, numerator);
    poles_ = rootsOf(*this, denominator);
    numerator = polynomialFromRoots(zeros_) * gain;
    denominator = polynomialFromRoots(poles_);
    zpkValid = 1;
}

Matrix RationalFunction::zeros() {
    if (!zpkValid) zpk();
    return zeros_;
}

Matrix RationalFunction::poles() {
    if (!zpkValid) zpk();
    return poles_;
}

// Evaluation and norm

Complex RationalFunction::value(double re, double im) const {
    Cx x(re, im);
    return Complex(horner(numerator, x) / horner(denominator, x));
}

Complex RationalFunction::frequencyPoint(double w) const {
    if (!isDiscrete()) return Complex(0.0, w);
    double T = samplingTime > 0.0 ? samplingTime : 1.0;
    return Complex(std::cos(w * T), std::sin(w * T));
}

double RationalFunction::norm2(double from, double to) const {
    double weight = 1.0 / M_PI;
    if (isDiscrete()) {
        double T = samplingTime > 0.0 ? samplingTime : 1.0;
        weight = T / M_PI;
        if (to > M_PI / T) to = M_PI / T;
    }
    if (!(from > 0.0) || !(to > from)) return 0.0;
    NormIntegrand g{this};
    return std::sqrt(weight * integrate(g, from, to));
}

// Operators: the polynomials are combined by convolution, with no cancellation.

RationalFunction RationalFunction::combined(const Vector& num, const Vector& den) const {
    return RationalFunction(num, den, samplingTime);
}

RationalFunction RationalFunction::operator+(const RationalFunction& f) const {
    Algebra a;
    Vector num = polyAdd(a.polyMul(numerator, f.denominator), a.polyMul(f.numerator, denominator), 1.0);
    return combined(num, a.polyMul(denominator, f.denominator));
}

RationalFunction RationalFunction::operator-(const RationalFunction& f) const {
    Algebra a;
    Vector num = polyAdd(a.polyMul(numerator, f.denominator), a.polyMul(f.numerator, denominator), -1.0);
    return combined(num, a.polyMul(denominator, f.denominator));
}

RationalFunction RationalFunction::operator*(const RationalFunction& f) const {
    Algebra a;
    return combined(a.polyMul(numerator, f.numerator), a.polyMul(denominator, f.denominator));
}

RationalFunction RationalFunction::operator/(const RationalFunction& f) const {
    Algebra a;
    return combined(a.polyMul(numerator, f.denominator), a.polyMul(denominator, f.numerator));
}

RationalFunction RationalFunction::operator+(double x) const {
    return *this + RationalFunction(x, samplingTime);
}
RationalFunction RationalFunction::operator-(double x) const {
    return *this - RationalFunction(x, samplingTime);
}
RationalFunction RationalFunction::operator*(double x) const {
    return *this * RationalFunction(x, samplingTime);
}
RationalFunction RationalFunction::operator/(double x) const {
    return *this / RationalFunction(x, samplingTime);
}
RationalFunction RationalFunction::operator-() const { return RationalFunction(0.0, samplingTime) - *this; }

RationalFunction operator+(double x, const RationalFunction& f) {
    return RationalFunction(x, f.samplingTimeOf()) + f;
}
RationalFunction operator-(double x, const RationalFunction& f) {
    return RationalFunction(x, f.samplingTimeOf()) - f;
}
RationalFunction operator*(double x, const RationalFunction& f) {
    return RationalFunction(x, f.samplingTimeOf()) * f;
}
RationalFunction operator/(double x, const RationalFunction& f) {
    return RationalFunction(x, f.samplingTimeOf()) / f;
}

// Printing

String RationalFunction::tfText() const {
    std::string text = "tf( ";
    text += numerator.transpose().toString().asCharPointer();
    text += " , ";
    text += denominator.transpose().toString().asCharPointer();
    text += " );";
    return String(text.c_str());
}

String RationalFunction::zpkText(NumberText number) const {
    if (!number) number = plainNumber;
    unsigned zeroCount = 0, poleCount = 0;
    std::string top = factors(zeros_, variableName(), &zeroCount, number);
    std::string bottom = factors(poles_, variableName(), &poleCount, number);
    std::string text = number(gain);
    if (zeroCount) text += " " + top;
    if (poleCount) text += " / " + (poleCount > 1 ? "(" + bottom + ")" : bottom);
    return String(text.c_str());
}

void RationalFunction::printOn(std::ostream& os) const {
    os << (zpkValid ? zpkText() : tfText()).asCharPointer();
}

bool RationalFunction::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const RationalFunction& f = static_cast<const RationalFunction&>(ob);
    return samplingTime == f.samplingTime && numerator.isEqual(f.numerator) &&
           denominator.isEqual(f.denominator);
}

// Stream forms: the roots and the gain are not stored; a read function has them invalid.

RationalFunction::RationalFunction(std::istream& is, Object* where)
    : Algebra(is, where), samplingTime(0.0), zpkValid(0), gain(0.0), zeros_(0, 0), poles_(0, 0) {
    readFrom(is, "Vector", &numerator);
    readFrom(is, "Vector", &denominator);
    samplingTime = readNumber<double>(is);
}

RationalFunction::RationalFunction(BinIstream& is, Object* where)
    : Algebra(is, where), samplingTime(0.0), zpkValid(0), gain(0.0), zeros_(0, 0), poles_(0, 0) {
    readFrom(is, "Vector", &numerator);
    readFrom(is, "Vector", &denominator);
    is >> samplingTime;
}

void RationalFunction::storer(std::ostream& os) const {
    Algebra::storer(os);
    numerator.storeOn(os);
    denominator.storeOn(os);
    os << samplingTime << ' ';
}

void RationalFunction::storer(BinOstream& os) const {
    Algebra::storer(os);
    numerator.storeOn(os);
    denominator.storeOn(os);
    os << samplingTime;
}

// A bytewise copy shares the coefficient and root storage until each takes its own.
void RationalFunction::clearCopiedState() {
    Algebra::clearCopiedState();
    numerator.clearCopiedState();
    denominator.clearCopiedState();
    zeros_.clearCopiedState();
    poles_.clearCopiedState();
}
