// DiscDynOpVar: the sampling time of results, conversion, its own methods and constructors.
#include "interpreter/discvar.h"

#include <memory>

#include "algebra/ratfun.h"
#include "control/extsys.h"
#include "interpreter/floatvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/ratvar.h"

namespace {

void registerDiscDynOp(Class*) { Variable::registerType(new DiscDynOpVar); }

// The sampling time of a static gain, which has none of its own: counted as 1 where it matters.
const double NO_SAMPLING_TIME = -1.0;

}  // namespace

DEFINE_CLASS(DiscDynOpVar, DynOpVar, 1, registerDiscDynOp)

DiscDynOpVar::DiscDynOpVar() : DynOpVar(new DiscDynOp) {}

DiscDynOpVar::DiscDynOpVar(const DiscDynOp& s) : DynOpVar(new DiscDynOp(s)) {}

const String& DiscDynOpVar::getType() const {
    static const String type("DiscDynOp");
    return type;
}

DynOpVar* DiscDynOpVar::newValue(DynOp* s) const { return new DiscDynOpVar(static_cast<DiscDynOp*>(s)); }

DynOp* DiscDynOpVar::converted(const Variable* v) const { return toDiscDynOp(v); }

DiscDynOp* DiscDynOpVar::toDiscDynOp(const Variable* v) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    unsigned k = kindOf(d);
    if (k == KIND_DISCRETE) return new DiscDynOp(static_cast<const DiscDynOpVar*>(d)->discrete());
    if (k & (KIND_SCALAR | KIND_MATRIX)) return new DiscDynOp(MatrixVar::toMatrix(d), NO_SAMPLING_TIME);
    if (k == KIND_SYSTEM && static_cast<const DynOpVar*>(d)->getValue().isStaticGain())
        return new DiscDynOp(static_cast<const DynOpVar*>(d)->getValue(), true, NO_SAMPLING_TIME);
    if (k == KIND_RATIONAL) {
        const RationalFunction& f = static_cast<const RationalFunctionVar*>(d)->getValue();
        if (f.isDiscrete()) return new DiscDynOp(f, 0.0);
    }
    conversionFailure(d, "DiscDynOp");
    return new DiscDynOp;
}

// A sampled system, or the composed system of a sampled design problem.
bool DiscDynOpVar::adopt(const Object& ob) {
    bool problem = ob.isKindOf(class_ExtendedSystem) && static_cast<const DynOp&>(ob).isDiscreteTime();
    if (!ob.isMemberOf(class_DiscDynOp) && !problem) return false;
    replace(new DiscDynOp(static_cast<const DiscDynOp&>(ob)));
    return true;
}

// --- Methods ---

const MethodTable& DiscDynOpVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    const MethodTable& continuous = DynOpVar::methods();
    table = new MethodTable(&continuous);
    table->addRetyped("(", "DiscDynOp", {"int", "int"}, continuous);
    table->addRetyped("(", "DiscDynOp", {"int", "int", "int", "int"}, continuous);
    table->addRetyped("transpose", "DiscDynOp", {}, continuous);
    table->addRetyped("obsSubSystem", "DiscDynOp", {"float"}, continuous);
    table->addRetyped("obsSubSystem", "DiscDynOp", {}, continuous);
    table->addRetyped("contrSubSystem", "DiscDynOp", {"float"}, continuous);
    table->addRetyped("contrSubSystem", "DiscDynOp", {}, continuous);
    table->addRetyped("outputFeedback", "DiscDynOp", {"DiscDynOp"}, continuous);
    table->addRetyped("reduceOrder", "DiscDynOp", {"int"}, continuous);
    table->add("samplingTime", "float", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        return new FloatVar(static_cast<DiscDynOpVar&>(v).discrete().getSamplingTime());
    });
    return *table;
}

// --- Constructors ---

namespace {

DiscDynOpVar& discreteOf(Variable& v) { return static_cast<DiscDynOpVar&>(v); }

Matrix matrixAt(const OrderedCltn& a, int i) { return MatrixVar::toMatrix(Variable::argumentAt(a, i)); }

// A, B, C and D sampled at the time of argument 4, with the partition from argument 5 on.
DiscDynOp* partitioned(const OrderedCltn& a) {
    DiscDynOp s(matrixAt(a, 0), matrixAt(a, 1), matrixAt(a, 2), matrixAt(a, 3),
                scalarValue(Variable::argumentAt(a, 4)));
    if (a.size() == 5) return new DiscDynOp(s);
    Partition p = partitionAt(a, 5, s);
    return new DiscDynOp(s, p.controls, p.measures, p.feedForward);
}

// A continuous system or transfer function sampled with a zero-order hold at T; a discrete one
// taking T as its sampling time; a gain with T.
DiscDynOp* sampled(const Variable* v, double T) {
    const Variable* d = Variable::dereference(const_cast<Variable*>(v));
    switch (kindOf(d)) {
        case KIND_SYSTEM:
        case KIND_DISCRETE:
            return new DiscDynOp(static_cast<const DynOpVar*>(d)->getValue(), kindOf(d) == KIND_DISCRETE, T);
        case KIND_RATIONAL:
            return new DiscDynOp(static_cast<const RationalFunctionVar*>(d)->getValue(), T);
        default:
            return new DiscDynOp(MatrixVar::toMatrix(d), T);
    }
}

}  // namespace

// (A, B, C, D, T [, controls, measures [, feedForward]]), (system, T) and (system, controls, measures).
const ConstructorTable& DiscDynOpVar::constructors() const {
    static ConstructorTable* table = 0;
    if (table) return *table;
    table = new ConstructorTable;
    unsigned m = KIND_MATRIX | KIND_VECTOR | KIND_SCALAR;
    auto build = [](Variable& v, const OrderedCltn& a) { discreteOf(v).replace(partitioned(a)); };
    table->add({m, m, m, m, KIND_SCALAR}, build);
    table->add({m, m, m, m, KIND_SCALAR, KIND_INT, KIND_INT}, build);
    table->add({m, m, m, m, KIND_SCALAR, KIND_INT, KIND_INT, KIND_INT}, build);
    unsigned systems = KIND_SYSTEM | KIND_DISCRETE | KIND_RATIONAL | KIND_MATRIX | KIND_SCALAR;
    table->add({systems, KIND_SCALAR}, [](Variable& v, const OrderedCltn& a) {
        discreteOf(v).replace(sampled(argumentAt(a, 0), scalarValue(argumentAt(a, 1))));
    });
    table->add({KIND_DISCRETE, KIND_INT, KIND_INT}, [](Variable& v, const OrderedCltn& a) {
        std::unique_ptr<DiscDynOp> s(toDiscDynOp(argumentAt(a, 0)));
        Partition p = partitionAt(a, 1, *s);
        discreteOf(v).replace(new DiscDynOp(*s, p.controls, p.measures, p.feedForward));
    });
    return *table;
}
