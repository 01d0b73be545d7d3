// OptimumGramian: the feedback completed on the states that the design dropped as stable and
// uncontrollable.
#include "control/optgram.h"

using dynop::block;

namespace {

// The Kronecker product a (x) b.
Matrix kron(const Matrix& a, const Matrix& b) {
    unsigned br = b.rowNumber(), bc = b.columnNumber();
    Matrix k(a.rowNumber() * br, a.columnNumber() * bc);
    for (unsigned i = 0; i < a.rowNumber(); ++i)
        for (unsigned j = 0; j < a.columnNumber(); ++j)
            for (unsigned r = 0; r < br; ++r)
                for (unsigned c = 0; c < bc; ++c) k(i * br + r, j * bc + c) = a(i, j) * b(r, c);
    return k;
}

// The columns of M one under the other, and back.
Matrix vec(const Matrix& M) {
    Matrix v(M.elementCount(), 1);
    for (unsigned k = 0; k < M.elementCount(); ++k) v(k, 0) = M.elements()[k];
    return v;
}

Matrix unvec(const Matrix& v, unsigned rows, unsigned cols) {
    Matrix M(rows, cols);
    for (unsigned k = 0; k < rows * cols; ++k) M.elements()[k] = v(k, 0);
    return M;
}

}  // namespace

// The gain of a design of order n (or of the controllable order, padded with zeros) extended to
// the full order. With the full system [A1 A12; 0 A22], B2 zero on the dropped states, and the
// gramian X11 of the design, the coupling block X12 of the full solution solves, in continuous
// time, Acl' X12 + X12 A22 + X11 A12 + Ccl' C12 = 0 (Acl = A1 - B21 H, Ccl = C11 - D12 H), and
// the gain on the dropped states is B21' X12 + D12' C12: exact for the H2 design. In discrete
// time the same block of X = Acl'X Acl + Ccl'Ccl is taken with the coupling through the new
// gain left out, and the gain follows the discrete formula.
Matrix OptimumGramian::completion(const Matrix& gain) const {
    Matrix Hn(gain);
    Hn.reSize(nc, subn);
    if (fulln == subn) return Hn;
    unsigned n2 = fulln - subn;
    Blocks b = blocksOf(*fullSystem);
    Matrix A1 = block(b.A, 0, 0, subn, subn), A12 = block(b.A, 0, subn, subn, n2),
           A22 = block(b.A, subn, subn, n2, n2), B21 = block(b.B2, 0, 0, subn, nc),
           C11 = block(b.C1, 0, 0, np, subn), C12 = block(b.C1, 0, subn, np, n2);
    Matrix X11 = gramian();
    X11.reSize(subn, subn);
    Matrix Acl = A1 - B21 * Hn, Ccl = C11 - b.D12 * Hn, Aclt = Acl.transpose();
    Matrix I1 = Matrix::diagonal(subn, 1.0), I2 = Matrix::diagonal(n2, 1.0);
    Matrix H2;
    if (!isDiscrete()) {
        Matrix F = X11 * A12 + Ccl.transpose() * C12;
        Matrix K = kron(I2, Aclt) + kron(A22.transpose(), I1);
        Matrix X12 = unvec(alg().solve(K, -vec(F)), subn, n2);
        H2 = B21.transpose() * X12 + b.D12.transpose() * C12;
    } else {
        Matrix F = Aclt * X11 * A12 + Ccl.transpose() * C12;
        Matrix K = Matrix::diagonal(subn * n2, 1.0) - kron(A22.transpose(), Aclt);
        Matrix X12 = unvec(alg().solve(K, vec(F)), subn, n2);
        Matrix S = alg().inv(Matrix::diagonal(nc, 1.0) + B21.transpose() * X11 * B21);
        H2 = S * (B21.transpose() * (X11 * A12 + X12 * A22) + b.D12.transpose() * C12);
    }
    return dynop::sideBySide(Hn, H2);
}
