// The whole design (Step 1, Step 2, Final Results) on chains of masses of order 4, 10 and 20, H2
// and H-infinity (bounds three and six times the H2 norms of the two steps): time per design, with the
// norms reached as counters. Then the three H-infinity routes (the two-step gramian design, the same
// phases by the LMI "min Hinf", the Riccati central compensator) on orders 4, 10, 20 and 50: time per
// design, with the certified closed-loop norm over the Riccati optimal level as counter.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
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

// The console silenced while it lives: std::cout and the standard output the LMI solver prints on.
class Silence {
public:
    Silence() : console(std::cout.rdbuf()), silent("/dev/null") {
        std::cout.rdbuf(silent.rdbuf());
        std::fflush(stdout);
        saved = dup(1);
        int null = open("/dev/null", O_WRONLY);
        if (null >= 0) {
            dup2(null, 1);
            close(null);
        }
    }
    ~Silence() {
        std::cout.rdbuf(console);
        std::fflush(stdout);
        if (saved >= 0) {
            dup2(saved, 1);
            close(saved);
        }
    }

private:
    std::streambuf* console;
    std::ofstream silent;
    int saved;
};

// A fresh working directory for the design's files while it lives, removed with them after.
class ScratchDirectory {
public:
    ScratchDirectory() {
        char pattern[] = "/tmp/designbenchXXXXXX";
        char here[4096];
        directory = mkdtemp(pattern);
        previous = getcwd(here, sizeof here);
        entered = chdir(directory.c_str()) == 0;
    }
    ~ScratchDirectory() {
        if (entered && chdir(previous.c_str()) == 0) std::system(("rm -rf " + directory).c_str());
    }
    bool isEntered() const { return entered; }

private:
    std::string directory, previous;
    bool entered = false;
};

// Runs the three phases in the working directory with the console silenced; answers the final
// norm. The bounds of the two H-infinity steps are gamma1 and gamma2; lmiMode selects the LMI
// problem of the steps as the panel's "Minimum" does (None for the gramian iteration). The certified
// norm of the final closed loop goes to loop when given.
double designOnce(const DynOp& plant, bool hinf, double gamma1, double gamma2, double& first, double& second,
                  LmiMode lmiMode = LmiMode::None, HinfNorm* loop = nullptr) {
    Silence silence;
    Algebra().storeToFile(ExtendedSystem(plant), "plant.dyn");
    RobustControlDesign design;
    design.setModelFileName("plant.dyn");
    DesignParameters p;
    p.lmiMode = lmiMode;
    p.useH2 = !hinf;
    p.gamma = gamma1;
    p.iterations = 30;
    p.tolerance = 1e-8;
    p.phase = DesignPhase::Step1;
    p.made = GramianRole::Control;
    first = design.design(p);
    p.phase = DesignPhase::Step2;
    p.made = GramianRole::Observer;
    p.gamma = gamma2;
    second = design.design(p);
    p.phase = DesignPhase::FinalResults;
    p.made.reset();
    double final = design.design(p);
    if (loop) *loop = design.closedLoopNorm();
    return final;
}

void BM_Design(benchmark::State& state) {
    startLibrary();
    ScratchDirectory scratch;
    if (!scratch.isEntered()) return;
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
}

enum Route { gramian, lmi, riccati };

// One H-infinity design by a route: the two-step design at gamma for both steps, the same phases
// by the LMI "min Hinf", or the Riccati route as the command line runs it (its optimal level, the
// central compensator at gamma). Answers the certified norm of the closed loop, 0 when a phase
// or the route fails before giving a compensator; label says what failed, first and second take
// the norms the two steps report (0 for the Riccati route).
double routeOnce(Route route, const DynOp& plant, double gamma, std::string& label, double& first,
                 double& second) {
    first = second = 0.0;
    HinfNorm loop;
    if (route == riccati) {
        Silence silence;
        HinfRiccati design(plant);
        if (!(design.optimalGamma() <= gamma)) {
            label = "no optimal level";
            return 0.0;
        }
        loop = plant.closedLoop(design.compensator(gamma)).certifiedNormHinf();
    } else {
        std::srand(1);  // the pole placement of the start draws from std::rand
        double final = designOnce(plant, true, gamma, gamma, first, second,
                                  route == lmi ? LmiMode::MinHinf : LmiMode::None, &loop);
        if (first <= 0.0 || second <= 0.0 || final <= 0.0) {
            label = first <= 0.0 ? "step 1 failed" : second <= 0.0 ? "step 2 failed" : "final results failed";
            return 0.0;
        }
    }
    if (!std::isfinite(loop.lower)) label = "unstable loop";
    return loop.lower;
}

void BM_Route(benchmark::State& state) {
    startLibrary();
    ScratchDirectory scratch;
    if (!scratch.isEntered()) return;
    DynOp plant = massChain(unsigned(state.range(0)) / 2);
    Route route = Route(state.range(1));
    double optimum = 0.0;
    {
        Silence silence;
        optimum = HinfRiccati(plant).optimalGamma();
    }
    double norm = 0.0, first = 0.0, second = 0.0;
    std::string label;
    for (auto _ : state) norm = routeOnce(route, plant, 1.1 * optimum, label, first, second);
    state.counters["optimum"] = optimum;
    state.counters["normOverOptimum"] = norm / optimum;
    state.counters["step1OverOptimum"] = first / optimum;
    state.counters["step2OverOptimum"] = second / optimum;
    const char* names[] = {"gramian", "lmi", "riccati"};
    state.SetLabel(names[route] + (label.empty() ? "" : ": " + label));
}

}  // namespace

BENCHMARK(BM_Design)
    ->ArgNames({"order", "hinf"})
    ->ArgsProduct({{4, 10, 20}, {0, 1}})
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

BENCHMARK(BM_Route)
    ->ArgNames({"order", "route"})
    ->ArgsProduct({{4, 10, 20, 50}, {gramian, lmi, riccati}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
