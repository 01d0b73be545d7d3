// BaseExpression, the root of what may stand as an expression, and Expression, which orders and types its
// elements.
#ifndef INTERPRETER_EXPRESSN_H
#define INTERPRETER_EXPRESSN_H

#include <memory>
#include <vector>

#include "interpreter/evalstep.h"
#include "quill/orderedc.h"

class CodeElement;
class ScalarPlan;
class Operator;
class Variable;

extern Class class_BaseExpression;
extern Class class_Expression;

// The common root of Expression and Variable, so that a value may stand wherever an expression does.
class BaseExpression : public Object {
    DECLARE_MEMBERS(BaseExpression)
protected:
    BaseExpression() {}
    BaseExpression(const BaseExpression& e) : Object(e) {}
};

// Elements are Operators and CodeElements, all owned: first in the order the
// parser adds them, after toPostfix in postfix order.
class Expression : public BaseExpression {
    DECLARE_MEMBERS(Expression)
public:
    Expression();
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;
    ~Expression() noexcept(false) override;

    void addOperator(int code);
    // Takes element, which goes at once when the list cannot grow.
    void addElement(CodeElement* element);
    // Reorders the elements to postfix and answers the static type of the
    // result, owned by the caller; null for an expression without elements.
    // Assignments group to the right, every other operator, unary ones
    // included, to the left; a unary operator follows its operand.
    Variable* toPostfix();
    const OrderedCltn& getElements() const { return elements; }
    // Every element an Operator or a ConstDeclare.
    bool isConstant() const;
    // The value of a constant postfix expression, owned by the caller; null without elements.
    Variable* evalConst() const;
    // The executer's reading of the postfix elements, made on its first
    // evaluation, and the plan of an expression of scalars only, or null.
    std::vector<EvalStep>& steps() const { return evalSteps; }
    const ScalarPlan* scalarPlan() const { return plan.get(); }
    void setScalarPlan(std::unique_ptr<ScalarPlan> made) const;

    // The postfix elements, each by its name or operator text.
    void printOn(std::ostream& os) const override;

private:
    void addInPostfix(Object* element);
    void applyOperator(Operator* op);
    void applyUnary(Operator* op);
    void applyBinary(Operator* op);
    bool popsBefore(int code) const;

    OrderedCltn elements;
    OrderedCltn operators;  // the operator stack of toPostfix
    OrderedCltn operands;   // the stack of static types, owned while there
    mutable std::vector<EvalStep> evalSteps;
    mutable std::unique_ptr<ScalarPlan> plan;
};

#endif
