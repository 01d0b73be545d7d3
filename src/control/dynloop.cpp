// DynOp loop closures: the linear fractional closure with a controller, and the closure of a
// block diagram's coupling.
#include <cmath>

#include "control/dynop.h"

using dynop::sideBySide;
using dynop::stack;

// The plant's controls u and measures y close through the controller's first inputs (taking y)
// and first outputs (giving u), with negative feedback. The controller's own controls and
// measures stay external, behind the plant's disturbances and objectives.
DynOp DynOp::closedLoop(const DynOp& controller) const {
    unsigned nu = controlNumber_, ny = measureNumber_;
    const DynOp& k = controller;
    if (k.inputNumber_ - k.controlNumber_ != ny || k.outputNumber_ - k.measureNumber_ != nu)
        D.dimensionError("closedLoop", k.outputNumber_ - k.measureNumber_, k.inputNumber_ - k.controlNumber_);
    dynop::Partition P(stateA(), stateB(), stateC(), D, nu, ny);
    dynop::Partition K(k.stateA(), -k.stateB(), k.stateC(), -k.D, k.controlNumber_, k.measureNumber_);
    // K.D11 maps y to u; B1, C1 of the controller are its loop channels, B2, C2 its own ones.
    Matrix S2 = Matrix::diagonal(nu, 1.0);
    if (nu && ny) S2 = numerics().inv(Matrix::diagonal(nu, 1.0) - K.D11 * P.D22);
    // u and y as maps of the plant state, the controller state, w and the controller's inputs r.
    Matrix Ux = S2 * K.D11 * P.C2, Uk = S2 * K.C1, Uw = S2 * K.D11 * P.D21, Ur = S2 * K.D12;
    Matrix Yx = P.C2 + P.D22 * Ux, Yk = P.D22 * Uk, Yw = P.D21 + P.D22 * Uw, Yr = P.D22 * Ur;
    Matrix a = stack(sideBySide(P.A + P.B2 * Ux, P.B2 * Uk), sideBySide(K.B1 * Yx, K.A + K.B1 * Yk));
    Matrix b = stack(sideBySide(P.B1 + P.B2 * Uw, P.B2 * Ur), sideBySide(K.B1 * Yw, K.B2 + K.B1 * Yr));
    Matrix c = stack(sideBySide(P.C1 + P.D12 * Ux, P.D12 * Uk), sideBySide(K.D21 * Yx, K.C2 + K.D21 * Yk));
    Matrix d = stack(sideBySide(P.D11 + P.D12 * Uw, P.D12 * Ur), sideBySide(K.D21 * Yw, K.D22 + K.D21 * Yr));
    return DynOp(a, b, c, d, k.controlNumber_, k.measureNumber_);
}

DynOp DynOp::outputFeedback(const DynOp& controller) const { return closedLoop(DynOp(controller, 0, 0, 0)); }

// Coupling K: u = K y on the inputs whose row of K holds an element not below zeroTolerance;
// the other inputs stay external, and so do the outputs whose column of K is zero.
DynOp DynOp::closeBlockLoop(const Matrix& coupling) const {
    if (coupling.rowNumber() != inputNumber_ || coupling.columnNumber() != outputNumber_)
        D.dimensionError("closeBlockLoop", coupling.columnNumber(), coupling.rowNumber());
    Matrix E(inputNumber_, 0), Sel(0, outputNumber_);
    for (unsigned i = 0; i < inputNumber_; ++i) {
        Vector row = coupling.row(int(i));
        bool taken = false;
        for (unsigned j = 0; j < row.size(); ++j) taken = taken || std::abs(row[j]) >= zeroTolerance;
        if (taken) continue;
        Matrix e(inputNumber_, 1);
        e(i, 0) = 1.0;
        E = sideBySide(E, e);
    }
    for (unsigned j = 0; j < outputNumber_; ++j) {
        Vector column = coupling.column(int(j));
        bool used = false;
        for (unsigned i = 0; i < column.size(); ++i) used = used || std::abs(column[i]) >= zeroTolerance;
        if (used) continue;
        Matrix e(1, outputNumber_);
        e(0, j) = 1.0;
        Sel = stack(Sel, e);
    }
    Matrix F = numerics().inv(Matrix::diagonal(inputNumber_, 1.0) - coupling * D);
    Matrix a = stateA(), b = stateB(), c = stateC();
    Matrix FKC = F * coupling * c;
    return DynOp(a + b * FKC, b * F * E, Sel * (c + D * FKC), Sel * D * F * E);
}
