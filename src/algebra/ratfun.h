// RationalFunction, a scalar transfer function in s (continuous) or z (with a sampling time).
#ifndef ALGEBRA_RATFUN_H
#define ALGEBRA_RATFUN_H

#include <cstdint>
#include <iosfwd>
#include <string>

#include "algebra/algebra.h"
#include "algebra/complex.h"
#include "algebra/matrix.h"
#include "algebra/polynom.h"
#include "algebra/vector.h"
#include "quill/quillstr.h"

extern Class class_RationalFunction;

// How the factored text writes a number.
typedef std::string (*NumberText)(double x);

// Coefficients stand highest power first. A sampling time of 0 is continuous; any other value is
// discrete, a value that is not positive counting as 1 at the frequency points.
class RationalFunction : public Algebra {
    DECLARE_MEMBERS(RationalFunction)
public:
    RationalFunction();  // 0 / 1, continuous
    RationalFunction(double constant, double samplingTime);
    // Numerator and denominator divided by the denominator's first coefficient when it isn't 0.
    RationalFunction(const Vector& numerator, const Vector& denominator, double samplingTime = 0.0);
    RationalFunction(double constant, const Vector& denominator, double samplingTime = 0.0);
    RationalFunction(const Polynomial& numerator, const Polynomial& denominator, double samplingTime);
    // Roots as rows (re, im); a row with a conjugate partner below it makes one real quadratic.
    // A matrix of fewer than two columns stands for no roots. Sets the zero-pole-gain form.
    RationalFunction(const Matrix& zeros, const Matrix& poles, double gain, double samplingTime);
    RationalFunction(const RationalFunction& f);
    // Stream form: numerator and denominator as nested Vectors, then the sampling time.
    RationalFunction(std::istream& is, Object* where);
    RationalFunction(BinIstream& is, Object* where);
    RationalFunction& operator=(const RationalFunction& f);

    // Size of the denominator less 1, or 0 when its first coefficient is 0.
    unsigned order() const;
    Vector numeratorCoefficients() const { return numerator; }
    Vector denominatorCoefficients() const { return denominator; }
    double samplingTimeOf() const { return samplingTime; }
    bool isDiscrete() const { return samplingTime != 0.0; }
    bool isZpkValid() const { return zpkValid != 0; }
    double gainOf() const { return gain; }

    // The roots, rows (re, im); no roots is the 1x1 zero matrix. Computes the zero-pole-gain
    // form first when it is not valid.
    Matrix zeros();
    Matrix poles();
    // gain, zeros and poles from the coefficients, which are then rebuilt from the roots.
    // A denominator whose first coefficient is 0 is left alone and the form stays invalid.
    void zpk();
    // n + 1 coefficients in both polynomials, new ones 0.
    void reSize(unsigned n);

    // The quotient of the two polynomials at re + j im.
    Complex value(double re, double im) const;
    Complex value(const Complex& point) const { return value(point.re(), point.im()); }
    // The point of the frequency w: jw, or e^(jwT) when discrete.
    Complex frequencyPoint(double w) const;
    // sqrt of (1/pi) times the integral of |f|^2 over [from, to] on the frequency axis; for a
    // discrete function T/pi over [from, min(to, pi/T)].
    using Algebra::norm2;
    double norm2(double from, double to) const;

    RationalFunction operator+(const RationalFunction& f) const;
    RationalFunction operator-(const RationalFunction& f) const;
    RationalFunction operator*(const RationalFunction& f) const;
    RationalFunction operator/(const RationalFunction& f) const;
    RationalFunction operator+(double x) const;
    RationalFunction operator-(double x) const;
    RationalFunction operator*(double x) const;
    RationalFunction operator/(double x) const;
    RationalFunction operator-() const;

    // "tf( [n] , [d] );" with the coefficients as row vectors.
    String tfText() const;
    // gain, then the factors of the zeros over those of the poles: "2 (s + 1) / (s^2 + 0.2 s + 1)",
    // the numbers by "%g" or by the writer given.
    String zpkText(NumberText number = 0) const;
    // The factored form when it is valid, otherwise the tf form.
    void printOn(std::ostream& os) const override;
    bool isEqual(const Object& ob) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    void normalize();
    void trimNumerator();
    char variableName() const { return isDiscrete() ? 'z' : 's'; }
    RationalFunction combined(const Vector& num, const Vector& den) const;

    double samplingTime;
    std::int32_t zpkValid;
    double gain;
    Vector numerator;
    Vector denominator;
    Matrix zeros_;
    Matrix poles_;
};

RationalFunction operator+(double x, const RationalFunction& f);
RationalFunction operator-(double x, const RationalFunction& f);
RationalFunction operator*(double x, const RationalFunction& f);
RationalFunction operator/(double x, const RationalFunction& f);

// The polynomial with the given roots (rows re, im), leading coefficient 1; a complex row and its
// conjugate just below it give one real quadratic. Fewer than two columns: no roots.
Vector polynomialFromRoots(const Matrix& roots);

#endif
