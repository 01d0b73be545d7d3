// Expression: the infix-to-postfix pass with its static typing, the constant evaluation and the printed form.
#include "interpreter/expressn.h"

#include <memory>
#include <ostream>
#include <utility>

#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/funcdecl.h"
#include "interpreter/operator.h"
#include "interpreter/scalarplan.h"
#include "interpreter/varref.h"
#include "quill/quillerr.h"

DEFINE_ABSTRACT_CLASS(BaseExpression, Object, 1, 0)
DEFINE_CLASS(Expression, BaseExpression, 1, 0)

Expression::Expression() : elements(16), operators(16), operands(16) {}

Expression::~Expression() noexcept(false) {
    elements.deleteContents();
    operators.deleteContents();
    operands.deleteContents();
}

void Expression::setScalarPlan(std::unique_ptr<ScalarPlan> made) const { plan = std::move(made); }

void Expression::addOperator(int code) { addOwned(elements, new Operator(code)); }

void Expression::addElement(CodeElement* element) { addOwned(elements, element); }

bool Expression::isConstant() const {
    for (unsigned i = 0; i < elements.size(); ++i) {
        Object* e = elements.at(int(i));
        if (!e->isKindOf(class_Operator) && !e->isKindOf(class_ConstDeclare)) return false;
    }
    return true;
}

// The element being placed is always held by a list or by a guard: on a
// failure the elements placed stay with this expression, the others go.
Variable* Expression::toPostfix() {
    OrderedCltn infix(elements);
    ContentsGuard guard(infix);
    elements.removeAll();
    for (unsigned i = 0; i < infix.size(); ++i) {
        Object* element = infix.at(int(i));
        infix[int(i)] = nil;
        addInPostfix(element);
    }
    while (operators.size() > 0) applyOperator(static_cast<Operator*>(operators.removeLast()));
    return operands.size() > 0 ? static_cast<Variable*>(operands.removeLast()) : 0;
}

// Whether the operator on top of the stack is applied before code is pushed: an
// assignment only by an operator of strictly lower priority, anything else by
// one of lower or equal priority. ( and [ compare as the call and the element.
bool Expression::popsBefore(int code) const {
    int top = static_cast<Operator*>(operators.last())->getCode();
    int cur = code == OP_GROUP ? OP_CALL : code == OP_INDEX ? OP_ELEMENT : code;
    return Operator::isAssign(top) ? cur / 100 < top / 100 : cur / 100 <= top / 100;
}

void Expression::addInPostfix(Object* element) {
    if (!element->isKindOf(class_Operator)) {
        CodeElement* e = static_cast<CodeElement*>(element);
        addOwned(elements, e);
        addOwned(operands,
                 e->isKindOf(class_VarDeclReference) ? new VarReference(e->getType()) : e->getVariable());
        if (e->isKindOf(class_MethodCall)) applyOperator(static_cast<Operator*>(operators.removeLast()));
        return;
    }
    Operator* op = static_cast<Operator*>(element);
    int code = op->getCode();
    if (code == OP_GROUP_CLOSE || code == OP_INDEX_CLOSE) {
        // A closer without its opener empties the stack, whose last() then raises;
        // the parser never lets one through.
        std::unique_ptr<Operator> closer(op);
        int open = code == OP_GROUP_CLOSE ? OP_GROUP : OP_INDEX;
        while (static_cast<Operator*>(operators.last())->getCode() != open)
            applyOperator(static_cast<Operator*>(operators.removeLast()));
        delete operators.removeLast();
        if (open == OP_INDEX) applyOperator(new Operator(OP_ELEMENT));
        return;
    }
    std::unique_ptr<Operator> arriving(op);
    while (operators.size() > 0 && popsBefore(code))
        applyOperator(static_cast<Operator*>(operators.removeLast()));
    addOwned(operators, arriving.release());
}

void Expression::applyOperator(Operator* op) {
    // Without an operand the stack's removeLast raises; the parser never lets that happen.
    addOwned(elements, op);
    if (Operator::isUnary(op->getCode()))
        applyUnary(op);
    else
        applyBinary(op);
}

void Expression::applyUnary(Operator* op) {
    std::unique_ptr<Variable> right(static_cast<Variable*>(operands.removeLast()));
    Variable* result = Variable::dereference(right.get())->getUnaryOperationType(op->getCode());
    if (result == Variable::dereference(right.get())) {
        addOwned(operands, right.release());
        return;
    }
    right.reset();
    addOwned(operands, result);
}

// The result stands for the entry it equals, so that an operator answering its
// left side keeps that side's reference and a left value stays one.
void Expression::applyBinary(Operator* op) {
    std::unique_ptr<Variable> right(static_cast<Variable*>(operands.removeLast()));
    std::unique_ptr<Variable> left(static_cast<Variable*>(operands.removeLast()));
    int code = op->getCode();
    if (code == OP_MEMBER || code == OP_CALL) {
        addOwned(operands, right.release());
        return;
    }
    Variable* result =
        Variable::dereference(left.get())->getOperationType(Variable::dereference(right.get()), code, 0);
    if (result == Variable::dereference(left.get())) result = left.release();
    if (result == Variable::dereference(right.get())) result = right.release();
    addOwned(operands, result);
}

Variable* Expression::evalConst() const {
    OrderedCltn pending;
    ContentsGuard pendingGuard(pending);
    std::unique_ptr<Variable> left, right;
    for (unsigned i = 0; i < elements.size(); ++i) {
        Object* e = elements.at(int(i));
        if (e->isKindOf(class_ConstDeclare)) {
            if (left) addOwned(pending, left.release());
            left = std::move(right);
            right.reset(static_cast<ConstDeclare*>(e)->getVariable());
            continue;
        }
        int code = static_cast<Operator*>(e)->getCode();
        if (Operator::isUnary(code)) {
            Variable* result = right->doUnaryOperation(code);
            if (result != right.get()) right.reset(result);
            continue;
        }
        if (!left) left.reset(static_cast<Variable*>(pending.removeLast()));
        Variable* result = left->doOperation(right.get(), code, 0);
        if (result == left.get())
            right = std::move(left);
        else if (result != right.get())
            right.reset(result);
        left.reset();
    }
    return right.release();
}

void Expression::printOn(std::ostream& os) const {
    os << "[";
    for (unsigned i = 0; i < elements.size(); ++i) {
        Object* e = elements.at(int(i));
        if (i > 0) os << " ";
        if (e->isKindOf(class_Operator))
            os << static_cast<Operator*>(e)->text();
        else
            static_cast<CodeElement*>(e)->printShort(os);
    }
    os << "]";
}
