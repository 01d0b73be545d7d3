// Algebra: the global numeric settings, the layers on LAPACK and the direct solvers.
#include "algebra/algebra.h"

#include <cmath>
#include <iostream>

#include "quill/objio.h"

DEFINE_CLASS(Algebra, Object, 1, 0)

double zeroSquaredTolerance = 1e-26;
double structureTolerance = 1e-13;
double zeroTolerance = 1e-13;
double tollZeros = 1e-16;
double tollPoles = 1e-6;
double wMin = 1e-4;
double wMaxRange = 1e4;
int fastMode = 0;

bool setFastMode(int value) {
    if (value < 0 || value > 4) {
        std::cout << "admissible values between 0 and 4 " << std::endl;
        return false;
    }
    fastMode = value;
    return true;
}

// Stream forms: the one reserved word.

Algebra::Algebra(std::istream& is, Object* where) : Object(is, where), reserved(0) {
    is >> reserved;
    checkStream(is);
}

Algebra::Algebra(BinIstream& is, Object* where) : Object(is, where), reserved(0) { is >> reserved; }

void Algebra::storer(std::ostream& os) const {
    Object::storer(os);
    os << reserved << ' ';
}

void Algebra::storer(BinOstream& os) const {
    Object::storer(os);
    os << reserved;
}

SchurSelect Algebra::selectFunction() const { return selectStable; }

namespace {

void requireSquare(const Matrix& A, const char* method) {
    if (A.rowNumber() != A.columnNumber()) A.dimensionError(method, A.columnNumber(), A.columnNumber());
}

}  // namespace

// --- Layers on LAPACK ---

int Algebra::schurDecomposition(Matrix& Q, Matrix& A, Matrix& values, bool wantVectors, bool sorted) {
    requireSquare(A, "schurDecomposition");
    unsigned n = A.rowNumber();
    values = Matrix(n, 2);
    if (wantVectors) Q = Matrix(n, n);
    int selected = 0;
    lapackSchur(int(n), A.elements(), wantVectors ? Q.elements() : 0, values.elements(), wantVectors,
                sorted ? selectFunction() : 0, &selected);
    return selected;
}

Vector Algebra::svd(Matrix& A, Matrix& U, Matrix& VT, bool wantVectors) {
    unsigned m = A.rowNumber(), n = A.columnNumber();
    Vector s(m < n ? m : n);
    if (wantVectors) {
        U = Matrix(m, m);
        VT = Matrix(n, n);
    }
    lapackSvd(int(m), int(n), A.elements(), s.elements(), wantVectors ? U.elements() : 0,
              wantVectors ? VT.elements() : 0, wantVectors);
    return s;
}

Matrix Algebra::solve(const Matrix& A, const Matrix& B, bool* singular) {
    requireSquare(A, "solve");
    if (B.rowNumber() != A.rowNumber()) A.dimensionError("solve", B.rowNumber(), B.columnNumber());
    Matrix x(B.rowNumber(), B.columnNumber());
    int info =
        lapackSolve(int(A.rowNumber()), int(B.columnNumber()), A.elements(), B.elements(), x.elements());
    if (singular) *singular = info > 0;
    return x;
}

// --- Direct solvers and factorisations ---

Matrix Algebra::computeEigenvalues(const Matrix& A, bool) {
    Matrix T(A), Q(0, 0), values(0, 0);
    schurDecomposition(Q, T, values, false, false);
    return values;
}

Matrix Algebra::schur(Matrix& A, bool sorted) {
    Matrix Q(0, 0), values(0, 0);
    schurDecomposition(Q, A, values, true, sorted);
    return Q;
}

// No singularity test anywhere: a singular matrix gives infinities, which the caller sees.
Matrix Algebra::inv(const Matrix& A) {
    unsigned m = A.rowNumber(), n = A.columnNumber();
    if (m == 1 && n == 1) {
        Matrix r(1, 1);
        r(0, 0) = 1.0 / A(0, 0);
        return r;
    }
    if (m == 2 && n == 2) {
        double det = A(0, 0) * A(1, 1) - A(0, 1) * A(1, 0);
        Matrix r(2, 2);
        r(0, 0) = A(1, 1) / det;
        r(0, 1) = -A(0, 1) / det;
        r(1, 0) = -A(1, 0) / det;
        r(1, 1) = A(0, 0) / det;
        return r;
    }
    // V diag(1/s) U'
    Matrix work(A), U(0, 0), VT(0, 0);
    Vector s = svd(work, U, VT, true);
    unsigned k = s.size();
    const double* u = U.elements();    // m x m
    const double* vt = VT.elements();  // n x n
    Matrix r(n, m);
    double* x = r.elements();
    for (unsigned l = 0; l < k; ++l) {
        double w = 1.0 / s[l];
        for (unsigned j = 0; j < m; ++j) {
            double ujl = u[size_t(l) * m + j] * w;
            for (unsigned i = 0; i < n; ++i) x[size_t(j) * n + i] += vt[size_t(i) * n + l] * ujl;
        }
    }
    return r;
}

bool Algebra::chol(Matrix& A) {
    unsigned n = A.rowNumber();
    if (n != A.columnNumber()) return false;
    double* a = A.elements();
    auto at = [a, n](unsigned i, unsigned j) -> double& { return a[size_t(j) * n + i]; };
    for (unsigned j = 0; j < n; ++j) {
        for (unsigned i = 0; i < j; ++i) {
            double x = at(i, j);
            for (unsigned k = 0; k < i; ++k) x -= at(k, i) * at(k, j);
            if (std::fabs(x) < zeroTolerance) {
                at(i, j) = 0.0;
                continue;
            }
            if (std::fabs(at(i, i)) < zeroTolerance) return false;
            at(i, j) = x / at(i, i);
        }
        double d = at(j, j);
        for (unsigned k = 0; k < j; ++k) d -= at(k, j) * at(k, j);
        if (!(d > 0.0)) return false;
        at(j, j) = std::sqrt(d);
    }
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = j + 1; i < n; ++i) at(i, j) = 0.0;
    return true;
}

double Algebra::determinant(const Matrix& A, bool isSchur) {
    requireSquare(A, "determinant");
    unsigned n = A.rowNumber();
    if (n == 2) return A(0, 0) * A(1, 1) - A(0, 1) * A(1, 0);
    Matrix T(A);
    if (!isSchur) schur(T, false);
    double det = 1.0;
    for (unsigned i = 0; i < n; ++i) {
        if (i + 1 < n && std::fabs(T(i + 1, i)) >= zeroTolerance) {
            det *= T(i, i) * T(i + 1, i + 1) - T(i, i + 1) * T(i + 1, i);
            ++i;
        } else {
            det *= T(i, i);
        }
    }
    return det;
}
