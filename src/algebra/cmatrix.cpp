// CMatrix: element access, arithmetic, the complex SVD, printing and the stream forms.
#include "algebra/cmatrix.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>
#include <ostream>
#include <utility>

#include "quill/binstrm.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/substrng.h"

DEFINE_CLASS(CMatrix, Algebra, 1, 0)

typedef std::complex<double> Cx;

CMatrix::CMatrix() : data(1), rows(1), cols(1) {}

CMatrix::CMatrix(unsigned r, unsigned c) : data(checkedElements(r, c, sizeof(Cx))), rows(r), cols(c) {}

CMatrix::CMatrix(const Matrix& re) : CMatrix(re.rowNumber(), re.columnNumber()) {
    const double* x = re.elements();
    for (size_t k = 0; k < data.size(); ++k) data[k] = x[k];
}

CMatrix::CMatrix(const Matrix& re, const Matrix& im) : CMatrix(re) {
    if (im.rowNumber() != rows || im.columnNumber() != cols)
        dimensionError("CMatrix", im.rowNumber(), im.columnNumber());
    const double* y = im.elements();
    for (size_t k = 0; k < data.size(); ++k) data[k].imag(y[k]);
}

CMatrix::CMatrix(const CMatrix& m) : Algebra(m), data(m.data), rows(m.rows), cols(m.cols) {}

CMatrix& CMatrix::operator=(const CMatrix& m) {
    data = m.data;
    rows = m.rows;
    cols = m.cols;
    return *this;
}

CMatrix CMatrix::identity(unsigned n) {
    CMatrix m(n, n);
    for (unsigned i = 0; i < n; ++i) m.data[size_t(i) * n + i] = 1.0;
    return m;
}

// --- Stream forms ---

namespace {

// Values arrive pair by pair; the storage grows with them so that a damaged count
// ends at the end of the stream rather than in a huge allocation.
template <class Read>
void readPairs(std::vector<Cx>& data, size_t n, Read read) {
    data.clear();
    data.reserve(n < 4096 ? n : 4096);
    for (size_t k = 0; k < n; ++k) {
        double re = read(), im = read();
        data.push_back(Cx(re, im));
    }
}

}  // namespace

CMatrix::CMatrix(std::istream& is, Object* where) : Algebra(is, where), rows(0), cols(0) {
    unsigned r = readNumber<unsigned>(is);
    unsigned c = readNumber<unsigned>(is);
    readPairs(data, size_t(r) * c, [&is]() { return readNumber<double>(is); });
    rows = r;
    cols = c;
}

CMatrix::CMatrix(BinIstream& is, Object* where) : Algebra(is, where), rows(0), cols(0) {
    unsigned r = 0, c = 0;
    is >> r >> c;
    readPairs(data, size_t(r) * c, [&is]() {
        double x = 0.0;
        is >> x;
        return x;
    });
    rows = r;
    cols = c;
}

void CMatrix::storer(std::ostream& os) const {
    Algebra::storer(os);
    os << rows << " " << cols;
    char cell[64];
    for (size_t k = 0; k < data.size(); ++k) {
        snprintf(cell, sizeof cell, " %.17g %.17g", data[k].real(), data[k].imag());
        os << cell;
        if ((k + 1) % 10 == 0) os << "\n";
    }
    os << ' ';
}

void CMatrix::storer(BinOstream& os) const {
    Algebra::storer(os);
    os << rows << cols;
    for (const Cx& z : data) os << z.real() << z.imag();
}

// --- Access and arithmetic ---

Cx& CMatrix::operator()(unsigned r, unsigned c) {
    if (r >= rows) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(r));
    if (c >= cols) setError(INDEXRANGE, SEV_ERROR, className(), "operator()", int(c));
    return data[size_t(c) * rows + r];
}

Cx CMatrix::operator()(unsigned r, unsigned c) const { return const_cast<CMatrix&>(*this)(r, c); }

void CMatrix::dimensionError(const char* method, unsigned otherRows, unsigned otherCols) const {
    setError(DIFFMTRXDIM, SEV_ERROR, className(), method, rows, cols, otherRows, otherCols);
}

void CMatrix::checkSameShape(const CMatrix& b, const char* method) const {
    if (rows != b.rows || cols != b.cols) dimensionError(method, b.rows, b.cols);
}

Matrix CMatrix::realPart() const {
    Matrix m(rows, cols);
    for (size_t k = 0; k < data.size(); ++k) m.elements()[k] = data[k].real();
    return m;
}

Matrix CMatrix::imagPart() const {
    Matrix m(rows, cols);
    for (size_t k = 0; k < data.size(); ++k) m.elements()[k] = data[k].imag();
    return m;
}

CMatrix CMatrix::transpose() const {
    CMatrix t(cols, rows);
    for (unsigned j = 0; j < cols; ++j)
        for (unsigned i = 0; i < rows; ++i) t.data[size_t(i) * cols + j] = data[size_t(j) * rows + i];
    return t;
}

CMatrix CMatrix::conjugateTranspose() const {
    CMatrix t = transpose();
    for (Cx& z : t.data) z = std::conj(z);
    return t;
}

CMatrix CMatrix::operator+(const CMatrix& b) const {
    checkSameShape(b, "operator+");
    CMatrix r(*this);
    for (size_t k = 0; k < data.size(); ++k) r.data[k] += b.data[k];
    return r;
}

CMatrix CMatrix::operator-(const CMatrix& b) const {
    checkSameShape(b, "operator-");
    CMatrix r(*this);
    for (size_t k = 0; k < data.size(); ++k) r.data[k] -= b.data[k];
    return r;
}

CMatrix CMatrix::operator-() const { return *this * -1.0; }

CMatrix CMatrix::operator*(const CMatrix& b) const {
    if (cols != b.rows) dimensionError("operator*", b.rows, b.cols);
    CMatrix r(rows, b.cols);
    for (unsigned j = 0; j < b.cols; ++j)
        for (unsigned k = 0; k < cols; ++k) {
            Cx bkj = b.data[size_t(j) * b.rows + k];
            for (unsigned i = 0; i < rows; ++i)
                r.data[size_t(j) * rows + i] += data[size_t(k) * rows + i] * bkj;
        }
    return r;
}

CMatrix CMatrix::operator*(const Complex& z) const {
    CMatrix r(*this);
    Cx w = z.value();
    for (Cx& x : r.data) x *= w;
    return r;
}

CMatrix CMatrix::operator*(double x) const {
    CMatrix r(*this);
    for (Cx& y : r.data) y *= x;
    return r;
}

CMatrix operator*(const Complex& z, const CMatrix& m) { return m * z; }
CMatrix operator*(double x, const CMatrix& m) { return m * x; }

// --- Singular values ---

// The complex singular value decomposition, through ZGESDD.
Vector Algebra::svd(CMatrix& A, CMatrix& U, CMatrix& VT, bool wantVectors) {
    unsigned m = A.rowNumber(), n = A.columnNumber();
    Vector s(m < n ? m : n);
    if (wantVectors) {
        U = CMatrix(m, m);
        VT = CMatrix(n, n);
    }
    lapackSvd(int(m), int(n), A.elements(), s.elements(), wantVectors ? U.elements() : 0,
              wantVectors ? VT.elements() : 0, wantVectors);
    return s;
}

Vector CMatrix::singularValues() const {
    CMatrix a(*this), u(0, 0), vt(0, 0);
    return const_cast<CMatrix&>(*this).svd(a, u, vt, false);
}

double CMatrix::maxSingularValue() const {
    if (rows == 0 || cols == 0) return 0.0;
    return singularValues()[0u];
}

// --- Comparison and printing ---

bool CMatrix::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const CMatrix& m = static_cast<const CMatrix&>(ob);
    return rows == m.rows && cols == m.cols && data == m.data;
}

unsigned CMatrix::hash() const {
    return hashText(reinterpret_cast<const char*>(data.data()), unsigned(data.size() * sizeof(Cx)));
}

void CMatrix::printOn(std::ostream& os) const {
    os << " [";
    for (unsigned i = 0; i < rows; ++i) {
        if (i) os << ";";
        for (unsigned j = 0; j < cols; ++j) {
            const Cx& z = data[size_t(j) * rows + i];
            os << formatText(" (%g,%g)", z.real(), z.imag());
        }
    }
    os << "]";
}

// A bytewise copy holds the original's vector: it is replaced, without being destroyed, by a copy
// of its elements.
void CMatrix::clearCopiedState() {
    Algebra::clearCopiedState();
    std::vector<std::complex<double>> own(data);
    new (&data) std::vector<std::complex<double>>(std::move(own));
}
