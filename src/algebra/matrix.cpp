// Matrix: construction, element and block access, arithmetic and the Matrix errors.
#include "algebra/matrix.h"

#include <cmath>
#include <cstring>
#include <iostream>

#include "algebra/cursor.h"
#include "algebra/lapack.h"
#include "algebra/submatrx.h"
#include "algebra/vector.h"
#include "quill/collectn.h"
#include "quill/objalloc.h"
#include "quill/quillerr.h"

int DIFFMTRXDIM = 0;

static void initMatrix(Class*) {
    DIFFMTRXDIM = newQUILLerror("[DIFFMTRXDIM] Different matrix dimension in %s::%s, %u %u, %u %u");
}

DEFINE_CLASS(Matrix, Object, 1, initMatrix)

void Matrix::allocate(unsigned r, unsigned c) {
    rows = r;
    cols = c;
    size_t n = size_t(r) * c;
    data = static_cast<double*>(objectCalloc(n > 0 ? n : 1, sizeof(double)));
}

Matrix::Matrix() { allocate(1, 1); }

Matrix::Matrix(unsigned r, unsigned c) { allocate(r, c); }

Matrix::Matrix(double* buffer, unsigned r, unsigned c) : data(buffer), rows(r), cols(c) {}

Matrix::Matrix(const Matrix& m) : Object(m) {
    allocate(m.rows, m.cols);
    memcpy(data, m.data, size_t(rows) * cols * sizeof(double));
}

Matrix::Matrix(const Vector& v, unsigned count, unsigned index) {
    if (v.isColumn()) {
        allocate(v.size(), count);
        setColumn(index, v);
    } else {
        allocate(count, v.size());
        setRow(int(index), v);
    }
}

Matrix::Matrix(const Collection& vectors) {
    Iterator it(vectors);
    Object* first = it();
    allocate(vectors.size(), first ? CAST(Vector, first)->size() : 0);
    it.reset();
    int r = 0;
    while (Object* ob = it()) setRow(r++, *CAST(Vector, ob));
}

Matrix::Matrix(const SubMatrix& s) {
    s.checkInside();
    allocate(s.rowNumber, s.colNumber);
    const Matrix& m = *s.matrix;
    for (unsigned c = 0; c < cols; ++c)
        memcpy(data + size_t(c) * rows, m.data + size_t(s.colIndex + c) * m.rows + s.rowIndex,
               rows * sizeof(double));
}

Matrix::Matrix(const char* text) {
    allocate(1, 1);
    fromText(text);
}

Matrix::~Matrix() noexcept(false) { objectFree(data); }

// Copies over itself harmlessly, so no self-test.
Matrix& Matrix::operator=(const Matrix& m) {
    size_t n = size_t(m.rows) * m.cols;
    if (n != size_t(rows) * cols) {
        objectFree(data);
        allocate(m.rows, m.cols);
    }
    rows = m.rows;
    cols = m.cols;
    memmove(data, m.data, n * sizeof(double));
    return *this;
}

void Matrix::clearCopiedState() {
    Object::clearCopiedState();
    double* shared = data;
    allocate(rows, cols);
    memcpy(data, shared, size_t(rows) * cols * sizeof(double));
}

void Matrix::dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const {
    setError(DIFFMTRXDIM, SEV_ERROR, className(), method, rows, cols, otherRows, otherCols);
}

void Matrix::checkSameShape(const Matrix& b, const char* method) const {
    if (rows != b.rows || cols != b.cols) dimensionError(method, b.rows, b.cols);
}

// Makers

Matrix Matrix::diagonal(unsigned n, double value) {
    Matrix m(n, n);
    for (unsigned i = 0; i < n; ++i) m.data[size_t(i) * n + i] = value;
    return m;
}

Matrix Matrix::diagonal(const Vector& v) {
    unsigned n = v.size();
    Matrix m(n, n);
    for (unsigned i = 0; i < n; ++i) m.data[size_t(i) * n + i] = v.elements()[i];
    return m;
}

Matrix Matrix::blockDiagonal(const Matrix& a, const Matrix& b) {
    Matrix m(a.rows + b.rows, a.cols + b.cols);
    for (unsigned c = 0; c < a.cols; ++c)
        memcpy(m.data + size_t(c) * m.rows, a.data + size_t(c) * a.rows, a.rows * sizeof(double));
    for (unsigned c = 0; c < b.cols; ++c)
        memcpy(m.data + size_t(a.cols + c) * m.rows + a.rows, b.data + size_t(c) * b.rows,
               b.rows * sizeof(double));
    return m;
}

Vector Matrix::toVector() const { return Vector(data, rows != 1 ? rows : cols); }

// Element access

double& Matrix::operator()(unsigned r, unsigned c) {
    if (r >= rows) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(r));
    if (c >= cols) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(c));
    return data[size_t(c) * rows + r];
}

double Matrix::operator()(unsigned r, unsigned c) const { return const_cast<Matrix&>(*this)(r, c); }

MatrixCursor Matrix::operator[](unsigned r) {
    if (r >= rows) setError(INDEXRANGE, SEV_ERROR, className(), "operator[]", int(r));
    return MatrixCursor(*this, r, 0);
}

MatrixCursor Matrix::operator<<(double x) {
    MatrixCursor cursor(*this, 0, 0);
    cursor, x;
    return cursor;
}

MatrixCursor Matrix::operator<<(const Vector& v) {
    MatrixCursor cursor(*this, 0, 0);
    cursor, v;
    return cursor;
}

// Block access

// A negative index counts from the end; the result must lie below n.
unsigned Matrix::wrapIndex(int i, unsigned n, const char* method) const {
    long k = i < 0 ? long(i) + long(n) : long(i);
    if (k < 0 || k >= long(n)) setError(INDEXRANGE, SEV_ERROR, className(), method, i);
    return unsigned(k);
}

// Count 0 runs from start to n, a negative count stops that many short.
unsigned Matrix::countFrom(int count, unsigned start, unsigned n, const char* method) const {
    long k = count > 0 ? long(count) : long(n) - long(start) + count;
    if (k < 0 || long(start) + k > long(n)) setError(INDEXRANGE, SEV_ERROR, className(), method, count);
    return unsigned(k);
}

Vector Matrix::row(int r, int c, int length) const {
    unsigned i = wrapIndex(r, rows, "row");
    unsigned j = wrapIndex(c, cols, "row");
    unsigned n = countFrom(length, j, cols, "row");
    Vector v(n);
    for (unsigned k = 0; k < n; ++k) v.elements()[k] = data[size_t(j + k) * rows + i];
    return v;
}

Vector Matrix::column(int c, int r, int length) const {
    unsigned j = wrapIndex(c, cols, "column");
    unsigned i = wrapIndex(r, rows, "column");
    unsigned n = countFrom(length, i, rows, "column");
    return Vector(data + size_t(j) * rows + i, n);
}

void Matrix::setRow(int r, const Vector& v, int c, int length) {
    unsigned i = wrapIndex(r, rows, "setRow");
    unsigned j = wrapIndex(c, cols, "setRow");
    unsigned n = countFrom(length, j, cols, "setRow");
    for (unsigned k = 0; k < n; ++k) data[size_t(j + k) * rows + i] = v[k];
}

void Matrix::setColumn(unsigned c, const Vector& v, unsigned r, unsigned length) {
    if (r >= rows) setError(INDEXRANGE, SEV_ERROR, className(), "column", int(r));
    if (c >= cols) setError(INDEXRANGE, SEV_ERROR, className(), "column", int(c));
    unsigned n = length == 0 || length > rows - r ? rows - r : length;
    if (n > v.size()) n = v.size();
    memcpy(data + size_t(c) * rows + r, v.elements(), n * sizeof(double));
}

Matrix Matrix::subMatrix(int r, int c, int rowNumber, int colNumber) const {
    unsigned i = wrapIndex(r, rows, "subMatrix");
    unsigned j = wrapIndex(c, cols, "subMatrix");
    Matrix m(countFrom(rowNumber, i, rows, "subMatrix"), countFrom(colNumber, j, cols, "subMatrix"));
    for (unsigned k = 0; k < m.cols; ++k)
        memcpy(m.data + size_t(k) * m.rows, data + size_t(j + k) * rows + i, m.rows * sizeof(double));
    return m;
}

void Matrix::setSubMatrix(int r, int c, const Matrix& m, int rowNumber, int colNumber) {
    unsigned i = wrapIndex(r, rows, "setSubMatrix");
    unsigned j = wrapIndex(c, cols, "setSubMatrix");
    unsigned nr = countFrom(rowNumber, i, rows, "setSubMatrix");
    unsigned nc = countFrom(colNumber, j, cols, "setSubMatrix");
    // The block is read with a stride of nr; it must at least lie in m's storage.
    QASSERT(size_t(nr) * nc <= size_t(m.rows) * m.cols);
    Matrix source(m);  // m may be this matrix
    for (unsigned k = 0; k < nc; ++k)
        memcpy(data + size_t(j + k) * rows + i, source.data + size_t(k) * nr, nr * sizeof(double));
}

SubMatrix Matrix::view(unsigned r, unsigned c, int rowNumber, int colNumber) {
    return SubMatrix(*this, r, c, rowNumber, colNumber);
}

void Matrix::reSize(unsigned r, unsigned c) {
    double* old = data;
    unsigned oldRows = rows, oldCols = cols;
    allocate(r, c);
    unsigned keepRows = r < oldRows ? r : oldRows;
    unsigned keepCols = c < oldCols ? c : oldCols;
    for (unsigned k = 0; k < keepCols; ++k)
        memcpy(data + size_t(k) * rows, old + size_t(k) * oldRows, keepRows * sizeof(double));
    objectFree(old);
}

Matrix& Matrix::set(const Matrix& m, int resize) {
    if (resize) return *this = m;
    checkSameShape(m, "set");
    memmove(data, m.data, size_t(rows) * cols * sizeof(double));
    return *this;
}

// Arithmetic

Matrix Matrix::operator+(const Matrix& b) const {
    checkSameShape(b, "operator+");
    Matrix m(*this);
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) m.data[k] += b.data[k];
    return m;
}

Matrix Matrix::operator-(const Matrix& b) const {
    checkSameShape(b, "operator-");
    Matrix m(*this);
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) m.data[k] -= b.data[k];
    return m;
}

Matrix Matrix::operator-() const {
    Matrix m(*this);
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) m.data[k] = -data[k];
    return m;
}

Matrix Matrix::operator*(const Matrix& b) const {
    if (cols != b.rows) dimensionError("operator*", b.rows, b.cols);
    Matrix m(rows, b.cols);
    blasProduct(int(rows), int(b.cols), int(cols), data, false, b.data, false, m.data);
    return m;
}

Vector Matrix::operator*(const Vector& v) const {
    if (!v.isColumn() || v.size() != cols) {
        std::cout << "vector dimension different from matrix column number" << std::endl;
        if (v.isColumn())
            dimensionError("operator*", v.size(), 1);
        else
            dimensionError("operator*", 1, v.size());
    }
    Vector result(rows);
    for (unsigned r = 0; r < rows; ++r) {
        double s = 0.0;
        for (unsigned k = 0; k < cols; ++k) s += data[size_t(k) * rows + r] * v.elements()[k];
        result.elements()[r] = s;
    }
    return result;
}

Matrix Matrix::operator*(double x) const {
    Matrix m(*this);
    return m *= x;
}

Matrix Matrix::operator/(double x) const { return *this * (1.0 / x); }

Matrix operator*(double x, const Matrix& m) { return m * x; }

Matrix& Matrix::operator+=(const Matrix& b) {
    checkSameShape(b, "operator+=");
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) data[k] += b.data[k];
    return *this;
}

// The failure keeps the name "operator=" that its messages have always shown.
Matrix& Matrix::operator-=(const Matrix& b) {
    checkSameShape(b, "operator=");
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) data[k] -= b.data[k];
    return *this;
}

Matrix& Matrix::operator*=(double x) {
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) data[k] *= x;
    return *this;
}

Matrix& Matrix::operator*=(const Matrix& b) { return *this = *this * b; }

Matrix Matrix::transpose() const {
    Matrix m(cols, rows);
    for (unsigned c = 0; c < cols; ++c)
        for (unsigned r = 0; r < rows; ++r) m.data[size_t(r) * cols + c] = data[size_t(c) * rows + r];
    return m;
}

double Matrix::sum() const {
    double s = 0.0;
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) s += data[k];
    return s;
}

double Matrix::trace() const {
    double s = 0.0;
    for (unsigned i = rows < cols ? rows : cols; i-- > 0;) s += data[size_t(i) * rows + i];
    return s;
}

Matrix Matrix::normalized() const {
    double s = sum();
    return *this * (s != 0.0 ? 1.0 / s : 1.0);
}

// Named as plain subtraction in its failure, as it always has been.
Matrix Matrix::addClamped(const Matrix& b) const {
    checkSameShape(b, "operator-");
    Matrix m(*this);
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) {
        m.data[k] += b.data[k];
        if (m.data[k] < 0.0) m.data[k] = 0.0;
    }
    return m;
}

bool Matrix::allNotAbove(double x) const {
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k)
        if (data[k] > x) return false;
    return true;
}

bool Matrix::allAbsNotAbove(double x) const {
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k)
        if (std::fabs(data[k]) > x) return false;
    return true;
}
