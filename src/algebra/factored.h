// The steps shared by the factored Lyapunov and Riccati iterations.
#ifndef ALGEBRA_FACTORED_H
#define ALGEBRA_FACTORED_H

#include "algebra/algebra.h"

namespace factored {

// One iteration on the factor: [R M; L] triangularised, the top block times Ninv (when given)
// triangularised again; the result is upper triangular with zeros below the diagonal.
Matrix step(Algebra& algebra, const Matrix& R, const Matrix& M, const Matrix& L, const Matrix* Ninv);

// Repairs the signs of R's rows against Rprev, then the convergence test: e = the upper norm of
// R - Rprev, value = that of R; true when e/value is below limit, otherwise Rprev := R.
bool converged(Algebra& algebra, Matrix& R, Matrix& Rprev, double limit, double& e, double& value);

// The start of an iteration: X0 when it is an n x n matrix, zero otherwise (the nil matrix).
Matrix start(const Matrix& X0, unsigned n);

}  // namespace factored

#endif
