// EvalStep, one postfix element of an Expression as the executer meets it, sorted out once.
#ifndef INTERPRETER_EVALSTEP_H
#define INTERPRETER_EVALSTEP_H

#include <cstdint>

#include "interpreter/scalarapply.h"

class Class;
class Object;
class Variable;

// The element's class and what the evaluation reads from it, so that an
// evaluation tests no class and reads no collection. A variable's place is
// found through its declaration's level and index, and kept until the
// executer's mark of places moves.
struct EvalStep {
    enum Kind : unsigned char {
        UNARY,       // code
        BINARY,      // code, any but member and call
        SELECT,      // code, member or call
        VARIABLE,    // node: its VarDeclare; a scalar type's class and level
        MEMBER,      // node: the FieldDeclare
        NUMBER,      // level and value of a scalar literal; node: the literal's value
        CONSTANT,    // node: any other ConstDeclare
        CALL,        // node: the FuncCall
        METHOD,      // node: the MethodCall
        CONVERSION,  // node: the VarDeclare that makes the value
        OTHER        // nothing to do
    };
    Kind kind;
    int code;
    int level;
    double value;
    Object* node;
    const Class* type;
    mutable std::uint64_t placeMark = 0;    // VARIABLE: the mark under which place was found
    mutable Variable* place = 0;            // VARIABLE: the variable found, a reference's target when of type
    mutable int placeLevel = 0;             // VARIABLE: the rank of place's class, 0 for no scalar
    scalarops::BinaryOperations scalars{};  // BINARY: the operator on scalars of each rank
};

#endif
