// Householder reflections and the small matrix helpers shared by the factored solvers.
#include "algebra/househld.h"

#include <cmath>
#include <utility>

#include "algebra/algebra.h"
#include "quill/quillerr.h"

namespace householder {

bool step(Matrix& M, unsigned col, unsigned row, unsigned rowEnd, Reflection* made) {
    unsigned rows = M.rowNumber(), cols = M.columnNumber();
    if (row >= rowEnd || col >= cols) return false;
    double* a = M.elements();
    double* x = a + size_t(col) * rows + row;
    unsigned len = rowEnd - row;
    double norm = std::sqrt(squaredNorm(M, col, row, rowEnd));
    double alpha = (x[0] < 0.0 ? -1.0 : 1.0) * norm;
    std::vector<double> v(x, x + len);
    v[0] += alpha;
    double vtv = 0.0;
    for (double e : v) vtv += e * e;
    if (vtv < zeroSquaredTolerance) return false;
    x[0] = -alpha;
    for (unsigned i = 1; i < len; ++i) x[i] = 0.0;
    if (col + 1 < cols)
        blasReflect(int(len), int(cols - col - 1), v.data(), 2.0 / vtv, a + size_t(col + 1) * rows + row,
                    int(rows));
    if (made) *made = Reflection{0, std::move(v), 2.0 / vtv};
    return true;
}

double squaredNorm(const Matrix& M, unsigned col, unsigned row, unsigned rowEnd) {
    unsigned rows = M.rowNumber();
    const double* x = M.elements() + size_t(col) * rows;
    double s = 0.0;
    for (unsigned i = row; i < rowEnd; ++i) s += x[i] * x[i];
    return s;
}

void swapColumns(Matrix& M, unsigned a, unsigned b) {
    if (a == b) return;
    unsigned rows = M.rowNumber();
    double* p = M.elements();
    for (unsigned i = 0; i < rows; ++i) std::swap(p[a * rows + i], p[b * rows + i]);
}

void swapRows(Matrix& M, unsigned a, unsigned b, unsigned firstCol) {
    if (a == b) return;
    unsigned rows = M.rowNumber();
    double* p = M.elements();
    for (unsigned c = firstCol; c < M.columnNumber(); ++c) std::swap(p[c * rows + a], p[c * rows + b]);
}

unsigned pivotedSteps(Matrix& M, const Block& block, unsigned width, double limit,
                      std::vector<unsigned>& pivots, double& lastMax, std::vector<Reflection>* reflections) {
    pivots.clear();
    unsigned k = 0;
    for (; k < width && block.row0 + k < block.rowEnd; ++k) {
        unsigned row = block.row0 + k, best = k;
        double bestNorm = squaredNorm(M, block.col0 + k, row, block.rowEnd);
        for (unsigned c = k + 1; c < width; ++c) {
            double s = squaredNorm(M, block.col0 + c, row, block.rowEnd);
            if (s > bestNorm) {
                best = c;
                bestNorm = s;
            }
        }
        lastMax = bestNorm;
        if (!(bestNorm > limit)) break;
        pivots.push_back(best);
        swapColumns(M, block.col0 + k, block.col0 + best);
        Reflection made;
        if (step(M, block.col0 + k, row, block.rowEnd, reflections ? &made : 0) && reflections) {
            made.start = k;
            reflections->push_back(std::move(made));
        }
    }
    return k;
}

Matrix stack(const Matrix& top, const Matrix& bottom) {
    unsigned r1 = top.rowNumber(), r2 = bottom.rowNumber(), cols = top.columnNumber();
    QASSERT(bottom.columnNumber() == cols);
    Matrix s(r1 + r2, cols);
    double* p = s.elements();
    const double* t = top.elements();
    const double* b = bottom.elements();
    for (unsigned c = 0; c < cols; ++c) {
        for (unsigned i = 0; i < r1; ++i) p[c * (r1 + r2) + i] = t[c * r1 + i];
        for (unsigned i = 0; i < r2; ++i) p[c * (r1 + r2) + r1 + i] = b[c * r2 + i];
    }
    return s;
}

Matrix sideBySide(const Matrix& left, const Matrix& right) {
    unsigned rows = left.rowNumber(), c1 = left.columnNumber(), c2 = right.columnNumber();
    QASSERT(right.rowNumber() == rows);
    Matrix s(rows, c1 + c2);
    double* p = s.elements();
    const double* l = left.elements();
    const double* r = right.elements();
    for (unsigned i = 0; i < rows * c1; ++i) p[i] = l[i];
    for (unsigned i = 0; i < rows * c2; ++i) p[rows * c1 + i] = r[i];
    return s;
}

void repairSigns(Matrix& R, const Matrix& prev) {
    unsigned n = R.rowNumber();
    double* r = R.elements();
    const double* q = prev.elements();
    for (unsigned i = 0; i < n; ++i) {
        double same = 0.0, opposite = 0.0;
        for (unsigned c = i; c < R.columnNumber(); ++c) {
            double a = r[c * n + i], b = q[c * n + i];
            same += (a - b) * (a - b);
            opposite += (a + b) * (a + b);
        }
        if (opposite < same)
            for (unsigned c = i; c < R.columnNumber(); ++c) r[c * n + i] = -r[c * n + i];
    }
}

}  // namespace householder
