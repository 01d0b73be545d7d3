// The sweep of an uncertain plant: one uncertain mass on a spring under velocity feedback, whose
// worst case is known in closed form, an unstable loop, and the faults of the parameter file.
#include "control/sweep.h"

#include <fstream>

#include "ctltest.h"

namespace {

class SweepTest : public ScratchTest {
protected:
    // m x'' + c x' + x = w + u with a = 1/m in [0.5, 2]; objective x, measure x'; the
    // compensator u = -kd x'.
    DynOp plant() const {
        Matrix A = mat(2, 2, {0, 1, -1, -0.1}), B = mat(2, 2, {0, 0, 1, 1}), C = mat(2, 2, {1, 0, 0, 1});
        return DynOp(A, B, C, Matrix(2, 2), 1, 1);
    }
    std::string write(const std::string& text) const {
        std::ofstream("params.txt") << text;
        return "params.txt";
    }
    const std::string massFile =
        "parameter a 2 0.5   # bounds swapped\nA 2 1 -a\nA 2 2 -0.1 * a\n"
        "B 2 1 a\nB 2 2 a\n";
};

// The closed loop 1/(m s^2 + (c + kd) s + 1) peaks at 1/(2 z sqrt(1 - z^2)), z = (c + kd)/(2 sqrt(m)),
// at omega = sqrt(1 - 2 z^2)/sqrt(m): the heaviest mass, a = 0.5, is the worst case.
TEST_F(SweepTest, WorstCaseOfOneUncertainMassIsTheClosedForm) {
    UncertainModel model;
    std::string error;
    ASSERT_TRUE(UncertainModel::read(write(massFile).c_str(), plant(), model, error)) << error;
    EXPECT_EQ(model.parameters()[0].lowBound(), 0.5f);
    SweepReport r;
    ASSERT_TRUE(sweepModel(model, DynOp(mat(1, 1, {0.1})), SweepOptions{5, 20}, r, error)) << error;
    double m = 2.0, z = 0.2 / (2.0 * std::sqrt(m));
    EXPECT_EQ(r.gridCount, 5u);
    EXPECT_EQ(r.randomCount, 20u);
    EXPECT_EQ(r.unstable, 0u);
    EXPECT_EQ(r.worst.values[0], 0.5);
    EXPECT_NEAR(r.worst.norm.norm, 1.0 / (2 * z * std::sqrt(1 - z * z)), 1e-5);
    EXPECT_NEAR(r.worst.norm.omega, std::sqrt(1 - 2 * z * z) / std::sqrt(m), 1e-3);

    // Negative velocity feedback beyond the damping: every sample unstable, and said so.
    ASSERT_TRUE(sweepModel(model, DynOp(mat(1, 1, {-0.3})), SweepOptions{3, 2}, r, error));
    EXPECT_EQ(r.unstable, 5u);
    std::ostringstream os;
    printSweep(os, r);
    EXPECT_NE(os.str().find("5 of 5 closed loops are unstable, the first at a = 0.5"), std::string::npos)
        << os.str();
}

TEST_F(SweepTest, FaultsOfTheParameterFileNameTheirLine) {
    const struct {
        std::string text, message;
    } cases[] = {
        {"", "params.txt: no uncertain parameter is declared"},
        {"parameter a 1\n", "params.txt:1: a parameter needs a name and its two bounds"},
        {"parameter a 1 2\nparameter a 0 1\n", "params.txt:2: the parameter a is declared twice"},
        {"parameter a 1 2\nE 1 1 a\n", "params.txt:2: \"E\" is neither parameter nor a matrix A, B, C or D"},
        {"parameter a 1 2\n\n# the entry\nA 3 1 a\n",
         "params.txt:4: the entry (3, 1) is outside A, which is 2 x 2"},
        {"parameter a 1 2\nB 1 1 a * b\n", "params.txt:2: unknown name 'b' in \"a * b\""},
        {"parameter a 1 2\nC 1\n", "params.txt:2: an entry of C needs its row, its column and an expression"},
    };
    for (const auto& c : cases) {
        UncertainModel model;
        std::string error;
        EXPECT_FALSE(UncertainModel::read(write(c.text).c_str(), plant(), model, error));
        EXPECT_EQ(error, c.message) << c.text;
    }
    UncertainModel model;
    std::string error;
    ASSERT_TRUE(
        UncertainModel::read(write("parameter a 1 2\nparameter b 1 2\n").c_str(), plant(), model, error));
    SweepReport r;
    EXPECT_FALSE(sweepModel(model, DynOp(mat(1, 1, {0.1})), SweepOptions{400, 0}, r, error));
    EXPECT_EQ(error, "a grid of 400 points on 2 parameters is above 100000 samples: take fewer points");
    // A compensator whose channels do not fit the plant's loop is refused before any sample.
    EXPECT_FALSE(sweepModel(model, DynOp(mat(2, 1, {0.1, 0.2})), SweepOptions{2, 0}, r, error));
    EXPECT_EQ(error,
              "the compensator takes 1 measure and gives 2 controls; the plant gives 1 measure and takes 1 "
              "control");
}

}  // namespace
