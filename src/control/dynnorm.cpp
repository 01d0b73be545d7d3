// DynOp analysis: poles and stability, gramians, the H2 and H-infinity norms, frequency gains and
// balanced truncation.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "algebra/cmatrix.h"
#include "algebra/freqsrch.h"
#include "control/dynop.h"
#include "quill/intarray.h"

using dynop::block;
using dynop::sideBySide;
using dynop::stack;

// Poles and stability

Matrix DynOp::poles() const {
    if (isStatic) return Matrix(0, 0);
    return numerics().computeEigenvalues(A, isSchur != 0);
}

bool DynOp::isUnstablePole(double value, double tolerance) const { return value > tolerance; }

bool DynOp::isStable() const {
    Matrix p = poles();
    for (unsigned i = 0; i < p.rowNumber(); ++i)
        if (p(i, 0) > -tollPoles) return false;
    return true;
}

void DynOp::selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const {
    for (unsigned i = 0; i < poles.rowNumber(); ++i) {
        if (poles(i, 0) <= -tolerance) continue;
        list.reSize(list.size() + 1);
        list[int(list.size() - 1)] = int(i);
    }
}

// Gramians

Matrix DynOp::gramianOfPair(const Matrix& a, const Matrix& L, Matrix* factor) const {
    if (isStatic) return Matrix(0, 0);
    Matrix P = numerics().lyapSolution(a, L, isDiscreteTime());
    if (factor) *factor = numerics().semidefiniteFactor(P);
    return P;
}

Matrix DynOp::gramianOf(Matrix* factor) const { return gramianOfPair(A, C, factor); }

Matrix DynOp::obsGramian() const { return gramianOf(); }

// The gramian of the dual (A', B'), solved in this system's time domain.
Matrix DynOp::contrGramian() const { return gramianOfPair(A.transpose(), B.transpose(), 0); }

// Norms

double DynOp::normH2() const {
    if (isStatic) return 0.0;
    Matrix Q = obsGramian();
    return std::sqrt(numerics().trace(B.transpose() * Q * B));
}

double DynOp::normHinf() const {
    if (isStatic) return numerics().norm2(D);
    if (!isStable() || (fastMode >= 2 && fastMode <= 4)) {
        std::cout << "norm computed as max value in freq. " << std::endl;
        double w = 1e-4;
        return normHinfInFrequency(w);
    }
    return bisectionNormHinf();
}

// Bounds from the Hankel singular values, then bisection on the imaginary-axis eigenvalues of the
// Hamiltonian until the bracket is narrower than 1.0: an indicator value, cheap to obtain.
double DynOp::bisectionNormHinf() const {
    Algebra& alg = numerics();
    double d = D.allAbsNotAbove(zeroTolerance) ? 0.0 : alg.norm2(D);
    if (controllableOrder(0, zeroTolerance) == 0 || observableOrder(0, zeroTolerance) == 0) return 0.0;
    Matrix lambda = alg.computeEigenvalues(contrGramian() * obsGramian());
    double s = 0.0, largest = 0.0;
    for (unsigned i = 0; i < lambda.rowNumber(); ++i) {
        double l = lambda(i, 0);
        if (l > 1e-4) s += std::sqrt(l);
        if (l > largest) largest = l;
    }
    double lo = std::max(d, std::sqrt(largest)), hi = 2.0 * s + d, gamma = lo;
    unsigned n = order_;
    for (int iteration = 0; iteration < 50; ++iteration) {
        gamma = (lo + hi) / 2.0;
        if (hi - lo < 1.0) return gamma;
        Matrix H = hamiltonianAt(gamma);
        alg.balance(H);
        Matrix values = alg.computeEigenvalues(H);
        bool onAxis = false;
        for (unsigned i = 0; i < 2 * n && !onAxis; ++i) onAxis = std::fabs(values(i, 0)) < 1e-5;
        (onAxis ? lo : hi) = gamma;
    }
    return gamma;
}

Matrix DynOp::hamiltonianAt(double gamma) const {
    Matrix Dt = D.transpose();
    Matrix Rinv = numerics().inv(Matrix::diagonal(inputNumber_, gamma * gamma) - Dt * D);
    Matrix topLeft = A + B * Rinv * Dt * C;
    return stack(sideBySide(topLeft, -(B * Rinv * B.transpose())),
                 sideBySide(C.transpose() * (Matrix::diagonal(outputNumber_, 1.0) + D * Rinv * Dt) * C,
                            -topLeft.transpose()));
}

bool DynOp::transferAt(double re, double im, CMatrix& G) const {
    if (isStatic) {
        G = CMatrix(D);
        return true;
    }
    unsigned n = order_;
    Matrix shifted = Matrix::diagonal(n, re) - A, turn = Matrix::diagonal(n, im);
    Matrix M = stack(sideBySide(shifted, -turn), sideBySide(turn, shifted));
    bool singular = false;
    Matrix X = numerics().solve(M, stack(B, Matrix(n, inputNumber_)), &singular);
    if (singular) return false;
    G = CMatrix(C * block(X, 0, 0, n, inputNumber_) + D, C * block(X, n, 0, n, inputNumber_));
    return true;
}

// At a pole on the contour the transfer is unbounded, as inv's infinities say elsewhere.
double DynOp::gainAt(double re, double im) const {
    CMatrix G;
    return transferAt(re, im, G) ? G.maxSingularValue() : HUGE_VAL;
}

double DynOp::singularValueAt(double w) const {
    std::complex<double> z = frequencyPoint(w);
    return gainAt(z.real(), z.imag());
}

Vector DynOp::singularValuesAt(double w) const {
    std::complex<double> z = frequencyPoint(w);
    CMatrix G;
    if (transferAt(z.real(), z.imag(), G)) return G.singularValues();
    return Vector(std::min(outputNumber_, inputNumber_), HUGE_VAL);
}

double DynOp::normHinfInFrequency(double& wStart) const {
    if (isStatic) return numerics().norm2(D);
    return peakGain([this](double w) { return singularValueAt(w); }, wStart);
}

// Balanced truncation by the square-root method: with P = Rc'Rc and Q = Ro'Ro, the singular
// value decomposition Ro Rc' = U S V' gives the Hankel singular values S, and the states kept
// come from Tl = S^-1/2 U' Ro on the left and Tr = Rc' V S^-1/2 on the right.
Matrix DynOp::balancedRealization(double threshold) {
    if (isStatic) return Matrix(0, 0);
    Algebra& alg = numerics();
    Matrix P(0, 0), O(0, 0), U(0, 0), Vt(0, 0);
    alg.gramianPair(A, B, C, isDiscreteTime(), P, O);
    Matrix Rc = alg.semidefiniteFactor(P), Ro = alg.semidefiniteFactor(O);
    Matrix product = Ro * Rc.transpose();
    Vector sigma = alg.svd(product, U, Vt, true);
    unsigned n = order_, kept = 0;
    while (kept < n && sigma[kept] > threshold) ++kept;
    Matrix left(kept, n), right(n, kept);
    for (unsigned i = 0; i < kept; ++i) {
        double scale = 1.0 / std::sqrt(sigma[i]);
        for (unsigned j = 0; j < n; ++j) {
            left(i, j) = scale * U(j, i);
            right(j, i) = scale * Vt(i, j);
        }
    }
    left = left * Ro;
    right = Rc.transpose() * right;
    *this = DynOp(left * A * right, left * B, C * right, D, controlNumber_, measureNumber_,
                  feedForwardNumber_, false);
    return Matrix::diagonal(sigma);
}
