// Matrices and vectors in the language: arithmetic against the numeric library on the same inputs,
// every dimension fault with the library's own message, element left values, windows and the comma
// initialiser, index messages, methods, the matrix built-ins and the conversions.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/submatrx.h"
#include "interpreter/executer.h"
#include "interpreter/variable.h"
#include "numtext.h"
#include "quill/quillerr.h"

namespace {

// A = [1 2; 3 4], B = [0 1; 1 1], C 3 x 3 zero, v = (1, -1) and w = (1, 2, 3) columns, r = (2, 3) a row.
const char* const DECLARATIONS =
    "Matrix A(2, 2), B(2, 2), C(3, 3);\n"
    "A << 1 << 2 << 3 << 4;\n"
    "B << 0 << 1 << 1 << 1;\n"
    "Vector v(2, 1.0), w(3, 0.0), r(2, 0.0);\n"
    "v(1) = -1;\n"
    "w << 1 << 2 << 3;\n"
    "r << 2 << 3;\n"
    "r = r.transpose();\n";

struct Inputs {
    Matrix A{"[1 2;3 4]"}, B{"[0 1;1 1]"}, C{3, 3};
    Vector v{2u, 1.0}, w{1.0, 2.0, 3.0}, r{2u, 2.0};
    Inputs() {
        v[1u] = -1.0;
        r[1u] = 3.0;
        r.setAsRow();
    }
};

// The message the numeric library raises for the operation; what it prints is dropped.
std::string libraryFault(const std::function<void()>& operation) {
    CapturedStreams quiet;
    try {
        operation();
    } catch (TarnException* e) {
        std::string text = e->message().asCharPointer();
        delete e;
        return text;
    }
    return "no fault";
}

ProgramRun runWithInputs(const std::string& body) { return runMain(std::string(DECLARATIONS) + body); }

TEST(MatricesTest, numericTypesAreRegisteredWithTheirRanks) {
    struct Rank {
        const char* type;
        int level;
    };
    for (Rank r :
         {Rank{"Vector", 23}, Rank{"SubVector", 23}, Rank{"Polynomial", 23}, Rank{"RationalFunction", 23},
          Rank{"Matrix", 101}, Rank{"SubMatrix", 101}, Rank{"DynOp", 101}, Rank{"DiscDynOp", 101}}) {
        SCOPED_TRACE(r.type);
        Variable* prototype = Variable::findType(r.type);
        ASSERT_NE(prototype, nullptr);
        EXPECT_EQ(prototype->getLevel(), r.level);
        EXPECT_STREQ(prototype->getType().asCharPointer(), r.type);
    }
    ProgramRun noEigenvalues = runMain("Vector v(2, 1.0);\nv.eig();");
    EXPECT_TRUE(failsWith(noEigenvalues, "[PARSE ERROR] [DRVDCLASSRSP]")) << noEigenvalues.message;
}

TEST(MatricesTest, arithmeticIsTheLibrarysOnTheSameInputs) {
    Inputs in;
    Algebra algebra;
    struct Case {
        const char* expression;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"A + B", shown(in.A + in.B)},
        {"A - B", shown(in.A - in.B)},
        {"A * B", shown(in.A * in.B)},
        {"A * 2", shown(in.A * 2.0)},
        {"2.5 * A", shown(in.A * 2.5)},
        {"A / 4", shown(in.A / 4.0)},
        {"-A", shown(-in.A)},
        {"A * v", shown(in.A * in.v)},
        {"r * A", shown(in.r * in.A)},
        {"r * v", number(in.r * in.v)},
        {"v * 3", shown(in.v * 3.0)},
        {"v + v", shown(in.v + in.v)},
        {"v - 2 * v", shown(in.v - in.v * 2.0)},
        {"v + 1", shown(in.v + Vector(2u, 1.0))},
        {"1 - v", shown(Vector(2u, 1.0) - in.v)},
        {"A.transpose()", shown(in.A.transpose())},
        {"A.inv()", shown(algebra.inv(in.A))},
        {"inv(A)", shown(algebra.inv(in.A))},
        {"eig(A)", shown(algebra.computeEigenvalues(in.A))},
        {"A.eig()", shown(algebra.computeEigenvalues(in.A))},
        {"A(0, 0, 1, 2)", shown(in.A.subMatrix(0, 0, 1, 2))},
        {"B * A(0, 1, 0, 0)", shown(in.B * in.A.subMatrix(0, 1))},
        {"A.column(1)", shown(in.A.column(1))},
        {"A.row(-1)", shown(in.A.row(-1))},
        {"Matrix(v)", shown(Matrix(in.v, 1, 0))},
        {"Matrix(3)", shown(Matrix::diagonal(1, 3.0))},
        {"Matrix(2, 0.5)", shown(Matrix::diagonal(2, 0.5))},
        {"Vector(A)", shown(in.A.toVector())},
        {"v.transpose()", shown(in.v.transpose())},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expression);
        ProgramRun run = runWithInputs(std::string("cout << ") + c.expression + " << endl;");
        EXPECT_EQ(run.message, "");
        EXPECT_EQ(run.out, c.expected + "\n");
    }
}

TEST(MatricesTest, compoundAssignmentsStoreInTheVariable) {
    Inputs in;
    Matrix X = in.A;
    std::string expected;
    X += in.B;
    expected += shown(X);
    X -= in.A;
    X *= 2.0;
    expected += shown(X);
    X *= in.B;
    X = X / 4.0;
    expected += shown(X) + "\n";
    ProgramRun run = runWithInputs(
        "Matrix X = A;\n"
        "X += B; cout << X;\n"
        "X -= A; X *= 2; cout << X;\n"
        "X *= B; X /= 4; cout << X << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, expected);
}

TEST(MatricesTest, everyDimensionFaultEndsTheRunWithTheLibrarysMessage) {
    Inputs in;
    struct Case {
        const char* statement;
        std::function<void()> operation;
    };
    const std::vector<Case> cases = {
        {"A + C;", [&] { in.A + in.C; }},
        {"A - C;", [&] { in.A - in.C; }},
        {"A * C;", [&] { in.A* in.C; }},
        {"A += C;", [&] { Matrix(in.A) += in.C; }},
        {"A -= C;", [&] { Matrix(in.A) -= in.C; }},
        {"A *= C;", [&] { Matrix(in.A) *= in.C; }},
        {"A * w;", [&] { in.A* in.w; }},
        {"w.transpose() * A;", [&] { in.w.transpose() * in.A; }},
        {"v + w;", [&] { in.v + in.w; }},
        {"v - w;", [&] { in.v - in.w; }},
        {"v += w;", [&] { Vector(in.v) += in.w; }},
        {"v * v;", [&] { in.v* in.v; }},
        {"r * w;", [&] { in.r* in.w; }},
        {"A(0, 0, 1, 2) = C;", [&] { in.A.view(0, 0, 1, 2) = in.C; }},
        {"v(0, 2) = w;", [&] { Vector(2u).sizeError("operator=", 3); }},
        {"A(2, 0);", [&] { in.A(2, 0); }},
        {"A(1, 1, 2, 2);", [&] { in.A.subMatrix(1, 1, 2, 2); }},
        {"v(5) = 1;", [&] { in.v[5]; }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.statement);
        std::string fault = libraryFault(c.operation);
        ASSERT_NE(fault, "no fault");
        ProgramRun run = runWithInputs(std::string(c.statement) + "\ncout << \"not reached\" << endl;");
        EXPECT_TRUE(failsWith(run, "[PARSE ERROR] " + fault + " At line 10")) << run.message;
        EXPECT_EQ(run.out.find("not reached"), std::string::npos);
    }
    ProgramRun shortVector = runWithInputs("A * w;");
    EXPECT_NE(shortVector.out.find("vector dimension different from matrix column number"),
              std::string::npos);
}

TEST(MatricesTest, negativeIndicesAndSizesHaveTheirMessages) {
    struct Case {
        const char* statement;
        const char* message;
    };
    const std::vector<Case> cases = {
        {"A(-1, 0) = 2;", "Run time error, row index -1 out of range"},
        {"cout << A(0, -2);", "Run time error, column index -2 out of range"},
        {"A(0, 0, -1, 1);", "Run time error, row dimension -1 out of range"},
        {"A(0, 0, 1, -3);", "Run time error, column dimension -3 out of range"},
        {"A(-4, 0, 1, 1);", "Run time error, row index -4 out of range"},
        {"A(0, -5, 1, 1);", "Run time error, column index -5 out of range"},
        {"v(-1) = 0;", "Run time error, index -1 out of range"},
        {"v(0, -2);", "Run time error, length -2 out of range"},
        {"v(-3, 1);", "Run time error, index -3 out of range"},
        {"Matrix M(-1, 2);", "Run time error, row dimension -1 out of range"},
        {"Matrix M(2, -1);", "Run time error, column dimension -1 out of range"},
        {"A.reSize(1, -1);", "Run time error, column dimension -1 out of range"},
        {"v.reSize(-2);", "Run time error, length -2 out of range"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.statement);
        ProgramRun run = runWithInputs(c.statement);
        EXPECT_TRUE(failsWith(run, std::string("[PARSE ERROR] ") + c.message + " At line 10")) << run.message;
    }
}

TEST(MatricesTest, elementsAreLeftValuesAndWindowsWriteIntoTheirMatrix) {
    Matrix A(2, 2);
    A(0, 0) = 1.5;
    A(1, 0) = 2.0;
    A(1, 1) = 3.0;
    Vector v(3u);
    v[2u] = 4.0;
    v[0u] = -1.0;
    Matrix W(3, 3);
    W.view(1, 1, 2, 2) = A;
    W.view(0, 0, 1, 3) = W.subMatrix(2, 0, 1, 3);
    W.view(0, 0, 2, 2) = W.subMatrix(0, 0, 2, 2) * 2.0;
    Vector u(1.0, 2.0, 3.0);
    u.reSize(4);
    u[3u] = 4.0;
    u.setSubVector(u.subVector(2, 2), 1, 2);
    ProgramRun run = runMain(
        "Matrix A(2, 2);\n"
        "A(0, 0) = 1.5;\n"
        "A(1, 0) += 2;\n"
        "A(1, 1) = A(0, 0) * 2;\n"
        "float x = A(1, 1);\n"
        "x = 7;\n"
        "A.transpose()(0, 1) = 9;\n"
        "cout << A << A.transpose()(0, 1) << endl;\n"
        "Vector v(3, 0.0);\n"
        "v(2) = 4;\n"
        "v(0) -= 1;\n"
        "cout << v << endl;\n"
        "Matrix W(3, 3);\n"
        "W(1, 1, 2, 2) = A;\n"
        "W(0, 0, 1, 3) = W(2, 0, 1, 3);\n"
        "W(0, 0, 2, 2) *= 2;\n"
        "cout << W << endl;\n"
        "Vector u(4, 0.0);\n"
        "u << 1 << 2 << 3 << 4;\n"
        "u(1, 2) = u(2, 2);\n"
        "cout << u << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, shown(A) + "2\n" + shown(v) + "\n" + shown(W) + "\n" + shown(u) + "\n");
}

TEST(MatricesTest, theCommaInitialiserFillsRowByRowAndStopsAtTheEnd) {
    Matrix A("[1 2 3;4 5 6]");
    ProgramRun run = runMain(
        "Matrix A(2, 3);\n"
        "A << 1 << 2 << 3 << 4 << 5 << 6;\n"
        "cout << A << endl;\n"
        "Vector row(2, 7.0);\n"
        "A(1, 0, 1, 3) << 0 << row;\n"
        "cout << A(1, 0, 1, 3) << endl;\n"
        "A << 1 << 2 << 3 << 4 << 5 << 6 << 7;");
    Matrix B(A);
    B(1, 0) = 0.0;
    B(1, 1) = B(1, 2) = 7.0;
    EXPECT_EQ(run.out, shown(A) + "\n" + shown(B.subMatrix(1, 0, 1, 3)) + "\n");
    Matrix full(2, 3);
    EXPECT_TRUE(failsWith(run, "[PARSE ERROR] " + libraryFault([&] { full(2, 0); }))) << run.message;
}

TEST(MatricesTest, methodsAnswerSizesNormsAndFactors) {
    Matrix M("[1 -2;3 4]");
    Algebra algebra;
    Matrix R(M);
    algebra.triangularize(R);
    ProgramRun run = runMain(
        "Matrix M(2, 2);\n"
        "M << 1 << -2 << 3 << 4;\n"
        "cout << M.rowNumber() << M.columnNumber() << \" \" << M.norminf() << \" \" << M.norm2() << endl;\n"
        "cout << M.QR() << endl;\n"
        "M.reSize(3, 1);\n"
        "cout << M.rowNumber() << M.columnNumber() << M << endl;\n"
        "Vector v(2, 1.0);\n"
        "v.reSize(3);\n"
        "cout << v.size() << v.transpose() << endl;");
    Matrix grown(3, 1);
    grown(0, 0) = 1.0;
    grown(1, 0) = 3.0;
    Vector v(3u);
    v[0u] = v[1u] = 1.0;
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "22 7 " + number(algebra.norm2(M)) + "\n" + shown(R) + "\n31" + shown(grown) + "\n3" +
                           shown(v.transpose()) + "\n");
}

TEST(MatricesTest, builtinsAreTheExecutersCoresOnTheSameInputs) {
    Matrix S("[4 1;1 3]"), F("[-1 1;0 -2]"), L("[1 0;0 1]"), X("[1 1;1 2;1 3]"), Y("[1;2;2]");
    Executer cores;
    Matrix T(S), Q = cores.schur(T);
    Matrix Xs(X), Ys(Y), Xt(X), Yt(Y);
    double rms = cores.leastSquares(Xs, Ys, -1.0);
    double rmsTight = cores.leastSquares(Xt, Yt, 1e-30);
    ProgramRun run = runMain(
        "Matrix S(2, 2), F(2, 2), L(2, 2), X(3, 2), Y(3, 1);\n"
        "S << 4 << 1 << 1 << 3;\n"
        "F << -1 << 1 << 0 << -2;\n"
        "L << 1 << 0 << 0 << 1;\n"
        "X << 1 << 1 << 1 << 2 << 1 << 3;\n"
        "Y << 1 << 2 << 2;\n"
        "cout << chol(S) << endl;\n"
        "Matrix T = S;\n"
        "Matrix Q = schur(T);\n"
        "cout << Q << T << endl;\n"
        "cout << lyap(F, L) << lyapd(F / 4, L) << endl;\n"
        "Matrix X2 = X, Y2 = Y;\n"
        "cout << ls(X, Y) << X << Y << endl;\n"
        "cout << ls1(X2, Y2, 1e-30) << endl;\n"
        "Matrix N(2, -1.0);\n"
        "cout << chol(N) << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, shown(cores.cholesky(S)) + "\n" + shown(Q) + shown(T) + "\n" +
                           shown(cores.lyapunovSolution(F, L, false)) +
                           shown(cores.lyapunovSolution(F / 4.0, L, true)) + "\n" + number(rms) + shown(Xs) +
                           shown(Ys) + "\n" + number(rmsTight) + "\nthe matrix cannot be decomposed\n" +
                           shown(Matrix::diagonal(2, -1.0)) + "\n");
}

TEST(MatricesTest, comparisonsAnswerCharsAndLogicalOperatorsAreRefused) {
    ProgramRun run = runWithInputs(
        "Matrix A2 = A;\n"
        "Vector v2 = v;\n"
        "cout << int(A == A2) << int(A != A2) << int(A == B) << int(v == v2) << int(v != w) << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "10011\n");
    ProgramRun logical = runWithInputs("A && B;");
    EXPECT_TRUE(failsWith(logical, "[PARSE ERROR] Cannot do operation && between Matrix and Matrix"))
        << logical.message;
}

TEST(MatricesTest, conversionsPrintTheirLineAndGiveAnEmptyValue) {
    ProgramRun run = runMain(
        "string text = \"[1 2]\";\n"
        "Matrix M(text);\n"
        "Vector V(text);\n"
        "cout << M.rowNumber() << M.columnNumber() << V.size() << endl;\n"
        "Matrix K = 'c';");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out,
              "Var text of level 100 cannot be converted in a Matrix\n"
              "Var text of level 100 cannot be converted in a Vector\n"
              "000\n"
              "Var Constant of level 21 cannot be converted in a Matrix\n");
    ProgramRun assigned = runMain("Matrix M(2, 2);\nM = \"x\";");
    EXPECT_TRUE(failsWith(assigned, "[PARSE ERROR] Cannot do operation = between Matrix and string"))
        << assigned.message;
}

}  // namespace
