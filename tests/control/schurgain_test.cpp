// Tests of SchurGain against closed forms and the transfer computed directly.
#include "control/schurgain.h"

#include <random>

#include "ctltest.h"

namespace {

double largestSingularValue(const CxMatrix& G) {
    Matrix re(unsigned(G.size()), unsigned(G[0].size())), im(re);
    for (unsigned i = 0; i < re.rowNumber(); ++i)
        for (unsigned j = 0; j < re.columnNumber(); ++j) re(i, j) = G[i][j].real(), im(i, j) = G[i][j].imag();
    return CMatrix(re, im).maxSingularValue();
}

Matrix randomMatrix(unsigned rows, unsigned cols, std::mt19937& engine) {
    std::normal_distribution<double> normal;
    Matrix M(rows, cols);
    for (unsigned k = 0; k < M.elementCount(); ++k) M.elements()[k] = normal(engine);
    return M;
}

}  // namespace

// 1 / (s + 2) and 1 / (s^2 + 2 z w s + w^2) on the imaginary axis.
TEST(SchurGainTest, FirstAndSecondOrderClosedForms) {
    SchurGain lag(mat(1, 1, {-2}), mat(1, 1, {1}), mat(1, 1, {1}), mat(1, 1, {0}));
    double z = 0.1, w = 3.0;
    SchurGain resonance(mat(2, 2, {0, 1, -w * w, -2 * z * w}), mat(2, 1, {0, 1}), mat(1, 2, {1, 0}),
                        mat(1, 1, {0}));
    for (double f : {0.0, 0.5, 3.0, 100.0}) {
        EXPECT_NEAR(lag.at({0.0, f}), 1.0 / std::hypot(2.0, f), 1e-15);
        EXPECT_NEAR(resonance.at({0.0, f}), 1.0 / std::hypot(w * w - f * f, 2 * z * w * f), 1e-13);
    }
    EXPECT_EQ(lag.eigenvalues(), std::vector<Cx>{Cx(-2.0, 0.0)});
    EXPECT_NEAR(resonance.eigenvalues()[0].imag(), w * std::sqrt(1 - z * z), 1e-14);
}

TEST(SchurGainTest, AgreesWithTheDirectTransferAtEveryOrder) {
    std::mt19937 engine(5);
    for (unsigned n : {0u, 1u, 2u, 10u, 60u}) {
        unsigned inputs = 1 + n % 3, outputs = 3 - n % 2;  // 3x1, 2x2, 3x3, 3x2 and 3x1 transfers
        Matrix A = randomMatrix(n, n, engine) - Matrix::diagonal(n, 0.5 * n),
               B = randomMatrix(n, inputs, engine), C = randomMatrix(outputs, n, engine),
               D = randomMatrix(outputs, inputs, engine);
        SchurGain gain(A, B, C, D);
        DynOp s(A, B, C, D, 0, 0, 0, false);
        for (Cx point : {Cx(0.0, 0.0), Cx(0.0, 1.5), Cx(0.3, -7.0)}) {
            double direct = n ? largestSingularValue(transferAt(s, point)) : CMatrix(D).maxSingularValue();
            EXPECT_NEAR(gain.at(point), direct, 1e-11 * direct) << n;
        }
    }
}

TEST(SchurGainTest, InfiniteAtAPole) {
    SchurGain gain(mat(2, 2, {-1, 0, 0, -2}), mat(2, 1, {1, 1}), mat(1, 2, {1, 1}), mat(1, 1, {0}));
    EXPECT_EQ(gain.at({-2.0, 0.0}), HUGE_VAL);
}
