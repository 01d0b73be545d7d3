// ScalarPlan, an expression of scalars only, or a loop of such expressions, with each operation settled
// once from the static types.
#ifndef INTERPRETER_SCALARPLAN_H
#define INTERPRETER_SCALARPLAN_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "interpreter/evalstep.h"
#include "interpreter/scalarapply.h"

class Class;
class EvalValue;
class Executer;
class FuncCall;
class FuncDeclare;
class Expression;
class String;
class VarDeclare;
class Variable;

// The plan of an expression whose elements are all variables of the scalar
// classes, scalar literals, elements A(i, j) of named matrices with indices of
// such expressions, elements a[i] of named arrays and members s.x of named structs (and of their
// elements and members) down to a scalar, methods without arguments of numeric variables that answer
// numbers, calls of the program's functions that answer a scalar, and operators that those classes answer
// directly
// for the ranks of the declarations: the rank of each result and the function
// that computes it are settled when the plan is made. Running it reads and
// stores the variables in place, in the order of the postfix elements, and
// makes no value. A variable's value is read when it is named, and read again
// before an operator takes it if something was stored in between, so that an
// operator sees what the values would; a call counts as a store, since the function may store into the
// variables.
class ScalarPlan {
public:
    enum { MAX_VARIABLES = 16, MAX_DEPTH = 32 };
    // An entry of a run's stack.
    struct Entry;

    // The steps of an expression, made on demand: an element's indices are expressions of their own.
    typedef const std::vector<EvalStep>& (*StepsOf)(const Expression* expression);
    // The plan of the steps, or null when they are not of that kind.
    static std::unique_ptr<ScalarPlan> compile(const std::vector<EvalStep>& steps, StepsOf stepsOf);

    // The rank of the result's class.
    int resultRank() const { return resultLevel; }
    // The variables that the plan uses, each of its declared class.
    std::size_t variableCount() const { return variables.size(); }
    VarDeclare* variable(std::size_t i) const { return variables[i].declaration; }
    const Class* variableClass(std::size_t i) const { return variables[i].type; }
    // Whether every variable is a local that holds its declared class, and none a matrix, which a
    // temporary may stand for: the places are then those of the declarations, unchecked.
    bool ofLocals() const { return locals; }
    // Whether there are variables and every one is also of the function's outermost block, its parameters
    // included: their places are those of the first scope of the frame, at the declarations' indices,
    // whichever the call.
    bool ofOutermost() const { return outermost; }
    // The variables found for the executer's mark of places, or null when the last ones were found
    // under another mark.
    Variable* const* placesFor(std::uint64_t mark) const { return mark == placesMark ? places : 0; }
    // Where the variables found go; they stand for the mark once keptUnder(mark).
    Variable** placesToFill() const {
        placesMark = 0;
        return places;
    }
    void keptUnder(std::uint64_t mark) const { placesMark = mark; }
    // Runs on the variables found for variable(i), the executer making the calls: the result is the last
    // variable assigned or named, or a number; nothing when a call stopped the executer, which ends the run.
    void run(Executer& executer, Variable* const* found, EvalValue& result) const;
    // The same when only the number of the result counts, in the form of the class of rank resultRank();
    // any number when a call stopped the executer.
    double number(Executer& executer, Variable* const* found) const;

    // A statement of a loop's body: an expression, or (with a test) an expression that runs when the test,
    // of a char result, holds, and the other one, if any, that runs when it does not. Instead of the
    // expression, a test may end the loop or its pass.
    enum LoopExit { NO_EXIT, BREAK_LOOP, CONTINUE_LOOP };
    struct LoopStatement {
        const ScalarPlan* test;
        const ScalarPlan* expression;
        const ScalarPlan* otherwise;
        LoopExit exit;
    };
    // The plan of a loop: while stopped is not set and the test, of a char result, holds, the statements
    // of the body in order and then the increment. Null when together they use too many variables, or when
    // one calls a function.
    static std::unique_ptr<ScalarPlan> compileLoop(const ScalarPlan& test,
                                                   const std::vector<LoopStatement>& body,
                                                   const ScalarPlan& increment);
    // part tells, when an operation fails, what was running: 0 the test, then a number for each test and
    // each expression of the body in order, then one for the increment.
    void runLoop(Variable* const* found, const std::int32_t& stopped, int& part) const;

    // A statement of a function's body: the return of a value, or (with a test) of a value when the test,
    // of a char result, holds.
    struct Return {
        const ScalarPlan* test;
        const ScalarPlan* value;
    };
    // The plan of a body of returns of a function whose result is of the scalar class of rank level,
    // which takes every value as it stands; the last return has no test. Null when together they use
    // too many variables.
    static std::unique_ptr<ScalarPlan> compileBody(int level, const std::vector<Return>& body);
    // The value returned, of the function's rank; any number when a call stopped the executer. part tells,
    // when an operation fails, what was running: a number for each test and each value in order.
    double runBody(Executer& executer, Variable* const* found, int& part) const;

private:
    // A variable or a literal that a binary operator or an increment takes at once is part of it.
    struct Operation {
        enum Kind : unsigned char {
            LOAD,
            NUMBER,
            RELOAD,
            UNARY,
            STEP,           // an increment or a decrement of the entry on top
            STEP_VARIABLE,  // the same on a variable, which is not pushed first
            BINARY,
            BINARY_NUMBER,    // the right operand a literal
            BINARY_VARIABLE,  // the right operand a variable
            ASSIGN,
            COMPOUND,
            ELEMENT,         // the indices on top replaced by the element of the matrix variable
            METHOD,          // the number that a method of the variable answers
            CALL,            // the number that a function of the program answers
            LOAD_AGGREGATE,  // an array or a struct variable, which an element or a member follows
            ELEMENT_OF,      // the index on top and the array below replaced by the element
            MEMBER_OF,       // the struct on top replaced by its member
            RELOAD_ELEMENT,
            ASSIGN_ELEMENT,
            COMPOUND_ELEMENT,
            END,
            // A loop's: the end when the stop flag is set; the end when the truth on top is 0, else the
            // stack emptied and the part index running; when the truth on top is 0 the operation at index,
            // else the stack emptied and the part code running; the operation at index; the stack emptied
            // and the part index running; the first operation again.
            STOP,
            TEST,
            SKIP,
            JUMP,
            DROP,
            AGAIN,
            BREAK,  // the end of the loop
            RETURN  // a body's: the end, with the number on top of rank code as one of rank level
        };
        Kind kind;
        bool before;  // STEP, STEP_VARIABLE: the variable's new value is the result (++i, --i)
        int level;    // the rank of the variable, literal or operand read or stored; BINARY: unused
        int code;     // UNARY: the operator
        int index;  // LOAD, STEP_VARIABLE, BINARY_VARIABLE, ELEMENT, METHOD: the variable; RELOAD: the depth;
                    // MEMBER_OF: the member's position among the fields
        double value;                 // NUMBER, BINARY_NUMBER
        scalarops::Apply apply;       // STEP, STEP_VARIABLE, the BINARY and COMPOUND kinds
        FuncDeclare* method = 0;      // METHOD
        FuncCall* call = 0;           // CALL
        const VarDeclare* field = 0;  // MEMBER_OF
    };
    struct Used {
        VarDeclare* declaration;
        const Class* type;
    };
    class Compiler;
    // Appends the operations of part but its END, its variables numbered among this plan's.
    bool append(const ScalarPlan& part);
    // Appends an operation of a loop or a body that reads no entry of the stack.
    void mark(Operation::Kind kind, int index, int code = 0);
    int indexOf(const Used& used);
    // The result's number, which also goes into result when there is one; 0 when the run ended early.
    double execute(Executer* executer, Variable* const* found, const std::int32_t* stopped, int* part,
                   EvalValue* result) const;
    // The same on a stack of at least depth entries.
    double runOn(Entry* stack, Executer* executer, Variable* const* found, const std::int32_t* stopped,
                 int* part, EvalValue* result) const;
    double withLiteral(Variable* const* found) const;

    std::vector<Operation> operations;
    std::vector<Used> variables;
    int resultLevel = 0;
    const String* resultName = 0;  // a literal's name, when the result is that literal
    bool resultElement = false;    // the result is an element
    // The plan's shape when it is one of the two most frequent: a variable named, or a variable and a
    // literal under a binary operator (i < n, n - 1); these run without the general loop.
    enum Shape : unsigned char { ANY, NAMED, WITH_LITERAL };
    Shape shape = ANY;
    bool locals = true;
    bool outermost = false;
    // A call may run this plan again, in a recursion, and fill its places anew: the run keeps its own.
    bool calls = false;
    int depth = 0;  // the most entries the run's stack holds at once
    mutable std::uint64_t placesMark = 0;
    mutable Variable* places[MAX_VARIABLES];
};

#endif
