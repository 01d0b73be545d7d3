// ScalarVar, the one design that char, int and float share: ranks, operators, constructors.
#ifndef INTERPRETER_SCALAR_H
#define INTERPRETER_SCALAR_H

#include "interpreter/scalarops.h"
#include "interpreter/variable.h"

extern Class class_ScalarVar;

// A scalar apart from any variable: the rank of its class (char 21, int 22,
// float 23) and its value as a double, exact for char and int.
struct ScalarValue {
    int level;
    double value;
};

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

    // --- The same rules on values apart from variables ---
    enum { CHAR_LEVEL = 21, INT_LEVEL = 22, FLOAT_LEVEL = 23 };
    // The scalar that v is or refers to, or null.
    static ScalarVar* scalarOf(Variable* v);
    // The rank of v's own class when it is a scalar class, 0 for any other class (a reference included).
    static int rankOf(const Variable* v) { return v->isA()->base() == &class_ScalarVar ? v->getLevel() : 0; }
    // x as the class of that rank stores it: char and int truncate toward zero and wrap.
    static double fitTo(int level, double x) {
        if (level == FLOAT_LEVEL) return x;
        std::int32_t n = truncate(x);
        return level == CHAR_LEVEL ? double(std::int8_t(n)) : double(n);
    }
    // A new unnamed value of the class of that rank.
    static ScalarVar* makeOfLevel(int level, double x);
    // a op b, op neither an assignment nor unary, worked out by the class of rank
    // ownLevel: false when that class has no such operator.
    static bool operate(int op, int ownLevel, double a, double b, ScalarValue& result);
    // a op b between two scalars as doOperation answers it: the class of the
    // higher rank works it out.
    static bool operate(int op, ScalarValue a, ScalarValue b, ScalarValue& result) {
        return operate(op, b.level > a.level ? b.level : a.level, a.value, b.value, result);
    }
    // What the assignment op stores in a variable of rank level holding current,
    // from r already in that class's form; false when the class has no such operator.
    static bool assigned(int op, int level, double current, double r, double& stored);
    // The unary op on v: the result, and for the increments (stores set) the
    // new value of the variable; false when the class has no such operator.
    static bool unaryOperation(int op, ScalarValue v, ScalarValue& result, bool& stores, double& stored);
    // double arithmetic as C does it, or int32 with wrap-around; a comparison or
    // logical operator gives 0 or 1, ^ the power truncated for the integers, ^= the
    // exclusive or. An int division by zero faults as the machine does.
    static double compute(int op, double a, double b, bool integer) {
        return scalarops::compute(op, a, b, integer);
    }
    // Toward zero into 32 bits, the high bits dropped; NaN and the infinities give 0.
    static std::int32_t truncate(double x) { return scalarops::truncate(x); }

protected:
    ScalarVar() {}
    explicit ScalarVar(const String& name) : Variable(name) {}
    // A float argument is also accepted by int's one-argument constructor.
    virtual bool acceptsInConstructor(const Variable* argument) const;

private:
    enum ResultKind { NO_RESULT, OWN_RESULT, TRUTH_RESULT, INT_RESULT };
    static ResultKind resultKind(int op, bool integer);
    static int resultLevel(ResultKind kind, int ownLevel);
    bool accepts(const Variable* other, int op) const;
    double operandValue(const Variable* other) const;
};

#endif
