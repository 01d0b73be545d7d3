// Executer: postfix evaluation on two registers and a stack, truth of conditions, calls and argument binding.
#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/executer.h"
#include "interpreter/expressn.h"
#include "interpreter/funcdecl.h"
#include "interpreter/operator.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/stackgrd.h"

// The registers of the evaluation, the stack of lefts put aside, and the
// member or method waiting for its '.' or '()'. What they hold at the end goes.
// The two collections are made on first use: most expressions need neither.
struct Executer::EvalState {
    Variable* left = 0;
    Variable* right = 0;
    OrderedCltn* saved = 0;
    VarDeclare* member = 0;
    FuncDeclare* method = 0;
    OrderedCltn* methodArguments = 0;

    ~EvalState() {
        ValueGuard::destroy(left);
        ValueGuard::destroy(right);
        for (int i = saved ? int(saved->size()) - 1 : -1; i >= 0; --i)
            ValueGuard::destroy(Variable::argumentAt(*saved, i));
        delete saved;
        dropMethodArguments();
        delete methodArguments;
    }
    void save(Variable* v) {
        if (!saved) saved = new OrderedCltn;
        saved->add(*v);
    }
    Variable* restore() {
        return saved && saved->size() > 0 ? static_cast<Variable*>(saved->removeLast()) : 0;
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
    EvalState state;
    const OrderedCltn& elements = expression->getElements();
    for (unsigned i = 0; i < elements.size(); ++i) {
        if (stopped) return 0;
        Object* element = elements.at(int(i));
        if (element->isA() == &class_Operator)
            evalOperator(state, static_cast<Operator*>(element)->getCode());
        else
            evalElement(state, element);
    }
    Variable* result = state.right;
    state.right = 0;
    return result;
}

// A variable is reached as a new reference; a member or a method waits for its operator.
void Executer::evalElement(EvalState& state, Object* element) {
    if (state.left) state.save(state.left);
    state.left = state.right;
    state.right = 0;
    Class* kind = element->isA();
    if (kind == &class_VarDeclReference) {
        VarDeclare* declaration = static_cast<VarDeclReference*>(element)->getDeclaration();
        if (declaration->isA() == &class_FieldDeclare)
            state.member = declaration;
        else
            state.right = new VarReference(lookup(declaration));
    } else if (kind == &class_ConstDeclare) {
        state.right = static_cast<ConstDeclare*>(element)->getVariable();
    } else if (kind == &class_MethodCall) {
        MethodCall* call = static_cast<MethodCall*>(element);
        state.method = call->getFunction();
        state.dropMethodArguments();
        bindArguments(state.method, call, state.arguments());
    } else if (kind == &class_FuncCall) {
        state.right = callFunction(static_cast<FuncCall*>(element));
    } else if (kind == &class_VarDeclare) {
        state.right = createVariable(static_cast<VarDeclare*>(element));
    }
}

void Executer::evalOperator(EvalState& state, int code) {
    if (Operator::isUnary(code)) {
        if (!state.right) return;
        Variable* result = state.right->doUnaryOperation(code);
        if (result != state.right) ValueGuard::destroy(state.right);
        state.right = result;
        return;
    }
    if (!state.left) state.left = state.restore();
    if (!state.left) return;
    if (code == OP_MEMBER || code == OP_CALL) {
        Variable* result;
        if (state.member) {
            result = new VarReference(state.left->getMemberVar(state.member));
            state.member = 0;
        } else {
            result = state.left->execMethodCall(state.method, state.arguments(), errorFlag);
            state.dropMethodArguments();
            if (errorFlag) stopped = 1;
        }
        finishOperation(state, result);
        return;
    }
    if (!state.right) return;
    Variable* other = Variable::dereference(state.right);
    Variable* result = state.left->doOperation(other, code, 0);
    if (result == other && other != state.right) result = state.right;
    if (state.right != result) ValueGuard::destroy(state.right);
    state.right = 0;
    finishOperation(state, result);
}

// The result becomes the right register and the left one goes, unless it is
// the result. A reference into a temporary left would outlive it: it becomes a copy.
void Executer::finishOperation(EvalState& state, Variable* result) {
    if (state.left != result) {
        if (result && result->isA() == &class_VarReference && state.left->isA() != &class_VarReference) {
            ValueGuard reference(result);
            result = Variable::dereference(result)->clone();
        }
        ValueGuard::destroy(state.left);
    }
    state.left = 0;
    state.right = result;
}

int Executer::evalBool(Expression* expression, int emptyAllowed) {
    ValueGuard value(evalExpression(expression));
    if (!value.get()) return stopped || emptyAllowed ? 1 : 0;
    Variable* v = Variable::dereference(value.get());
    if (v->isA() == &class_CharVar) return static_cast<CharVar*>(v)->getValue() != 0;
    ValueGuard truth(new CharVar);
    assign(truth.get(), v);
    return static_cast<CharVar*>(truth.get())->getValue() != 0;
}

Variable* Executer::lookup(VarDeclare* declaration) {
    int level = declaration->getLevel();
    int index = declaration->getIndex();
    Object* found =
        level < 0 ? globals.at(index) : static_cast<OrderedCltn*>(currentFrame().at(level))->at(index);
    return Variable::dereference(static_cast<Variable*>(found));
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
    OrderedCltn values;
    ContentsGuard guard(values);
    if (!bindArguments(function, call, values)) return 0;
    OrderedCltn* scope = newList();
    for (unsigned i = 0; i < values.size(); ++i) scope->add(*values.at(int(i)));
    values.removeAll();
    return runFunction(function, scope, false);
}

Variable* Executer::callBuiltin(FuncCall* call) {
    FuncDeclare* function = call->getFunction();
    OrderedCltn arguments;
    ContentsGuard guard(arguments);
    if (!bindArguments(function, call, arguments)) return 0;
    return findBuiltin(function->getName())(*this, function->getName(), arguments);
}

bool Executer::bindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& values) {
    for (int i = 0; i < function->argumentCount(); ++i) {
        Variable* value = evalExpression(call->getExpression(i));
        if (!value) return false;
        VarDeclare* parameter = function->getArgument(i);
        if (parameter->isRef()) {
            value->setName(parameter->getName());
            values.add(*value);
            if (!value->isKindOf(class_VarReference))
                runtimeError("A left-value element must used to assign to a reference", 0);
            continue;
        }
        ValueGuard held(value);
        Variable* bound = parameter->getType()->clone();
        bound->setName(parameter->getName());
        values.add(*bound);
        assign(bound, value);
    }
    return true;
}
