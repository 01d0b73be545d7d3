// OstreamVar: writing values, endl, file streams and their closing; the globals cout and endl.
#include "interpreter/ostrmvar.h"

#include <iostream>

#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "interpreter/stringvr.h"
#include "quill/quillerr.h"
#include "quill/safefile.h"

namespace {

void registerOstream(Class*) {
    Variable::registerType(new OstreamVar);
    Variable::addPredefined(new OstreamVar("cout", &std::cout));
    GenericVar* endl = new GenericVar("OstreamFunc");
    endl->setName("endl");
    Variable::addPredefined(endl);
}

const OrderedCltn& methods() {
    static OrderedCltn* table = 0;
    if (!table) {
        table = new OrderedCltn;
        table->add(*Variable::makeMethod("close", "int", {}));
    }
    return *table;
}

bool isEndl(const Variable* v) {
    return v->getType().isEqual(String("OstreamFunc")) && v->getName().isEqual(String("endl"));
}

}  // namespace

DEFINE_CLASS(OstreamVar, Variable, 1, registerOstream)

OstreamVar::OstreamVar() : stream(0), ownsStream(0), file(0) {}

OstreamVar::OstreamVar(const String& name, std::ostream* stream)
    : Variable(name), stream(stream), ownsStream(0), file(0) {}

// A file that cannot be put in place says so, since no statement is left to fail.
OstreamVar::~OstreamVar() noexcept(false) {
    String failure = closeStream();
    if (failure.size() > 0) std::cerr << failure.asCharPointer() << std::endl;
}

void OstreamVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    ownsStream = 0;
    file = 0;
}

String OstreamVar::closeStream() {
    if (!ownsStream) return String();
    String failure = file->commitOrMessage();
    delete file;
    file = 0;
    stream = 0;
    ownsStream = 0;
    return failure;
}

const String& OstreamVar::getType() const {
    static const String type("ostream");
    return type;
}

Variable* OstreamVar::getOperationType(Variable* other, int op, int swapped) {
    if (op == OP_SHL && !swapped) return this;
    operationError(other, op, swapped);
}

Variable* OstreamVar::doOperation(Variable* other, int op, int swapped) {
    if (op != OP_SHL || swapped) operationError(other, op, swapped);
    if (!stream) typeError(String("Cannot write on the closed ostream ") + getName());
    if (isEndl(other))
        *stream << std::endl;
    else
        *stream << other->getValueString().asCharPointer();
    return this;
}

int OstreamVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && dereference(argumentAt(types, 0))->isKindOf(class_StringVar) ? 1 : -1;
}

void OstreamVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index == 0) return;
    if (index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    const String& fileName = static_cast<StringVar*>(dereference(argumentAt(arguments, 0)))->getValue();
    String failure = closeStream();
    if (failure.size() > 0) typeError(failure);
    failure = errorTextOf([&] { file = new SafeFile(fileName.asCharPointer(), 0644); });
    if (failure.size() > 0) typeError(String("Cannot open the file ") + fileName + " for writing");
    stream = &file->stream();
    ownsStream = 1;
}

FuncDeclare* OstreamVar::getMethod(const String& methodName, const OrderedCltn& types) const {
    FuncDeclare* method = findMethod(methods(), methodName, types);
    if (!method) unknownMethod(methodName, types);
    return method;
}

Variable* OstreamVar::execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (method != methods().at(0)) return Variable::execMethodCall(method, arguments, errorFlag);
    bool owned = ownsStream != 0;
    String failure = closeStream();
    if (failure.size() > 0) typeError(failure);
    return new IntVar(owned ? 1 : 0);
}
