// DynOp: construction, simplification, accessors, printing and the stream form.
#include "control/dynop.h"

#include <iostream>

#include "algebra/ratfun.h"
#include "algebra/rfmatrix.h"
#include "quill/intarray.h"
#include "quill/objio.h"

DEFINE_CLASS(DynOp, Algebra, 1, 0)

// Blocks and stacking on matrices that may have no rows or no columns.

namespace dynop {

Matrix block(const Matrix& M, unsigned r, unsigned c, unsigned rows, unsigned cols) {
    if (rows == 0 || cols == 0) return Matrix(rows, cols);
    return M.subMatrix(r, c, rows, cols);
}

Partition::Partition(const Matrix& a, const Matrix& b, const Matrix& c, const Matrix& d, unsigned controls,
                     unsigned measures) {
    unsigned n = a.rowNumber(), m = d.columnNumber(), p = d.rowNumber();
    unsigned m1 = m - controls, p1 = p - measures;
    A = a;
    B1 = block(b, 0, 0, n, m1);
    B2 = block(b, 0, m1, n, controls);
    C1 = block(c, 0, 0, p1, n);
    C2 = block(c, p1, 0, measures, n);
    D11 = block(d, 0, 0, p1, m1);
    D12 = block(d, 0, m1, p1, controls);
    D21 = block(d, p1, 0, measures, m1);
    D22 = block(d, p1, m1, measures, controls);
}

Partition::Partition(const DynOp& s)
    : Partition(s.stateA(), s.stateB(), s.stateC(), s.getD(), s.controlNumber(), s.measureNumber()) {}

Matrix stack(const Matrix& top, const Matrix& bottom) {
    if (top.columnNumber() != bottom.columnNumber())
        top.dimensionError("stack", bottom.rowNumber(), bottom.columnNumber());
    Matrix r(top.rowNumber() + bottom.rowNumber(), top.columnNumber());
    for (unsigned c = 0; c < r.columnNumber(); ++c) {
        for (unsigned i = 0; i < top.rowNumber(); ++i) r(i, c) = top(i, c);
        for (unsigned i = 0; i < bottom.rowNumber(); ++i) r(top.rowNumber() + i, c) = bottom(i, c);
    }
    return r;
}

Matrix sideBySide(const Matrix& left, const Matrix& right) {
    return stack(left.transpose(), right.transpose()).transpose();
}

Matrix nullBasis(Matrix K, double limit) {
    unsigned cols = K.columnNumber();
    Matrix U, Vt;
    Vector sigma = Algebra().svd(K, U, Vt, true);
    double bound = limit * std::max(1.0, sigma.size() ? sigma[0u] : 0.0);
    unsigned rank = 0;
    while (rank < sigma.size() && sigma[rank] > bound) ++rank;
    Matrix N(cols, cols - rank);
    for (unsigned j = rank; j < cols; ++j)
        for (unsigned i = 0; i < cols; ++i) N(i, j - rank) = Vt(j, i);
    return N;
}

Matrix columnsOf(const Matrix& M, const IntArray* columns) {
    if (!columns) return M;
    Matrix r(M.rowNumber(), columns->size());
    for (unsigned j = 0; j < columns->size(); ++j)
        for (unsigned i = 0; i < M.rowNumber(); ++i) r(i, j) = M(i, (*columns)[int(j)]);
    return r;
}

}  // namespace dynop

// Construction

DynOp::DynOp() {}

DynOp::DynOp(const Matrix& a, const Matrix& b, const Matrix& c, const Matrix& d, unsigned controls,
             unsigned measures, unsigned feedForward, bool simplify)
    : order_(a.rowNumber()),
      inputNumber_(b.columnNumber()),
      controlNumber_(controls),
      outputNumber_(c.rowNumber()),
      measureNumber_(measures),
      feedForwardNumber_(feedForward),
      isStatic(0),
      isZeroGain(0),
      A(a),
      C(c),
      B(b),
      D(d) {
    if (D.rowNumber() == 0 && D.columnNumber() == 0) D = Matrix(outputNumber_, inputNumber_);
    if (D.rowNumber() != outputNumber_ || D.columnNumber() != inputNumber_)
        D.dimensionError("DynOp", outputNumber_, inputNumber_);
    if (A.columnNumber() != order_ || B.rowNumber() != order_ || C.columnNumber() != order_)
        A.dimensionError("DynOp", B.rowNumber(), C.columnNumber());
    setShape(simplify);
}

DynOp::DynOp(const Vector& numerator, const Vector& denominator) : DynOp() {
    if (denominator.size() == 0 || denominator[0u] == 0.0) {
        *this = DynOp(numerator.size() ? numerator[0u] : 0.0, 0, 0, 0);
        return;
    }
    double a0 = denominator[0u];
    unsigned n = denominator.size() - 1;
    Vector num(numerator.size()), den(denominator.size());
    for (unsigned i = 0; i < num.size(); ++i) num[i] = numerator[i] / a0;
    for (unsigned i = 0; i < den.size(); ++i) den[i] = denominator[i] / a0;
    double d = 0.0;
    if (num.size() == den.size()) {
        d = num[0u];
        Vector rest(n);
        for (unsigned i = 0; i < n; ++i) rest[i] = num[i + 1] - d * den[i + 1];
        num = rest;
    }
    std::cout << "n " << n << "\n";
    Matrix a(n, n), b(n, 1), c(1, n), dm(1, 1);
    for (unsigned i = 0; i + 1 < n; ++i) a(i, i + 1) = 1.0;
    for (unsigned j = 0; j < n; ++j) a(n - 1, j) = -den[n - j];
    if (n) b(n - 1, 0) = 1.0;
    // The numerator, highest power first, fills C from its last column backwards.
    for (unsigned i = 0; i < num.size() && i < n; ++i) c(0, i) = num[num.size() - 1 - i];
    dm(0, 0) = d;
    *this = DynOp(a, b, c, dm, 0, 0, 0, true);
}

DynOp::DynOp(const RationalFunction& f) : DynOp(f.numeratorCoefficients(), f.denominatorCoefficients()) {}

DynOp::DynOp(const RFMatrix& m) : DynOp(Matrix(m.rowNumber(), m.columnNumber())) {
    std::cout << " not yet implemented " << std::endl;
    isZeroGain = 1;
}

DynOp::DynOp(const Matrix& d) : DynOp() {
    D = d;
    inputNumber_ = d.columnNumber();
    outputNumber_ = d.rowNumber();
    isZeroGain = 0;
}

DynOp::DynOp(double gain, unsigned controls, unsigned measures, unsigned feedForward) : DynOp(Matrix(1, 1)) {
    D(0, 0) = gain;
    controlNumber_ = controls;
    measureNumber_ = measures;
    feedForwardNumber_ = feedForward;
    isZeroGain = gain == 0.0;
}

DynOp::DynOp(const DynOp& s) : Algebra(s) { *this = s; }

DynOp::DynOp(const DynOp& s, unsigned controls, unsigned measures, unsigned feedForward) : DynOp(s) {
    controlNumber_ = controls;
    measureNumber_ = measures;
    feedForwardNumber_ = feedForward;
}

DynOp& DynOp::operator=(const DynOp& s) {
    if (this == &s) return *this;
    order_ = s.order_;
    inputNumber_ = s.inputNumber_;
    controlNumber_ = s.controlNumber_;
    outputNumber_ = s.outputNumber_;
    measureNumber_ = s.measureNumber_;
    feedForwardNumber_ = s.feedForwardNumber_;
    isSchur = s.isSchur;
    isStatic = s.isStatic;
    isZeroGain = s.isZeroGain;
    A = s.A;
    C = s.C;
    B = s.B;
    D = s.D;
    return *this;
}

// isSchur from the shape of A, then the reduction to a static gain or a zero system.
void DynOp::setShape(bool simplify) {
    if (order_ == 0) {
        makeStatic();
        if (numerics().isSmall(D, zeroTolerance)) isZeroGain = 1;
        return;
    }
    isSchur = numerics().isQuasiTriangular(A);
    if (!simplify) return;
    Algebra& alg = numerics();
    bool exactZeroB = B.rowNumber() == 1 && B.columnNumber() == 1 && B(0, 0) == 0.0;
    bool exactZeroC = C.rowNumber() == 1 && C.columnNumber() == 1 && C(0, 0) == 0.0;
    if (exactZeroB || exactZeroC || alg.isSmall(B, zeroTolerance) || alg.isSmall(C, zeroTolerance)) {
        makeStatic();
        if (alg.isSmall(D, zeroTolerance)) isZeroGain = 1;
    }
    if (alg.isSmall(A, zeroTolerance) && alg.isSmall(B, zeroTolerance) && alg.isSmall(C, zeroTolerance) &&
        alg.isSmall(D, zeroTolerance)) {
        isStatic = 1;
        isZeroGain = 1;
    }
}

void DynOp::makeStatic() {
    isStatic = 1;
    isSchur = 0;
    order_ = 0;
    A = Matrix();
    B = Matrix();
    C = Matrix();
    outputNumber_ = D.rowNumber();
    inputNumber_ = D.columnNumber();
}

// Accessors

Matrix DynOp::stateA() const { return isStatic ? Matrix(0, 0) : A; }
Matrix DynOp::stateB() const { return isStatic ? Matrix(0, inputNumber_) : B; }
Matrix DynOp::stateC() const { return isStatic ? Matrix(outputNumber_, 0) : C; }

Matrix DynOp::getA(unsigned r, unsigned c, unsigned rows, unsigned cols) const {
    if (r == 0 && c == 0 && rows == 0 && cols == 0) return A;
    return A.subMatrix(r, c, rows, cols);
}

Matrix DynOp::getB(const IntArray* columns) const { return dynop::columnsOf(B, columns); }

Matrix DynOp::getC(const IntArray* rows) const { return dynop::columnsOf(C.transpose(), rows).transpose(); }

std::unique_ptr<DynOp> DynOp::inTimeDomain(const DynOp& s) const { return std::make_unique<DynOp>(s); }

RFMatrix DynOp::transferMatrix() const { return RFMatrix(stateA(), stateB(), stateC(), D, samplingTimeOf()); }

// Printing and streams

const char* DynOp::typeName() const { return "Continuous-time System"; }

namespace {
const char* yesNo(int flag) { return flag ? "YES" : "NO"; }
}  // namespace

bool DynOp::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const DynOp& s = static_cast<const DynOp&>(ob);
    return order_ == s.order_ && inputNumber_ == s.inputNumber_ && outputNumber_ == s.outputNumber_ &&
           controlNumber_ == s.controlNumber_ && measureNumber_ == s.measureNumber_ &&
           feedForwardNumber_ == s.feedForwardNumber_ && isStatic == s.isStatic &&
           isZeroGain == s.isZeroGain && A.isEqual(s.A) && B.isEqual(s.B) && C.isEqual(s.C) && D.isEqual(s.D);
}

void DynOp::printHeader(std::ostream& os) const {
    os << typeName() << "; order = " << order_ << ", inputs = " << inputNumber_
       << ", controls = " << controlNumber_ << "\n";
    os << "outputs = " << outputNumber_ << ", measures = " << measureNumber_
       << ", feed forward dist. = " << feedForwardNumber_ << "\n";
    os << "isZeroGain = " << yesNo(isZeroGain) << ", is a static system = " << yesNo(isStatic)
       << ", is schur = " << yesNo(isSchur) << "\n";
}

void DynOp::printOn(std::ostream& os) const {
    if (isStatic) {
        os << "static gain;  inputs = " << inputNumber_ << "  outputs = " << outputNumber_ << "\n";
        os << "isZeroGain = " << yesNo(isZeroGain) << "\n";
        os << "D " << D.precision(16) << "\n";
        return;
    }
    printHeader(os);
    os << "A = " << A.precision(16) << ";\n";
    os << "B = " << B.precision(16) << ";\n";
    os << "C = " << C.precision(16) << ";\n";
    os << "D = " << D.precision(16) << ";\n";
}

DynOp::DynOp(std::istream& is, Object* where) : Algebra(is, where) { readFields(is); }

DynOp::DynOp(BinIstream& is, Object* where) : Algebra(is, where) { readFields(is); }

template <class Stream>
void DynOp::readFields(Stream& is) {
    readFrom(is, "Matrix", &A);
    readFrom(is, "Matrix", &B);
    readFrom(is, "Matrix", &C);
    readFrom(is, "Matrix", &D);
    order_ = A.rowNumber();
    outputNumber_ = C.rowNumber();
    inputNumber_ = B.columnNumber();
    readFlags(is);
}

template <class Stream>
void DynOp::readFlags(Stream& is) {
    isSchur = readNumber<std::int32_t>(is);
    isStatic = readNumber<std::int32_t>(is);
    isZeroGain = readNumber<std::int32_t>(is);
    controlNumber_ = readNumber<std::uint32_t>(is);
    measureNumber_ = readNumber<std::uint32_t>(is);
    feedForwardNumber_ = readNumber<std::uint32_t>(is);
    if (isStatic) {
        order_ = 0;
        outputNumber_ = D.rowNumber();
        inputNumber_ = D.columnNumber();
    }
}

void DynOp::storer(std::ostream& os) const {
    Algebra::storer(os);
    A.storeOn(os);
    B.storeOn(os);
    C.storeOn(os);
    D.storeOn(os);
    os << isSchur << ' ' << isStatic << ' ' << isZeroGain << ' ';
    os << controlNumber_ << ' ' << measureNumber_ << ' ' << feedForwardNumber_ << ' ';
}

void DynOp::storer(BinOstream& os) const {
    Algebra::storer(os);
    A.storeOn(os);
    B.storeOn(os);
    C.storeOn(os);
    D.storeOn(os);
    os << isSchur << isStatic << isZeroGain << controlNumber_ << measureNumber_ << feedForwardNumber_;
}

// A bytewise copy shares the matrices' storage until each takes its own.
void DynOp::clearCopiedState() {
    Algebra::clearCopiedState();
    A.clearCopiedState();
    C.clearCopiedState();
    B.clearCopiedState();
    D.clearCopiedState();
}
