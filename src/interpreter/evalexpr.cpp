// Executer: postfix evaluation on two registers and a stack, truth of conditions, calls and argument binding.
#include <memory>
#include <vector>

#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/evalstep.h"
#include "interpreter/evalval.h"
#include "interpreter/executer.h"
#include "interpreter/expressn.h"
#include "interpreter/funcdecl.h"
#include "interpreter/operator.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/stackgrd.h"

// The registers of the evaluation, the stack of lefts put aside, and the
// member or method waiting for its '.' or '()'. What they hold at the end goes.
// The stack lives here up to its usual depth; the method arguments are made on first use.
struct Executer::EvalState {
    EvalValue left;
    EvalValue right;
    enum { NEAR = 4 };
    EvalValue near[NEAR];  // the usual depth
    std::vector<EvalValue> far;
    unsigned saved = 0;
    VarDeclare* member = 0;
    FuncDeclare* method = 0;
    OrderedCltn* methodArguments = 0;

    ~EvalState() {
        left.drop();
        right.drop();
        while (saved > 0) restore().drop();
        dropMethodArguments();
        delete methodArguments;
    }
    void save(EvalValue v) {
        if (saved >= NEAR) {
            try {
                far.push_back(v);
            } catch (...) {
                v.drop();
                throw;
            }
        } else {
            near[saved] = v;
        }
        ++saved;
    }
    EvalValue restore() {
        if (saved == 0) return EvalValue();
        if (--saved < NEAR) return near[saved];
        EvalValue v = far.back();
        far.pop_back();
        return v;
    }
    OrderedCltn& arguments() {
        if (!methodArguments) methodArguments = new OrderedCltn;
        return *methodArguments;
    }
    void dropMethodArguments() {
        if (methodArguments) methodArguments->deleteContents();
    }
};

Variable* Executer::evalExpression(Expression* expression) {
    EvalValue value;
    evalValue(expression, value);
    return value.release();
}

namespace {

EvalStep stepOf(Object* element) {
    EvalStep step{EvalStep::OTHER, 0, 0, 0.0, element, 0};
    Class* kind = element->isA();
    if (kind == &class_Operator) {
        step.code = static_cast<Operator*>(element)->getCode();
        step.kind = Operator::isUnary(step.code)                     ? EvalStep::UNARY
                    : step.code == OP_MEMBER || step.code == OP_CALL ? EvalStep::SELECT
                                                                     : EvalStep::BINARY;
    } else if (kind == &class_VarDeclReference) {
        VarDeclare* declaration = static_cast<VarDeclReference*>(element)->getDeclaration();
        step.node = declaration;
        step.kind = declaration->isA() == &class_FieldDeclare ? EvalStep::MEMBER : EvalStep::VARIABLE;
        Variable* type = declaration->getType();
        if (type->isA()->base() == &class_ScalarVar) {
            step.type = type->isA();
            step.level = type->getLevel();
        }
    } else if (kind == &class_ConstDeclare) {
        ScalarVar* scalar = ScalarVar::scalarOf(static_cast<ConstDeclare*>(element)->getValue());
        step.kind = scalar ? EvalStep::NUMBER : EvalStep::CONSTANT;
        if (scalar) {
            step.node = scalar;
            step.level = scalar->getLevel();
            step.value = scalar->number();
        }
    } else if (kind == &class_MethodCall) {
        step.kind = EvalStep::METHOD;
    } else if (kind == &class_FuncCall) {
        step.kind = EvalStep::CALL;
    } else if (kind == &class_VarDeclare) {
        step.kind = EvalStep::CONVERSION;
    }
    return step;
}

// The steps of the expression, sorted out on its first evaluation.
const std::vector<EvalStep>& stepsOf(const Expression* expression) {
    std::vector<EvalStep>& steps = expression->steps();
    const OrderedCltn& elements = expression->getElements();
    if (steps.size() != elements.size()) {
        steps.clear();
        for (unsigned i = 0; i < elements.size(); ++i) steps.push_back(stepOf(elements.at(int(i))));
    }
    return steps;
}

}  // namespace

void Executer::evalValue(Expression* expression, EvalValue& result) {
    EvalState state;
    const std::vector<EvalStep>& steps = stepsOf(expression);
    for (size_t i = 0; i < steps.size(); ++i) {
        if (stopped) return;
        const EvalStep& step = steps[i];
        if (step.kind == EvalStep::UNARY)
            evalUnary(state, step.code);
        else if (step.kind == EvalStep::BINARY)
            evalBinary(state, step.code);
        else if (step.kind == EvalStep::SELECT)
            evalSelect(state);
        else
            evalElement(state, step);
    }
    result = state.right;
    state.right = EvalValue();
}

// A variable is reached by its place; a member or a method waits for its operator.
void Executer::evalElement(EvalState& state, const EvalStep& step) {
    if (!state.left.empty()) state.save(state.left);
    state.left = state.right;
    state.right = EvalValue();
    switch (step.kind) {
        case EvalStep::VARIABLE: {
            Variable* found = slotOf(static_cast<VarDeclare*>(step.node));
            if (found->isA() != step.type) found = Variable::dereference(found);
            state.right =
                found->isA() == step.type ? EvalValue::ofScalar(found, step.level) : EvalValue::of(found);
            break;
        }
        case EvalStep::MEMBER:
            state.member = static_cast<VarDeclare*>(step.node);
            break;
        case EvalStep::NUMBER:
            state.right = EvalValue::of(ScalarValue{step.level, step.value},
                                        &static_cast<Variable*>(step.node)->getName());
            break;
        case EvalStep::CONSTANT:
            state.right = EvalValue::owned(static_cast<ConstDeclare*>(step.node)->getVariable());
            break;
        case EvalStep::METHOD: {
            MethodCall* call = static_cast<MethodCall*>(step.node);
            state.method = call->getFunction();
            state.dropMethodArguments();
            bindArguments(state.method, call, state.arguments());
            break;
        }
        case EvalStep::CALL:
            state.right = EvalValue::owned(callFunction(static_cast<FuncCall*>(step.node)));
            break;
        case EvalStep::CONVERSION:
            state.right = EvalValue::owned(createVariable(static_cast<VarDeclare*>(step.node)));
            break;
        default:
            break;
    }
}

// Scalars are worked out in place; anything else, or an operator that the
// scalars' classes do not have, goes to the values' own operations, which
// answer or report.
void Executer::evalUnary(EvalState& state, int code) {
    if (!state.right.empty() && !unaryOnScalar(state.right, code)) unaryOnValue(state, code);
}

void Executer::evalBinary(EvalState& state, int code) {
    if (state.left.empty()) state.left = state.restore();
    if (state.left.empty() || state.right.empty()) return;
    if (binaryOnScalars(state, code)) return;
    Variable* left = state.left.box();
    Variable* right = state.right.box();
    Variable* other = Variable::dereference(right);
    Variable* result = left->doOperation(other, code, 0);
    if (result == other && other != right) result = right;
    if (right == result)
        state.right = EvalValue();
    else
        state.right.drop();
    finishOperation(state, result);
}

// The member or the method waiting applies to the left register.
void Executer::evalSelect(EvalState& state) {
    if (state.left.empty()) state.left = state.restore();
    if (state.left.empty()) return;
    Variable* left = state.left.box();
    Variable* result;
    if (state.member) {
        result = new VarReference(left->getMemberVar(state.member));
        state.member = 0;
    } else {
        result = left->execMethodCall(state.method, state.arguments(), errorFlag);
        state.dropMethodArguments();
        if (errorFlag) stopped = 1;
    }
    finishOperation(state, result);
}

bool Executer::unaryOnScalar(EvalValue& value, int code) {
    ScalarValue operand, result;
    bool stores;
    double stored;
    if (!value.scalar(operand) || !ScalarVar::unaryOperation(code, operand, result, stores, stored))
        return false;
    if (stores) value.store(stored);
    value.drop();
    value = EvalValue::of(result);
    return true;
}

void Executer::unaryOnValue(EvalState& state, int code) {
    Variable* operand = state.right.box();
    Variable* result = operand->doUnaryOperation(code);
    if (result != operand) state.right.drop();
    state.right = EvalValue::owned(result);
}

// An assignment leaves its target as the result, still a left value; it takes
// a value of a rank not above the target's, the others convert through the values.
bool Executer::binaryOnScalars(EvalState& state, int code) {
    ScalarValue a, b;
    if (!state.left.scalar(a) || !state.right.scalar(b)) return false;
    if (Operator::isAssign(code)) {
        double stored;
        if (b.level > a.level || !ScalarVar::assigned(code, a.level, a.value, b.value, stored)) return false;
        state.left.store(stored);
        state.right.drop();
        state.right = state.left;
    } else {
        ScalarValue result;
        if (!ScalarVar::operate(code, a, b, result)) return false;
        state.right.drop();
        state.left.drop();
        state.right = EvalValue::of(result);
    }
    state.left = EvalValue();
    return true;
}

// The result becomes the right register and the left one goes, unless it is
// the result. A reference into a temporary left would outlive it: it becomes a copy.
void Executer::finishOperation(EvalState& state, Variable* result) {
    Variable* left = state.left.ownedValue();
    if (left != result) {
        if (result && result->isA() == &class_VarReference && left->isA() != &class_VarReference) {
            ValueGuard reference(result);
            result = Variable::dereference(result)->clone();
        }
        state.left.drop();
    }
    state.left = EvalValue();
    state.right = EvalValue::owned(result);
}

int Executer::evalBool(Expression* expression, int emptyAllowed) {
    EvalValue value;
    EvalValueGuard guard(value);
    evalValue(expression, value);
    if (value.empty()) return stopped || emptyAllowed ? 1 : 0;
    ScalarValue truth;
    if (value.scalar(truth) && truth.level == ScalarVar::CHAR_LEVEL) return truth.value != 0.0;
    Variable* v = Variable::dereference(value.box());
    ValueGuard converted(new CharVar);
    assign(converted.get(), v);
    return static_cast<CharVar*>(converted.get())->getValue() != 0;
}

Variable* Executer::lookup(VarDeclare* declaration) { return Variable::dereference(slotOf(declaration)); }

Variable* Executer::slotOf(VarDeclare* declaration) {
    int level = declaration->getLevel();
    int index = declaration->getIndex();
    Object* found =
        level < 0 ? globals.at(index) : static_cast<OrderedCltn*>(currentFrame().at(level))->at(index);
    return static_cast<Variable*>(found);
}

// The arguments are evaluated in the caller's frame, first to last, before the
// callee's frame is pushed.
Variable* Executer::callFunction(FuncCall* call) {
    if (stopped) return 0;
    FuncDeclare* function = call->getFunction();
    if (function->getLine() == 0 && builtins.indexOfSame(*function) >= 0) return callBuiltin(call);
    notify(call);
    if (stackNearlyFull())
        runtimeError(formatText("Recursion too deep: %s called at depth %u, the stack is exhausted",
                                function->getName().asCharPointer(), frames.size()),
                     call);
    OrderedCltn* scope = newList();
    bool bound;
    try {
        bound = bindArguments(function, call, *scope);
    } catch (...) {
        destroyScope(scope);
        throw;
    }
    if (!bound) {
        destroyScope(scope);
        return 0;
    }
    return runFunction(function, scope, false);
}

Variable* Executer::callBuiltin(FuncCall* call) {
    FuncDeclare* function = call->getFunction();
    OrderedCltn arguments;
    ContentsGuard guard(arguments);
    if (!bindArguments(function, call, arguments)) return 0;
    return findBuiltin(function->getName())(*this, function->getName(), arguments);
}

// A scalar goes to a new value of the parameter's class when that class takes
// it as it stands; other values are assigned to a copy of the parameter's type.
bool Executer::bindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& values) {
    for (int i = 0; i < function->argumentCount(); ++i) {
        EvalValue held;
        EvalValueGuard guard(held);
        evalValue(call->getExpression(i), held);
        if (held.empty()) return false;
        VarDeclare* parameter = function->getArgument(i);
        if (parameter->isRef()) {
            Variable* value = held.release();
            value->setName(parameter->getName());
            addOwned(values, value);
            if (!value->isKindOf(class_VarReference))
                runtimeError("A left-value element must used to assign to a reference", 0);
            continue;
        }
        Variable* bound = convertedScalar(held, parameter->getType(), parameter->getName());
        if (bound) {
            addOwned(values, bound);
            continue;
        }
        ValueGuard value(held.release());
        bound = parameter->getType()->clone();
        bound->setName(parameter->getName());
        values.add(*bound);
        assign(bound, value.get());
    }
    return true;
}

// What a copy of type assigned from the scalar would hold, as a new value
// named name: a scalar class takes a float or any scalar of a rank not above
// its own. Null for any other case.
Variable* Executer::convertedScalar(const EvalValue& value, Variable* type, const String& name) {
    ScalarValue s;
    if (type->isA()->base() != &class_ScalarVar || !value.scalar(s)) return 0;
    int level = type->getLevel();
    if (s.level > level && s.level != ScalarVar::FLOAT_LEVEL) return 0;
    std::unique_ptr<Variable> converted(ScalarVar::makeOfLevel(level, s.value));
    converted->setName(name);
    return converted.release();
}
