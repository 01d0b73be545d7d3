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

DEFINE_CLASS(SubMatrixVar, WindowVar, 1, registerSubMatrix)

SubMatrixVar::SubMatrixVar() : WindowVar(new MatrixVar, true), row(0), column(0), rows(0), columns(0) {}

SubMatrixVar::SubMatrixVar(MatrixVar* matrixVar, unsigned row, unsigned column, unsigned rows,
                           unsigned columns)
    : WindowVar(matrixVar, false), row(row), column(column), rows(rows), columns(columns) {}

const String& SubMatrixVar::getType() const {
    static const String type("SubMatrix");
    return type;
}

Matrix& SubMatrixVar::matrix() const {
    return static_cast<MatrixVar&>(
               liveSource(class_MatrixVar, "Run time error, the window has lost its matrix"))
        .getValue();
}

Matrix SubMatrixVar::block() const {
    return matrix().subMatrix(int(row), int(column), int(rows), int(columns));
}

String SubMatrixVar::getValueString() const { return String(block().asCharPointer()); }

Variable* SubMatrixVar::valueCopy() const { return new MatrixVar(block()); }

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

// --- Constructors ---

void SubMatrixVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    if (index == 0) {
        ownSource(new MatrixVar);
        row = column = rows = columns = 0;
        return;
    }
    const SubMatrixVar* other = static_cast<const SubMatrixVar*>(dereference(argumentAt(arguments, 0)));
    takeSource(*other);
    row = other->row;
    column = other->column;
    rows = other->rows;
    columns = other->columns;
}
