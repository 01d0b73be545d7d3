// VarReference: forwarding to the referred variable and the reference count.
#include "interpreter/varref.h"

#include <ostream>

DEFINE_CLASS(VarReference, Variable, 1, 0)

VarReference::VarReference() : referred(Variable::voidType()) { referred->addReference(); }

VarReference::VarReference(Variable* referred) : Variable(referred->getName(), '&'), referred(referred) {
    referred->addReference();
}

VarReference::~VarReference() noexcept(false) { referred->removeReference(); }

void VarReference::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    referred->addReference();
}

Variable* VarReference::getOperationType(Variable* other, int op, int swapped) {
    return own(referred->getOperationType(other, op, swapped));
}

Variable* VarReference::doOperation(Variable* other, int op, int swapped) {
    return own(referred->doOperation(other, op, swapped));
}

Variable* VarReference::getUnaryOperationType(int op) { return own(referred->getUnaryOperationType(op)); }

Variable* VarReference::doUnaryOperation(int op) { return own(referred->doUnaryOperation(op)); }

void VarReference::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    referred->execConstructor(index, arguments, errorFlag);
}

Variable* VarReference::getMemberVar(const VarDeclare* member) { return own(referred->getMemberVar(member)); }

FuncDeclare* VarReference::getMethod(const String& methodName, const OrderedCltn& types) const {
    return referred->getMethod(methodName, types);
}

Variable* VarReference::execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) {
    return own(referred->execMethodCall(method, arguments, errorFlag));
}

Variable* VarReference::makeTemplate(const OrderedCltn& values) const {
    return referred->makeTemplate(values);
}

void VarReference::printOn(std::ostream& os) const {
    os << getName().asCharPointer() << " Referred to " << *referred;
}
