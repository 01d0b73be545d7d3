// The model of generated block diagrams: chains of first-order blocks in which every fifth block
// feeds back through a sum to the start of its group, from one input to one output.
#include <benchmark/benchmark.h>

#include <iostream>
#include <sstream>
#include <string>

#include "model/diagmake.h"

namespace {

void chainWithLoops(DiagramMaker& d, int blocks) {
    ModelNode* last = &d.input("r", 1, 1, 1);
    ModelNode* groupStart = 0;
    for (int i = 0; i < blocks; ++i) {
        int x = 5 + (i % 10) * 14, y = 5 + (i / 10) * 4;
        if (i % 5 == 0) {
            SumIcon& s = d.sum(("s" + std::to_string(i)).c_str(), x, y + 2);
            d.link(*last, s);
            last = groupStart = &s;
        }
        DynOp g(Matrix::diagonal(1, -1.0 - 0.01 * i), Matrix::diagonal(1, 1.0), Matrix::diagonal(1, 1.0),
                Matrix::diagonal(1, 0.0));
        BlockIcon& b = d.block(("G" + std::to_string(i)).c_str(), g, x + 3, y);
        d.link(*last, b);
        last = &b;
        if (i % 5 == 4) d.link(b, *groupStart, "-");
    }
    d.link(*last, d.output("y", 140, 100));
}

void BM_BuildSystem(benchmark::State& state) {
    DiagramMaker d;
    chainWithLoops(d, int(state.range(0)));
    std::ostringstream quiet;
    std::streambuf* old = std::cerr.rdbuf(quiet.rdbuf());
    for (auto _ : state) {
        d.semantic().checkConsistency(false);
        benchmark::DoNotOptimize(d.semantic().buildSystem(false, false));
    }
    std::cerr.rdbuf(old);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_BuildSystem)->Arg(50)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
