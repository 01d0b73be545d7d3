// Schur form, singular values, inverse and linear solve at growing orders, with their relative residuals.
#include "algebra/all.h"
#include "quill/startup.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

void startLibrary() {
    static bool started = false;
    if (started) return;
    started = true;
    static char name[] = "algebra_bench";
    static char* argv[] = {name, 0};
    quillStart(1, argv, 0);
}

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
    state.counters["residual"] = alg.normF(A * X - Matrix::diagonal(n, 1.0)) / alg.normF(Matrix::diagonal(n, 1.0));
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

}  // namespace

BENCHMARK(BM_Schur)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Svd)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Inv)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Solve)->Arg(10)->Arg(50)->Arg(200);
