// GenericVar: struct fields and values, struct assignment, members, and the void prototype.
#include "interpreter/genvar.h"

#include <ostream>

#include "interpreter/cleanup.h"
#include "interpreter/operator.h"
#include "interpreter/vardecl.h"

namespace {

void registerVoid(Class*) { Variable::registerType(GenericVar::voidPrototype()); }

}  // namespace

DEFINE_CLASS(GenericVar, Variable, 1, registerVoid)

GenericVar::GenericVar() : fields(0), ownsFields(0), values(0) {}

GenericVar::GenericVar(const String& typeName, OrderedCltn* fields)
    : typeName(typeName), fields(fields), ownsFields(fields ? 1 : 0), values(0) {}

GenericVar::~GenericVar() noexcept(false) {
    deleteValues();
    if (!ownsFields) return;
    fields->deleteContents();
    delete fields;
}

GenericVar* GenericVar::voidPrototype() {
    static GenericVar* prototype = new GenericVar("void");
    return prototype;
}

void GenericVar::deleteValues() {
    if (!values) return;
    deleteValuesFromLast(*values);
    delete values;
    values = 0;
}

void GenericVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    ownsFields = 0;
    OrderedCltn* shared = values;
    values = 0;
    typeName.clearCopiedState();
    if (!shared) return;
    values = new OrderedCltn(shared->size() + 1);
    for (unsigned i = 0; i < shared->size(); ++i) addOwned(*values, argumentAt(*shared, int(i))->clone());
}

Variable* GenericVar::getOperationType(Variable* other, int op, int swapped) {
    if (op == OP_ASSIGN && sameType(other)) return this;
    if (!Operator::isAssign(op) && !swapped) return other->getOperationType(this, op, 1);
    operationError(other, op, swapped);
}

Variable* GenericVar::doOperation(Variable* other, int op, int swapped) {
    if (op == OP_ASSIGN && sameType(other)) {
        std::int32_t errorFlag = 0;
        copyValues(*static_cast<GenericVar*>(other), errorFlag);
        return this;
    }
    if (!Operator::isAssign(op) && !swapped) return other->doOperation(this, op, 1);
    operationError(other, op, swapped);
}

void GenericVar::copyValues(const GenericVar& from, std::int32_t& errorFlag) {
    if (!from.values || !values) return;
    OrderedCltn source(1);
    for (unsigned i = 0; i < values->size(); ++i) {
        source.removeAll();
        source.add(*from.values->at(int(i)));
        argumentAt(*values, int(i))->execConstructor(1, source, errorFlag);
    }
}

double GenericVar::storageEstimate() const {
    double bytes = Variable::storageEstimate();
    for (unsigned i = 0; fields && i < fields->size(); ++i)
        bytes += static_cast<VarDeclare*>(fields->at(int(i)))->getType()->storageEstimate() + sizeof(Object*);
    return bytes;
}

int GenericVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && sameType(dereference(argumentAt(types, 0))) ? 1 : -1;
}

void GenericVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    const GenericVar* from = index == 1 ? static_cast<GenericVar*>(dereference(argumentAt(arguments, 0))) : 0;
    // A value already built takes the copy in place: its members stay where they are, so that what an
    // evaluation holds of them goes on holding them.
    if (!from || !values) {
        deleteValues();
        values = new OrderedCltn(fields ? fields->size() + 1 : 1);
        for (unsigned i = 0; fields && i < fields->size(); ++i)
            values->add(*static_cast<FieldDeclare*>(fields->at(int(i)))->buildValue(errorFlag));
    }
    if (from) copyValues(*from, errorFlag);
}

VarDeclare* GenericVar::getMember(const String& memberName) const {
    Object* field = fields ? fields->find(memberName) : nil;
    if (field == nil) return Variable::getMember(memberName);
    return static_cast<VarDeclare*>(field);
}

Variable* GenericVar::getMemberVar(const VarDeclare* member) {
    int i = memberIndex(member);
    if (i >= 0 && values) return argumentAt(*values, i);
    return Variable::getMemberVar(member);
}

Variable* GenericVar::memberAt(int index, const VarDeclare* member) {
    if (values && fields && unsigned(index) < fields->size() && fields->atInline(index) == member)
        return argumentAt(*values, index);
    return getMemberVar(member);
}

int GenericVar::memberIndex(const VarDeclare* member) const {
    for (int i = fields ? int(fields->size()) - 1 : -1; i >= 0; --i)
        if (fields->atInline(i) == member) return i;
    return -1;
}

String GenericVar::getValueString() const {
    if (!values || values->size() == 0) return typeName;
    return partsString(typeName, *values, true);
}

void GenericVar::printOn(std::ostream& os) const {
    Variable::printOn(os);
    if (!values) return;
    os << " values = [";
    for (unsigned i = 0; i < values->size(); ++i) os << (i ? ", " : "") << *values->at(int(i));
    os << "]";
}
