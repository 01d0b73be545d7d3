// Polynomial, a real polynomial by its coefficient Vector (highest power first) and a sampling time.
#ifndef ALGEBRA_POLYNOM_H
#define ALGEBRA_POLYNOM_H

#include <iosfwd>

#include "algebra/algebra.h"
#include "algebra/complex.h"

extern Class class_Polynomial;

class Polynomial : public Algebra {
    DECLARE_MEMBERS(Polynomial)
public:
    Polynomial();  // the constant 0, continuous
    explicit Polynomial(double constant, double samplingTime = 0.0);
    explicit Polynomial(const Vector& coefficients, double samplingTime = 0.0);
    Polynomial(const Polynomial& p);
    // Stream form: the coefficients as a nested "Vector", then the sampling time and a blank.
    Polynomial(std::istream& is, Object* where);
    Polynomial(BinIstream& is, Object* where);
    Polynomial& operator=(const Polynomial& p);

    // The product of the factors (s - root) of the rows (re, im) of roots, times gain. A row
    // with an imaginary part gives the real quadratic of it and its conjugate; the conjugate
    // row, when present, is used up by it.
    static Polynomial fromRoots(const Matrix& roots, double gain = 1.0, double samplingTime = 0.0);
    // det(sI - A), from the eigenvalues of A.
    static Polynomial characteristic(const Matrix& A, double samplingTime = 0.0);

    const Vector& coefficients() const { return coeffs; }
    double coefficient(unsigned power) const;  // 0 beyond the degree
    double samplingTime() const { return sampling; }
    void samplingTime(double t) { sampling = t; }
    // The size of the coefficients less 1, or 0 when the first coefficient is 0.
    int order() const;
    // n + 1 coefficients: the low powers stay, new high powers are 0, dropped ones go.
    int reSize(int n);
    // Drops leading zero coefficients, keeping at least one.
    Polynomial& trim();

    // Roots, one row (re, im) each; a constant has the 1x1 zero matrix.
    Matrix roots();
    double value(double x) const;
    Complex value(const Complex& z) const;

    Polynomial operator+(const Polynomial& p) const;  // trimmed
    Polynomial operator-(const Polynomial& p) const;  // trimmed
    Polynomial operator-() const;
    Polynomial operator*(const Polynomial& p) const;
    Polynomial operator+(double x) const;
    Polynomial operator-(double x) const;
    Polynomial operator*(double x) const;
    Polynomial operator/(double x) const;

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    // "s^2 - 3 s + 2" in s, or in z with a sampling time; a zero polynomial prints "0".
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    Vector coeffs;    // highest power first, at least one
    double sampling;  // 0 for continuous
};

Polynomial operator+(double x, const Polynomial& p);
Polynomial operator-(double x, const Polynomial& p);
Polynomial operator*(double x, const Polynomial& p);

#endif
