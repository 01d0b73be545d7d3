// OptimumGramian: the B. D. Anderson condition test on the states dropped as stable and
// uncontrollable, and the change of coordinates that decouples them when it holds.
#include <cmath>
#include <cstdlib>
#include <iostream>

#include "control/askparam.h"
#include "control/optgram.h"

using dynop::block;

namespace {

// A value of the library's random integer times 1e-4.
double randomValue() { return std::rand() * 1e-4; }

}  // namespace

// With [A1 A12; 0 A22] the full A and n2 dropped states, V (fulln x n2) with A V - V A22 = 0
// and C1 V = 0 spans an invariant subspace of the dropped poles that the objectives do not see.
// When its lower block V2 is invertible, the similarity [I V1; 0 V2] makes A block diagonal and
// the objectives blind to the dropped states, so that the design on the first ones is exact.
// A22 near zero reduces the equations to the null space of [A; C1]; otherwise they are solved
// in Kronecker form. V is a random combination of the last k null vectors, k growing until V2
// has full rank.
void OptimumGramian::andersonTest() {
    unsigned n2 = fulln - subn;
    Blocks b = blocksOf(*fullSystem);
    Matrix A22 = block(b.A, subn, subn, n2, n2);
    bool zeroBlock = normTriangular(A22) < 1e-4;
    Matrix N;
    if (zeroBlock) {
        N = dynop::nullBasis(dynop::stack(b.A, b.C1), std::sqrt(1e-7));
    } else {
        Matrix K((fulln + np) * n2, fulln * n2);
        for (unsigned j = 0; j < n2; ++j) {
            K.setSubMatrix(j * fulln, j * fulln, b.A, fulln, fulln);
            if (np) K.setSubMatrix(n2 * fulln + j * np, j * fulln, b.C1, np, fulln);
            for (unsigned k = 0; k < n2; ++k)
                for (unsigned i = 0; i < fulln; ++i) K(j * fulln + i, k * fulln + i) -= A22(k, j);
        }
        N = dynop::nullBasis(K, 1e-10);
    }
    unsigned available = N.columnNumber(), used = 0;
    double rank = 0.0;
    Matrix V(fulln, n2);
    auto combine = [&](unsigned k) {
        Matrix last = block(N, 0, available - k, N.rowNumber(), k);
        if (zeroBlock) {
            Matrix G(k, n2);
            for (unsigned j = 0; j < n2; ++j) {
                double sum = 0.0;
                for (unsigned i = 0; i < k; ++i) sum += G(i, j) = randomValue();
                for (unsigned i = 0; i < k && sum != 0.0; ++i) G(i, j) /= sum;
            }
            V = last * G;
        } else {
            Matrix g(k, 1);
            for (unsigned i = 0; i < k; ++i) g(i, 0) = randomValue();
            Matrix v = last * (g / normTriangular(g));
            for (unsigned k2 = 0; k2 < fulln * n2; ++k2) V.elements()[k2] = v(k2, 0);
        }
        Matrix V2 = block(V, subn, 0, n2, n2);
        rank = triangle(V2, n2, true, false, 1e-7);
        used = k;
    };
    for (unsigned k = 1; k <= available && rank < n2; ++k) combine(k);
    std::cout << "non stabilizable poles - B.D.Anderson condition test\n"
              << "A1*V-V*A22\n"
              << b.A * V - V * A22 << "\nC12*V\n"
              << b.C1 * V << "\nneeded rank  of matrix V = " << n2 << ", achieved rank = " << rank << "\n"
              << "the two previous matrices,\naccording to the B. D. Anderson condition should be zero,\n"
              << "acknowledge to continue" << std::endl;
    ParamRequest request("Insert dimension of the null space", 1);
    request.add("dimension of the Null space", double(used));
    if (askParameters(owner, request)) {
        unsigned asked = request.number(0) > 0.0 ? unsigned(request.number(0)) : 0;
        if (asked != used && asked >= 1 && asked <= available) combine(asked);
    }
    if (rank < n2) return;
    Matrix S = Matrix::diagonal(fulln, 1.0);
    S.setSubMatrix(0, subn, V, fulln, n2);
    Matrix Sinv = inv(S);
    fullSystem->similarity(Sinv);
    transform = Sinv * transform;
    rebuildSubsystems();
}
