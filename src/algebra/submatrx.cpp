// SubMatrix: copies, assignment through the window, sums and products with matrices.
#include "algebra/submatrx.h"

#include <cstring>
#include <ostream>

#include "algebra/matrix.h"
#include "quill/quillerr.h"

// A count below 1 is taken from the end: the window is not checked here.
SubMatrix::SubMatrix(Matrix& m, unsigned r, unsigned c, int rn, int cn)
    : matrix(&m),
      rowIndex(r),
      colIndex(c),
      rowNumber(rn < 1 ? unsigned(long(m.rowNumber()) - long(r) + rn) : unsigned(rn)),
      colNumber(cn < 1 ? unsigned(long(m.columnNumber()) - long(c) + cn) : unsigned(cn)) {}

void SubMatrix::checkInside() const {
    QASSERT(size_t(rowIndex) + rowNumber <= matrix->rowNumber() &&
            size_t(colIndex) + colNumber <= matrix->columnNumber());
}

void SubMatrix::shapeError(unsigned r, unsigned c, const char* method) const {
    setError(DIFFMTRXDIM, SEV_ERROR, "SubMatrix", method, rowNumber, colNumber, r, c);
}

void SubMatrix::checkShape(unsigned r, unsigned c, const char* method) const {
    if (r != rowNumber || c != colNumber) shapeError(r, c, method);
}

SubMatrix& SubMatrix::operator=(const Matrix& m) {
    checkShape(m.rowNumber(), m.columnNumber(), "operator=");
    checkInside();
    if (&m == matrix) return *this = Matrix(m);
    unsigned rows = matrix->rowNumber();
    double* target = matrix->elements();
    for (unsigned c = 0; c < colNumber; ++c)
        memcpy(target + size_t(colIndex + c) * rows + rowIndex, m.elements() + size_t(c) * rowNumber,
               rowNumber * sizeof(double));
    return *this;
}

// The source goes through a copy, so a window on the same matrix may overlap.
SubMatrix& SubMatrix::operator=(const SubMatrix& s) {
    checkShape(s.rowNumber, s.colNumber, "operator=");
    return *this = Matrix(s);
}

Matrix SubMatrix::operator*(const Matrix& m) const {
    if (colNumber != m.rowNumber()) shapeError(m.rowNumber(), m.columnNumber(), "operator*");
    return Matrix(*this) * m;
}

Matrix SubMatrix::operator*(const SubMatrix& s) const {
    if (colNumber != s.rowNumber) shapeError(s.rowNumber, s.colNumber, "operator*");
    return Matrix(*this) * Matrix(s);
}

Matrix SubMatrix::operator+(const Matrix& m) const {
    checkShape(m.rowNumber(), m.columnNumber(), "operator+");
    return Matrix(*this) + m;
}

Matrix SubMatrix::operator+(const SubMatrix& s) const {
    checkShape(s.rowNumber, s.colNumber, "operator+");
    return Matrix(*this) + Matrix(s);
}

Matrix operator*(const Matrix& m, const SubMatrix& s) {
    if (m.columnNumber() != s.rowNumber) s.shapeError(m.rowNumber(), m.columnNumber(), "operator*");
    return m * Matrix(s);
}

Matrix operator+(const Matrix& m, const SubMatrix& s) {
    s.checkShape(m.rowNumber(), m.columnNumber(), "operator+");
    return m + Matrix(s);
}

void SubMatrix::printOn(std::ostream& os) const { Matrix(*this).printOn(os); }

std::ostream& operator<<(std::ostream& os, const SubMatrix& s) {
    s.printOn(os);
    return os;
}
