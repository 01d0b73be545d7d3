// ExtendedSystem: the checks of the components and their texts, the composition against the
// transfer matrices of the components, the dual, the time domain of the operations and the
// stream form.
#include "control/extsys.h"

#include <gtest/gtest.h>

#include <sstream>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

bool made(ExtendedSystem& e, std::string* console = 0) {
    bool ok = false;
    std::string text = consoleOf([&] { ok = e.make(); });
    if (console) *console = text;
    return ok;
}

CxMatrix at(const ExtendedSystem& e, const char* name, Cx s) { return transferAt(e.getElement(name), s); }

// Rows and columns of blocks, a null block standing for zeros of the sizes of its neighbours.
CxMatrix blocks(const std::vector<std::vector<CxMatrix>>& grid, const std::vector<size_t>& rows,
                const std::vector<size_t>& cols) {
    size_t R = 0, C = 0;
    for (size_t r : rows) R += r;
    for (size_t c : cols) C += c;
    CxMatrix all(R, std::vector<Cx>(C));
    size_t r0 = 0;
    for (size_t i = 0; i < grid.size(); r0 += rows[i++]) {
        size_t c0 = 0;
        for (size_t j = 0; j < grid[i].size(); c0 += cols[j++])
            for (size_t r = 0; r < grid[i][j].size(); ++r)
                for (size_t c = 0; c < grid[i][j][r].size(); ++c) all[r0 + r][c0 + c] = grid[i][j][r][c];
    }
    return all;
}

// The transfer matrix of the composition, block by block from the components': inputs d1, d2, r,
// n (2), nr, u; outputs W12 y, W22 y, Wr2 e, Wu2 u, then the measures ym (2) and rm.
CxMatrix composedFromComponents(const ExtendedSystem& e, Cx s) {
    CxMatrix W11 = at(e, "W11", s), W21 = at(e, "W21", s), Wr1 = at(e, "Wr1", s), Wr2 = at(e, "Wr2", s),
             Wym = at(e, "Wym", s), G = mul(at(e, "Model", s), at(e, "Wu1", s)),
             minusWyr = mul(cx(mat(1, 1, {-1})), at(e, "Wyr", s));
    auto objective = [&](const CxMatrix& W) {
        return std::vector<CxMatrix>{mul(W, W11), mul(W, W21), {}, {}, {}, mul(W, G)};
    };
    std::vector<std::vector<CxMatrix>> grid = {
        objective(at(e, "W12", s)),
        objective(at(e, "W22", s)),
        {mul(Wr2, mul(minusWyr, W11)),
         mul(Wr2, mul(minusWyr, W21)),
         mul(Wr2, mul(at(e, "Geqd", s), Wr1)),
         {},
         {},
         mul(Wr2, mul(minusWyr, G))},
        {{}, {}, {}, {}, {}, at(e, "Wu2", s)},
        {mul(Wym, W11), mul(Wym, W21), {}, at(e, "Wd", s), {}, mul(Wym, G)},
        {{}, {}, Wr1, {}, at(e, "Wdr", s), {}}};
    return blocks(grid, {1, 1, 1, 1, 2, 1}, {1, 1, 1, 2, 1, 1});
}

TEST(ExtendedSystemTest, ComposesTheComponentsWithControlsAndMeasuresLast) {
    for (double T : {0.0, 0.1}) {
        SCOPED_TRACE(T);
        ExtendedSystem e = extendedComponents(T);
        std::string console;
        ASSERT_TRUE(made(e, &console)) << console;
        EXPECT_EQ(console, "oneDegreeOfFreedom = NO\n");
        EXPECT_EQ(e.inputNumber(), 7u);
        EXPECT_EQ(e.controlNumber(), 1u);
        EXPECT_EQ(e.outputNumber(), 7u);
        EXPECT_EQ(e.measureNumber(), 3u);
        // Every state of every component appears once: 2 + 1 + 1 + 1 + 1 + 1.
        EXPECT_EQ(e.order(), 7u);
        EXPECT_TRUE(e.isOriginal());
        EXPECT_EQ(e.isDiscrete(), T != 0.0);
        EXPECT_EQ(e.samplingTimeOf(), T);
        EXPECT_TRUE(structuralCheck(e));
        for (Cx s : {Cx(0.3, 1.1), Cx(-0.2, 4.0), std::polar(1.0, 0.7)})
            expectNear(transferAt(e, s), composedFromComponents(e, s), 1e-12);
    }
}

TEST(ExtendedSystemTest, OneDegreeOfFreedomLeavesOutTheReference) {
    ExtendedSystem e = extendedComponents();
    for (const char* name : {"Wr1", "Geqd", "Wdr", "W22"}) e.setElement(name, DynOp());
    std::string console;
    ASSERT_TRUE(made(e, &console));
    EXPECT_EQ(console, "oneDegreeOfFreedom = YES\n");
    // Inputs d1, d2, n (2), u; outputs W12 y, Wr2 (-Wyr y), Wu2 u, ym (2).
    EXPECT_EQ(e.inputNumber(), 5u);
    EXPECT_EQ(e.outputNumber(), 5u);
    EXPECT_EQ(e.measureNumber(), 2u);
    Cx s(0.1, 2.0);
    CxMatrix y = transferAt(e.getElement("Model"), s), total = transferAt(e, s);
    CxMatrix G = mul(y, at(e, "Wu1", s)), track = mul(at(e, "Wr2", s), mul(at(e, "Wyr", s), G));
    EXPECT_NEAR(std::abs(total[1][4] + track[0][0]), 0.0, 1e-12);
}

TEST(ExtendedSystemTest, ChecksStopAtTheFirstFailureWithItsText) {
    // degree: the line on the degrees of freedom before the text, or none for the early checks.
    struct Case {
        std::vector<std::pair<const char*, DynOp>> changes;
        const char* text;
        const char* degree = "NO";
    };
    const std::vector<Case> cases = {
        {{{"Geqd", lag(-3, 1, 2)}}, "input dimension of Geqd different from output dimension of Wr1", 0},
        {{{"Wu1", lag(-5, 2, 1)}}, "output dimension of Wu1 different from input dimension of Model", 0},
        {{{"W21", DynOp(Matrix(2, 1))}}, "W21 should not be zero"},
        {{{"Wd", DynOp()}}, "Wd should not be zero"},
        {{{"Wr1", DynOp()}}, "one degree of freedom design, Wdr should be zero", "YES"},
        {{{"W21", gain(3, 1, 1.0)}}, "output dimension of W21 different from output dimension of Model"},
        {{{"W11", lag(-1, 1, 1)}}, "output dimension of W11 different from output dimension of Model"},
        {{{"Wdr", gain(2, 1, 1.0)}}, "output dimension of Wdr different from output dimension of Wr1"},
        {{{"W11", DynOp()}, {"Wr1", DynOp()}, {"Wdr", DynOp()}}, "W11 and Wr1 cannot be both zero", "YES"},
        {{{"Wyr", gain(1, 3, 1.0)}}, "input dimension of Wyr different from output dimension of Model"},
        {{{"Wyr", gain(2, 2, 1.0)}}, "output dimension of Wyr different from output dimension of Geqd"},
        {{{"Wym", gain(2, 3, 1.0)}}, "input dimension of Wym different from output dimension of Model"},
        {{{"Wym", gain(1, 2, 1.0)}}, "output dimension of Wym different from output dimension of Wd"},
        {{{"W22", lag(-2, 1, 3)}}, "input dimension of W22 different from output dimension of Model"},
        {{{"Wr2", gain(1, 2, 1.0)}}, "input dimension of Wr2 different from output dimension of Wyr"},
        {{{"W12", gain(1, 1, 1.0)}}, "input dimension of W12 different from output dimension of Model"},
        {{{"W12", DynOp()}, {"Wr2", gain(1, 1, 0.0)}}, "cannot be both W12 and Wr2 zero"},
        // Two faults: the earlier check speaks.
        {{{"W12", DynOp()}, {"Wr2", DynOp()}, {"W11", lag(-1, 3, 1)}},
         "output dimension of W11 different from output dimension of Model"},
    };
    ExtendedSystem good = extendedComponents();
    ASSERT_TRUE(made(good));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        ExtendedSystem e = good;
        for (const auto& change : c.changes) e.setElement(change.first, change.second);
        std::string console;
        EXPECT_FALSE(made(e, &console));
        std::string line = c.degree ? std::string("oneDegreeOfFreedom = ") + c.degree + "\n" : "";
        EXPECT_EQ(console, line + c.text + "\n");
        // The system made before stays.
        EXPECT_TRUE(DynOp(e).isEqual(DynOp(good)));
    }
    ExtendedSystem empty;
    std::string console;
    EXPECT_FALSE(made(empty, &console));
    EXPECT_EQ(console, "the Model is equal zero, load a model\n");
    // A size that no check covers is refused by the composition with the dimension error.
    ExtendedSystem wide = good;
    wide.setElement("Wu2", gain(1, 2, 0.1));
    int code = 0;
    EXPECT_NE(raisedText([&] { made(wide); }, &code), "no error");
    EXPECT_EQ(code, DIFFMTRXDIM);
    EXPECT_TRUE(DynOp(wide).isEqual(DynOp(good)));
}

TEST(ExtendedSystemTest, OperationsFollowTheTimeDomain) {
    // A pole at -2: stable in continuous time, outside the unit circle in discrete time.
    DynOp s(mat(1, 1, {-2}), mat(1, 2, {1, 1}), mat(2, 1, {1, 1}), mat(2, 2, {0, 1, 1, 0}), 1, 1);
    ExtendedSystem continuous(s), discrete(DiscDynOp(s, true, 0.5));
    EXPECT_STREQ(continuous.typeName(), "Continuous-time System");
    EXPECT_STREQ(discrete.typeName(), "Discrete-time System");
    EXPECT_FALSE(continuous.isDiscreteTime());
    EXPECT_TRUE(discrete.isDiscreteTime());
    EXPECT_TRUE(continuous.isStable());
    EXPECT_FALSE(discrete.isStable());
    EXPECT_EQ(continuous.poles().columnNumber(), 2u);
    EXPECT_EQ(discrete.poles().columnNumber(), 5u);
    EXPECT_TRUE(continuous.isUnstablePole(0.1, 0.0));
    EXPECT_FALSE(discrete.isUnstablePole(0.1, 0.0));

    // Norms and gramians are those of the plain system of the same time domain.
    DynOp stable(mat(2, 2, {-1, 0.5, 0, -3}), mat(2, 1, {1, 1}), mat(1, 2, {1, 0}), Matrix(0, 0));
    DiscDynOp sampled(stable, false, 0.2);
    ExtendedSystem c(stable), d(sampled);
    EXPECT_EQ(c.normH2(), stable.normH2());
    EXPECT_EQ(d.normH2(), sampled.normH2());
    EXPECT_EQ(c.normHinf(), stable.normHinf());
    EXPECT_EQ(d.normHinf(), sampled.normHinf());
    EXPECT_EQ(c.singularValueAt(2.0), stable.singularValueAt(2.0));
    EXPECT_EQ(d.singularValueAt(2.0), sampled.singularValueAt(2.0));
}

TEST(ExtendedSystemTest, DualAndInputScaling) {
    ExtendedSystem e = extendedComponents();
    ASSERT_TRUE(made(e));
    ExtendedSystem t = e.dual();
    EXPECT_FALSE(t.isOriginal());
    EXPECT_EQ(t.controlNumber(), e.measureNumber());
    EXPECT_EQ(t.measureNumber(), e.controlNumber());
    EXPECT_TRUE(t.getElement("Model").isEqual(e.getElement("Model")));
    Cx s(0.2, 0.9);
    CxMatrix G = transferAt(e, s), Gt = transferAt(t, s);
    for (size_t i = 0; i < G.size(); ++i)
        for (size_t j = 0; j < G[i].size(); ++j) EXPECT_NEAR(std::abs(G[i][j] - Gt[j][i]), 0.0, 1e-12);
    EXPECT_TRUE(t.dual().isEqual(e));

    // Each control doubled by a noise input in front of it, as a design widens its inputs.
    unsigned m = e.inputNumber();
    Matrix M(m, m + 1);
    for (unsigned i = 0; i + 1 < m; ++i) M(i, i) = 1.0;
    M(m - 1, m - 1) = 0.01;
    M(m - 1, m) = 1.0;
    ExtendedSystem widened = e * M;
    EXPECT_EQ(widened.inputNumber(), m + 1);
    EXPECT_EQ(widened.controlNumber(), 1u);
    EXPECT_EQ(widened.measureNumber(), e.measureNumber());
    EXPECT_TRUE(widened.isOriginal());
    expectNear(transferAt(widened, s), mul(G, cx(M)), 1e-12);
}

TEST(ExtendedSystemTest, StreamPrintAndCopies) {
    ExtendedSystem e = extendedComponents();
    ASSERT_TRUE(made(e));
    // The matrices keep 16 digits: a second store gives the text of the first.
    for (const ExtendedSystem& original : {e, e.dual(), ExtendedSystem()}) {
        std::ostringstream os, again;
        ASSERT_TRUE(storeObject(os, original));
        EXPECT_EQ(os.str().rfind(":ExtendedSystem.", 0), 0u);
        String error;
        Object* read = readFromString(error, os.str().c_str(), "ExtendedSystem");
        ASSERT_TRUE(read != nil) << error.asCharPointer();
        storeObject(again, *read);
        EXPECT_EQ(again.str(), os.str());
        EXPECT_EQ(static_cast<ExtendedSystem*>(read)->isOriginal(), original.isOriginal());
        delete read;
    }
    // A component of the wrong class is refused by the reader with the error text.
    std::ostringstream os;
    storeObject(os, e);
    std::string text = os.str();
    size_t model = text.find(":DynOp.", 20);
    ASSERT_NE(model, std::string::npos);
    std::string error;
    EXPECT_EQ(readText(text.substr(0, model) + ":Matrix.17{1 1 0}}", &error), nullptr);
    EXPECT_NE(error.find("[CASTBADCL]"), std::string::npos) << error;

    // Copies own their components.
    ExtendedSystem* copy = static_cast<ExtendedSystem*>(e.deepCopy());
    copy->setElement("Model", DynOp());
    EXPECT_FALSE(e.getElement("Model").isZero());
    ExtendedSystem assigned;
    assigned = *copy;
    delete copy;
    EXPECT_TRUE(assigned.getElement("Model").isZero());

    std::ostringstream printed;
    printed << e;
    std::string p = printed.str();
    size_t last = p.find("sampling time = 0\n");
    ASSERT_NE(last, std::string::npos);
    for (const char* label : {"Wu2 ", "Model ", "W22 ", "W21 ", "W11 ", "Wr1 ", "Geqd ", "Wr2 ", "W12 ",
                              "Wyr ", "Wym ", "Wu1 ", "Wd ", "Wdr "}) {
        size_t at = p.find(std::string("\n") + label, last);
        EXPECT_NE(at, std::string::npos) << label;
        last = at;
    }
    EXPECT_EQ(p.substr(p.size() - 16), "is original YES\n");

    int code = 0;
    std::string raised = raisedText([&] { e.getElement("Wx"); }, &code);
    EXPECT_EQ(code, OBNOTFOUND);
    EXPECT_NE(raised.find("ExtendedSystem::getElement(Wx)"), std::string::npos) << raised;
}

}  // namespace
