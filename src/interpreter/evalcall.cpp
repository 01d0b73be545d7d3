// Executer: calls of the program's functions and of the built-ins, their frames, and the binding of their
// arguments.
#include <memory>

#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/evalval.h"
#include "interpreter/executer.h"
#include "interpreter/funcdecl.h"
#include "interpreter/scalar.h"
#include "interpreter/scalarpool.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/stackgrd.h"

// The arguments are evaluated in the caller's frame, first to last, before the
// callee's frame is pushed. A scalar returned stays out of the heap.
Variable* Executer::invoke(FuncCall* call) {
    if (stopped) return 0;
    FuncDeclare* function = call->getFunction();
    if (function->getLine() == 0 && builtins.indexOfSame(*function) >= 0) return callBuiltin(call);
    notify(call);
    if (stackNearlyFull())
        runtimeError(formatText("Recursion too deep: %s called at depth %u, the stack is exhausted",
                                function->getName().asCharPointer(), unsigned(frames.size())),
                     call);
    OrderedCltn* frame = newFrame(function);
    OrderedCltn& scope = *static_cast<OrderedCltn*>(frame->atInline(0));
    bool bound;
    bool inPlace = scope.size() > 0;
    try {
        bound =
            inPlace ? rebindArguments(function, call, scope, inPlace) : bindArguments(function, call, scope);
    } catch (...) {
        releaseFrame(frame, 0);
        throw;
    }
    if (!bound) {
        releaseFrame(frame, 0);
        return 0;
    }
    Variable* returned = runStatements(function, frame);
    releaseFrame(frame, function, inPlace);
    return returned;
}

void Executer::callFunction(FuncCall* call, EvalValue& result) {
    Variable* returned = invoke(call);
    if (returned == RETURNED_SCALAR)
        result = EvalValue::of(ScalarValue{returnedLevel, returnedValue}, returnedName);
    else if (returned)
        result = EvalValue::owned(returned);
}

double Executer::scalarCall(FuncCall* call, int level) {
    Variable* returned = invoke(call);
    if (returned == RETURNED_SCALAR)
        return returnedLevel == level ? returnedValue : ScalarVar::fitTo(level, returnedValue);
    EvalValue value = EvalValue::owned(returned);
    EvalValueGuard guard(value);
    ScalarValue scalar{level, 0.0};
    if (returned) value.convertedTo(level, scalar);
    return scalar.value;
}

// The frames live beside the calls, in one unit, so that the compiler can fold them into invoke.

// A recursion releases its frames in the order it takes them: the last one kept is its own.
inline OrderedCltn* Executer::newFrame(FuncDeclare* function) {
    if (spareFrames.empty()) {
        OrderedCltn* frame = newList();
        frame->add(*newList());
        return frame;
    }
    SpareFrame spare = spareFrames.back();
    spareFrames.pop_back();
    if (spare.function != function) emptyScope(static_cast<OrderedCltn*>(spare.frame->atInline(0)));
    return spare.frame;
}

inline void Executer::releaseFrame(OrderedCltn* frame, FuncDeclare* function, bool rebound) {
    while (frame->size() > 1) destroyScope(static_cast<OrderedCltn*>(frame->removeLast()));
    OrderedCltn* scope = static_cast<OrderedCltn*>(frame->atInline(0));
    if (function && !keepParameters(function, *scope, rebound)) function = 0;
    if (!function) emptyScope(scope);
    if (spareFrames.size() < SPARE_LISTS)
        spareFrames.push_back(SpareFrame{frame, function});
    else
        destroyFrame(frame);
}

// The variables of the function's outermost block follow its parameters in the scope; they go, the last
// first, before the parameters are looked at.
inline bool Executer::keepParameters(FuncDeclare* function, OrderedCltn& scope, bool rebound) {
    int count = function->argumentCount();
    if (count > MAX_KEPT_PARAMETERS || int(scope.size()) < count) return false;
    while (int(scope.size()) > count) dropValue(static_cast<Variable*>(scope.removeLast()));
    for (int i = 0; i < count; ++i) {
        Variable* value = static_cast<Variable*>(scope.atInline(i));
        if (rebound) {
            if (value->references() != 0) return false;
            continue;
        }
        VarDeclare* parameter = function->getArgument(i);
        int level = parameter->scalarLevel();
        if (parameter->isRef() || level == 0 || ScalarPool::plainLevel(value) != level) return false;
    }
    return true;
}

inline Variable* Executer::runStatements(FuncDeclare* function, OrderedCltn* frame) {
    frames.push_back(frame);
    lastFrame = frame;
    callees.push_back(function);
    movePlaces();
    Variable* result = 0;
    const OrderedCltn& code = function->getCode();
    Variable* returnType = function->getType();
    if (!runBodyPlan(function, result))
        for (unsigned i = 0; i < code.size() && !result && !stopped; ++i)
            result = execStatement(static_cast<Statement*>(code.atInline(int(i))), returnType);
    frames.pop_back();
    lastFrame = frames.empty() ? 0 : frames.back();
    callees.pop_back();
    movePlaces();
    if (!stopped) return result;
    if (result != RETURNED_SCALAR) ValueGuard::destroy(result);
    return 0;
}

Variable* Executer::runFunction(FuncDeclare* function, OrderedCltn* scope, bool keepScope) {
    OrderedCltn* frame = newList();
    frame->add(*scope);
    Variable* result = runStatements(function, frame);
    if (keepScope) frame->removeFirst();
    destroyFrame(frame);
    if (result != RETURNED_SCALAR) return result;
    std::unique_ptr<Variable> value(ScalarVar::makeOfLevel(returnedLevel, returnedValue));
    value->setName(*returnedName);
    return value.release();
}

Variable* Executer::callBuiltin(FuncCall* call) {
    FuncDeclare* function = call->getFunction();
    OrderedCltn arguments;
    ContentsGuard guard(arguments);
    if (!bindArguments(function, call, arguments)) return 0;
    return findBuiltin(function->getName())(*this, function->getName(), arguments);
}

bool Executer::bindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& values, int from) {
    for (int i = from; i < function->argumentCount(); ++i) {
        EvalValue held;
        EvalValueGuard guard(held);
        evalValue(call->getExpression(i), held);
        if (held.empty()) return false;
        bindArgument(function->getArgument(i), held, values);
    }
    return true;
}

// A scalar goes to a new value of the parameter's class when that class takes
// it as it stands; other values are assigned to a copy of the parameter's type.
void Executer::bindArgument(VarDeclare* parameter, EvalValue& held, OrderedCltn& values) {
    if (parameter->isRef()) {
        Variable* value = held.release();
        value->setName(parameter->getName());
        addOwned(values, value);
        if (!value->isKindOf(class_VarReference))
            runtimeError("A left-value element must used to assign to a reference", 0);
        return;
    }
    ScalarValue scalar;
    if (held.convertedTo(parameter->scalarLevel(), scalar)) {
        addOwned(values, scalars.take(scalar.level, scalar.value, parameter->getName()));
        return;
    }
    ValueGuard value(held.release());
    Variable* bound = parameter->getType()->clone();
    bound->setName(parameter->getName());
    values.add(*bound);
    assign(bound, value.get());
}

// The scalars of the last call take the new values in place once every argument is evaluated; an
// argument that a scalar does not take as it stands sends them back, and the binding goes on as for a
// new scope from that argument.
bool Executer::rebindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& scope, bool& inPlace) {
    ScalarValue converted[MAX_KEPT_PARAMETERS];
    int count = function->argumentCount();
    for (int i = 0; i < count; ++i) {
        VarDeclare* parameter = function->getArgument(i);
        Expression* argument = call->getExpression(i);
        if (planConverted(argument, parameter->scalarLevel(), converted[i])) continue;
        EvalValue held;
        EvalValueGuard guard(held);
        evalValue(argument, held);
        if (held.empty()) return false;
        if (held.convertedTo(parameter->scalarLevel(), converted[i])) continue;
        inPlace = false;
        emptyScope(&scope);
        for (int j = 0; j < i; ++j)
            addOwned(scope, scalars.take(converted[j].level, converted[j].value,
                                         function->getArgument(j)->getName()));
        bindArgument(parameter, held, scope);
        return bindArguments(function, call, scope, i + 1);
    }
    for (int i = 0; i < count; ++i)
        EvalValue::setValueOf(static_cast<Variable*>(scope.atInline(i)), converted[i].level,
                              converted[i].value);
    return true;
}
