// Time and frequency responses against the closed forms of first- and second-order systems.
#include <gtest/gtest.h>

#include <functional>

#include "../quill/testutil.h"
#include "ctltest.h"

namespace {

// 1/(s + 1).
DynOp firstOrder() { return DynOp(mat(1, 1, {-1}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0)); }

void expectColumn(const Response& r, unsigned j, double tolerance, const std::function<double(double)>& f) {
    for (unsigned k = 0; k < r.abscissa.size(); ++k)
        EXPECT_NEAR(r.values(k, j), f(r.abscissa[k]), tolerance) << "at " << r.abscissa[k];
}

int raisedCode(const std::function<void()>& f) {
    int code = 0;
    raisedText(f, &code);
    return code;
}

}  // namespace

TEST(ResponseTest, FirstOrderStepAndImpulseAreExactAtTheSamples) {
    Simulator sim(firstOrder(), 0.01);
    expectColumn(sim.stepResponse(0, 500), 0, 1e-13, [](double t) { return 1.0 - std::exp(-t); });
    expectColumn(sim.impulseResponse(0, 500), 0, 1e-13, [](double t) { return std::exp(-t); });
}

TEST(ResponseTest, DiscretePoleFreeResponseRunsAtItsSamplingTime) {
    DiscDynOp s(mat(1, 1, {0.8}), mat(1, 1, {1}), mat(1, 1, {2}), Matrix(0, 0), 0.5);
    Response r = Simulator(s, 9.0).freeResponse(Vector(1, 3.0), 30);
    expectColumn(r, 0, 1e-13, [](double t) { return 2.0 * std::pow(0.8, t / 0.5) * 3.0; });
}

// (0.7 z^2 + 0.3 z + 0.2) / (z^2 - 1.2 z + 0.5) in controllable form, against its recursion.
TEST(ResponseTest, DiscreteSecondOrderFollowsItsDifferenceEquation) {
    DiscDynOp s(mat(2, 2, {0, 1, -0.5, 1.2}), mat(2, 1, {0, 1}), mat(1, 2, {-0.15, 1.14}), mat(1, 1, {0.7}),
                0.1);
    auto recursion = [](std::vector<double> u) {  // u starts with two instants of zero history
        std::vector<double> y(u.size());
        for (size_t k = 2; k < u.size(); ++k)
            y[k] = 1.2 * y[k - 1] - 0.5 * y[k - 2] + 0.7 * u[k] + 0.3 * u[k - 1] + 0.2 * u[k - 2];
        return y;
    };
    std::vector<double> step(63, 1.0), pulse(63, 0.0);
    step[0] = step[1] = 0.0;
    pulse[2] = 1.0;
    std::vector<double> ys = recursion(step), yp = recursion(pulse);
    Simulator sim(s, 0.0);
    Response rs = sim.stepResponse(0, 60), rp = sim.impulseResponse(0, 60);
    for (unsigned k = 0; k <= 60; ++k) {
        EXPECT_NEAR(rs.values(k, 0), ys[k + 2], 1e-12) << k;
        EXPECT_NEAR(rp.values(k, 0), yp[k + 2], 1e-12) << k;
    }
}

TEST(ResponseTest, NoiseIsReproducibleWithTheVarianceOfTheGain) {
    Simulator sim(DynOp(mat(1, 2, {5.0, 3.0})), 0.1);
    Response a = sim.noiseResponse(1, 0.5, 42, 40000);
    EXPECT_TRUE(a.values.isEqual(sim.noiseResponse(1, 0.5, 42, 40000).values));
    EXPECT_FALSE(a.values.isEqual(sim.noiseResponse(1, 0.5, 43, 40000).values));
    double sum = 0.0, squares = 0.0, count = a.abscissa.size();
    for (unsigned k = 0; k < count; ++k) {
        sum += a.values(k, 0);
        squares += a.values(k, 0) * a.values(k, 0);
    }
    EXPECT_NEAR(sum / count, 0.0, 0.05);
    EXPECT_NEAR(squares / count - (sum / count) * (sum / count), 9.0 * 0.25, 0.1);
}

TEST(ResponseTest, OneOutputPureGainsAndRefusals) {
    DynOp two = lag(-2.0, 2, 1), pure(mat(2, 1, {2.0, -1.0}));
    Response all = Simulator(two, 0.05).stepResponse(0, 20),
             second = Simulator(two, 0.05, 1).stepResponse(0, 20);
    ASSERT_EQ(second.values.columnNumber(), 1u);
    EXPECT_TRUE(second.values.isEqual(all.values.subMatrix(0, 1, 21, 1)));
    expectColumn(Simulator(pure, 0.1).stepResponse(0, 5), 1, 0.0, [](double) { return -1.0; });
    EXPECT_EQ(raisedCode([&] { Simulator(pure, 0.1).stepResponse(1, 5); }), INDEXRANGE);
    EXPECT_EQ(raisedCode([&] { Simulator(DynOp(), 0.1); }), INDEXRANGE);
    EXPECT_EQ(raisedCode([&] { Simulator(two, 0.1).freeResponse(Vector(2), 5); }), DIFFMTRXDIM);
    EXPECT_EQ(raisedCode([&] { singularValuePlot(DynOp(), 1.0, 2.0, 3); }), INDEXRANGE);
}

TEST(ResponseTest, SingularValuesOfFirstOrderSystemsInDecibels) {
    Response r = singularValuePlot(firstOrder(), 0.01, 100.0, 41);
    EXPECT_NEAR(r.abscissa[20u], 1.0, 1e-14);
    EXPECT_NEAR(r.abscissa[40u], 100.0, 1e-12);
    expectColumn(r, 0, 1e-12, [](double w) { return -10.0 * std::log10(1.0 + w * w); });
    // diag(1/(s + 1), 2/(s + 2)): the second channel is the larger at every frequency.
    DynOp pair(mat(2, 2, {-1, 0, 0, -2}), mat(2, 2, {1, 0, 0, 2}), Matrix::diagonal(2, 1.0), Matrix(0, 0));
    Response both = singularValuePlot(pair, 0.1, 10.0, 9, true);
    expectColumn(both, 0, 1e-12, [](double w) { return -10.0 * std::log10(1.0 + w * w / 4.0); });
    expectColumn(both, 1, 1e-12, [](double w) { return -10.0 * std::log10(1.0 + w * w); });
}

// 1/(z - 0.5) sampled at 0.1 s: |G|^2 = 1 / (1.25 - cos(w T)), and pi / T = 31.4159 rad/s.
TEST(ResponseTest, DiscreteFrequencyPlotWarnsPastHalfTheSampling) {
    DiscDynOp s(mat(1, 1, {0.5}), mat(1, 1, {1}), mat(1, 1, {1}), Matrix(0, 0), 0.1);
    Response r;
    EXPECT_EQ(consoleOf([&] { r = singularValuePlot(s, 0.1, 31.0, 7); }), "");
    expectColumn(r, 0, 1e-12, [](double w) { return -10.0 * std::log10(1.25 - std::cos(0.1 * w)); });
    EXPECT_EQ(consoleOf([&] { singularValuePlot(s, 0.1, 40.0, 7); }),
              "Warning: the final frequency range exceeds the half sampling period of 31.4159 change "
              "eventually the range\n");
}
