// The whole design (Step 1, Step 2, Final Results) on chains of masses of order 4, 10 and 20, H2
// and H-infinity (bounds three and six times the H2 norms of the two steps): time per design, with the
// norms reached as counters.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "../benchlib.h"
#include "control/all.h"

namespace {

// k masses in a chain joined by unit springs with light damping: a force disturbance on the last
// mass and measurement noise; the control force on the first; objectives the position of the
// last mass and the weighted control, measure the position of the first.
DynOp massChain(unsigned k) {
    unsigned n = 2 * k;
    Matrix A(n, n), B(n, 3), C(3, n), D(3, 3);
    for (unsigned i = 0; i < k; ++i) {
        A(i, k + i) = 1.0;
        for (int j : {int(i) - 1, int(i) + 1}) {
            if (j < 0 || j >= int(k)) continue;
            A(k + i, i) -= 1.0;
            A(k + i, j) += 1.0;
            A(k + i, k + i) -= 0.02;
            A(k + i, k + j) += 0.02;
        }
    }
    A(k, 0) -= 0.1;  // the first mass is also tied to the ground
    B(n - 1, 0) = 1.0;
    B(k, 2) = 1.0;
    C(0, k - 1) = 1.0;
    C(2, 0) = 1.0;
    D(1, 2) = 0.1;
    D(2, 1) = 0.01;
    return DynOp(A, B, C, D, 1, 1);
}

// Runs the three phases in a scratch directory with the console silenced; answers the final norm.
// The bounds of the two H-infinity steps are gamma1 and gamma2.
double designOnce(const DynOp& plant, bool hinf, double gamma1, double gamma2, double& first,
                  double& second) {
    std::streambuf* console = std::cout.rdbuf();
    std::ofstream silent("/dev/null");
    std::cout.rdbuf(silent.rdbuf());
    Algebra().storeToFile(ExtendedSystem(plant), "plant.dyn");
    RobustControlDesign design;
    design.setModelFileName("plant.dyn");
    DesignParameters p;
    p.useH2 = !hinf;
    p.gamma = gamma1;
    p.iterations = 30;
    p.tolerance = 1e-8;
    p.choice = "Step 1";
    p.conObs = "Control";
    first = design.design(p);
    p.choice = "Step 2";
    p.conObs = "Observer";
    p.gamma = gamma2;
    second = design.design(p);
    p.choice = "Final Results";
    double final = design.design(p);
    std::cout.rdbuf(console);
    return final;
}

void BM_Design(benchmark::State& state) {
    startLibrary();
    char pattern[] = "/tmp/designbenchXXXXXX";
    std::string directory = mkdtemp(pattern);
    char here[4096];
    std::string previous = getcwd(here, sizeof here);
    if (chdir(directory.c_str()) != 0) return;
    DynOp plant = massChain(unsigned(state.range(0)) / 2);
    bool hinf = state.range(1) != 0;
    // The H-infinity bounds: three and six times the norms that the H2 design reaches in its steps.
    double first = 0.0, second = 0.0, final = 0.0;
    designOnce(plant, false, 1.0, 1.0, first, second);
    double gamma1 = 3.0 * first, gamma2 = 6.0 * second;
    for (auto _ : state) final = designOnce(plant, hinf, gamma1, gamma2, first, second);
    state.counters["step1"] = first;
    state.counters["step2"] = second;
    state.counters["closedLoopHinf"] = final;
    state.counters["gamma1"] = hinf ? gamma1 : 0.0;
    if (chdir(previous.c_str()) != 0) return;
    std::system(("rm -rf " + directory).c_str());
}

}  // namespace

BENCHMARK(BM_Design)
    ->ArgNames({"order", "hinf"})
    ->ArgsProduct({{4, 10, 20}, {0, 1}})
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
