// Algebra: norms, traces, the shape tests and the diagonal balancing.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "algebra/algebra.h"

double Algebra::norm2(const Matrix& A) {
    if (A.elementCount() == 0) return 0.0;
    Matrix work(A), U(0, 0), VT(0, 0);
    return svd(work, U, VT, false)[0u];
}

double Algebra::normF(const Matrix& A) {
    const double* a = A.elements();
    double sum = 0.0;
    for (unsigned k = 0, n = A.elementCount(); k < n; ++k) sum += a[k] * a[k];
    return std::sqrt(sum);
}

double Algebra::normInf(const Matrix& A) {
    double largest = 0.0;
    for (unsigned i = 0; i < A.rowNumber(); ++i) {
        double sum = 0.0;
        for (unsigned j = 0; j < A.columnNumber(); ++j) sum += std::fabs(A(i, j));
        largest = std::max(largest, sum);
    }
    return largest;
}

// The search starts from 1e10, so an eigenvalue above that never counts; a
// slightly negative eigenvalue of the round-off counts as zero.
double Algebra::minSingularValue(const Matrix& A) {
    Matrix values = computeEigenvalues(A.transpose() * A);
    double smallest = 1e10;
    for (unsigned i = 0; i < values.rowNumber(); ++i)
        if (values(i, 0) < smallest) smallest = values(i, 0);
    return std::sqrt(smallest > 0.0 ? smallest : 0.0);
}

double Algebra::normTriangular(const Matrix& A, bool upperOnce, bool upperTwice) {
    double sum = 0.0;
    for (unsigned j = 0; j < A.columnNumber(); ++j)
        for (unsigned i = 0; i < A.rowNumber(); ++i) {
            double x = std::fabs(A(i, j));
            if (upperOnce) {
                if (i <= j) sum += x;
            } else if (upperTwice) {
                if (i == j)
                    sum += x;
                else if (i < j)
                    sum += 2.0 * x;
            } else {
                sum += x;
            }
        }
    return sum;
}

bool Algebra::isSmall(const Matrix& A, double x) { return normTriangular(A) < x; }

double Algebra::vectorNorm1(const Vector& v) {
    double sum = 0.0;
    for (unsigned i = 0; i < v.size(); ++i) sum += std::fabs(v[i]);
    return sum;
}

double Algebra::trace(const Matrix& A) {
    double sum = 0.0;
    for (unsigned i = 0; i < A.rowNumber() && i < A.columnNumber(); ++i) sum += A(i, i);
    return sum;
}

double Algebra::rms(const Matrix& A, unsigned rows) {
    double f = normF(A);
    return std::sqrt(f * f / (double(A.columnNumber()) * rows));
}

bool Algebra::isHessenberg(const Matrix& A) {
    for (unsigned j = 0; j < A.columnNumber(); ++j)
        for (unsigned i = j + 2; i < A.rowNumber(); ++i)
            if (std::fabs(A(i, j)) >= structureTolerance) return false;
    return true;
}

bool Algebra::isQuasiTriangular(const Matrix& A) {
    if (!isHessenberg(A)) return false;
    unsigned n = A.rowNumber() < A.columnNumber() ? A.rowNumber() : A.columnNumber();
    bool previous = false;
    for (unsigned i = 0; i + 1 < A.rowNumber() && i < n; ++i) {
        bool nonzero = std::fabs(A(i + 1, i)) >= structureTolerance;
        if (nonzero && previous) return false;
        previous = nonzero;
    }
    return true;
}

namespace {

const double smallestScale = 1e-10;

double floored(double d) { return d < smallestScale ? smallestScale : d; }

}  // namespace

// Ten sweeps on the squared elements; the last index keeps its scale. The sums are
// kept in single precision.
Matrix Algebra::balance(Matrix& A) {
    unsigned n = A.rowNumber();
    if (n != A.columnNumber()) {
        std::cout << "The matrix should be square" << std::endl;
        return Matrix(0, 0);
    }
    Matrix W(n, n);
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) W(i, j) = A(i, j) * A(i, j);
    Vector d(n, 1.0);
    const double* w = W.elements();  // W(j, k) at k * n + j
    for (int sweep = 0; sweep < 10; ++sweep) {
        Vector next(d);
        const double* scale = d.elements();
        for (unsigned k = 0; k + 1 < n; ++k) {
            float r = 0.0f, c = 0.0f;
            for (unsigned j = 0; j < n; ++j) {
                if (j == k) continue;
                double dj = floored(scale[j]);
                r += float(dj * w[size_t(k) * n + j]);
                c += float(w[size_t(j) * n + k] / dj);
            }
            if (r > 1e30f) r = 1e30f;
            if (c < 1e-6f) c = 1e-6f;
            next[k] = std::sqrt(double(r) / double(c));
        }
        d = next;
    }
    Matrix D(n, n);
    for (unsigned k = 0; k < n; ++k) D(k, k) = std::sqrt(floored(d[k]));
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) A(i, j) = D(i, i) * A(i, j) / D(j, j);
    return D;
}
