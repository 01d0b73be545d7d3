// Complex: arithmetic, printing and the stream forms.
#include "algebra/complex.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillstr.h"

DEFINE_CLASS(Complex, Object, 1, 0)

Complex::Complex(std::istream& is, Object* where) : Object(is, where), real(0.0), imag(0.0) {
    real = readNumber<double>(is);
    imag = readNumber<double>(is);
}

Complex::Complex(BinIstream& is, Object* where) : Object(is, where), real(0.0), imag(0.0) {
    is >> real >> imag;
}

void Complex::storer(std::ostream& os) const {
    Object::storer(os);
    char text[64];
    snprintf(text, sizeof text, "%.17g %.17g ", real, imag);
    os << text;
}

void Complex::storer(BinOstream& os) const {
    Object::storer(os);
    os << real << imag;
}

Complex& Complex::operator=(const Complex& z) {
    real = z.real;
    imag = z.imag;
    return *this;
}

double Complex::abs() const { return std::hypot(real, imag); }

double Complex::arg() const { return std::atan2(imag, real); }

Complex Complex::exp() const {
    double m = std::exp(real);
    return Complex(m * std::cos(imag), m * std::sin(imag));
}

Complex Complex::operator*(const Complex& z) const {
    return Complex(real * z.real - imag * z.imag, real * z.imag + imag * z.real);
}

// Smith's method: scales by the larger part of the divisor to keep the squares in range.
Complex Complex::operator/(const Complex& z) const {
    if (std::fabs(z.real) >= std::fabs(z.imag)) {
        if (z.real == 0.0 && z.imag == 0.0) return Complex(real / 0.0, imag / 0.0);
        double r = z.imag / z.real, d = z.real + z.imag * r;
        return Complex((real + imag * r) / d, (imag - real * r) / d);
    }
    double r = z.real / z.imag, d = z.real * r + z.imag;
    return Complex((real * r + imag) / d, (imag * r - real) / d);
}

Complex& Complex::operator+=(const Complex& z) { return *this = *this + z; }
Complex& Complex::operator-=(const Complex& z) { return *this = *this - z; }
Complex& Complex::operator*=(const Complex& z) { return *this = *this * z; }
Complex& Complex::operator/=(const Complex& z) { return *this = *this / z; }

Complex operator+(double x, const Complex& z) { return Complex(x + z.re(), z.im()); }
Complex operator-(double x, const Complex& z) { return Complex(x - z.re(), -z.im()); }
Complex operator*(double x, const Complex& z) { return z * x; }
Complex operator/(double x, const Complex& z) { return Complex(x) / z; }

bool Complex::isEqual(const Object& ob) const {
    return ob.isSpecies(class_Complex) && *this == static_cast<const Complex&>(ob);
}

unsigned Complex::hash() const {
    double parts[2] = {real == 0.0 ? 0.0 : real, imag == 0.0 ? 0.0 : imag};
    unsigned words[4];
    std::memcpy(words, parts, sizeof words);
    return (words[0] ^ words[1]) * 31u ^ words[2] ^ words[3];
}

void Complex::printOn(std::ostream& os) const { os << formatText("(%g,%g)", real, imag); }

