// Matrix, the dense real matrix with column-major storage and value semantics.
#ifndef ALGEBRA_MATRIX_H
#define ALGEBRA_MATRIX_H

#include <iosfwd>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

class Vector;
class SubMatrix;
class MatrixCursor;
class Collection;

extern Class class_Matrix;
// Dimension mismatch: class, method, this matrix's rows and columns, the other's.
extern int DIFFMTRXDIM;

class Matrix : public Object {
    DECLARE_MEMBERS(Matrix)
public:
    Matrix();                              // 1x1, holding 0
    Matrix(unsigned rows, unsigned cols);  // all zero
    // Adopts buffer, which must come from objectAlloc and hold rows * cols
    // doubles (at least one); no copy.
    Matrix(double* buffer, unsigned rows, unsigned cols);
    Matrix(const Matrix& m);
    // v as line index among count: a column vector gives size x count with v
    // as column index, a row vector count x size with v as row index.
    Matrix(const Vector& v, unsigned count, unsigned index);
    // One row a Vector: rows = the collection's size, cols = the first's size.
    explicit Matrix(const Collection& vectors);
    Matrix(const SubMatrix& s);
    // A matrix literal such as "[1 2;3 4]"; see fromText.
    explicit Matrix(const char* text);
    // Stream form: rows, cols, then the elements in storage order.
    Matrix(std::istream& is, Object* where);
    Matrix(BinIstream& is, Object* where);
    ~Matrix() noexcept(false) override;
    Matrix& operator=(const Matrix& m);

    static Matrix diagonal(unsigned n, double value);
    static Matrix diagonal(const Vector& v);
    static Matrix blockDiagonal(const Matrix& a, const Matrix& b);
    // The first rows elements of storage, or all cols of them when rows is 1.
    Vector toVector() const;

    // Checked element access; INDEXRANGE named "operator()".
    double& operator()(unsigned r, unsigned c);
    double operator()(unsigned r, unsigned c) const;
    // A cursor at (r, 0), so that m[r][c] is an element; INDEXRANGE "operator[]".
    MatrixCursor operator[](unsigned r);

    // A negative index counts from the last row (column); a length of 0 runs
    // to the end, a negative one to the end less that many. The results are
    // column-oriented vectors.
    Vector row(int r, int c = 0, int length = 0) const;
    Vector column(int c, int r = 0, int length = 0) const;
    // Reads v through its checked access, so a short v raises its index error.
    void setRow(int r, const Vector& v, int c = 0, int length = 0);
    // No wrap of negative values; length 0 runs to the end of the column.
    // Copies no more than v holds.
    void setColumn(unsigned c, const Vector& v, unsigned r = 0, unsigned length = 0);
    Matrix subMatrix(int r, int c, int rowNumber = 0, int colNumber = 0) const;
    // Writes a rowNumber x colNumber block read from m's storage with a
    // stride of rowNumber: m is meant to have exactly rowNumber rows.
    void setSubMatrix(int r, int c, const Matrix& m, int rowNumber = 0, int colNumber = 0);
    // A window on this matrix; counts below 1 as for SubMatrix.
    SubMatrix view(unsigned r, unsigned c, int rowNumber = 0, int colNumber = 0);

    unsigned rowNumber() const { return rows; }
    unsigned columnNumber() const { return cols; }
    unsigned size() const override { return rows; }
    unsigned elementCount() const { return rows * cols; }
    // The column-major storage, for the numeric routines.
    double* elements() { return data; }
    const double* elements() const { return data; }

    // New zeroed storage keeping the overlapping top-left block.
    void reSize(unsigned rows, unsigned cols);
    // resize 0: the dimensions must match (failure "set"); else as assignment.
    Matrix& set(const Matrix& m, int resize = 0);

    Matrix operator+(const Matrix& b) const;
    Matrix operator-(const Matrix& b) const;
    Matrix operator-() const;
    Matrix operator*(const Matrix& b) const;
    // v must be a column of size cols; the result is a column of size rows.
    Vector operator*(const Vector& v) const;
    Matrix operator*(double x) const;
    Matrix operator/(double x) const;
    Matrix& operator+=(const Matrix& b);
    Matrix& operator-=(const Matrix& b);  // its failure is named "operator="
    Matrix& operator*=(double x);
    Matrix& operator*=(const Matrix& b);

    Matrix transpose() const;
    double sum() const;
    double trace() const;
    // Scaled so that the elements sum to 1; a sum of 0 leaves it as it is.
    Matrix normalized() const;
    // *this + b with negative elements set to 0; its failure is named "operator-".
    Matrix addClamped(const Matrix& b) const;
    bool allNotAbove(double x) const;
    // Whether the matrix is zero within the tolerance x.
    bool allAbsNotAbove(double x) const;

    // Comma initialiser: m << 1, 2, 3, 4 fills row by row from (0, 0).
    MatrixCursor operator<<(double x);
    MatrixCursor operator<<(const Vector& v);

    // The precision of the next print only (class-wide), in a chain: os << m.precision(8).
    const Matrix& precision(unsigned n) const;
    static void setLineSeparator(const char* separator);
    // One line: " [ a b; c d]" with the given precision.
    String toString(unsigned precision = 3) const;
    // Replaces the contents with a matrix literal: "[1 2;3 4]", "[1,2;3,4]",
    // "1 2". The empty text gives 1x1 zero. A row longer than the first
    // prints "different matrix row lengths" on the console and keeps what was
    // read before it; a shorter one keeps zeros in its tail.
    Matrix& fromText(const char* text);

    bool isEqual(const Object& ob) const override;  // bytewise: 0.0 differs from -0.0
    int compare(const Object& ob) const override;   // bytes in storage order, not numeric
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

    // Raises DIFFMTRXDIM with this matrix's class and shape and the other shape.
    void dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const;

private:
    void allocate(unsigned r, unsigned c);
    void checkSameShape(const Matrix& b, const char* method) const;
    unsigned wrapIndex(int i, unsigned n, const char* method) const;
    unsigned countFrom(int count, unsigned start, unsigned n, const char* method) const;
    template <class Stream>
    void readFields(Stream& is);

    double* data;  // column-major: (r, c) at c * rows + r; owned
    unsigned rows;
    unsigned cols;
};

Matrix operator*(double x, const Matrix& m);

#endif
