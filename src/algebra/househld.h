// Householder reflections and the small matrix helpers shared by the factored solvers.
#ifndef ALGEBRA_HOUSEHLD_H
#define ALGEBRA_HOUSEHLD_H

#include <vector>

#include "algebra/matrix.h"

namespace householder {

// Reflects column col of M from row down onto (-alpha, 0, ..., 0), alpha = sign(x0)·|x|, and
// applies the same reflection to every later column of the whole width. A vector whose square
// is below zeroSquaredTolerance leaves the matrix alone; the answer is then false.
bool step(Matrix& M, unsigned col, unsigned row);

// Squared norm of column col from row down.
double squaredNorm(const Matrix& M, unsigned col, unsigned row);

void swapColumns(Matrix& M, unsigned a, unsigned b);
void swapRows(Matrix& M, unsigned a, unsigned b, unsigned firstCol);

// Householder with column pivoting on columns 0..width-1: step k takes the column of largest
// squared norm from row k down among k..width-1 (the first on ties) and stops when that norm is
// not above limit. The chosen columns go to pivots; the answer is the number of steps done.
unsigned pivotedSteps(Matrix& M, unsigned width, double limit, std::vector<unsigned>& pivots,
                      double& lastMax);

// [top; bottom], the two having the same number of columns.
Matrix stack(const Matrix& top, const Matrix& bottom);

// [left right], the two having the same number of rows.
Matrix sideBySide(const Matrix& left, const Matrix& right);

// Householder steps may flip the sign of a row of a triangular factor from one iteration to the
// next: each row of R, from the diagonal on, nearer to the negative of the same part of prev
// than to that part itself is negated.
void repairSigns(Matrix& R, const Matrix& prev);

}  // namespace householder

#endif
