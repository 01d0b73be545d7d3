// DynOpVar: the system it holds, conversion, the compositions as operators, and the constructors.
#include "interpreter/dynvar.h"

#include <memory>

#include "algebra/ratfun.h"
#include "control/extsys.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/ratvar.h"

namespace {

void registerDynOp(Class*) { Variable::registerType(new DynOpVar); }

}  // namespace

DEFINE_CLASS(DynOpVar, AlgebraVar, 1, registerDynOp)

DynOpVar::DynOpVar() : system(new DynOp) {}

DynOpVar::DynOpVar(const DynOp& s) : system(new DynOp(s)) {}

DynOpVar::DynOpVar(DynOp* owned) : system(owned) {}

DynOpVar::~DynOpVar() noexcept(false) { delete system; }

const String& DynOpVar::getType() const {
    static const String type("DynOp");
    return type;
}

void DynOpVar::deepenShallowCopy() {
    AlgebraVar::deepenShallowCopy();
    system = static_cast<DynOp*>(system->deepCopy());
}

void DynOpVar::replace(DynOp* s) {
    delete system;
    system = s;
}

Matrix DynOpVar::computeEigenvalues() { return system->poles(); }

DynOp* DynOpVar::sameTime(const DynOp& s) const { return system->inTimeDomain(s).release(); }

DynOpVar* DynOpVar::newValue(DynOp* s) const { return new DynOpVar(s); }

DynOp* DynOpVar::converted(const Variable* v) const { return toDynOp(v); }

void DynOpVar::setInitialCondition(const Vector& x0) {
    initialCondition = x0;
    initialCondition.reSize(system->order());
}

DynOp* DynOpVar::toDynOp(const Variable* v) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    unsigned k = kindOf(d);
    if (k & KIND_SCALAR) return new DynOp(scalarValue(d), 0, 0, 0);
    if (k == KIND_MATRIX) return new DynOp(MatrixVar::toMatrix(d));
    if (k == KIND_SYSTEM) return new DynOp(*static_cast<const DynOpVar*>(d)->system);
    if (k == KIND_RATIONAL) {
        const RationalFunction& f = static_cast<const RationalFunctionVar*>(d)->getValue();
        if (!f.isDiscrete()) return new DynOp(f);
    }
    conversionFailure(d, "DynOp");
    return new DynOp;
}

// A system, or the composed system of a continuous design problem (its components left behind).
bool DynOpVar::adopt(const Object& ob) {
    bool problem = ob.isKindOf(class_ExtendedSystem) && !static_cast<const DynOp&>(ob).isDiscreteTime();
    if (!ob.isMemberOf(class_DynOp) && !problem) return false;
    replace(new DynOp(static_cast<const DynOp&>(ob)));
    return true;
}

void checkCount(int count, unsigned limit, const char* what) {
    if (count < 0 || unsigned(count) > limit)
        Variable::typeError(formatText("Run time error, %s %d out of range", what, count));
}

Partition partitionAt(const OrderedCltn& arguments, int first, const DynOp& s) {
    int counts[3];
    for (int i = 0; i < 3; ++i)
        counts[i] = int(arguments.size()) > first + i
                        ? Variable::intValue(Variable::argumentAt(arguments, first + i))
                        : int(s.feedForwardNumber());
    checkCount(counts[0], s.inputNumber(), "control number");
    checkCount(counts[1], s.outputNumber(), "measure number");
    checkCount(counts[2], s.inputNumber(), "feed forward number");
    return Partition{unsigned(counts[0]), unsigned(counts[1]), unsigned(counts[2])};
}

// --- Operators ---

const char* DynOpVar::resultType(const Variable* other, int op, int swapped) const {
    unsigned k = kindOf(other);
    unsigned operands = systemKinds() | KIND_MATRIX | KIND_SCALAR;
    if (Operator::isComparison(op))
        return (op == OP_EQ || op == OP_NE) && k & systemKinds() & ~KIND_RATIONAL ? "char" : 0;
    if (op == OP_DIV_ASSIGN || op == OP_DIV)
        return k & KIND_SCALAR && !swapped ? getType().asCharPointer() : 0;
    bool known = op == OP_ASSIGN || op == OP_ADD_ASSIGN || op == OP_SUB_ASSIGN || op == OP_MUL_ASSIGN ||
                 op == OP_ADD || op == OP_SUB || op == OP_MUL;
    return known && k & operands ? getType().asCharPointer() : 0;
}

Variable* DynOpVar::operate(Variable* other, int op, int swapped) {
    if (op == OP_ASSIGN) {
        replace(converted(other));
        return this;
    }
    if (Operator::isComparison(op)) {
        std::unique_ptr<DynOp> h(converted(other));
        return comparison(*system, *h, op, swapped);
    }
    if (!Operator::isAssign(op)) return newValue(sameTime(combined(other, op, swapped)));
    replace(sameTime(combined(other, Operator::assignedOperation(op), 0)));
    return this;
}

// A number is a 1 x 1 gain; a matrix multiplies on the input side, or the output side when it
// stands on the left; two systems compose in series (the left one after the right one) or in parallel.
DynOp DynOpVar::combined(const Variable* other, int op, int swapped) const {
    const DynOp& g = *system;
    unsigned k = kindOf(other);
    if (op == OP_DIV) return g * (1.0 / scalarValue(other));
    if (k & KIND_SCALAR && op == OP_MUL) return g * scalarValue(other);
    if (k & (KIND_SCALAR | KIND_MATRIX)) {
        Matrix M = MatrixVar::toMatrix(other);
        if (op == OP_MUL) return swapped ? M * g : g * M;
        return op == OP_ADD ? g + M : swapped ? -g + M : g + -M;
    }
    std::unique_ptr<DynOp> h(converted(other));
    if (op == OP_MUL) return swapped ? *h * g : g * *h;
    if (op == OP_ADD) return swapped ? *h + g : g + *h;
    return swapped ? *h + -g : g + -*h;
}

// --- Constructors ---

namespace {

DynOpVar& systemOf(Variable& v) { return static_cast<DynOpVar&>(v); }

Matrix matrixAt(const OrderedCltn& a, int i) { return MatrixVar::toMatrix(Variable::argumentAt(a, i)); }

// A, B, C and D with the partition given from argument 4 on.
DynOp* partitioned(const OrderedCltn& a) {
    DynOp s(matrixAt(a, 0), matrixAt(a, 1), matrixAt(a, 2), matrixAt(a, 3));
    Partition p = partitionAt(a, 4, s);
    return new DynOp(s, p.controls, p.measures, p.feedForward);
}

}  // namespace

// (A, B, C, D [, controls, measures [, feedForward]]), and (system, controls, measures).
const ConstructorTable& DynOpVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    unsigned m = KIND_MATRIX | KIND_VECTOR | KIND_SCALAR;
    table->add({m, m, m, m}, [](Variable& v, const OrderedCltn& a) {
        systemOf(v).replace(new DynOp(matrixAt(a, 0), matrixAt(a, 1), matrixAt(a, 2), matrixAt(a, 3)));
    });
    table->add({m, m, m, m, KIND_INT, KIND_INT},
               [](Variable& v, const OrderedCltn& a) { systemOf(v).replace(partitioned(a)); });
    table->add({m, m, m, m, KIND_INT, KIND_INT, KIND_INT},
               [](Variable& v, const OrderedCltn& a) { systemOf(v).replace(partitioned(a)); });
    table->add({KIND_SYSTEM, KIND_INT, KIND_INT}, [](Variable& v, const OrderedCltn& a) {
        std::unique_ptr<DynOp> s(toDynOp(argumentAt(a, 0)));
        Partition p = partitionAt(a, 1, *s);
        systemOf(v).replace(new DynOp(*s, p.controls, p.measures, p.feedForward));
    });
    return *table;
}
