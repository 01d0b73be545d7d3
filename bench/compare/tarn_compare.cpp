// Side-by-side timing of the analysis kernels: writes seeded random stable systems as text (two
// inputs, two outputs, orders 10 to 200, continuous and discrete), times Tarn's kernels on them and
// prints one line per kernel and order: kernel, order, seconds per call, residual.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <functional>
#include <random>
#include <string>

#include "../benchlib.h"
#include "control/all.h"

namespace {

const unsigned orders[] = {10, 50, 100, 200};
const double samplingTime = 0.1;

struct Plant {
    Matrix A, B, C, D;
};

Matrix randomMatrix(std::mt19937& gen, unsigned rows, unsigned cols) {
    std::normal_distribution<double> normal;
    Matrix M(rows, cols);
    for (unsigned k = 0; k < M.elementCount(); ++k) M.elements()[k] = normal(gen);
    return M;
}

// A random matrix, no feed-through, moved left of the axis (continuous) or scaled inside the unit circle
// (discrete).
Plant randomPlant(unsigned n, bool discrete) {
    std::mt19937 gen(1000 + n + (discrete ? 1 : 0));
    Algebra alg;
    Matrix A = randomMatrix(gen, n, n) / std::sqrt(double(n));
    Matrix p = alg.computeEigenvalues(A);
    double abscissa = -HUGE_VAL, radius = 0.0;
    for (unsigned i = 0; i < n; ++i) {
        abscissa = std::max(abscissa, p(i, 0));
        radius = std::max(radius, std::hypot(p(i, 0), p(i, 1)));
    }
    if (discrete)
        A = A * (0.95 / radius);
    else
        A = A - Matrix::diagonal(n, abscissa + 0.2);
    return {A, randomMatrix(gen, n, 2), randomMatrix(gen, 2, n), Matrix(2, 2)};
}

void writeMatrix(const Matrix& M, const std::string& name) {
    FILE* f = std::fopen(name.c_str(), "w");
    for (unsigned i = 0; i < M.rowNumber(); ++i) {
        for (unsigned j = 0; j < M.columnNumber(); ++j) std::fprintf(f, "%.17g ", M(i, j));
        std::fprintf(f, "\n");
    }
    std::fclose(f);
}

void writePlant(const Plant& p, const std::string& stem) {
    writeMatrix(p.A, stem + "_A.txt");
    writeMatrix(p.B, stem + "_B.txt");
    writeMatrix(p.C, stem + "_C.txt");
    writeMatrix(p.D, stem + "_D.txt");
}

// Seconds per call, taken before the residual is read: the least of repeated runs, repeated until 0.5 s have
// passed (at least 3).
double timeOf(const std::function<void()>& run) {
    using clock = std::chrono::steady_clock;
    double best = HUGE_VAL, total = 0.0;
    for (int k = 0; k < 3 || (total < 0.5 && k < 200); ++k) {
        auto start = clock::now();
        run();
        double t = std::chrono::duration<double>(clock::now() - start).count();
        best = std::min(best, t);
        total += t;
    }
    return best;
}

double frob(const Matrix& M) { return Algebra().normF(M); }

// Relative residuals of A P + P A' + Q = 0 and A P A' - P + Q = 0.
double lyapResidual(const Matrix& A, const Matrix& P, const Matrix& Q) {
    return frob(A * P + P * A.transpose() + Q) / (2.0 * frob(A) * frob(P) + frob(Q));
}

double steinResidual(const Matrix& A, const Matrix& P, const Matrix& Q) {
    double a = frob(A);
    return frob(A * P * A.transpose() - P + Q) / (a * a * frob(P) + frob(P) + frob(Q));
}

void report(const char* kernel, unsigned n, double seconds, double residual) {
    std::printf("%s %u %.6g %.3g\n", kernel, n, seconds, residual);
    std::fflush(stdout);
}

// The largest distance from a desired pole to the nearest closed-loop pole, relative to its size.
double placeResidual(const Matrix& closed, const Matrix& desired) {
    Matrix reached = Algebra().computeEigenvalues(closed);
    double worst = 0.0;
    for (unsigned i = 0; i < desired.rowNumber(); ++i) {
        std::complex<double> p(desired(i, 0), desired(i, 1)), nearest = HUGE_VAL;
        for (unsigned j = 0; j < reached.rowNumber(); ++j) {
            std::complex<double> r(reached(j, 0), reached(j, 1));
            if (std::abs(r - p) < std::abs(nearest - p)) nearest = r;
        }
        worst = std::max(worst, std::abs(nearest - p) / std::max(1.0, std::abs(p)));
    }
    return worst;
}

// The exponential at T against the square of the one at T / 2, on [A B].
double holdResidual(const Matrix& A, const Matrix& B) {
    Matrix Ad, Bd, Ah, Bh;
    discretize(A, B, samplingTime, Ad, Bd);
    discretize(A, B, samplingTime / 2.0, Ah, Bh);
    return (frob(Ad - Ah * Ah) + frob(Bd - Ah * Bh - Bh)) / (frob(Ad) + frob(Bd));
}

// How far the gain at the reported peak frequency is from the reported norm.
double peakResidual(const DynOp& s, const HinfNorm& h) {
    return std::fabs(h.norm - s.singularValueAt(h.omega)) / h.norm;
}

void continuousKernels(unsigned n) {
    double seconds;
    Plant p = randomPlant(n, false);
    writePlant(p, "c" + std::to_string(n));
    DynOp s(p.A, p.B, p.C, p.D);
    Matrix P, Q, K, Ad, Bd;
    seconds = timeOf([&] { P = s.contrGramian(); });
    report("lyap", n, seconds, lyapResidual(p.A, P, p.B * p.B.transpose()));
    seconds = timeOf([&] { Q = s.obsGramian(); });
    report("gram", n, seconds, lyapResidual(p.A.transpose(), Q, p.C.transpose() * p.C));
    double h2 = 0.0;
    seconds = timeOf([&] { h2 = s.normH2(); });
    report("h2", n, seconds, std::fabs(h2 - std::sqrt(Algebra().trace(p.C * P * p.C.transpose()))) / h2);
    seconds = timeOf([&] { discretize(p.A, p.B, samplingTime, Ad, Bd); });
    report("c2d", n, seconds, holdResidual(p.A, p.B));
    DynOp balanced;
    Matrix sigma;
    seconds = timeOf([&] {
        balanced = s;
        sigma = balanced.balancedRealization(1e-12);
    });
    unsigned kept = balanced.order();
    sigma = sigma.subMatrix(0, 0, int(kept), int(kept));
    report(
        "balreal", n, seconds,
        std::max(frob(balanced.contrGramian() - sigma), frob(balanced.obsGramian() - sigma)) / frob(sigma));
    Matrix desired = Algebra().computeEigenvalues(p.A);
    for (unsigned i = 0; i < n; ++i) desired(i, 0) -= 0.5;
    seconds = timeOf([&] { K = s.place(desired); });
    report("place", n, seconds, placeResidual(p.A - p.B * K, desired));
    HinfNorm h;
    seconds = timeOf([&] { h = s.certifiedNormHinf(); });
    report("hinf", n, seconds, peakResidual(s, h));
}

void discreteKernels(unsigned n) {
    double seconds;
    Plant p = randomPlant(n, true);
    writePlant(p, "d" + std::to_string(n));
    DiscDynOp s(p.A, p.B, p.C, p.D, samplingTime);
    Matrix P;
    seconds = timeOf([&] { P = s.contrGramian(); });
    report("dlyap", n, seconds, steinResidual(p.A, P, p.B * p.B.transpose()));
    double h2 = 0.0;
    seconds = timeOf([&] { h2 = s.normH2(); });
    report("dh2", n, seconds, std::fabs(h2 - std::sqrt(Algebra().trace(p.C * P * p.C.transpose()))) / h2);
    HinfNorm h;
    seconds = timeOf([&] { h = s.certifiedNormHinf(); });
    report("dhinf", n, seconds, peakResidual(s, h));
}

}  // namespace

// Run in the folder that is to receive the systems.
int main() {
    startLibrary();
    for (unsigned n : orders) {
        continuousKernels(n);
        discreteKernels(n);
    }
    return 0;
}
