// VectorVar: conversion, operators, the element and window calls, the methods and the constructor.
#include "interpreter/vectvar.h"

#include "algebra/cursor.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/subvvar.h"

namespace {

void registerVector(Class*) { Variable::registerType(new VectorVar); }

}  // namespace

DEFINE_CLASS(VectorVar, AlgebraVar, 1, registerVector)

VectorVar::VectorVar() : value(0u) {}

VectorVar::VectorVar(const Vector& v) : value(v) {}

const String& VectorVar::getType() const {
    static const String type("Vector");
    return type;
}

void VectorVar::deepenShallowCopy() {
    AlgebraVar::deepenShallowCopy();
    value.clearCopiedState();
}

Object* VectorVar::storeObject() const { return new Matrix(value, 1, 0); }

Vector VectorVar::toVector(const Variable* v) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    switch (kindOf(d)) {
        case KIND_INT:
        case KIND_FLOAT:
            return Vector(1u, scalarValue(d));
        case KIND_VECTOR:
            return d->isA() == &class_VectorVar ? static_cast<const VectorVar*>(d)->value
                                                : static_cast<const SubVectorVar*>(d)->part();
        case KIND_MATRIX:
            return MatrixVar::toMatrix(d).toVector();
        default:
            conversionFailure(d, "Vector");
            return Vector(0u);
    }
}

bool VectorVar::adopt(const Object& ob) {
    if (ob.isKindOf(class_Vector)) {
        value = static_cast<const Vector&>(ob);
        return true;
    }
    if (!ob.isKindOf(class_Matrix)) return false;
    const Matrix& m = static_cast<const Matrix&>(ob);
    if (m.columnNumber() != 1 && m.rowNumber() != 1) return false;
    value = m.toVector();
    if (m.columnNumber() != 1) value.setAsRow();
    return true;
}

// --- Operators ---

const char* VectorVar::resultType(const Variable* other, int op, int swapped) const {
    unsigned k = kindOf(other);
    switch (op) {
        case OP_ASSIGN:
            return k & (KIND_SCALAR | KIND_VECTOR | KIND_MATRIX) ? "Vector" : 0;
        case OP_ADD_ASSIGN:
        case OP_SUB_ASSIGN:
        case OP_ADD:
        case OP_SUB:
            return k & (KIND_SCALAR | KIND_VECTOR) ? "Vector" : 0;
        case OP_MUL_ASSIGN:
        case OP_DIV_ASSIGN:
            return k & KIND_SCALAR ? "Vector" : 0;
        case OP_MUL:
            return k == KIND_VECTOR ? "float" : k & KIND_SCALAR ? "Vector" : 0;
        case OP_DIV:
        case OP_SHL:
            return k & KIND_SCALAR && !swapped ? (op == OP_DIV ? "Vector" : "SubVector") : 0;
        case OP_POWER:
            return k == KIND_VECTOR ? "Vector" : 0;
        default:
            return Operator::isComparison(op) && k == KIND_VECTOR ? "char" : 0;
    }
}

Variable* VectorVar::operate(Variable* other, int op, int swapped) {
    if (Operator::isAssign(op)) return assignment(other, op);
    if (Operator::isComparison(op)) return comparison(value, toVector(other), op, swapped);
    bool scalar = (kindOf(other) & KIND_SCALAR) != 0;
    switch (op) {
        case OP_ADD:
        case OP_SUB: {
            if (!scalar) {
                Vector v = toVector(other);
                return new VectorVar(op == OP_ADD ? (swapped ? v + value : value + v)
                                                  : (swapped ? v - value : value - v));
            }
            // A number added to every element; x - v is -v + x, in v's orientation.
            double x = scalarValue(other);
            Vector r = op == OP_SUB && swapped ? value * -1.0 : value;
            r += op == OP_SUB && !swapped ? -x : x;
            return new VectorVar(r);
        }
        case OP_MUL:
            return product(other, swapped);
        case OP_DIV:
            return new VectorVar(value * (1.0 / scalarValue(other)));
        case OP_POWER:
            return new VectorVar(swapped ? toVector(other) ^ value : value ^ toVector(other));
        default: {  // OP_SHL: the comma initialiser, going on in a SubVector
            VectorCursor cursor = value << scalarValue(other);
            return new SubVectorVar(this, cursor.index(), 1);
        }
    }
}

Variable* VectorVar::assignment(const Variable* other, int op) {
    bool scalar = (kindOf(other) & KIND_SCALAR) != 0;
    if (op == OP_ASSIGN)
        value = toVector(other);
    else if (op == OP_MUL_ASSIGN)
        value *= scalarValue(other);
    else if (op == OP_DIV_ASSIGN)
        value *= 1.0 / scalarValue(other);
    else if (scalar)
        value += op == OP_ADD_ASSIGN ? scalarValue(other) : -scalarValue(other);
    else if (op == OP_ADD_ASSIGN)
        value += toVector(other);
    else
        value -= toVector(other);
    return this;
}

// Two vectors give their inner product, a row times a column.
Variable* VectorVar::product(const Variable* other, int swapped) const {
    if (kindOf(other) & KIND_SCALAR) return new VectorVar(value * scalarValue(other));
    Vector v = toVector(other);
    return new FloatVar(swapped ? v * value : value * v);
}

// --- Methods ---

namespace {

VectorVar& vectorOf(Variable& v) { return static_cast<VectorVar&>(v); }

int argument(OrderedCltn& arguments, int i) { return Variable::intValue(Variable::argumentAt(arguments, i)); }

void checkIndex(int value, const char* what) { MatrixVar::checkIndex(value, what); }

// A float left value on the element; a copy when the vector is a temporary, which goes first.
Variable* element(Variable& v, OrderedCltn& a) {
    VectorVar& vector = vectorOf(v);
    int i = argument(a, 0);
    checkIndex(i, "index");
    double& x = vector.getValue()[i];
    return vector.isTemporary() ? new FloatVar(x) : new FloatVar(&x);
}

Variable* window(Variable& v, OrderedCltn& a) {
    VectorVar& vector = vectorOf(v);
    int i = argument(a, 0), length = argument(a, 1);
    checkIndex(i, "index");
    checkIndex(length, "length");
    Vector part = vector.getValue().subVector(i, length);
    return new SubVectorVar(&vector, unsigned(i), part.size());
}

Variable* reSize(Variable& v, OrderedCltn& a) {
    int n = argument(a, 0);
    checkIndex(n, "length");
    vectorOf(v).getValue().reSize(unsigned(n));
    return new IntVar(1);
}

}  // namespace

const MethodTable& VectorVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable(&AlgebraVar::methods());
    table->add("(", "float", {"int"}, element);
    table->add("(", "SubVector", {"int", "int"}, window);
    table->add("transpose", "Vector", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new VectorVar(vectorOf(v).getValue().transpose());
    });
    table->add("reSize", "int", {"int"}, reSize);
    table->add("size", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(vectorOf(v).getValue().size()); });
    return *table;
}

// --- Constructors ---

const ConstructorTable& VectorVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    table->add({KIND_INT, KIND_SCALAR}, [](Variable& v, const OrderedCltn& a) {
        int n = intValue(argumentAt(a, 0));
        checkIndex(n, "length");
        vectorOf(v).value = Vector(unsigned(n), scalarValue(argumentAt(a, 1)));
    });
    return *table;
}
