// Executer: the statement notification and stopping, exit, runs that repeat, calls from
// outside, the resident mode, the variables after a run, built-ins and the matrix cores.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "algebra/matrix.h"
#include "interpreter/all.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "runtext.h"

namespace {

// Records the line of every statement reached; stops the Executer at stopLine.
struct LineRecorder {
    std::vector<int> lines;
    int stopLine = -1;
    Executer* executer = 0;
};

LineRecorder* recorder = 0;

void recordLine(Cback& cb) {
    Statement* statement = static_cast<Statement*>(cb.callData->asObject());
    recorder->lines.push_back(statement->getLine());
    if (statement->getLine() == recorder->stopLine) recorder->executer->stop();
}

struct Program {
    CodeParser parser;
    Executer executer{&parser};
    CapturedStreams streams;

    explicit Program(const char* source) { EXPECT_STREQ(parser.parseText(source, 1).asCharPointer(), ""); }
    std::string run(int* stopped = 0) {
        String message;
        int stoppedResult = 0;
        executer.run(message, stoppedResult);
        if (stopped) *stopped = stoppedResult;
        return message.asCharPointer();
    }
};

const char* const COUNTING =
    "int total = 0;\n"                   // 1
    "void add(int k) {\n"                // 2
    "    total += k;\n"                  // 3
    "}\n"                                // 4
    "int main() {\n"                     // 5
    "    for (int i = 0; i < 3; i++)\n"  // 6
    "        add(i);\n"                  // 7
    "    cout << total;\n"               // 8
    "    return 0;\n"                    // 9
    "}\n";

TEST(ExecuterTest, everyStatementAndCallIsNotified) {
    Program p(COUNTING);
    LineRecorder lines;
    lines.executer = &p.executer;
    recorder = &lines;
    p.executer.addCback(TRACE_EXEC, recordLine);
    EXPECT_EQ(p.run(), "");
    EXPECT_EQ(p.streams.out.str(), "3");
    // The global, main's call, the for and its first part, then per pass the body's
    // statement, add's call, its statement and the increment; then the output and the return.
    EXPECT_EQ(lines.lines, (std::vector<int>{1, 5, 6, 6, 7, 7, 3, 6, 7, 7, 3, 6, 7, 7, 3, 6, 8, 9}));
    recorder = 0;
}

TEST(ExecuterTest, stopFromTheNotificationEndsTheRunQuietly) {
    Program p(COUNTING);
    LineRecorder lines;
    lines.executer = &p.executer;
    lines.stopLine = 3;
    recorder = &lines;
    p.executer.addCback(TRACE_EXEC, recordLine);
    int stopped = 0;
    EXPECT_EQ(p.run(&stopped), "");
    EXPECT_EQ(stopped, 1);
    EXPECT_EQ(p.streams.out.str(), "");
    EXPECT_TRUE(p.executer.isStopped());
    recorder = 0;
}

TEST(ExecuterTest, exitInsideAnExpressionStopsEverything) {
    Program p(
        "int f() { exit; return 1; }\n"
        "int main() { cout << \"a\"; for (int i = 0; i < 3; i++) { cout << i + f(); } cout << \"b\"; return "
        "0; }");
    int stopped = 0;
    EXPECT_EQ(p.run(&stopped), "");
    EXPECT_EQ(stopped, 1);
    EXPECT_EQ(p.streams.out.str(), "a");
}

TEST(ExecuterTest, eachRunStartsFromFreshGlobals) {
    Program p("int n = 1;\nint main() { n = n * 5; cout << n; return 0; }");
    EXPECT_EQ(p.run(), "");
    EXPECT_EQ(p.run(), "");
    EXPECT_EQ(p.streams.out.str(), "55");
    // After the run the globals stay for inspection.
    EXPECT_STREQ(p.executer.printVariable("n").asCharPointer(), "n = \"5\"");
    EXPECT_STREQ(p.executer.printVariable("nothing").asCharPointer(), "nothing: unknown variable name.");
    EXPECT_EQ(p.executer.getVariable("nothing", 1), nullptr);
}

TEST(ExecuterTest, anErrorLeavesTheGlobalsAndNoFrames) {
    Program p("int n = 1;\nint a[2];\nint f(int i) { n = 7; return a[i]; }\nint main() { return f(4); }");
    EXPECT_EQ(
        p.run(),
        "[PARSE ERROR] Run time error, index 4 out of range At line 3 on statement ReturnStatement Return 3 "
        "[a i []]");
    EXPECT_STREQ(p.executer.printVariable("n").asCharPointer(), "n = \"7\"");
    EXPECT_EQ(p.executer.getVariable("i", 1), nullptr);
}

TEST(ExecuterTest, functionsAreCalledFromOutsideWithValuesAndReferences) {
    Program p(
        "int calls = 0;\nint bump(int& x, int by) { calls++; x = x + by; return x; }\nint main() { return 0; "
        "}");
    EXPECT_EQ(p.run(), "");
    FuncDeclare* bump = static_cast<FuncDeclare*>(p.parser.getFunctions().at(0));
    IntVar x(1), by(10);
    OrderedCltn arguments;
    arguments.add(x);
    arguments.add(by);
    String message;
    int stopped = 0;
    std::unique_ptr<Variable> result(p.executer.callFunction(bump, arguments, message, stopped));
    EXPECT_STREQ(message.asCharPointer(), "");
    EXPECT_EQ(x.getValue(), 11);
    EXPECT_STREQ(result->getValueString().asCharPointer(), "11");
    EXPECT_STREQ(p.executer.printVariable("calls").asCharPointer(), "calls = \"1\"");
    OrderedCltn found;
    found.add(x);
    found.add(by);
    EXPECT_EQ(p.parser.findFunction("bump", found, 1), nullptr);  // x is no reference
    EXPECT_EQ(p.parser.findFunction("none", arguments, 1), nullptr);
}

TEST(ExecuterTest, residentModeKeepsVariablesBetweenLines) {
    CodeParser parser;
    Executer executer(&parser);
    CapturedStreams streams;
    const char* source = "int base = 10;\nint sq(int v) { return v * v; }\n";
    struct Line {
        const char* text;
        const char* message;
    };
    const Line lines[] = {
        {"int x = sq(3)", ""},
        {"x = x + base", ""},
        {"cout << x << endl", ""},
        {"float x = 0.5", ""},  // a new type for x
        {"cout << x * 2 << endl", ""},
        {"base = base + 1", ""},
        {"char y = x",
         "[PARSE ERROR] Unknown constructor call for object y from args (float) at line 1 on token ; "
         "ScanOperator"},
        {"cout << base", ""},
        {"int a[2]; a[2] = 1",
         "[PARSE ERROR] Run time error, index 2 out of range At line 1 on statement ExprElement a "
         "1 [a 2 [] 1 =] of type int Value -1"},
    };
    for (const Line& line : lines) {
        SCOPED_TRACE(line.text);
        EXPECT_STREQ(executer.evaluate(source, line.text).asCharPointer(), line.message);
    }
    EXPECT_EQ(streams.out.str(), "19\n1\n11");
    EXPECT_STREQ(executer.printVariable("x").asCharPointer(), "x = \"0.5\"");
    // Another source starts afresh.
    EXPECT_STREQ(executer.evaluate("int other = 2;", "cout << other").asCharPointer(), "");
    EXPECT_EQ(executer.getVariable("x", 1), nullptr);
    EXPECT_STREQ(executer.evaluate("int other = 2;", "cout << base").asCharPointer(),
                 "[PARSE ERROR] Unexpected identifier at line 1 on token base ScanIdentifier");
}

Variable* twice(Executer&, const String&, OrderedCltn& arguments) {
    return new IntVar(
        2 * static_cast<IntVar*>(Variable::dereference(Variable::argumentAt(arguments, 0)))->getValue());
}

TEST(ExecuterTest, builtinsAddedByOtherLibrariesAndTheirTypes) {
    Executer::addBuiltin("twiceTest", "int", {"int"}, twice);
    Executer::addBuiltin("unknownTypeTest", "NoSuchType", {"int"}, twice);
    ProgramRun r = runText("int main() { cout << twiceTest(21) << \" \" << sqrt(2.25); return 0; }");
    EXPECT_EQ(r.message, "");
    EXPECT_EQ(r.out, "42 1.5");
    r = runText("int main() { unknownTypeTest(1); return 0; }");
    EXPECT_EQ(r.message, "[PARSE ERROR] Unexpected token at line 1 on token unknownTypeTest ScanIdentifier");
    // Two Executers on one parser share its declarations of the built-ins.
    CodeParser parser;
    Executer first(&parser), second(&parser);
    EXPECT_EQ(first.getBuiltins().size(), second.getBuiltins().size());
    EXPECT_TRUE(parser.isExternalFunction("twiceTest"));
}

// The residual of A'P + PA + B'B (or of the discrete form), relative to |B'B|.
double lyapunovResidual(const Matrix& A, const Matrix& B, const Matrix& P, bool discrete) {
    Matrix Q = B.transpose() * B;
    Matrix R = discrete ? A.transpose() * P * A - P + Q : A.transpose() * P + P * A + Q;
    double worst = 0.0, scale = 0.0;
    for (unsigned i = 0; i < R.rowNumber(); ++i)
        for (unsigned j = 0; j < R.columnNumber(); ++j) {
            worst = std::max(worst, std::fabs(R(i, j)));
            scale = std::max(scale, std::fabs(Q(i, j)));
        }
    return worst / scale;
}

TEST(ExecuterTest, lyapunovCoresSolveTheirEquations) {
    Executer executer;
    Matrix A("[-1 2;0 -3]"), B("[1 1]");
    Matrix P = executer.lyapunovSolution(A, B, false);
    EXPECT_LT(lyapunovResidual(A, B, P, false), 1e-6);
    Matrix Ad("[0.5 0.1;0 -0.4]"), Bd("[1 0;0 2;1 1]");
    Matrix Pd = executer.lyapunovSolution(Ad, Bd, true);
    EXPECT_LT(lyapunovResidual(Ad, Bd, Pd, true), 1e-5);
}

TEST(ExecuterTest, leastSquaresAndCholesky) {
    Executer executer;
    // x + y = 3, x - y = 1, 2x = 4: exactly x = 2, y = 1, without residual.
    Matrix A("[1 1;1 -1;2 0]"), b("[3;1;4]");
    double deviation = executer.leastSquares(A, b, -1);
    EXPECT_NEAR(deviation, 0.0, 1e-12);
    EXPECT_NEAR(b(0, 0), 2.0, 1e-12);
    EXPECT_NEAR(b(1, 0), 1.0, 1e-12);
    EXPECT_NEAR(A(1, 0), 0.0, 1e-12);  // A came back triangular
    Matrix wrong("[1;2]");
    Matrix three("[1;2;3]");
    try {
        executer.leastSquares(three, wrong, -1);
        ADD_FAILURE() << "rows of different number accepted";
    } catch (TarnException* e) {
        delete e;
    }
    Matrix spd("[4 2;2 3]");
    Matrix R = executer.cholesky(spd);
    Matrix back = R.transpose() * R;
    EXPECT_NEAR(back(0, 1), 2.0, 1e-12);
    EXPECT_NEAR(back(1, 1), 3.0, 1e-12);
    CapturedStreams streams;
    Matrix indefinite("[1 2;2 1]");
    Matrix same = executer.cholesky(indefinite);
    EXPECT_EQ(streams.out.str(), "the matrix cannot be decomposed\n");
    EXPECT_TRUE(same.isEqual(indefinite));
}

}  // namespace
