// RFMatrix: construction from state matrices, access, frequency gains, the H2 and H-infinity norms, streams.
#include "algebra/rfmatrix.h"

#include <cmath>
#include <complex>
#include <iostream>
#include <vector>

#include "algebra/exprs.h"
#include "algebra/freqsrch.h"
#include "algebra/transnum.h"
#include "quill/collectn.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(RFMatrix, Algebra, 1, 0)

namespace {

// A sum of products: terms with a zero numerator are passed over, so that they don't multiply
// their denominators into the result.
struct RFSum {
    RationalFunction total;
    bool empty;
    explicit RFSum(double samplingTime) : total(0.0, samplingTime), empty(true) {}
    void add(const RationalFunction& term) {
        Vector num = term.numeratorCoefficients();
        bool zero = true;
        for (unsigned i = 0; i < num.size() && zero; ++i) zero = num[i] == 0.0;
        if (zero) return;
        total = empty ? term : total + term;
        empty = false;
    }
};

// A damaged element count is refused before anything is allocated for it.
const unsigned MAX_READ_ELEMENTS = 1u << 16;

}  // namespace

void RFMatrix::allocate(unsigned r, unsigned c) {
    rows = r;
    columns = c;
    size_t n = checkedElements(r, c, sizeof(RationalFunction));
    elements = new RationalFunction[n > 0 ? n : 1];
    for (size_t k = 0; k < n; ++k) elements[k] = RationalFunction(0.0, samplingTime);
}

void RFMatrix::copyFrom(const RFMatrix& m) {
    samplingTime = m.samplingTime;
    allocate(m.rows, m.columns);
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) elements[k] = m.elements[k];
    evaluationPoint = m.evaluationPoint;
    expression = m.expression ? new ExpressionS(*m.expression) : 0;
    system = m.system;
}

RFMatrix::RFMatrix() : samplingTime(0.0), elements(0), rows(0), columns(0), expression(0), system(0) {
    allocate(1, 1);
}

RFMatrix::RFMatrix(unsigned r, unsigned c, double T)
    : samplingTime(T), elements(0), rows(0), columns(0), expression(0), system(0) {
    allocate(r, c);
}

RFMatrix::RFMatrix(const RFMatrix& m)
    : Algebra(m), samplingTime(0.0), elements(0), rows(0), columns(0), expression(0), system(0) {
    copyFrom(m);
}

RFMatrix::RFMatrix(const PMatrix& num, const Polynomial& den)
    : samplingTime(num.samplingTime()), elements(0), rows(0), columns(0), expression(0), system(0) {
    allocate(num.rowNumber(), num.columnNumber());
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < columns; ++j)
            elements[size_t(i) * columns + j] = RationalFunction(num(i, j), den, samplingTime);
}

RFMatrix& RFMatrix::operator=(const RFMatrix& m) {
    if (this == &m) return *this;
    delete[] elements;
    if (expression) delete expression;
    copyFrom(m);
    return *this;
}

RFMatrix::~RFMatrix() noexcept(false) {
    delete[] elements;
    if (expression) delete expression;
}

RFMatrix::RFMatrix(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, double T)
    : samplingTime(T), elements(0), rows(0), columns(0), expression(0), system(0) {
    unsigned n = A.rowNumber();
    allocate(D.rowNumber(), D.columnNumber());
    if (A.columnNumber() != n) A.dimensionError("RFMatrix", n, n);
    if (B.rowNumber() != n || B.columnNumber() != columns) B.dimensionError("RFMatrix", n, columns);
    if (C.rowNumber() != rows || C.columnNumber() != n) C.dimensionError("RFMatrix", rows, n);
    Vector den = polynomialFromRoots(n ? computeEigenvalues(A) : Matrix());
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < columns; ++j)
            elements[size_t(i) * columns + j] = RationalFunction(transferNumerator(A, B, C, D, i, j), den, T);
}

// Access

void RFMatrix::checkIndex(unsigned i, unsigned limit, const char* method) const {
    if (i >= limit) setError(INDEXRANGE, SEV_ERROR, className(), method, int(i));
}

RationalFunction& RFMatrix::operator()(unsigned row, unsigned column) {
    checkIndex(row, rows, "operator()");
    checkIndex(column, columns, "operator()");
    return elements[size_t(row) * columns + column];
}

const RationalFunction& RFMatrix::operator()(unsigned row, unsigned column) const {
    checkIndex(row, rows, "operator()");
    checkIndex(column, columns, "operator()");
    return elements[size_t(row) * columns + column];
}

RFMatrix RFMatrix::subMatrix(unsigned row, unsigned column, unsigned rowNumber, unsigned colNumber) const {
    checkIndex(row, rows, "subMatrix");
    checkIndex(column, columns, "subMatrix");
    checkIndex(row + rowNumber - 1, rows, "subMatrix");
    checkIndex(column + colNumber - 1, columns, "subMatrix");
    RFMatrix m(rowNumber, colNumber, samplingTime);
    for (unsigned i = 0; i < rowNumber; ++i)
        for (unsigned j = 0; j < colNumber; ++j)
            m.elements[size_t(i) * colNumber + j] = elements[size_t(row + i) * columns + column + j];
    return m;
}

// Norms and frequency gains

double RFMatrix::norm2(double from, double to) const {
    if (rows != 1 && columns != 1) {
        std::cout << "the method \"norm2\" applies only to rational function matrices \n"
                     "with only one input or one output"
                  << std::endl;
        return 0.0;
    }
    double sum = 0.0;
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) sum += elements[k].norm2(from, to);
    return sum;
}

CMatrix RFMatrix::valueAt(const Complex& point) const {
    if (expression) return expression->evaluate();
    CMatrix values(rows, columns);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < columns; ++j)
            values(i, j) = elements[size_t(i) * columns + j].value(point).value();
    return values;
}

double RFMatrix::evaluate(const Complex& point) {
    evaluationPoint = point;
    return valueAt(point).maxSingularValue();
}

void RFMatrix::setExpression(const ExpressionS& e) {
    delete expression;
    expression = new ExpressionS(e);
}

Complex RFMatrix::frequencyPoint(double w) const {
    if (samplingTime == 0.0) return Complex(0.0, w);
    double T = samplingTime > 0.0 ? samplingTime : 1.0;
    return Complex(std::cos(w * T), std::sin(w * T));
}

double RFMatrix::normHinf(double& wStart) {
    return peakGain([this](double w) { return evaluate(frequencyPoint(w)); }, wStart);
}

// Operators

RFMatrix RFMatrix::operator*(const RFMatrix& m) const {
    if (columns != m.rows)
        setError(DIFFMTRXDIM, SEV_ERROR, className(), "operator*", rows, columns, m.rows, m.columns);
    RFMatrix r(rows, m.columns, samplingTime);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < m.columns; ++j) {
            RFSum sum(samplingTime);
            for (unsigned k = 0; k < columns; ++k)
                sum.add(elements[size_t(i) * columns + k] * m.elements[size_t(k) * m.columns + j]);
            r.elements[size_t(i) * m.columns + j] = sum.total;
        }
    return r;
}

RFMatrix RFMatrix::operator*(const Matrix& m) const {
    if (columns != m.rowNumber())
        setError(DIFFMTRXDIM, SEV_ERROR, className(), "operator*", rows, columns, m.rowNumber(),
                 m.columnNumber());
    RFMatrix r(rows, m.columnNumber(), samplingTime);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < m.columnNumber(); ++j) {
            RFSum sum(samplingTime);
            for (unsigned k = 0; k < columns; ++k) sum.add(elements[size_t(i) * columns + k] * m(k, j));
            r.elements[size_t(i) * m.columnNumber() + j] = sum.total;
        }
    return r;
}

RFMatrix RFMatrix::operator*(double x) const {
    RFMatrix r(*this);
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) r.elements[k] = elements[k] * x;
    return r;
}

RFMatrix operator*(double x, const RFMatrix& m) { return m * x; }

bool RFMatrix::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const RFMatrix& m = static_cast<const RFMatrix&>(ob);
    if (rows != m.rows || columns != m.columns || samplingTime != m.samplingTime) return false;
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k)
        if (!elements[k].isEqual(m.elements[k])) return false;
    return true;
}

void RFMatrix::printOn(std::ostream& os) const {
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < columns; ++j)
            os << "(" << i << "," << j << ") " << elements[size_t(i) * columns + j] << "\n";
}

// Stream forms: the evaluation point, the expression and the system are not stored.

template <class Stream>
void RFMatrix::readElements(Stream& is, unsigned r, unsigned c) {
    if (size_t(r) * c > MAX_READ_ELEMENTS) setError(RDSYNERR, SEV_ERROR, "an element count", "too large");
    allocate(r, c);
    try {
        for (size_t k = 0, n = size_t(r) * c; k < n; ++k) readFrom(is, "RationalFunction", &elements[k]);
    } catch (...) {  // a constructor that fails runs no destructor
        delete[] elements;
        throw;
    }
}

RFMatrix::RFMatrix(std::istream& is, Object* where)
    : Algebra(is, where), samplingTime(0.0), elements(0), rows(0), columns(0), expression(0), system(0) {
    unsigned r = readNumber<unsigned>(is);
    unsigned c = readNumber<unsigned>(is);
    samplingTime = readNumber<double>(is);
    readElements(is, r, c);
}

RFMatrix::RFMatrix(BinIstream& is, Object* where)
    : Algebra(is, where), samplingTime(0.0), elements(0), rows(0), columns(0), expression(0), system(0) {
    unsigned r = 0, c = 0;
    is >> r >> c >> samplingTime;
    readElements(is, r, c);
}

void RFMatrix::storer(std::ostream& os) const {
    Algebra::storer(os);
    os << rows << ' ' << columns << ' ' << samplingTime << ' ';
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) elements[k].storeOn(os);
}

void RFMatrix::storer(BinOstream& os) const {
    Algebra::storer(os);
    os << rows << columns << samplingTime;
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) elements[k].storeOn(os);
}

// A bytewise copy shares the elements and the expression until it takes copies of its own.
void RFMatrix::clearCopiedState() {
    Algebra::clearCopiedState();
    evaluationPoint.clearCopiedState();
    const RationalFunction* shared = elements;
    const ExpressionS* sharedExpression = expression;
    allocate(rows, columns);
    for (size_t k = 0, n = size_t(rows) * columns; k < n; ++k) elements[k] = shared[k];
    expression = sharedExpression ? new ExpressionS(*sharedExpression) : 0;
}
