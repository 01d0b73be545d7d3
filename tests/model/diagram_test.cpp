// Models built from drawings against the same models composed by series, parallel and feedback.
#include "diagram.h"

#include <gtest/gtest.h>

#include "control/discdyn.h"

namespace {

// y = G2 G1 (r - y) with the two blocks' direct gains.
DynOp negativeLoop(const DynOp& g1, const DynOp& g2) {
    DynOp open = g2 * g1;
    Matrix a = open.stateA(), b = open.stateB(), c = open.stateC(), d = open.getD();
    Matrix f = Matrix::diagonal(1, 1.0 / (1.0 + d(0, 0)));
    return DynOp(a - b * f * c, b * f, f * c, f * d);
}

}  // namespace

TEST(DiagramTest, ChainsLoopsAndBranchesGiveTheComposedModel) {
    DynOp g1 = firstOrder(1.0, 2.0), g2 = firstOrder(3.0, 1.0, 0.5);
    {
        Diagram d;
        auto& r = d.input("r", 1, 10, 10);
        auto& e = d.sum("e", 20, 10);
        auto& b1 = d.block("Motor", g1, 30, 10);
        auto& b2 = d.block("Load", g2, 45, 10);
        auto& y = d.output("y", 60, 10);
        d.link(r, e);
        d.link(e, b1);
        d.link(b1, b2);
        d.link(b2, y);
        d.link(b2, e, "-");
        std::string reports;
        std::unique_ptr<DynOp> model = d.build(&reports);
        EXPECT_EQ(reports, "");
        expectSameTransfer(*model, negativeLoop(g1, g2));
        EXPECT_EQ(d.semantic().lastNames().states, (std::vector<std::string>{"Motor.x1", "Load.x1"}));
    }
    {
        // Fan-out into two blocks, recombined with a negative sign.
        Diagram d;
        auto& r = d.input("r", 1, 10, 10);
        auto& b1 = d.block("A", g1, 25, 5);
        auto& b2 = d.block("B", g2, 25, 20);
        auto& s = d.sum("s", 40, 10);
        auto& y = d.output("y", 50, 10);
        d.link(r, b1);
        d.link(r, b2);
        d.link(b1, s);
        d.link(b2, s, "-");
        d.link(s, y);
        expectSameTransfer(*d.build(), g1 + (-g2));
    }
}

TEST(DiagramTest, MultiplexedLinksPickTheirChannels) {
    // A two-output block whose outputs go to two terminals, swapped by the multiplexing.
    Matrix b(2, 1);
    b(0, 0) = 1.0;
    b(1, 0) = 3.0;
    DynOp g(Matrix::diagonal(2, -1.0), b, Matrix::diagonal(2, 1.0), Matrix(2, 1));
    Diagram d;
    auto& u = d.input("u", 1, 10, 10);
    auto& blk = d.block("G", g, 20, 10);
    auto& y1 = d.output("y1", 40, 5);
    auto& y2 = d.output("y2", 40, 20);
    d.link(u, blk);
    d.link(blk, y1, "", "1,2");
    d.link(blk, y2, "", "1,1");
    std::string reports;
    std::unique_ptr<DynOp> model = d.build(&reports);
    EXPECT_EQ(reports, "");
    Matrix swap(2, 2);
    swap(0, 1) = swap(1, 0) = 1.0;
    expectSameTransfer(*model, swap * g);
}

TEST(DiagramTest, TitleListsOrderChannelsAndStates) {
    DynOp g1 = firstOrder(1.0, 2.0), g2 = firstOrder(3.0, 1.0);
    Diagram d;
    auto& u1 = d.input("u1", 1, 10, 5);
    auto& u2 = d.input("u2", 1, 10, 20);
    auto& b1 = d.block("P", g1, 25, 5);
    auto& b2 = d.block("Q", g2, 25, 20);
    auto& y1 = d.output("y1", 45, 5);
    auto& y2 = d.output("y2", 45, 20);
    d.link(u1, b1);
    d.link(u2, b2);
    d.link(b1, y1);
    d.link(b2, y2);
    DynOp both = g1.append(g2);
    Matrix swap(2, 2);
    swap(0, 1) = swap(1, 0) = 1.0;

    b1.blockData().x0Text = "[3]";
    d.title().setInputList("u2, u1");
    d.title().setOutputList("y2 y1");
    d.title().setStateList("2 -1");
    std::string reports;
    std::unique_ptr<DynOp> model = d.build(&reports);
    EXPECT_EQ(reports, "");
    expectSameTransfer(*model, swap * both * swap);
    EXPECT_EQ(d.semantic().lastNames().inputs, (std::vector<std::string>{"u2", "u1"}));
    EXPECT_EQ(d.semantic().lastNames().states, (std::vector<std::string>{"Q.x1", "-P.x1"}));
    EXPECT_EQ(d.semantic().lastNames().initialState, (std::vector<double>{0.0, -3.0}));
    EXPECT_EQ(d.semantic().lastNames().disturbances, 1);
    EXPECT_NEAR(model->stateC()(1, 1), -1.0, 1e-15);  // the sign of the second state

    d.title().setInputList("u1 u1 w");
    d.title().setStateList("1");
    model = d.build(&reports);
    EXPECT_NE(reports.find("more inputs with the same name u1"), std::string::npos) << reports;
    EXPECT_NE(reports.find("Warning, \"w\" in the list of the input names is incorrect"), std::string::npos);
    EXPECT_NE(reports.find("indices for reordering state is uncorrect"), std::string::npos);
    expectSameTransfer(*model, swap * both);
}

TEST(DiagramTest, DiscreteBlocksMakeADiscreteModel) {
    DiscDynOp g(Matrix::diagonal(1, 0.5), Matrix::diagonal(1, 1.0), Matrix::diagonal(1, 1.0),
                Matrix::diagonal(1, 0.0), 0.1);
    Diagram d;
    auto& u = d.input("u", 1, 10, 10);
    auto& b = d.block("Z", g, 20, 10);
    auto& y = d.output("y", 40, 10);
    d.link(u, b);
    d.link(b, y);
    std::unique_ptr<DynOp> model = d.build();
    EXPECT_TRUE(model->isDiscreteTime());
    EXPECT_DOUBLE_EQ(model->samplingTimeOf(), 0.1);
    EXPECT_EQ(d.title().systemLabel(), "Discrete System 0.1");
    EXPECT_NEAR(model->singularValueAt(0.0), 2.0, 1e-12);  // 1 / (1 - 0.5) at z = 1
}

TEST(DiagramTest, TheCheckReportsInItsOrderAndTheModelKeepsWhatIsConnected) {
    DynOp g = firstOrder(1.0, 1.0);
    Diagram d;
    auto& u = d.input("u", 1, 10, 10);
    auto& b = d.block("G", g, 20, 10);
    d.block("Loose", g, 20, 30);
    auto& y = d.output("y", 40, 10);
    d.output("z", 40, 30);
    d.link(u, b);
    d.link(b, y);
    std::string reports;
    std::unique_ptr<DynOp> model = d.build(&reports);
    EXPECT_EQ(reports, "Loose has not output links\nLoose has not input links\nz has not input links\n");
    expectSameTransfer(*model, g);
}
