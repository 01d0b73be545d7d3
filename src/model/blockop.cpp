// BlockIcon: the block's operator from its matrix texts, its initial state, and the texts from an operator.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "algebra/algebra.h"
#include "control/discdyn.h"
#include "control/dynop.h"
#include "model/blockicon.h"

namespace {

// parseMatrix is an operation of every numeric object; the block borrows one.
Algebra& matrixReader() {
    static Algebra reader;
    return reader;
}

// An empty text is a matrix with no elements, or the given default.
Matrix matrixOf(const String& text, const Matrix& empty = Matrix(0, 0)) {
    String trimmed = text.stripBoth();
    return trimmed.size() ? matrixReader().parseMatrix(trimmed.asCharPointer()) : empty;
}

bool isNull(const Matrix& m) { return m.elementCount() == 0 || m.allAbsNotAbove(zeroTolerance); }

struct BlockMatrices {
    Matrix A, B, C, D;
    bool gainOnly() const { return isNull(A) && isNull(B); }
};

// The texts as matrices; an empty A is a 1 by 1 zero.
BlockMatrices matricesOf(const ModelData& data) {
    return BlockMatrices{matrixOf(data.aText, Matrix()), matrixOf(data.bText), matrixOf(data.cText),
                         matrixOf(data.dText)};
}

// The messages of the sizes that do not fit, in the order of the checks;
// a gain has no state part to check, and an empty D stands for zeros.
std::vector<const char*> sizeFaults(const BlockMatrices& m, bool& stateValid, bool& gainValid) {
    std::vector<const char*> faults;
    stateValid = gainValid = true;
    if (m.gainOnly()) return faults;
    if (m.A.rowNumber() != m.A.columnNumber()) faults.push_back(" A matrix not square");
    if (m.B.rowNumber() != m.A.rowNumber())
        faults.push_back(" The B matrix has not the same number of rows of the A matrix");
    if (m.C.columnNumber() != m.A.columnNumber())
        faults.push_back(" The C matrix has not the same number of columns of the A matrix");
    stateValid = faults.empty();
    if (m.D.elementCount() != 0 &&
        (m.D.rowNumber() != m.C.rowNumber() || m.D.columnNumber() != m.B.columnNumber())) {
        faults.push_back(
            " The D matrix has not the same number of rows and columns of the B or C matrices, respectively");
        gainValid = false;
    }
    return faults;
}

}  // namespace

DynOp* BlockIcon::blockOperator() {
    BlockMatrices m = matricesOf(blockData_);
    bool stateValid, gainValid;
    for (const char* fault : sizeFaults(m, stateValid, gainValid)) std::cerr << fault << std::endl;
    Matrix D = gainValid && m.D.elementCount() != 0 ? m.D : Matrix();
    if (m.gainOnly() || !stateValid) return discrete ? new DiscDynOp(D, samplingTime_) : new DynOp(D);
    if (!gainValid || m.D.elementCount() == 0) D = Matrix(0, 0);
    return discrete ? new DiscDynOp(m.A, m.B, m.C, D, samplingTime_) : new DynOp(m.A, m.B, m.C, D);
}

String BlockIcon::sizeMessage(const ModelData& data) {
    BlockMatrices m = matricesOf(data);
    bool stateValid, gainValid;
    String message;
    for (const char* fault : sizeFaults(m, stateValid, gainValid))
        message += String(message.size() ? ",'" : "'") + fault + "'";
    return message;
}

bool BlockIcon::isDynamic() { return !isNull(matrixOf(blockData_.aText)); }

Matrix BlockIcon::initialStateVector() {
    if (initialState().stripBoth().size() == 0) return Matrix(0, 0);
    Matrix A = matrixOf(blockData_.aText), x0 = matrixOf(initialState());
    unsigned states = isNull(A) ? 0 : A.rowNumber();
    if (x0.rowNumber() * x0.columnNumber() != states) {
        std::cerr << "Warning the number of intial conditions is uncorrenct" << std::endl;
        return Matrix(0, 0);
    }
    Matrix column(states, 1);
    for (unsigned i = 0; i < states; ++i) column.elements()[i] = x0.elements()[i];
    return column;
}

namespace {

// The shortest of 15 to 17 significant digits that reads back as the same number.
std::string exactNumber(double x) {
    char text[40];
    for (int digits = 15; digits <= 17; ++digits) {
        snprintf(text, sizeof text, "%.*g", digits, x);
        if (strtod(text, 0) == x) break;
    }
    return text;
}

// A matrix in the bracket form that the block's fields read: "[1 2; 3 4]".
String matrixText(const Matrix& m) {
    std::string text = "[";
    for (unsigned r = 0; r < m.rowNumber(); ++r) {
        if (r) text += "; ";
        for (unsigned c = 0; c < m.columnNumber(); ++c) text += (c ? " " : "") + exactNumber(m(r, c));
    }
    return String((text + "]").c_str());
}

}  // namespace

void BlockIcon::setFromOperator(const DynOp& op, const char* name) {
    if (op.isStaticGain()) {
        setFromGain(op.getD(), name, op.isDiscreteTime() ? op.samplingTimeOf() : 0.0);
        return;
    }
    blockData_.aText = matrixText(op.getA());
    blockData_.bText = matrixText(op.getB());
    blockData_.cText = matrixText(op.getC());
    blockData_.dText = matrixText(op.getD());
    blockData_.setName(name);
    setNodeName(name);
    setInputDimension(int(op.inputNumber()));
    setOutputDimension(int(op.outputNumber()));
    setSampling(op.isDiscreteTime(), op.samplingTimeOf());
}

void BlockIcon::setFromGain(const Matrix& D, const char* name, double samplingTime) {
    blockData_ = ModelData(name);
    blockData_.dText = matrixText(D);
    setNodeName(name);
    setInputDimension(int(D.columnNumber()));
    setOutputDimension(int(D.rowNumber()));
    setSampling(samplingTime > 0, samplingTime);
}

void BlockIcon::setSampling(bool isDiscrete, double samplingTime) {
    discrete = isDiscrete;
    samplingTime_ = isDiscrete ? samplingTime : 0.0;
}
