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

// I - factor v v' on the coordinates from start on.
struct Reflection {
    unsigned start;
    std::vector<double> v;
    double factor;
};

// The pivoted Householder steps of householder::pivotedSteps on the p x width block of W at
// (row0, col0), applied in place to the rows from row0 of W's columns from col0; the pivot columns
// are put back in order. Returns the reflections, their count (pivots) in rank.
std::vector<Reflection> reflectRows(Matrix& W, unsigned row0, unsigned col0, unsigned p, unsigned width,
                                    double limit, unsigned& rank) {
    unsigned rows = W.rowNumber(), cols = W.columnNumber();
    auto column = [&](unsigned c) { return W.elements() + size_t(c) * rows; };
    auto squaredNorm = [&](unsigned c, unsigned row) {
        const double* x = column(c);
        double s = 0.0;
        for (unsigned i = row; i < row0 + p; ++i) s += x[i] * x[i];
        return s;
    };
    std::vector<Reflection> reflections;
    std::vector<unsigned> pivots;
    for (unsigned k = 0; k < width && k < p; ++k) {
        unsigned row = row0 + k, best = k, len = p - k;
        double bestNorm = squaredNorm(col0 + k, row);
        for (unsigned c = k + 1; c < width; ++c) {
            double s = squaredNorm(col0 + c, row);
            if (s > bestNorm) best = c, bestNorm = s;
        }
        if (!(bestNorm > limit)) break;
        pivots.push_back(best);
        householder::swapColumns(W, col0 + k, col0 + best);
        double* x = column(col0 + k) + row;
        double alpha = (x[0] < 0.0 ? -1.0 : 1.0) * std::sqrt(bestNorm);
        std::vector<double> v(x, x + len);
        v[0] += alpha;
        double vtv = 0.0;
        for (double e : v) vtv += e * e;
        if (vtv < zeroSquaredTolerance) continue;
        x[0] = -alpha;
        for (unsigned i = 1; i < len; ++i) x[i] = 0.0;
        if (col0 + k + 1 < cols)
            blasReflect(int(len), int(cols - col0 - k - 1), v.data(), 2.0 / vtv, column(col0 + k + 1) + row,
                        int(rows));
        reflections.push_back({k, v, 2.0 / vtv});
    }
    rank = unsigned(pivots.size());
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
    std::vector<Reflection> reflections =
        reflectRows(W, rowOffset, colOffset, p, width, tolerance * tolerance, r);
    append(indices, static_cast<int>(r));
    for (const Reflection& h : reflections)
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
