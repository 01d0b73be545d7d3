// PolynomialVar, the Polynomial of the language, and the predefined s and z.
#ifndef INTERPRETER_POLYVAR_H
#define INTERPRETER_POLYVAR_H

#include "algebra/polynom.h"
#include "interpreter/algvar.h"

extern Class class_PolynomialVar;

// A polynomial over another, or a number over a polynomial, is a RationalFunction. Files and
// the workspace hold a polynomial as a RationalFunction over 1.
class PolynomialVar : public AlgebraVar {
    DECLARE_MEMBERS(PolynomialVar)
public:
    PolynomialVar();  // the constant 0
    explicit PolynomialVar(const Polynomial& p);

    Polynomial& getValue() { return value; }
    const Polynomial& getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 23; }
    Object* storeObject() const override;
    Matrix computeEigenvalues() override;  // the roots
    void deepenShallowCopy() override;

    // Int and float as a constant, a polynomial, a vector of coefficients (highest power first);
    // anything else is the conversion line and the zero polynomial.
    static Polynomial toPolynomial(const Variable* v);

protected:
    const Object& numericObject() const override { return value; }
    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* fileExtension() const override { return "rat"; }
    const char* workspaceKind() const override { return "polynomial object"; }
    // A polynomial, or a rational function whose denominator is a constant.
    bool adopt(const Object& ob) override;
    void clear() override { value = Polynomial(); }
    void convertFrom(const Variable* v) override { value = toPolynomial(v); }
    const char* resultType(const Variable* other, int op, int swapped) const override;
    Variable* operate(Variable* other, int op, int swapped) override;
    Variable* negated() const override { return new PolynomialVar(-value); }

private:
    Variable* assignment(const Variable* other, int op);

    Polynomial value;
};

#endif
