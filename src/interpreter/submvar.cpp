// SubMatrixVar: writing through the window, the comma initialiser, and the block as a value.
#include "interpreter/submvar.h"

#include <memory>

#include "algebra/cursor.h"
#include "algebra/submatrx.h"
#include "interpreter/algvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/vectvar.h"
#include "quill/quillerr.h"

namespace {

void registerSubMatrix(Class*) { Variable::registerType(new SubMatrixVar); }

}  // namespace

DEFINE_CLASS(SubMatrixVar, Variable, 1, registerSubMatrix)

SubMatrixVar::SubMatrixVar() : source(new MatrixVar), ownsSource(1), row(0), column(0), rows(0), columns(0) {}

SubMatrixVar::SubMatrixVar(MatrixVar* matrixVar, unsigned row, unsigned column, unsigned rows,
                           unsigned columns)
    : source(matrixVar), ownsSource(0), row(row), column(column), rows(rows), columns(columns) {
    if (!matrixVar->isTemporary()) return;
    source = static_cast<MatrixVar*>(matrixVar->clone());
    ownsSource = 1;
}

SubMatrixVar::~SubMatrixVar() noexcept(false) { release(); }

void SubMatrixVar::release() {
    if (ownsSource) delete source;
    ownsSource = 0;
}

void SubMatrixVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    if (ownsSource) source = static_cast<MatrixVar*>(source->clone());
}

const String& SubMatrixVar::getType() const {
    static const String type("SubMatrix");
    return type;
}

// The matrix of a window whose variable is gone may not be reached.
Matrix& SubMatrixVar::matrix() const {
    bool live =
        ownsSource || (liveVariables().indexOfSame(*source) >= 0 && source->isA() == &class_MatrixVar);
    if (!live) typeError("Run time error, the window has lost its matrix");
    return source->getValue();
}

Matrix SubMatrixVar::block() const {
    return matrix().subMatrix(int(row), int(column), int(rows), int(columns));
}

String SubMatrixVar::getValueString() const { return String(block().asCharPointer()); }

// --- Operators ---

bool SubMatrixVar::writes(const Variable* other, int op) const {
    unsigned k = kindOf(other);
    if (op == OP_SHL) return (k & (KIND_SCALAR | KIND_VECTOR)) != 0;
    if (op == OP_DIV_ASSIGN) return (k & KIND_SCALAR) != 0;
    return Operator::isArithmeticAssign(op) && (k & (KIND_SCALAR | KIND_VECTOR | KIND_MATRIX)) != 0;
}

// An assignment computes the new block and writes it, its shape checked; << writes at the window.
void SubMatrixVar::write(const Variable* other, int op) {
    if (op == OP_SHL) {
        MatrixCursor cursor(matrix(), row, column);
        if (kindOf(other) == KIND_VECTOR)
            cursor, VectorVar::toVector(other);
        else
            cursor, scalarValue(other);
        row = cursor.row();
        column = cursor.column();
        return;
    }
    Matrix value = op == OP_DIV_ASSIGN                                  ? block() / scalarValue(other)
                   : op == OP_MUL_ASSIGN && kindOf(other) & KIND_SCALAR ? block() * scalarValue(other)
                   : op == OP_MUL_ASSIGN                                ? block() * MatrixVar::toMatrix(other)
                   : op == OP_ADD_ASSIGN                                ? block() + MatrixVar::toMatrix(other)
                   : op == OP_SUB_ASSIGN                                ? block() - MatrixVar::toMatrix(other)
                                                                        : MatrixVar::toMatrix(other);
    matrix().view(row, column, int(rows), int(columns)) = value;
}

Variable* SubMatrixVar::getOperationType(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) return this;
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    return findType("Matrix")->getOperationType(other, op, swapped);
}

Variable* SubMatrixVar::doOperation(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) {
        try {
            write(other, op);
        } catch (TarnException* e) {
            AlgebraVar::numericFault(e);
        }
        return this;
    }
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    std::unique_ptr<MatrixVar> value(new MatrixVar(block()));
    return value->doOperation(other, op, swapped);
}

Variable* SubMatrixVar::getUnaryOperationType(int op) {
    return findType("Matrix")->getUnaryOperationType(op);
}

Variable* SubMatrixVar::doUnaryOperation(int op) {
    std::unique_ptr<MatrixVar> value(new MatrixVar(block()));
    return value->doUnaryOperation(op);
}

// --- Constructors ---

int SubMatrixVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && dereference(argumentAt(types, 0))->isA() == &class_SubMatrixVar ? 1 : -1;
}

void SubMatrixVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    release();
    if (index == 0) {
        source = new MatrixVar;
        ownsSource = 1;
        row = column = rows = columns = 0;
        return;
    }
    const SubMatrixVar* other = static_cast<const SubMatrixVar*>(dereference(argumentAt(arguments, 0)));
    source = other->ownsSource ? static_cast<MatrixVar*>(other->source->clone()) : other->source;
    ownsSource = other->ownsSource;
    row = other->row;
    column = other->column;
    rows = other->rows;
    columns = other->columns;
}
