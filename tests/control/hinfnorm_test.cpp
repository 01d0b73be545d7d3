// The certified H-infinity norm against closed forms and against dense frequency sweeps of
// seeded random plants, continuous and discrete.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

const double inf = std::numeric_limits<double>::infinity();

typedef std::shared_ptr<DynOp> System;

System siso(std::initializer_list<double> a, std::initializer_list<double> b, std::initializer_list<double> c,
           double d) {
    unsigned n = unsigned(b.size());
    return std::make_shared<DynOp>(mat(n, n, a), mat(n, 1, b), mat(1, n, c), mat(1, 1, {d}));
}

// 1/(z - a)
System discreteLag(double a, double T) {
    return std::make_shared<DiscDynOp>(mat(1, 1, {a}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), T);
}

struct ClosedForm {
    const char* name;
    System system;
    double norm, omega;
};

TEST(CertifiedNormTest, ClosedForms) {
    double zeta = 1e-3, wn = 3.0;
    double T = 0.1;
    std::vector<ClosedForm> cases = {
        {"1/(s+2), peak at omega 0", siso({-2}, {1}, {1}, 0), 0.5, 0.0},
        // wn^2 / (s^2 + 2 zeta wn s + wn^2): 1 / (2 zeta sqrt(1 - zeta^2)) at wn sqrt(1 - 2 zeta^2).
        {"lightly damped", siso({0, 1, -wn * wn, -2 * zeta * wn}, {0, 1}, {wn * wn, 0}, 0),
         1 / (2 * zeta * std::sqrt(1 - zeta * zeta)), wn * std::sqrt(1 - 2 * zeta * zeta)},
        // 2 - 1/(s+1) = (2s+1)/(s+1) rises to D at infinite frequency.
        {"peak at infinity", siso({-1}, {1}, {-1}, 2), 2.0, inf},
        {"static", std::make_shared<DynOp>(mat(1, 2, {3, 4})), 5.0, 0.0},
        {"no controllable state keeps D",
         std::make_shared<DynOp>(mat(2, 2, {-1, 0, 0, -2}), Matrix(2, 1), mat(1, 2, {0, 1}), mat(1, 1, {5}), 0, 0,
                                 0, false),
         5.0, inf},
        // 1/(z - a): 1/(1 - |a|) at z = 1 for a > 0, at z = -1 (omega pi/T) for a < 0.
        {"discrete, peak at omega 0", discreteLag(0.5, T), 2.0, 0.0},
        {"discrete, peak at Nyquist", discreteLag(-0.8, T), 5.0, M_PI / T},
    };
    for (const ClosedForm& c : cases) {
        SCOPED_TRACE(c.name);
        HinfNorm h = c.system->certifiedNormHinf();
        EXPECT_NEAR(h.norm, c.norm, 1e-6 * c.norm);
        EXPECT_LE(h.lower, c.norm * (1 + 1e-12));
        EXPECT_GE(h.upper, c.norm * (1 - 1e-12));
        EXPECT_LE(h.upper - h.lower, 1e-6 * h.lower);
        if (std::isinf(c.omega))
            EXPECT_TRUE(std::isinf(h.omega));
        else if (c.omega == 0.0)
            EXPECT_EQ(h.omega, 0.0);  // the gain is flat there: the search must not wander off
        else
            EXPECT_NEAR(h.omega, c.omega, 1e-4 * (1 + c.omega));
    }
}

TEST(CertifiedNormTest, UnstableSystemsHaveAnInfiniteNorm) {
    struct Case {
        System system;
        const char* console;
    };
    std::vector<Case> cases = {
        {siso({1}, {1}, {1}, 0), "continuous"},
        {siso({0}, {1}, {1}, 0), "continuous"},  // a pole on the imaginary axis
        {discreteLag(-1, 1.0), "discrete"},
    };
    for (const Case& c : cases) {
        HinfNorm h;
        std::string console = consoleOf([&] { h = c.system->certifiedNormHinf(); });
        EXPECT_EQ(console, std::string("certified H-infinite norm: the ") + c.console +
                               " system is not stable, its H-infinite norm is infinite\n");
        EXPECT_TRUE(std::isinf(h.norm) && std::isinf(h.lower) && std::isinf(h.upper));
    }
}

// A seeded plant of lightly to well damped modes in random coordinates, with a random D.
DynOp modalPlant(unsigned n, unsigned m, unsigned p, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    Matrix A(n, n), T(n, n), B(n, m), C(p, n), D(p, m);
    for (unsigned k = 0; k < n; k += 2) {
        double w = std::pow(10.0, 2 * unit(random)), zeta = std::pow(10.0, -1.5 + 1.2 * unit(random));
        A(k, k) = -zeta * w;
        if (k + 1 == n) break;
        A(k + 1, k + 1) = -zeta * w, A(k, k + 1) = w, A(k + 1, k) = -w;
    }
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) T(i, j) = (i == j ? 2.0 : 0.0) + 0.3 * unit(random);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < m; ++j) B(i, j) = unit(random);
    for (unsigned i = 0; i < p; ++i)
        for (unsigned j = 0; j < n; ++j) C(i, j) = unit(random);
    for (unsigned i = 0; i < p; ++i)
        for (unsigned j = 0; j < m; ++j) D(i, j) = 0.1 * unit(random);
    Matrix Tinv = Algebra().inv(T);
    return DynOp(T * A * Tinv, T * B, C * Tinv, D);
}

// The largest gain on a logarithmic grid refined around every pole frequency.
double sweep(const DynOp& s, double top) {
    std::vector<double> w;
    for (double e = -3; e <= std::log10(top); e += 0.004) w.push_back(std::pow(10.0, e));
    Matrix p = s.poles();
    for (unsigned i = 0; i < p.rowNumber(); ++i) {
        double at = s.isDiscreteTime() ? std::atan2(p(i, 1), p(i, 0)) / s.samplingTimeOf() : p(i, 1);
        for (int k = -100; k <= 100; ++k) w.push_back(std::fabs(at) * (1 + k * 4e-5));
    }
    double best = 0.0;
    for (double x : w)
        if (x <= top) best = std::max(best, s.singularValueAt(x));
    return best;
}

TEST(CertifiedNormTest, RandomPlantsAgainstADenseSweep) {
    for (unsigned n : {2u, 5u, 12u, 30u})
        for (bool discrete : {false, true}) {
            SCOPED_TRACE(testing::Message() << "order " << n << (discrete ? " discrete" : " continuous"));
            DynOp plant = modalPlant(n, 2, 3, 40 + n);
            double T = 0.01;
            std::unique_ptr<DynOp> s(discrete ? new DiscDynOp(plant, false, T) : new DynOp(plant));
            HinfNorm h = s->certifiedNormHinf();
            double swept = sweep(*s, discrete ? M_PI / T : 1e3);
            EXPECT_LE(swept, h.upper * (1 + 1e-9));
            EXPECT_GE(h.norm, swept * (1 - 1e-9));
            EXPECT_LE(h.upper - h.lower, 1e-6 * h.lower);
            double attained = std::isinf(h.omega) ? CMatrix(s->getD()).maxSingularValue()
                                                  : s->singularValueAt(h.omega);
            EXPECT_NEAR(attained, h.norm, 1e-9 * h.norm);
        }
}

}  // namespace
