// Schur form, singular values, inverse, linear solve and the Lyapunov solvers at growing
// orders, with their relative residuals.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../benchlib.h"
#include "algebra/all.h"

namespace {

// A reproducible general matrix with a dominant diagonal, so that it is well conditioned.
Matrix benchMatrix(unsigned n) {
    Matrix m(n, n);
    srand(11);
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) m(i, j) = double(rand()) / RAND_MAX - 0.5;
    for (unsigned i = 0; i < n; ++i) m(i, i) += 0.5 * n;
    return m;
}

void BM_Schur(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n), T(A), Q(0, 0);
    for (auto _ : state) {
        T = A;
        Q = alg.schur(T, false);
        benchmark::DoNotOptimize(T.elements());
    }
    state.counters["residual"] = alg.normF(Q * T * Q.transpose() - A) / alg.normF(A);
}

void BM_Svd(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n), W(A), U(0, 0), VT(0, 0);
    Vector s(n);
    for (auto _ : state) {
        W = A;
        s = alg.svd(W, U, VT, true);
        benchmark::DoNotOptimize(s.elements());
    }
    Matrix S = Matrix::diagonal(s);
    state.counters["residual"] = alg.normF(U * S * VT - A) / alg.normF(A);
}

void BM_Inv(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n), X(0, 0);
    for (auto _ : state) {
        X = alg.inv(A);
        benchmark::DoNotOptimize(X.elements());
    }
    state.counters["residual"] =
        alg.normF(A * X - Matrix::diagonal(n, 1.0)) / alg.normF(Matrix::diagonal(n, 1.0));
}

void BM_Solve(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n), B(n, 1), X(0, 0);
    for (unsigned i = 0; i < n; ++i) B(i, 0) = 1.0 + i;
    for (auto _ : state) {
        X = alg.solve(A, B);
        benchmark::DoNotOptimize(X.elements());
    }
    state.counters["residual"] = alg.normF(A * X - B) / alg.normF(B);
}

// The output matrix of the Lyapunov benchmarks: one row of ones.
Matrix onesRow(unsigned n) {
    Matrix L(1, n);
    for (unsigned j = 0; j < n; ++j) L(0, j) = 1.0;
    return L;
}

// A'P + PA + L'L = 0, P = R'R, for -benchMatrix(n) scaled to poles around -1: the
// iteration contracts by the largest |(1 + p) / (1 - p)| over the poles p, so its count
// grows with the spread of the poles.
void BM_Lyap(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n) * (-2.0 / n), L = onesRow(n), R(0, 0);
    for (auto _ : state) {
        R = L;
        alg.lyap(A, R);
        benchmark::DoNotOptimize(R.elements());
    }
    Matrix P = R.transpose() * R, Q = L.transpose() * L;
    state.counters["residual"] = alg.normF(A.transpose() * P + P * A + Q) / alg.normF(Q);
}

// P = A'PA + L'L for benchMatrix(n) scaled inside the unit circle.
void BM_Lyapd(benchmark::State& state) {
    startLibrary();
    unsigned n = unsigned(state.range(0));
    Algebra alg;
    Matrix A = benchMatrix(n) * (1.0 / (1.5 * n)), L = onesRow(n), R(0, 0);
    for (auto _ : state) {
        R = L;
        alg.lyapd(A, R);
        benchmark::DoNotOptimize(R.elements());
    }
    Matrix P = R.transpose() * R, Q = L.transpose() * L;
    state.counters["residual"] = alg.normF(A.transpose() * P * A - P + Q) / alg.normF(Q);
}

}  // namespace

BENCHMARK(BM_Lyap)->Arg(10)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Lyapd)->Arg(10)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Schur)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Svd)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Inv)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Solve)->Arg(10)->Arg(50)->Arg(200);
