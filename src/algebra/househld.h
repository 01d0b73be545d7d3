// Householder reflections and the small matrix helpers shared by the factored solvers.
#ifndef ALGEBRA_HOUSEHLD_H
#define ALGEBRA_HOUSEHLD_H

#include <vector>

#include "algebra/matrix.h"

namespace householder {

// Rows row0 to rowEnd (excluded) of M, from column col0 on: where pivoted steps work.
struct Block {
    unsigned row0, rowEnd, col0;
};

// I - factor v v' on the rows of a block from row0 + start on.
struct Reflection {
    unsigned start;
    std::vector<double> v;
    double factor;
};

// Reflects column col of M from row down to rowEnd (excluded) onto (-alpha, 0, ..., 0),
// alpha = sign(x0)·|x|, and applies the same reflection to the same rows of every later column of
// the whole width; the reflection goes to made when given. A vector whose square is below
// zeroSquaredTolerance leaves the matrix alone; the answer is then false.
bool step(Matrix& M, unsigned col, unsigned row, unsigned rowEnd, Reflection* made = 0);
inline bool step(Matrix& M, unsigned col, unsigned row) { return step(M, col, row, M.rowNumber()); }

// Squared norm of column col from row down to rowEnd (excluded).
double squaredNorm(const Matrix& M, unsigned col, unsigned row, unsigned rowEnd);
inline double squaredNorm(const Matrix& M, unsigned col, unsigned row) {
    return squaredNorm(M, col, row, M.rowNumber());
}

void swapColumns(Matrix& M, unsigned a, unsigned b);
void swapRows(Matrix& M, unsigned a, unsigned b, unsigned firstCol);

// Householder with column pivoting on columns 0..width-1 of the block: step k takes the column of
// largest squared norm from the block's row k down among k..width-1 (the first on ties) and stops
// when that norm is not above limit. The chosen columns go to pivots, the largest norm of the last
// step to lastMax, the reflections made to reflections when given; the answer is the number of
// steps done. The pivot columns stay where the steps put them.
unsigned pivotedSteps(Matrix& M, const Block& block, unsigned width, double limit,
                      std::vector<unsigned>& pivots, double& lastMax,
                      std::vector<Reflection>* reflections = 0);
inline unsigned pivotedSteps(Matrix& M, unsigned width, double limit, std::vector<unsigned>& pivots,
                             double& lastMax) {
    return pivotedSteps(M, Block{0, M.rowNumber(), 0}, width, limit, pivots, lastMax);
}

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
