// ScalarPlan, an expression of scalars only, with each operation settled once from the static types.
#ifndef INTERPRETER_SCALARPLAN_H
#define INTERPRETER_SCALARPLAN_H

#include <cstddef>
#include <memory>
#include <vector>

#include "interpreter/evalstep.h"

class Class;
class EvalValue;
class String;
class VarDeclare;
class Variable;

// The plan of an expression whose elements are all variables of the scalar
// classes, scalar literals, and operators that those classes answer directly
// for the ranks of the declarations: the rank of each result and the way it
// is computed are settled when the plan is made. Running it reads and stores
// the variables in place, in the order of the postfix elements, and makes no
// value. A variable is read when an operator takes it, as the values do.
class ScalarPlan {
public:
    enum { MAX_VARIABLES = 16, MAX_DEPTH = 32 };

    // The plan of the steps, or null when they are not of that kind.
    static std::unique_ptr<ScalarPlan> compile(const std::vector<EvalStep>& steps);

    // The variables that the plan uses, each of its declared class.
    std::size_t variableCount() const { return variables.size(); }
    VarDeclare* variable(std::size_t i) const { return variables[i].declaration; }
    const Class* variableClass(std::size_t i) const { return variables[i].type; }
    // Runs on the variables found for variable(i): the result is the last
    // variable assigned or named, or a number.
    void run(Variable* const* found, EvalValue& result) const;

private:
    struct Operation {
        enum Kind : unsigned char { LOAD, NUMBER, UNARY, BINARY, ASSIGN };
        Kind kind;
        bool integer;        // BINARY, ASSIGN: computed as integers
        int level;           // LOAD, NUMBER, UNARY, ASSIGN: the operand's rank; BINARY: the result's
        int code;            // the operator
        int index;           // LOAD: the variable
        double value;        // NUMBER
        const String* name;  // NUMBER: the literal's name
    };
    struct Used {
        VarDeclare* declaration;
        const Class* type;
    };
    // The operation of a step, and the rank it leaves on top of levels; false when there is none.
    bool add(const EvalStep& step, std::vector<int>& levels);
    int indexOf(const EvalStep& step);

    std::vector<Operation> operations;
    std::vector<Used> variables;
};

#endif
