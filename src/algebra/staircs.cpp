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

// The pivoted Householder steps on the p x width block of W at (row0, col0), applied in place to
// the rows from row0 of W's columns from col0; the pivot columns are put back in order. Returns the
// reflections, their count (pivots) in rank.
std::vector<householder::Reflection> reflectRows(Matrix& W, unsigned row0, unsigned col0, unsigned p,
                                                 unsigned width, double limit, unsigned& rank) {
    std::vector<householder::Reflection> reflections;
    std::vector<unsigned> pivots;
    double lastMax = 0.0;
    rank = householder::pivotedSteps(W, householder::Block{row0, row0 + p, col0}, width, limit, pivots,
                                     lastMax, &reflections);
    for (unsigned k = rank; k-- > 0;) householder::swapColumns(W, col0 + k, col0 + pivots[k]);
    return reflections;
}

// One level of the staircase on the block of W at (rowOffset, colOffset), width columns wide;
// the states occupy the rows of W and its columns from stateColumn on. A null text prints nothing.
void staircaseStep(Matrix& W, unsigned states, unsigned stateColumn, unsigned colOffset, unsigned rowOffset,
                   unsigned width, IntArray& indices, double tolerance, String* text) {
    unsigned p = states - rowOffset, first = stateColumn + rowOffset, rows = W.rowNumber();
    // The similarity: Q' from the left on the rows of this step, Q from the right on the state
    // columns they stand for, one reflection at a time.
    unsigned r = 0;
    std::vector<householder::Reflection> reflections =
        reflectRows(W, rowOffset, colOffset, p, width, tolerance * tolerance, r);
    append(indices, static_cast<int>(r));
    for (const householder::Reflection& h : reflections)
        blasReflectRight(int(states), int(p - h.start), h.v.data(), h.factor,
                         W.elements() + size_t(first + h.start) * rows, int(rows));

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
