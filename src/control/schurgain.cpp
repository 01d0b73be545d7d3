// SchurGain: (zI - T) X = Q'B by block back substitution, G = CQ X + D.
#include "control/schurgain.h"

#include <algorithm>
#include <cmath>

#include "algebra/cmatrix.h"

namespace {

typedef std::complex<double> PlanePoint;  // a point of the complex plane

// The eigenvalues of the block of T at k, of size 1 or 2.
void blockValues(const Matrix& T, unsigned k, unsigned size, std::vector<PlanePoint>& values) {
    if (size == 1) {
        values.emplace_back(T(k, k), 0.0);
        return;
    }
    double a = T(k, k), b = T(k, k + 1), c = T(k + 1, k), d = T(k + 1, k + 1);
    double mean = (a + d) / 2.0, half = (a - d) / 2.0, discriminant = half * half + b * c;
    double root = std::sqrt(std::fabs(discriminant));
    if (discriminant >= 0.0) {
        values.emplace_back(mean + root, 0.0);
        values.emplace_back(mean - root, 0.0);
    } else {
        values.emplace_back(mean, root);
        values.emplace_back(mean, -root);
    }
}

// The largest singular value of the p x m matrix G (column-major): for one or two inputs or outputs
// the square root of the largest eigenvalue of the 1x1 or 2x2 Gram matrix, in closed form.
double largestSingularValue(const std::vector<PlanePoint>& G, unsigned p, unsigned m) {
    if (p == 0 || m == 0) return 0.0;
    if (p > 2 && m > 2) {
        Matrix re(p, m), im(p, m);
        for (size_t k = 0; k < G.size(); ++k) re.elements()[k] = G[k].real(), im.elements()[k] = G[k].imag();
        return CMatrix(re, im).maxSingularValue();
    }
    // gram(i, j): columns i and j of G when m is the smaller size, rows i and j otherwise.
    auto gram = [&](unsigned i, unsigned j) {
        PlanePoint s = 0.0;
        if (m <= p)
            for (unsigned r = 0; r < p; ++r) s += std::conj(G[size_t(i) * p + r]) * G[size_t(j) * p + r];
        else
            for (unsigned c = 0; c < m; ++c) s += G[size_t(c) * p + i] * std::conj(G[size_t(c) * p + j]);
        return s;
    };
    if (std::min(p, m) == 1) return std::sqrt(gram(0, 0).real());
    double a = gram(0, 0).real(), d = gram(1, 1).real(), half = (a - d) / 2.0;
    return std::sqrt((a + d) / 2.0 + std::sqrt(half * half + std::norm(gram(0, 1))));
}

}  // namespace

std::vector<PlanePoint> schurEigenvalues(const Matrix& T) {
    std::vector<PlanePoint> values;
    unsigned n = T.rowNumber();
    for (unsigned k = 0; k < n;) {
        unsigned size = k + 1 < n && T(k + 1, k) != 0.0 ? 2 : 1;
        blockValues(T, k, size, values);
        k += size;
    }
    return values;
}

SchurGain::SchurGain(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& d) : T(A), D(d) {
    Algebra alg;
    Matrix Q = alg.schur(T);
    QtB = Q.transpose() * B;
    CQ = C * Q;
    unsigned n = T.rowNumber();
    for (unsigned k = 0; k < n;) {
        unsigned size = k + 1 < n && T(k + 1, k) != 0.0 ? 2 : 1;
        starts.push_back(k);
        k += size;
    }
    starts.push_back(n);
}

double SchurGain::at(PlanePoint z) const {
    unsigned n = T.rowNumber(), m = QtB.columnNumber();
    std::vector<PlanePoint> X(size_t(n) * m);
    for (unsigned k = 0; k < X.size(); ++k) X[k] = QtB.elements()[k];
    for (size_t b = starts.size() - 1; b-- > 0;) {
        unsigned i = starts[b], size = starts[b + 1] - i;
        for (unsigned c = 0; c < m; ++c) {
            PlanePoint* x = &X[size_t(c) * n];
            if (size == 1) {
                PlanePoint pivot = z - T(i, i);
                if (pivot == 0.0) return HUGE_VAL;
                x[i] /= pivot;
            } else {
                PlanePoint a = z - T(i, i), d = z - T(i + 1, i + 1), det = a * d - T(i, i + 1) * T(i + 1, i);
                if (det == 0.0) return HUGE_VAL;
                PlanePoint x0 = (d * x[i] + T(i, i + 1) * x[i + 1]) / det;
                x[i + 1] = (a * x[i + 1] + T(i + 1, i) * x[i]) / det;
                x[i] = x0;
            }
            for (unsigned r = 0; r < size; ++r) {
                const double* column = T.elements() + size_t(i + r) * n;
                for (unsigned k = 0; k < i; ++k) x[k] += column[k] * x[i + r];
            }
        }
    }
    unsigned p = CQ.rowNumber();
    std::vector<PlanePoint> G(D.elements(), D.elements() + size_t(p) * m);
    const double* cq = CQ.elements();
    for (unsigned c = 0; c < m; ++c)
        for (unsigned k = 0; k < n; ++k) {
            PlanePoint x = X[size_t(c) * n + k];
            for (unsigned r = 0; r < p; ++r) G[size_t(c) * p + r] += cq[size_t(k) * p + r] * x;
        }
    return largestSingularValue(G, p, m);
}
