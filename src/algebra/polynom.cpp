// Polynomial: construction from roots, evaluation, roots, arithmetic, printing and the stream forms.
#include "algebra/polynom.h"

#include <cmath>
#include <ostream>
#include <vector>

#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillstr.h"

DEFINE_CLASS(Polynomial, Algebra, 1, 0)

Polynomial::Polynomial() : coeffs(1u), sampling(0.0) {}

Polynomial::Polynomial(double constant, double samplingTime) : coeffs(1u, constant), sampling(samplingTime) {}

Polynomial::Polynomial(const Vector& coefficients, double samplingTime)
    : coeffs(coefficients.size() ? coefficients : Vector(1u)), sampling(samplingTime) {
    coeffs.setAsColumn();
}

Polynomial::Polynomial(const Polynomial& p) : Algebra(p), coeffs(p.coeffs), sampling(p.sampling) {}

Polynomial& Polynomial::operator=(const Polynomial& p) {
    coeffs = p.coeffs;
    sampling = p.sampling;
    return *this;
}

// --- Stream forms ---

Polynomial::Polynomial(std::istream& is, Object* where) : Algebra(is, where), coeffs(1u), sampling(0.0) {
    readFrom(is, "Vector", &coeffs);
    sampling = readNumber<double>(is);
    if (coeffs.size() == 0) coeffs = Vector(1u);
}

Polynomial::Polynomial(BinIstream& is, Object* where) : Algebra(is, where), coeffs(1u), sampling(0.0) {
    readFrom(is, "Vector", &coeffs);
    is >> sampling;
    if (coeffs.size() == 0) coeffs = Vector(1u);
}

void Polynomial::storer(std::ostream& os) const {
    Algebra::storer(os);
    coeffs.storeOn(os);
    os << formatText("%.17g ", sampling);
}

void Polynomial::storer(BinOstream& os) const {
    Algebra::storer(os);
    coeffs.storeOn(os);
    os << sampling;
}

// --- Construction from roots ---

namespace {

// Index of an unused row after i holding the conjugate of row i, or -1.
int conjugateRow(const Matrix& roots, unsigned i, const std::vector<bool>& used) {
    double re = roots(i, 0), im = roots(i, 1);
    double tol = 1e-8 * (std::fabs(re) + std::fabs(im) + 1.0);
    for (unsigned j = i + 1; j < roots.rowNumber(); ++j)
        if (!used[j] && std::fabs(roots(j, 0) - re) < tol && std::fabs(roots(j, 1) + im) < tol) return int(j);
    return -1;
}

}  // namespace

Polynomial Polynomial::fromRoots(const Matrix& roots, double gain, double samplingTime) {
    Polynomial p(gain, samplingTime);
    unsigned n = roots.rowNumber();
    if (roots.columnNumber() < 2) n = 0;
    std::vector<bool> used(n, false);
    for (unsigned i = 0; i < n; ++i) {
        if (used[i]) continue;
        double re = roots(i, 0), im = roots(i, 1);
        Vector factor(im == 0.0 ? 2u : 3u);
        factor[0u] = 1.0;
        if (im == 0.0) {
            factor[1u] = -re;
        } else {
            int j = conjugateRow(roots, i, used);
            if (j >= 0) used[unsigned(j)] = true;
            factor[1u] = -2.0 * re;
            factor[2u] = re * re + im * im;
        }
        p.coeffs = p.polyMul(p.coeffs, factor);
    }
    return p;
}

Polynomial Polynomial::characteristic(const Matrix& A, double samplingTime) {
    Polynomial p(1.0, samplingTime);
    if (A.rowNumber() == 0) return p;
    return fromRoots(p.computeEigenvalues(A), 1.0, samplingTime);
}

// --- Size and shape ---

double Polynomial::coefficient(unsigned power) const {
    unsigned n = coeffs.size();
    return power < n ? coeffs[n - 1 - power] : 0.0;
}

int Polynomial::order() const { return coeffs[0u] == 0.0 ? 0 : int(coeffs.size()) - 1; }

int Polynomial::reSize(int n) {
    unsigned size = n < 0 ? 1u : unsigned(n) + 1;
    Vector c(size);
    for (unsigned k = 0; k < size; ++k) c[size - 1 - k] = coefficient(k);
    coeffs = c;
    return order();
}

Polynomial& Polynomial::trim() {
    unsigned n = coeffs.size(), lead = 0;
    while (lead + 1 < n && coeffs[lead] == 0.0) ++lead;
    if (lead) coeffs = coeffs.subVector(int(lead));
    coeffs.setAsColumn();
    return *this;
}

// --- Roots and values ---

// Leading zeros are dropped first, so that the root routine never divides by them.
Matrix Polynomial::roots() {
    Vector c = Polynomial(*this).trim().coeffs;
    if (c.size() < 2) return Matrix(1, 1);
    if (c.size() == 2) {
        Matrix r(1, 2);
        r(0, 0) = -c[1u] / c[0u];
        return r;
    }
    // Only roots at zero come back as a single column: widen it to (re, im).
    Matrix r = polyRoots(c);
    if (r.columnNumber() < 2) r.reSize(r.rowNumber(), 2);
    return r;
}

double Polynomial::value(double x) const {
    double v = 0.0;
    for (unsigned k = 0; k < coeffs.size(); ++k) v = v * x + coeffs[k];
    return v;
}

Complex Polynomial::value(const Complex& z) const {
    std::complex<double> v = 0.0, w = z.value();
    for (unsigned k = 0; k < coeffs.size(); ++k) v = v * w + coeffs[k];
    return Complex(v);
}

// --- Arithmetic ---

namespace {

// Sum of a and sign times b, aligned on the lowest power.
Vector alignedSum(const Vector& a, const Vector& b, double sign) {
    unsigned na = a.size(), nb = b.size(), n = na > nb ? na : nb;
    Vector c(n);
    for (unsigned k = 0; k < na; ++k) c[n - na + k] += a[k];
    for (unsigned k = 0; k < nb; ++k) c[n - nb + k] += sign * b[k];
    return c;
}

}  // namespace

Polynomial Polynomial::operator+(const Polynomial& p) const {
    Polynomial r(alignedSum(coeffs, p.coeffs, 1.0), sampling);
    return r.trim();
}

Polynomial Polynomial::operator-(const Polynomial& p) const {
    Polynomial r(alignedSum(coeffs, p.coeffs, -1.0), sampling);
    return r.trim();
}

Polynomial Polynomial::operator-() const { return *this * -1.0; }

Polynomial Polynomial::operator*(const Polynomial& p) const {
    Polynomial r(*this);
    r.coeffs = r.polyMul(coeffs, p.coeffs);
    r.coeffs.setAsColumn();
    return r;
}

Polynomial Polynomial::operator+(double x) const { return *this + Polynomial(x); }
Polynomial Polynomial::operator-(double x) const { return *this - Polynomial(x); }

Polynomial Polynomial::operator*(double x) const {
    Polynomial r(*this);
    r.coeffs *= x;
    return r;
}

Polynomial Polynomial::operator/(double x) const { return *this * (1.0 / x); }

Polynomial operator+(double x, const Polynomial& p) { return p + x; }
Polynomial operator-(double x, const Polynomial& p) { return -p + x; }
Polynomial operator*(double x, const Polynomial& p) { return p * x; }

// --- Comparison and printing ---

bool Polynomial::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const Polynomial& p = static_cast<const Polynomial&>(ob);
    return sampling == p.sampling && coeffs.isEqual(p.coeffs);
}

unsigned Polynomial::hash() const { return coeffs.hash(); }

void Polynomial::printOn(std::ostream& os) const {
    const char* var = sampling == 0.0 ? "s" : "z";
    unsigned n = coeffs.size();
    bool first = true;
    for (unsigned k = 0; k < n; ++k) {
        double c = coeffs[k];
        unsigned power = n - 1 - k;
        if (c == 0.0) continue;
        double a = std::fabs(c);
        if (first)
            os << (c < 0 ? "-" : "");
        else
            os << (c < 0 ? " - " : " + ");
        first = false;
        if (a != 1.0 || power == 0) os << formatText("%g", a) << (power ? " " : "");
        if (power == 1) os << var;
        if (power > 1) os << var << "^" << power;
    }
    if (first) os << "0";
}

// A bytewise copy shares the coefficients until it takes its own.
void Polynomial::clearCopiedState() {
    Algebra::clearCopiedState();
    coeffs.clearCopiedState();
}
