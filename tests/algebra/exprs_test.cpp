// Matrix expressions: text, evaluation against CMatrix arithmetic, variables and samples,
// EMatrix, and RFMatrix values through an expression.
#include "algebra/exprs.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/ematrix.h"
#include "algebra/exprtext.h"
#include "quill/all.h"

namespace {

VariableS var(const char* name, float low = -1, float high = 1) {
    return VariableS(RFMatrix(3, 3), 0, name, low, high);
}

ExpressionS ex(const char* name) { return ExpressionS(var(name)); }

CMatrix matrix(double a, double b, double c, double d) {
    CMatrix m(2, 2);
    m(0, 0) = {a, 1};
    m(0, 1) = b;
    m(1, 0) = c;
    m(1, 1) = {d, -2};
    return m;
}

void expectSame(const CMatrix& expected, const CMatrix& actual) {
    ASSERT_EQ(expected.rowNumber(), actual.rowNumber());
    ASSERT_EQ(expected.columnNumber(), actual.columnNumber());
    for (unsigned i = 0; i < expected.rowNumber(); ++i)
        for (unsigned j = 0; j < expected.columnNumber(); ++j)
            EXPECT_NEAR(0.0, std::abs(expected(i, j) - actual(i, j)), 1e-12);
}

}  // namespace

TEST(ExpressionS, InfixTextKeepsOnlyTheNeededBrackets) {
    ExpressionS a = ex("a"), b = ex("b"), c = ex("c");
    struct Case {
        ExpressionS e;
        const char* text;
    } cases[] = {
        {a - (b - c), "a - (b - c)"}, {a - b * c, "a - b * c"},   {(a + b) * c, "(a + b) * c"},
        {a - (b + c), "a - (b + c)"}, {(a - b) - c, "a - b - c"}, {-(a + b), "-(a + b)"},
        {-a * b, "-a * b"},           {(a <= b), "a <= b"},
    };
    for (const Case& k : cases) EXPECT_EQ(k.text, k.e.text());
    EXPECT_TRUE(a.equation(b).isEquality());
    EXPECT_FALSE((a <= b).isEquality());
}

TEST(ExpressionS, PostfixFromATreeAndPrinting) {
    Node* sum =
        new Node(new OperatorS("+"), new Node(new VariableS(var("a"))), new Node(new VariableS(var("b"))));
    Node root(new OperatorS("*"), sum, new Node(new Constant(CMatrix(1, 1), "K")));
    ExpressionS e;
    EXPECT_TRUE(e.isEmpty());
    e.fromTree(root);
    EXPECT_EQ("Espressione = (a + b) * K", std::string(e.asCharPointer()));
    EXPECT_EQ(2u, e.variableCount());
    EXPECT_EQ("Matrix K", std::string(Constant(CMatrix(1, 1), "K").asCharPointer()));
    EXPECT_EQ(0, std::string(Constant(CMatrix(1, 1)).asCharPointer()).find("costante = "));
    EXPECT_EQ("operatore -", std::string(OperatorS("-").asCharPointer()));
}

TEST(ExpressionS, EvaluatesLikeTheSameCMatrixArithmetic) {
    CMatrix A = matrix(1, 2, 3, 4), B = matrix(-1, 0.5, 2, 7), C = matrix(0, 1, 1, 0);
    ExpressionS a{Constant(A)}, b{Constant(B)}, c{Constant(C)};
    expectSame(A * B - C, (a * b - c).evaluate());
    expectSame(-(A + B) * C, (-(a + b) * c).evaluate());

    ExpressionS poly = ex("x") * ex("y") - ex("x") + ExpressionS(Constant(CMatrix::identity(1) * 3.0));
    EXPECT_TRUE(poly.setVariable("x", 2.0));
    EXPECT_TRUE(poly.setVariable("y", -5.0));
    EXPECT_FALSE(poly.setVariable("z", 1.0));
    EXPECT_EQ(2u, poly.variableCount());
    EXPECT_NEAR(2.0 * -5.0 - 2.0 + 3.0, poly.evaluate()(0, 0).real(), 1e-12);
}

TEST(ExpressionS, FaultsReachTheErrorPath) {
    ExpressionS mixed = ExpressionS(Constant(matrix(1, 2, 3, 4))) + ex("x");
    EXPECT_EQ("[DIFFMTRXDIM] Different matrix dimension in CMatrix::operator+, 2 2, 1 1",
              raisedText([&] { mixed.evaluate(); }));

    testing::internal::CaptureStderr();
    CMatrix odd = OperatorS("/").apply(CMatrix(1, 1), CMatrix(1, 1));
    int unknown = OperatorS("%").priority();
    CMatrix empty = ExpressionS().evaluate();
    EXPECT_EQ("ERROR\nUnknown operator %\nEmpty stack\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(0u, odd.rowNumber());
    EXPECT_EQ(3u, odd.columnNumber());
    EXPECT_EQ(0, unknown);
    EXPECT_EQ(0u, empty.rowNumber());
    EXPECT_NE(std::string::npos,
              raisedText([] { Constant().setValue(CMatrix()); }).find("Constant::setValue"));
    EXPECT_NE(std::string::npos,
              raisedText([] { var("v").setValue(CMatrix()); }).find("VariableS::setValue"));

    // A list of one operator has no operands (it used to be taken for one); a relation between
    // constants keeps both (they were folded through an operator that cannot apply them).
    ExpressionS lone;
    lone.fromTree(Node(new OperatorS("+")));
    testing::internal::CaptureStderr();
    EXPECT_EQ(0u, lone.evaluate().rowNumber());
    EXPECT_EQ(0u, testing::internal::GetCapturedStderr().rfind("expression STACK ", 0));
    ExpressionS one(Constant(CMatrix(1, 1))), two(Constant(CMatrix(1, 1)));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(one.equation(two).isEquality());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(VariableS, BoundsNamesAndSteps) {
    VariableS v(RFMatrix(3, 3), 4, "", 5, -3);
    EXPECT_EQ("X4", std::string(v.getName().asCharPointer()));
    EXPECT_EQ(-3.0f, v.lowBound());
    EXPECT_EQ(5.0f, v.highBound());
    EXPECT_EQ(1.0f, v.nominalValue());
    EXPECT_EQ(1.0f, v.currentValue());
    EXPECT_EQ(0, v.stepVariable(6));
    EXPECT_EQ(1, v.stepVariable(4.5f));
    EXPECT_EQ(4.5f, v.currentValue());
    EXPECT_FALSE(v.clampLow(-4));
    EXPECT_EQ(-4.0f, v.lowBound());
    EXPECT_FALSE(v.clampLow(7));
    EXPECT_EQ(-4.0f, v.lowBound());
    EXPECT_TRUE(var("p", 2, 2).clampHigh(1));
    Variable01 unit(RFMatrix(3, 3), 0, "u");
    EXPECT_EQ(0.5f, unit.currentValue());
    EXPECT_TRUE(v.isEqual(String("X4")));
}

TEST(ExpressionS, SeededSamplesRepeatAndStayInTheBounds) {
    ExpressionS e = ExpressionS(var("m", 2, 3)) * ExpressionS(var("k", -1, 0));
    auto draw = [&e](RandomLinear& source) {
        std::string values;
        for (int n = 0; n < 5; ++n) {
            e.sampleVariables(source);
            CMatrix v = e.evaluate();
            EXPECT_TRUE(v(0, 0).real() >= -3.0 && v(0, 0).real() <= 0.0);
            values += std::to_string(v(0, 0).real()) + " ";
        }
        return values;
    };
    RandomLinear first = ExpressionS::sampleSource(), second = ExpressionS::sampleSource();
    std::string once = draw(first);
    EXPECT_EQ(once, draw(second));
    EXPECT_NE(once, draw(first));
}

TEST(EMatrix, EvaluatesEntryByEntry) {
    EMatrix m(2, 3);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 3; ++j) {
            CMatrix k(1, 1);
            k(0, 0) = {double(i), double(j)};
            m(i, j) = ExpressionS(Constant(k)) * ex("g");
        }
    EXPECT_TRUE(m.setVariable("g", 2.0));
    CMatrix v = m.evaluate();
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(std::complex<double>(2.0 * i, 2.0 * j), v(i, j));
    CMatrix block = m.subMatrix(1, 1, 1, 2).evaluate();
    EXPECT_EQ(std::complex<double>(2.0, 4.0), block(0, 1));
    EXPECT_EQ("[INDEXRANGE] Index out of range: EMatrix::subMatrix(3)",
              raisedText([&] { m.subMatrix(0, 2, 1, 2); }));
    EXPECT_EQ("[INDEXRANGE] Index out of range: EMatrix::operator()(2)", raisedText([&] { m(2, 0); }));
}

TEST(RFMatrix, ValueComesFromItsExpressionWhenOneIsHeld) {
    RFMatrix g(1, 1);
    g(0, 0) = RationalFunction(1.0, Vector(2, 1.0));
    EXPECT_NEAR(1.0 / std::sqrt(2.0), g.evaluate(Complex(0, 1)), 1e-12);

    ExpressionS gain = ExpressionS(Constant(matrix(3, 0, 0, 4))) * ex("d");
    gain.setVariable("d", 0.5);
    g.setExpression(gain);
    RFMatrix copy(g);
    CMatrix expected = matrix(3, 0, 0, 4) * 0.5;
    expectSame(expected, copy.valueAt(Complex(0, 1)));
    EXPECT_NEAR(expected.maxSingularValue(), copy.evaluate(Complex(0, 1)), 1e-12);
    copy.expressionOf()->setVariable("d", 1.0);
    EXPECT_NEAR(expected.maxSingularValue() * 2.0, copy.evaluate(Complex(0, 3)), 1e-12);
    EXPECT_NEAR(expected.maxSingularValue(), g.evaluate(Complex(0, 3)), 1e-12);
}

TEST(ExpressionS, CopiesOwnTheirOperands) {
    ExpressionS e = ex("x") * ex("y") - ExpressionS(Constant(CMatrix::identity(1), "I"));
    EMatrix m(1, 1);
    m(0, 0) = e;
    std::unique_ptr<Object> copy(e.deepCopy());
    std::unique_ptr<Object> matrixCopy(m.deepCopy());
    e.setVariable("x", 1.0);
    e.setVariable("y", 3.0);
    ExpressionS& c = static_cast<ExpressionS&>(*copy);
    EXPECT_EQ(e.text(), c.text());
    EXPECT_EQ(2u, c.variableCount());
    EXPECT_NEAR(-1.0, c.evaluate()(0, 0).real(), 1e-12);
    EXPECT_NEAR(2.0, e.evaluate()(0, 0).real(), 1e-12);
    EXPECT_NEAR(-1.0, static_cast<EMatrix&>(*matrixCopy).evaluate()(0, 0).real(), 1e-12);
}

namespace {

// The value of text with a = 2 and b = -3, or the parse error.
std::string valueOf(const char* text) {
    std::vector<VariableS> vars = {var("a"), var("b")};
    ExpressionS e;
    std::string error;
    if (!parseExpression(text, vars, e, error)) return error;
    e.setVariable("a", 2.0);
    e.setVariable("b", -3.0);
    return std::to_string(e.evaluate()(0, 0).real());
}

TEST(ExpressionText, PrioritiesBracketsAndFaults) {
    const struct {
        const char* text;
        std::string value;
    } cases[] = {
        {"2 + 3 * a", std::to_string(8.0)},
        {"-a * b", std::to_string(6.0)},
        {"a - (b - 1) * -2", std::to_string(-6.0)},
        {"((a))", std::to_string(2.0)},
        {"1.5e1 - a - b", std::to_string(16.0)},
        {"a + c", "unknown name 'c' in \"a + c\""},
        {"a / b", "unknown operator '/' in \"a / b\""},
        {"a * (b + 1", "'(' without ')' in \"a * (b + 1\""},
        {"a)", "')' without '(' in \"a)\""},
        {"a +", "operand expected at the end in \"a +\""},
        {"", "operand expected at the end in \"\""},
    };
    for (const auto& c : cases) EXPECT_EQ(valueOf(c.text), c.value) << c.text;
}

// Text and binary forms keep the postfix list and the variables' identity: a value set on the
// read expression by name reaches its items.
TEST(ExpressionS, BothStreamFormsKeepTheListAndTheVariables) {
    std::vector<VariableS> vars = {var("a", 3, -2), var("b")};
    ExpressionS e;
    std::string error;
    ASSERT_TRUE(parseExpression("a - (b - 1.25) * -2", vars, e, error)) << error;
    EMatrix m(1, 2);
    m(0, 0) = e;
    m(0, 1) = ExpressionS(vars[1]);
    for (bool binary : {false, true}) {
        SCOPED_TRACE(binary);
        Object* read = binary ? readBinary(storedBinary(m), &error) : readText(storedText(m), &error);
        ASSERT_NE(read, nullptr) << error;
        EMatrix& r = *static_cast<EMatrix*>(read);
        EXPECT_EQ(r(0, 0).text(), e.text());
        EXPECT_EQ(r(0, 0).variableCount(), 2u);
        EXPECT_TRUE(r.setVariable("a", 0.5) && r.setVariable("b", 4));
        EXPECT_EQ(r.evaluate()(0, 0).real(), 0.5 + 2 * (4 - 1.25));
        EXPECT_EQ(r.evaluate()(0, 1).real(), 4.0);
        delete read;
    }
    Object* v = readText(storedText(vars[0]), &error);
    ASSERT_NE(v, nullptr) << error;
    EXPECT_EQ(static_cast<VariableS*>(v)->lowBound(), -2.0f);
    EXPECT_EQ(static_cast<VariableS*>(v)->nominalValue(), 0.5f);
    delete v;
}

}  // namespace
