// RationalFunctionVar: conversion, operators, methods and constructors.
#include "interpreter/ratvar.h"

#include <memory>

#include "control/discdyn.h"
#include "interpreter/intvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/polyvar.h"
#include "interpreter/zpkout.h"

namespace {

void registerRational(Class*) { Variable::registerType(new RationalFunctionVar); }

}  // namespace

DEFINE_CLASS(RationalFunctionVar, AlgebraVar, 1, registerRational)

RationalFunctionVar::RationalFunctionVar() {}

RationalFunctionVar::RationalFunctionVar(const RationalFunction& f) : value(f) {}

const String& RationalFunctionVar::getType() const {
    static const String type("RationalFunction");
    return type;
}

void RationalFunctionVar::deepenShallowCopy() {
    AlgebraVar::deepenShallowCopy();
    value.clearCopiedState();
}

Matrix RationalFunctionVar::computeEigenvalues() { return RationalFunction(value).poles(); }

int RationalFunctionVar::plotOn() {
    std::unique_ptr<DynOp> s(value.isDiscrete() ? new DiscDynOp(value, 0.0) : new DynOp(value));
    return plotSystem(*s);
}

RationalFunction RationalFunctionVar::toRational(const Variable* v, double samplingTime) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    switch (kindOf(d)) {
        case KIND_INT:
        case KIND_FLOAT:
            return RationalFunction(scalarValue(d), samplingTime);
        case KIND_POLYNOMIAL: {
            const Polynomial& p = static_cast<const PolynomialVar*>(d)->getValue();
            return RationalFunction(p, Polynomial(1.0, p.samplingTime()), p.samplingTime());
        }
        case KIND_RATIONAL:
            return static_cast<const RationalFunctionVar*>(d)->value;
        default:
            conversionFailure(d, "RationalFunction");
            return RationalFunction();
    }
}

bool RationalFunctionVar::adopt(const Object& ob) {
    if (!ob.isKindOf(class_RationalFunction)) return false;
    value = static_cast<const RationalFunction&>(ob);
    return true;
}

// --- Operators ---

const char* RationalFunctionVar::resultType(const Variable* other, int op, int) const {
    unsigned k = kindOf(other);
    if (Operator::isArithmeticAssign(op) || (Operator::isArithmetic(op) && op != OP_MOD))
        return k & (KIND_SCALAR | KIND_POLYNOMIAL | KIND_RATIONAL) ? "RationalFunction" : 0;
    return (op == OP_EQ || op == OP_NE) && k == KIND_RATIONAL ? "char" : 0;
}

Variable* RationalFunctionVar::operate(Variable* other, int op, int swapped) {
    RationalFunction f = toRational(other, value.samplingTimeOf());
    if (op == OP_ASSIGN) {
        value = f;
        return this;
    }
    if (Operator::isComparison(op)) return comparison(value, f, op, swapped);
    const RationalFunction& a = swapped ? f : value;
    const RationalFunction& b = swapped ? value : f;
    switch (Operator::isAssign(op) ? Operator::assignedOperation(op) : op) {
        case OP_ADD:
            f = a + b;
            break;
        case OP_SUB:
            f = a - b;
            break;
        case OP_MUL:
            f = a * b;
            break;
        default:
            f = a / b;
    }
    if (!Operator::isAssign(op)) return new RationalFunctionVar(f);
    value = f;
    return this;
}

// --- Methods ---

namespace {

RationalFunction& rationalOf(Variable& v) { return static_cast<RationalFunctionVar&>(v).getValue(); }

}  // namespace

const MethodTable& RationalFunctionVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable(&AlgebraVar::methods());
    table->add("poles", "Matrix", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new MatrixVar(RationalFunction(rationalOf(v)).poles());
    });
    table->add("zeros", "Matrix", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new MatrixVar(RationalFunction(rationalOf(v)).zeros());
    });
    table->add("reSize", "int", {"int"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        int n = intValue(argumentAt(a, 0));
        MatrixVar::checkIndex(n, "length");
        rationalOf(v).reSize(unsigned(n));
        return new IntVar(int(rationalOf(v).order()));
    });
    table->add("zpk", "int", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        writeZpk(rationalOf(v));
        return new IntVar(1);
    });
    table->add("order", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(rationalOf(v).order()); });
    return *table;
}

// --- Constructors ---

namespace {

// The numerator over the denominator, in the sampling time of whichever is a polynomial.
RationalFunction quotient(const OrderedCltn& a) {
    Polynomial numerator = PolynomialVar::toPolynomial(Variable::argumentAt(a, 0));
    Polynomial denominator = PolynomialVar::toPolynomial(Variable::argumentAt(a, 1));
    double T = kindOf(Variable::argumentAt(a, 0)) == KIND_POLYNOMIAL ? numerator.samplingTime()
                                                                     : denominator.samplingTime();
    return RationalFunction(numerator, denominator, T);
}

RationalFunction fromRoots(const OrderedCltn& a, double samplingTime) {
    return RationalFunction(MatrixVar::toMatrix(Variable::argumentAt(a, 0)),
                            MatrixVar::toMatrix(Variable::argumentAt(a, 1)),
                            scalarValue(Variable::argumentAt(a, 2)), samplingTime);
}

}  // namespace

// (numerator, denominator [, samplingTime]) with polynomials or coefficient vectors;
// (zeros, poles, gain [, samplingTime]) with the roots as rows (re, im).
const ConstructorTable& RationalFunctionVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    unsigned polynomial = KIND_SCALAR | KIND_VECTOR | KIND_POLYNOMIAL;
    table->add({polynomial, polynomial},
               [](Variable& v, const OrderedCltn& a) { rationalOf(v) = quotient(a); });
    table->add({polynomial, polynomial, KIND_SCALAR}, [](Variable& v, const OrderedCltn& a) {
        RationalFunction f = quotient(a);
        double T = scalarValue(argumentAt(a, 2));
        rationalOf(v) = RationalFunction(f.numeratorCoefficients(), f.denominatorCoefficients(), T);
    });
    table->add({KIND_MATRIX, KIND_MATRIX, KIND_SCALAR},
               [](Variable& v, const OrderedCltn& a) { rationalOf(v) = fromRoots(a, 0.0); });
    table->add({KIND_MATRIX, KIND_MATRIX, KIND_SCALAR, KIND_SCALAR}, [](Variable& v, const OrderedCltn& a) {
        rationalOf(v) = fromRoots(a, scalarValue(argumentAt(a, 3)));
    });
    return *table;
}
