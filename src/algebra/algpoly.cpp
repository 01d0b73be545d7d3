// Algebra: polynomial roots and products, and the roots of a 2x2 Schur block.
#include <cmath>

#include "algebra/algebra.h"

// Trailing coefficients below zeroTolerance are roots at zero, leading the result;
// the rest go through the Schur form of the companion matrix.
Matrix Algebra::polyRoots(const Vector& coefficients) {
    unsigned count = coefficients.size();
    if (count < 2) return Matrix(0, 1);
    if (count == 2) {
        Matrix r(1, 2);
        r(0, 0) = -coefficients[1u] / coefficients[0u];
        return r;
    }
    unsigned zeros = 0;
    while (zeros + 1 < count && std::fabs(coefficients[count - 1 - zeros]) < zeroTolerance) ++zeros;
    unsigned degree = count - zeros - 1;
    Matrix result(zeros + degree, 2);
    if (degree == 0) return result;
    Matrix C(degree, degree);
    double lead = coefficients[0u];
    for (unsigned i = 0; i + 1 < degree; ++i) C(i, i + 1) = 1.0;
    for (unsigned j = 0; j < degree; ++j) C(degree - 1, j) = -coefficients[degree - j] / lead;
    Matrix T = C.transpose(), Q(0, 0), values(0, 0);
    schurDecomposition(Q, T, values, false, false);
    for (unsigned i = 0; i < degree; ++i) {
        result(zeros + i, 0) = values(i, 0);
        result(zeros + i, 1) = values(i, 1);
    }
    return result;
}

namespace {

Vector convolution(const Vector& a, const Vector& b, bool alternating) {
    unsigned na = a.size(), nb = b.size();
    if (na == 0 || nb == 0) return Vector(0u);
    Vector r(na + nb - 1);
    for (unsigned i = 0; i < na; ++i) {
        double ai = alternating && (na - 1 - i) % 2 == 1 ? -a[i] : a[i];
        for (unsigned j = 0; j < nb; ++j) r[i + j] += ai * b[j];
    }
    return r;
}

// A factor s (exactly 1, then a zero within tolerance) shifts the other one.
bool isPlainS(const Vector& v) { return v.size() == 2 && v[0u] == 1.0 && std::fabs(v[1u]) < zeroTolerance; }

Vector shifted(const Vector& v, unsigned length) {
    Vector r(length);
    for (unsigned i = 0; i < v.size() && i < length; ++i) r[i] = v[i];
    return r;
}

}  // namespace

Vector Algebra::polyMul(const Vector& a, const Vector& b) {
    unsigned length = a.size() + b.size() - 1;
    if (a.size() > 0 && isPlainS(a)) return shifted(b, length);
    if (b.size() > 0 && isPlainS(b)) return shifted(a, length);
    return convolution(a, b, false);
}

Vector Algebra::polyMulAlternating(const Vector& a, const Vector& b) { return convolution(a, b, true); }

void Algebra::rootsOf2by2(Matrix& B) {
    if (B.rowNumber() != 2 || B.columnNumber() != 2) B.dimensionError("rootsOf2by2", 2, 2);
    double a = B(0, 0), b = B(0, 1), c = B(1, 0), d = B(1, 1);
    double t = -a - d;
    double disc = t * t - 4.0 * (a * d - b * c);
    if (disc < 0.0) {
        double im = std::sqrt(-disc) / 2.0;
        B(0, 0) = -t / 2.0;
        B(0, 1) = im;
        B(1, 0) = -t / 2.0;
        B(1, 1) = -im;
    } else {
        double root = std::sqrt(disc);
        B(0, 0) = (-t - root) / 2.0;
        B(0, 1) = 0.0;
        B(1, 0) = (-t + root) / 2.0;
        B(1, 1) = 0.0;
    }
}
