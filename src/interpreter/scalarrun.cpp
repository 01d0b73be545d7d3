// ScalarPlan: the run on plain numbers, in place in the variables and the elements.
#include <alloca.h>

#include <algorithm>

#include "interpreter/arrayvar.h"
#include "interpreter/evalval.h"
#include "interpreter/executer.h"
#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/scalar.h"
#include "interpreter/scalarplan.h"

// An entry of the stack: its value, and the variable or the element it was read from, if any.
struct ScalarPlan::Entry {
    double value;
    union {
        Variable* variable;
        double* place;
    };
};

namespace {

typedef ScalarPlan::Entry Entry;

int indexValue(double x) { return int(ScalarVar::fitTo(ScalarVar::INT_LEVEL, x)); }

// The arguments of a method called without any.
OrderedCltn& noArguments() {
    static OrderedCltn none;
    return none;
}

void store(Entry& target, int level, double x) {
    target.value = x;
    if (target.variable) EvalValue::setValueOf(target.variable, level, x);
}

}  // namespace

void ScalarPlan::run(Executer& executer, Variable* const* found, EvalValue& result) const {
    if (shape == NAMED) {
        result = EvalValue::ofScalar(found[0], resultLevel);
    } else if (shape == WITH_LITERAL) {
        result = EvalValue::of(ScalarValue{resultLevel, withLiteral(found)});
    } else {
        execute(&executer, found, 0, 0, &result);
    }
}

double ScalarPlan::number(Executer& executer, Variable* const* found) const {
    if (shape == NAMED) return EvalValue::valueOf(found[0], resultLevel);
    if (shape == WITH_LITERAL) return withLiteral(found);
    return execute(&executer, found, 0, 0, 0);
}

double ScalarPlan::withLiteral(Variable* const* found) const {
    const Operation& load = operations[0];
    const Operation& binary = operations[1];
    return binary.apply(EvalValue::valueOf(found[load.index], load.level), binary.value);
}

double ScalarPlan::runBody(Executer& executer, Variable* const* found, int& part) const {
    return execute(&executer, found, 0, &part, 0);
}

void ScalarPlan::runLoop(Variable* const* found, const std::int32_t& stopped, int& part) const {
    execute(0, found, &stopped, &part, 0);
}

// A plan may run again at each level of a recursion, whose depth is what the thread's stack gives: its
// stack, and the copy of its places that a plan that calls keeps, take no more than it needs.
double ScalarPlan::execute(Executer* executer, Variable* const* found, const std::int32_t* stopped, int* part,
                           EvalValue* result) const {
    Entry* stack = static_cast<Entry*>(alloca(sizeof(Entry) * std::size_t(depth + 1)));
    if (!calls) return runOn(stack, executer, found, stopped, part, result);
    Variable** own = static_cast<Variable**>(alloca(sizeof(Variable*) * (variables.size() + 1)));
    std::copy(found, found + variables.size(), own);
    return runOn(stack, executer, own, stopped, part, result);
}

double ScalarPlan::runOn(Entry* stack, Executer* executer, Variable* const* found,
                         const std::int32_t* stopped, int* part, EvalValue* result) const {
    int top = -1;
    const Operation* next = operations.data();
    const Operation* operation;
    // Each operation ends by jumping straight to the next one's code: one indirect jump per operation, each
    // predicted on its own, whatever the layout of the code.
    static void* const code[] = {&&on_LOAD,
                                 &&on_NUMBER,
                                 &&on_RELOAD,
                                 &&on_UNARY,
                                 &&on_STEP,
                                 &&on_STEP_VARIABLE,
                                 &&on_BINARY,
                                 &&on_BINARY_NUMBER,
                                 &&on_BINARY_VARIABLE,
                                 &&on_ASSIGN,
                                 &&on_COMPOUND,
                                 &&on_ELEMENT,
                                 &&on_METHOD,
                                 &&on_CALL,
                                 &&on_LOAD_AGGREGATE,
                                 &&on_ELEMENT_OF,
                                 &&on_MEMBER_OF,
                                 &&on_RELOAD_ELEMENT,
                                 &&on_ASSIGN_ELEMENT,
                                 &&on_COMPOUND_ELEMENT,
                                 &&on_END,
                                 &&on_STOP,
                                 &&on_TEST,
                                 &&on_SKIP,
                                 &&on_JUMP,
                                 &&on_DROP,
                                 &&on_AGAIN,
                                 &&on_BREAK,
                                 &&on_RETURN};
    static_assert(sizeof code / sizeof code[0] == Operation::RETURN + 1, "an operation without its code");
#define NEXT_OPERATION               \
    do {                             \
        operation = next++;          \
        goto* code[operation->kind]; \
    } while (0)
    NEXT_OPERATION;
on_LOAD : {
    Variable* variable = found[operation->index];
    stack[++top] = Entry{EvalValue::valueOf(variable, operation->level), variable};
    NEXT_OPERATION;
}
on_NUMBER:
    stack[++top] = Entry{operation->value, 0};
    NEXT_OPERATION;
on_RELOAD : {
    Entry& entry = stack[top - operation->index];
    entry.value = EvalValue::valueOf(entry.variable, operation->level);
    NEXT_OPERATION;
}
on_UNARY : {
    ScalarValue value;
    bool stores;
    double stored;
    ScalarVar::unaryOperation(operation->code, {operation->level, stack[top].value}, value, stores, stored);
    stack[top] = Entry{value.value, 0};
    NEXT_OPERATION;
}
on_STEP : {
    Entry& operand = stack[top];
    double before = operand.value;
    double after = operation->apply(before, 1.0);
    if (operand.variable) EvalValue::setValueOf(operand.variable, operation->level, after);
    operand = Entry{operation->before ? after : before, 0};
    NEXT_OPERATION;
}
on_STEP_VARIABLE : {
    Variable* variable = found[operation->index];
    double before = EvalValue::valueOf(variable, operation->level);
    double after = operation->apply(before, 1.0);
    EvalValue::setValueOf(variable, operation->level, after);
    stack[++top] = Entry{operation->before ? after : before, 0};
    NEXT_OPERATION;
}
on_BINARY:
    stack[top - 1] = Entry{operation->apply(stack[top - 1].value, stack[top].value), 0};
    --top;
    NEXT_OPERATION;
on_BINARY_NUMBER:
    stack[top] = Entry{operation->apply(stack[top].value, operation->value), 0};
    NEXT_OPERATION;
on_BINARY_VARIABLE : {
    double right = EvalValue::valueOf(found[operation->index], operation->level);
    stack[top] = Entry{operation->apply(stack[top].value, right), 0};
    NEXT_OPERATION;
}
on_ASSIGN:
    store(stack[top - 1], operation->level, ScalarVar::fitTo(operation->level, stack[top].value));
    --top;
    NEXT_OPERATION;
on_COMPOUND : {
    Entry& target = stack[top - 1];
    double current = target.variable ? EvalValue::valueOf(target.variable, operation->level) : target.value;
    store(target, operation->level, operation->apply(current, stack[top].value));
    --top;
    NEXT_OPERATION;
}
on_ELEMENT : {
    MatrixVar* matrix = static_cast<MatrixVar*>(found[operation->index]);
    double* place = matrix->elementAt(indexValue(stack[top - 1].value), indexValue(stack[top].value));
    --top;
    stack[top].value = *place;
    stack[top].place = place;
    NEXT_OPERATION;
}
on_METHOD : {
    ScalarValue value{operation->level, 0.0};
    found[operation->index]->execScalarMethod(operation->method, noArguments(), value);
    stack[++top] = Entry{value.value, 0};
    NEXT_OPERATION;
}
on_LOAD_AGGREGATE:
    stack[++top] = Entry{0.0, found[operation->index]};
    NEXT_OPERATION;
on_ELEMENT_OF : {
    ArrayVar* array = static_cast<ArrayVar*>(stack[top - 1].variable);
    Variable* element = array->elementAt(indexValue(stack[top].value));
    --top;
    stack[top] = Entry{operation->level ? EvalValue::valueOf(element, operation->level) : 0.0, element};
    NEXT_OPERATION;
}
on_MEMBER_OF : {
    Variable* member =
        static_cast<GenericVar*>(stack[top].variable)->memberAt(operation->index, operation->field);
    stack[top] = Entry{operation->level ? EvalValue::valueOf(member, operation->level) : 0.0, member};
    NEXT_OPERATION;
}
on_CALL:
    stack[++top] = Entry{executer->scalarCall(operation->call, operation->level), 0};
    if (executer->isStopped()) return 0.0;
    NEXT_OPERATION;
on_RELOAD_ELEMENT : {
    Entry& entry = stack[top - operation->index];
    entry.value = *entry.place;
    NEXT_OPERATION;
}
on_ASSIGN_ELEMENT : {
    Entry& target = stack[top - 1];
    target.value = *target.place = stack[top].value;
    --top;
    NEXT_OPERATION;
}
on_COMPOUND_ELEMENT : {
    Entry& target = stack[top - 1];
    target.value = *target.place = operation->apply(*target.place, stack[top].value);
    --top;
    NEXT_OPERATION;
}
on_END : {
    const Entry& last = stack[top];
    if (result && resultElement)
        *result = EvalValue::at(last.place);
    else if (result && last.variable)
        *result = EvalValue::ofScalar(last.variable, resultLevel);
    else if (result)
        *result = EvalValue::of(ScalarValue{resultLevel, last.value}, resultName);
    return last.value;
}
on_STOP:
    if (*stopped) return 0.0;
    NEXT_OPERATION;
on_TEST:
    if (stack[top].value == 0.0) return 0.0;
    top = -1;
    *part = operation->index;
    NEXT_OPERATION;
on_SKIP:
    if (stack[top].value == 0.0) {
        next = operations.data() + operation->index;
    } else {
        top = -1;
        *part = operation->code;
    }
    NEXT_OPERATION;
on_JUMP:
    next = operations.data() + operation->index;
    NEXT_OPERATION;
on_DROP:
    top = -1;
    *part = operation->index;
    NEXT_OPERATION;
on_BREAK:
    return 0.0;
on_RETURN:
    return operation->code == operation->level ? stack[top].value
                                               : ScalarVar::fitTo(operation->level, stack[top].value);
on_AGAIN:
    top = -1;
    *part = 0;
    next = operations.data();
    NEXT_OPERATION;
#undef NEXT_OPERATION
}
