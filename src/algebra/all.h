// The numerical algebra in one include: matrices, vectors, their windows and cursors, the LAPACK layer, the
// numeric routines.
#ifndef ALGEBRA_ALL_H
#define ALGEBRA_ALL_H

#include "algebra/algebra.h"
#include "algebra/cmatrix.h"
#include "algebra/complex.h"
#include "algebra/cursor.h"
#include "algebra/freqsrch.h"
#include "algebra/lapack.h"
#include "algebra/matrix.h"
#include "algebra/pmatrix.h"
#include "algebra/polynom.h"
#include "algebra/ratfun.h"
#include "algebra/rfmatrix.h"
#include "algebra/submatrx.h"
#include "algebra/vector.h"

#endif
