// DynOp pole placement: the gain K that gives A - B K the desired poles.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "control/dynop.h"
#include "control/schurgain.h"
#include "quill/intarray.h"

namespace {

// The real block-diagonal matrix with the desired poles in Schur form: p for a real pole, [re im;
// -im re] for the pair re +- j im standing on two rows.
Matrix targetOf(const Matrix& poles, unsigned n, const Matrix& owner) {
    if (poles.rowNumber() != n || poles.columnNumber() < 2)
        owner.dimensionError("place", poles.rowNumber(), 2);
    Matrix P(n, n);
    for (unsigned i = 0; i < n; ++i) {
        double re = poles(i, 0), im = poles(i, 1);
        if (im == 0.0 || i + 1 == n) {
            P(i, i) = re;
            continue;
        }
        P(i, i) = P(i + 1, i + 1) = re;
        P(i, i + 1) = std::fabs(im);
        P(i + 1, i) = -std::fabs(im);
        ++i;
    }
    return P;
}

// m x n values of the C library's generator times 0.0001, each row scaled to unit norm.
Matrix randomRows(unsigned m, unsigned n) {
    Matrix G(m, n);
    for (unsigned i = 0; i < m; ++i) {
        double norm = 0.0;
        for (unsigned j = 0; j < n; ++j) {
            G(i, j) = std::rand() * 0.0001;
            norm += G(i, j) * G(i, j);
        }
        norm = std::sqrt(norm);
        for (unsigned j = 0; j < n && norm > 0.0; ++j) G(i, j) /= norm;
    }
    return G;
}

// Whether some eigenvalue of the Schur form T lies on a desired pole, an eigenvalue of P: the
// Sylvester equation is then singular.
bool meetsTarget(const Matrix& T, const Matrix& P, double scale) {
    std::vector<std::complex<double>> target = schurEigenvalues(P);
    for (std::complex<double> own : schurEigenvalues(T))
        for (std::complex<double> p : target)
            if (std::norm(own - p) < 1e-16 * scale * scale) return true;  // squared distances: no roots
    return false;
}

// X with A X - X P = F for P in Schur form and A = Q T Q' in real Schur form.
Matrix sylvester(const Matrix& Q, const Matrix& T, const Matrix& P, const Matrix& F) {
    Matrix Y = Q.transpose() * F;
    lapackTriangularSylvester(false, false, -1, int(T.rowNumber()), int(P.rowNumber()), T.elements(),
                              P.elements(), Y.elements());
    return Q * Y;
}

// The desired poles as targetOf reads them: a pair from its first row and its conjugate.
std::vector<std::complex<double>> askedPoles(const Matrix& poles) {
    std::vector<std::complex<double>> asked;
    for (unsigned i = 0; i < poles.rowNumber(); ++i) {
        double re = poles(i, 0), im = poles(i, 1);
        bool pair = im != 0.0 && i + 1 < poles.rowNumber();
        asked.emplace_back(re, pair ? im : 0.0);
        if (pair) asked.emplace_back(re, -im), ++i;
    }
    return asked;
}

// Ackermann's formula K = e_n' phi(H) / (beta h21 ... hn,n-1) for one input in controller
// Hessenberg form (H, beta e1), where the controllability matrix is triangular. No equation is
// solved, so repeated poles are no harder than distinct ones; each factor of phi is divided by one
// of the divisors as it is applied, to keep the row in range.
Matrix hessenbergGain(const Matrix& H, double beta, const Matrix& poles) {
    unsigned n = H.rowNumber(), used = 0;
    Matrix row(1, n);
    row(0, n - 1) = 1.0;
    auto divisor = [&] {
        double d = used == 0 ? beta : H(used, used - 1);
        ++used;
        return d;
    };
    for (std::complex<double> p : askedPoles(poles)) {
        if (p.imag() < 0.0) continue;  // the quadratic factor of its pair stands for it
        Matrix factor = H - Matrix::diagonal(n, p.real());
        if (p.imag() > 0.0) factor = (factor * factor + Matrix::diagonal(n, p.imag() * p.imag())) / divisor();
        row = row * factor / divisor();
    }
    return row;
}

// The gain from the Sylvester equation A X - X P = b G with a random G: A - b G X^-1 is similar
// to P. When an eigenvalue of A sits on a desired pole, a random preliminary feedback moves A's
// eigenvalues first.
Matrix sylvesterGain(Algebra& alg, const Matrix& A, const Matrix& b, const Matrix& P) {
    unsigned n = A.rowNumber();
    Matrix K0(b.columnNumber(), n), T(A);
    Matrix Q = alg.schur(T);
    if (meetsTarget(T, P, 1.0 + alg.normF(A))) {
        K0 = randomRows(b.columnNumber(), n) * (alg.normF(A) + 1.0) / (alg.normF(b) + 1.0);
        T = A - b * K0;
        Q = alg.schur(T);
    }
    Matrix G = randomRows(b.columnNumber(), n);
    Matrix X = sylvester(Q, T, P, b * G);
    return K0 + alg.solve(X.transpose(), G.transpose()).transpose();
}

// A pole of multiplicity k moves by about the k-th root of a perturbation of the loop, and a single
// input's loop can be sensitive: the tolerance catches a missed pole, not rounding.
const double reachTolerance = 1e-3;

// The distance from p to the nearest of the poles, which is taken out of them.
double takeNearest(std::vector<std::complex<double>>& poles, std::complex<double> p) {
    auto nearest = std::min_element(
        poles.begin(), poles.end(),
        [p](std::complex<double> a, std::complex<double> b) { return std::norm(a - p) < std::norm(b - p); });
    if (nearest == poles.end()) return HUGE_VAL;
    double distance = std::abs(*nearest - p);
    poles.erase(nearest);
    return distance;
}

// Pairs each desired pole with the nearest closed-loop pole not yet taken and warns when one lies
// further than the tolerance, relative to the pole's size, allows for its multiplicity.
void warnOnMiss(Algebra& alg, const Matrix& closedLoop, const Matrix& desiredPoles) {
    std::vector<std::complex<double>> asked = askedPoles(desiredPoles), reached;
    Matrix values = alg.computeEigenvalues(closedLoop);
    for (unsigned i = 0; i < values.rowNumber(); ++i) reached.emplace_back(values(i, 0), values(i, 1));
    double worst = 0.0;
    bool missed = false;
    for (std::complex<double> p : asked) {
        double scale = std::max(1.0, std::abs(p)), distance = takeNearest(reached, p);
        auto multiplicity = std::count_if(asked.begin(), asked.end(), [&](std::complex<double> o) {
            return std::norm(o - p) <= reachTolerance * reachTolerance * scale * scale;
        });
        worst = std::max(worst, distance / scale);
        missed = missed || distance > std::pow(reachTolerance, 1.0 / double(multiplicity)) * scale;
    }
    if (missed)
        std::cout << "Warning, the placed poles miss the desired ones, relative distance up to " << worst
                  << std::endl;
}

}  // namespace

// The controllable order comes from the staircase form, which for one input is the controller
// Hessenberg form that Ackermann's formula needs; several inputs go through the Sylvester
// equation. A warning follows when the closed-loop poles miss the desired ones.
Matrix DynOp::place(const Matrix& desiredPoles, const IntArray* columns, bool singleInput) const {
    Algebra& alg = numerics();
    unsigned n = order();
    Matrix b = dynop::columnsOf(stateB(), columns);
    Matrix q(b.columnNumber(), 1);
    for (unsigned i = 0; i < q.rowNumber(); ++i) q(i, 0) = 1.0 / q.rowNumber();
    if (singleInput) b = b * q;
    Matrix a(stateA()), bs(b);
    IntArray indices(0);
    Matrix T = alg.staircase(a, bs, indices, zeroTolerance);
    unsigned controllable = 0;
    for (unsigned i = 0; i < indices.size(); ++i) controllable += unsigned(indices[int(i)]);
    if (n == 0 || controllable < n) {
        std::cout << "system not completely controllable,"
                  << "\n"
                  << "controllable part has order = " << controllable << std::endl;
        return Matrix();
    }
    Matrix P = targetOf(desiredPoles, n, A);
    Matrix K =
        b.columnNumber() == 1 ? hessenbergGain(a, bs(0, 0), desiredPoles) * T : sylvesterGain(alg, A, b, P);
    warnOnMiss(alg, A - b * K, desiredPoles);
    return singleInput ? q * K : K;
}
