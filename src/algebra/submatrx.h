// SubMatrix, a short-lived window on a block of a matrix that it does not own.
#ifndef ALGEBRA_SUBMATRX_H
#define ALGEBRA_SUBMATRX_H

#include <iosfwd>

class Matrix;

// A count below 1 at construction means what is left to the end less that
// many: rowNumber c < 1 gives rows - rowIndex + c. Nothing is checked at
// construction; a window that leaves its matrix is an assertion when used.
// Dimension failures name the class "SubMatrix" and give the window's shape
// first.
class SubMatrix {
public:
    SubMatrix(Matrix& m, unsigned rowIndex, unsigned colIndex, int rowNumber = 0, int colNumber = 0);
    SubMatrix(const SubMatrix& s) = default;

    // Both shapes must match (failure "operator="). A source on the same
    // matrix is copied first, so overlapping blocks come out as from a copy.
    SubMatrix& operator=(const Matrix& m);
    SubMatrix& operator=(const SubMatrix& s);

    Matrix operator*(const Matrix& m) const;
    Matrix operator*(const SubMatrix& s) const;
    Matrix operator+(const Matrix& m) const;
    Matrix operator+(const SubMatrix& s) const;

    void printOn(std::ostream& os) const;  // as the copied Matrix prints
    // Raises DIFFMTRXDIM with the window's shape and r x c.
    [[noreturn]] void shapeError(unsigned r, unsigned c, const char* method) const;
    // Raises DIFFMTRXDIM unless the window has the shape r x c.
    void checkShape(unsigned r, unsigned c, const char* method) const;
    // Asserts that the window lies inside its matrix.
    void checkInside() const;

    Matrix* matrix;
    unsigned rowIndex;
    unsigned colIndex;
    unsigned rowNumber;
    unsigned colNumber;
};

Matrix operator*(const Matrix& m, const SubMatrix& s);
Matrix operator+(const Matrix& m, const SubMatrix& s);
std::ostream& operator<<(std::ostream& os, const SubMatrix& s);

#endif
