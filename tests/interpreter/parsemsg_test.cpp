// Every parse message that source text can reach, each from a short program, with its line and token.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "quill/cback.h"
#include "quill/objalloc.h"
#include "quill/quillerr.h"
#include "runtext.h"

namespace {

struct Row {
    const char* source;
    const char* message;
};

void expectMessages(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.source);
        EXPECT_EQ(runText(row.source).message, row.message);
    }
}

const char* const MAIN = "\nint main() { return 0; }\n";

std::string withMain(const char* text) { return std::string(text) + MAIN; }

TEST(ParseMessageTest, declarationsAndTypes) {
    expectMessages({
        {"int ;", "[PARSE ERROR] Identifier expected at line 1 on token ; ScanOperator"},
        {"const int x;", "[PARSE ERROR] Type identifier expected at line 1 on token const ScanIdentifier"},
        {"struct { int x; };", "[PARSE ERROR] struct name expected at line 1 on token { ScanOperator"},
        {"struct A { int x; };\nstruct A { int y; };",
         "[PARSE ERROR] Type A already defined at line 2 on token A ScanIdentifier"},
        {"struct int { };", "[PARSE ERROR] Type int already defined at line 1 on token int ScanIdentifier"},
        {"struct A int x; };", "[PARSE ERROR] '{' expected at line 1 on token int ScanIdentifier"},
        {"struct A { int x; }\nint y;", "[PARSE ERROR] ';' expected at line 2 on token int ScanIdentifier"},
        {"struct A { int x, 3; };", "[PARSE ERROR] Identifier expected at line 1 on token 3 ScanDigit"},
        {"struct A { int x = y; };",
         "[PARSE ERROR] Unexpected identifier at line 1 on token y ScanIdentifier"},
        {"int g = 1;\nstruct A { int x = g; };",
         "[PARSE ERROR] Constant expression expected at line 2 on token ; ScanOperator"},
        {"typedef ;", "[PARSE ERROR] type name expected at line 1 on token ; ScanOperator"},
        {"typedef int T x;", "[PARSE ERROR] Expected ';' ','  or '[' at line 1 on token x ScanIdentifier"},
        {"typedef int ;", "[PARSE ERROR] Identifier expected at line 1 on token ; ScanOperator"},
        {"typedef void V[3];",
         "[PARSE ERROR] Cannot define a type as an array of void at line 1 on token [ ScanOperator"},
        {"enum E { A };",
         "[PARSE ERROR] Unhandled type declaration for at line 1 on token enum ScanIdentifier"},
        {"union U { int a; };",
         "[PARSE ERROR] Unhandled type declaration for at line 1 on token union ScanIdentifier"},
        {"class C { };",
         "[PARSE ERROR] Unhandled type declaration for at line 1 on token class ScanIdentifier"},
        {"\nfoo x;", "[PARSE ERROR] Type expected at line 2 on token foo ScanIdentifier"},
        {"1;", "[PARSE ERROR] Unexpected token at line 1 on token 1 ScanDigit"},
        {" #define X 1", "[PARSE ERROR] Unexpected token at line 1 on token # ScanOperator"},
        {"int x; int x;", "[PARSE ERROR] Global var x already defined at line 1 on token ; ScanOperator"},
        {"int x 3;", "[PARSE ERROR] Expected ';' ',' '(' or '[' at line 1 on token 3 ScanDigit"},
        {"int x + 3;", "[PARSE ERROR] Expected ';' ',' '(' or '[' at line 1 on token + ScanOperator"},
        {"int a[2] = 3;", "[PARSE ERROR] Expected ';' ',' '(' or '[' at line 1 on token = ScanOperator"},
        {"void x;", "[PARSE ERROR] Cannot define a variable of type void at line 1 on token ; ScanOperator"},
        {"int x = 3 );", "[PARSE ERROR] Expected ',' or ';' at line 1 on token ) ScanOperator"},
        {"int x(3 4);", "[PARSE ERROR] Expected operator at line 1 on token 4 ScanDigit"},
        {"int x(3;", "[PARSE ERROR] Expected ')' at line 1 on token ; ScanOperator"},
        {"char c = 300;",
         "[PARSE ERROR] Unknown constructor call for object c from args (int) at line 1 on token ; "
         "ScanOperator"},
        {"int n = 3;\nint a[n];",
         "[PARSE ERROR] Constant expression expected at line 2 on token ] ScanOperator"},
        {"int a[-1];",
         "[PARSE ERROR] Positive constant expression expected at line 1 on token ] ScanOperator"},
        {"int a[2;", "[PARSE ERROR] Expected ']' at line 1 on token ; ScanOperator"},
        {"int n;\nint<n> x;",
         "[PARSE ERROR] Argument of a template must be constant at line 2 on token > ScanOperator"},
        {"int<1 2> x;", "[PARSE ERROR] Expected operator at line 1 on token 2 ScanDigit"},
        {"int<3> x;", "[PARSE ERROR] Unknown template for object int from args (int)"},
    });
}

TEST(ParseMessageTest, functionsAndPrototypes) {
    expectMessages({
        {"int f() { }", "[PARSE ERROR] return expected at line 1 on token } ScanOperator"},
        {"int f() { return 1;\nint x; }",
         "[PARSE ERROR] Statement unreachable at line 2 on token int ScanIdentifier"},
        // The flag is the only test: an if has returned when both branches have, a for never.
        {"int f(int a) { if (a) return 1; else return 2;\n a = 3; }",
         "[PARSE ERROR] Statement unreachable at line 2 on token a ScanIdentifier"},
        {"int f(int a) { if (a) return 1; }",
         "[PARSE ERROR] return expected at line 1 on token } ScanOperator"},
        {"int f(int a) { for (;;) return 1; }",
         "[PARSE ERROR] return expected at line 1 on token } ScanOperator"},
        {"int f(int a) { { return 1; } a = 2; }",
         "[PARSE ERROR] Statement unreachable at line 1 on token a ScanIdentifier"},
        {"int f(int a b) { return a; }",
         "[PARSE ERROR] Expected ',' or ')' at line 1 on token b ScanIdentifier"},
        // The first parameter type is a plain look-up: no template instance there.
        {"void f(int<1> m) { }", "[PARSE ERROR] Expected ',' or ')' at line 1 on token < ScanOperator"},
        {"void f(int a, 3) { }", "[PARSE ERROR] Type expected at line 1 on token 3 ScanDigit"},
        {"int main(int a) { return 0; }",
         "[PARSE ERROR] main must have no arguments at line 1 on token ) ScanOperator"},
        {"int f() int", "[PARSE ERROR] Expected ',' ';' or '{' at line 1 on token int ScanIdentifier"},
        {"int a, f() { return 1; }", "[PARSE ERROR] Unexpected '{' at line 1 on token { ScanOperator"},
        {"int f() { return; }", "[PARSE ERROR] return without argument at line 1 on token ; ScanOperator"},
        {"float sin(float x) { return x; }",
         "[PARSE ERROR] Function sin already defined as external function at line 1 on token { ScanOperator"},
        {"int f(int);\nint f(int);",
         "[PARSE ERROR] Function f already defined at line 2 on token ; ScanOperator"},
        {"int f(int);\nfloat f(int a) { return 1.0; }",
         "[PARSE ERROR] Function implementation has a different return type from prototype:\nfloat "
         "f(int)\nint f(int) "
         "at line 2 on token { ScanOperator"},
        {"int f(int);\nint f(int a, int b) { return 1; }",
         "[PARSE ERROR] Function implementation has a different number of arguments from prototype:\nint "
         "f(int, "
         "int)\nint f(int) at line 2 on token { ScanOperator"},
        {"int f(int, float);\nint f(int a, int& b) { return 1; }",
         "[PARSE ERROR] Function implementation has the 2 argument with a different type respect the "
         "prototype:\nint "
         "f(int, int&&&)\nint f(int, float) at line 2 on token { ScanOperator"},
        {"int main() { return 0; }\nint main() { return 1; }\nvoid main();",
         "[PARSE ERROR] Function main already defined at line 3 on token ; ScanOperator"},
    });
}

TEST(ParseMessageTest, statements) {
    expectMessages({
        {"int main() { int x; int x; return 0; }",
         "[PARSE ERROR] Local var x already defined in that block of code at line 1 on token ; ScanOperator"},
        {"int main() { 3; return 0; }", "[PARSE ERROR] Unexpected token at line 1 on token 3 ScanDigit"},
        {"int main() { ++i; return 0; }",
         "[PARSE ERROR] Unexpected token at line 1 on token ++ ScanOperator"},
        // break and continue outside a for are plain identifiers.
        {"int main() { break; return 0; }",
         "[PARSE ERROR] Unexpected token at line 1 on token break ScanIdentifier"},
        {"int main() {\n return 0", "[PARSE ERROR] Expected operator at line 2 on token  ScanEOF"},
        {"int main() { int i; for i; return 0; }",
         "[PARSE ERROR] Expected '(' at the start of a FOR statement at line 1 on token i ScanIdentifier"},
        {"int main() { int i; for (i = 0 i < 3; i++) ; return 0; }",
         "[PARSE ERROR] Expected operator at line 1 on token i ScanIdentifier"},
        {"int main() { int i; for (i = 0; i < 3 i++) ; return 0; }",
         "[PARSE ERROR] Expected operator at line 1 on token i ScanIdentifier"},
        {"int main() { int i; for (i = 0; i < 3; i++; return 0; }",
         "[PARSE ERROR] Expected ')'  at the end of a FOR statement at line 1 on token ; ScanOperator"},
        {"int main() { int i; for (i = 0, i < 3; i++) ; return 0; }",
         "[PARSE ERROR] ';' expected at line 1 on token , ScanOperator"},
        {"int main() { int i; if i; return 0; }",
         "[PARSE ERROR] Expected '(' at the start of a IF statement at line 1 on token i ScanIdentifier"},
        {"int main() { int i; if (i; return 0; }",
         "[PARSE ERROR] ')' expected at line 1 on token ; ScanOperator"},
        {"int main() { int i; i = 1 ) return 0; }",
         "[PARSE ERROR] ';' or '}' expected at line 1 on token ) ScanOperator"},
        {"int main() { int i = 1; if (i + 1) i = 2; return 0; }",
         "[PARSE ERROR] Unknown constructor call for object char from args (int) at line 1 on token ) "
         "ScanOperator"},
        {"int main() { if (300) exit; return 0; }",
         "[PARSE ERROR] Unknown constructor call for object char from args (int) at line 1 on token ) "
         "ScanOperator"},
        {"int main() { float f; if (f) exit; return 0; }",
         "[PARSE ERROR] Unknown constructor call for object char from args (float) at line 1 on token ) "
         "ScanOperator"},
        {"int main() { return \"x\"; }",
         "[PARSE ERROR] Unknown constructor call for object int from args (string) at line 1 on token ; "
         "ScanOperator"},
        {"void f() { return 1; }\nint main() { return 0; }",
         "[PARSE ERROR] Unknown constructor call for object void from args (int) at line 1 on token ; "
         "ScanOperator"},
    });
}

TEST(ParseMessageTest, expressions) {
    expectMessages({
        {withMain("int x = ;").c_str(), "[PARSE ERROR] Unknown operator at line 1 on token ; ScanOperator"},
        {withMain("int x = ? 1;").c_str(),
         "[PARSE ERROR] Unknown operator at line 1 on token ? ScanOperator"},
        {withMain("int x = * 2;").c_str(),
         "[PARSE ERROR] Unexpected binary operator at line 1 on token * ScanOperator"},
        {withMain("int x = 1 2;").c_str(), "[PARSE ERROR] Expected operator at line 1 on token 2 ScanDigit"},
        {withMain("int x = 1 ! 2;").c_str(),
         "[PARSE ERROR] Unexpected unary operator at line 1 on token ! ScanOperator"},
        {withMain("int x = 1 { 2;").c_str(),
         "[PARSE ERROR] Unexpected operator at line 1 on token { ScanOperator"},
        {withMain("int x = ++3;").c_str(),
         "[PARSE ERROR] Expected variable identifier at line 1 on token 3 ScanDigit"},
        {withMain("int x = ++y;").c_str(),
         "[PARSE ERROR] Unexpected identifier at line 1 on token y ScanIdentifier"},
        {withMain("int x = y + 1;").c_str(),
         "[PARSE ERROR] Unexpected identifier at line 1 on token y ScanIdentifier"},
        {"int f() { return 1; }\nint x = ++f;",
         "[PARSE ERROR] Expected variable at line 2 on token f ScanIdentifier"},
        {withMain("int x = void(3);").c_str(),
         "[PARSE ERROR] Cannot cast to a variable of type void at line 1 on token void ScanIdentifier"},
        {withMain("int x = int 3;").c_str(), "[PARSE ERROR] Expected '(' at line 1 on token 3 ScanDigit"},
        {withMain("int x = int();").c_str(), "[PARSE ERROR] Expected '(' at line 1 on token () ScanOperator"},
        {"int f() { return 1; }\nint x = f;", "[PARSE ERROR] Expected '(' at line 2 on token ; ScanOperator"},
        {"int f(int a) { return a; }\nint x = f();",
         "[PARSE ERROR] Function f needs arguments at line 2 on token () ScanOperator"},
        {"int f(int a, int b) { return a; }\nint x = f(1);",
         "[PARSE ERROR] Expected ',' at line 2 on token ) ScanOperator"},
        {"int f(int a, int b) { return a; }\nint x = f(1, 2, 3);",
         "[PARSE ERROR] Expected ')' at line 2 on token , ScanOperator"},
        {"void f(int& a) { }\nint main() { f(1); return 0; }",
         "[PARSE ERROR] A left-value element must used to assign to a reference at line 2 on token ) "
         "ScanOperator"},
        {"void f(int& a) { }\nint main() { float y; f(y); return 0; }",
         "[PARSE ERROR] Cannot initialize a reference to int with float at line 2 on token ) ScanOperator"},
        {"void f(int a) { }\nint main() { f(\"s\"); return 0; }",
         "[PARSE ERROR] Unknown constructor call for object a from args (string) at line 2 on token ) "
         "ScanOperator"},
        // With a blank inside, "( )" calls without arguments and leaves its ')' to end the statement.
        {"int f() { return 1; }\nint main() { f( ); return 0; }",
         "[PARSE ERROR] ';' or '}' expected at line 2 on token ) ScanOperator"},
        {withMain("int x; int y = x[1];").c_str(),
         "[PARSE ERROR] Type int is not a vector at line 1 on token [ ScanOperator"},
        {withMain("int a[3]; int y = a[1;").c_str(),
         "[PARSE ERROR] Expected ']' at line 1 on token ; ScanOperator"},
        {"struct P { int x; };\nP p; int y = p.(1);",
         "[PARSE ERROR] Expected object field identifier at line 2 on token ( ScanOperator"},
        {"int main() { int x; x %= 2; return 0; }",
         "[PARSE ERROR] Unexpected binary operator at line 1 on token = ScanOperator"},
        {withMain("int i; float f = 1.5; int j = i = f;").c_str(),
         "[PARSE ERROR] Cannot do operation = between int and float"},
        // The static type of arithmetic holds -1, which no char takes.
        {withMain("char e = 90; char f = e + 1;").c_str(),
         "[PARSE ERROR] Unknown constructor call for object f from args (int) at line 1 on token ; "
         "ScanOperator"},
        {withMain("char e = 90; int g = e = e + 1;").c_str(),
         "[PARSE ERROR] Cannot do operation = between char and int"},
        {withMain("string s = \"a\" + 1;").c_str(),
         "[PARSE ERROR] Cannot do operation + between string and int"},
        {withMain("float f = 1.5 % 2.0;").c_str(),
         "[PARSE ERROR] Cannot do operation % between float and float"},
        {withMain("int i = 1 << 2;").c_str(), "[PARSE ERROR] Cannot do operation << between int and int"},
        {withMain("float f = ~1.5;").c_str(), "[PARSE ERROR] Cannot do unary operation ~ on float"},
        {"struct P { int x; };\nP p; int y = p.z;", "[PARSE ERROR] Unknown member z in type P"},
        {withMain("int i; int j = i.size();").c_str(),
         "[PARSE ERROR] Unknown method size for object int without args"},
        {withMain("int a[2]; int j = a.size(1);").c_str(),
         "[PARSE ERROR] Unknown method size for object int[2] from args (int)"},
    });
}

TEST(ParseMessageTest, macrosAndComments) {
    std::string errorStream;
    ProgramRun r = runText("#define X \\ y\nint main() { return 0; }");
    EXPECT_EQ(r.message, "[PARSE ERROR] parseMacro at line 1,14: token was y ");
    EXPECT_EQ(r.err, "Parse error parseMacro at line 1 on token y ScanIdentifier\n");
    r = runText("int main() { return 0; }\n/* open");
    EXPECT_EQ(r.message, "[PARSE ERROR] parseComment at line 2,8: token was  ");
}

TEST(ParseMessageTest, acceptedOddities) {
    // A source with only comments parses and has no main; # lines in the first
    // column, continued ones included, and includes of missing files are dropped.
    for (const char* source :
         {"/* only */ // comments\n", "#include \"missing.h\"\n#include <none.h>\n#define A \\\n  B\n"}) {
        CodeParser parser;
        Executer executer(&parser);
        EXPECT_STREQ(parser.parseText(source, 1).asCharPointer(), "") << source;
        EXPECT_EQ(parser.getMainFunction(), nullptr);
    }
    EXPECT_EQ(runText("int main() { return 0; }").message, "");
    EXPECT_EQ(
        runText("int f(int a) { if (a) return 1; else return 2; }\nint main() { return f(0); }").message, "");
    EXPECT_EQ(runText("int x;").message, "main function not found");
}

std::string readExample(const char* name) {
    std::ifstream in(std::string(TARN_EXAMPLES) + "/" + name);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

int statementBudget = 0;
Executer* budgeted = 0;

void spendStatement(Cback&) {
    if (--statementBudget <= 0) budgeted->stop();
}

// Parses the text and, when it parses, runs it for at most 2000 statements;
// answers the message, or "other: " and the message of any other error.
std::string parseAndRun(const std::string& text) {
    CodeParser parser;
    Executer executer(&parser);
    CapturedStreams quiet;
    String message = parser.parseText(text.c_str(), 1);
    if (message.size() > 0) return message.asCharPointer();
    statementBudget = 2000;
    budgeted = &executer;
    executer.addCback(TRACE_EXEC, spendStatement);
    int stopped = 0;
    try {
        executer.run(message, stopped);
    } catch (TarnException* e) {
        std::string other = std::string("other: ") + e->what();
        delete e;
        return other;
    }
    return message.asCharPointer();
}

// Every prefix of a real program, and the program with any one character left
// out, parses and runs or fails with a message of the interpreter: never a
// crash, never another error, and nothing of it stays in memory.
TEST(ParseMessageTest, damagedProgramsGiveAMessageAndLeaveNothing) {
    std::string source = readExample("hello.cxx");
    ASSERT_GT(source.size(), 100u);
    parseAndRun(source);  // the tables made on first use
    for (size_t cut = 0; cut < source.size(); ++cut) {
        for (const std::string& damaged :
             {source.substr(0, cut), source.substr(0, cut) + source.substr(cut + 1)}) {
            unsigned long before = bytesInUse();
            std::string message = parseAndRun(damaged);
            EXPECT_EQ(bytesInUse(), before) << cut << ": " << message;
            if (message.empty()) continue;
            bool ours = message.rfind("[PARSE ERROR] ", 0) == 0 ||
                        message.rfind("[RUN-TIME ERROR] ", 0) == 0 || message == "main function not found";
            EXPECT_TRUE(ours) << cut << ": " << message;
        }
    }
}

}  // namespace
