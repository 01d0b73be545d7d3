// The program tree: postfix order and static types of expressions, constants, and the
// level and index of declarations that the Executer finds variables by.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "interpreter/all.h"
#include "runtext.h"

namespace {

// A parser with the built-ins, holding a program.
struct Parsed {
    CodeParser parser;
    Executer executer{&parser};
    std::string message;

    explicit Parsed(const std::string& source) {
        message = parser.parseText(source.c_str(), 1).asCharPointer();
    }
    Statement* statement(int i) const {
        return static_cast<Statement*>(parser.getMainFunction()->getCode().at(i));
    }
};

std::string printed(const Object& ob) {
    std::ostringstream os;
    os << ob;
    return os.str();
}

struct PostfixRow {
    const char* statement;
    const char* postfix;
    const char* type;  // the static type of the result
};

TEST(CodeTreeTest, postfixOrderAndStaticType) {
    const char* declarations =
        "int a; int b; int c; float f; int m[2][3];\n"
        "struct Z { int v; }; struct Y { Z z; }; Y y;\n"
        "int g(int x) { return x; }\n";
    const PostfixRow rows[] = {
        {"a = b = c", "[a b c = =]", "int"},
        {"a - b - c", "[a b - c -]", "int"},
        {"a = 2 * (3 + 4)", "[a 2 3 4 + * =]", "int"},
        {"a = -a * b", "[a a -u b * =]", "int"},
        {"a = a ^ -b", "[a a b ^ -u =]", "int"},
        {"a = -2 ^ 2", "[a 2 2 ^ -u =]", "int"},
        {"a = 2 ^ 3 ^ 2", "[a 2 3 ^ 2 ^ =]", "int"},
        {"a += b *= c", "[a b c *= +=]", "int"},
        {"a = b < c == 1", "[a b c < 1 == =]", "int"},
        {"a = b || c && a", "[a b c a && || =]", "int"},
        {"a = b | c & a", "[a b c a & | =]", "int"},
        {"a = !b + c", "[a b ! c + =]", "int"},
        {"a = b++ + ++c", "[a b p++ c ++p + =]", "int"},
        {"a < b", "[a b <]", "char"},
        {"f * a", "[f a *]", "float"},
        {"y.z.v", "[y z . v .]", "int"},
        {"y.z.v = 1", "[y z . v . 1 =]", "int"},
        {"m[1][0] = 4", "[m 1 [] 0 [] 4 =]", "int"},
        {"m[1]", "[m 1 []]", "int[2]"},
        {"a = m.size()", "[a m size() . =]", "int"},
        {"a = int(2.5) + 1", "[a int() 1 + =]", "int"},
        {"a = g(b) * 2", "[a g() 2 * =]", "int"},
        {"cout << a << endl", "[cout a << endl <<]", "ostream"},
    };
    for (const PostfixRow& row : rows) {
        SCOPED_TRACE(row.statement);
        Parsed p(std::string(declarations) + "void main() { " + row.statement + "; }");
        ASSERT_EQ(p.message, "");
        ExprElement* e = static_cast<ExprElement*>(p.statement(0));
        EXPECT_EQ(printed(*e->getExpression()), row.postfix);
        EXPECT_STREQ(e->getType()->getType().asCharPointer(), row.type);
    }
}

// A selector chain and an assignment keep the reference: they stay left values.
TEST(CodeTreeTest, membersElementsAndStructAssignmentAreLeftValues) {
    Parsed p("struct P { int v; }; P u; P t; int m[3];\nvoid main() { u.v; m[1]; u = t; m; }");
    ASSERT_EQ(p.message, "");
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(static_cast<ExprElement*>(p.statement(i))->getType()->isKindOf(class_VarReference));
    }
}

TEST(CodeTreeTest, constantsAreEvaluatedWithoutAnExecuter) {
    Parsed p("int g = 1 + 2 * 3; int h = g + 1; float k = -2.0 ^ 2; int a[2 ^ 3];");
    ASSERT_EQ(p.message, "");
    const OrderedCltn& globals = p.parser.getGlobals();
    auto initialiser = [&](int i) {
        return static_cast<VarDeclare*>(globals.at(int(globals.size()) - 4 + i))
            ->getConstructorCall()
            ->getExpression(0);
    };
    EXPECT_TRUE(initialiser(0)->isConstant());
    EXPECT_FALSE(initialiser(1)->isConstant());
    std::unique_ptr<Variable> seven(initialiser(0)->evalConst());
    EXPECT_EQ(seven->getValueString(), String("7"));
    std::unique_ptr<Variable> minusFour(initialiser(2)->evalConst());
    EXPECT_EQ(minusFour->getValueString(), String("-4"));
    EXPECT_EQ(p.parser.evalConstInt(initialiser(0), 0), 7);
    VarDeclare* array = static_cast<VarDeclare*>(globals.last());
    EXPECT_STREQ(array->getType()->getType().asCharPointer(), "int[8]");
}

TEST(CodeTreeTest, levelsAndIndicesMirrorTheBlocks) {
    Parsed p(
        "int g;\n"
        "void f(int p, int q) { int a; { int b; int c; } for (int i = 0; i < 1; i++) { int d; } "
        "if (p) { int e; } else int h; }\n"
        "void main() { }");
    ASSERT_EQ(p.message, "");
    FuncDeclare* f = static_cast<FuncDeclare*>(p.parser.getFunctions().at(0));
    auto position = [](Object* d) {
        VarDeclare* v = static_cast<VarDeclare*>(d);
        return std::to_string(v->getLevel()) + "," + std::to_string(v->getIndex());
    };
    const OrderedCltn& globals = p.parser.getGlobals();
    EXPECT_EQ(position(globals.last()), "-1," + std::to_string(globals.size() - 1));
    EXPECT_EQ(position(f->getArgument(0)), "0,0");
    EXPECT_EQ(position(f->getArgument(1)), "0,1");
    const OrderedCltn& code = f->getCode();
    EXPECT_EQ(position(code.at(0)), "0,2");
    const OrderedCltn& block = static_cast<BlockOfCode*>(code.at(1))->getCode();
    EXPECT_EQ(position(block.at(0)), "1,0");
    EXPECT_EQ(position(block.at(1)), "1,1");
    ForStatement* loop = static_cast<ForStatement*>(code.at(2));
    EXPECT_EQ(position(loop->getAssign()), "0,3");
    BlockOfCode* body = static_cast<BlockOfCode*>(loop->getBody());
    EXPECT_EQ(position(body->getCode().at(0)), "2,0");
    IfStatement* test = static_cast<IfStatement*>(code.at(3));
    EXPECT_EQ(position(static_cast<BlockOfCode*>(test->getThen())->getCode().at(0)), "2,0");
    EXPECT_EQ(position(test->getElse()), "1,0");
    // A declaration that no table has taken has level -2.
    VarDeclare loose("x", 1, Variable::findType("int"), static_cast<ConstructorCall*>(0));
    EXPECT_EQ(loose.getLevel(), -2);
}

TEST(CodeTreeTest, declaratorListsAndPlainStatements) {
    Parsed p("void main() { int a, b = 2, c(3); for (;;) { break; continue; } exit; ; }");
    ASSERT_EQ(p.message, "");
    ListOfElement* list = static_cast<ListOfElement*>(p.statement(0));
    ASSERT_TRUE(list->isMemberOf(class_ListOfElement));
    EXPECT_EQ(list->getCode().size(), 3u);
    ForStatement* loop = static_cast<ForStatement*>(p.statement(1));
    EXPECT_TRUE(loop->getAssign()->isEmpty());
    EXPECT_TRUE(loop->getIncrement()->isEmpty());
    EXPECT_EQ(loop->getTest()->getElements().size(), 0u);
    const OrderedCltn& body = static_cast<BlockOfCode*>(loop->getBody())->getCode();
    EXPECT_TRUE(static_cast<Statement*>(body.at(0))->isBreak());
    EXPECT_TRUE(static_cast<Statement*>(body.at(1))->isContinue());
    EXPECT_TRUE(p.statement(2)->isExit());
    EXPECT_TRUE(p.statement(3)->isEmpty());
    // Only a plain Statement is one of the four.
    EXPECT_FALSE(list->isEmpty());
}

TEST(CodeTreeTest, prototypeTakesTheDefinitionsParameters) {
    Parsed p("int f(int);\nint g() { return f(2); }\nint f(int named) { return named; }\nvoid main() { }");
    ASSERT_EQ(p.message, "");
    FuncDeclare* f = static_cast<FuncDeclare*>(p.parser.getFunctions().at(0));
    EXPECT_EQ(p.parser.getFunctions().size(), 3u);
    EXPECT_STREQ(f->getArgument(0)->getName().asCharPointer(), "named");
    EXPECT_EQ(f->getCode().size(), 1u);
    EXPECT_STREQ(f->signature().asCharPointer(), "int f(int)");
}

TEST(CodeTreeTest, operatorCodesTextsAndClasses) {
    struct Code {
        const char* token;
        int code;
    };
    const Code codes[] = {{"(", 1},     {"[", 2},     {"=", 100},   {"+=", 101},  {"-=", 102}, {"*=", 103},
                          {"/=", 104},  {"%=", 105},  {"|=", 106},  {"^=", 107},  {"&=", 108}, {">>=", 109},
                          {"<<=", 110}, {"||", 200},  {"&&", 300},  {"|", 400},   {"&", 600},  {"==", 700},
                          {"!=", 701},  {">", 800},   {"<", 801},   {">=", 802},  {"<=", 803}, {">>", 900},
                          {"<<", 901},  {"+", 1000},  {"-", 1001},  {"*", 1100},  {"/", 1101}, {"%", 1102},
                          {"!", 1300},  {"~", 1301},  {"++", 1304}, {"--", 1305}, {"^", 1400}, {".", 1500},
                          {"[]", 1501}, {"()", 1502}, {")", 2000},  {"]", 2001},  {"->", 0},   {"::", 0},
                          {"?", 0},     {";", 0},     {"{", 0},     {"#", 0}};
    for (const Code& c : codes) {
        SCOPED_TRACE(c.token);
        EXPECT_EQ(Operator::codeOf(c.token), c.code);
        if (c.code) {
            EXPECT_STREQ(Operator(String(c.token)).text(), c.code == 1304   ? "++p"
                                                           : c.code == 1305 ? "--p"
                                                                            : c.token);
        }
    }
    EXPECT_STREQ(Operator::textOf(1302), "+u");
    EXPECT_STREQ(Operator::textOf(1307), "p--");
    EXPECT_TRUE(Operator::isAssign(110) && !Operator::isAssign(200));
    EXPECT_TRUE(Operator::isLogical(803) && Operator::isLogical(1300) && !Operator::isLogical(1301));
    EXPECT_TRUE(Operator::isBits(500) && Operator::isBits(1400) && Operator::isBits(109) &&
                !Operator::isBits(1000));
    EXPECT_TRUE(Operator::isArithmeticAssign(104) && !Operator::isArithmeticAssign(105));
    EXPECT_EQ(Operator::toUnary(1001), 1303);
    EXPECT_EQ(Operator::toUnary(1300), 1300);
    EXPECT_TRUE(Operator::isPrefix(1000) && Operator::isPrefix(1305) && !Operator::isPrefix(1400));
    // Equality is on the code, order on the priority.
    EXPECT_TRUE(Operator(1000).isEqual(Operator(1000)));
    EXPECT_FALSE(Operator(1000).isEqual(Operator(1001)));
    EXPECT_EQ(Operator(1000).compare(Operator(1001)), 0);
    EXPECT_LT(Operator(1000).compare(Operator(1100)), 0);
}

}  // namespace
