// PMatrix, a matrix of Polynomials: numerators of transfer matrices, evaluated at a complex point.
#ifndef ALGEBRA_PMATRIX_H
#define ALGEBRA_PMATRIX_H

#include <iosfwd>
#include <vector>

#include "algebra/cmatrix.h"
#include "algebra/polynom.h"

extern Class class_PMatrix;

class PMatrix : public Algebra {
    DECLARE_MEMBERS(PMatrix)
public:
    PMatrix();                                                         // 1x1, the zero polynomial
    PMatrix(unsigned rows, unsigned cols, double samplingTime = 0.0);  // zero polynomials
    // The constant polynomials of m's elements.
    explicit PMatrix(const Matrix& m, double samplingTime = 0.0);
    PMatrix(const PMatrix& m);
    // Stream form: rows, cols, the sampling time, then the elements in column-major order.
    PMatrix(std::istream& is, Object* where);
    PMatrix(BinIstream& is, Object* where);
    PMatrix& operator=(const PMatrix& m);

    // s I - A (z I - A with a sampling time) of a square A.
    static PMatrix characteristic(const Matrix& A, double samplingTime = 0.0);

    unsigned rowNumber() const { return rows; }
    unsigned columnNumber() const { return cols; }
    unsigned size() const override { return rows; }
    double samplingTime() const { return sampling; }

    // Checked element access; INDEXRANGE named "operator()".
    Polynomial& operator()(unsigned r, unsigned c);
    const Polynomial& operator()(unsigned r, unsigned c) const;
    // The highest order among the elements.
    int order() const;

    // The value of every element at z.
    CMatrix value(const Complex& z) const;
    Matrix value(double x) const;

    PMatrix operator+(const PMatrix& b) const;
    PMatrix operator-(const PMatrix& b) const;
    PMatrix operator*(const PMatrix& b) const;
    PMatrix operator*(const Matrix& b) const;
    PMatrix operator*(const Polynomial& p) const;
    PMatrix operator*(double x) const;
    PMatrix transpose() const;

    bool isEqual(const Object& ob) const override;
    // One row per line: "[ p11 , p12 ;\n  p21 , p22 ]".
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

    void dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const;

private:
    template <class Stream>
    void readElements(Stream& is, unsigned r, unsigned c);
    void checkSameShape(const PMatrix& b, const char* method) const;

    std::vector<Polynomial> data;  // column-major
    unsigned rows;
    unsigned cols;
    double sampling;
};

PMatrix operator*(const Matrix& a, const PMatrix& b);

#endif
