// DynOp compositions: series and parallel connection, gains, stacking of systems, selections,
// changes of basis and state feedback.
#include <algorithm>
#include <vector>

#include "control/dynop.h"
#include "quill/intarray.h"

using dynop::block;
using dynop::sideBySide;
using dynop::stack;

DynOp DynOp::operator*(const DynOp& other) const {
    if (inputNumber_ != other.outputNumber_)
        D.dimensionError("operator*", other.D.rowNumber(), other.D.columnNumber());
    Matrix A1 = stateA(), B1 = stateB(), C1 = stateC(), A2 = other.stateA(), B2 = other.stateB(),
           C2 = other.stateC();
    Matrix a = stack(sideBySide(A1, B1 * C2), sideBySide(Matrix(A2.rowNumber(), A1.columnNumber()), A2));
    return DynOp(a, stack(B1 * other.D, B2), sideBySide(C1, D * C2), D * other.D);
}

DynOp DynOp::operator+(const DynOp& other) const {
    if (inputNumber_ != other.inputNumber_ || outputNumber_ != other.outputNumber_)
        D.dimensionError("operator+", other.D.rowNumber(), other.D.columnNumber());
    return DynOp(Matrix::blockDiagonal(stateA(), other.stateA()), stack(stateB(), other.stateB()),
                 sideBySide(stateC(), other.stateC()), D + other.D, controlNumber_, measureNumber_,
                 feedForwardNumber_);
}

DynOp DynOp::operator+(const Matrix& M) const {
    return DynOp(stateA(), stateB(), stateC(), D + M, controlNumber_, measureNumber_, feedForwardNumber_);
}

DynOp DynOp::operator*(const Matrix& M) const {
    return DynOp(stateA(), stateB() * M, stateC(), D * M, 0, measureNumber_, 0);
}

DynOp operator*(const Matrix& M, const DynOp& s) {
    return DynOp(s.stateA(), s.stateB(), M * s.stateC(), M * s.D, s.controlNumber_, 0, s.feedForwardNumber_);
}

DynOp DynOp::operator*(double x) const {
    return DynOp(stateA(), stateB(), stateC() * x, D * x, controlNumber_, measureNumber_, feedForwardNumber_);
}

DynOp DynOp::operator-() const {
    return DynOp(stateA(), -stateB(), stateC(), -D, controlNumber_, measureNumber_, feedForwardNumber_);
}

DynOp DynOp::append(const DynOp& other) const {
    return DynOp(Matrix::blockDiagonal(stateA(), other.stateA()),
                 Matrix::blockDiagonal(stateB(), other.stateB()),
                 Matrix::blockDiagonal(stateC(), other.stateC()), Matrix::blockDiagonal(D, other.D));
}

DynOp DynOp::appendGain(const Matrix& D2) const { return append(DynOp(D2)); }

DynOp DynOp::sumOfOutputs(const DynOp& other) const {
    Matrix I = Matrix::diagonal(outputNumber_, 1.0);
    return sideBySide(I, I) * append(other);
}

namespace {

// How many of the count indices from first fall into the last `tail` of total.
unsigned tailOverlap(unsigned first, unsigned count, unsigned total, unsigned tail) {
    unsigned tailStart = total - tail, end = first + count;
    if (end <= tailStart) return 0;
    return end - std::max(first, tailStart);
}

unsigned countToEnd(unsigned first, unsigned count, unsigned total, const Matrix& M) {
    if (first > total || first + count > total) M.dimensionError("subSystem", first, count);
    return count ? count : total - first;
}

}  // namespace

DynOp DynOp::subSystem(unsigned firstOutput, unsigned firstInput, unsigned outputs, unsigned inputs,
                       bool minimal) const {
    outputs = countToEnd(firstOutput, outputs, outputNumber_, D);
    inputs = countToEnd(firstInput, inputs, inputNumber_, D);
    unsigned n = order();
    DynOp sub(stateA(), block(stateB(), 0, firstInput, n, inputs),
              block(stateC(), firstOutput, 0, outputs, n), block(D, firstOutput, firstInput, outputs, inputs),
              tailOverlap(firstInput, inputs, inputNumber_, controlNumber_),
              tailOverlap(firstOutput, outputs, outputNumber_, measureNumber_));
    if (!minimal || sub.isStatic) return sub;
    Matrix T;
    DynOp controllable = sub.contrSubSystem(0, T, 1e-6);
    if (controllable.isStatic) return controllable;
    return controllable.obsSubSystem(0, T, 1e-6);
}

void DynOp::addOutputs(const Matrix& C2, const Matrix& D2) {
    unsigned rows = isStatic ? D2.rowNumber() : C2.rowNumber();
    bool nilD2 = D2.rowNumber() == 0 && D2.columnNumber() == 0;
    D = stack(D, nilD2 ? Matrix(rows, inputNumber_) : D2);
    if (!isStatic) C = stack(C, C2);
    outputNumber_ = D.rowNumber();
}

void DynOp::addInputs(const Matrix& B2, const Matrix& D2) {
    unsigned cols = isStatic ? D2.columnNumber() : B2.columnNumber();
    bool nilD2 = D2.rowNumber() == 0 && D2.columnNumber() == 0;
    D = sideBySide(D, nilD2 ? Matrix(outputNumber_, cols) : D2);
    if (!isStatic) B = sideBySide(B, B2);
    inputNumber_ = D.columnNumber();
}

DynOp DynOp::transpose() const {
    return DynOp(stateA().transpose(), stateC().transpose(), stateB().transpose(), D.transpose(),
                 measureNumber_, controlNumber_, 0);
}

void DynOp::similarity(const Matrix& T, bool orthogonal) {
    if (isStatic) return;
    Matrix Tinv = orthogonal ? T.transpose() : numerics().inv(T);
    A = T * A * Tinv;
    B = T * B;
    C = C * Tinv;
    isSchur = 0;
}

DynOp DynOp::changeBasis(const Matrix& T) const {
    if (isStatic) return *this;
    Matrix Tt = T.transpose();
    return DynOp(Tt * A * T, Tt * B, C * T, D);
}

DynOp DynOp::reduceOrder(unsigned n, bool keepFirst) const {
    unsigned full = order();
    if (n > full) A.dimensionError("reduceOrder", n, n);
    unsigned first = keepFirst ? 0 : full - n;
    return DynOp(block(stateA(), first, first, n, n), block(stateB(), first, 0, n, inputNumber_),
                 block(stateC(), 0, first, outputNumber_, n), D, controlNumber_, measureNumber_,
                 feedForwardNumber_);
}

DynOp DynOp::scaleObjectives(double alpha) const {
    DynOp r(*this);
    unsigned objectives = outputNumber_ - measureNumber_;
    for (unsigned i = 0; i < objectives; ++i) {
        for (unsigned j = 0; j < inputNumber_; ++j) r.D(i, j) *= alpha;
        if (!isStatic)
            for (unsigned j = 0; j < order_; ++j) r.C(i, j) *= alpha;
    }
    return r;
}

DynOp DynOp::stateFeedback(const Matrix& K, const IntArray* columns) const {
    if (!columns)
        return DynOp(stateA() - stateB() * K, stateB(), stateC() - D * K, D, controlNumber_, measureNumber_,
                     feedForwardNumber_);
    std::vector<bool> isControl(inputNumber_, false);
    for (unsigned k = 0; k < columns->size(); ++k) {
        int c = (*columns)[int(k)];
        if (c < 0 || unsigned(c) >= inputNumber_) D.dimensionError("stateFeedback", 0, unsigned(c));
        isControl[c] = true;
    }
    IntArray controls(0), others(0);
    for (unsigned j = 0; j < inputNumber_; ++j) {
        IntArray& list = isControl[j] ? controls : others;
        list.reSize(list.size() + 1);
        list[int(list.size() - 1)] = int(j);
    }
    Matrix B2 = dynop::columnsOf(stateB(), &controls), D2 = dynop::columnsOf(D, &controls);
    return DynOp(stateA() - B2 * K, dynop::columnsOf(stateB(), &others), stateC() - D2 * K,
                 dynop::columnsOf(D, &others), 0, 0, 0, false);
}

void DynOp::removeInputs(unsigned first, unsigned count) {
    if (first + count > inputNumber_) D.dimensionError("removeInputs", first, count);
    unsigned rest = inputNumber_ - first - count;
    D = sideBySide(block(D, 0, 0, outputNumber_, first), block(D, 0, first + count, outputNumber_, rest));
    if (!isStatic) B = sideBySide(block(B, 0, 0, order_, first), block(B, 0, first + count, order_, rest));
    inputNumber_ = D.columnNumber();
}

void DynOp::removeOutputs(unsigned first, unsigned count) {
    if (first + count > outputNumber_) D.dimensionError("removeOutputs", first, count);
    unsigned rest = outputNumber_ - first - count;
    D = stack(block(D, 0, 0, first, inputNumber_), block(D, first + count, 0, rest, inputNumber_));
    if (!isStatic) C = stack(block(C, 0, 0, first, order_), block(C, first + count, 0, rest, order_));
    outputNumber_ = D.rowNumber();
}
