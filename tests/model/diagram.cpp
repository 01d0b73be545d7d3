// Helpers of the model tests.
#include "diagram.h"

#include <gtest/gtest.h>

DynOp firstOrder(double pole, double gain, double direct) {
    return DynOp(Matrix::diagonal(1, -pole), Matrix::diagonal(1, gain), Matrix::diagonal(1, 1.0),
                 Matrix::diagonal(1, direct));
}

void expectSameTransfer(const DynOp& a, const DynOp& b) {
    ASSERT_EQ(a.inputNumber(), b.inputNumber());
    ASSERT_EQ(a.outputNumber(), b.outputNumber());
    // Compared without their partitions, which the sum of two systems would mix.
    DynOp difference = DynOp(a, 0, 0, 0) + (-DynOp(b, 0, 0, 0));
    for (double w : {0.05, 0.3, 1.0, 7.0})
        EXPECT_LT(difference.singularValueAt(w), 1e-9 * (1.0 + b.singularValueAt(w))) << "at w = " << w;
}
