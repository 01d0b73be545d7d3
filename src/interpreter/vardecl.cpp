// VarDeclare and FieldDeclare: positions, parameter acceptance, printing and the building of fields.
#include "interpreter/vardecl.h"

#include <memory>
#include <ostream>

#include "interpreter/scalar.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"

DEFINE_CLASS(VarDeclare, CodeElement, 1, 0)
DEFINE_CLASS(FieldDeclare, VarDeclare, 1, 0)

VarDeclare::VarDeclare() : type(0), constructorCall(0), level(-2), index(0), isReference(0), typeLevel(-1) {}

VarDeclare::VarDeclare(const String& name, int line, Variable* type, ConstructorCall* call)
    : CodeElement(name, line),
      type(type),
      constructorCall(call),
      level(-2),
      index(0),
      isReference(0),
      typeLevel(-1) {}

VarDeclare::VarDeclare(const String& name, int line, Variable* type, int isReference)
    : CodeElement(name, line),
      type(type),
      constructorCall(0),
      level(-2),
      index(0),
      isReference(isReference),
      typeLevel(-1) {}

VarDeclare::~VarDeclare() noexcept(false) { delete constructorCall; }

int VarDeclare::findScalarLevel() const {
    typeLevel = ScalarVar::rankOf(type);
    return typeLevel;
}

void VarDeclare::setPosition(int newLevel, int newIndex) {
    level = newLevel;
    index = newIndex;
}

ConstructorCall* VarDeclare::takeConstructorCall() {
    ConstructorCall* call = constructorCall;
    constructorCall = 0;
    return call;
}

bool VarDeclare::acceptsValue(Variable* v) const {
    if (isReference) {
        if (!v->isKindOf(class_VarReference)) return false;
        Variable* referred = Variable::dereference(v);
        return referred == type || referred->getType().isEqual(type->getType());
    }
    OrderedCltn types(1);
    types.add(*v);
    return type->constructorIndex(types) == 1;
}

void VarDeclare::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " stackLevel: " << level << " position: " << index;
    if (constructorCall) os << " constructor call = " << *constructorCall;
}

void VarDeclare::printShort(std::ostream& os) const {
    if (getName().size() > 0)
        CodeElement::printShort(os);
    else
        os << type->getType().asCharPointer() << "()";
}

FieldDeclare::FieldDeclare(const VarDeclare& declaration, ConstructorCall* call)
    : VarDeclare(declaration.getName(), declaration.getLine(), declaration.getType(), call) {}

Variable* FieldDeclare::buildValue(std::int32_t& errorFlag) const {
    std::unique_ptr<Variable> value(getType()->clone());
    value->setName(getName());
    OrderedCltn arguments;
    try {
        if (getConstructorCall()) getConstructorCall()->getValues(arguments, errorFlag);
        value->execConstructor(getConstructorCall() ? getConstructorCall()->getIndex() : 0, arguments,
                               errorFlag);
    } catch (...) {
        arguments.deleteContents();
        throw;
    }
    arguments.deleteContents();
    return value.release();
}
