// The interconnection of systems against the same system composed by series, parallel and feedback.
#include "model/network.h"

#include <gtest/gtest.h>

#include <cstring>

#include "diagram.h"
#include "quill/quillerr.h"

namespace {

NetLink link(NetEnd from, NetEnd to, double sign = 1.0) {
    NetLink l;
    l.from = from;
    l.to = to;
    l.sign = sign;
    return l;
}

const NetEnd in0{NetEnd::Input, 0}, out0{NetEnd::Output, 0}, sum0{NetEnd::Sum, 0};
NetEnd block(int i) { return {NetEnd::Block, i}; }

// r -> (+) -> G1 -> G2 -> y, with G2's output back to the sum through the sign given.
Network loopThroughSum(const DynOp& g1, const DynOp& g2, double feedbackSign) {
    Network net;
    net.inputDims = {1};
    net.outputDims = {1};
    net.sumDims = {1};
    net.blocks = {g1, g2};
    net.links = {link(in0, sum0), link(sum0, block(0)), link(block(0), block(1)), link(block(1), out0),
                 link(block(1), sum0, feedbackSign)};
    return net;
}

}  // namespace

TEST(NetworkTest, ChainsBranchesAndLoopsMatchTheirComposition) {
    DynOp g1 = firstOrder(1.0, 2.0), g2 = firstOrder(3.0, 1.0, 0.5);
    // Negative feedback: y = G2 G1 (r - y).
    DynOp open = g2 * g1;
    Matrix a = open.stateA(), b = open.stateB(), c = open.stateC(), d = open.getD();
    Matrix f = Matrix::diagonal(1, 1.0 / (1.0 + d(0, 0)));
    DynOp closed(a - b * f * c, b * f, f * c, f * d);
    expectSameTransfer(composeNetwork(loopThroughSum(g1, g2, -1.0)), closed);

    // Fan-out into a parallel branch summed at the output: y = G1 r + G2 r.
    Network parallel;
    parallel.inputDims = {1};
    parallel.outputDims = {1};
    parallel.sumDims = {1};
    parallel.blocks = {g1, g2};
    parallel.links = {link(in0, block(0)), link(in0, block(1)), link(block(0), sum0), link(block(1), sum0),
                      link(sum0, out0)};
    expectSameTransfer(composeNetwork(parallel), g1 + g2);
}

TEST(NetworkTest, AlgebraicLoopsAreSolvedOrRefused) {
    // Two static gains in a loop through a sum: y = k (r + y) gives y = k / (1 - k) r.
    DynOp k(Matrix::diagonal(1, 0.25)), unit(Matrix::diagonal(1, 1.0));
    DynOp result = composeNetwork(loopThroughSum(k, unit, +1.0));
    EXPECT_NEAR(result.getD()(0, 0), 0.25 / 0.75, 1e-12);
    DynOp one(Matrix::diagonal(1, 1.0));
    String refusal = errorTextOf([&] { composeNetwork(loopThroughSum(one, unit, +1.0)); });
    EXPECT_NE(strstr(refusal.asCharPointer(), "ALGEBRAIC_LOOP"), nullptr) << refusal.asCharPointer();
}

TEST(NetworkTest, MultiplexedLinksCarryTheirRows) {
    // A two-output block; its second output goes to the first row of a two-row output terminal.
    Matrix bg(2, 1);
    bg(0, 0) = 1.0;
    bg(1, 0) = 2.0;
    DynOp g(Matrix::diagonal(2, -1.0), bg, Matrix::diagonal(2, 1.0), Matrix(2, 1));
    Network net;
    net.inputDims = {1};
    net.outputDims = {2};
    net.blocks = {g};
    NetLink second = link(block(0), out0);
    second.sourceFirst = 1;
    second.count = 1;
    net.links = {link(in0, block(0)), second};
    Matrix select(2, 2);
    select(0, 1) = 1.0;
    expectSameTransfer(composeNetwork(net), select * g);
}
