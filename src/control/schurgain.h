// SchurGain, the gain of a state-space system at many points of the complex plane: with the real
// Schur form A = Q T Q' computed once, each point costs one quasi-triangular solve.
#ifndef CONTROL_SCHURGAIN_H
#define CONTROL_SCHURGAIN_H

#include <complex>
#include <vector>

#include "algebra/algebra.h"

// The eigenvalues of a quasi-triangular T in real Schur form, block by block.
std::vector<std::complex<double>> schurEigenvalues(const Matrix& T);

class SchurGain {
public:
    SchurGain(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D);
    // The largest singular value of C (zI - A)^-1 B + D; infinite at an eigenvalue of A.
    double at(std::complex<double> z) const;
    // The eigenvalues of A.
    std::vector<std::complex<double>> eigenvalues() const { return schurEigenvalues(T); }

private:
    Matrix T, QtB, CQ, D;
    std::vector<unsigned> starts;  // the first rows of T's diagonal blocks, then the order
};

#endif
