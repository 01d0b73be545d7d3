// The numerical algebra in one include: matrices, vectors, their windows and cursors, the LAPACK layer, the numeric routines.
#ifndef ALGEBRA_ALL_H
#define ALGEBRA_ALL_H

#include "algebra/matrix.h"
#include "algebra/vector.h"
#include "algebra/submatrx.h"
#include "algebra/cursor.h"
#include "algebra/lapack.h"
#include "algebra/algebra.h"

#endif
