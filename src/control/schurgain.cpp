// SchurGain: (zI - T) X = Q'B by block back substitution, G = CQ X + D.
#include "control/schurgain.h"

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
    Matrix re(D), im(p, m);
    for (unsigned c = 0; c < m; ++c)
        for (unsigned k = 0; k < n; ++k) {
            PlanePoint x = X[size_t(c) * n + k];
            for (unsigned r = 0; r < p; ++r) {
                re(r, c) += CQ(r, k) * x.real();
                im(r, c) += CQ(r, k) * x.imag();
            }
        }
    return CMatrix(re, im).maxSingularValue();
}
