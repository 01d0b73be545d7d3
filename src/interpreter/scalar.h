// ScalarVar, the one design that char, int and float share: ranks, operators, constructors.
#ifndef INTERPRETER_SCALAR_H
#define INTERPRETER_SCALAR_H

#include "interpreter/variable.h"

extern Class class_ScalarVar;

// A scalar accepts an operand directly (toOwnType) when the operand is a
// scalar of a rank not above its own; char and int compute in 32-bit C
// arithmetic and keep their width, float computes in doubles. Every comparison
// and logical operator yields a char of 0 or 1, both sides evaluated.
class ScalarVar : public Variable {
    DECLARE_MEMBERS(ScalarVar)
public:
    // The value as a double, exact for char and int.
    virtual double number() const = 0;
    // Stores x in this class's form: char and int truncate toward zero and wrap to their width.
    virtual void setNumber(double x) = 0;
    virtual bool isInteger() const = 0;
    // A new unnamed value of this class holding x.
    virtual ScalarVar* makeValue(double x) const = 0;

    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    Variable* getUnaryOperationType(int op) override;
    Variable* doUnaryOperation(int op) override;
    int constructorIndex(const OrderedCltn& types) const override;
    // 0 gives zero; 1 takes the value by toOwnType, a float by truncation, anything else through its
    // convertTo.
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    void printOn(std::ostream& os) const override;  // " Value " and the display form

    bool toOwnType(const Variable* v) const;
    // double arithmetic as C does it, or int32 with wrap-around; a comparison or
    // logical operator gives 0 or 1, ^ the power truncated for the integers, ^= the
    // exclusive or. An int division by zero faults as the machine does.
    static double compute(int op, double a, double b, bool integer);
    // Toward zero into 32 bits, the high bits dropped; NaN and the infinities give 0.
    static std::int32_t truncate(double x);

protected:
    ScalarVar() {}
    explicit ScalarVar(const String& name) : Variable(name) {}
    // A float argument is also accepted by int's one-argument constructor.
    virtual bool acceptsInConstructor(const Variable* argument) const;

private:
    enum ResultKind { NO_RESULT, OWN_RESULT, TRUTH_RESULT, INT_RESULT };
    ResultKind resultKind(int op) const;
    bool accepts(const Variable* other, int op) const;
    double operandValue(const Variable* other) const;
    Variable* makeResult(ResultKind kind, double x) const;
};

#endif
