// MatrixVar: conversion, operators, the element and window calls, the methods and the constructors.
#include "interpreter/mtrxvar.h"

#include <cmath>

#include "algebra/algebra.h"
#include "algebra/cursor.h"
#include "control/dynop.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "interpreter/submvar.h"
#include "interpreter/vectvar.h"
#include "quill/quillerr.h"

namespace {

void registerMatrix(Class*) {
    Variable::registerType(new MatrixVar);
    registerMatrixBuiltins();
}

}  // namespace

DEFINE_CLASS(MatrixVar, AlgebraVar, 1, registerMatrix)

MatrixVar::MatrixVar() : value(0, 0) {}

MatrixVar::MatrixVar(const Matrix& m) : value(m) {}

const String& MatrixVar::getType() const {
    static const String type("Matrix");
    return type;
}

void MatrixVar::deepenShallowCopy() {
    AlgebraVar::deepenShallowCopy();
    value.clearCopiedState();
}

Matrix MatrixVar::computeEigenvalues() {
    Algebra algebra;
    return algebra.computeEigenvalues(value);
}

Matrix MatrixVar::toMatrix(const Variable* v) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    switch (kindOf(d)) {
        case KIND_INT:
        case KIND_FLOAT:
            return Matrix::diagonal(1, scalarValue(d));
        case KIND_MATRIX:
            return d->isA() == &class_MatrixVar ? static_cast<const MatrixVar*>(d)->value
                                                : static_cast<const SubMatrixVar*>(d)->block();
        case KIND_VECTOR:
            return Matrix(VectorVar::toVector(d), 1, 0);
        default:
            conversionFailure(d, "Matrix");
            return Matrix(0, 0);
    }
}

void MatrixVar::checkIndex(int value, const char* what) {
    if (value < 0) typeError(formatText("Run time error, %s %d out of range", what, value));
}

bool MatrixVar::adopt(const Object& ob) {
    if (ob.isKindOf(class_Matrix)) {
        value = static_cast<const Matrix&>(ob);
        return true;
    }
    if (!ob.isKindOf(class_DynOp) || !static_cast<const DynOp&>(ob).isStaticGain()) return false;
    value = static_cast<const DynOp&>(ob).getD();
    return true;
}

// --- Operators ---

const char* MatrixVar::resultType(const Variable* other, int op, int swapped) const {
    unsigned k = kindOf(other);
    unsigned values = KIND_SCALAR | KIND_VECTOR | KIND_MATRIX;
    switch (op) {
        case OP_ASSIGN:
        case OP_ADD_ASSIGN:
        case OP_SUB_ASSIGN:
        case OP_MUL_ASSIGN:
        case OP_ADD:
        case OP_SUB:
            return k & values ? "Matrix" : 0;
        case OP_DIV_ASSIGN:
            return k & KIND_SCALAR ? "Matrix" : 0;
        case OP_MUL:
            return k & KIND_VECTOR ? "Vector" : k & values ? "Matrix" : 0;
        case OP_DIV:
            return k & KIND_SCALAR && !swapped ? "Matrix" : 0;
        case OP_SHL:
            return k & (KIND_SCALAR | KIND_VECTOR) && !swapped ? "SubMatrix" : 0;
        default:
            return Operator::isComparison(op) && k == KIND_MATRIX ? "char" : 0;
    }
}

Variable* MatrixVar::operate(Variable* other, int op, int swapped) {
    if (Operator::isAssign(op)) return assignment(other, op);
    if (Operator::isComparison(op)) return comparison(value, toMatrix(other), op, swapped);
    switch (op) {
        case OP_ADD:
            return new MatrixVar(value + toMatrix(other));
        case OP_SUB:
            return new MatrixVar(swapped ? toMatrix(other) - value : value - toMatrix(other));
        case OP_MUL:
            return product(other, swapped);
        case OP_DIV:
            return new MatrixVar(value / scalarValue(other));
        default: {  // OP_SHL: the comma initialiser, going on in a SubMatrix
            MatrixCursor cursor = kindOf(other) == KIND_VECTOR ? value << VectorVar::toVector(other)
                                                               : value << scalarValue(other);
            return new SubMatrixVar(this, cursor.row(), cursor.column(), 1, 1);
        }
    }
}

Variable* MatrixVar::assignment(const Variable* other, int op) {
    if (op == OP_DIV_ASSIGN)
        value = value / scalarValue(other);
    else if (op == OP_MUL_ASSIGN && kindOf(other) & KIND_SCALAR)
        value *= scalarValue(other);
    else if (op == OP_MUL_ASSIGN)
        value *= toMatrix(other);
    else if (op == OP_ADD_ASSIGN)
        value += toMatrix(other);
    else if (op == OP_SUB_ASSIGN)
        value -= toMatrix(other);
    else
        value = toMatrix(other);
    return this;
}

// A vector on either side keeps the Vector product of the library.
Variable* MatrixVar::product(const Variable* other, int swapped) const {
    unsigned k = kindOf(other);
    if (k & KIND_SCALAR) return new MatrixVar(value * scalarValue(other));
    if (k == KIND_VECTOR) {
        Vector v = VectorVar::toVector(other);
        return new VectorVar(swapped ? v * value : value * v);
    }
    Matrix m = toMatrix(other);
    return new MatrixVar(swapped ? m * value : value * m);
}

// --- Methods ---

namespace {

MatrixVar& matrixOf(Variable& v) { return static_cast<MatrixVar&>(v); }

int argument(OrderedCltn& arguments, int i) { return Variable::intValue(Variable::argumentAt(arguments, i)); }

// The element, its indices checked.
double& elementOf(MatrixVar& m, int i, int j) {
    MatrixVar::checkIndex(i, "row index");
    MatrixVar::checkIndex(j, "column index");
    return m.getValue()(unsigned(i), unsigned(j));
}

// A float left value on the element; a copy when the matrix is a temporary, which goes first.
Variable* element(Variable& v, OrderedCltn& a) {
    MatrixVar& m = matrixOf(v);
    double& x = elementOf(m, argument(a, 0), argument(a, 1));
    return m.isTemporary() ? new FloatVar(x) : new FloatVar(&x);
}

Variable* window(Variable& v, OrderedCltn& a) {
    MatrixVar& m = matrixOf(v);
    int i = argument(a, 0), j = argument(a, 1), rows = argument(a, 2), columns = argument(a, 3);
    MatrixVar::checkIndex(i, "row index");
    MatrixVar::checkIndex(j, "column index");
    MatrixVar::checkIndex(rows, "row dimension");
    MatrixVar::checkIndex(columns, "column dimension");
    Matrix block = m.getValue().subMatrix(i, j, rows, columns);
    return new SubMatrixVar(&m, unsigned(i), unsigned(j), block.rowNumber(), block.columnNumber());
}

Variable* reSize(Variable& v, OrderedCltn& a) {
    int rows = argument(a, 0), columns = argument(a, 1);
    MatrixVar::checkIndex(rows, "row dimension");
    MatrixVar::checkIndex(columns, "column dimension");
    matrixOf(v).getValue().reSize(unsigned(rows), unsigned(columns));
    return new IntVar(1);
}

// The triangular factor R of the Householder triangularisation.
Matrix triangularFactor(const Matrix& m) {
    Algebra algebra;
    Matrix r(m);
    algebra.triangularize(r);
    return r;
}

}  // namespace

bool MatrixVar::isElementMethod(const FuncDeclare* method) const {
    return methods().codeOf(method) == element;
}

double* MatrixVar::placeInside(int i, int j) {
    unsigned rows = value.rowNumber();
    if (i < 0 || j < 0 || unsigned(i) >= rows || unsigned(j) >= value.columnNumber()) return 0;
    return value.elements() + size_t(j) * rows + unsigned(i);
}

double* MatrixVar::elementAt(int i, int j) {
    if (double* place = placeInside(i, j)) return place;
    try {
        return &elementOf(*this, i, j);
    } catch (TarnException* e) {
        numericFault(e);
    }
}

double* MatrixVar::elementPlace(const FuncDeclare* method, int i, int j) {
    if (isTemporary() || !isElementMethod(method)) return 0;
    return placeInside(i, j);
}

const MethodTable& MatrixVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable(&AlgebraVar::methods());
    table->add("(", "float", {"int", "int"}, element);
    table->add("(", "SubMatrix", {"int", "int", "int", "int"}, window);
    table->add("transpose", "Matrix", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new MatrixVar(matrixOf(v).getValue().transpose());
    });
    table->add("reSize", "int", {"int", "int"}, reSize);
    table->add("inv", "Matrix", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        Algebra algebra;
        return new MatrixVar(algebra.inv(matrixOf(v).getValue()));
    });
    table->add("rowNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(matrixOf(v).getValue().rowNumber()); });
    table->add("columnNumber", "int", {}, [](Variable& v, OrderedCltn&) -> double {
        return int(matrixOf(v).getValue().columnNumber());
    });
    table->add("norminf", "float", {},
               [](Variable& v, OrderedCltn&) -> double { return Algebra().normInf(matrixOf(v).getValue()); });
    table->add("norm2", "float", {}, [](Variable& v, OrderedCltn&) -> double {
        Algebra algebra;
        return algebra.norm2(matrixOf(v).getValue());
    });
    table->add("QR", "Matrix", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new MatrixVar(triangularFactor(matrixOf(v).getValue()));
    });
    table->add("column", "Vector", {"int"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        return new VectorVar(matrixOf(v).getValue().column(argument(a, 0)));
    });
    table->add("row", "Vector", {"int"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        return new VectorVar(matrixOf(v).getValue().row(argument(a, 0)));
    });
    return *table;
}

// --- Constructors ---

const ConstructorTable& MatrixVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    table->add({KIND_INT, KIND_INT}, [](Variable& v, const OrderedCltn& a) {
        int rows = intValue(argumentAt(a, 0)), columns = intValue(argumentAt(a, 1));
        checkIndex(rows, "row dimension");
        checkIndex(columns, "column dimension");
        matrixOf(v).value = Matrix(unsigned(rows), unsigned(columns));
    });
    table->add({KIND_INT, KIND_FLOAT}, [](Variable& v, const OrderedCltn& a) {
        int n = intValue(argumentAt(a, 0));
        checkIndex(n, "row dimension");
        matrixOf(v).value = Matrix::diagonal(unsigned(n), scalarValue(argumentAt(a, 1)));
    });
    return *table;
}
