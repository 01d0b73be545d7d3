// Operator: the codes of the tokens, their printed names and their classes.
#include "interpreter/operator.h"

#include <cstring>
#include <ostream>

#include "quill/quillstr.h"

DEFINE_CLASS(Operator, Object, 1, 0)

namespace {

struct CodeText {
    int code;
    const char* text;
};

// ORDER OPERATOR
const CodeText singleCharacter[] = {
    {OP_GROUP, "("},  {OP_INDEX, "["},       {OP_ASSIGN, "="},     {OP_BIT_OR, "|"},     {OP_BIT_AND, "&"},
    {OP_GT, ">"},     {OP_LT, "<"},          {OP_ADD, "+"},        {OP_SUB, "-"},        {OP_MUL, "*"},
    {OP_DIV, "/"},    {OP_MOD, "%"},         {OP_NOT, "!"},        {OP_COMPLEMENT, "~"}, {OP_POWER, "^"},
    {OP_MEMBER, "."}, {OP_GROUP_CLOSE, ")"}, {OP_INDEX_CLOSE, "]"}};

// Two characters ending in '=', found by the first.
const CodeText withEquals[] = {{OP_NE, "!="},         {OP_MOD_ASSIGN, "%="}, {OP_AND_ASSIGN, "&="},
                               {OP_MUL_ASSIGN, "*="}, {OP_ADD_ASSIGN, "+="}, {OP_SUB_ASSIGN, "-="},
                               {OP_DIV_ASSIGN, "/="}, {OP_LE, "<="},         {OP_EQ, "=="},
                               {OP_GE, ">="},         {OP_XOR_ASSIGN, "^="}, {OP_OR_ASSIGN, "|="}};

// The other longer tokens, compared in this order.
const CodeText longer[] = {{OP_OR, "||"},      {OP_AND, "&&"}, {OP_SHR_ASSIGN, ">>="}, {OP_SHL_ASSIGN, "<<="},
                           {OP_SHR, ">>"},     {OP_SHL, "<<"}, {OP_PRE_INC, "++"},     {OP_PRE_DEC, "--"},
                           {OP_ELEMENT, "[]"}, {OP_CALL, "()"}};

// Names that only printing uses.
const CodeText printedOnly[] = {
    {OP_PLUS, "+u"}, {OP_MINUS, "-u"}, {OP_POST_INC, "p++"}, {OP_POST_DEC, "p--"}};

template <size_t N>
const CodeText* findCode(const CodeText (&table)[N], int code) {
    for (const CodeText& entry : table)
        if (entry.code == code) return &entry;
    return 0;
}

}  // namespace

Operator::Operator(const String& text) : code(codeOf(text.asCharPointer())) {}

int Operator::codeOf(const char* token) {
    size_t length = std::strlen(token);
    if (length == 1) {
        for (const CodeText& entry : singleCharacter)
            if (entry.text[0] == token[0]) return entry.code;
        return OP_NONE;
    }
    if (length == 2 && token[1] == '=') {
        for (const CodeText& entry : withEquals)
            if (entry.text[0] == token[0]) return entry.code;
        return OP_NONE;
    }
    for (const CodeText& entry : longer)
        if (std::strcmp(entry.text, token) == 0) return entry.code;
    return OP_NONE;
}

const char* Operator::textOf(int code) {
    if (code == OP_PRE_INC) return "++p";
    if (code == OP_PRE_DEC) return "--p";
    for (const CodeText* found : {findCode(singleCharacter, code), findCode(withEquals, code),
                                  findCode(longer, code), findCode(printedOnly, code)})
        if (found) return found->text;
    return "";
}

bool Operator::isBits(int code) {
    return code == OP_SHR_ASSIGN || code == OP_SHL_ASSIGN || code == OP_SHR || code == OP_SHL ||
           (code >= OP_BIT_OR && code <= OP_BIT_AND) || code == OP_COMPLEMENT || code == OP_POWER;
}

int Operator::assignedOperation(int code) {
    switch (code) {
        case OP_ADD_ASSIGN:
            return OP_ADD;
        case OP_SUB_ASSIGN:
            return OP_SUB;
        case OP_MUL_ASSIGN:
            return OP_MUL;
        case OP_DIV_ASSIGN:
            return OP_DIV;
        case OP_MOD_ASSIGN:
            return OP_MOD;
        case OP_OR_ASSIGN:
            return OP_BIT_OR;
        case OP_XOR_ASSIGN:
            return OP_XOR_ASSIGN;
        case OP_AND_ASSIGN:
            return OP_BIT_AND;
        case OP_SHR_ASSIGN:
            return OP_SHR;
        case OP_SHL_ASSIGN:
            return OP_SHL;
        default:
            return OP_NONE;
    }
}

bool Operator::isEqual(const Object& ob) const {
    return ob.isKindOf(class_Operator) && static_cast<const Operator&>(ob).code == code;
}

int Operator::compare(const Object& ob) const {
    if (!ob.isKindOf(class_Operator)) return 1;
    return priority() - static_cast<const Operator&>(ob).priority();
}

void Operator::printOn(std::ostream& os) const { os << text(); }
