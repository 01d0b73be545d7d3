// The numerator of one entry of a transfer matrix, from the invariant zeros of its single-input
// single-output system.
#ifndef ALGEBRA_TRANSNUM_H
#define ALGEBRA_TRANSNUM_H

#include "algebra/matrix.h"
#include "algebra/vector.h"

// det(sI - A) (C_i (sI - A)^-1 B_j + D_ij), highest power first: the gain times the polynomial of
// the finite zeros, [0] when the entry vanishes. A is n×n, B n×m, C p×n, D p×m.
Vector transferNumerator(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, unsigned i,
                         unsigned j);

#endif
