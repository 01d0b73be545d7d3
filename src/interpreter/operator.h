// Operator, a code of the interpreted language whose quotient by 100 is its priority.
#ifndef INTERPRETER_OPERATOR_H
#define INTERPRETER_OPERATOR_H

#include <cstdint>

#include "quill/object.h"
#include "quill/qclass.h"

class String;

extern Class class_Operator;

// The codes; greater hundreds bind tighter. ORDER OPERATOR: the tables of operator.cpp.
enum OperatorCode {
    OP_NONE = 0,
    OP_GROUP = 1,  // (
    OP_INDEX = 2,  // [
    OP_ASSIGN = 100,
    OP_ADD_ASSIGN = 101,
    OP_SUB_ASSIGN = 102,
    OP_MUL_ASSIGN = 103,
    OP_DIV_ASSIGN = 104,
    OP_MOD_ASSIGN = 105,
    OP_OR_ASSIGN = 106,
    OP_XOR_ASSIGN = 107,
    OP_AND_ASSIGN = 108,
    OP_SHR_ASSIGN = 109,
    OP_SHL_ASSIGN = 110,
    OP_OR = 200,
    OP_AND = 300,
    OP_BIT_OR = 400,
    OP_BIT_AND = 600,
    OP_EQ = 700,
    OP_NE = 701,
    OP_GT = 800,
    OP_LT = 801,
    OP_GE = 802,
    OP_LE = 803,
    OP_SHR = 900,
    OP_SHL = 901,
    OP_ADD = 1000,
    OP_SUB = 1001,
    OP_MUL = 1100,
    OP_DIV = 1101,
    OP_MOD = 1102,
    OP_NOT = 1300,
    OP_COMPLEMENT = 1301,
    OP_PLUS = 1302,
    OP_MINUS = 1303,
    OP_PRE_INC = 1304,
    OP_PRE_DEC = 1305,
    OP_POST_INC = 1306,
    OP_POST_DEC = 1307,
    OP_POWER = 1400,
    OP_MEMBER = 1500,
    OP_ELEMENT = 1501,
    OP_CALL = 1502,
    OP_GROUP_CLOSE = 2000,
    OP_INDEX_CLOSE = 2001
};

class Operator : public Object {
    DECLARE_MEMBERS(Operator)
public:
    explicit Operator(int code = OP_NONE) : code(code) {}
    // The code of a token by the rule of codeOf.
    explicit Operator(const String& text);

    int getCode() const { return code; }
    int priority() const { return code / 100; }
    const char* text() const { return textOf(code); }

    // Equality is on the code, order on the priority.
    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override { return unsigned(code); }
    void printOn(std::ostream& os) const override;

    // A one-character token by the table; a two-character one ending in '=' by its
    // first character; the others by full comparison; anything else is 0
    // (->, ::, ? among them). ++ and -- give the prefix codes.
    static int codeOf(const char* token);
    // The printed name of a code: +u, -u, ++p, p++ ... for the unary forms; "" for an unknown code.
    static const char* textOf(int code);

    static bool isAssign(int code) { return code >= 100 && code < 200; }
    static bool isUnary(int code) { return code >= 1300 && code < 1399; }
    static bool isComparison(int code) { return code >= 700 && code <= 803; }
    static bool isLogical(int code) {
        return code == OP_OR || code == OP_AND || isComparison(code) || code == OP_NOT;
    }
    static bool isBits(int code);
    static bool isArithmetic(int code) { return code >= 1000 && code <= 1102; }
    static bool isArithmeticAssign(int code) { return code >= 100 && code <= 104; }
    static bool isPrefix(int code) { return code / 100 == 10 || code / 100 == 13; }
    // The unary form of a prefix-capable code: + and - become +u and -u.
    static int toUnary(int code) { return code / 100 == 10 ? code + 302 : code; }
    // The plain operator an assignment form stands for: += gives +; = gives 0.
    static int assignedOperation(int code);

private:
    std::int32_t code;
};

#endif
