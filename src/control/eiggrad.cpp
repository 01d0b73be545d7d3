// OptimumGramian: the manual pole shifting of a design by finite-difference gradients of the
// closed-loop poles on the elements of H.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "control/askparam.h"
#include "control/optgram.h"

namespace {

// The poles of changed in the order of reference: each reference pole takes the nearest in the
// 1-norm (the first found on ties), the search starting at 1/zeroTolerance.
Matrix matchPoles(const Matrix& reference, const Matrix& changed) {
    Matrix matched(reference.rowNumber(), 2);
    for (unsigned i = 0; i < reference.rowNumber(); ++i) {
        double best = 1.0 / zeroTolerance;
        for (unsigned j = 0; j < changed.rowNumber(); ++j) {
            double d =
                std::fabs(changed(j, 0) - reference(i, 0)) + std::fabs(changed(j, 1) - reference(i, 1));
            if (d >= best) continue;
            best = d;
            matched(i, 0) = changed(j, 0);
            matched(i, 1) = changed(j, 1);
        }
    }
    return matched;
}

}  // namespace

// Each round shows the poles of A - B2 H and asks for the wanted change of the real part of each
// pole (one field for a pair). The gradient of the poles (rows re, im of each) on the elements
// of H, row by row, gives the least change of H that makes it.
void OptimumGramian::eigGradient() {
    std::cout << "ENTER eigGradient" << std::endl;
    Blocks b = blocksOf(*system);
    H.reSize(nc, n);
    for (;;) {
        Matrix poles = computeEigenvalues(b.A - b.B2 * H);
        double normH = normTriangular(H) / (nc * 2.0 * n);
        std::cout << "normH = " << normH << "\npoles " << poles << std::endl;
        double w = 1e-4;
        printNamed(close(*system, H)->normHinfInFrequency(w), "closed Loop normhinf in eigGradient");
        ParamRequest request("Insert desired real value pole perturbation", 0);
        for (unsigned i = 0; i < n; ++i) {
            request.add((String("component ") += i).asCharPointer(), 0.0);
            if (poles(i, 1) != 0.0) ++i;
        }
        if (!askParameters(owner, request)) return;
        Matrix wanted(2 * n, 1);
        for (unsigned i = 0, field = 0; i < n; ++i, ++field) {
            wanted(2 * i, 0) = request.number(field);
            if (poles(i, 1) == 0.0) continue;
            wanted(2 * ++i, 0) = request.number(field);
        }
        double delta = (normH != 0.0 ? normH : 1.0) * -1e-4;
        Matrix gradient(2 * n, nc * n);
        for (unsigned e = 0; e < nc * n; ++e) {
            Matrix moved(H);
            moved(e / n, e % n) += delta;
            Matrix change = matchPoles(poles, computeEigenvalues(b.A - b.B2 * moved)) - poles;
            for (unsigned i = 0; i < n; ++i) {
                gradient(2 * i, e) = change(i, 0) / delta;
                gradient(2 * i + 1, e) = change(i, 1) / delta;
            }
        }
        Matrix augmented = dynop::sideBySide(gradient, wanted), work(augmented);
        if (triangle(work, nc * n, false, true, 1e-30, true) < std::min(2 * n, nc * n)) {
            work = augmented;
            triangle(work, nc * n, false, true, 1e-6, true);
        }
        for (unsigned e = 0; e < nc * n; ++e) H(e / n, e % n) += work(e, nc * n);
        std::cout << "new poles " << computeEigenvalues(b.A - b.B2 * H) << std::endl;
    }
}
