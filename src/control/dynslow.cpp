// DynOp::slowPart: the fast modes of a system replaced by their steady gain.
#include <algorithm>
#include <cmath>
#include <vector>

#include "algebra/lapack.h"
#include "control/dynop.h"

using dynop::block;

namespace {

// The dgees selection has no context: the limit of the kept speeds and the time domain.
double slowLimit = 0.0;
bool slowDiscrete = false;

// A pole's distance from rest: |p| in continuous time, |log p| in discrete time.
double speedOf(double re, double im, bool discrete) {
    if (!discrete) return std::hypot(re, im);
    double m = std::hypot(re, im);
    return m == 0.0 ? HUGE_VAL : std::hypot(std::log(m), std::atan2(im, re));
}

int selectSlow(const double* re, const double* im) {
    return speedOf(*re, *im, slowDiscrete) <= slowLimit * (1.0 + 1e-12) ? 1 : 0;
}

}  // namespace

DynOp DynOp::slowPart(unsigned n) const {
    if (isStatic || n >= order_) return DynOp(*this, controlNumber_, measureNumber_, feedForwardNumber_);
    unsigned full = order_;
    Matrix p = poles();
    std::vector<double> speeds;
    for (unsigned i = 0; i < full; ++i) speeds.push_back(speedOf(p(i, 0), p(i, 1), isDiscreteTime()));
    std::sort(speeds.begin(), speeds.end());
    slowLimit = n == 0 ? -1.0 : speeds[n - 1];
    slowDiscrete = isDiscreteTime();
    Matrix a = stateA(), Q(full, full), values(full, 2);
    int kept = 0;
    lapackSchur(int(full), a.elements(), Q.elements(), values.elements(), true, selectSlow, &kept);
    unsigned k = unsigned(kept), f = full - k;
    Matrix b = Q.transpose() * stateB(), c = stateC() * Q;
    Matrix A22 = block(a, k, k, f, f), B2 = block(b, k, 0, f, inputNumber_);
    Matrix M = isDiscreteTime() ? Matrix::diagonal(f, 1.0) - A22 : A22 * -1.0;
    bool singular = false;
    Matrix steady = numerics().solve(M, B2, &singular);  // x2 = steady u at rest
    if (singular) steady = Matrix(f, inputNumber_);
    return DynOp(block(a, 0, 0, k, k), block(b, 0, 0, k, inputNumber_) + block(a, 0, k, k, f) * steady,
                 block(c, 0, 0, outputNumber_, k), getD() + block(c, 0, k, outputNumber_, f) * steady,
                 controlNumber_, measureNumber_, feedForwardNumber_);
}
