// Complex, a complex number with value semantics: points of evaluation and matrix elements.
#ifndef ALGEBRA_COMPLEX_H
#define ALGEBRA_COMPLEX_H

#include <complex>
#include <iosfwd>

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Complex;

class Complex : public Object {
    DECLARE_MEMBERS(Complex)
public:
    Complex(double re = 0.0, double im = 0.0) : real(re), imag(im) {}
    Complex(const std::complex<double>& z) : real(z.real()), imag(z.imag()) {}
    Complex(const Complex& z) : Object(z), real(z.real), imag(z.imag) {}
    // Stream form: the real part, a blank, the imaginary part, a blank.
    Complex(std::istream& is, Object* where);
    Complex(BinIstream& is, Object* where);
    Complex& operator=(const Complex& z);

    double re() const { return real; }
    double im() const { return imag; }
    void re(double x) { real = x; }
    void im(double x) { imag = x; }
    std::complex<double> value() const { return std::complex<double>(real, imag); }

    double abs() const;                                        // modulus, without overflow in the squares
    double arg() const;                                        // phase in radians, in (-pi, pi]
    double norm() const { return real * real + imag * imag; }  // squared modulus
    Complex conjugate() const { return Complex(real, -imag); }
    // e^(this)
    Complex exp() const;

    Complex operator+(const Complex& z) const { return Complex(real + z.real, imag + z.imag); }
    Complex operator-(const Complex& z) const { return Complex(real - z.real, imag - z.imag); }
    Complex operator-() const { return Complex(-real, -imag); }
    Complex operator*(const Complex& z) const;
    // Division by zero gives infinities or NaN, as the doubles do.
    Complex operator/(const Complex& z) const;
    Complex operator+(double x) const { return Complex(real + x, imag); }
    Complex operator-(double x) const { return Complex(real - x, imag); }
    Complex operator*(double x) const { return Complex(real * x, imag * x); }
    Complex operator/(double x) const { return Complex(real / x, imag / x); }
    Complex& operator+=(const Complex& z);
    Complex& operator-=(const Complex& z);
    Complex& operator*=(const Complex& z);
    Complex& operator/=(const Complex& z);
    bool operator==(const Complex& z) const { return real == z.real && imag == z.imag; }
    bool operator!=(const Complex& z) const { return !(*this == z); }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    // "(re,im)" with %g.
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double real;
    double imag;
};

Complex operator+(double x, const Complex& z);
Complex operator-(double x, const Complex& z);
Complex operator*(double x, const Complex& z);
Complex operator/(double x, const Complex& z);

#endif
