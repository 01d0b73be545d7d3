// Values and run-time types: conversion ranks and constructors, operator results, increments,
// literals, references and liveness, arrays, structs and output streams.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "interpreter/all.h"
#include "quill/quillerr.h"

namespace {

Variable* type(const char* name) { return Variable::findType(name); }

// The message of the error that body raises, or "" when none.
template <class Body>
std::string raised(Body body) {
    try {
        body();
    } catch (TarnException* e) {
        std::string message = e->what();
        delete e;
        return message;
    }
    return "";
}

// The type and the display of a new value, which is deleted; a char shows its code.
std::string value(Variable* v) {
    std::unique_ptr<Variable> owned(v);
    std::string shown = v->isKindOf(class_CharVar) ? std::to_string(static_cast<CharVar*>(v)->getValue())
                                                   : v->getValueString().asCharPointer();
    return std::string(v->getType().asCharPointer()) + " " + shown;
}

TEST(ValuesTest, ranksAndTypeNames) {
    struct Rank {
        const char* type;
        int level;
    };
    for (Rank r : {Rank{"char", 21}, Rank{"int", 22}, Rank{"float", 23}, Rank{"string", 100},
                   Rank{"void", 200}, Rank{"ostream", 200}}) {
        SCOPED_TRACE(r.type);
        ASSERT_NE(type(r.type), nullptr);
        EXPECT_EQ(type(r.type)->getLevel(), r.level);
        EXPECT_STREQ(type(r.type)->getType().asCharPointer(), r.type);
    }
    ArrayVar array(type("int"), 3);
    EXPECT_EQ(array.getLevel(), 50);
    EXPECT_STREQ(array.getType().asCharPointer(), "int[3]");
    EXPECT_EQ(Variable::voidType(), type("void"));
}

TEST(ValuesTest, oneArgumentConstructors) {
    IntVar small(65), large(300), prototype(0);
    FloatVar real(1.5);
    CharVar letter('a');
    StringVar text("x");
    struct Row {
        const char* target;
        Variable* argument;
        int index;
    };
    const Row rows[] = {
        {"int", &real, 1},      {"int", &letter, 1},     {"int", &text, -1},   {"char", &small, 1},
        {"char", &large, -1},   {"char", &prototype, 1}, {"char", &real, -1},  {"char", &letter, 1},
        {"float", &letter, 1},  {"float", &small, 1},    {"float", &text, -1}, {"string", &text, 1},
        {"string", &small, -1}, {"void", &small, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.target) + " from " + row.argument->getType().asCharPointer());
        OrderedCltn arguments;
        arguments.add(*row.argument);
        EXPECT_EQ(type(row.target)->constructorIndex(arguments), row.index);
    }
    OrderedCltn none;
    EXPECT_EQ(type("int")->constructorIndex(none), 0);
    EXPECT_TRUE(small.canConvertTo(type("char")));
    EXPECT_FALSE(large.canConvertTo(type("char")));
    EXPECT_FALSE(small.canConvertTo(type("float")));
    EXPECT_EQ(raised([&] { delete large.convertTo(type("char")); }),
              "[PARSE ERROR] Cannot implicit cast int to char");
}

TEST(ValuesTest, constructionTruncatesTowardZero) {
    for (double x : {3.7, -3.7, 0.0}) {
        IntVar i;
        FloatVar f(x);
        OrderedCltn arguments;
        arguments.add(f);
        std::int32_t errorFlag = 0;
        i.execConstructor(1, arguments, errorFlag);
        EXPECT_EQ(i.getValue(), int(x));
    }
    EXPECT_EQ(ScalarVar::truncate(4294967297.0), 1);
    EXPECT_EQ(ScalarVar::truncate(2147483648.0), -2147483647 - 1);
    EXPECT_EQ(ScalarVar::truncate(1e300), 0);
}

struct OperationRow {
    Variable* left;
    int op;
    Variable* right;
    const char* result;
};

TEST(ValuesTest, binaryOperationsAndDoubleDispatch) {
    IntVar seven(7), two(2), minusSeven(-7), three(3), max(2147483647), one(1), minusOne(-1);
    FloatVar half(0.5), twoAndHalf(2.5), twoReal(2.0);
    CharVar a('a'), b('b'), hundred(100);
    StringVar abc("abc"), abd("abd");
    const OperationRow rows[] = {
        {&seven, OP_DIV, &two, "int 3"},
        {&minusSeven, OP_DIV, &two, "int -3"},
        {&minusSeven, OP_MOD, &three, "int -1"},
        {&seven, OP_ADD, &twoAndHalf, "float 9.5"},
        {&twoAndHalf, OP_ADD, &seven, "float 9.5"},
        {&seven, OP_SUB, &twoAndHalf, "float 4.5"},
        {&a, OP_ADD, &one, "int 98"},
        {&hundred, OP_ADD, &hundred, "char -56"},
        {&two, OP_POWER, &three, "int 8"},
        {&two, OP_POWER, &minusOne, "int 0"},
        {&twoReal, OP_POWER, &half, "float 1.41421"},
        {&max, OP_ADD, &one, "int -2147483648"},
        {&seven, OP_BIT_AND, &three, "int 3"},
        {&seven, OP_BIT_OR, &two, "int 7"},
        {&seven, OP_LT, &twoAndHalf, "char 0"},
        {&twoAndHalf, OP_LT, &seven, "char 1"},
        {&a, OP_LT, &b, "char 1"},
        {&abc, OP_LT, &abd, "char 1"},
        {&abc, OP_EQ, &abc, "char 1"},
        {&abc, OP_ADD, &abd, "string abcabd"},
        {&seven, OP_AND, &half, "char 1"},
        {&minusOne, OP_OR, &minusOne, "char 1"},
    };
    for (const OperationRow& row : rows) {
        SCOPED_TRACE(std::string(row.left->getValueString().asCharPointer()) + " " +
                     Operator::textOf(row.op) + " " + row.right->getValueString().asCharPointer());
        EXPECT_EQ(value(row.left->doOperation(row.right, row.op, 0)), row.result);
    }
}

TEST(ValuesTest, assignmentsStoreAndAnswerTheVariable) {
    IntVar x(5), three(3), thirtyThree(33), minusEight(-8), one(1);
    EXPECT_EQ(x.doOperation(&three, OP_XOR_ASSIGN, 0), &x);
    EXPECT_EQ(x.getValue(), 6);
    IntVar y(1);
    y.doOperation(&thirtyThree, OP_SHL_ASSIGN, 0);  // the count is masked to 5 bits
    EXPECT_EQ(y.getValue(), 2);
    minusEight.doOperation(&one, OP_SHR_ASSIGN, 0);
    EXPECT_EQ(minusEight.getValue(), -4);
    CharVar c('a');
    IntVar small(66), large(300);
    EXPECT_EQ(c.doOperation(&small, OP_ASSIGN, 0), &c);
    EXPECT_EQ(c.getValue(), 'B');
    EXPECT_EQ(raised([&] { c.doOperation(&large, OP_ASSIGN, 0); }),
              "[PARSE ERROR] Cannot do operation = between char and int");
    FloatVar f(1.0);
    EXPECT_EQ(raised([&] { f.doOperation(&three, OP_MOD_ASSIGN, 0); }),
              "[PARSE ERROR] Cannot do operation %= between float and int");
    StringVar s("a"), t("b");
    EXPECT_EQ(raised([&] { s.doOperation(&t, OP_ADD_ASSIGN, 0); }),
              "[PARSE ERROR] Cannot do operation += between string and string");
    EXPECT_EQ(raised([&] { delete s.doOperation(&three, OP_ADD, 0); }),
              "[PARSE ERROR] Cannot do operation + between string and int");
    EXPECT_EQ(raised([&] { delete three.doOperation(&s, OP_ADD, 0); }),
              "[PARSE ERROR] Cannot do operation + between int and string");
}

TEST(ValuesTest, unaryOperatorsAnswerNewValues) {
    IntVar i(5);
    EXPECT_EQ(value(i.doUnaryOperation(OP_POST_INC)), "int 5");
    EXPECT_EQ(i.getValue(), 6);
    EXPECT_EQ(value(i.doUnaryOperation(OP_PRE_DEC)), "int 5");
    EXPECT_EQ(value(i.doUnaryOperation(OP_MINUS)), "int -5");
    EXPECT_EQ(value(i.doUnaryOperation(OP_COMPLEMENT)), "int -6");
    EXPECT_EQ(value(i.doUnaryOperation(OP_NOT)), "char 0");
    FloatVar zero(0.0);
    EXPECT_EQ(value(zero.doUnaryOperation(OP_NOT)), "char 1");
    EXPECT_EQ(value(zero.doUnaryOperation(OP_PRE_INC)), "float 1");
    EXPECT_EQ(raised([&] { zero.doUnaryOperation(OP_COMPLEMENT); }),
              "[PARSE ERROR] Cannot do unary operation ~ on float");
    StringVar s("x");
    EXPECT_EQ(raised([&] { s.doUnaryOperation(OP_MINUS); }),
              "[PARSE ERROR] Cannot do unary operation -u on string");
}

TEST(ValuesTest, literalsOfCharsAndStrings) {
    struct CharRow {
        const char* literal;
        int code;
    };
    for (CharRow r : {CharRow{"'a'", 'a'}, CharRow{"'\\n'", 10}, CharRow{"'\\t'", 9}, CharRow{"'\\65'", 65},
                      CharRow{"'\\x41'", 0}, CharRow{"'\\\\'", 92}, CharRow{"'\\\"'", 34},
                      CharRow{"'\\012'", 12}, CharRow{"'\\321'", 321 - 256}}) {
        SCOPED_TRACE(r.literal);
        std::unique_ptr<CharVar> c(CharVar::fromLiteral(r.literal));
        EXPECT_EQ(c->getValue(), std::int8_t(r.code));
    }
    EXPECT_STREQ(StringVar("a\\tb\\\"c\\\\d\\65\\q").getValue().asCharPointer(), "a\tb\"c\\dA\\q");
    struct PrintRow {
        char c;
        const char* printed;
    };
    for (PrintRow r : {PrintRow{'A', "char Value 'A'"}, PrintRow{'\n', "char Value '\\n'"},
                       PrintRow{' ', "char Value '32'"}, PrintRow{'"', "char Value '\\\"'"}}) {
        std::ostringstream os;
        os << CharVar(r.c);
        EXPECT_EQ(os.str(), r.printed);
    }
}

TEST(ValuesTest, referencesCountAndForward) {
    IntVar target(4);
    target.setName("t");
    unsigned live = Variable::liveVariables().size();
    {
        VarReference ref(&target);
        VarReference again(&target);
        EXPECT_EQ(target.references(), 2);
        EXPECT_STREQ(ref.getName().asCharPointer(), "t&");
        IntVar nine(9);
        // An operation that answers the referred variable answers the reference.
        EXPECT_EQ(ref.doOperation(&nine, OP_ASSIGN, 0), &ref);
        EXPECT_EQ(target.getValue(), 9);
        EXPECT_EQ(Variable::dereference(&ref), &target);
        EXPECT_EQ(Variable::liveVariables().size(), live + 3);
        std::unique_ptr<Variable> copy(ref.clone());
        EXPECT_EQ(target.references(), 3);
    }
    EXPECT_EQ(target.references(), 0);
    EXPECT_EQ(Variable::liveVariables().size(), live);
    // Variables are found by name in collections.
    OrderedCltn named;
    named.add(target);
    EXPECT_EQ(named.find(String("t")), &target);
}

TEST(ValuesTest, arraysCheckTheirIndexAndCopyByElement) {
    ArrayVar prototype(type("int"), 3);
    std::unique_ptr<Variable> a(prototype.clone()), b(prototype.clone());
    OrderedCltn none;
    std::int32_t errorFlag = 0;
    a->execConstructor(0, none, errorFlag);
    b->execConstructor(0, none, errorFlag);
    IntVar two(2), five(5), three(3), minusOne(-1);
    FloatVar realIndex(2.9);
    std::unique_ptr<Variable> element(a->doOperation(&realIndex, OP_ELEMENT, 0));
    ASSERT_TRUE(element->isKindOf(class_VarReference));
    EXPECT_EQ(element->doOperation(&five, OP_ASSIGN, 0), element.get());
    EXPECT_EQ(b->doOperation(a.get(), OP_ASSIGN, 0), b.get());
    element.reset();
    std::unique_ptr<Variable> copied(b->doOperation(&two, OP_ELEMENT, 0));
    EXPECT_STREQ(copied->getValueString().asCharPointer(), "5");
    copied.reset();
    for (IntVar* bad : {&three, &minusOne})
        EXPECT_EQ(raised([&] { delete a->doOperation(bad, OP_ELEMENT, 0); }),
                  std::string("[PARSE ERROR] Run time error, index ") +
                      bad->getValueString().asCharPointer() + " out of range");
    EXPECT_STREQ(b->getValueString().asCharPointer(), "int[3] = [\n  0\n  0\n  5\n]");
    ArrayVar other(type("float"), 3);
    EXPECT_EQ(raised([&] { b->doOperation(&other, OP_ASSIGN, 0); }),
              "[PARSE ERROR] Cannot do operation = between int[3] and float[3]");
    OrderedCltn sizeArguments;
    FuncDeclare* size = a->getMethod("size", sizeArguments);
    EXPECT_EQ(value(a->execMethodCall(size, sizeArguments, errorFlag)), "int 3");
}

TEST(ValuesTest, outputStreamsWriteFilesAndClose) {
    std::string path = ::testing::TempDir() + "tarn_ostream_test.txt";
    std::unique_ptr<Variable> out(type("ostream")->clone());
    StringVar name(path.c_str());
    OrderedCltn arguments;
    arguments.add(name);
    std::int32_t errorFlag = 0;
    ASSERT_EQ(out->constructorIndex(arguments), 1);
    out->execConstructor(1, arguments, errorFlag);
    IntVar number(42);
    FloatVar real(0.25);
    Object* found = Variable::predefinedVariables().find(String("endl"));
    ASSERT_NE(found, nil);
    Variable* endl = static_cast<Variable*>(found);
    EXPECT_EQ(out->doOperation(&number, OP_SHL, 0), out.get());
    out->doOperation(&real, OP_SHL, 0);
    out->doOperation(endl, OP_SHL, 0);
    OrderedCltn none;
    FuncDeclare* close = out->getMethod("close", none);
    EXPECT_EQ(value(out->execMethodCall(close, none, errorFlag)), "int 1");
    EXPECT_EQ(value(out->execMethodCall(close, none, errorFlag)), "int 0");
    std::ifstream written(path);
    std::stringstream contents;
    contents << written.rdbuf();
    EXPECT_EQ(contents.str(), "420.25\n");
    EXPECT_EQ(raised([&] { out->doOperation(&number, OP_SHL, 0); }),
              "[PARSE ERROR] Cannot write on the closed ostream ostream");
    std::remove(path.c_str());
    StringVar badName("/nonexistent/dir/file.txt");
    OrderedCltn badArguments;
    badArguments.add(badName);
    EXPECT_EQ(raised([&] { out->execConstructor(1, badArguments, errorFlag); }),
              "[PARSE ERROR] Cannot open the file /nonexistent/dir/file.txt for writing");
}

}  // namespace
