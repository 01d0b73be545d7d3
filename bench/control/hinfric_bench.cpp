// The Riccati route's optimal H-infinity level on random plants of orders 4, 10, 20 and 50:
// time per call.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../benchlib.h"
#include "control/all.h"

namespace {

// A reproducible stable plant with two disturbances, one control, two objectives (the last
// weighting the control) and one measure with its own noise.
DynOp benchPlant(unsigned n) {
    startLibrary();
    std::srand(5);
    auto value = [] { return double(std::rand()) / RAND_MAX - 0.5; };
    Matrix A(n, n), B(n, 3), C(3, n), D(3, 3);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) A(i, j) = value();
    for (unsigned i = 0; i < n; ++i) A(i, i) -= 0.4 * n + 1.0;
    for (unsigned i = 0; i < n; ++i)
        B(i, 0) = value(), B(i, 2) = value(), C(0, i) = value(), C(2, i) = value();
    D(1, 2) = 1.0, D(2, 1) = 1.0;
    return DynOp(A, B, C, D, 1, 1, 0, false);
}

void BM_RiccatiOptimalGamma(benchmark::State& state) {
    DynOp plant = benchPlant(unsigned(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(HinfRiccati(plant).optimalGamma());
}

}  // namespace

BENCHMARK(BM_RiccatiOptimalGamma)->Arg(4)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMillisecond);
