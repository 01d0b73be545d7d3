// PMatrix: element access, arithmetic, evaluation, printing and the stream forms.
#include "algebra/pmatrix.h"

#include <new>
#include <ostream>
#include <utility>
#include <vector>

#include "quill/binstrm.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"

DEFINE_CLASS(PMatrix, Algebra, 1, 0)

PMatrix::PMatrix() : data(1), rows(1), cols(1), sampling(0.0) {}

PMatrix::PMatrix(unsigned r, unsigned c, double samplingTime)
    : data(checkedElements(r, c, sizeof(Polynomial)), Polynomial(0.0, samplingTime)),
      rows(r),
      cols(c),
      sampling(samplingTime) {}

PMatrix::PMatrix(const Matrix& m, double samplingTime)
    : PMatrix(m.rowNumber(), m.columnNumber(), samplingTime) {
    for (size_t k = 0; k < data.size(); ++k) data[k] = Polynomial(m.elements()[k], samplingTime);
}

PMatrix::PMatrix(const PMatrix& m)
    : Algebra(m), data(m.data), rows(m.rows), cols(m.cols), sampling(m.sampling) {}

PMatrix& PMatrix::operator=(const PMatrix& m) {
    data = m.data;
    rows = m.rows;
    cols = m.cols;
    sampling = m.sampling;
    return *this;
}

PMatrix PMatrix::characteristic(const Matrix& A, double samplingTime) {
    unsigned n = A.rowNumber();
    if (n != A.columnNumber()) A.dimensionError("characteristic", n, n);
    PMatrix p(-A, samplingTime);
    Vector s(2u);
    s[0u] = 1.0;
    for (unsigned i = 0; i < n; ++i) {
        s[1u] = -A(i, i);
        p(i, i) = Polynomial(s, samplingTime);
    }
    return p;
}

// --- Stream forms ---

// The storage grows as the elements arrive: a damaged count ends at the end of the stream.
template <class Stream>
void PMatrix::readElements(Stream& is, unsigned r, unsigned c) {
    for (size_t k = 0, n = size_t(r) * c; k < n; ++k) {
        data.push_back(Polynomial());
        if (readFrom(is, "Polynomial", &data.back()) == nil) setError(RDEOF, SEV_ERROR);
    }
    rows = r;
    cols = c;
}

PMatrix::PMatrix(std::istream& is, Object* where) : Algebra(is, where), rows(0), cols(0), sampling(0.0) {
    unsigned r = readNumber<unsigned>(is);
    unsigned c = readNumber<unsigned>(is);
    sampling = readNumber<double>(is);
    readElements(is, r, c);
}

PMatrix::PMatrix(BinIstream& is, Object* where) : Algebra(is, where), rows(0), cols(0), sampling(0.0) {
    unsigned r = 0, c = 0;
    is >> r >> c >> sampling;
    readElements(is, r, c);
}

void PMatrix::storer(std::ostream& os) const {
    Algebra::storer(os);
    os << rows << ' ' << cols << ' ' << formatText("%.17g ", sampling);
    for (const Polynomial& p : data) p.storeOn(os);
}

void PMatrix::storer(BinOstream& os) const {
    Algebra::storer(os);
    os << rows << cols << sampling;
    for (const Polynomial& p : data) p.storeOn(os);
}

// --- Access ---

Polynomial& PMatrix::operator()(unsigned r, unsigned c) {
    if (r >= rows) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(r));
    if (c >= cols) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(c));
    return data[size_t(c) * rows + r];
}

const Polynomial& PMatrix::operator()(unsigned r, unsigned c) const {
    return const_cast<PMatrix&>(*this)(r, c);
}

int PMatrix::order() const {
    int n = 0;
    for (const Polynomial& p : data)
        if (p.order() > n) n = p.order();
    return n;
}

void PMatrix::dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const {
    setError(DIFFMTRXDIM, SEV_ERROR, className(), method, rows, cols, otherRows, otherCols);
}

void PMatrix::checkSameShape(const PMatrix& b, const char* method) const {
    if (rows != b.rows || cols != b.cols) dimensionError(method, b.rows, b.cols);
}

// --- Evaluation and arithmetic ---

CMatrix PMatrix::value(const Complex& z) const {
    CMatrix m(rows, cols);
    for (size_t k = 0; k < data.size(); ++k) m.elements()[k] = data[k].value(z).value();
    return m;
}

Matrix PMatrix::value(double x) const {
    Matrix m(rows, cols);
    for (size_t k = 0; k < data.size(); ++k) m.elements()[k] = data[k].value(x);
    return m;
}

PMatrix PMatrix::operator+(const PMatrix& b) const {
    checkSameShape(b, "operator+");
    PMatrix r(*this);
    for (size_t k = 0; k < data.size(); ++k) r.data[k] = data[k] + b.data[k];
    return r;
}

PMatrix PMatrix::operator-(const PMatrix& b) const {
    checkSameShape(b, "operator-");
    PMatrix r(*this);
    for (size_t k = 0; k < data.size(); ++k) r.data[k] = data[k] - b.data[k];
    return r;
}

PMatrix PMatrix::operator*(const PMatrix& b) const {
    if (cols != b.rows) dimensionError("operator*", b.rows, b.cols);
    PMatrix r(rows, b.cols, sampling);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < b.cols; ++j)
            for (unsigned k = 0; k < cols; ++k) r(i, j) = r(i, j) + (*this)(i, k) * b(k, j);
    return r;
}

PMatrix PMatrix::operator*(const Matrix& b) const { return *this * PMatrix(b, sampling); }

PMatrix operator*(const Matrix& a, const PMatrix& b) { return PMatrix(a, b.samplingTime()) * b; }

PMatrix PMatrix::operator*(const Polynomial& p) const {
    PMatrix r(*this);
    for (Polynomial& x : r.data) x = x * p;
    return r;
}

PMatrix PMatrix::operator*(double x) const {
    PMatrix r(*this);
    for (Polynomial& p : r.data) p = p * x;
    return r;
}

PMatrix PMatrix::transpose() const {
    PMatrix t(cols, rows, sampling);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < cols; ++j) t(j, i) = (*this)(i, j);
    return t;
}

// --- Comparison and printing ---

bool PMatrix::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const PMatrix& m = static_cast<const PMatrix&>(ob);
    if (rows != m.rows || cols != m.cols || sampling != m.sampling) return false;
    for (size_t k = 0; k < data.size(); ++k)
        if (!data[k].isEqual(m.data[k])) return false;
    return true;
}

void PMatrix::printOn(std::ostream& os) const {
    os << "[ ";
    for (unsigned i = 0; i < rows; ++i) {
        if (i) os << " ;\n  ";
        for (unsigned j = 0; j < cols; ++j) os << (j ? " , " : "") << (*this)(i, j);
    }
    os << " ]";
}

// A bytewise copy holds the original's vector: it is replaced, without being destroyed, by a copy
// of its elements.
void PMatrix::clearCopiedState() {
    Algebra::clearCopiedState();
    std::vector<Polynomial> own(data);
    new (&data) std::vector<Polynomial>(std::move(own));
}
