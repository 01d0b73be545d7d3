// EvalStep, one postfix element of an Expression as the executer meets it, sorted out once.
#ifndef INTERPRETER_EVALSTEP_H
#define INTERPRETER_EVALSTEP_H

class Class;
class Object;

// The element's class and what the evaluation reads from it, so that an
// evaluation tests no class and reads no collection. Level and index of a
// variable are read through its declaration at each use.
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
};

#endif
