// Executer: runs, calls from outside, the resident mode, frames and scopes, and the look-up of variables.
#include "interpreter/executer.h"

#include <memory>

#include "interpreter/cleanup.h"
#include "interpreter/codepars.h"
#include "interpreter/evalval.h"
#include "interpreter/funcdecl.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"
#include "quill/quillerr.h"

DEFINE_CLASS(Executer, Algebra, 1, 0)

Symbol TRACE_EXEC("TRACE_EXEC");

std::uint64_t Executer::lastPlaceMark = 0;

Executer::Executer()
    : stopped(0),
      placeMark(++lastPlaceMark),
      parser(0),
      errorFlag(0),
      errorLocated(0),
      lastFrame(0),
      returnedLevel(0),
      returnedValue(0.0),
      returnedName(0) {}

Executer::Executer(CodeParser* parser)
    : stopped(0),
      placeMark(++lastPlaceMark),
      parser(parser),
      errorFlag(0),
      errorLocated(0),
      lastFrame(0),
      returnedLevel(0),
      returnedValue(0.0),
      returnedName(0) {
    registerBuiltins();
}

Executer::~Executer() noexcept(false) {
    destroyFrames();
    destroyGlobals();
    for (OrderedCltn* list : spareLists) delete list;
    forgetParameters();
    for (SpareFrame& spare : spareFrames) {
        delete spare.frame->first();
        delete spare.frame;
    }
}

// --- Entries ---

// The frames go first, so that an error of another code leaves the executer
// ready for the next run as well.
String Executer::caughtMessage(TarnException* e) {
    destroyFrames();
    errorLocated = 0;
    if (e->code() != GENERICERR) throw e;
    String message = e->message();
    delete e;
    return message;
}

String Executer::run(String& message, int& stoppedResult) {
    startRun();
    destroyGlobals();
    message = "";
    FuncDeclare* main = parser->findMain(1);
    if (!main) {
        message = "main function not found";
    } else {
        try {
            makeGlobals();
            FuncCall call(main, 0, main->getLine());
            EvalValue result;
            EvalValueGuard guard(result);
            if (!stopped) callFunction(&call, result);
        } catch (TarnException* e) {
            message = caughtMessage(e);
        }
    }
    if (errorFlag) stopped = 0;
    stoppedResult = stopped;
    return message;
}

Variable* Executer::callFunction(FuncDeclare* function, OrderedCltn& arguments, String& message,
                                 int& stoppedResult) {
    startRun();
    message = "";
    Variable* result = 0;
    try {
        OrderedCltn values;
        ContentsGuard guard(values);
        for (int i = 0; i < function->argumentCount() && i < int(arguments.size()); ++i) {
            VarDeclare* parameter = function->getArgument(i);
            Variable* value = Variable::argumentAt(arguments, i);
            Variable* bound = parameter->isRef() ? new VarReference(Variable::dereference(value))
                                                 : parameter->getType()->clone();
            bound->setName(parameter->getName());
            values.add(*bound);
            if (!parameter->isRef()) assign(bound, value);
        }
        OrderedCltn* scope = newList();
        for (unsigned i = 0; i < values.size(); ++i) scope->add(*values.at(int(i)));
        values.removeAll();
        result = runFunction(function, scope, false);
    } catch (TarnException* e) {
        message = caughtMessage(e);
    }
    if (errorFlag) stopped = 0;
    stoppedResult = stopped;
    return result;
}

String Executer::evaluate(const String& source, const String& text) {
    startRun();
    try {
        if (!source.isEqual(sourceText) || (sourceText.size() == 0 && globals.size() == 0)) {
            clear();
            String message = parser->parseText(source, 1);
            if (message.size() > 0) return message;
            sourceText = source;
            makeGlobals();
        }
        String message = parser->parseText(String("void main() { ") + text + ";}\n", 0);
        if (message.size() > 0) return message;
        OrderedCltn* scope = newList();
        ValueGuard::destroy(runFunction(parser->getMainFunction(), scope, true));
        keepResidentVariables(scope);
    } catch (TarnException* e) {
        return caughtMessage(e);
    }
    return String();
}

// The variables of a resident line become globals, one of the same name replaced.
void Executer::keepResidentVariables(OrderedCltn* scope) {
    for (unsigned i = 0; i < scope->size(); ++i) {
        Variable* v = Variable::argumentAt(*scope, int(i));
        int index = globals.indexOf(v->getName());
        if (index >= 0) {
            delete globals.at(index);
            globals[index] = v;
        } else {
            globals.add(*v);
        }
    }
    for (unsigned i = 0; i < scope->size(); ++i) parser->updateGlobal(Variable::argumentAt(*scope, int(i)));
    releaseList(scope);
    movePlaces();
}

void Executer::clear() {
    forgetParameters();
    destroyGlobals();
    sourceText = "";
    parser->reset();
}

Variable* Executer::getVariable(const String& name, int silent) {
    for (int f = int(frames.size()) - 1; f >= 0; --f) {
        OrderedCltn* frame = frames[size_t(f)];
        for (int s = int(frame->size()) - 1; s >= 0; --s) {
            Object* found = static_cast<OrderedCltn*>(frame->at(s))->find(name);
            if (found != nil) return Variable::dereference(static_cast<Variable*>(found));
        }
    }
    Object* found = globals.find(name);
    if (found != nil) return static_cast<Variable*>(found);
    if (!silent) Variable::typeError(String("Unknown variable ") + name);
    return 0;
}

String Executer::printVariable(const String& name) {
    Variable* v = getVariable(name, 1);
    if (!v) return name + ": unknown variable name.";
    return name + " = \"" + v->getValueString() + "\"";
}

// The functions called last may have been parsed anew since.
void Executer::startRun() {
    stopped = 0;
    errorFlag = 0;
    errorLocated = 0;
    forgetParameters();
}

// --- Frames and globals ---

namespace {

// Only the used part of a list goes back to nil, which is all a short list needs: the rest already holds nil.
void clearList(OrderedCltn* list) {
    enum { SHORT_LIST = 4 };
    if (list->size() > SHORT_LIST)
        list->removeAll();
    else
        while (list->size() > 0) list->removeLast();
}

}  // namespace

// Emptied scopes and frames are kept for reuse: a loop opens a scope on every pass.
OrderedCltn* Executer::newList() {
    if (spareLists.empty()) return new OrderedCltn;
    OrderedCltn* list = spareLists.back();
    spareLists.pop_back();
    return list;
}

void Executer::releaseList(OrderedCltn* list) {
    clearList(list);
    if (spareLists.size() < SPARE_LISTS)
        spareLists.push_back(list);
    else
        delete list;
}

// Values go from the last to the first: a reference is destroyed before what it refers to.
void Executer::emptyScope(OrderedCltn* scope) {
    for (int i = int(scope->size()) - 1; i >= 0; --i) dropValue(static_cast<Variable*>(scope->atInline(i)));
    clearList(scope);
}

void Executer::dropValue(Variable* value) {
    if (!scalars.keep(value)) ValueGuard::destroy(value);
}

void Executer::destroyScope(OrderedCltn* scope) {
    emptyScope(scope);
    releaseList(scope);
}

void Executer::destroyFrame(OrderedCltn* frame) {
    for (int i = int(frame->size()) - 1; i >= 0; --i) destroyScope(static_cast<OrderedCltn*>(frame->at(i)));
    releaseList(frame);
}

void Executer::forgetParameters() {
    for (SpareFrame& spare : spareFrames) {
        if (spare.function) emptyScope(static_cast<OrderedCltn*>(spare.frame->first()));
        spare.function = 0;
    }
}

OrderedCltn* Executer::pushScope() {
    OrderedCltn* scope = newList();
    currentFrame().add(*scope);
    return scope;
}

// A scope that held nothing leaves every place kept as it was.
void Executer::popScope() {
    OrderedCltn* scope = static_cast<OrderedCltn*>(currentFrame().removeLast());
    if (scope->size() > 0) movePlaces();
    destroyScope(scope);
}

void Executer::destroyFrames() {
    movePlaces();
    lastFrame = 0;
    while (!frames.empty()) {
        OrderedCltn* frame = frames.back();
        frames.pop_back();
        destroyFrame(frame);
    }
    callees.clear();
}

FuncDeclare* Executer::frameFunction(int frame) const { return callees.at(size_t(frame)); }

const OrderedCltn& Executer::frameScopes(int frame) const { return *frames.at(size_t(frame)); }

void Executer::destroyGlobals() {
    deleteValuesFromLast(globals);
    movePlaces();
}

// The predefined variables, then the globals of the source in order; an
// initialiser may call functions.
void Executer::makeGlobals() {
    const OrderedCltn& predefined = Variable::predefinedVariables();
    for (unsigned i = 0; i < predefined.size(); ++i)
        globals.add(*Variable::argumentAt(predefined, int(i))->clone());
    const OrderedCltn& declarations = parser->getGlobals();
    for (unsigned i = predefined.size(); i < declarations.size() && !stopped; ++i)
        execStatement(static_cast<Statement*>(declarations.at(int(i))), Variable::voidType());
}
