// ArrayVar: elements, the element operator, array assignment, constructors and size().
#include "interpreter/arrayvar.h"

#include <ostream>

#include "interpreter/cleanup.h"
#include "interpreter/funcdecl.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "interpreter/varref.h"

DEFINE_CLASS(ArrayVar, Variable, 1, 0)

namespace {

const OrderedCltn& methods() {
    static OrderedCltn* table = 0;
    if (!table) {
        table = new OrderedCltn;
        table->add(*Variable::makeMethod("size", "int", {}));
    }
    return *table;
}

}  // namespace

ArrayVar::ArrayVar() : elementType(0), size(0), elements(0) {}

ArrayVar::ArrayVar(Variable* elementType, int size)
    : typeName(elementType->getType() + formatText("[%d]", size)),
      elementType(elementType),
      size(size),
      elements(0) {}

ArrayVar::~ArrayVar() noexcept(false) {
    if (!elements) return;
    deleteValuesFromLast(*elements);
    delete elements;
}

void ArrayVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    OrderedCltn* shared = elements;
    elements = 0;
    typeName.clearCopiedState();
    if (!shared) return;
    elements = new OrderedCltn(unsigned(size));
    for (unsigned i = 0; i < shared->size(); ++i) addOwned(*elements, argumentAt(*shared, int(i))->clone());
}

Variable* ArrayVar::getOperationType(Variable* other, int op, int swapped) {
    if (op == OP_ELEMENT && !swapped) return new VarReference(elementType);
    if (op == OP_ASSIGN && sameType(other)) return this;
    if (!Operator::isAssign(op) && !swapped) return other->getOperationType(this, op, 1);
    operationError(other, op, swapped);
}

Variable* ArrayVar::doOperation(Variable* other, int op, int swapped) {
    if (op == OP_ELEMENT && !swapped) return element(other);
    if (op == OP_ASSIGN && sameType(other)) {
        std::int32_t errorFlag = 0;
        copyElements(*static_cast<ArrayVar*>(other), errorFlag);
        return this;
    }
    if (!Operator::isAssign(op) && !swapped) return other->doOperation(this, op, 1);
    operationError(other, op, swapped);
}

// The index converted as an int; below 0 or not below the size is a run-time error.
Variable* ArrayVar::element(Variable* index) const { return new VarReference(elementAt(intValue(index))); }

Variable* ArrayVar::elementAt(std::int32_t i) const {
    if (i < 0 || i >= size || !elements)
        typeError(formatText("Run time error, index %d out of range", int(i)));
    return argumentAt(*elements, i);
}

void ArrayVar::copyElements(const ArrayVar& from, std::int32_t& errorFlag) {
    if (!from.elements || !elements) return;
    OrderedCltn source(1);
    for (int i = 0; i < size; ++i) {
        source.removeAll();
        source.add(*from.elements->at(i));
        argumentAt(*elements, i)->execConstructor(1, source, errorFlag);
    }
}

int ArrayVar::constructorIndex(const OrderedCltn& types) const {
    OrderedCltn none(1);
    if (types.size() == 0) return elementType->constructorIndex(none) < 0 ? -1 : 0;
    if (types.size() != 1 || !sameType(dereference(argumentAt(types, 0)))) return -1;
    OrderedCltn element(1);
    element.add(*elementType);
    return elementType->constructorIndex(element) == 1 ? 1 : -1;
}

double ArrayVar::storageEstimate() const {
    return Variable::storageEstimate() + double(size) * (elementType->storageEstimate() + sizeof(Object*));
}

void ArrayVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0 && index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    const ArrayVar* from = index == 1 ? static_cast<ArrayVar*>(dereference(argumentAt(arguments, 0))) : 0;
    // An array already built takes the copy in place: its elements stay where they are, so that what an
    // evaluation holds of them goes on holding them.
    if (!from || !elements) {
        if (elements) deleteValuesFromLast(*elements);
        delete elements;
        elements = new OrderedCltn(unsigned(size > 0 ? size : 1));
        OrderedCltn none(1);
        for (int i = 0; i < size; ++i) {
            Variable* e = elementType->clone();
            elements->add(*e);
            e->execConstructor(0, none, errorFlag);
        }
    }
    if (from) copyElements(*from, errorFlag);
}

FuncDeclare* ArrayVar::getMethod(const String& methodName, const OrderedCltn& types) const {
    FuncDeclare* method = findMethod(methods(), methodName, types);
    if (!method) unknownMethod(methodName, types);
    return method;
}

Variable* ArrayVar::execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (method == methods().at(0)) return new IntVar(size);
    return Variable::execMethodCall(method, arguments, errorFlag);
}

String ArrayVar::getValueString() const {
    if (!elements) return typeName;
    return partsString(typeName, *elements, false);
}

void ArrayVar::printOn(std::ostream& os) const {
    Variable::printOn(os);
    os << " contents = [";
    for (unsigned i = 0; elements && i < elements->size(); ++i)
        os << (i ? ", " : "") << *elements->at(int(i));
    os << "]";
}
