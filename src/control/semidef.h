// Semidefinite programs for CSDP: minimise c'y subject to blocks that are affine in y and must
// be positive definite, written in SDPA sparse form and solved by the solver's sample driver.
#ifndef CONTROL_SEMIDEF_H
#define CONTROL_SEMIDEF_H

#include <functional>
#include <initializer_list>
#include <vector>

#include "algebra/matrix.h"

namespace semidef {

// The constraint blocks at the decision vector y.
using Blocks = std::function<std::vector<Matrix>(const std::vector<double>& y)>;

// Writes the problem of m variables to fileName (safely; a failure is printed) and answers
// whether it was written. Each block is kept a small margin inside the cone.
bool writeProblem(const char* fileName, unsigned m, const std::vector<double>& c, const Blocks& blocks);

// Solves the problem in fileName as the solver's sample driver does; answers the solver's code
// (0 success, 3 reduced accuracy), y and the duality gap.
int solveFile(const char* fileName, std::vector<double>& y, double& gap);

// The upper triangle of a symmetric n x n unknown, packed by columns from y[first].
Matrix symmetric(const std::vector<double>& y, unsigned first, unsigned n);

// The block matrix made of the rows of blocks.
Matrix grid(std::initializer_list<std::initializer_list<Matrix>> rows);

}  // namespace semidef

#endif
