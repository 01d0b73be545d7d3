// LMI: the state-feedback H2 and H-infinity syntheses as semidefinite programs, written in SDPA
// sparse form to "lmi.txt", solved by CSDP and read back into H, L and the gramian.
//
// With u = -H x, the unknowns X = X' > 0 and Y = H X make the closed loop linear in them:
//     S = (A - B2 H) X = A X - B2 Y,        T = (C1 - D12 H) X = C1 X - D12 Y.
// The blocks encoded, each required positive definite (M < 0 is written as -M > 0):
// H-infinity, continuous (bounded-real lemma), ||T_zw|| < g:
//     [S + S'  B1  T'; B1'  -g I  D11'; T  D11  -g I] < 0,        X > 0;
// H-infinity, discrete, full information u = -H x - W w (in discrete time the feed-forward of
// the disturbance lowers the level, and the design's central gain has it), with Bw = B1 - B2 W
// and Dw = D11 - D12 W:
//     [X  S  Bw  0; S'  X  0  T'; Bw'  0  g I  Dw'; 0  T  Dw  g I] > 0;
// H2, continuous (D11 plays no part), ||T_zw||^2 < trace Z:
//     [S + S'  B1; B1'  -I] < 0,        [Z  T; T'  X] > 0;
// H2, discrete, ||T_zw||^2 < trace Z:
//     [X  S  B1; S'  X  0; B1'  0  I] > 0,        [Z  T  D11; T'  X  0; D11'  0  I] > 0.
// The minimum problems minimise g (H-infinity) or trace Z (H2). The H2 bound adds the 1x1 block
// g^2 - trace Z > 0 to the minimum; the H-infinity bound fixes g and seeks the largest X (largest
// trace), whose inverse is the least storage: the central solution of the Riccati approach. That
// X is bounded only on the states the objectives see, so the problem is set on them alone.
// From the solution H = Y X^-1; Q = g X^-1 is the H-infinity gramian of the closed loop,
// L = (1/g) B1' Q; for H2, Q = X^-1 and L = 0.
#include "control/lmi.h"

#include <cmath>
#include <iostream>

#include "control/dynop.h"
#include "control/semidef.h"

DEFINE_CLASS(LMI, Algebra, 1, 0)

struct LMI::Unknowns {
    Matrix X, Z, Y, W;
    double g;
};

LMI::LMI() {}

LMI::LMI(const DynOp& s)
    : n(s.order()),
      nm(s.measureNumber()),
      np(s.outputNumber() - s.measureNumber()),
      nc(s.controlNumber()),
      nd(s.inputNumber() - s.controlNumber()),
      discrete(s.isDiscreteTime()) {
    Matrix a = s.stateA(), B = s.stateB(), c1 = dynop::block(s.stateC(), 0, 0, np, n), D = s.getD();
    D11 = dynop::block(D, 0, 0, np, nd);
    D12 = dynop::block(D, 0, nd, np, nc);
    if (n == 0) return;
    DynOp objectives(a, B, c1, Matrix(0, 0), 0, 0, 0, false);
    double tolerance = 1e-10 * (1.0 + normF(a) + normF(c1));
    Matrix T;
    objectives.obsSubSystem(0, T, tolerance);
    seen = objectives.observableOrder(0, tolerance);
    hiddenStable = seen == n || isStable(dynop::block(T * a * T.transpose(), seen, seen, n - seen, n - seen));
    if (seen == 0) return;
    basis = T.subMatrix(0, 0, seen, n);
    A = basis * a * basis.transpose();
    B1 = basis * dynop::block(B, 0, 0, n, nd);
    B2 = basis * dynop::block(B, 0, nd, n, nc);
    C1 = c1 * basis.transpose();
}

// The H-infinity bound's solution lies where the inequality turns singular, which the solver
// reaches only within its accuracy: the bound is solved this fraction below gamma, so that the
// loop it gives stays within gamma.
const double LMI::boundAccuracy = 1e-3;

int LMI::solveBound(double bound, bool useH2) {
    kind = useH2 ? h2Bound : hinfBound;
    gamma = useH2 ? bound : bound * (1.0 - boundAccuracy);
    return gamma > 0.0 ? solve() : fail(-1);
}

int LMI::solveMinimum(bool useH2) {
    kind = useH2 ? h2Minimum : hinfMinimum;
    gamma = 0.0;
    return solve();
}

int LMI::solve() {
    std::cout << "Solving LMI" << std::endl;
    const char* problem = "lmi.txt";
    auto blocks = [this](const std::vector<double>& y) { return constraints(unpack(y)); };
    if (seen == 0 || nc == 0 || nd == 0 || np == 0 || !hiddenStable ||
        !semidef::writeProblem(problem, variableCount(), objective(), blocks))
        return fail(-1);
    std::vector<double> y;
    double gap = 0.0;
    int code = semidef::solveFile(problem, y, gap);
    // Code 3 is the solver's success at reduced accuracy. Code 5, stuck at the edge of primal
    // feasibility, is where the H-infinity bound's largest X lies: the point reached is kept.
    // readBack judges the solution, and the step checks the norm of the loop it gives.
    bool edge = code == 5 && kind == hinfBound;
    if (code != 0 && code != 3 && !edge) return fail(code);
    return readBack(y, gap) ? 0 : fail(-1);
}

int LMI::fail(int code) const {
    std::cout << "LMI failed, go back to iterations" << std::endl;
    return code;
}

// Problem file

unsigned LMI::variableCount() const {
    unsigned z = zOrder();
    return seen * (seen + 1) / 2 + z * (z + 1) / 2 + nc * seen + feedForwardCount() +
           (kind == hinfMinimum ? 1 : 0);
}

unsigned LMI::feedForwardCount() const { return discrete && !isH2() ? nc * nd : 0; }

LMI::Unknowns LMI::unpack(const std::vector<double>& y) const {
    unsigned z = zOrder(), k = seen * (seen + 1) / 2 + z * (z + 1) / 2;
    Unknowns v = {semidef::symmetric(y, 0, seen), semidef::symmetric(y, seen * (seen + 1) / 2, z),
                  Matrix(nc, seen), Matrix(nc, nd), 0.0};
    for (unsigned j = 0; j < seen; ++j)
        for (unsigned i = 0; i < nc; ++i) v.Y(i, j) = y[k++];
    if (feedForwardCount() > 0)
        for (unsigned j = 0; j < nd; ++j)
            for (unsigned i = 0; i < nc; ++i) v.W(i, j) = y[k++];
    if (kind == hinfMinimum) v.g = y[k];
    return v;
}

std::vector<Matrix> LMI::constraints(const Unknowns& v) const {
    const Matrix& X = v.X;
    Matrix S = A * X - B2 * v.Y, T = C1 * X - D12 * v.Y;
    Matrix St = S.transpose(), Tt = T.transpose(), B1t = B1.transpose(), D11t = D11.transpose();
    Matrix Id = Matrix::diagonal(nd, 1.0), Ip = Matrix::diagonal(np, 1.0), Is = Matrix::diagonal(seen, 1.0);
    Matrix Zdn(nd, seen), Znd(seen, nd);
    std::vector<Matrix> blocks;
    if (!isH2()) {
        double g = kind == hinfMinimum ? v.g : gamma;
        if (discrete) {
            Matrix Bw = B1 - B2 * v.W, Dw = D11 - D12 * v.W;
            blocks.push_back(semidef::grid({{X, S, Bw, Matrix(seen, np)},
                                            {St, X, Znd, Tt},
                                            {Bw.transpose(), Zdn, Id * g, Dw.transpose()},
                                            {Matrix(np, seen), T, Dw, Ip * g}}));
        } else {
            blocks.push_back(-semidef::grid({{S + St, B1, Tt}, {B1t, Id * -g, D11t}, {T, D11, Ip * -g}}));
            blocks.push_back(X);
        }
        if (kind == hinfBound) blocks.push_back(semidef::grid({{v.Z, Is}, {Is, X}}));
        return blocks;
    }
    if (discrete) {
        blocks.push_back(semidef::grid({{X, S, B1}, {St, X, Znd}, {B1t, Zdn, Id}}));
        blocks.push_back(semidef::grid({{v.Z, T, D11}, {Tt, X, Znd}, {D11t, Zdn, Id}}));
    } else {
        blocks.push_back(-semidef::grid({{S + St, B1}, {B1t, -Id}}));
        blocks.push_back(semidef::grid({{v.Z, T}, {Tt, X}}));
    }
    if (kind == h2Bound) blocks.push_back(Matrix::diagonal(1, gamma * gamma - v.Z.trace()));
    return blocks;
}

std::vector<double> LMI::objective() const {
    std::vector<double> c(variableCount(), 0.0);
    if (kind == hinfMinimum) c.back() = 1.0;
    // The diagonal of Z, which stands behind X's upper triangle.
    unsigned first = seen * (seen + 1) / 2;
    for (unsigned j = 0; j < zOrder(); ++j) c[first + j * (j + 1) / 2 + j] = 1.0;
    return c;
}

// Reading back

bool LMI::readBack(const std::vector<double>& y, double gap) {
    Unknowns v = unpack(y);
    if (kind == hinfMinimum) gamma = v.g;
    if (isH2()) gamma = std::sqrt(std::fabs(v.Z.trace()));
    std::cout << "gap " << gap << "\n"
              << "gamma " << gamma << std::endl;
    Matrix values = computeEigenvalues(v.X);
    for (unsigned i = 0; i < seen; ++i)
        if (values(i, 0) <= 0.0) return false;
    Matrix Xinv = inv(v.X), Hseen = v.Y * Xinv, Qseen = isH2() ? Xinv : Xinv * gamma;
    H = Hseen * basis;
    Hw = v.W;
    Q = basis.transpose() * Qseen * basis;
    L = isH2() ? Matrix(nd, n) : B1.transpose() * Qseen * basis / gamma;
    return isStable(A - B2 * Hseen);
}

bool LMI::isStable(const Matrix& closedLoopA) {
    Matrix poles = computeEigenvalues(closedLoopA);
    for (unsigned i = 0; i < poles.rowNumber(); ++i)
        if (discrete ? std::hypot(poles(i, 0), poles(i, 1)) >= 1.0 : poles(i, 0) >= 0.0) return false;
    return true;
}

void LMI::printOn(std::ostream& os) const {
    os << "n " << n << ", nm " << nm << ", np " << np << ", nc " << nc << ", nd " << nd << "\n";
    os << "A " << A << "\nB1 " << B1 << "\nB2 " << B2 << "\nC1 " << C1 << "\nD11 " << D11 << "\nD12 " << D12
       << "\nH " << H << "\nL " << L << "\nQ " << Q << "\n";
}
