// PolynomialVar: conversion, operators, methods, the constructor, and the predefined s and z.
#include "interpreter/polyvar.h"

#include "algebra/ratfun.h"
#include "interpreter/intvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/ratvar.h"
#include "interpreter/vectvar.h"
#include "interpreter/zpkout.h"

namespace {

// s and z, the variables of continuous and discrete transfer functions: z has the sampling time -1.
void registerPolynomial(Class*) {
    Variable::registerType(new PolynomialVar);
    Vector coefficients(2u);
    coefficients[0u] = 1.0;
    for (double samplingTime : {0.0, -1.0}) {
        PolynomialVar* variable = new PolynomialVar(Polynomial(coefficients, samplingTime));
        variable->setName(samplingTime == 0.0 ? "s" : "z");
        Variable::addPredefined(variable);
    }
}

}  // namespace

DEFINE_CLASS(PolynomialVar, AlgebraVar, 1, registerPolynomial)

PolynomialVar::PolynomialVar() {}

PolynomialVar::PolynomialVar(const Polynomial& p) : value(p) {}

const String& PolynomialVar::getType() const {
    static const String type("Polynomial");
    return type;
}

void PolynomialVar::deepenShallowCopy() {
    AlgebraVar::deepenShallowCopy();
    value.clearCopiedState();
}

Object* PolynomialVar::storeObject() const {
    double T = value.samplingTime();
    return new RationalFunction(value, Polynomial(1.0, T), T);
}

Matrix PolynomialVar::computeEigenvalues() { return value.roots(); }

Polynomial PolynomialVar::toPolynomial(const Variable* v) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    switch (kindOf(d)) {
        case KIND_INT:
        case KIND_FLOAT:
            return Polynomial(scalarValue(d));
        case KIND_POLYNOMIAL:
            return static_cast<const PolynomialVar*>(d)->value;
        case KIND_VECTOR:
            return Polynomial(VectorVar::toVector(d));
        default:
            conversionFailure(d, "Polynomial");
            return Polynomial();
    }
}

bool PolynomialVar::adopt(const Object& ob) {
    if (ob.isKindOf(class_Polynomial)) {
        value = static_cast<const Polynomial&>(ob);
        return true;
    }
    if (!ob.isKindOf(class_RationalFunction)) return false;
    const RationalFunction& f = static_cast<const RationalFunction&>(ob);
    Vector denominator = f.denominatorCoefficients();
    if (denominator.size() != 1 || denominator[0u] == 0.0) return false;
    value = Polynomial(f.numeratorCoefficients(), f.samplingTimeOf()) / denominator[0u];
    return true;
}

// --- Operators ---

const char* PolynomialVar::resultType(const Variable* other, int op, int swapped) const {
    unsigned k = kindOf(other);
    unsigned operands = KIND_SCALAR | KIND_POLYNOMIAL;
    switch (op) {
        case OP_ASSIGN:
            return k & (operands | KIND_VECTOR) ? "Polynomial" : 0;
        case OP_ADD_ASSIGN:
        case OP_SUB_ASSIGN:
        case OP_MUL_ASSIGN:
        case OP_ADD:
        case OP_SUB:
        case OP_MUL:
            return k & operands ? "Polynomial" : 0;
        case OP_DIV_ASSIGN:
            return k & KIND_SCALAR ? "Polynomial" : 0;
        case OP_DIV:
            return k == KIND_POLYNOMIAL || (k & KIND_SCALAR && swapped) ? "RationalFunction"
                   : k & KIND_SCALAR                                    ? "Polynomial"
                                                                        : 0;
        default:
            return (op == OP_EQ || op == OP_NE) && k == KIND_POLYNOMIAL ? "char" : 0;
    }
}

Variable* PolynomialVar::operate(Variable* other, int op, int swapped) {
    if (Operator::isAssign(op)) return assignment(other, op);
    if (Operator::isComparison(op)) return comparison(value, toPolynomial(other), op, swapped);
    double T = value.samplingTime();
    if (op == OP_DIV && (swapped || kindOf(other) == KIND_POLYNOMIAL)) {
        Polynomial p = toPolynomial(other);
        return new RationalFunctionVar(swapped ? RationalFunction(p, value, T)
                                               : RationalFunction(value, p, T));
    }
    if (kindOf(other) & KIND_SCALAR) {
        double x = scalarValue(other);
        switch (op) {
            case OP_ADD:
                return new PolynomialVar(value + x);
            case OP_SUB:
                return new PolynomialVar(swapped ? x - value : value - x);
            case OP_MUL:
                return new PolynomialVar(value * x);
            default:
                return new PolynomialVar(value / x);
        }
    }
    Polynomial p = static_cast<PolynomialVar*>(dereference(other))->value;
    switch (op) {
        case OP_ADD:
            return new PolynomialVar(value + p);
        case OP_SUB:
            return new PolynomialVar(swapped ? p - value : value - p);
        default:
            return new PolynomialVar(swapped ? p * value : value * p);
    }
}

Variable* PolynomialVar::assignment(const Variable* other, int op) {
    if (op == OP_ASSIGN) {
        value = toPolynomial(other);
        return this;
    }
    Polynomial p = toPolynomial(other);
    if (op == OP_ADD_ASSIGN)
        value = value + p;
    else if (op == OP_SUB_ASSIGN)
        value = value - p;
    else if (op == OP_MUL_ASSIGN)
        value = value * p;
    else
        value = value / scalarValue(other);
    return this;
}

// --- Methods and the constructor ---

namespace {

Polynomial& polynomialOf(Variable& v) { return static_cast<PolynomialVar&>(v).getValue(); }

}  // namespace

const MethodTable& PolynomialVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable(&AlgebraVar::methods());
    table->add("roots", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(polynomialOf(v).roots()); });
    table->add("reSize", "int", {"int"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        int n = intValue(argumentAt(a, 0));
        MatrixVar::checkIndex(n, "length");
        return new IntVar(polynomialOf(v).reSize(n));
    });
    table->add("zpk", "int", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        const Polynomial& p = polynomialOf(v);
        writeZpk(RationalFunction(p, Polynomial(1.0, p.samplingTime()), p.samplingTime()));
        return new IntVar(1);
    });
    table->add("order", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return polynomialOf(v).order(); });
    return *table;
}

// Polynomial(coefficients, samplingTime), the coefficients highest power first.
const ConstructorTable& PolynomialVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    table->add({KIND_VECTOR | KIND_SCALAR, KIND_SCALAR}, [](Variable& v, const OrderedCltn& a) {
        polynomialOf(v) = toPolynomial(argumentAt(a, 0));
        polynomialOf(v).samplingTime(scalarValue(argumentAt(a, 1)));
    });
    return *table;
}
