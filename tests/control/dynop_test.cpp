// DynOp: construction, simplification, compositions and loop closures against the transfer
// matrices computed directly, pole placement, printing and streams.
#include <gtest/gtest.h>

#include <sstream>

#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

const Cx points[] = {Cx(0.0, 0.3), Cx(0.0, 2.0), Cx(1.5, -0.7)};

Vector vec(std::initializer_list<double> values) {
    Vector v(unsigned(values.size()));
    unsigned i = 0;
    for (double x : values) v[i++] = x;
    return v;
}

Cx polyAt(const Vector& v, Cx s) {
    Cx r = 0.0;
    for (unsigned i = 0; i < v.size(); ++i) r = r * s + v[i];
    return r;
}

// Plant with 1 disturbance and 1 control, 1 objective and 1 measure, D22 not zero.
DynOp plant() {
    return DynOp(mat(2, 2, {-1, 2, 0, -3}), mat(2, 2, {1, 0, 0.5, 1}), mat(2, 2, {1, 1, 0, 2}),
                 mat(2, 2, {0, 0.1, 0.2, 0.3}), 1, 1);
}

TEST(DynOpTest, CompanionFormHasTheTransferFunction) {
    struct Case {
        Vector num, den;
        double direct;
    } cases[] = {{vec({1, 3}), vec({1, 3, 2}), 0.0},
                 {vec({2, 1, 1}), vec({1, 3, 2}), 2.0},
                 {vec({4, 2}), vec({2, 6, 4}), 0.0}};
    for (const Case& c : cases) {
        DynOp s;
        std::string console = consoleOf([&] { s = DynOp(c.num, c.den); });
        EXPECT_EQ(console, "n 2\n");
        EXPECT_EQ(s.order(), 2u);
        EXPECT_DOUBLE_EQ(s.getD()(0, 0), c.direct);
        for (Cx p : points) expectNear(transferAt(s, p), {{polyAt(c.num, p) / polyAt(c.den, p)}}, 1e-12);
    }
    DynOp fromFunction;
    consoleOf([&] { fromFunction = DynOp(RationalFunction(vec({1, 3}), vec({1, 3, 2}))); });
    expectNear(transferAt(fromFunction, points[0]),
               {{(points[0] + 3.0) / ((points[0] + 1.0) * (points[0] + 2.0))}}, 1e-12);
    DynOp gain(vec({5, 1}), vec({0, 1, 2}));
    EXPECT_TRUE(gain.isStaticGain());
    EXPECT_EQ(gain.getD()(0, 0), 5.0);
}

TEST(DynOpTest, VanishingMatricesMakeStaticOrZeroSystems) {
    DynOp noInput(mat(2, 2, {-1, 0, 0, -2}), Matrix(2, 1), mat(1, 2, {1, 1}), mat(1, 1, {3}));
    EXPECT_TRUE(noInput.isStaticGain());
    EXPECT_EQ(noInput.order(), 0u);
    EXPECT_FALSE(noInput.isZero());
    EXPECT_DOUBLE_EQ(noInput.normHinf(), 3.0);
    EXPECT_EQ(noInput.poles().rowNumber(), 0u);

    DynOp zero(mat(1, 1, {-1}), mat(1, 1, {1e-15}), mat(1, 1, {1}), Matrix(0, 0));
    EXPECT_TRUE(zero.isStaticGain() && zero.isZero());
    DynOp kept(mat(1, 1, {-1}), mat(1, 1, {1e-15}), mat(1, 1, {1}), Matrix(0, 0), 0, 0, 0, false);
    EXPECT_FALSE(kept.isStaticGain());
    EXPECT_EQ(DynOp(mat(2, 3, {1, 2, 3, 4, 5, 6})).outputNumber(), 2u);
    EXPECT_TRUE(DynOp(0.0, 0, 0, 0).isZero());
    DynOp fromMatrix;
    EXPECT_EQ(consoleOf([&] { fromMatrix = DynOp(RFMatrix(2, 3)); }), " not yet implemented \n");
    EXPECT_TRUE(fromMatrix.isZero() && fromMatrix.outputNumber() == 2 && fromMatrix.inputNumber() == 3);
    EXPECT_NE(raisedText([] {
                  DynOp(mat(2, 2, {1, 0, 0, 1}), Matrix(3, 1), Matrix(1, 2), Matrix(0, 0));
              }),
              "no error");
}

TEST(DynOpTest, TransferMatrixAndSingularValuesAgreeWithTheStateMatrices) {
    DynOp s = randomStable(4, 2, 3);
    RFMatrix G = s.transferMatrix();
    for (double w : {0.01, 0.7, 5.0}) {
        CxMatrix direct = transferAt(s, Cx(0.0, w));
        for (unsigned i = 0; i < 3; ++i)
            for (unsigned j = 0; j < 2; ++j)
                EXPECT_NEAR(std::abs(G(i, j).value(0.0, w).value() - direct[i][j]), 0.0, 1e-9);
        EXPECT_NEAR(s.singularValueAt(w), G.evaluate(Complex(0.0, w)), 1e-9);
    }
}

TEST(DynOpTest, CompositionsMultiplyAndAddTransferMatrices) {
    DynOp g1 = randomStable(3, 2, 2, 1), g2 = randomStable(2, 2, 2, 2), gain(mat(2, 2, {1, 2, 3, 4}));
    Matrix M = mat(2, 2, {0, 1, -1, 2});
    for (Cx p : points) {
        CxMatrix G1 = transferAt(g1, p), G2 = transferAt(g2, p);
        expectNear(transferAt(g1 * g2, p), mul(G1, G2), 1e-10);
        expectNear(transferAt(g1 + g2, p), add(G1, G2), 1e-10);
        expectNear(transferAt(g1 * gain, p), mul(G1, cx(gain.getD())), 1e-10);
        expectNear(transferAt(gain * g1, p), mul(cx(gain.getD()), G1), 1e-10);
        expectNear(transferAt(g1 * M, p), mul(G1, cx(M)), 1e-10);
        expectNear(transferAt(M * g1, p), mul(cx(M), G1), 1e-10);
        expectNear(transferAt(g1 + M, p), add(G1, cx(M)), 1e-10);
        expectNear(transferAt(-g1, p), add(CxMatrix(2, std::vector<Cx>(2)), G1, -1.0), 1e-10);
        expectNear(transferAt(g1 * 2.5, p), add(G1, G1, 1.5), 1e-10);
        expectNear(transferAt(g1.sumOfOutputs(g2), p),
                   {{G1[0][0], G1[0][1], G2[0][0], G2[0][1]}, {G1[1][0], G1[1][1], G2[1][0], G2[1][1]}},
                   1e-10);
        CxMatrix T = transferAt(g1.transpose(), p);
        expectNear(T, {{G1[0][0], G1[1][0]}, {G1[0][1], G1[1][1]}}, 1e-10);
        expectNear(transferAt(g1.subSystem(1, 0, 1, 1), p), {{G1[1][0]}}, 1e-10);
        expectNear(transferAt(g1.subSystem(1, 0, 1, 1, true), p), {{G1[1][0]}}, 1e-8);
    }
    EXPECT_EQ((g1 * gain).order(), 3u);
    EXPECT_TRUE((gain * gain).isStaticGain());
    EXPECT_EQ(g1.append(g2).order(), 5u);
    EXPECT_EQ(g1.appendGain(mat(1, 1, {7})).getD()(2, 2), 7.0);
    EXPECT_NE(raisedText([&] { g1* DynOp(mat(3, 1, {1, 2, 3})); }), "no error");
}

TEST(DynOpTest, InPlaceChangesKeepTheTransferMatrix) {
    DynOp s = randomStable(3, 2, 2, 4);
    CxMatrix G = transferAt(s, points[1]);
    DynOp similar(s);
    similar.similarity(mat(3, 3, {1, 2, 0, 0, 1, 3, 1, 0, 1}));
    expectNear(transferAt(similar, points[1]), G, 1e-10);
    DynOp schur(s);
    Matrix Q = schur.schurForm(true);
    EXPECT_TRUE(schur.isSchurForm());
    expectNear(transferAt(schur, points[1]), G, 1e-10);
    expectNear(transferAt(s.changeBasis(Q), points[1]), G, 1e-10);

    DynOp grown(s);
    grown.addOutputs(mat(1, 3, {1, 0, 0}), Matrix(0, 0));
    grown.addInputs(mat(3, 1, {0, 0, 1}), mat(3, 1, {4, 5, 6}));
    EXPECT_EQ(grown.outputNumber(), 3u);
    EXPECT_EQ(grown.getD()(2, 2), 6.0);
    grown.removeInputs(2, 1);
    grown.removeOutputs(2, 1);
    expectNear(transferAt(grown, points[1]), G, 1e-12);
    EXPECT_EQ(s.reduceOrder(2, false).getA()(0, 0), s.getA()(1, 1));
}

TEST(DynOpTest, StateFeedbackAndObjectiveScalingFollowTheFormulas) {
    DynOp s = plant();
    Matrix K = mat(2, 2, {1, 2, 3, 4});
    DynOp all = s.stateFeedback(K);
    EXPECT_TRUE(all.getA().isEqual(s.getA() - s.getB() * K));
    EXPECT_TRUE(all.getC().isEqual(s.getC() - s.getD() * K));
    IntArray controls(1);
    controls[0] = 1;
    Matrix k1 = mat(1, 2, {2, -1});
    DynOp some = s.stateFeedback(k1, &controls);
    EXPECT_EQ(some.inputNumber(), 1u);
    EXPECT_TRUE(some.getA().isEqual(s.getA() - s.getB(&controls) * k1));
    EXPECT_EQ(some.controlNumber(), 0u);
    DynOp scaled = s.scaleObjectives(3.0);
    EXPECT_EQ(scaled.getC()(0, 1), 3.0);
    EXPECT_EQ(scaled.getC()(1, 1), 2.0);
    EXPECT_DOUBLE_EQ(scaled.getD()(0, 1), 0.3);
}

// z = (P11 - P12 K (I + P22 K)^-1 P21) w for the controller's transfer K acting with negative sign.
TEST(DynOpTest, ClosedLoopIsTheLinearFractionalTransformation) {
    DynOp P = plant();
    DynOp K(mat(1, 1, {-4}), mat(1, 1, {1}), mat(1, 1, {2}), mat(1, 1, {0.5}));
    DynOp cl = P.closedLoop(K);
    EXPECT_EQ(cl.order(), 3u);
    EXPECT_EQ(cl.inputNumber(), 1u);
    for (Cx p : points) {
        CxMatrix G = transferAt(P, p), k = transferAt(K, p);
        Cx p11 = G[0][0], p12 = G[0][1], p21 = G[1][0], p22 = G[1][1], kk = k[0][0];
        expectNear(transferAt(cl, p), {{p11 - p12 * kk / (1.0 + p22 * kk) * p21}}, 1e-10);
    }
    expectNear(transferAt(P.outputFeedback(K), points[0]), transferAt(cl, points[0]), 1e-12);
    EXPECT_TRUE(P.closedLoop(K).isStable());

    // A controller with a reference input and a monitored output keeps them as extra channels.
    DynOp K2(mat(1, 1, {-4}), mat(1, 2, {1, 1}), mat(2, 1, {2, 1}), mat(2, 2, {0.5, 0, 0, 0}), 1, 1);
    DynOp cl2 = P.closedLoop(K2);
    EXPECT_EQ(cl2.inputNumber(), 2u);
    EXPECT_EQ(cl2.outputNumber(), 2u);
    EXPECT_EQ(cl2.controlNumber(), 1u);
    expectNear(transferAt(cl2.subSystem(0, 0, 1, 1), points[2]), transferAt(cl, points[2]), 1e-10);
    EXPECT_NE(raisedText([&] { P.closedLoop(K2.transpose().append(K2)); }), "no error");
}

TEST(DynOpTest, BlockLoopClosesTheCoupledChannels) {
    DynOp s = randomStable(3, 2, 2, 9);
    Matrix coupling(2, 2);
    coupling(1, 0) = 0.5;  // output 0 drives input 1
    DynOp closed = s.closeBlockLoop(coupling);
    EXPECT_EQ(closed.inputNumber(), 1u);
    EXPECT_EQ(closed.outputNumber(), 1u);
    for (Cx p : points) {
        CxMatrix G = transferAt(s, p);
        CxMatrix loop = solveCx(add(identity(2), mul(cx(coupling), G), -1.0), {{1.0}, {0.0}});
        expectNear(transferAt(closed, p), {{mul(G, loop)[1][0]}}, 1e-10);
    }
    DynOp gain(mat(2, 2, {0, 1, 1, 0}));
    EXPECT_TRUE(gain.closeBlockLoop(coupling).isStaticGain());
}

TEST(DynOpTest, PlaceGivesTheDesiredPoles) {
    DynOp s(mat(4, 4, {0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, -2, 3, 0.5}),
            mat(4, 2, {0, 0, 0, 1, 0, 0, 1, 1}), mat(1, 4, {1, 0, 0, 0}), Matrix(0, 0));
    Matrix desired = mat(4, 2, {-1, 0, -2, 0, -3, 1, -3, -1});
    std::vector<Cx> wanted = {Cx(-3, -1), Cx(-3, 1), Cx(-2, 0), Cx(-1, 0)};
    for (bool single : {false, true}) {
        Matrix K = s.place(desired, 0, single);
        std::vector<Cx> got = eigenvalues(s.getA() - s.getB() * K);
        for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(std::abs(got[i] - wanted[i]), 0.0, 1e-7) << single;
    }
    // A desired pole that is already a pole of A (here 0 of the chain).
    DynOp chain(mat(2, 2, {0, 1, 0, 0}), mat(2, 1, {0, 1}), mat(1, 2, {1, 0}), Matrix(0, 0));
    Matrix K = chain.place(mat(2, 2, {0, 0, -1, 0}));
    std::vector<Cx> got = eigenvalues(chain.getA() - chain.getB() * K);
    EXPECT_NEAR(std::abs(got[0] - Cx(-1, 0)), 0.0, 1e-8);
    EXPECT_NEAR(std::abs(got[1]), 0.0, 1e-8);

    DynOp split(mat(2, 2, {-1, 0, 0, -2}), mat(2, 1, {1, 0}), mat(1, 2, {1, 1}), Matrix(0, 0));
    Matrix none;
    EXPECT_EQ(consoleOf([&] {
                  none = split.place(mat(2, 2, {-1, 0, -2, 0}));
              }),
              "system not completely controllable,\ncontrollable part has order = 1\n");
    EXPECT_TRUE(none.isEqual(Matrix()));
}

TEST(DynOpTest, PlaceWithOneInputGivesRepeatedPolesNotNoise) {
    // A chain of n integrators fed at its end: K holds the desired characteristic polynomial's
    // coefficients, lowest power first.
    for (unsigned multiplicity : {2u, 3u})
        for (unsigned n = 2; n <= 10; ++n) {
            Matrix A(n, n), b(n, 1), desired(n, 2);
            for (unsigned i = 0; i + 1 < n; ++i) A(i, i + 1) = 1.0;
            b(n - 1, 0) = 1.0;
            std::vector<double> coefficients = {1.0};  // highest power first
            for (unsigned i = 0; i < n; ++i) {
                desired(i, 0) = -1.0 - double(i / multiplicity);
                coefficients.push_back(0.0);
                for (size_t j = coefficients.size() - 1; j > 0; --j)
                    coefficients[j] -= desired(i, 0) * coefficients[j - 1];
            }
            DynOp chain(A, b, b.transpose(), Matrix(0, 0));
            Matrix K;
            EXPECT_EQ(consoleOf([&] { K = chain.place(desired); }), "") << n;
            for (unsigned i = 0; i < n; ++i)
                EXPECT_NEAR(K(0, i), coefficients[n - i], 1e-6 * coefficients[n - i])
                    << multiplicity << n << i;
        }
}

TEST(DynOpTest, PlaceWarnsWhenItMissesThePoles) {
    // Two inputs cannot give a triple pole with three eigenvectors.
    DynOp s(mat(3, 3, {0, 1, 0, 0, 0, 1, 0, 0, 0}), mat(3, 2, {0, 0, 1, 0, 0, 1}), mat(1, 3, {1, 0, 0}),
            Matrix(0, 0));
    EXPECT_EQ(consoleOf([&] {
                  s.place(mat(3, 2, {-1, 0, -1, 0, -1, 0}));
              }).rfind("Warning, the placed poles miss the desired ones, relative distance up to ", 0),
              0u);
}

TEST(DynOpTest, PrintsItsShapeAndMatrices) {
    std::ostringstream dynamic, gain;
    dynamic << DynOp(mat(1, 1, {-1}), mat(1, 1, {1}), mat(1, 1, {2}), Matrix(0, 0));
    std::string head =
        "Continuous-time System; order = 1, inputs = 1, controls = 0\n"
        "outputs = 1, measures = 0, feed forward dist. = 0\n"
        "isZeroGain = NO, is a static system = NO, is schur = YES\n"
        "A =  [\n";
    EXPECT_EQ(dynamic.str().substr(0, head.size()), head);
    EXPECT_NE(dynamic.str().find("D =  [\n               0\n];\n"), std::string::npos) << dynamic.str();
    gain << DynOp(2.0, 0, 0, 0);
    EXPECT_EQ(gain.str(),
              "static gain;  inputs = 1  outputs = 1\nisZeroGain = NO\nD  [\n               2\n]\n");
}

TEST(DynOpTest, StreamFormKeepsTheSystem) {
    DynOp s = plant();
    for (const DynOp& original : {s, DynOp(mat(2, 1, {1, 2})), DynOp(s, 1, 0, 1)}) {
        std::ostringstream os;
        storeObject(os, original);
        String error;
        Object* read = readFromString(error, os.str().c_str(), "DynOp");
        ASSERT_TRUE(read != nil) << error.asCharPointer();
        EXPECT_TRUE(read->isEqual(original));
        delete read;
    }
    DynOp* copy = static_cast<DynOp*>(s.deepCopy());
    EXPECT_TRUE(copy->isEqual(s));
    delete copy;
}

}  // namespace
