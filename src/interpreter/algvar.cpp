// AlgebraVar: kinds of operands, the method and constructor tables, operators by double dispatch,
// conversions, files, the workspace and the common methods.
#include "interpreter/algvar.h"

#include <unistd.h>

#include <iostream>
#include <memory>

#include "algebra/algebra.h"
#include "control/dynop.h"
#include "control/workspc.h"
#include "interpreter/charvar.h"
#include "interpreter/discvar.h"
#include "interpreter/floatvar.h"
#include "interpreter/funcdecl.h"
#include "interpreter/intvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/polyvar.h"
#include "interpreter/ratvar.h"
#include "interpreter/stringvr.h"
#include "interpreter/submvar.h"
#include "interpreter/subvvar.h"
#include "interpreter/vectvar.h"
#include "quill/quillerr.h"

DEFINE_ABSTRACT_CLASS(AlgebraVar, Variable, 1, 0)

namespace {

PlotOpener plotOpener = 0;

}  // namespace

PlotOpener setPlotOpener(PlotOpener opener) {
    PlotOpener former = plotOpener;
    plotOpener = opener;
    return former;
}

// --- Kinds ---

unsigned kindOf(const Variable* v) {
    const Variable* d = Variable::dereference(const_cast<Variable*>(v));
    Class* c = d->isA();
    if (c == &class_IntVar) return KIND_INT;
    if (c == &class_FloatVar) return KIND_FLOAT;
    if (c == &class_VectorVar || c == &class_SubVectorVar) return KIND_VECTOR;
    if (c == &class_MatrixVar || c == &class_SubMatrixVar) return KIND_MATRIX;
    if (c == &class_PolynomialVar) return KIND_POLYNOMIAL;
    if (c == &class_RationalFunctionVar) return KIND_RATIONAL;
    if (c == &class_DynOpVar) return KIND_SYSTEM;
    if (c == &class_DiscDynOpVar) return KIND_DISCRETE;
    return KIND_OTHER;
}

double scalarValue(const Variable* v) {
    return static_cast<const ScalarVar*>(Variable::dereference(const_cast<Variable*>(v)))->number();
}

// --- MethodTable ---

void MethodTable::add(const char* name, const char* result, const std::vector<std::string>& parameters,
                      Entry entry) {
    FuncDeclare* method = Variable::makeMethod(name, result, parameters);
    QASSERT_TEXT(method != 0, "types of a method registered");
    methods.add(*method);
    entries.push_back(entry);
}

void MethodTable::add(const char* name, const char* result, const std::vector<std::string>& parameters,
                      Code code) {
    add(name, result, parameters, Entry{code, 0, 0});
}

void MethodTable::add(const char* name, const char* result, const std::vector<std::string>& parameters,
                      ScalarCode code) {
    int level = ScalarVar::rankOf(Variable::findType(result));
    QASSERT_TEXT(level != 0, "the result of a scalar method is a scalar type");
    add(name, result, parameters, Entry{0, code, level});
}

FuncDeclare* MethodTable::find(const String& name, const OrderedCltn& types) const {
    FuncDeclare* method = Variable::findMethod(methods, name, types);
    return method || !base ? method : base->find(name, types);
}

const MethodTable::Entry* MethodTable::entryOf(const FuncDeclare* method) const {
    auto known = found.find(method);
    if (known != found.end()) return known->second;
    int i = methods.indexOfSame(*method);
    const Entry* entry = i >= 0 ? &entries[unsigned(i)] : base ? base->entryOf(method) : 0;
    if (entry) found.emplace(method, entry);
    return entry;
}

// A method of the base answers a value of this class: its code returns a value, never a number.
void MethodTable::addRetyped(const char* name, const char* result, const std::vector<std::string>& parameters,
                             const MethodTable& from) {
    OrderedCltn types;
    for (const std::string& parameter : parameters) types.add(*Variable::findType(parameter.c_str()));
    FuncDeclare* method = from.find(name, types);
    QASSERT_TEXT(method != 0 && from.codeOf(method) != 0, "method retyped from its base");
    add(name, result, parameters, from.codeOf(method));
}

// --- ConstructorTable ---

void ConstructorTable::add(const std::vector<unsigned>& parameters, Code code) {
    entries.push_back(Entry{parameters, code});
}

int ConstructorTable::indexOf(const OrderedCltn& types) const {
    for (unsigned e = 0; e < entries.size(); ++e) {
        const std::vector<unsigned>& parameters = entries[e].parameters;
        bool accepted = parameters.size() == types.size();
        for (unsigned i = 0; accepted && i < parameters.size(); ++i)
            accepted = (kindOf(Variable::argumentAt(types, int(i))) & parameters[i]) != 0;
        if (accepted) return int(e) + 2;
    }
    return -1;
}

void ConstructorTable::run(int index, Variable& target, const OrderedCltn& arguments) const {
    entries[unsigned(index - 2)].code(target, arguments);
}

// --- The common methods ---

namespace {

AlgebraVar& self(Variable& v) { return static_cast<AlgebraVar&>(v); }

const String& textArgument(OrderedCltn& arguments) {
    return static_cast<StringVar*>(Variable::dereference(Variable::argumentAt(arguments, 0)))->getValue();
}

String ownFileName(const AlgebraVar& v, const char* extension) { return v.getName() + "." + extension; }

Variable* readDefault(Variable& v, OrderedCltn&) { return new IntVar(self(v).buildFromDefaultFile()); }

Variable* readNamed(Variable& v, OrderedCltn& a) {
    return new IntVar(self(v).buildAlgebraObject(textArgument(a)));
}

Variable* recoverOwn(Variable& v, OrderedCltn&) {
    self(v).recoverFromWorkspace(String());
    return new IntVar(1);
}

Variable* recoverNamed(Variable& v, OrderedCltn& a) {
    self(v).recoverFromWorkspace(textArgument(a));
    return new IntVar(1);
}

int storeIn(const AlgebraVar& v, const String& fileName) {
    std::unique_ptr<Object> stored(v.storeObject());
    Algebra files;
    return files.storeToFile(*stored, fileName.asCharPointer()) ? 1 : 0;
}

Variable* saveIn(const AlgebraVar& v, const String& name) {
    std::unique_ptr<Object> stored(v.storeObject());
    globalWorkspace().store(name.asCharPointer(), *stored);
    return new IntVar(1);
}

Variable* saveNamed(Variable& v, OrderedCltn& a) { return saveIn(self(v), textArgument(a)); }

Variable* saveOwn(Variable& v, OrderedCltn&) { return saveIn(self(v), v.getName()); }

Variable* storeNamed(Variable& v, OrderedCltn& a) { return new IntVar(storeIn(self(v), textArgument(a))); }

Variable* eigenvalues(Variable& v, OrderedCltn&) { return new MatrixVar(self(v).computeEigenvalues()); }

Variable* plotted(Variable& v, OrderedCltn&) {
    if (!self(v).isPlottable())
        Variable::typeError(String("Run time error, a ") + v.getType() + " cannot be plotted");
    return new IntVar(self(v).plotOn());
}

}  // namespace

const MethodTable& AlgebraVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable;
    table->add("readFrom", "int", {}, readDefault);
    table->add("readFrom", "int", {"string"}, readNamed);
    table->add("recover", "int", {}, recoverOwn);
    table->add("recover", "int", {"string"}, recoverNamed);
    table->add("storeOn", "int", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        AlgebraVar& a = self(v);
        return new IntVar(storeIn(a, ownFileName(a, a.fileExtension())));
    });
    table->add("storeOn", "int", {"string"}, storeNamed);
    table->add("save", "int", {"string"}, saveNamed);
    table->add("save", "int", {}, saveOwn);
    table->add("plot", "int", {}, plotted);
    table->add("eig", "Matrix", {}, eigenvalues);
    return *table;
}

const ConstructorTable& AlgebraVar::constructors() const {
    static ConstructorTable none;
    return none;
}

FuncDeclare* AlgebraVar::getMethod(const String& methodName, const OrderedCltn& types) const {
    FuncDeclare* method = methods().find(methodName, types);
    if (!method) unknownMethod(methodName, types);
    return method;
}

Variable* AlgebraVar::execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) {
    const MethodTable::Entry* entry = methods().entryOf(method);
    if (!entry) return Variable::execMethodCall(method, arguments, errorFlag);
    try {
        if (entry->scalar) return ScalarVar::makeOfLevel(entry->level, entry->scalar(*this, arguments));
        return entry->code(*this, arguments);
    } catch (TarnException* e) {
        numericFault(e);
    }
}

int AlgebraVar::numberLevel(const FuncDeclare* method) const {
    const MethodTable::Entry* entry = methods().entryOf(method);
    return entry && entry->scalar ? entry->level : 0;
}

bool AlgebraVar::execScalarMethod(FuncDeclare* method, OrderedCltn& arguments, ScalarValue& result) {
    const MethodTable::Entry* entry = methods().entryOf(method);
    if (!entry || !entry->scalar) return false;
    try {
        result = ScalarValue{entry->level, ScalarVar::fitTo(entry->level, entry->scalar(*this, arguments))};
    } catch (TarnException* e) {
        numericFault(e);
    }
    return true;
}

AlgebraVar::~AlgebraVar() noexcept(false) {
    if (plot) delete plot;
}

void AlgebraVar::deepenShallowCopy() {
    plot = 0;
    initialCondition.clearCopiedState();
    Variable::deepenShallowCopy();
}

// --- The plot ---

int AlgebraVar::plotOn() { return 0; }

// Without an opener the program runs without windows (tarn -run): the plot is refused at once.
int AlgebraVar::plotSystem(const DynOp& s) {
    if (!plotOpener)
        typeError("Run time error, plot needs the window system, which a program run by -run does not have");
    initialCondition.reSize(s.order());
    plot = plotOpener(plot, s, initialCondition, getName().asCharPointer());
    return 1;
}

// --- Files and the workspace ---

int AlgebraVar::buildFromDefaultFile() { return buildAlgebraObject(ownFileName(*this, fileExtension())); }

// A file that cannot be read as an object stream has its reader's message on the console first.
int AlgebraVar::buildAlgebraObject(const String& fileName) {
    if (access(fileName.asCharPointer(), R_OK) != 0) {
        std::cout << "Warning, file name " << fileName.asCharPointer() << " has not been found" << std::endl;
        return 0;
    }
    Object* read = nil;
    Algebra files;
    bool fits = files.readFromFile(read, "", fileName.asCharPointer()) && adopt(*read);
    if (read != nil) delete read;
    if (fits) return 1;
    std::cout << "Warning, file name " << fileName.asCharPointer() << " doesn't contain a proper object"
              << std::endl;
    return 0;
}

Object* AlgebraVar::storeObject() const { return numericObject().deepCopy(); }

Matrix AlgebraVar::computeEigenvalues() {
    derivedClassResponsibility("computeEigenvalues");
    return Matrix();
}

void AlgebraVar::recoverFromWorkspace(const String& workspaceName) {
    String name = workspaceName.size() ? workspaceName : getName();
    Object* found = globalWorkspace().get(name.asCharPointer());
    if (found == nil) typeError(String("Warning, the name ") + name + " is not present in the workspace");
    if (!adopt(*found))
        typeError(String("Warning, ") + name + " on the workspace is not a " + workspaceKind());
}

// --- Conversions and faults ---

void AlgebraVar::conversionFailure(const Variable* v, const char* typeName) {
    const Variable* d = dereference(const_cast<Variable*>(v));
    std::cout << "Var " << d->getName().asCharPointer() << " of level " << d->getLevel()
              << " cannot be converted in a " << typeName << std::endl;
}

void AlgebraVar::numericFault(TarnException* e) {
    if (e->code() == GENERICERR) throw e;
    String message = e->message();
    delete e;
    typeError(message);
}

Variable* AlgebraVar::resultOf(const char* typeName) {
    Variable* result = findType(typeName)->clone();
    result->setName("");
    return result;
}

int AlgebraVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    if (types.size() == 1) return dereference(argumentAt(types, 0)) == voidType() ? -1 : 1;
    return constructors().indexOf(types);
}

void AlgebraVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t&) {
    try {
        if (index == 0)
            clear();
        else if (index == 1)
            convertFrom(argumentAt(arguments, 0));
        else
            constructors().run(index, *this, arguments);
    } catch (TarnException* e) {
        numericFault(e);
    }
}

String AlgebraVar::getValueString() const { return String(numericObject().asCharPointer()); }

// --- Operators ---

Variable* AlgebraVar::passOn(Variable* other, int op, int swapped, bool execute) {
    if (swapped || Operator::isAssign(op)) operationError(other, op, swapped);
    return execute ? other->doOperation(this, op, 1) : other->getOperationType(this, op, 1);
}

Variable* AlgebraVar::getOperationType(Variable* other, int op, int swapped) {
    const char* type = resultType(other, op, swapped);
    if (!type) return passOn(other, op, swapped, false);
    return Operator::isAssign(op) ? this : resultOf(type);
}

Variable* AlgebraVar::doOperation(Variable* other, int op, int swapped) {
    if (!resultType(other, op, swapped)) return passOn(other, op, swapped, true);
    try {
        return operate(other, op, swapped);
    } catch (TarnException* e) {
        numericFault(e);
    }
}

Variable* AlgebraVar::getUnaryOperationType(int op) {
    if (op != OP_PLUS && op != OP_MINUS) unaryOperationError(op);
    return resultOf(getType().asCharPointer());
}

Variable* AlgebraVar::doUnaryOperation(int op) {
    if (op != OP_PLUS && op != OP_MINUS) unaryOperationError(op);
    if (op == OP_MINUS) return negated();
    Variable* copy = clone();
    copy->setName("");
    return copy;
}

Variable* AlgebraVar::comparison(const Object& left, const Object& right, int op, int swapped) {
    const Object& a = swapped ? right : left;
    const Object& b = swapped ? left : right;
    bool truth;
    if (op == OP_EQ || op == OP_NE) {
        truth = a.isEqual(b) == (op == OP_EQ);
    } else {
        int order = a.compare(b);
        truth = op == OP_GT ? order > 0 : op == OP_LT ? order < 0 : op == OP_GE ? order >= 0 : order <= 0;
    }
    return new CharVar(std::int8_t(truth ? 1 : 0));
}
