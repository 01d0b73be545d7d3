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

DEFINE_CLASS(SubVectorVar, WindowVar, 1, registerSubVector)

SubVectorVar::SubVectorVar() : WindowVar(new VectorVar, true), start(0), length(0) {}

SubVectorVar::SubVectorVar(VectorVar* vectorVar, unsigned start, unsigned length)
    : WindowVar(vectorVar, false), start(start), length(length) {}

const String& SubVectorVar::getType() const {
    static const String type("SubVector");
    return type;
}

Vector& SubVectorVar::vector() const {
    return static_cast<VectorVar&>(
               liveSource(class_VectorVar, "Run time error, the window has lost its vector"))
        .getValue();
}

Vector SubVectorVar::part() const {
    Vector& v = vector();
    if (length == 0) return Vector(0u);
    return v.subVector(int(start), int(length));
}

String SubVectorVar::getValueString() const { return String(part().asCharPointer()); }

Variable* SubVectorVar::valueCopy() const { return new VectorVar(part()); }

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

// --- Constructors ---

void SubVectorVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    if (index == 0) {
        ownSource(new VectorVar);
        start = length = 0;
        return;
    }
    const SubVectorVar* other = static_cast<const SubVectorVar*>(dereference(argumentAt(arguments, 0)));
    takeSource(*other);
    start = other->start;
    length = other->length;
}
