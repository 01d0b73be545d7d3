// The controllability staircase form by pivoted Householder steps on [B A I].
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/househld.h"
#include "quill/intarray.h"

String Algebra::staircaseReport;

namespace {

double frobenius(const Matrix& W, unsigned r0, unsigned rows, unsigned c0, unsigned cols) {
    double s = 0.0;
    for (unsigned c = c0; c < c0 + cols && c < W.columnNumber(); ++c)
        for (unsigned r = r0; r < r0 + rows && r < W.rowNumber(); ++r) s += W(r, c) * W(r, c);
    return std::sqrt(s);
}

void append(IntArray& indices, int value) {
    unsigned n = indices.size();
    indices.reSize(n + 1);
    indices[n] = value;
}

// Adds "order: r, norm: x" to the report, with a line end once the line passes 70 characters.
void report(String& text, unsigned order, double norm) {
    char format[16], number[64];
    std::snprintf(format, sizeof format, "%%6.%dg", 4);
    std::snprintf(number, sizeof number, format, norm);
    text += "order: ";
    text += order;
    text += ", norm: ";
    text += number;
    const char* all = text.asCharPointer();
    const char* lineStart = std::strrchr(all, '\n');
    unsigned lineLength = lineStart ? text.size() - (lineStart + 1 - all) : text.size();
    if (lineLength > 70) text += "\n";
}

// One level of the staircase on the block of W at (rowOffset, colOffset), width columns wide;
// the states occupy the rows of W and its columns from stateColumn on. A null text prints nothing.
void staircaseStep(Matrix& W, unsigned states, unsigned stateColumn, unsigned colOffset, unsigned rowOffset,
                   unsigned width, IntArray& indices, double tolerance, String* text) {
    unsigned p = states - rowOffset, rest = W.columnNumber() - colOffset, first = stateColumn + rowOffset;
    Matrix block = W.subMatrix(rowOffset, colOffset, p, width);
    // The similarity: Q' from the left on the rows of this step, its reflections applied to them
    // directly; then Q from the right on the state columns they stand for, as Q' on their
    // transpose, where the same block in front gives the same reflections.
    Matrix S = W.subMatrix(rowOffset, colOffset, p, rest);
    std::vector<unsigned> pivots;
    double lastMax = 0.0;
    unsigned r = householder::pivotedSteps(S, width, tolerance * tolerance, pivots, lastMax);
    for (unsigned k = r; k-- > 0;) householder::swapColumns(S, k, pivots[k]);
    append(indices, static_cast<int>(r));
    W.setSubMatrix(rowOffset, colOffset, S, p, rest);
    Matrix R = householder::sideBySide(block, W.subMatrix(0, first, states, p).transpose());
    householder::pivotedSteps(R, width, tolerance * tolerance, pivots, lastMax);
    W.setSubMatrix(0, first, R.subMatrix(0, width, p, states).transpose(), states, p);

    if (r == 0 || rowOffset + r >= states) return;
    if (text) report(*text, r, frobenius(W, rowOffset + r, states, colOffset, width));
    if (frobenius(W, rowOffset + r, states, colOffset + width, r) < tolerance) return;
    staircaseStep(W, states, stateColumn, colOffset + width, rowOffset + r, r, indices, tolerance, text);
}

}  // namespace

Matrix Algebra::staircase(Matrix& A, Matrix& B, IntArray& indices, double tolerance, bool print) {
    unsigned n = A.rowNumber(), m = B.columnNumber();
    Matrix W = householder::sideBySide(householder::sideBySide(B, A), Matrix::diagonal(n, 1.0));
    indices.reSize(0);
    staircaseReport = "";
    staircaseStep(W, n, m, 0, 0, m, indices, tolerance, print ? &staircaseReport : 0);
    B = W.subMatrix(0, 0, n, m);
    A = W.subMatrix(0, m, n, n);
    return W.subMatrix(0, m + n, n, n);
}
