// The output-feedback H-infinity level by the projection lemma: a compensator of any order
// meeting gamma exists if and only if symmetric R and S satisfy, with Nr a basis of the kernel of
// [B2' D12'] and Ns one of the kernel of [C2 D21], each widened by an identity,
// continuous:
//     Nr' [A R + R A'  R C1'  B1; C1 R  -g I  D11; B1'  D11'  -g I] Nr < 0,
//     Ns' [A' S + S A  S B1  C1'; B1' S  -g I  D11'; C1  D11  -g I] Ns < 0,
// discrete:
//     Nr' [A R A' - R  A R C1'  B1; C1 R A'  C1 R C1' - g I  D11; B1'  D11'  -g I] Nr < 0,
//     Ns' [A' S A - S  A' S B1  C1'; B1' S A  B1' S B1 - g I  D11'; C1  D11  -g I] Ns < 0,
// and [R I; I S] >= 0. All three are affine in R, S and g, so the least g is one semidefinite
// program.
#include "control/lmiof.h"

#include <cmath>
#include <iostream>

#include "control/dynop.h"
#include "control/semidef.h"

using dynop::block;
using dynop::sideBySide;
using dynop::stack;

namespace {

struct Problem {
    dynop::Partition p;
    bool discrete;
    unsigned n, nd, np;
    Matrix Nr, Ns;  // widened kernel bases

    explicit Problem(const DynOp& plant)
        : p(plant),
          discrete(plant.isDiscreteTime()),
          n(plant.order()),
          nd(p.B1.columnNumber()),
          np(p.C1.rowNumber()),
          Nr(widened(dynop::nullBasis(sideBySide(p.B2.transpose(), p.D12.transpose()), 1e-10), nd)),
          Ns(widened(dynop::nullBasis(sideBySide(p.C2, p.D21), 1e-10), np)) {}

    static Matrix widened(const Matrix& N, unsigned extra) {
        Matrix W(N.rowNumber() + extra, N.columnNumber() + extra);
        for (unsigned j = 0; j < N.columnNumber(); ++j)
            for (unsigned i = 0; i < N.rowNumber(); ++i) W(i, j) = N(i, j);
        for (unsigned i = 0; i < extra; ++i) W(N.rowNumber() + i, N.columnNumber() + i) = 1.0;
        return W;
    }

    unsigned variableCount() const { return n * (n + 1) + 1; }

    std::vector<Matrix> blocks(const std::vector<double>& y) const {
        Matrix R = semidef::symmetric(y, 0, n), S = semidef::symmetric(y, n * (n + 1) / 2, n);
        double g = y.back();
        Matrix Id = Matrix::diagonal(nd, g), Ip = Matrix::diagonal(np, g), In = Matrix::diagonal(n, 1.0);
        const Matrix &A = p.A, &B1 = p.B1, &C1 = p.C1, &D11 = p.D11;
        Matrix At = A.transpose(), B1t = B1.transpose(), C1t = C1.transpose(), D11t = D11.transpose();
        Matrix control, estimation;
        if (discrete) {
            control = semidef::grid(
                {{A * R * At - R, A * R * C1t, B1}, {C1 * R * At, C1 * R * C1t - Ip, D11}, {B1t, D11t, -Id}});
            estimation = semidef::grid(
                {{At * S * A - S, At * S * B1, C1t}, {B1t * S * A, B1t * S * B1 - Id, D11t}, {C1, D11, -Ip}});
        } else {
            control = semidef::grid({{A * R + R * At, R * C1t, B1}, {C1 * R, -Ip, D11}, {B1t, D11t, -Id}});
            estimation = semidef::grid({{At * S + S * A, S * B1, C1t}, {B1t * S, -Id, D11t}, {C1, D11, -Ip}});
        }
        return {-(Nr.transpose() * control * Nr), -(Ns.transpose() * estimation * Ns),
                semidef::grid({{R, In}, {In, S}})};
    }
};

double failed() {
    std::cout << "LMI failed, go back to iterations" << std::endl;
    return HUGE_VAL;
}

}  // namespace

double lmiOutputFeedbackGamma(const DynOp& plant) {
    std::cout << "Solving LMI" << std::endl;
    Problem problem(plant);
    if (problem.n == 0 || problem.nd == 0 || problem.np == 0) return failed();
    const char* file = "lmi.txt";
    std::vector<double> c(problem.variableCount(), 0.0);
    c.back() = 1.0;
    auto blocks = [&problem](const std::vector<double>& y) { return problem.blocks(y); };
    if (!semidef::writeProblem(file, problem.variableCount(), c, blocks)) return failed();
    std::vector<double> y;
    double gap = 0.0;
    int code = semidef::solveFile(file, y, gap);
    if (code != 0 && code != 3) return failed();
    double gamma = y.back();
    std::cout << "gap " << gap << "\n"
              << "gamma " << gamma << std::endl;
    return gamma > 0.0 && std::isfinite(gamma) ? gamma : failed();
}
