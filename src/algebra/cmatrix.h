// CMatrix, the dense complex matrix: frequency responses, evaluated expressions and the complex SVD.
#ifndef ALGEBRA_CMATRIX_H
#define ALGEBRA_CMATRIX_H

#include <complex>
#include <iosfwd>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/complex.h"

extern Class class_CMatrix;

class CMatrix : public Algebra {
    DECLARE_MEMBERS(CMatrix)
public:
    CMatrix();                              // 1x1, holding 0
    CMatrix(unsigned rows, unsigned cols);  // all zero
    explicit CMatrix(const Matrix& re);
    CMatrix(const Matrix& re, const Matrix& im);  // same shapes, else DIFFMTRXDIM
    CMatrix(const CMatrix& m);
    // Stream form: rows, cols, then real and imaginary parts in column-major order.
    CMatrix(std::istream& is, Object* where);
    CMatrix(BinIstream& is, Object* where);
    CMatrix& operator=(const CMatrix& m);

    static CMatrix identity(unsigned n);

    unsigned rowNumber() const { return rows; }
    unsigned columnNumber() const { return cols; }
    unsigned size() const override { return rows; }
    // Column-major storage, (r, c) at c * rows + r.
    std::complex<double>* elements() { return data.data(); }
    const std::complex<double>* elements() const { return data.data(); }

    // Checked element access; INDEXRANGE named "operator()".
    std::complex<double>& operator()(unsigned r, unsigned c);
    std::complex<double> operator()(unsigned r, unsigned c) const;
    Complex get(unsigned r, unsigned c) const { return Complex((*this)(r, c)); }
    void set(unsigned r, unsigned c, const Complex& z) { (*this)(r, c) = z.value(); }

    Matrix realPart() const;
    Matrix imagPart() const;
    CMatrix transpose() const;
    CMatrix conjugateTranspose() const;

    CMatrix operator+(const CMatrix& b) const;
    CMatrix operator-(const CMatrix& b) const;
    CMatrix operator-() const;
    CMatrix operator*(const CMatrix& b) const;
    CMatrix operator*(const Complex& z) const;
    CMatrix operator*(double x) const;

    // ZGESDD on A (overwritten): min(m, n) singular values, descending; U (m x m) and
    // VT (n x n) with A = U S VT when wanted.
    // The singular values of this matrix, and the largest of them (0 for an empty matrix).
    Vector singularValues() const;
    double maxSingularValue() const;

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    // " [ (a,b) (c,d); (e,f) (g,h)]" with %g.
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

    void dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const;

private:
    void checkSameShape(const CMatrix& b, const char* method) const;

    std::vector<std::complex<double>> data;
    unsigned rows;
    unsigned cols;
};

CMatrix operator*(const Complex& z, const CMatrix& m);
CMatrix operator*(double x, const CMatrix& m);

#endif
