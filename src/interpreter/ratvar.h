// RationalFunctionVar, the RationalFunction of the language: transfer functions in s and z.
#ifndef INTERPRETER_RATVAR_H
#define INTERPRETER_RATVAR_H

#include "algebra/ratfun.h"
#include "interpreter/algvar.h"

extern Class class_RationalFunctionVar;

// A number or a polynomial on either side of an operator takes this function's sampling time.
class RationalFunctionVar : public AlgebraVar {
    DECLARE_MEMBERS(RationalFunctionVar)
public:
    RationalFunctionVar();  // 0 / 1, continuous
    explicit RationalFunctionVar(const RationalFunction& f);

    RationalFunction& getValue() { return value; }
    const RationalFunction& getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 23; }
    Matrix computeEigenvalues() override;  // the poles
    void deepenShallowCopy() override;
    // Plots the realisation: a companion form, in discrete time at the function's sampling time.
    int plotOn() override;
    int isPlottable() const override { return 1; }

    // Int and float as constants, a polynomial over 1, a rational function; anything else is the
    // conversion line and 0 / 1. The number takes the sampling time given.
    static RationalFunction toRational(const Variable* v, double samplingTime = 0.0);

protected:
    const Object& numericObject() const override { return value; }
    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* fileExtension() const override { return "rat"; }
    const char* workspaceKind() const override { return "rational function object"; }
    bool adopt(const Object& ob) override;
    void clear() override { value = RationalFunction(); }
    void convertFrom(const Variable* v) override { value = toRational(v); }
    const char* resultType(const Variable* other, int op, int swapped) const override;
    Variable* operate(Variable* other, int op, int swapped) override;
    Variable* negated() const override { return new RationalFunctionVar(-value); }

private:
    RationalFunction value;
};

#endif
