// SubVectorVar: writing through the window, the comma initialiser, and the range as a value.
#include "interpreter/subvvar.h"

#include <memory>

#include "algebra/cursor.h"
#include "interpreter/algvar.h"
#include "interpreter/operator.h"
#include "interpreter/vectvar.h"
#include "quill/quillerr.h"

namespace {

void registerSubVector(Class*) { Variable::registerType(new SubVectorVar); }

}  // namespace

DEFINE_CLASS(SubVectorVar, Variable, 1, registerSubVector)

SubVectorVar::SubVectorVar() : source(new VectorVar), ownsSource(1), start(0), length(0) {}

SubVectorVar::SubVectorVar(VectorVar* vectorVar, unsigned start, unsigned length)
    : source(vectorVar), ownsSource(0), start(start), length(length) {
    if (!vectorVar->isTemporary()) return;
    source = static_cast<VectorVar*>(vectorVar->clone());
    ownsSource = 1;
}

SubVectorVar::~SubVectorVar() noexcept(false) { release(); }

void SubVectorVar::release() {
    if (ownsSource) delete source;
    ownsSource = 0;
}

void SubVectorVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    if (ownsSource) source = static_cast<VectorVar*>(source->clone());
}

const String& SubVectorVar::getType() const {
    static const String type("SubVector");
    return type;
}

// The vector of a window whose variable is gone may not be reached.
Vector& SubVectorVar::vector() const {
    bool live =
        ownsSource || (liveVariables().indexOfSame(*source) >= 0 && source->isA() == &class_VectorVar);
    if (!live) typeError("Run time error, the window has lost its vector");
    return source->getValue();
}

Vector SubVectorVar::part() const {
    Vector& v = vector();
    if (length == 0) return Vector(0u);
    return v.subVector(int(start), int(length));
}

String SubVectorVar::getValueString() const { return String(part().asCharPointer()); }

// --- Operators ---

bool SubVectorVar::writes(const Variable* other, int op) const {
    unsigned k = kindOf(other);
    if (op == OP_SHL || op == OP_MUL_ASSIGN || op == OP_DIV_ASSIGN) return (k & KIND_SCALAR) != 0;
    if (op == OP_ASSIGN) return (k & (KIND_SCALAR | KIND_VECTOR | KIND_MATRIX)) != 0;
    return (op == OP_ADD_ASSIGN || op == OP_SUB_ASSIGN) && (k & (KIND_SCALAR | KIND_VECTOR)) != 0;
}

// An assignment computes the new range through a Vector and writes it, its size checked; <<
// writes at the window's start.
void SubVectorVar::write(const Variable* other, int op) {
    if (op == OP_SHL) {
        VectorCursor cursor(vector(), start);
        cursor, scalarValue(other);
        start = cursor.index();
        return;
    }
    std::unique_ptr<VectorVar> value(new VectorVar(part()));
    value->doOperation(const_cast<Variable*>(other), op, 0);
    const Vector& written = value->getValue();
    if (written.size() != length) Vector(length).sizeError("operator=", written.size());
    vector().setSubVector(written, int(start), int(length));
}

Variable* SubVectorVar::getOperationType(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) return this;
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    return findType("Vector")->getOperationType(other, op, swapped);
}

Variable* SubVectorVar::doOperation(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) {
        try {
            write(other, op);
        } catch (TarnException* e) {
            AlgebraVar::numericFault(e);
        }
        return this;
    }
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    std::unique_ptr<VectorVar> value(new VectorVar(part()));
    return value->doOperation(other, op, swapped);
}

Variable* SubVectorVar::getUnaryOperationType(int op) {
    return findType("Vector")->getUnaryOperationType(op);
}

Variable* SubVectorVar::doUnaryOperation(int op) {
    std::unique_ptr<VectorVar> value(new VectorVar(part()));
    return value->doUnaryOperation(op);
}

// --- Constructors ---

int SubVectorVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && dereference(argumentAt(types, 0))->isA() == &class_SubVectorVar ? 1 : -1;
}

void SubVectorVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    release();
    if (index == 0) {
        source = new VectorVar;
        ownsSource = 1;
        start = length = 0;
        return;
    }
    const SubVectorVar* other = static_cast<const SubVectorVar*>(dereference(argumentAt(arguments, 0)));
    source = other->ownsSource ? static_cast<VectorVar*>(other->source->clone()) : other->source;
    ownsSource = other->ownsSource;
    start = other->start;
    length = other->length;
}
