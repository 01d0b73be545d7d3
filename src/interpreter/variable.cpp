// Variable: the default answers of every slot, the copying and liveness rules, and the registries.
#include "interpreter/variable.h"

#include <cstring>
#include <iostream>
#include <memory>

#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/assoc.h"
#include "quill/dictnary.h"
#include "quill/quillerr.h"
#include "quill/startup.h"

DEFINE_CLASS(Variable, BaseExpression, 1, 0)

namespace {

// The list of live variables grows by doubling, since an array makes its
// elements all at once; the fixed step of OrderedCltn would copy it quadratically.
class LiveList : public OrderedCltn {
    DECLARE_MEMBERS(LiveList)
public:
    LiveList() : OrderedCltn(256) {}

protected:
    unsigned growthStep() const override { return capacity(); }
};

}  // namespace

DEFINE_CLASS(LiveList, OrderedCltn, 1, 0)

Variable::Variable() : reference(0) { enterLive(); }

Variable::Variable(const String& name) : name(name), reference(0) { enterLive(); }

Variable::Variable(const String& name, char suffix) : name(name, 1), reference(0) {
    this->name += suffix;
    enterLive();
}

void Variable::enterLive() { liveVariables().add(*this); }

// A live variable is usually among the last made, so the search runs from the end.
Variable::~Variable() noexcept(false) {
    if (reference != 0) {
        std::cerr << formatText("Delete error, reference = %d for %s", int(reference), name.asCharPointer())
                  << std::endl;
        quillAbort(0);
    }
    OrderedCltn& live = liveVariables();
    if (live.size() > 0 && live.last() == this) {
        live.removeLast();
        return;
    }
    for (int i = int(live.size()) - 1; i >= 0; --i)
        if (live.at(i) == this) {
            live.removeAtIndex(i);
            return;
        }
    std::cerr << formatText("Var not found %s %x", name.asCharPointer(), unsigned(uintptr_t(this))) << "\n"
              << "in variables ["
              << "\n";
    for (unsigned i = 0; i < live.size(); ++i) {
        Variable* v = static_cast<Variable*>(live.at(int(i)));
        std::cerr << formatText("\t%s %x", v->name.asCharPointer(), unsigned(uintptr_t(v))) << "\n";
    }
    std::cerr.flush();
}

// A value, its name and its place in the list of live variables.
double Variable::storageEstimate() const { return double(isA()->size()) + 64.0; }

// A copy whose deepening fails is destroyed as far as it was made. Among the
// live variables, it shares no part with this one and is deleted; before, it
// owns at most its name, which goes with the bare block.
Variable* Variable::clone() const {
    Variable* copy = static_cast<Variable*>(shallowCopy());
    try {
        copy->deepenShallowCopy();
    } catch (...) {
        if (isLive(copy)) {
            delete copy;
        } else {
            copy->name.~String();
            Object::operator delete(copy);
        }
        throw;
    }
    return copy;
}

bool Variable::isLive(const Variable* v) {
    const OrderedCltn& live = liveVariables();
    for (int i = int(live.size()) - 1; i >= 0; --i)
        if (live.at(i) == v) return true;
    return false;
}

void Variable::deepenShallowCopy() {
    BaseExpression::deepenShallowCopy();
    reference = 0;
    name.clearCopiedState();
    enterLive();
}

bool Variable::isEqual(const Object& ob) const {
    if (ob.isKindOf(class_String)) return name.isEqual(ob);
    return this == &ob;
}

void Variable::printOn(std::ostream& os) const {
    os << getType().asCharPointer();
    if (name.size() > 0 && !name.isEqual(getType())) os << " " << name.asCharPointer();
}

// --- Default answers ---

const String& Variable::getType() const {
    derivedClassResponsibility("getType");
    return name;
}

int Variable::getLevel() const {
    derivedClassResponsibility("getLevel");
    return 0;
}

OrderedCltn* Variable::newArgumentList() const { return new OrderedCltn(16); }

Variable* Variable::getOperationType(Variable* other, int op, int swapped) {
    operationError(other, op, swapped);
}

Variable* Variable::doOperation(Variable* other, int op, int swapped) { operationError(other, op, swapped); }

Variable* Variable::getUnaryOperationType(int op) { unaryOperationError(op); }

Variable* Variable::doUnaryOperation(int op) { unaryOperationError(op); }

int Variable::canConvertTo(const Variable*) const { return 0; }

Variable* Variable::convertTo(const Variable* target) const {
    typeError(String("Cannot implicit cast ") + getType() + " to " + target->getType());
}

int Variable::constructorIndex(const OrderedCltn& types) const { return types.size() == 0 ? 0 : -1; }

void Variable::execConstructor(int index, const OrderedCltn&, std::int32_t&) {
    if (index != 0) derivedClassResponsibility("execConstructor");
}

VarDeclare* Variable::getMember(const String& memberName) const {
    typeError(String("Unknown member ") + memberName + " in type " + getType());
}

Variable* Variable::getMemberVar(const VarDeclare*) {
    derivedClassResponsibility("getMemberVar");
    return 0;
}

FuncDeclare* Variable::getMethod(const String& methodName, const OrderedCltn& types) const {
    unknownMethod(methodName, types);
}

bool Variable::execScalarMethod(FuncDeclare*, OrderedCltn&, ScalarValue&) { return false; }

Variable* Variable::execMethodCall(FuncDeclare*, OrderedCltn&, std::int32_t&) {
    derivedClassResponsibility("execMethodCall");
    return 0;
}

String Variable::getTemplateName(const OrderedCltn& values) const {
    typeError(String("Unknown template for object ") + getType() + " from args " + typeList(values));
}

Variable* Variable::makeTemplate(const OrderedCltn& values) const {
    typeError(String("Unknown template for object ") + getType() + " from args " + typeList(values));
}

String Variable::getValueString() const { return getType(); }

// --- Reports ---

void Variable::typeError(const String& message) {
    setError(GENERICERR, SEV_ERROR, "PARSE ERROR", message.asCharPointer(), "", "");
}

void Variable::operationError(const Variable* other, int op, int swapped) const {
    const Variable* left = swapped ? other : this;
    const Variable* right = swapped ? this : other;
    typeError(String("Cannot do operation ") + Operator::textOf(op) + " between " + left->getType() +
              " and " + right->getType());
}

void Variable::unaryOperationError(int op) const {
    typeError(String("Cannot do unary operation ") + Operator::textOf(op) + " on " + getType());
}

void Variable::unknownMethod(const String& methodName, const OrderedCltn& types) const {
    String message = String("Unknown method ") + methodName + " for object " + getType();
    if (types.size() == 0)
        message += " without args";
    else
        message += String(" from args ") + typeList(types);
    typeError(message);
}

// --- Helpers ---

Variable* Variable::dereference(Variable* v) {
    return v && v->isA() == &class_VarReference ? static_cast<VarReference*>(v)->getReferred() : v;
}

String Variable::typeList(const OrderedCltn& types) {
    String list("(");
    for (unsigned i = 0; i < types.size(); ++i) {
        if (i > 0) list += ", ";
        list += argumentAt(types, int(i))->getType();
    }
    list += ")";
    return list;
}

String Variable::partsString(const String& head, const OrderedCltn& parts, bool named) {
    static String indentation;  // the present level of nested displays
    String outer(indentation);
    String result = head + " = [\n";
    indentation += "  ";
    try {
        for (unsigned i = 0; i < parts.size(); ++i) {
            Variable* part = argumentAt(parts, int(i));
            result += indentation;
            if (named) result += part->getName() + " = ";
            result += part->getValueString() + "\n";
        }
    } catch (...) {
        indentation = outer;
        throw;
    }
    indentation = outer;
    return result + outer + "]";
}

// A scalar converts by truncation; anything else by int's constructor, which
// takes its convertTo. No value is made on the stack: the liveness list would
// have to probe an address outside the heap.
std::int32_t Variable::intValue(Variable* v) {
    Variable* d = dereference(v);
    if (d->isA()->base() == &class_ScalarVar)
        return ScalarVar::truncate(static_cast<ScalarVar*>(d)->number());
    std::unique_ptr<IntVar> value(new IntVar);
    OrderedCltn arguments(1);
    arguments.add(*d);
    std::int32_t errorFlag = 0;
    value->execConstructor(1, arguments, errorFlag);
    return value->getValue();
}

FuncDeclare* Variable::findMethod(const OrderedCltn& table, const String& methodName,
                                  const OrderedCltn& types) {
    for (unsigned i = 0; i < table.size(); ++i) {
        FuncDeclare* method = static_cast<FuncDeclare*>(table.at(int(i)));
        if (!method->getName().isEqual(methodName) || method->argumentCount() != int(types.size())) continue;
        bool accepted = true;
        for (int k = 0; accepted && k < method->argumentCount(); ++k)
            accepted = method->getArgument(k)->acceptsValue(argumentAt(types, k));
        if (accepted) return method;
    }
    return 0;
}

FuncDeclare* Variable::makeMethod(const char* methodName, const char* returnType,
                                  const std::vector<std::string>& parameters) {
    Variable* result = findType(returnType);
    if (!result) return 0;
    OrderedCltn* arguments = new OrderedCltn(16);
    FuncDeclare* method = new FuncDeclare(methodName, 0, result, arguments);
    for (const std::string& parameter : parameters) {
        bool isReference = !parameter.empty() && parameter.back() == '&';
        Variable* type = findType(parameter.substr(0, parameter.size() - (isReference ? 1 : 0)).c_str());
        if (!type) {
            delete method;
            return 0;
        }
        VarDeclare* argument = new VarDeclare("", 0, type, isReference ? 1 : 0);
        argument->setPosition(0, int(arguments->size()));
        arguments->add(*argument);
    }
    return method;
}

// --- Registries ---

Dictionary& Variable::typeRegistry() {
    static Dictionary* registry = new Dictionary;
    return *registry;
}

// A prototype without a name is named after its type.
void Variable::registerType(Variable* prototype) {
    if (prototype->name.size() == 0) prototype->name = prototype->getType();
    typeRegistry().atPut(new String(prototype->getType()), prototype);
}

Variable* Variable::findType(const String& typeName) {
    Object* pair = typeRegistry().assocAt(typeName);
    return pair == nil ? 0 : static_cast<Variable*>(static_cast<Assoc*>(pair)->value());
}

OrderedCltn& Variable::predefinedVariables() {
    static OrderedCltn* predefined = new OrderedCltn;
    return *predefined;
}

void Variable::addPredefined(Variable* variable) { predefinedVariables().add(*variable); }

OrderedCltn& Variable::liveVariables() {
    static OrderedCltn* live = new LiveList;
    return *live;
}

Variable* Variable::voidType() { return GenericVar::voidPrototype(); }
