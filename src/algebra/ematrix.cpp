// EMatrix: checked access, blocks and evaluation entry by entry.
#include "algebra/ematrix.h"

#include <ostream>

#include "quill/quillerr.h"

DEFINE_CLASS(EMatrix, Object, 1, 0)

EMatrix::EMatrix(int rows, int cols) : entries(size_t(rows) * size_t(cols)), rows(rows), cols(cols) {}

void EMatrix::checkIndex(int i, int limit, const char* method) const {
    if (i < 0 || i >= limit) setError(INDEXRANGE, SEV_ERROR, className(), method, i);
}

ExpressionS& EMatrix::operator()(int row, int col) {
    checkIndex(row, rows, "operator()");
    checkIndex(col, cols, "operator()");
    return entries[size_t(row) * cols + col];
}

const ExpressionS& EMatrix::operator()(int row, int col) const {
    checkIndex(row, rows, "operator()");
    checkIndex(col, cols, "operator()");
    return entries[size_t(row) * cols + col];
}

EMatrix EMatrix::subMatrix(int row, int col, int rowCount, int colCount) const {
    checkIndex(row, rows, "subMatrix");
    checkIndex(col, cols, "subMatrix");
    checkIndex(row + rowCount - 1, rows, "subMatrix");
    checkIndex(col + colCount - 1, cols, "subMatrix");
    EMatrix block(rowCount, colCount);
    for (int i = 0; i < rowCount; ++i)
        for (int j = 0; j < colCount; ++j)
            block.entries[size_t(i) * colCount + j] = (*this)(row + i, col + j);
    return block;
}

CMatrix EMatrix::evaluate() const {
    CMatrix value{unsigned(rows), unsigned(cols)};
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols; ++j) value(i, j) = (*this)(i, j).evaluate()(0, 0);
    return value;
}

bool EMatrix::setVariable(const char* name, double value) {
    bool found = false;
    for (ExpressionS& e : entries) found = e.setVariable(name, value) || found;
    return found;
}

void EMatrix::printOn(std::ostream& os) const {
    os << rows << " x " << cols << " [\n";
    for (const ExpressionS& e : entries) os << e << "\n";
    os << "]";
}

void EMatrix::clearCopiedState() {
    Object::clearCopiedState();
    std::vector<ExpressionS> own(entries);
    new (&entries) std::vector<ExpressionS>(std::move(own));
}
