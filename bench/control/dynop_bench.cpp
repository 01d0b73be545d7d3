// The analysis of systems at orders 10, 50 and 100: H2 and H-infinity norms, pole placement,
// zero-order-hold discretisation and balanced truncation, time per call; the certified
// H-infinity norm at orders 4, 10, 20 and 50.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../benchlib.h"
#include "control/all.h"

namespace {

// A reproducible stable system with two inputs and two outputs: a random matrix shifted left.
DynOp benchSystem(unsigned n) {
    startLibrary();
    std::srand(3);
    auto value = [] { return double(std::rand()) / RAND_MAX - 0.5; };
    Matrix A(n, n), B(n, 2), C(2, n);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) A(i, j) = value();
    for (unsigned i = 0; i < n; ++i) A(i, i) -= 0.4 * n + 1.0;
    for (unsigned i = 0; i < n; ++i)
        B(i, 0) = value(), B(i, 1) = value(), C(0, i) = value(), C(1, i) = value();
    return DynOp(A, B, C, Matrix(0, 0));
}

void BM_NormH2(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(s.normH2());
}

void BM_NormHinf(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(s.normHinf());
}

void BM_NormHinfInFrequency(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) {
        double w = 1e-4;
        benchmark::DoNotOptimize(s.normHinfInFrequency(w));
    }
}

void BM_CertifiedNormHinf(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(s.certifiedNormHinf().norm);
}

void BM_CertifiedNormHinfDiscrete(benchmark::State& state) {
    DiscDynOp s(benchSystem(unsigned(state.range(0))), false, 0.01);
    for (auto _ : state) benchmark::DoNotOptimize(s.certifiedNormHinf().norm);
}

void BM_Place(benchmark::State& state) {
    unsigned n = unsigned(state.range(0));
    DynOp s = benchSystem(n);
    Matrix poles(n, 2);
    for (unsigned i = 0; i < n; ++i) poles(i, 0) = -1.0 - i;
    for (auto _ : state) benchmark::DoNotOptimize(s.place(poles).elements());
}

void BM_Discretize(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(DiscDynOp(s, false, 0.01).getA().elements());
}

void BM_BalancedRealization(benchmark::State& state) {
    DynOp s = benchSystem(unsigned(state.range(0)));
    for (auto _ : state) {
        DynOp reduced(s);
        benchmark::DoNotOptimize(reduced.balancedRealization(1e-6).elements());
    }
}

}  // namespace

BENCHMARK(BM_NormH2)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NormHinf)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NormHinfInFrequency)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CertifiedNormHinf)->Arg(4)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CertifiedNormHinfDiscrete)->Arg(4)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Place)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Discretize)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BalancedRealization)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);
