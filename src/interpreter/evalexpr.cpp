// Executer: postfix evaluation on a stack of registers or by a plan of scalars, and truth of conditions.
#include <memory>
#include <new>
#include <vector>

#include "interpreter/arrayvar.h"
#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/evalstep.h"
#include "interpreter/evalval.h"
#include "interpreter/executer.h"
#include "interpreter/expressn.h"
#include "interpreter/funcdecl.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/scalarplan.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/stackgrd.h"

// The values of the evaluation as a stack: the top is the right register, the
// one below it the left one, the rest the lefts put aside. An empty value (a
// member or a method waiting, a call without a result) only stands on the top,
// and the next element takes its place. Kept here for the usual depth; an
// expression has at most as many values as elements.
struct Executer::EvalState {
    enum { NEAR = 16 };
    Executer& executer;
    alignas(EvalValue) unsigned char near[NEAR * sizeof(EvalValue)];  // made as the stack grows
    std::vector<EvalValue> far;
    EvalValue* slots;
    unsigned size = 0;
    VarDeclare* member = 0;
    FuncDeclare* method = 0;
    OrderedCltn* methodArguments = 0;  // a spare list of the executer
    double* element = 0;               // the place of A(i, j), found in place of the method's arguments

    EvalState(Executer& executer, size_t depth)
        : executer(executer), slots(reinterpret_cast<EvalValue*>(near)) {
        if (depth > NEAR) {
            far.resize(depth);
            slots = far.data();
        }
    }
    ~EvalState() {
        while (size > 0) slots[--size].drop();
        dropMethodArguments();
        if (methodArguments) executer.releaseList(methodArguments);
    }
    EvalValue& top() { return slots[size - 1]; }
    EvalValue& below() { return slots[size - 2]; }
    // The place of a new element's value.
    EvalValue& push() {
        if (size == 0 || !top().empty()) new (&slots[size++]) EvalValue;
        return top();
    }
    // The result of an operation on the two values on top, which have gone.
    void replaceTwo(EvalValue result) {
        --size;
        top() = result;
    }
    // The list that the method's arguments are bound to.
    OrderedCltn& argumentsToBind() {
        if (!methodArguments) methodArguments = executer.newList();
        return *methodArguments;
    }
    // The arguments bound, none when nothing was.
    OrderedCltn& arguments() { return methodArguments ? *methodArguments : executer.noArguments; }
    void dropMethodArguments() {
        if (methodArguments) executer.emptyScope(methodArguments);
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
        if (step.kind == EvalStep::BINARY) step.scalars = scalarops::binaryOperations(step.code);
    } else if (kind == &class_VarDeclReference) {
        VarDeclare* declaration = static_cast<VarDeclReference*>(element)->getDeclaration();
        step.node = declaration;
        step.kind = declaration->isA() == &class_FieldDeclare ? EvalStep::MEMBER : EvalStep::VARIABLE;
        step.type = declaration->getType()->isA();
        step.level = ScalarVar::rankOf(declaration->getType());
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
        expression->setScalarPlan(ScalarPlan::compile(steps, &stepsOf));
    }
    return steps;
}

}  // namespace

inline Variable* Executer::slotOf(VarDeclare* declaration) {
    int level = declaration->getLevel();
    int index = declaration->getIndex();
    Object* found = level < 0 ? globals.atInline(index)
                              : static_cast<OrderedCltn*>(currentFrame().atInline(level))->atInline(index);
    return static_cast<Variable*>(found);
}

const ScalarPlan* Executer::planOf(Expression* expression) {
    stepsOf(expression);
    return expression->scalarPlan();
}

// A plan is made with the steps, on the first evaluation; one that did not fit is not tried again.
void Executer::evalValue(Expression* expression, EvalValue& result) {
    const ScalarPlan* plan = expression->scalarPlan();
    if (plan && runPlan(*plan, result)) return;
    const std::vector<EvalStep>& steps = stepsOf(expression);
    evalSteps(steps, plan ? 0 : expression->scalarPlan(), result);
}

void Executer::evalSteps(const std::vector<EvalStep>& steps, const ScalarPlan* plan, EvalValue& result) {
    if (plan && runPlan(*plan, result)) return;
    EvalState state(*this, steps.size());
    for (size_t i = 0; i < steps.size(); ++i) {
        if (stopped) return;
        const EvalStep& step = steps[i];
        if (step.kind == EvalStep::UNARY)
            evalUnary(state, step.code);
        else if (step.kind == EvalStep::BINARY)
            evalBinary(state, step);
        else if (step.kind == EvalStep::SELECT)
            evalSelect(state);
        else if (step.kind == EvalStep::METHOD)
            evalMethod(state, static_cast<MethodCall*>(step.node));
        else
            evalElement(state, step);
    }
    if (state.size == 0) return;
    result = state.top();
    state.top() = EvalValue();
}

// The places of a plan of the outermost block are read from the frame at each run: a call moves the mark,
// not those places. The tests, arguments and returns of most functions take this path, inline.
inline Variable* const* Executer::outermostPlaces(const ScalarPlan& plan) {
    Variable** variables = plan.placesToFill();
    const OrderedCltn& scope = *static_cast<OrderedCltn*>(currentFrame().atInline(0));
    size_t count = plan.variableCount();
    for (size_t i = 0; i < count; ++i)
        variables[i] = static_cast<Variable*>(scope.atInline(plan.variable(i)->getIndex()));
    return variables;
}

Variable* const* Executer::placesOf(const ScalarPlan& plan) {
    if (plan.ofOutermost()) return outermostPlaces(plan);
    Variable* const* found = plan.placesFor(placeMark);
    return found ? found : findPlaces(plan);
}

inline const ScalarPlan* Executer::readyPlan(Expression* expression, Variable* const*& found) {
    const ScalarPlan* plan = expression->scalarPlan();
    if (!plan || stopped) return 0;
    found = plan->ofOutermost() ? outermostPlaces(*plan) : placesOf(*plan);
    return found ? plan : 0;
}

// The plan runs when each of its variables is of its declared class, as it
// always is but for an odd program; then nothing has been done yet. The
// variables found stay with the plan until the mark of places moves.
bool Executer::runPlan(const ScalarPlan& plan, EvalValue& result) {
    if (stopped) return true;
    Variable* const* found = placesOf(plan);
    if (!found) return false;
    plan.run(*this, found, result);
    return true;
}

bool Executer::planConverted(Expression* expression, int level, ScalarValue& converted) {
    Variable* const* found;
    const ScalarPlan* plan = readyPlan(expression, found);
    if (!plan || !EvalValue::takes(level, plan->resultRank())) return false;
    int rank = plan->resultRank();
    double x = plan->number(*this, found);
    converted = ScalarValue{level, rank == level ? x : ScalarVar::fitTo(level, x)};
    return true;
}

// The variables of a plan of locals are those of their declarations, unchecked: a call gives its plans
// new places, which are found at each activation.
Variable* const* Executer::findPlaces(const ScalarPlan& plan) {
    Variable** variables = plan.placesToFill();
    if (plan.ofLocals()) {
        for (size_t i = 0; i < plan.variableCount(); ++i) variables[i] = slotOf(plan.variable(i));
        plan.keptUnder(placeMark);
        return variables;
    }
    for (size_t i = 0; i < plan.variableCount(); ++i) {
        VarDeclare* declaration = plan.variable(i);
        Variable* variable = slotOf(declaration);
        if (!declaration->holdsDeclaredClass() && variable->isA() != plan.variableClass(i)) {
            variable = Variable::dereference(variable);
            if (variable->isA() != plan.variableClass(i)) return 0;
        }
        if (plan.variableClass(i) == &class_MatrixVar && static_cast<MatrixVar*>(variable)->isTemporary())
            return 0;
        variables[i] = variable;
    }
    plan.keptUnder(placeMark);
    return variables;
}

// A variable is reached by its place; a member or a method waits for its operator.
void Executer::evalElement(EvalState& state, const EvalStep& step) {
    EvalValue& value = state.push();
    switch (step.kind) {
        case EvalStep::VARIABLE:
            if (step.placeMark != placeMark) findPlace(step);
            value = EvalValue::ofScalar(step.place, step.placeLevel);
            break;
        case EvalStep::MEMBER:
            state.member = static_cast<VarDeclare*>(step.node);
            break;
        case EvalStep::NUMBER:
            value = EvalValue::of(ScalarValue{step.level, step.value},
                                  &static_cast<Variable*>(step.node)->getName());
            break;
        case EvalStep::CONSTANT:
            value = EvalValue::owned(static_cast<ConstDeclare*>(step.node)->getVariable());
            break;
        case EvalStep::CALL:
            callFunction(static_cast<FuncCall*>(step.node), value);
            break;
        case EvalStep::CONVERSION:
            value = EvalValue::owned(createVariable(static_cast<VarDeclare*>(step.node)));
            break;
        default:
            break;
    }
}

// A variable of its declared scalar class by that class's rank, any other through its own class.
void Executer::findPlace(const EvalStep& step) {
    Variable* found = slotOf(static_cast<VarDeclare*>(step.node));
    if (found->isA() != step.type) found = Variable::dereference(found);
    step.place = found;
    step.placeLevel = found->isA() == step.type ? step.level : ScalarVar::rankOf(found);
    step.placeMark = placeMark;
}

// Scalars are worked out in place; anything else, or an operator that the
// scalars' classes do not have, goes to the values' own operations, which
// answer or report.
void Executer::evalUnary(EvalState& state, int code) {
    if (state.size > 0 && !state.top().empty() && !unaryOnScalar(state.top(), code))
        unaryOnValue(state.top(), code);
}

void Executer::evalBinary(EvalState& state, const EvalStep& step) {
    if (state.size < 2 || state.top().empty()) return;
    if (binaryOnScalars(state, step)) return;
    if (step.code == OP_ELEMENT && elementInPlace(state)) return;
    Variable* left = state.below().box();
    Variable* right = state.top().box();
    Variable* other = Variable::dereference(right);
    Variable* result = left->doOperation(other, step.code, 0);
    if (result == other && other != right) result = right;
    if (right == result)
        state.top() = EvalValue();
    else
        state.top().drop();
    finishOperation(state, result);
}

// The member or the method waiting applies to the left value; the right one is
// empty. A variable of a scope answers directly, as its reference would: a
// result that is the variable itself comes back as a reference to it.
void Executer::evalSelect(EvalState& state) {
    if (state.size < 2) return;
    if (!state.member && state.element) {
        state.top().drop();
        state.replaceTwo(EvalValue::at(state.element));
        state.element = 0;
        return;
    }
    if (state.member && selectScalarMember(state)) return;
    Variable* variable = state.below().scopeVariable();
    Variable* left = variable ? variable : state.below().box();
    Variable* result;
    if (state.member) {
        result = new VarReference(left->getMemberVar(state.member));
        state.member = 0;
    } else if (selectScalar(state, left)) {
        return;
    } else {
        result = left->execMethodCall(state.method, state.arguments(), errorFlag);
        state.dropMethodArguments();
        if (errorFlag) stopped = 1;
    }
    state.top().drop();
    if (variable) {
        if (result == variable) result = new VarReference(variable);
        state.replaceTwo(EvalValue::owned(result));
        return;
    }
    finishOperation(state, result);
}

// An element of an array of a scope, or of one that a reference refers to, by a scalar index stands
// in its place as a variable of a scope does: the array's elements live as long as the array. False,
// with nothing done, for any other operand.
bool Executer::elementInPlace(EvalState& state) {
    Variable* array = state.below().lasting();
    ScalarValue index;
    if (!array || array->isA() != &class_ArrayVar || !state.top().scalar(index)) return false;
    Variable* element = static_cast<ArrayVar*>(array)->elementAt(ScalarVar::truncate(index.value));
    state.top().drop();
    state.below().drop();
    state.replaceTwo(EvalValue::of(element));
    return true;
}

// A member of a scalar class of a variable of a scope, or of what a reference refers to, is read and
// stored in its place, as a variable of a scope is: neither lives in the evaluation, and a scalar
// member stays where it is while its value lives. False, with nothing done, for any other member.
bool Executer::selectScalarMember(EvalState& state) {
    Variable* owner = state.below().lasting();
    if (!owner) return false;
    Variable* member = owner->getMemberVar(state.member);
    int level = ScalarVar::rankOf(member);
    if (level == 0) return false;
    state.member = 0;
    state.top().drop();
    state.below().drop();
    state.replaceTwo(EvalValue::ofScalar(member, level));
    return true;
}

// A method whose result is a char, int or float answers a number, which takes the place of the two values.
bool Executer::selectScalar(EvalState& state, Variable* receiver) {
    ScalarValue result;
    if (!receiver->execScalarMethod(state.method, state.arguments(), result)) return false;
    state.dropMethodArguments();
    state.top().drop();
    state.below().drop();
    state.replaceTwo(EvalValue::of(result));
    return true;
}

// The method waits for the call operator with its arguments bound, the receiver below it.
void Executer::evalMethod(EvalState& state, MethodCall* call) {
    Variable* receiver = state.size > 0 ? state.top().scopeVariable() : 0;
    state.push();
    state.method = call->getFunction();
    state.dropMethodArguments();
    state.element = 0;
    if (receiver && receiver->isA() == &class_MatrixVar && call->argumentCount() == 2)
        bindIndices(state, static_cast<MatrixVar*>(receiver), call);
    else if (call->argumentCount() > 0)
        bindArguments(state.method, call, state.argumentsToBind());
}

// A(i, j) on a matrix of a scope, the indices scalars in range: the element's place waits instead of
// the arguments, and no alias is made for it. Otherwise the values are bound as they came.
void Executer::bindIndices(EvalState& state, MatrixVar* matrix, MethodCall* call) {
    EvalValue held[2];
    EvalValueGuard first(held[0]), second(held[1]);
    ScalarValue index[2];
    int count = 0;
    bool scalars = true;
    for (; count < 2; ++count) {
        evalValue(call->getExpression(count), held[count]);
        if (held[count].empty()) break;
        scalars = scalars && held[count].convertedTo(ScalarVar::INT_LEVEL, index[count]);
    }
    if (count == 2 && scalars)
        state.element = matrix->elementPlace(state.method, int(index[0].value), int(index[1].value));
    if (state.element) return;
    for (int k = 0; k < count; ++k)
        bindArgument(state.method->getArgument(k), held[k], state.argumentsToBind());
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

void Executer::unaryOnValue(EvalValue& value, int code) {
    Variable* operand = value.box();
    Variable* result = operand->doUnaryOperation(code);
    if (result != operand) value.drop();
    value = EvalValue::owned(result);
}

// An assignment leaves its target as the result, still a left value; it takes
// a value of a rank not above the target's, the others convert through the values.
bool Executer::binaryOnScalars(EvalState& state, const EvalStep& step) {
    ScalarValue a, b;
    EvalValue& left = state.below();
    EvalValue& right = state.top();
    if (!left.scalar(a) || !right.scalar(b)) return false;
    bool assignment = Operator::isAssign(step.code);
    if (assignment && b.level > a.level) return false;
    int own = assignment || a.level > b.level ? a.level : b.level;
    scalarops::Apply apply = step.scalars.apply[own - ScalarVar::CHAR_LEVEL];
    if (!apply) return false;
    double x = apply(a.value, b.value);
    right.drop();
    if (assignment) {
        left.store(x);
        --state.size;
        return true;
    }
    left.drop();
    state.replaceTwo(EvalValue::of(ScalarValue{step.scalars.level[own - ScalarVar::CHAR_LEVEL], x}));
    return true;
}

// The result takes the place of the two values; the left one goes, unless it
// is the result. A reference into a temporary left would outlive it: it becomes a copy.
void Executer::finishOperation(EvalState& state, Variable* result) {
    EvalValue& leftValue = state.below();
    Variable* left = leftValue.ownedValue();
    if (left != result) {
        if (result && result->isA() == &class_VarReference && left->isA() != &class_VarReference) {
            ValueGuard reference(result);
            result = Variable::dereference(result)->clone();
        }
        leftValue.drop();
    } else {
        leftValue = EvalValue();
    }
    state.replaceTwo(EvalValue::owned(result));
}

int Executer::evalBool(Expression* expression, int emptyAllowed) {
    Variable* const* found;
    const ScalarPlan* plan = readyPlan(expression, found);
    if (plan && plan->resultRank() == ScalarVar::CHAR_LEVEL) return plan->number(*this, found) != 0.0;
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
