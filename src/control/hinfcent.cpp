// HinfRiccati: the central compensator at a feasible level, taken back from the normalised
// continuous problem to the plant's controls, measures and time domain.
#include <iostream>

#include "control/bilinear.h"
#include "control/hinfric.h"

using dynop::block;

namespace {

// The controller K with u = K y for the plant with D22 = 0 becomes the one for D22: y - D22 u is
// what it measured, so u = (I + Dk D22)^-1 (Ck xk + Dk y).
DynOp closeFeedThrough(Algebra& alg, const Matrix& Ak, const Matrix& Bk, const Matrix& Ck, const Matrix& Dk,
                       const Matrix& D22) {
    Matrix M = alg.inv(Matrix::diagonal(Dk.rowNumber(), 1.0) + Dk * D22);
    Matrix I = Matrix::diagonal(D22.rowNumber(), 1.0);
    return DynOp(Ak - Bk * D22 * M * Ck, Bk * (I - D22 * M * Dk), M * Ck, M * Dk, 0, 0, 0, false);
}

// The symmetric positive definite I - W' S^-1 W, S = gamma^2 I - V V' (empty V, W: I).
Matrix reducedIdentity(Algebra& alg, double gamma, const Matrix& V, const Matrix& W) {
    Matrix S = Matrix::diagonal(V.rowNumber(), gamma * gamma) - V * V.transpose();
    Matrix I = Matrix::diagonal(W.columnNumber(), 1.0);
    return S.rowNumber() ? I - W.transpose() * alg.solve(S, W) : I;
}

}  // namespace

DynOp HinfRiccati::compensator(double gamma) const {
    Solution s;
    if (!solve(gamma, false, s)) {
        std::cout << "Riccati route: no compensator at level " << gamma << ", it is not feasible"
                  << std::endl;
        return DynOp(Matrix(p.m2, p.p2));
    }
    Algebra alg;
    DynOp K = centralCompensator(s, gamma);
    K = DynOp(K.stateA(), K.stateB() * p.Ty, p.Tu * K.stateC(), p.Tu * K.getD() * p.Ty, 0, 0, 0, false);
    if (discrete) K = discreteImage(K);
    return DynOp(K.stateA(), K.stateB(), -K.stateC(), -K.getD(), 0, 0, 0, false);
}

// The central controller of the normalised problem with D11 partitioned by the zero blocks of D12
// and D21 (rows p1 - m2 | m2, columns m1 - p2 | p2):
//   D^11 = -D1121 D1111' (g^2 I - D1111 D1111')^-1 D1112 - D1122,
//   D^12 D^12' = I - D1121 (g^2 I - D1111' D1111)^-1 D1121', D^21' D^21 = I - D1112' (...)^-1 D1112,
//   Z = (I - g^-2 Y X)^-1, B^2 = Z (B2 + L12) D^12, C^2 = -D^21 (C2 + F12),
//   B^1 = -Z L2 + B^2 D^12^-1 D^11, C^1 = F2 + D^11 D^21^-1 C^2, A^ = A + B F + B^1 D^21^-1 C^2,
// with u = (A^, B^1, C^1, D^11) y, then D22 closed around it.
DynOp HinfRiccati::centralCompensator(const Solution& s, double gamma) const {
    Algebra alg;
    unsigned z1 = p.p1 - p.m2, w1 = p.m1 - p.p2;
    Matrix D1111 = block(p.D11, 0, 0, z1, w1), D1112 = block(p.D11, 0, w1, z1, p.p2);
    Matrix D1121 = block(p.D11, z1, 0, p.m2, w1), D1122 = block(p.D11, z1, w1, p.m2, p.p2);
    Matrix S = Matrix::diagonal(z1, gamma * gamma) - D1111 * D1111.transpose();
    Matrix Dh11 = -D1122;
    if (z1 && w1) Dh11 -= D1121 * D1111.transpose() * alg.solve(S, D1112);
    Matrix Dh12 = reducedIdentity(alg, gamma, D1111.transpose(), D1121.transpose());
    Matrix Dh21 = reducedIdentity(alg, gamma, D1111, D1112);
    alg.chol(Dh12);
    alg.chol(Dh21);
    Dh12 = Dh12.transpose();
    Matrix F12 = block(s.F, w1, 0, p.p2, p.n), F2 = block(s.F, p.m1, 0, p.m2, p.n);
    Matrix L12 = block(s.L, 0, z1, p.n, p.m2), L2 = block(s.L, 0, p.p1, p.n, p.p2);
    Matrix Z = alg.inv(Matrix::diagonal(p.n, 1.0) - s.Y * s.X / (gamma * gamma));
    Matrix Bh2 = Z * (p.B2 + L12) * Dh12;
    Matrix Ch2 = -(Dh21 * (p.C2 + F12));
    Matrix Bh1 = -(Z * L2) + Bh2 * alg.solve(Dh12, Dh11);
    Matrix Ch2bar = alg.solve(Dh21, Ch2);
    Matrix Ch1 = F2 + Dh11 * Ch2bar;
    Matrix Ah = p.A + dynop::sideBySide(p.B1, p.B2) * s.F + Bh1 * Ch2bar;
    return closeFeedThrough(alg, Ah, Bh1, Ch1, Dh11, p.D22);
}
