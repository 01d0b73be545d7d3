// DynOp structure: controllable, observable and stabilizable parts through the staircase form,
// the Schur form, and the cleaning of poles at the origin.
#include <cmath>
#include <iostream>

#include "algebra/lapack.h"
#include "control/dynop.h"
#include "quill/intarray.h"

using dynop::block;

namespace {

unsigned sum(const IntArray& indices) {
    int total = 0;
    for (unsigned i = 0; i < indices.size(); ++i) total += indices[int(i)];
    return unsigned(total);
}

Matrix rowsOf(const Matrix& M, const IntArray* rows) { return dynop::columnsOf(M.transpose(), rows); }

}  // namespace

unsigned DynOp::staircaseOrder(bool dual, const IntArray* selection, double tolerance, Matrix& T, Matrix& a,
                               bool print, unsigned forcedOrder) const {
    a = dual ? A.transpose() : A;
    Matrix b = dual ? rowsOf(C, selection) : dynop::columnsOf(B, selection);
    IntArray indices(0);
    T = numerics().staircase(a, b, indices, tolerance, print);
    if (dual) a = a.transpose();
    if (print) {
        std::cout << (dual ? "norm of the residuals in testing observability indices"
                           : "norm of the residuals in testing controllability indices")
                  << "\n"
                  << staircaseReport << std::endl;
    }
    return forcedOrder ? forcedOrder : sum(indices);
}

DynOp DynOp::transformedPart(const Matrix& T, unsigned kept) const {
    Matrix Tt = T.transpose();
    return DynOp(block(T * A * Tt, 0, 0, kept, kept), block(T * B, 0, 0, kept, inputNumber_),
                 block(C * Tt, 0, 0, outputNumber_, kept), D, controlNumber_, measureNumber_);
}

DynOp DynOp::partThroughStaircase(bool dual, const IntArray* selection, Matrix& T, double tolerance,
                                  bool print, unsigned forcedOrder) const {
    if (isStatic) return *this;
    Matrix a;
    unsigned kept = staircaseOrder(dual, selection, tolerance, T, a, print, forcedOrder);
    if (kept >= order_) {
        T = Matrix::diagonal(order_, 1.0);
        return *this;
    }
    return transformedPart(T, kept);
}

DynOp DynOp::contrSubSystem(const IntArray* columns, Matrix& T, double tolerance, bool print,
                            unsigned forcedOrder) const {
    return partThroughStaircase(false, columns, T, tolerance, print, forcedOrder);
}

DynOp DynOp::obsSubSystem(const IntArray* rows, Matrix& T, double tolerance, bool print,
                          unsigned forcedOrder) const {
    return partThroughStaircase(true, rows, T, tolerance, print, forcedOrder);
}

unsigned DynOp::controllableOrder(const IntArray* columns, double tolerance, bool print,
                                  bool isControl) const {
    if (isStatic) return 0;
    Matrix T, a;
    unsigned order = staircaseOrder(!isControl, columns, tolerance, T, a, false, 0);
    if (print) {
        std::cout << (isControl ? "controllable subsystem order = " : "observable subsystem order = ")
                  << order << ", with tolerance = " << tolerance << "\n";
        if (order < order_)
            std::cout << (isControl ? "uncontrollable poles" : "unobservable poles")
                      << numerics().computeEigenvalues(block(a, order, order, order_ - order, order_ - order))
                      << "\n";
        std::cout << std::flush;
    }
    return order;
}

unsigned DynOp::observableOrder(const IntArray* rows, double tolerance, bool print) const {
    unsigned order = controllableOrder(rows, tolerance, false, false);
    if (print) std::cout << "observable subsystem order " << order << std::endl;
    return order;
}

namespace {

// The Schur selection of stabilizableSubSystem: the eigenvalues selectUnstablePoles of its owner
// would select, integrators and undamped modes included, since no feedback moves them either.
const DynOp* judge = 0;
double judgeTolerance = 0.0;

}  // namespace

int DynOp::selectUnstable(const double* re, const double* im) {
    return judge->stabilityValue(*re, *im) > -judgeTolerance ? 1 : 0;
}

// The controllable part and, behind it, the uncontrollable states whose poles are unstable, which
// no feedback can move: a 1x1 unstable remainder keeps the whole system, larger remainders are
// brought to a Schur form with their unstable poles first, and the stable rest is dropped.
DynOp DynOp::stabilizableSubSystem(const IntArray* columns, Matrix& T, double tolerance,
                                   double unstableTolerance, bool print, unsigned forcedOrder) const {
    if (isStatic) return *this;
    Matrix a;
    unsigned kept = staircaseOrder(false, columns, tolerance, T, a, print, forcedOrder);
    unsigned rest = order_ - kept;
    if (kept >= order_) {
        T = Matrix::diagonal(order_, 1.0);
        return *this;
    }
    if (rest == 1) {
        if (!isUnstablePole(a(kept, kept), unstableTolerance)) return transformedPart(T, kept);
        T = Matrix::diagonal(order_, 1.0);
        return *this;
    }
    Matrix a22 = block(a, kept, kept, rest, rest), Q(rest, rest), values(rest, 2);
    int unstable = 0;
    judge = this;
    judgeTolerance = unstableTolerance;
    lapackSchur(int(rest), a22.elements(), Q.elements(), values.elements(), true, &DynOp::selectUnstable,
                &unstable);
    T = Matrix::blockDiagonal(Matrix::diagonal(kept, 1.0), Q.transpose()) * T;
    return transformedPart(T, kept + unsigned(unstable));
}

void DynOp::toStaircase(const IntArray* columns) {
    if (isStatic) return;
    Matrix b = dynop::columnsOf(B, columns);
    IntArray indices(0);
    Matrix T = numerics().staircase(A, b, indices, zeroTolerance);
    B = T * B;
    C = C * T.transpose();
    isSchur = 0;
    std::cout << "indices " << indices << "\n"
              << "controllable subsystem order " << sum(indices) << std::endl;
}

Matrix DynOp::schurForm(bool sorted) {
    if (isStatic) return Matrix(0, 0);
    Matrix Q = numerics().schur(A, sorted);
    B = Q.transpose() * B;
    C = C * Q;
    isSchur = 1;
    return Q;
}

// The columns of the result are eigenvectors of the block for its two real roots, the one nearest
// the first diagonal element first, so that V^-1 block V is diagonal. Each vector comes from the
// row of (block - p I) that determines it best. A complex pair, or a block that is already a
// multiple of the identity, gives the identity.
Matrix DynOp::splitBlock(const Matrix& blk, double) const {
    Matrix roots(blk);
    numerics().rootsOf2by2(roots);
    Matrix V = Matrix::diagonal(2, 1.0);
    if (roots(0, 1) != 0.0) return V;
    double a = blk(0, 0), b = blk(0, 1), c = blk(1, 0), d = blk(1, 1);
    double p1 = roots(0, 0), p2 = roots(1, 0);
    if (std::fabs(p2 - a) < std::fabs(p1 - a)) std::swap(p1, p2);
    double ps[2] = {p1, p2};
    for (unsigned k = 0; k < 2; ++k) {
        double fromFirstRow = std::hypot(b, ps[k] - a), fromSecondRow = std::hypot(ps[k] - d, c);
        if (std::max(fromFirstRow, fromSecondRow) == 0.0) return Matrix::diagonal(2, 1.0);
        bool first = fromFirstRow >= fromSecondRow;
        V(0, k) = first ? b : ps[k] - d;
        V(1, k) = first ? ps[k] - a : c;
    }
    return V;
}

// A pair block with a root nearer the origin than tolerance is split into its two real roots by a
// similarity on the whole system, so that the cleaned pole is exactly zero.
void DynOp::cleanPolesInZero(double tolerance) {
    if (isStatic) return;
    if (!isSchur) schurForm();
    unsigned n = order_;
    for (unsigned k = 0; k < n; ++k) {
        bool pair = k + 1 < n && std::fabs(A(k + 1, k)) >= zeroTolerance;
        if (pair) {
            Matrix blk = block(A, k, k, 2, 2), roots(blk);
            numerics().rootsOf2by2(roots);
            bool stays = true;
            for (unsigned r = 0; r < 2; ++r)
                stays = stays && std::fabs(roots(r, 0)) + std::fabs(roots(r, 1)) >= tolerance;
            if (stays) {
                ++k;
                continue;
            }
            Matrix S = Matrix::diagonal(n, 1.0);
            S.setSubMatrix(k, k, splitBlock(blk, tolerance), 2, 2);
            similarity(numerics().inv(S));
            isSchur = 1;
            if (std::fabs(A(k + 1, k)) < tolerance) A(k + 1, k) = 0.0;
        }
        if (std::fabs(A(k, k)) < tolerance) A(k, k) = 0.0;
    }
}
